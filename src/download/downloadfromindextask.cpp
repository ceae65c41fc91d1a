#include "download/downloadfromindextask.h"

#include "download/bundleunpacker.h"
#include "download/downloader.h"
#include "download/downloadqueue.h"
#include "logging/formatmemory.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QtConcurrent>

namespace
{
/** How much of the progress belongs to the download of a bundle; the rest is unpacking. */
constexpr float bundleDownloadShare = 0.7F;
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
    m_lookAgain = false;
    m_scanWatcher.setFuture(
        QtConcurrent::run([this, folder = m_adopted] { return addMissingFilesToQueue(folder); }));
}

void DownloadFromIndexTask::onAddMissingFilesToQueueFinished()
{
    m_bundleMode = m_scanWatcher.result();
    if (m_plan.adoptedFiles > 0)
        emit filesAdopted(m_plan.adoptedFiles, m_plan.adoptedBytes);
    if (startsAgain())
        return;
    const bool isShort = m_plan.isShortOfRoom();
    if ((isShort || m_plan.isLong()) && m_review && !m_isReviewed) {
        m_state = State::Reviewing;
        m_review(this);
    } else if (isShort && !m_isReviewed) {
        failForLackOfRoom();
    } else {
        startDownload();
    }
}

void DownloadFromIndexTask::decide(Decision decision)
{
    if (m_state != State::Reviewing)
        return;
    m_isReviewed = true;
    if (decision == Decision::GiveUp) {
        failForLackOfRoom();
        return;
    }
    qInfo().noquote() << m_name << "starts as the player has decided";
    if (!m_marker && !m_plan.missing.isEmpty())
        m_marker = UpdateMarker::acquire(m_cacheFolder, &m_markerError);
    startDownload();
}

void DownloadFromIndexTask::failForLackOfRoom()
{
    failWithStorage(tr("Not enough room in %1: %2 needed, %3 free")
                        .arg(QDir::toNativeSeparators(m_cacheFolder), formatMemory(m_plan.roomNeeded),
                             formatMemory(m_plan.roomLeft.value_or(0))));
}

void DownloadFromIndexTask::startDownload()
{
    if (!m_markerError.isEmpty())
        failWithStorage(m_markerError);
    else if (m_bundleMode)
        addBundleChunksToQueue();
    else
        startQueue();
}

void DownloadFromIndexTask::adoptFrom(const AdoptedFolder& folder)
{
    m_adopted = folder;
    if (m_state == State::Scanning || m_state == State::FetchingBundleInfo) {
        m_lookAgain = true;
    } else if (m_state == State::Downloading) {
        m_lookAgain = true;
        m_queue->dropWaiting();
    }
}

/** Whether there is another folder to look into first. */
bool DownloadFromIndexTask::startsAgain()
{
    if (!m_lookAgain)
        return false;
    m_queue->clear();
    go();
    return true;
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
    m_bundleInfo = info;
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
    if (m_plan.isShortOfRoom(m_bundle->missingBytes())) {
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
    if (startsAgain())
        return;
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
    if (startsAgain())
        return;
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
    m_fraction = fraction;
    emit progressUpdate(fraction, message);
}

// Removes the chunks of a bundle, and waits until the disk has what was written.
void DownloadFromIndexTask::cleanUp()
{
    if (!isError() && m_plan.refused > 0)
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
    case State::Reviewing:
    case State::FetchingBundleInfo: // its end starts the queue
    case State::Unpacking:
    case State::Syncing:
    case State::Finished:
        break;
    }
}

QString DownloadFromIndexTask::activity() const
{
    const auto what = [this] {
        switch (m_state) {
        case State::Scanning:
            return QStringLiteral("the disk, while it looks what is missing");
        case State::Reviewing:
            return QStringLiteral("the player's decision");
        case State::FetchingBundleInfo:
            return m_bundleInfo ? m_bundleInfo->activity() : QString();
        case State::Downloading:
            return m_queue->activity();
        case State::Unpacking:
            return QStringLiteral("the bundle being unpacked, %1 done").arg(m_fraction);
        case State::Syncing:
            return QStringLiteral("the disk, while it writes what has come");
        case State::Done:
        case State::Finished:
            break;
        }
        return QStringLiteral("leave to end");
    };
    return QStringLiteral("%1%2: %3")
        .arg(taskName(), m_paused ? QStringLiteral(" (paused)") : QString(), what());
}

void DownloadFromIndexTask::askAgain()
{
    if (m_state == State::Downloading)
        m_queue->askAgain();
    else if (m_bundleInfo)
        m_bundleInfo->askAgain();
}
