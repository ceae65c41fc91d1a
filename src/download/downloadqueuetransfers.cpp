// The part of DownloadQueue that deals with requests in flight, from the choice of their address to their
// end.

#include "download/downloadqueue.h"

#include "download/backgroundsaver.h"
#include "download/downloader.h"
#include "download/patchmanager.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QFileInfo>
#include <QHttp2Configuration>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <limits>

namespace
{
constexpr int maxRetries = 10;

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
    reply->deleteLater();
    settleReply(reply, transfer);
    if (!m_running) // that was the last one, and the owner may be filling the queue again
        return;
    updateProgress();
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
