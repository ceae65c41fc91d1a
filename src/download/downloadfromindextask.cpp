#include "download/downloadfromindextask.h"

#include "download/cachescan.h"
#include "download/downloadqueue.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QtConcurrent>

DownloadFromIndexTask::DownloadFromIndexTask(const QString& name, const IndexPtr& index,
                                             const QString& baseUrl, const QString& cacheFolder,
                                             QObject* parent)
    : Task(parent), m_name(name), m_index(index), m_cacheFolder(cacheFolder),
      m_queue(new DownloadQueue(baseUrl, cacheFolder, name, this))
{
    setProperty("name", name);
    connect(m_queue, &DownloadQueue::progressUpdate, this, &DownloadFromIndexTask::progressUpdate);
    connect(m_queue, &DownloadQueue::finished, this, &DownloadFromIndexTask::onDownloadQueueFinished);
    connect(&m_scanWatcher, &QFutureWatcher<void>::finished, this,
            &DownloadFromIndexTask::onAddMissingFilesToQueueFinished);
    connect(&m_syncWatcher, &QFutureWatcher<bool>::finished, this, &DownloadFromIndexTask::done);
}

DownloadFromIndexTask::~DownloadFromIndexTask()
{
    m_abandoned = true;
    m_scanWatcher.waitForFinished();
    m_syncWatcher.waitForFinished();
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
    m_scanWatcher.setFuture(QtConcurrent::run([this] { addMissingFilesToQueue(); }));
}

// On a worker thread; the queue has not been started, so nobody else touches it.
void DownloadFromIndexTask::addMissingFilesToQueue()
{
    qDebug() << "addMissingFilesToQueue checking" << m_index->entries().size() << "files";
    QElapsedTimer timer;
    timer.start();
    recoverFromInterruption();
    const auto scan = scanCache(*m_index, m_cacheFolder);
    for (const auto& entry : scan.missing)
        m_queue->enqueue(entry);
    qDebug() << "addMissingFilesToQueue took" << static_cast<double>(timer.elapsed()) / 1000.0;

    m_refusedRows = scan.refused;
    if (m_refusedRows > 0) {
        qWarning().noquote() << m_name << "skips" << m_refusedRows
                             << "rows that point outside the cache, the first is" << scan.firstRefused;
    }
    if (!scan.missing.isEmpty())
        m_marker = UpdateMarker::acquire(m_cacheFolder, &m_markerError);
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
    if (!m_markerError.isEmpty()) {
        qWarning().noquote() << m_name << "cannot write to the cache:" << m_markerError;
        setError(DiskWriteError, m_markerError);
        done();
        return;
    }
    m_state = State::Downloading;
    if (!m_paused)
        m_queue->startDownload();
}

void DownloadFromIndexTask::onDownloadQueueFinished()
{
    int code = m_queue->getError();
    if (code == NoError && m_refusedRows > 0)
        code = DownloadError;
    setError(code);
    if (code != NoError)
        qWarning() << "DownloadFromIndexTask error code" << code;
    syncToDisk();
}

void DownloadFromIndexTask::syncToDisk()
{
    if (!m_marker) {
        done();
        return;
    }
    m_state = State::Syncing;
    m_syncWatcher.setFuture(QtConcurrent::run(
        [marker = std::move(m_marker)]() mutable { return UpdateMarker::release(std::move(marker)); }));
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
    case State::Syncing:
    case State::Finished:
        break;
    }
}
