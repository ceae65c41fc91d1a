// The part of DownloadQueue that deals with requests in flight, from the choice of their address to their
// end.

#include "download/downloadqueue.h"

#include "download/backgroundsaver.h"
#include "download/downloader.h"
#include "download/patchmanager.h"
#include "download/ratelimiter.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QFileInfo>
#include <QHttp2Configuration>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <limits>

namespace
{
constexpr int maxRetries = 10;
constexpr int impatientMs = 3000;

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
    Transfer transfer;
    transfer.fileName = fileName;
    if (const auto base = findPatchBase(next)) {
        transfer.patchBase = m_resFiles.resolve(base->cachedName);
        transfer.url =
            QUrl(QStringLiteral("%1patches/%2_%3.patch").arg(m_baseUrl, base->cachedName, entry->checksum))
                .toString();
        qDebug().noquote() << "Patching" << fileName << "from" << base->cachedName;
        PatchManager::instance()->countRequested();
    } else {
        transfer.url = QUrl(m_baseUrl + entry->cachedName).toString();
        qDebug().noquote() << "Downloading" << fileName;
    }
    if (!openTempFile(transfer, entry)) {
        qWarning().noquote() << "No temp file for" << fileName;
        failFile(fileName, DiskWriteError);
        return;
    }
    m_files.insert(transfer.url, fileName);
    m_inFlight.insert(fileName, {entry, transfer.isPatch()});
    get(transfer);
}

bool DownloadQueue::openTempFile(const Transfer& transfer, const IndexEntryPtr& entry)
{
    if (!transfer.isPatch())
        return m_saver->createTempFile(transfer.url, transfer.fileName, entry->checksum);
    return m_saver->createTempFileForPatch(transfer.url, transfer.fileName, static_cast<size_t>(entry->size),
                                           entry->checksum, transfer.patchBase);
}

// The toolkit reads HTTP/2 as fast as it comes, so nothing holds the sender back there.
void DownloadQueue::get(Transfer transfer)
{
    const auto* limiter = RateLimiter::instance();
    QNetworkRequest request(QUrl(transfer.url));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, !limiter->isLimited());
    request.setHttp2Configuration(wideWindows());
    transfer.continuesAt = transfer.received;
    if (transfer.continuesAt > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(transfer.continuesAt) + '-');
        request.setRawHeader("Accept-Encoding", "identity");
    }
    auto* reply = m_manager->get(request);
    reply->setReadBufferSize(limiter->bufferSize());
    auto& stored = *m_transfers.insert(reply, transfer);
    stored.sinceProgress.start();
    connect(reply, &QNetworkReply::readyRead, this, &DownloadQueue::onDataAvailable);
    connect(reply, &QNetworkReply::downloadProgress, this, &DownloadQueue::onDownloadProgress);
    connect(reply, &QNetworkReply::sslErrors, this, &DownloadQueue::onSslErrors);
}

void DownloadQueue::onDataAvailable() { read(qobject_cast<QNetworkReply*>(sender())); }

// Each time another transfer reads first, so that none is left behind.
void DownloadQueue::onRefilled()
{
    auto replies = m_transfers.keys();
    if (replies.isEmpty())
        return;
    std::rotate(replies.begin(), replies.begin() + (m_nextTurn++ % replies.size()), replies.end());
    for (auto* reply : qAsConst(replies))
        read(reply);
}

void DownloadQueue::onLimitChanged()
{
    const auto replies = m_transfers.keys();
    for (auto* reply : replies)
        reply->setReadBufferSize(RateLimiter::instance()->bufferSize());
}

void DownloadQueue::onHeldChanged(bool held)
{
    if (held) {
        const auto replies = m_transfers.keys();
        for (auto* reply : replies) {
            if (canBeStopped(m_transfers.value(reply)))
                m_stopped << stop(reply);
        }
        return;
    }
    m_sinceAnyProgress.start();
    for (const auto& transfer : std::exchange(m_stopped, {}))
        get(transfer);
    goOn();
}

// There is no rest to ask for of what has come as a whole.
bool DownloadQueue::canBeStopped(const Transfer& transfer) const
{
    const auto entry = m_inFlight.value(transfer.fileName).entry;
    return !transfer.ended && (transfer.isPatch() || (entry && transfer.received < entry->size));
}

/** Ends the request; what has been read of it is kept for another one. */
DownloadQueue::Transfer DownloadQueue::stop(QNetworkReply* reply)
{
    auto transfer = m_transfers.take(reply);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    return transfer;
}

/** Whether what comes is what follows. A server that cannot do that sends the file from its beginning. */
bool DownloadQueue::checkContinuation(const QNetworkReply* reply, Transfer* transfer)
{
    const auto from = std::exchange(transfer->continuesAt, 0);
    const auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const auto range = "bytes " + QByteArray::number(from) + '-';
    if (from == 0 || (status == 206 && reply->rawHeader("Content-Range").startsWith(range)))
        return true;
    m_progress.lose(std::exchange(transfer->received, 0));
    return status == 200 && openTempFile(*transfer, m_inFlight.value(transfer->fileName).entry);
}

void DownloadQueue::read(QNetworkReply* reply)
{
    auto* limiter = RateLimiter::instance();
    const auto transfer = m_transfers.find(reply);
    if (transfer == m_transfers.end() || transfer->storageFailed)
        return;
    if (limiter->isLimited() && canBeStopped(*transfer) &&
        reply->attribute(QNetworkRequest::Http2WasUsedAttribute).toBool()) {
        get(stop(reply)); // goes on where it stood, over a connection that can be held back
        return;
    }
    try {
        const bool isError = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() >= 400;
        const auto bytes = reply->read(limiter->take(reply->bytesAvailable(), RateLimiter::Kind::File));
        if (!bytes.isEmpty() && !isError) {
            const bool goesOn = checkContinuation(reply, &*transfer);
            transfer->received += bytes.size();
            m_progress.receive(bytes.size());
            transfer->sinceProgress.start();
            m_sinceAnyProgress.start();
            transfer->storageFailed = !goesOn || !m_saver->addData(transfer->url, bytes);
        }
    } catch (const std::bad_alloc& error) {
        qWarning() << "DownloadQueue::onDataAvailable:" << error.what();
    }
    if (transfer->ended && (transfer->storageFailed || reply->bytesAvailable() == 0))
        settle(reply);
    else if (transfer->storageFailed)
        reply->abort(); // ends in getFinished()
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
    const auto transfer = m_transfers.find(reply);
    if (transfer == m_transfers.end())
        return;
    transfer->ended = true;
    if (reply->error() == QNetworkReply::NoError && !transfer->storageFailed)
        read(reply);
    else
        settle(reply);
}

void DownloadQueue::settle(QNetworkReply* reply)
{
    const auto transfer = m_transfers.take(reply);
    m_sinceAnyProgress.start();
    reply->deleteLater();
    settleReply(reply, transfer);
    if (!m_running) // that was the last one, and the owner may be filling the queue again
        return;
    updateProgress();
    if (reply->error() == QNetworkReply::NoError || transfer.isPatch()) {
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
        if (transfer.isPatch())
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
    if (transfer.isPatch()) {
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
        if (transfer.key()->bytesAvailable() > 0) // it waits for us, and not for the server
            continue;
        const bool waiting = transfer->received == 0 && !m_sinceAnyProgress.hasExpired(m_stallTimeoutMs);
        if (!waiting && transfer->sinceProgress.hasExpired(m_stallTimeoutMs))
            stalled << transfer.key();
    }
    for (auto* reply : qAsConst(stalled)) {
        qWarning().noquote() << "No data for too long from" << reply->url().toString();
        reply->abort();
    }
}

QString DownloadQueue::activity() const
{
    auto text = QStringLiteral("%1 files to go, %2 bytes received")
                    .arg(m_queue.size())
                    .arg(m_progress.bytesReceived());
    if (!m_stopped.isEmpty())
        text += QStringLiteral(", %1 requests held").arg(m_stopped.size());
    if (m_transfers.isEmpty())
        return m_inFlight.isEmpty() ? text
                                    : text + QStringLiteral(", %1 files being stored").arg(m_inFlight.size());
    const auto longest =
        std::max_element(m_transfers.cbegin(), m_transfers.cend(), [](const Transfer& a, const Transfer& b) {
            return a.sinceProgress.elapsed() < b.sinceProgress.elapsed();
        });
    return text +
           QStringLiteral(", %1 requests in flight, among them %2").arg(m_transfers.size()).arg(longest->url);
}

void DownloadQueue::askAgain()
{
    const auto replies = m_transfers.keys();
    for (auto* reply : replies) {
        const auto& transfer = m_transfers[reply];
        if (!transfer.ended && reply->bytesAvailable() == 0 &&
            transfer.sinceProgress.hasExpired(impatientMs)) {
            qInfo().noquote() << "Asking again for" << transfer.url << "from" << transfer.received;
            get(stop(reply));
        }
    }
    goOn();
}
