#pragma once

#include "index/index.h"

#include <QFutureWatcher>
#include <QObject>

#include <functional>

class Task;

/**
 * Brings all resources of a build into the cache, in the background and for all servers on one queue.
 *
 * Main thread; the index is parsed on the global thread pool.
 */
class FullDownload : public QObject
{
    Q_OBJECT

public:
    /** Makes the task for the index of all resources. */
    using MakeTask = std::function<Task*(const IndexPtr& index)>;

    explicit FullDownload(MakeTask makeTask, QObject* parent = nullptr);
    ~FullDownload() override;

    /** indexFile: the build's index of all resources. Not to be called while one is running. */
    void start(const QString& indexFile);
    /** From start() to ended(). */
    bool isRunning() const { return m_running; }
    /** Of the build whose resources were last downloaded; null before the first. Any thread. */
    IndexPtr getIndex() const { return m_index.get(); }

signals:
    /** Whatever the outcome: failures are in the log. began: there was something to download. */
    void ended(bool began);

private:
    void onIndexLoaded();
    void end(bool began);

    const MakeTask m_makeTask;
    PublishedIndex m_index;
    QFutureWatcher<IndexPtr> m_watcher;
    bool m_running = false;
};
