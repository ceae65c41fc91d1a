#include "download/downloadfromindextask.h"

#include "cache/freespace.h"
#include "download/bundleunpacker.h"
#include "download/cachescan.h"
#include "download/downloader.h"
#include "download/downloadqueue.h"
#include "logging/formatmemory.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QtConcurrent>

namespace
{
/** More than so many percent of the files, or of their bytes, have to be missing for a bundle. */
constexpr int bundleThreshold = 90;
/** How much of the progress belongs to the download of a bundle; the rest is unpacking. */
constexpr float bundleDownloadShare = 0.7F;

/** What the files take on the disk, each content once. */
qint64 roomFor(const QVector<IndexEntryPtr>& files)
{
    constexpr qint64 diskBlock = 4096;
    qint64 bytes = 0;
    QSet<QString> contents;
    for (const auto& file : files) {
        if (!contents.contains(file->cachedName))
            bytes += (file->size + diskBlock - 1) / diskBlock * diskBlock;
        contents.insert(file->cachedName);
    }
    return bytes;
}
} // namespace

DownloadFromIndexTask::DownloadFromIndexTask(const QString& name, const IndexPtr& index,
                                             const QString& baseUrl, const QString& cacheFolder,
                                             QObject* parent)
    : Task(parent), m_name(name), m_index(index), m_baseUrl(baseUrl), m_cacheFolder(cacheFolder),
      m_queue(new DownloadQueue(baseUrl, cacheFolder, name, this))
{
    setProperty("name", name);
    connect(m_queue, &DownloadQueue::progressUpdate, this, &DownloadFromIndexTask::onProgressUpdate);
    connect(m_queue, &DownloadQueue::transferUpdate, this, &DownloadFromIndexTask::transferUpdate);
    connect(m_queue, &DownloadQueue::finished, this, &DownloadFromIndexTask::onDownloadQueueFinished);
    connect(&m_scanWatcher, &QFutureWatcher<bool>::finished, this,
            &DownloadFromIndexTask::onAddMissingFilesToQueueFinished);
    connect(&m_unpackWatcher, &QFutureWatcher<bool>::finished, this,
            &DownloadFromIndexTask::onUnpackBundleFinished);
    connect(&m_cleanUpWatcher, &QFutureWatcher<void>::finished, this, &DownloadFromIndexTask::done);
}

DownloadFromIndexTask::~DownloadFromIndexTask()
{
    m_abandoned = true;
    if (m_unpacker)
        m_unpacker->abandon();
    m_scanWatcher.waitForFinished();
    m_unpackWatcher.waitForFinished();
    m_cleanUpWatcher.waitForFinished();
}

void DownloadFromIndexTask::go()
{
    if (!m_index) {
        const auto text = QStringLiteral("Invalid index for %1").arg(taskName());
        ExceptionLogger::instance()->logException(QStringLiteral("InvalidIndex"), text, QStringLiteral("go"),
                                                  QStringLiteral("downloadfromindextask"), __LINE__);
        setError(DownloadError, text);
        done();
        return;
    }
    m_state = State::Scanning;
    m_scanWatcher.setFuture(QtConcurrent::run([this] { return addMissingFilesToQueue(); }));
}

// On a worker thread; the queue has not been started, so nobody else touches it. Returns whether the bundle
// is to be downloaded instead.
bool DownloadFromIndexTask::addMissingFilesToQueue()
{
    qDebug() << "addMissingFilesToQueue checking" << m_index->entries().size() << "files";
    QElapsedTimer timer;
    timer.start();
    if (m_bundlesRefused && m_bundle)
        m_bundle->removeChunks();
    recoverFromInterruption();
    const auto scan = scanCache(*m_index, m_cacheFolder);
    for (const auto& entry : scan.missing)
        m_queue->enqueue(entry);
    m_missingBytes = roomFor(scan.missing);
    m_freeBytes = scan.missing.isEmpty() ? std::nullopt : freeSpace(m_cacheFolder);
    qDebug() << "addMissingFilesToQueue took" << static_cast<double>(timer.elapsed()) / 1000.0;

    m_refusedRows = scan.refused;
    if (m_refusedRows > 0) {
        qWarning().noquote() << m_name << "skips" << m_refusedRows
                             << "rows that point outside the cache, the first is" << scan.firstRefused;
    }
    const bool byBundle = wantsBundle(scan.checked, scan.checkedBytes);
    if (byBundle) {
        qDebug().noquote() << "Downloading bundle for" << m_index->getName();
        m_queue->clear();
    }
    if (!scan.missing.isEmpty() && !m_marker && !isShortOfRoom(0))
        m_marker = UpdateMarker::acquire(m_cacheFolder, &m_markerError);
    return byBundle;
}

bool DownloadFromIndexTask::wantsBundle(int checked, qint64 checkedBytes) const
{
    if (m_bundlesRefused || !Bundle(m_index, m_cacheFolder).isPossible() || m_queue->getSize() == 0)
        return false;
    const qint64 filePercent = qint64(m_queue->getSize()) * 100 / checked;
    const qint64 bytePercent = checkedBytes > 0 ? m_queue->getBytesToDownload() * 100 / checkedBytes : 0;
    return filePercent > bundleThreshold || bytePercent > bundleThreshold;
}

bool DownloadFromIndexTask::isShortOfRoom(qint64 moreBytes) const
{
    return m_freeBytes && *m_freeBytes < m_missingBytes + moreBytes;
}

void DownloadFromIndexTask::recoverFromInterruption()
{
    QHash<QString, QString> checksums;
    UpdateMarker::recoverAfterCrash(
        m_cacheFolder,
        [&](const QString& cachedName) {
            if (checksums.isEmpty()) {
                for (const auto& entry : m_index->entries())
                    checksums.insert(entry->cachedName, entry->checksum);
            }
            return checksums.value(cachedName);
        },
        m_abandoned);
}

void DownloadFromIndexTask::onAddMissingFilesToQueueFinished()
{
    m_bundleMode = m_scanWatcher.result();
    if (isShortOfRoom(0)) {
        failWithStorage(tr("Not enough room in %1: %2 needed, %3 free")
                            .arg(QDir::toNativeSeparators(m_cacheFolder), formatMemory(m_missingBytes),
                                 formatMemory(*m_freeBytes)));
    } else if (!m_markerError.isEmpty()) {
        failWithStorage(m_markerError);
    } else if (m_bundleMode) {
        addBundleChunksToQueue();
    } else {
        startQueue();
    }
}

void DownloadFromIndexTask::failWithStorage(const QString& reason)
{
    qWarning().noquote() << m_name << "cannot write to the cache:" << reason;
    setError(DiskWriteError, reason);
    cleanUp();
}

void DownloadFromIndexTask::addBundleChunksToQueue()
{
    m_state = State::FetchingBundleInfo;
    m_bundle.emplace(m_index, m_cacheFolder);
    auto* info = new Downloader(m_bundle->listUrl(m_baseUrl), this);
    info->setProperty("name", QStringLiteral("Bundle info downloader for %1").arg(m_index->getName()));
    connect(info, &Task::finished, this, &DownloadFromIndexTask::onBundleInfoDownloadFinished);
    info->go();
}

void DownloadFromIndexTask::onBundleInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError()) {
        qWarning().noquote() << "Couldn't get bundle info for" << m_index->getName();
        goOnWithoutBundle();
        return;
    }
    const auto* info = qobject_cast<Downloader*>(task);
    const auto problem = m_bundle->readList(info ? info->getContents() : QByteArray());
    if (!problem.isEmpty()) {
        qWarning().noquote() << "Bundle info invalid for" << m_index->getName() << "-" << problem;
        goOnWithoutBundle();
        return;
    }
    if (isShortOfRoom(m_bundle->missingBytes())) {
        qInfo().noquote() << m_name << "has room for the files, but not for their bundle beside them";
        goOnWithoutBundle();
        return;
    }
    for (const auto& chunk : m_bundle->chunkEntries())
        m_queue->enqueue(chunk);
    startQueue();
}

void DownloadFromIndexTask::startQueue()
{
    m_state = State::Downloading;
    if (!m_paused)
        m_queue->startDownload();
}

void DownloadFromIndexTask::goOnWithoutBundle()
{
    m_bundlesRefused = true;
    m_queue->clear();
    go();
}

void DownloadFromIndexTask::onDownloadQueueFinished()
{
    const int code = m_queue->getError();
    if (m_bundleMode && code != NoError) {
        qWarning() << "Bundle download failed, rescanning missing files";
        goOnWithoutBundle();
    } else if (m_bundleMode) {
        unpackBundle();
    } else {
        if (code != NoError)
            qWarning() << "DownloadFromIndexTask error code" << code;
        setError(code);
        cleanUp();
    }
}

void DownloadFromIndexTask::unpackBundle()
{
    m_state = State::Unpacking;
    m_unpacker = std::make_unique<BundleUnpacker>();
    connect(m_unpacker.get(), &BundleUnpacker::progressUpdate, this,
            &DownloadFromIndexTask::onProgressUpdate);
    m_unpackWatcher.setFuture(QtConcurrent::run([this] {
        return m_unpacker->start(m_index, m_cacheFolder + QStringLiteral("/ResFiles"), m_bundle->chunks(),
                                 m_bundle->chunkBase());
    }));
}

// What could not be unpacked is fetched file by file: waiting for the next refresh would not make the bundle
// any better.
void DownloadFromIndexTask::onUnpackBundleFinished()
{
    m_unpacker.reset();
    if (m_unpackWatcher.result())
        cleanUp();
    else
        goOnWithoutBundle();
}

void DownloadFromIndexTask::onProgressUpdate(float fraction, const QString& message)
{
    if (m_state == State::Unpacking)
        fraction = bundleDownloadShare + fraction * (1 - bundleDownloadShare);
    else if (m_bundleMode)
        fraction *= bundleDownloadShare;
    emit progressUpdate(fraction, message);
}

// Removes the chunks of a bundle, and waits until the disk has what was written.
void DownloadFromIndexTask::cleanUp()
{
    if (!isError() && m_refusedRows > 0)
        setError(DownloadError);
    // Chunks may also be those of a launcher that was killed just before this.
    const Bundle bundle(m_index, m_cacheFolder);
    const bool removeChunks = !isError() && bundle.isPossible() && bundle.hasChunks();
    if (!m_marker && !removeChunks) {
        done();
        return;
    }
    m_state = State::Syncing;
    m_cleanUpWatcher.setFuture(QtConcurrent::run([this, bundle, removeChunks] {
        if (removeChunks)
            bundle.removeChunks();
        if (m_marker)
            UpdateMarker::release(std::move(m_marker));
    }));
}

void DownloadFromIndexTask::done()
{
    m_state = State::Done;
    if (!m_paused)
        finish();
}

void DownloadFromIndexTask::finish()
{
    m_state = State::Finished;
    emit finished(this);
}

void DownloadFromIndexTask::pause()
{
    qDebug().noquote() << taskName() << "Pausing";
    m_paused = true;
    m_queue->pauseDownload();
}

void DownloadFromIndexTask::resume()
{
    qDebug().noquote() << taskName() << "Resuming";
    if (!std::exchange(m_paused, false))
        return;
    switch (m_state) {
    case State::Scanning:
        qDebug() << "still scanning for files";
        break;
    case State::Downloading:
        m_queue->startDownload();
        break;
    case State::Done:
        finish();
        break;
    case State::FetchingBundleInfo: // its end starts the queue
    case State::Unpacking:
    case State::Syncing:
    case State::Finished:
        break;
    }
}
