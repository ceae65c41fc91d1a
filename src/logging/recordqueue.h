#pragma once

#include "logging/logmessage.h"

#include <QBasicTimer>
#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>

class Router;

/**
 * Carries the records of other threads to the router on the main thread, in the order of each thread, and in
 * slices that leave the main thread responsive. So many records can wait at most; a thread that finds the
 * queue full waits a moment for room, and if there is none its record is lost and counted.
 */
class RecordQueue : public QObject
{
    Q_OBJECT

public:
    /** router is not owned; both live on the main thread. */
    explicit RecordQueue(Router* router) : m_router(router) {}

    /** Any thread but the main one. */
    void post(const LogMessage& record);
    /** Delivers whatever waits. Main thread. */
    void flush();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void deliver();
    bool takeSome(std::deque<LogMessage>* records);
    void emitAll(const std::deque<LogMessage>& records);

    Router* const m_router;
    QBasicTimer m_nextSlice;
    std::mutex m_mutex;
    std::condition_variable m_room;
    std::deque<LogMessage> m_records;
    int m_lost = 0;
    bool m_scheduled = false;
};
