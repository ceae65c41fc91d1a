// The part of DownloadFromIndexTask that finds out what is missing. It runs on a worker thread.

#include "download/downloadfromindextask.h"

#include "download/downloadqueue.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>

namespace
{
/** More than so many percent of the files, or of their bytes, have to be missing for a bundle. */
constexpr int bundleThreshold = 90;
} // namespace

// On a worker thread; the queue has not been started, so nobody else touches it. Returns whether the bundle
// is to be downloaded instead.
bool DownloadFromIndexTask::addMissingFilesToQueue(const AdoptedFolder& folder)
{
    qDebug() << "addMissingFilesToQueue checking" << m_index->entries().size() << "files";
    QElapsedTimer timer;
    timer.start();
    if (m_bundlesRefused && m_bundle)
        m_bundle->removeChunks();
    recoverFromInterruption();
    m_plan = planDownload(*m_index, m_cacheFolder);
    if (!folder.path.isEmpty() && !m_plan.missing.isEmpty())
        adoptFilesFrom(folder);
    for (const auto& entry : qAsConst(m_plan.missing))
        m_queue->enqueue(entry);
    qDebug() << "addMissingFilesToQueue took" << static_cast<double>(timer.elapsed()) / 1000.0;

    if (m_plan.refused > 0) {
        qWarning().noquote() << m_name << "skips" << m_plan.refused
                             << "rows that point outside the cache, the first is" << m_plan.firstRefused;
    }
    const bool byBundle = wantsBundle();
    if (byBundle) {
        qDebug().noquote() << "Downloading bundle for" << m_index->getName();
        m_queue->clear();
    }
    if (!m_plan.missing.isEmpty() && !m_marker && !m_plan.isShortOfRoom())
        m_marker = UpdateMarker::acquire(m_cacheFolder, &m_markerError);
    return byBundle;
}

// The cache is written to from here on. A short file system may still have room for links.
void DownloadFromIndexTask::adoptFilesFrom(const AdoptedFolder& folder)
{
    if (!m_marker)
        m_marker = UpdateMarker::acquire(m_cacheFolder, &m_markerError);
    if (!m_marker)
        return;
    const auto tell = [this, text = tr("Looking for files in %1").arg(QDir::toNativeSeparators(folder.path))](
                          float fraction) {
        QMetaObject::invokeMethod(this, [=] { emit progressUpdate(fraction, text); });
    };
    tell(0);
    const auto adoption =
        adoptFiles(folder, m_plan.missing, m_cacheFolder, !m_plan.isShortOfRoom(), tell, m_abandoned);
    updatePlan(&m_plan, adoption, m_cacheFolder);
}

bool DownloadFromIndexTask::wantsBundle() const
{
    if (m_bundlesRefused || !Bundle(m_index, m_cacheFolder).isPossible() || m_plan.missing.isEmpty())
        return false;
    const qint64 filePercent = qint64(m_plan.missing.size()) * 100 / m_plan.checked;
    const qint64 bytePercent = m_plan.checkedBytes > 0 ? m_plan.missingBytes * 100 / m_plan.checkedBytes : 0;
    return filePercent > bundleThreshold || bytePercent > bundleThreshold;
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
