#include "logging/messagehandler.h"

#include "logging/recordqueue.h"
#include "logging/router.h"

#include <QThread>

#include <deque>
#include <mutex>

namespace
{
constexpr size_t maxHistory = 1000;

std::mutex historyMutex;
std::deque<LogMessage> history;
Router router;
RecordQueue fromOtherThreads(&router);
Redactor redactor;

void handleLogMessages(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const LogMessage record{QDateTime::currentDateTime(), type, QString::fromUtf8(context.category),
                            redactor.redact(message)};
    {
        const std::lock_guard lock(historyMutex);
        if (history.size() > maxHistory)
            history.pop_front();
        history.push_back(record);
    }
    if (QThread::currentThread() == router.thread())
        emit router.log(record.time, record.type, record.category, record.message);
    else
        fromOtherThreads.post(record);
}
} // namespace

void installLogMessageHandler(const QVector<LoggerBase*>& sinks)
{
    for (auto* sink : sinks)
        QObject::connect(&router, &Router::log, sink, &LoggerBase::onLog);
    qInstallMessageHandler(handleLogMessages);
}

void flushLogMessages() { fromOtherThreads.flush(); }

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
QLinkedList<LogMessage> getLastLogMessages(int count)
{
    QLinkedList<LogMessage> messages;
    const std::lock_guard lock(historyMutex);
    for (auto record = history.rbegin(); record != history.rend() && messages.size() < count; ++record)
        messages.append(*record);
    return messages;
}
QT_WARNING_POP

Redactor& logRedactor() { return redactor; }
