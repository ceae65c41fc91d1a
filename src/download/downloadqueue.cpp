#include "download/downloadqueue.h"

#include "download/backgroundsaver.h"
#include "download/downloader.h"
#include "download/patchmanager.h"
#include "logging/formatmemory.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QFileInfo>
#include <QHttp2Configuration>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace
{
constexpr int maxInFlight = 10;
constexpr int maxRetries = 10;
constexpr int maxRepeatsOfBadFile = 3;

/** The toolkit's own windows of 64 KB make the server wait for us after every few frames. */
QHttp2Configuration wideWindows()
{
    QHttp2Configuration configuration;
    configuration.setSessionReceiveWindowSize(64U << 20U);
    configuration.setStreamReceiveWindowSize(8U << 20U);
    return configuration;
}

bool isFinal(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::ConnectionRefusedError || error == QNetworkReply::ContentAccessDenied ||
           error == QNetworkReply::ContentOperationNotPermittedError ||
           error == QNetworkReply::ContentNotFoundError;
}
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
    connect(&m_stallTimer, &QTimer::timeout, this, &DownloadQueue::abortStalledTransfers);
}

// The replies end with their manager, after this object's own part is gone.
DownloadQueue::~DownloadQueue() { m_manager->disconnect(this); }

void DownloadQueue::enqueue(const IndexEntryPtr& entry)
{
    m_queue.append({entry});
    m_progress.expect(entry->size);
}

void DownloadQueue::clear()
{
    m_queue.clear();
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
    while (!m_paused && m_error == NoError && m_transfers.size() < maxInFlight &&
           takeNextEntry(&next, &fileName))
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

IndexEntryPtr DownloadQueue::findPatchBase(const QueueEntry& next)
{
    const auto base =
        next.patchAllowed ? PatchManager::instance()->getPatchBase(next.entry) : IndexEntryPtr();
    if (!base)
        return base;
    const auto baseFile = m_resFiles.resolve(base->cachedName);
    if (!baseFile.isEmpty() && QFileInfo(baseFile).isFile())
        return base;
    qDebug().noquote() << "Patch base does not exist for" << next.entry->name;
    return IndexEntryPtr();
}

void DownloadQueue::issueRequest(const QueueEntry& next, const QString& fileName)
{
    const auto& entry = next.entry;
    const auto base = findPatchBase(next);
    Transfer transfer;
    transfer.fileName = fileName;
    transfer.isPatch = bool(base);
    bool prepared = false;
    if (base) {
        transfer.url =
            QUrl(QStringLiteral("%1patches/%2_%3.patch").arg(m_baseUrl, base->cachedName, entry->checksum))
                .toString();
        qDebug().noquote() << "Patching" << fileName << "from" << base->cachedName;
        PatchManager::instance()->countRequested();
        prepared = m_saver->createTempFileForPatch(transfer.url, fileName, static_cast<size_t>(entry->size),
                                                   entry->checksum, m_resFiles.resolve(base->cachedName));
    } else {
        transfer.url = QUrl(m_baseUrl + entry->cachedName).toString();
        qDebug().noquote() << "Downloading" << fileName;
        prepared = m_saver->createTempFile(transfer.url, fileName, entry->checksum);
    }
    if (!prepared) {
        qWarning().noquote() << "No temp file for" << fileName;
        failFile(fileName, DiskWriteError);
        return;
    }
    m_files.insert(transfer.url, fileName);
    m_inFlight.insert(fileName, {entry, transfer.isPatch});
    get(transfer);
}

void DownloadQueue::get(const Transfer& transfer)
{
    QNetworkRequest request(QUrl(transfer.url));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    request.setHttp2Configuration(wideWindows());
    auto* reply = m_manager->get(request);
    auto& stored = *m_transfers.insert(reply, transfer);
    stored.sinceProgress.start();
    connect(reply, &QNetworkReply::readyRead, this, &DownloadQueue::onDataAvailable);
    connect(reply, &QNetworkReply::downloadProgress, this, &DownloadQueue::onDownloadProgress);
    connect(reply, &QNetworkReply::sslErrors, this, &DownloadQueue::onSslErrors);
}

void DownloadQueue::onDataAvailable()
{
    auto* reply = qobject_cast<QNetworkReply*>(sender());
    const auto transfer = m_transfers.find(reply);
    if (transfer == m_transfers.end() || transfer->storageFailed)
        return;
    try {
        const auto bytes = reply->readAll();
        transfer->received += bytes.size();
        m_progress.receive(bytes.size());
        transfer->sinceProgress.start();
        m_sinceAnyProgress.start();
        if (!m_saver->addData(transfer->url, bytes)) {
            transfer->storageFailed = true;
            reply->abort(); // ends in getFinished()
        }
    } catch (const std::bad_alloc& error) {
        qWarning() << "DownloadQueue::onDataAvailable:" << error.what();
    }
}

void DownloadQueue::onDownloadProgress() { updateProgress(); }

void DownloadQueue::onSslErrors(const QList<QSslError>& errors)
{
    const auto* reply = qobject_cast<QNetworkReply*>(sender());
    qWarning().noquote() << "DownloadQueue got ssl errors on" << (reply ? reply->url().toString() : QString())
                         << describeSslErrors(errors);
}

void DownloadQueue::getFinished(QNetworkReply* reply)
{
    if (!m_transfers.contains(reply))
        return;
    const auto transfer = m_transfers.take(reply);
    m_sinceAnyProgress.start();
    settleReply(reply, transfer);
    updateProgress();
    reply->deleteLater();
    if (reply->error() == QNetworkReply::NoError || transfer.isPatch) {
        goOn();
    } else {
        // A network that has just failed needs a moment, and so does the connection to close: a request that
        // is given to it now is lost with it.
        const int retries = m_retries.value(transfer.fileName);
        QTimer::singleShot(m_retryDelayMs * retries, this, &DownloadQueue::goOn);
    }
}

void DownloadQueue::settleReply(QNetworkReply* reply, const Transfer& transfer)
{
    if (!transfer.storageFailed && reply->error() == QNetworkReply::NoError) {
        m_inFlight[transfer.fileName].received = transfer.received;
        if (transfer.isPatch)
            m_saver->finalizePatch(transfer.url);
        else
            m_saver->finalize(transfer.url);
        return;
    }
    m_progress.lose(transfer.received);
    if (transfer.storageFailed) {
        m_saver->cancel(transfer.url);
        onFileFailed(transfer.url);
        return;
    }
    if (transfer.isPatch) {
        qDebug().noquote() << "No patch for" << transfer.fileName << reply->errorString();
        PatchManager::instance()->countFailed();
        rescheduleFile(transfer.fileName);
    } else {
        handleTransferError(reply, transfer);
    }
    m_saver->cancel(transfer.url);
}

void DownloadQueue::goOn()
{
    downloadNextEntries();
    checkIfFinished();
}

void DownloadQueue::handleTransferError(QNetworkReply* reply, const Transfer& transfer)
{
    auto& retries = m_retries[transfer.fileName];
    if (!isFinal(reply->error()) && retries < maxRetries) {
        qDebug().noquote() << "Trying again after" << reply->errorString();
        ++retries;
        if (m_totalRetries < std::numeric_limits<int>::max())
            ++m_totalRetries;
        rescheduleFile(transfer.fileName);
        return;
    }
    ExceptionLogger::instance()->logException(QStringLiteral("DownloadFailed"),
                                              QStringLiteral("%1 downloading %2 after %3 retries")
                                                  .arg(reply->errorString(), transfer.fileName)
                                                  .arg(retries),
                                              QStringLiteral("getFinished"), QStringLiteral("downloadqueue"),
                                              __LINE__);
    failFile(transfer.fileName, DownloadError);
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

// A request may wait long for its turn on a busy connection. It counts as stalled only when nothing else
// moves either.
void DownloadQueue::abortStalledTransfers()
{
    QList<QNetworkReply*> stalled;
    for (auto transfer = m_transfers.cbegin(); transfer != m_transfers.cend(); ++transfer) {
        const bool waiting = transfer->received == 0 && !m_sinceAnyProgress.hasExpired(m_stallTimeoutMs);
        if (!waiting && transfer->sinceProgress.hasExpired(m_stallTimeoutMs))
            stalled << transfer.key();
    }
    for (auto* reply : qAsConst(stalled)) {
        qWarning().noquote() << "No data for too long from" << reply->url().toString();
        reply->abort();
    }
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
