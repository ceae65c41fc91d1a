#pragma once

#include "cache/updatemarker.h"
#include "index/index.h"
#include "tasks/task.h"

#include <QFutureWatcher>

#include <atomic>

class DownloadQueue;

/**
 * Brings the cache up to date with one index: finds the files that are missing and downloads them.
 *
 * While it writes, the cache is marked (see UpdateMarker); a mark that a dead process left is acted on first.
 * Error codes: 0, 2 (a file could not be downloaded, the index is null, or a row points outside the cache;
 * the other files are downloaded all the same in that last case) and 3 (a file could not be stored). Main
 * thread; the scan and the final wait for the disk run on the global thread pool.
 */
class DownloadFromIndexTask : public Task, public LiveCount<DownloadFromIndexTask>
{
    Q_OBJECT

public:
    /** name is for log lines; baseUrl ends with "/"; files go below cacheFolder + "/ResFiles". */
    DownloadFromIndexTask(const QString& name, const IndexPtr& index, const QString& baseUrl,
                          const QString& cacheFolder, QObject* parent = nullptr);
    /** Waits for the worker thread. */
    ~DownloadFromIndexTask() override;

    void go() override;
    /** Does nothing: what was started can be paused, and goes on where it stood. */
    void cancel() override {}
    /** Requests in flight run to their end. A paused task does not end before it is resumed. */
    void pause() override;
    void resume() override;

    DownloadQueue* queue() const { return m_queue; }

signals:
    void progressUpdate(float fraction, const QString& message);

private slots:
    void onAddMissingFilesToQueueFinished();
    void onDownloadQueueFinished();

private:
    enum class State { Scanning, Downloading, Syncing, Done, Finished };

    void addMissingFilesToQueue();
    void recoverFromInterruption();
    void syncToDisk();
    void done();
    void finish();

    const QString m_name;
    const IndexPtr m_index;
    const QString m_cacheFolder;
    DownloadQueue* const m_queue;
    State m_state = State::Scanning;
    bool m_paused = false;
    std::atomic<bool> m_abandoned{false};
    QFutureWatcher<void> m_scanWatcher;
    QFutureWatcher<bool> m_syncWatcher;
    std::shared_ptr<UpdateMarker> m_marker;
    QString m_markerError;
    int m_refusedRows = 0;
};
