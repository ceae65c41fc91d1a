#pragma once

#include "cache/safepath.h"
#include "download/queueprogress.h"
#include "index/indexentry.h"
#include "tasks/task.h"

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QMap>
#include <QSslError>
#include <QTimer>

class BackgroundSaver;
class QNetworkAccessManager;
class QNetworkReply;

/**
 * Downloads many files into the cache, ten requests at a time, and retries what fails. Where the old build's
 * version of a file is in the cache, a patch is tried first.
 *
 * Fill it with enqueue(), then startDownload(); finished() comes once a run, getError() tells how it ended.
 * After the first file that failed for good no further request starts. Main thread, but for enqueue(), which
 * one worker may call while the queue has not been started.
 */
class DownloadQueue : public QObject
{
    Q_OBJECT

public:
    /** name is for log lines. Files are fetched from baseUrl (ends with "/") and go to cacheRoot +
     * "/ResFiles". */
    DownloadQueue(const QString& baseUrl, const QString& cacheRoot, const QString& name,
                  QObject* parent = nullptr);
    ~DownloadQueue() override;

    void enqueue(const IndexEntryPtr& entry);
    /** Starts, or goes on after a pause. An empty queue finishes at once. */
    void startDownload();
    /** Requests in flight run to their end, no new ones start. While the RateLimiter is held these stop as
     * well; they go on later where they stood. */
    void pauseDownload();
    /** Drops what waits: the run ends with what is in flight. */
    void dropWaiting();
    /** Drops what waits, and forgets how the last run went. Not while it runs. */
    void clear();

    /** 0, 2 (a file could not be downloaded or stayed corrupt) or 3 (a file could not be stored). */
    int getError() const { return m_error; }
    /** Files that wait. */
    int getSize() const { return m_queue.size(); }
    qint64 getBytesToDownload() const { return m_progress.bytesToDownload(); }

    /** What is in flight, for the log. */
    QString activity() const;
    /** Asks anew for the rest of what has not moved for some seconds. */
    void askAgain();

    /** A transfer on which nothing has moved for so long is given up and tried again. */
    void setStallTimeout(int milliseconds) { m_stallTimeoutMs = milliseconds; }
    /** How long a file waits before its first retry; the second waits twice as long, and so on. */
    void setRetryDelay(int milliseconds) { m_retryDelayMs = milliseconds; }

signals:
    /** fraction: 0 to 1. */
    void progressUpdate(float fraction, const QString& message);
    /** Speed and time left, for people; comes with progressUpdate(). */
    void transferUpdate(const QString& text);
    void finished();

private slots:
    void getFinished(QNetworkReply* reply);
    void onDataAvailable();
    void onRefilled();
    void onLimitChanged();
    void onHeldChanged(bool held);
    void onDownloadProgress();
    void onSslErrors(const QList<QSslError>& errors);
    void onFileSucceeded(const QString& url);
    void onFileCorrupt(const QString& url);
    void onFileFailed(const QString& url);

private:
    struct QueueEntry {
        IndexEntryPtr entry;
        /** Not after a patch has failed. */
        bool patchAllowed = true;
    };
    /** A file that has been requested and is not yet settled. */
    struct File {
        IndexEntryPtr entry;
        bool isPatch = false;
        qint64 received = 0;
    };
    /** A request in flight. */
    struct Transfer {
        QString url;
        QString fileName;
        QString patchBase; // empty for a whole file
        bool storageFailed = false;
        bool ended = false; // all has arrived, and some of it may have to be read
        qint64 received = 0;
        qint64 continuesAt = 0; // where the answer is to begin, until it has
        QElapsedTimer sinceProgress;

        bool isPatch() const { return !patchBase.isEmpty(); }
    };

    void goOn();
    void downloadNextEntries();
    bool takeNextEntry(QueueEntry* next, QString* fileName);
    void issueRequest(const QueueEntry& next, const QString& fileName);
    /** The row of the file that a patch can start from; null for none. */
    IndexEntryPtr findPatchBase(const QueueEntry& next);
    bool openTempFile(const Transfer& transfer, const IndexEntryPtr& entry);
    void get(Transfer transfer);
    void read(QNetworkReply* reply);
    bool checkContinuation(const QNetworkReply* reply, Transfer* transfer);
    bool canBeStopped(const Transfer& transfer) const;
    Transfer stop(QNetworkReply* reply);
    void settle(QNetworkReply* reply);
    void settleReply(QNetworkReply* reply, const Transfer& transfer);
    void handleTransferError(QNetworkReply* reply, const Transfer& transfer);
    void rescheduleFile(const QString& fileName);
    bool tryAgain(const QString& fileName, QHash<QString, int>* counts);
    void failFile(const QString& fileName, int error);
    void abortStalledTransfers();
    void updateProgress();
    void checkIfFinished();
    QString fileOfUrl(const QString& url) const { return m_files.value(url); }

    const QString m_baseUrl;
    const QString m_name;
    SafePath m_resFiles;
    QNetworkAccessManager* const m_manager;
    BackgroundSaver* const m_saver;

    QList<QueueEntry> m_queue;
    QMap<QString, File> m_inFlight; // by local file
    QHash<QNetworkReply*, Transfer> m_transfers;
    QList<Transfer> m_stopped;       // to go on when the limiter is let go
    int m_nextTurn = 0;              // who is the first to read
    QHash<QString, QString> m_files; // local file by URL
    QHash<QString, int> m_retries;
    QHash<QString, int> m_corruptCounts;
    QHash<QString, int> m_storeFailures;

    QueueProgress m_progress;
    int m_filesFailed = 0;
    int m_filesCorrupt = 0;
    int m_totalRetries = 0;
    int m_error = NoError;
    bool m_paused = false;
    bool m_running = false;
    int m_stallTimeoutMs = 30000;
    int m_retryDelayMs = 100;
    QTimer m_stallTimer;
    QElapsedTimer m_sinceAnyProgress;
};
