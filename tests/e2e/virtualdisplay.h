#pragma once

#include <QProcess>

#include <memory>
#include <vector>

/** An X display of its own, on which the real launcher's windows can be looked at and clicked. */
class VirtualDisplay
{
public:
    VirtualDisplay();
    ~VirtualDisplay();
    Q_DISABLE_COPY_MOVE(VirtualDisplay)

    /** ":<number>"; empty when the server could not be started. */
    QString name() const { return m_name; }

    /** Starts a program on the display that ends with it. */
    void run(const QStringList& command);
    /** Runs xdotool and returns what it prints. */
    QString xdotool(const QStringList& arguments) const;

    /** The visible window with this title, waiting for it for a while; 0 when there is none. */
    qint64 waitForWindow(const QString& title) const;
    bool isVisible(const QString& title) const;
    QRect geometryOf(qint64 window) const;
    void click(const QPoint& position) const;

private:
    QString m_name;
    QProcess m_server;
    std::vector<std::unique_ptr<QProcess>> m_programs;
};
