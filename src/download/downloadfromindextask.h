#pragma once

#include "cache/updatemarker.h"
#include "download/bundle.h"
#include "download/downloadplan.h"
#include "tasks/task.h"

#include <QFutureWatcher>
#include <QPointer>

#include <atomic>
#include <functional>
#include <optional>

class BundleUnpacker;
class Downloader;
class DownloadQueue;

/**
 * Brings the cache up to date with one index: finds the files that are missing, and downloads them one by
 * one, or the index's bundle when nearly all are missing. A bundle that fails in any way makes it start again
 * without.
 *
 * While it writes, the cache is marked (see UpdateMarker); a mark that a dead process left is acted on first.
 * Error codes: 0, 2 (a file could not be downloaded, the index is null, or a row points outside the cache;
 * the other files are downloaded all the same in that last case) and 3 (a file could not be stored, or there
 * is not enough room: then nothing has been written). The error string, where there is one, is for the
 * player. Main thread; scan, unpacking and the final wait for the disk run on the global thread pool.
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
    /** Requests in flight run to their end, and so does unpacking. A paused task does not end before it is
     * resumed. */
    void pause() override;
    void resume() override;

    QString activity() const override;
    void askAgain() override;

    DownloadQueue* queue() const { return m_queue; }

    /** Where to look for missing files first. While it downloads, it looks again. */
    void adoptFrom(const AdoptedFolder& folder);

    /** Asked before a long download, and where there seems to be too little room; decide() is to follow.
     * Without a review the first one starts, and the other one fails. */
    using Review = std::function<void(DownloadFromIndexTask*)>;
    void setReview(const Review& review) { m_review = review; }
    /** What the review is about. */
    const DownloadPlan& plan() const { return m_plan; }
    enum class Decision { Start, GiveUp };
    void decide(Decision decision);

signals:
    void filesAdopted(int files, qint64 bytes);
    void progressUpdate(float fraction, const QString& message);
    /** Speed and time left, for people; empty when nothing is being transferred. */
    void transferUpdate(const QString& text);

private slots:
    void onProgressUpdate(float fraction, const QString& message);
    void onAddMissingFilesToQueueFinished();
    void onBundleInfoDownloadFinished(Task* task);
    void onDownloadQueueFinished();
    void onUnpackBundleFinished();

private:
    enum class State {
        Scanning,
        Reviewing,
        FetchingBundleInfo,
        Downloading,
        Unpacking,
        Syncing,
        Done,
        Finished
    };

    // On a worker thread
    bool addMissingFilesToQueue(const AdoptedFolder& folder);
    void recoverFromInterruption();
    void adoptFilesFrom(const AdoptedFolder& folder);
    bool wantsBundle() const;

    void failForLackOfRoom();
    void startDownload();
    bool startsAgain();
    void addBundleChunksToQueue();
    void startQueue();
    void goOnWithoutBundle();
    void unpackBundle();
    void failWithStorage(const QString& reason);
    void cleanUp();
    void done();
    void finish();

    const QString m_name;
    const IndexPtr m_index;
    const QString m_baseUrl;
    const QString m_cacheFolder;
    DownloadQueue* const m_queue;
    State m_state = State::Scanning;
    bool m_paused = false;
    bool m_bundleMode = false;
    bool m_bundlesRefused = false;
    std::optional<Bundle> m_bundle;
    QPointer<Downloader> m_bundleInfo; // while it is fetched
    float m_fraction = 0;
    std::unique_ptr<BundleUnpacker> m_unpacker;
    std::atomic<bool> m_abandoned{false};
    QFutureWatcher<bool> m_scanWatcher;
    QFutureWatcher<bool> m_unpackWatcher;
    QFutureWatcher<void> m_cleanUpWatcher;
    std::shared_ptr<UpdateMarker> m_marker;
    QString m_markerError;
    AdoptedFolder m_adopted;  // no path: none
    bool m_lookAgain = false; // in another folder
    DownloadPlan m_plan;
    Review m_review;
    bool m_isReviewed = false;
};
