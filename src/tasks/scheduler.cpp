#include "tasks/scheduler.h"

#include "settings/settings.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QEventLoop>

Scheduler::Scheduler(std::function<QStringList()> serverOrder, QObject* parent)
    : QObject(parent), m_serverOrder(std::move(serverOrder))
{
    // Always deferred, even on the same thread; the task may be gone by then.
    connect(
        this, &Scheduler::schedule, this,
        [this](const QString& key, Task* task) {
            const auto deferred = [this, key, guarded = QPointer<Task>(task)] {
                if (guarded)
                    onSchedule(key, guarded);
            };
            QMetaObject::invokeMethod(this, deferred, Qt::QueuedConnection);
        },
        Qt::DirectConnection);
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
        m_backgroundTasks.enqueue(task);
    } else {
        auto& queue = m_queues[key];
        if (!queue)
            queue = std::make_shared<Queue>();
        queue->enqueue(task);
    }
    pauseBackgroundTask();
    if (m_currentTask) {
        qDebug().noquote() << m_currentTask->taskName() << "is still running";
        return;
    }
    runNextTask();
}

/** The next task of the queue that still exists, or null. */
static Task* takeFirst(QQueue<QPointer<Task>>* queue)
{
    while (!queue->isEmpty()) {
        if (Task* task = queue->dequeue())
            return task;
    }
    return nullptr;
}

Task* Scheduler::takeForegroundTask()
{
    const auto takeFrom = [this](const QString& key) {
        const auto queue = m_queues.value(key);
        return queue ? takeFirst(queue.get()) : nullptr;
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
        resumeBackgroundTask();
    } else if (auto* backgroundTask = takeFirst(&m_backgroundTasks)) {
        m_backgroundTask = backgroundTask;
        start(backgroundTask);
    }
}

void Scheduler::start(Task* task)
{
    const auto name = task->taskName();
    qDebug().noquote() << "Starting task" << name;
    connect(task, &Task::finished, this, &Scheduler::onTaskFinished);
    connect(task, &QObject::destroyed, this, &Scheduler::onTaskDestroyed);
    QElapsedTimer timer;
    timer.start();
    task->go();
    if (m_held && task == currentTask()) // else it has ended already
        task->pause();
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

void Scheduler::onTaskDestroyed(const QObject* task)
{
    if (task != m_currentTask && task != m_backgroundTask)
        return;
    (task == m_currentTask ? m_currentTask : m_backgroundTask) = nullptr;
    runNextTask();
}

void Scheduler::setHeld(bool held)
{
    if (std::exchange(m_held, held) == held || !currentTask())
        return;
    if (held)
        currentTask()->pause();
    else
        currentTask()->resume();
}

void Scheduler::pauseBackgroundTask()
{
    if (m_backgroundTask)
        m_backgroundTask->pause();
}

void Scheduler::resumeBackgroundTask()
{
    if (m_backgroundTask && !m_held)
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
