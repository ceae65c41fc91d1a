#include "download/downloadqueue.h"

#include "download/backgroundsaver.h"
#include "download/patchmanager.h"
#include "download/ratelimiter.h"
#include "logging/formatmemory.h"

#include <QDebug>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace
{
constexpr int maxRepeatsOfBadFile = 3;
} // namespace

DownloadQueue::DownloadQueue(const QString& baseUrl, const QString& cacheRoot, const QString& name,
                             QObject* parent)
    : QObject(parent), m_baseUrl(baseUrl), m_name(name), m_resFiles(cacheRoot + QStringLiteral("/ResFiles")),
      m_manager(new QNetworkAccessManager(this)), m_saver(new BackgroundSaver(this))
{
    connect(m_manager, &QNetworkAccessManager::finished, this, &DownloadQueue::getFinished);
    connect(m_saver, &BackgroundSaver::fileSucceeded, this, &DownloadQueue::onFileSucceeded);
    connect(m_saver, &BackgroundSaver::fileCorrupt, this, &DownloadQueue::onFileCorrupt);
    connect(m_saver, &BackgroundSaver::fileFailed, this, &DownloadQueue::onFileFailed);
    const auto* limiter = RateLimiter::instance();
    connect(limiter, &RateLimiter::refilled, this, &DownloadQueue::onRefilled);
    connect(limiter, &RateLimiter::limitChanged, this, &DownloadQueue::onLimitChanged);
    connect(limiter, &RateLimiter::heldChanged, this, &DownloadQueue::onHeldChanged);
    connect(&m_stallTimer, &QTimer::timeout, this, &DownloadQueue::abortStalledTransfers);
}

// The replies end with their manager, after this object's own part is gone.
DownloadQueue::~DownloadQueue() { m_manager->disconnect(this); }

void DownloadQueue::enqueue(const IndexEntryPtr& entry)
{
    m_queue.append({entry});
    m_progress.expect(entry->size);
}

void DownloadQueue::dropWaiting()
{
    m_queue.clear();
    checkIfFinished();
}

void DownloadQueue::clear()
{
    m_queue.clear();
    m_stopped.clear();
    m_files.clear();
    m_retries.clear();
    m_corruptCounts.clear();
    m_storeFailures.clear();
    m_progress.reset();
    m_filesFailed = 0;
    m_filesCorrupt = 0;
    m_totalRetries = 0;
    m_error = NoError;
}

void DownloadQueue::startDownload()
{
    m_paused = false;
    if (!std::exchange(m_running, true))
        PatchManager::instance()->resetStats();
    m_progress.start();
    m_sinceAnyProgress.start();
    m_stallTimer.start(qBound(10, m_stallTimeoutMs / 4, 1000));
    if (m_queue.isEmpty())
        qDebug().noquote() << m_name << "has no files to download";
    else
        qDebug().noquote() << m_name << "has" << m_queue.size() << "files to download";
    goOn();
}

void DownloadQueue::pauseDownload()
{
    m_paused = true;
    if (m_running) // else a worker may be filling the queue
        m_progress.stop();
}

void DownloadQueue::downloadNextEntries()
{
    QueueEntry next;
    QString fileName;
    const auto* limiter = RateLimiter::instance();
    while (!m_paused && !limiter->isHeld() && m_error == NoError &&
           m_transfers.size() < limiter->maxRequests() && takeNextEntry(&next, &fileName))
        issueRequest(next, fileName);
}

// Skips what is there by now, be it from another task or from another row with the same content.
bool DownloadQueue::takeNextEntry(QueueEntry* next, QString* fileName)
{
    while (!m_queue.isEmpty()) {
        *next = m_queue.takeFirst();
        *fileName = m_resFiles.resolve(next->entry->cachedName);
        if (fileName->isEmpty()) {
            qWarning().noquote() << m_name << "refuses a path outside the cache:" << next->entry->cachedName;
            failFile(next->entry->cachedName, DownloadError);
            return false;
        }
        if (!m_inFlight.contains(*fileName) && !QFileInfo(*fileName).isFile())
            return true;
        m_progress.spare(next->entry->size);
    }
    return false;
}

void DownloadQueue::goOn()
{
    if (!m_running)
        return;
    downloadNextEntries();
    checkIfFinished();
}

void DownloadQueue::rescheduleFile(const QString& fileName)
{
    const auto file = m_inFlight.take(fileName);
    if (!file.entry) {
        qWarning().noquote() << "Couldn't reschedule" << fileName;
        return;
    }
    qDebug().noquote() << "Rescheduling" << fileName;
    m_queue.append({file.entry, false});
}

void DownloadQueue::failFile(const QString& fileName, int error)
{
    m_error = error;
    m_inFlight.remove(fileName);
    ++m_filesFailed;
}

bool DownloadQueue::tryAgain(const QString& fileName, QHash<QString, int>* counts)
{
    if ((*counts)[fileName]++ >= maxRepeatsOfBadFile)
        return false;
    rescheduleFile(fileName);
    return true;
}

void DownloadQueue::onFileSucceeded(const QString& url)
{
    const auto file = m_inFlight.take(fileOfUrl(url));
    m_progress.fileDone();
    if (file.isPatch) {
        PatchManager::instance()->countApplied();
        m_progress.spare(file.entry->size - file.received);
    }
    checkIfFinished();
}

void DownloadQueue::onFileCorrupt(const QString& url)
{
    const auto fileName = fileOfUrl(url);
    const auto file = m_inFlight.value(fileName);
    m_progress.lose(file.received);
    if (file.isPatch)
        PatchManager::instance()->countFailed();
    if (!tryAgain(fileName, &m_corruptCounts)) {
        ++m_filesCorrupt;
        qWarning().noquote() << "Giving up on a file that stays corrupt:" << fileName;
        failFile(fileName, DownloadError);
    }
    goOn();
}

void DownloadQueue::onFileFailed(const QString& url)
{
    const auto fileName = fileOfUrl(url);
    if (!m_inFlight.contains(fileName)) // it never got as far as a request
        return;
    if (!tryAgain(fileName, &m_storeFailures)) {
        qWarning().noquote() << "Giving up on a file that cannot be stored:" << fileName;
        failFile(fileName, DiskWriteError);
    }
    goOn();
}

void DownloadQueue::checkIfFinished()
{
    if (!m_running || !m_transfers.isEmpty() || !m_inFlight.isEmpty())
        return;
    if (m_error == NoError && !m_queue.isEmpty())
        return;
    m_running = false;
    m_stallTimer.stop();
    m_progress.stop();
    qDebug().noquote() << "Downloaded" << m_progress.filesDone() << "files ("
                       << formatMemory(m_progress.bytesReceived()) << ")";
    if (m_progress.filesDone() > 0)
        qInfo().noquote() << m_name << "took" << m_progress.summary();
    if (m_totalRetries > 0 || m_filesFailed > 0) {
        qInfo().noquote() << m_name << "retries:" << m_totalRetries << "failed:" << m_filesFailed
                          << "corrupt:" << m_filesCorrupt;
    }
    PatchManager::instance()->logStats(m_name);
    emit transferUpdate(QString());
    emit finished();
}

void DownloadQueue::updateProgress()
{
    if (!m_progress.isReportDue())
        return;
    emit progressUpdate(m_progress.fraction(), m_progress.text());
    emit transferUpdate(m_progress.detail());
}
