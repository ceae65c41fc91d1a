#pragma once

#include "tasks/task.h"

#include <QMap>
#include <QPointer>
#include <QQueue>

#include <functional>
#include <memory>

/**
 * Decides which task runs: one first-in-first-out queue for each key, one foreground task at a time across
 * all queues, and one background task that runs only while nothing else wants to.
 *
 * Work is handed over by emitting schedule(). Tasks are neither owned nor deleted; one that its owner deletes
 * early counts as finished. Main thread.
 */
class Scheduler : public QObject
{
    Q_OBJECT

public:
    /** serverOrder gives the keys whose queues go before all others, in order. */
    explicit Scheduler(std::function<QStringList()> serverOrder, QObject* parent = nullptr);
    ~Scheduler() override;

    /** The one scheduler of the process; it follows the server list of the settings. */
    static Scheduler* instance();

    /** The queue that is served before all others. */
    void setPriorityKey(const QString& key) { m_priorityKey = key; }

    bool hasBackgroundTask() const { return m_backgroundTask || !m_backgroundTasks.isEmpty(); }
    /** While held, what runs is paused, and what is started is paused at once. */
    void setHeld(bool held);
    /** Whether what is scheduled now has to wait until the scheduler is let go. */
    bool isBlocked() const { return m_held && m_currentTask; }
    /** The task that runs now, the foreground one first; null when there is none. */
    Task* currentTask() const { return m_currentTask ? m_currentTask : m_backgroundTask; }
    void pauseBackgroundTask();
    void resumeBackgroundTask();
    /** Runs a local event loop until no background task is left. */
    void waitForBackgroundTasks();
    /** For shutdown: cancels the foreground task and starts no further one. */
    void stop();

signals:
    /** Hands a task over. The key "background" names the background lane, any other key a queue. */
    void schedule(const QString& key, Task* task);

private slots:
    void onSchedule(const QString& key, Task* task);
    void onTaskFinished(Task* task);

private:
    using Queue = QQueue<QPointer<Task>>;

    void onTaskDestroyed(const QObject* task);
    void runNextTask();
    Task* takeForegroundTask();
    void start(Task* task);

    QMap<QString, std::shared_ptr<Queue>> m_queues;
    Queue m_backgroundTasks;
    bool m_stopped = false;
    bool m_held = false;
    Task* m_currentTask = nullptr;
    Task* m_backgroundTask = nullptr;
    QString m_priorityKey;
    const std::function<QStringList()> m_serverOrder;
};
