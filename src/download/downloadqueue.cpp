#include "download/downloadqueue.h"

#include "download/backgroundsaver.h"
#include "download/downloader.h"
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
constexpr int reportIntervalMs = 125;

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
    m_queue.append(entry);
    ++m_filesEnqueued;
    m_bytesToDownload += entry->size;
}

void DownloadQueue::clear()
{
    for (const auto& entry : qAsConst(m_queue))
        m_bytesToDownload -= entry->size;
    m_filesEnqueued -= m_queue.size();
    m_queue.clear();
}

void DownloadQueue::startDownload()
{
    m_paused = false;
    m_running = true;
    m_sinceAnyProgress.start();
    m_stallTimer.start(qBound(10, m_stallTimeoutMs / 4, 1000));
    if (m_queue.isEmpty())
        qDebug().noquote() << m_name << "has no files to download";
    else
        qDebug().noquote() << m_name << "has" << m_queue.size() << "files to download";
    goOn();
}

void DownloadQueue::downloadNextEntries()
{
    IndexEntryPtr entry;
    QString fileName;
    while (!m_paused && m_error == NoError && m_transfers.size() < maxInFlight &&
           takeNextEntry(&entry, &fileName))
        issueRequest(entry, fileName);
}

// Skips what is there by now, be it from another task or from another row with the same content.
bool DownloadQueue::takeNextEntry(IndexEntryPtr* entry, QString* fileName)
{
    while (!m_queue.isEmpty()) {
        *entry = m_queue.takeFirst();
        *fileName = m_resFiles.resolve((*entry)->cachedName);
        if (fileName->isEmpty()) {
            qWarning().noquote() << m_name << "refuses a path outside the cache:" << (*entry)->cachedName;
            failFile((*entry)->cachedName, DownloadError);
            return false;
        }
        if (!m_inFlight.contains(*fileName) && !QFileInfo(*fileName).isFile())
            return true;
        m_bytesToDownload -= (*entry)->size;
    }
    return false;
}

void DownloadQueue::issueRequest(const IndexEntryPtr& entry, const QString& fileName)
{
    const QUrl url(m_baseUrl + entry->cachedName);
    Transfer transfer{url.toString(), fileName, 0, false, {}};
    qDebug().noquote() << "Downloading" << fileName;
    m_files.insert(transfer.url, fileName);
    if (!m_saver->createTempFile(transfer.url, fileName, entry->checksum)) {
        qWarning().noquote() << "No temp file for" << fileName;
        failFile(fileName, DiskWriteError);
        return;
    }

    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    request.setHttp2Configuration(wideWindows());
    m_inFlight.insert(fileName, entry);
    auto* reply = m_manager->get(request);
    transfer.sinceProgress.start();
    m_transfers.insert(reply, transfer);
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
        m_bytesReceived += bytes.size();
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
    if (transfer.storageFailed || reply->error() != QNetworkReply::NoError)
        m_bytesReceived -= transfer.received;

    if (transfer.storageFailed) {
        m_saver->cancel(transfer.url);
        onFileFailed(transfer.url);
    } else if (reply->error() == QNetworkReply::NoError) {
        m_saver->finalize(transfer.url);
    } else {
        handleTransferError(reply, transfer);
        m_saver->cancel(transfer.url);
    }

    updateProgress();
    reply->deleteLater();
    if (reply->error() == QNetworkReply::NoError) {
        goOn();
    } else {
        // A network that has just failed needs a moment, and so does the connection to close: a request that
        // is given to it now is lost with it.
        const int retries = m_retries.value(transfer.fileName);
        QTimer::singleShot(m_retryDelayMs * retries, this, &DownloadQueue::goOn);
    }
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
    const auto entry = m_inFlight.take(fileName);
    if (!entry) {
        qWarning().noquote() << "Couldn't reschedule" << fileName;
        return;
    }
    qDebug().noquote() << "Rescheduling" << fileName;
    m_queue.append(entry);
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
    ++m_filesDone;
    m_inFlight.remove(fileOfUrl(url));
    checkIfFinished();
}

void DownloadQueue::onFileCorrupt(const QString& url)
{
    const auto fileName = fileOfUrl(url);
    if (const auto entry = m_inFlight.value(fileName))
        m_bytesReceived -= entry->size;
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
    qDebug().noquote() << "Downloaded" << m_filesDone << "files (" << formatMemory(m_bytesReceived) << ")";
    if (m_totalRetries > 0 || m_filesFailed > 0) {
        qInfo().noquote() << m_name << "retries:" << m_totalRetries << "failed:" << m_filesFailed
                          << "corrupt:" << m_filesCorrupt;
    }
    emit finished();
}

void DownloadQueue::updateProgress()
{
    if (m_sinceReport.isValid() && !m_sinceReport.hasExpired(reportIntervalMs - 1))
        return;
    m_sinceReport.start();
    const float fraction = m_bytesToDownload > 0
                               ? static_cast<float>(m_bytesReceived) / static_cast<float>(m_bytesToDownload)
                               : 0.0F;
    emit progressUpdate(
        fraction,
        tr("%1 of %2 files (%3)").arg(m_filesDone).arg(m_filesEnqueued).arg(formatMemory(m_bytesReceived)));
}
