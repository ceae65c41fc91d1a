#pragma once

#include <QLocalServer>

/** Lets a second start of the launcher bring the window of the first one to the front. Main thread. */
class RunningLauncher : public QObject
{
    Q_OBJECT

public:
    explicit RunningLauncher(QObject* parent = nullptr);

    /** Asks a launcher of the same settings to show itself; returns whether there is one. Waits for a second
     * at most. */
    static bool show();

signals:
    void showRequested();

private:
    static QString name();

    QLocalServer m_server;
};
