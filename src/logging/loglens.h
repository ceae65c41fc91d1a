#pragma once

#include "logging/loggerbase.h"

#include <QTcpSocket>
#include <QTimer>

#include <deque>

/**
 * Sends the log to a live viewer on this machine, once one is wanted. A viewer that is not there is looked
 * for again every few seconds; one that reads slowly never slows the launcher: so many records wait for it,
 * then the oldest go. Main thread.
 */
class LogLens : public LoggerBase
{
    Q_OBJECT

public:
    static constexpr quint16 defaultPort = 3273;
    static constexpr int maxWaiting = 1000;

    explicit LogLens(quint16 port = defaultPort);
    ~LogLens() override;

    /** The one object of the process; it is never destroyed. */
    static LogLens* instance();

    /** From now on the log goes to the viewer, whenever there is one. */
    void connectToViewer();

    void outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                       const QString& message, int repeatCount) override;

    /** Records that wait for the viewer. */
    int waiting() const { return static_cast<int>(m_waiting.size()); }

private:
    void open();
    void sendWaiting();

    const quint16 m_port;
    QTcpSocket m_socket;
    QTimer m_retry;
    std::deque<QByteArray> m_waiting;
    bool m_wanted = false;
};

/** Lets the live viewer see the log of this process. */
void connectLogLens();
