#include "tasks/scheduler.h"

#include "settings/settings.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QEventLoop>

Scheduler::Scheduler(std::function<QStringList()> serverOrder, QObject* parent)
    : QObject(parent), m_serverOrder(std::move(serverOrder))
{
    connect(this, &Scheduler::schedule, this, &Scheduler::onSchedule, Qt::QueuedConnection);
}

Scheduler::~Scheduler() = default;

Scheduler* Scheduler::instance()
{
    static auto* scheduler = new Scheduler([] { return Settings::instance()->getServerList(); });
    return scheduler;
}

void Scheduler::onSchedule(const QString& key, Task* task)
{
    qDebug().noquote() << "Scheduled task" << task->taskName();
    if (key == QLatin1String("background")) {
        m_backgroundTasks.append(task);
    } else {
        auto& queue = m_queues[key];
        if (!queue)
            queue = std::make_shared<QQueue<Task*>>();
        queue->enqueue(task);
    }
    pauseBackgroundTask();
    if (m_currentTask) {
        qDebug().noquote() << m_currentTask->taskName() << "is still running";
        return;
    }
    runNextTask();
}

Task* Scheduler::takeForegroundTask()
{
    const auto takeFrom = [this](const QString& key) -> Task* {
        const auto queue = m_queues.value(key);
        return queue && !queue->isEmpty() ? queue->dequeue() : nullptr;
    };
    if (auto* task = takeFrom(m_priorityKey))
        return task;
    const auto keys = m_serverOrder() + m_queues.keys();
    for (const auto& key : keys) {
        if (auto* task = takeFrom(key))
            return task;
    }
    return nullptr;
}

void Scheduler::runNextTask()
{
    if (m_stopped)
        return;
    if (auto* task = takeForegroundTask()) {
        m_currentTask = task;
        start(task);
    } else if (m_backgroundTask) {
        m_backgroundTask->resume();
    } else if (!m_backgroundTasks.isEmpty()) {
        m_backgroundTask = m_backgroundTasks.takeFirst();
        start(m_backgroundTask);
    }
}

void Scheduler::start(Task* task)
{
    const auto name = task->taskName();
    qDebug().noquote() << "Starting task" << name;
    connect(task, &Task::finished, this, &Scheduler::onTaskFinished);
    QElapsedTimer timer;
    timer.start();
    task->go();
    qDebug().noquote() << name << "go:" << static_cast<float>(static_cast<double>(timer.elapsed()) / 1000.0);
}

// Whichever task ends, the line is free: a paused background task cannot end while a foreground task runs.
void Scheduler::onTaskFinished(Task* task)
{
    qDebug().noquote() << "Finished task" << task->taskName();
    m_currentTask = nullptr;
    if (task == m_backgroundTask)
        m_backgroundTask = nullptr;
    runNextTask();
}

void Scheduler::pauseBackgroundTask()
{
    if (m_backgroundTask)
        m_backgroundTask->pause();
}

void Scheduler::resumeBackgroundTask()
{
    if (m_backgroundTask)
        m_backgroundTask->resume();
}

void Scheduler::waitForBackgroundTasks()
{
    QEventLoop loop;
    while (hasBackgroundTask() && !m_stopped)
        loop.processEvents(QEventLoop::WaitForMoreEvents);
}

void Scheduler::stop()
{
    m_stopped = true;
    if (m_currentTask)
        m_currentTask->cancel();
}
