#include "logging/recordqueue.h"

#include "logging/router.h"

#include <QElapsedTimer>

namespace
{
constexpr size_t maxWaiting = 10000;
/** Threads that wait for room are let on only when there is much of it: so they rarely get in the way. */
constexpr size_t muchRoom = maxWaiting / 2;
constexpr std::chrono::milliseconds patience{500};
constexpr int sliceMs = 10;
constexpr size_t recordsAtATime = 200;
} // namespace

void RecordQueue::post(const LogMessage& record)
{
    std::unique_lock lock(m_mutex);
    if (!m_room.wait_for(lock, patience, [this] { return m_records.size() < maxWaiting; })) {
        ++m_lost;
        return;
    }
    m_records.push_back(record);
    if (std::exchange(m_scheduled, true))
        return;
    lock.unlock();
    QMetaObject::invokeMethod(this, &RecordQueue::deliver, Qt::QueuedConnection);
}

// A real timer lets everything else on the main thread have its turn before the next slice; events that are
// posted would all be delivered in one go.
void RecordQueue::deliver()
{
    QElapsedTimer timer;
    timer.start();
    std::deque<LogMessage> records;
    while (takeSome(&records)) {
        emitAll(records);
        if (!timer.hasExpired(sliceMs))
            continue;
        m_nextSlice.start(0, this);
        return;
    }
}

void RecordQueue::timerEvent(QTimerEvent* /*event*/)
{
    m_nextSlice.stop();
    deliver();
}

void RecordQueue::flush()
{
    std::deque<LogMessage> records;
    while (takeSome(&records))
        emitAll(records);
}

/** Returns false, and waits for the next post, when there are none. */
bool RecordQueue::takeSome(std::deque<LogMessage>* records)
{
    records->clear();
    const std::lock_guard lock(m_mutex);
    if (const int lost = std::exchange(m_lost, 0); lost > 0) {
        const auto text = QStringLiteral("%1 records were lost: too many at a time").arg(lost);
        records->push_back({QDateTime::currentDateTime(), QtWarningMsg, QStringLiteral("default"), text});
    }
    while (!m_records.empty() && records->size() < recordsAtATime) {
        records->push_back(std::move(m_records.front()));
        m_records.pop_front();
    }
    if (m_records.size() <= muchRoom)
        m_room.notify_all();
    m_scheduled = !records->empty();
    return m_scheduled;
}

void RecordQueue::emitAll(const std::deque<LogMessage>& records)
{
    for (const auto& record : records)
        emit m_router->log(record.time, record.type, record.category, record.message);
}
