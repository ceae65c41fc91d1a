#include "maintenance/verification.h"

#include "cache/md5many.h"
#include "cache/safepath.h"
#include "cache/updatemarker.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QtConcurrent>

#include <algorithm>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
constexpr qint64 daySecs = 24LL * 60 * 60;
constexpr int batchFiles = 256;
constexpr qint64 batchBytes = 64 << 20;
constexpr int politeNiceness = 10;

/** Whatever else the machine does goes first. For the calling thread. */
void lowerPriority()
{
    constexpr int whoProcess = 1;
    constexpr int lowestBestEffort = (2 << 13) | 7;
    ::syscall(SYS_ioprio_set, whoProcess, 0, lowestBestEffort);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), politeNiceness);
}

QString verifierText(const char* text) { return QCoreApplication::translate("Verifier", text); }
} // namespace

Verification::Verification(const QString& cacheFolder, const VerificationCounters& counters,
                           QThreadPool* pool)
    : m_cacheFolder(cacheFolder), m_root(QDir::cleanPath(cacheFolder + QStringLiteral("/ResFiles"))),
      m_counters(counters), m_pool(pool), m_started(QDateTime::currentSecsSinceEpoch())
{
}

VerifyReport Verification::run(const Verifier::KnownFiles& known, bool purgeExtra)
{
    lowerPriority();
    const auto combined = known();
    m_report.missingIndexes = combined.failureCount;
    if (combined.index)
        gather(*combined.index);
    judge(listTree(m_root, *m_counters.stop));
    checkContents();
    removeDamaged();
    if (!purgeExtra || *m_counters.stop || m_extraItems.isEmpty())
        return m_report;
    if (combined.failureCount > 0)
        m_report.purgeRefusal = verifierText("not every index could be obtained");
    else if (UpdateMarker::isHeld(m_cacheFolder))
        m_report.purgeRefusal = verifierText("an update is running");
    else
        purge();
    return m_report;
}

void Verification::gather(const Index& index)
{
    m_known.reserve(index.entries().size());
    for (const auto& row : index.entries()) {
        if (!row->cachedName.startsWith(QLatin1String("sym:")) && SafePath::isSafeText(row->cachedName))
            m_known.insert(row->cachedName, {row->checksum.toLatin1(), row->size});
    }
    m_report.knownFiles = m_known.size();
}

void Verification::addDamaged(const CacheItem& item, const char* problem)
{
    m_report.damaged.append({item.path, verifierText(problem), false});
    m_damagedItems.append(item);
}

void Verification::judge(const QVector<CacheItem>& items)
{
    int found = 0;
    QStringList foldersInPlace;
    for (const auto& item : items) {
        const auto known = m_known.constFind(item.path);
        if (known == m_known.constEnd()) {
            const bool insideDamaged =
                std::any_of(foldersInPlace.cbegin(), foldersInPlace.cend(),
                            [&](const QString& folder) { return item.path.startsWith(folder); });
            if (item.kind != CacheItem::Kind::Folder && !insideDamaged && !isLeftAlone(item)) {
                m_extraItems.append(item);
                m_report.extra << item.path;
                m_report.extraBytes += item.size;
            }
            continue;
        }
        ++found;
        if (item.kind == CacheItem::Kind::Link)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is a link"));
        else if (item.kind == CacheItem::Kind::Folder)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is a folder"));
        else if (item.kind == CacheItem::Kind::Other)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is no regular file"));
        else if (item.size == 0 && known->size != 0)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is empty"));
        else if (item.size < known->size)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is too short"));
        else if (item.size > known->size)
            addDamaged(item, QT_TRANSLATE_NOOP("Verifier", "is too long"));
        else
            m_candidates.append({item, known->md5});
        if (item.kind == CacheItem::Kind::Folder)
            foldersInPlace << item.path + QLatin1Char('/');
    }
    m_report.missingFiles = m_known.size() - found;
}

// What others may be writing just now, and what the cache keeps for itself.
bool Verification::isLeftAlone(const CacheItem& item) const
{
    if (item.changed >= m_started)
        return true;
    if (!item.path.contains(QLatin1Char('/')) && item.path.startsWith(QLatin1Char('.')))
        return true;
    const bool temporary =
        item.path.endsWith(QLatin1String(".tmp")) || item.path.startsWith(QLatin1String("bundles/"));
    return temporary && item.changed > m_started - daySecs;
}

void Verification::checkContents()
{
    // Files of about the same size together: the lanes of the hash end at the same time then.
    std::sort(m_candidates.begin(), m_candidates.end(),
              [](const Candidate& a, const Candidate& b) { return a.item.size > b.item.size; });
    QVector<QPair<int, int>> batches;
    qint64 bytes = 0;
    int first = 0;
    for (int i = 0; i < m_candidates.size(); ++i) {
        bytes += m_candidates[i].item.size;
        *m_counters.bytesTotal += m_candidates[i].item.size;
        if (i + 1 - first < batchFiles && bytes < batchBytes && i + 1 < m_candidates.size())
            continue;
        batches.append({first, i + 1});
        first = i + 1;
        bytes = 0;
    }
    *m_counters.filesTotal = m_candidates.size();

    std::atomic<int> next{0};
    QFutureSynchronizer<void> workers;
    for (int i = 1; i < m_pool->maxThreadCount(); ++i) {
        workers.addFuture(QtConcurrent::run(m_pool, [&] {
            lowerPriority();
            for (int batch = next++; batch < batches.size() && !*m_counters.stop; batch = next++)
                checkBatch(batches[batch].first, batches[batch].second);
        }));
    }
    workers.waitForFinished();
}

// Worker thread.
void Verification::checkBatch(int first, int last)
{
    QVector<QString> paths;
    qint64 bytes = 0;
    for (int i = first; i < last; ++i) {
        paths << m_root + QLatin1Char('/') + m_candidates[i].item.path;
        bytes += m_candidates[i].item.size;
    }
    const auto checksums = md5OfFiles(paths, m_counters.stop);
    if (*m_counters.stop) // those that are empty may only have been abandoned
        return;
    *m_counters.filesDone += last - first;
    *m_counters.bytesDone += bytes;
    const std::lock_guard lock(m_mutex);
    m_report.checkedFiles += last - first;
    m_report.checkedBytes += bytes;
    for (int i = first; i < last; ++i) {
        const auto& checksum = checksums[i - first];
        if (checksum.isEmpty())
            addDamaged(m_candidates[i].item, QT_TRANSLATE_NOOP("Verifier", "cannot be read"));
        else if (checksum != m_candidates[i].md5)
            addDamaged(m_candidates[i].item, QT_TRANSLATE_NOOP("Verifier", "has the wrong content"));
    }
}

void Verification::removeDamaged()
{
    for (int i = 0; i < m_damagedItems.size(); ++i)
        m_report.damaged[i].removed = removeItem(m_root, m_damagedItems[i]);
}

void Verification::purge()
{
    QSet<QString> folders;
    for (const auto& item : qAsConst(m_extraItems)) {
        if (*m_counters.stop)
            return;
        if (!removeItem(m_root, item))
            continue;
        ++m_report.purgedFiles;
        m_report.purgedBytes += item.size;
        folders.insert(item.path.left(qMax(item.path.lastIndexOf(QLatin1Char('/')), 0)));
    }
    // Folders that are empty now, and those above them.
    for (auto folder : qAsConst(folders)) {
        while (!folder.isEmpty() && QDir(m_root).rmdir(folder))
            folder = folder.left(qMax(folder.lastIndexOf(QLatin1Char('/')), 0));
    }
}
