#pragma once

#include "download/transfermeter.h"
#include "servers/combinedindex.h"

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QObject>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <functional>

/** What a verification found and did. Paths are relative to the cache's "ResFiles". */
struct VerifyReport {
    /** One file that is not what the indexes say; problem is for people: "has the wrong content". */
    struct Finding {
        QString path;
        QString problem;
        bool removed = false;
    };
    int knownFiles = 0;
    int checkedFiles = 0;
    qint64 checkedBytes = 0;
    /** Known, but not in the cache; fetched when they are needed. */
    int missingFiles = 0;
    QVector<Finding> damaged;
    /** Files that no index knows, whether they were removed or not. */
    QStringList extra;
    qint64 extraBytes = 0;
    int purgedFiles = 0;
    qint64 purgedBytes = 0;
    /** Indexes that could not be obtained: while there are any, nothing is purged. */
    int missingIndexes = 0;
    /** Why nothing was purged, for people; empty when that was not so. */
    QString purgeRefusal;
    bool cancelled = false;
    double seconds = 0;

    /** A few lines for people and for the log. */
    QString summary() const;
};

/**
 * Compares the files of the cache with the indexes: damaged files are removed, so that the next refresh
 * fetches them again, and, when that is wanted, also files that no index knows.
 *
 * Links are never followed, and nothing outside the cache is touched. Files that are younger than the
 * verification are left alone, since somebody may be putting them there. It may be interrupted at any time.
 * Works on threads of its own with low priority for disk and processor; all else happens on the main thread.
 */
class Verifier : public QObject
{
    Q_OBJECT

public:
    enum class Mode { Verify, VerifyAndPurge };
    /** Gathers what is known; runs on a worker thread and may wait. */
    using KnownFiles = std::function<CombinedIndex()>;

    explicit Verifier(QObject* parent = nullptr);
    /** Waits for the workers, which end at once. */
    ~Verifier() override;

    /** Starts; finished() follows in every case. */
    void start(const QString& cacheFolder, const KnownFiles& known, Mode mode);
    /** Ends soon, with what was found until then. */
    void cancel() { m_stop = true; }
    bool isRunning() const { return m_watcher.isRunning(); }

signals:
    /** fraction: 0 to 1; text: files, bytes, speed and time left, for people. */
    void progressUpdate(float fraction, const QString& text);
    void finished(const VerifyReport& report);

private:
    void reportProgress();
    void onFinished();

    QThreadPool m_pool;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_filesDone{0};
    std::atomic<qint64> m_bytesDone{0};
    std::atomic<int> m_filesTotal{0};
    std::atomic<qint64> m_bytesTotal{0};
    QFutureWatcher<VerifyReport> m_watcher;
    QTimer m_progressTimer;
    QElapsedTimer m_clock;
    TransferMeter m_meter;
    qint64 m_bytesShown = 0;
};
