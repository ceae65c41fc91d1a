#include "maintenance/cachemover.h"

#include "cache/freespace.h"
#include "cache/updatemarker.h"
#include "logging/formatmemory.h"
#include "maintenance/treecopy.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QtConcurrent>

#include <cstdio>
#include <sys/stat.h>

namespace
{
constexpr int moveProgressIntervalMs = 125;
constexpr qint64 spareBytes = 64 << 20;

QString fromKey() { return QStringLiteral("SharedCacheMove/from"); }
QString toKey() { return QStringLiteral("SharedCacheMove/to"); }
/** Whether the entries are renamed one by one, which is brought to its end, or copied, which is undone. */
QString renamesKey() { return QStringLiteral("SharedCacheMove/renames"); }

bool writeRecord(QSettings* store, const QString& from, const QString& to, bool renames)
{
    store->setValue(fromKey(), from);
    store->setValue(toKey(), to);
    store->setValue(renamesKey(), renames);
    store->sync();
    return store->status() == QSettings::NoError;
}

void clearRecord(QSettings* store)
{
    store->remove(QStringLiteral("SharedCacheMove"));
    store->sync();
}

bool switchTo(Settings* settings, const QString& folder)
{
    settings->setCacheFolder(folder);
    settings->save();
    settings->store().sync();
    return settings->store().status() == QSettings::NoError;
}

QString unwritableSettings() { return CacheMover::tr("The settings cannot be written"); }

bool isSameVolume(const QString& a, const QString& b)
{
    struct stat first;
    struct stat second;
    return ::stat(QFile::encodeName(a).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(b).constData(), &second) == 0 && first.st_dev == second.st_dev;
}

/** Renames what belongs to the cache, and goes on where an interrupted run has stopped. */
QString renameEntries(const QString& from, const QString& to)
{
    const auto names = cacheEntries(from);
    for (const auto& name : names) {
        const auto target = QFile::encodeName(to + QLatin1Char('/') + name);
        if (std::rename(QFile::encodeName(from + QLatin1Char('/') + name).constData(), target.constData()) !=
            0)
            return QStringLiteral("%1: %2").arg(to + QLatin1Char('/') + name, qt_error_string(errno));
    }
    const std::atomic<bool> never{false};
    std::atomic<qint64> done{0};
    auto error = TreeCopy(from, to, never, &done).adaptLinks(listCache(to, never));
    QDir().rmdir(from);
    return error;
}
} // namespace

CacheMover::CacheMover(Settings* settings, QObject* parent) : QObject(parent), m_settings(settings)
{
    m_progressTimer.setInterval(moveProgressIntervalMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &CacheMover::reportProgress);
    connect(&m_watcher, &QFutureWatcher<Result>::finished, this, &CacheMover::onMoved);
    connect(&m_removal, &QFutureWatcher<void>::finished, this, [this] {
        clearRecord(&m_settings->store());
        emit finished(Outcome::Moved, {});
    });
}

CacheMover::~CacheMover()
{
    m_stop = true;
    m_watcher.waitForFinished();
    m_removal.waitForFinished();
}

QString CacheMover::objection(const QString& folder) const
{
    const auto from = QFileInfo(m_settings->getCacheFolder()).canonicalFilePath();
    const auto to =
        QFileInfo(folder).exists() ? QFileInfo(folder).canonicalFilePath() : QDir::cleanPath(folder);
    if (!QDir::isAbsolutePath(to))
        return tr("Please choose a folder");
    if (from.isEmpty())
        return tr("There is no cache to move");
    if ((to + QLatin1Char('/')).startsWith(from + QLatin1Char('/')) ||
        (from + QLatin1Char('/')).startsWith(to + QLatin1Char('/')))
        return tr("The new folder must not lie in the old one, nor the old one in it");
    if (QFileInfo::exists(to) &&
        !QDir(to).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        return tr("%1 is not empty").arg(QDir::toNativeSeparators(to));
    if (!QDir().mkpath(to) || !QFileInfo(to).isWritable())
        return tr("%1 cannot be written to").arg(QDir::toNativeSeparators(to));
    if (UpdateMarker::isHeld(from) || m_settings->store().contains(fromKey()))
        return tr("The cache is in use: please wait until the update has ended");
    return {};
}

void CacheMover::start(const QString& folder)
{
    m_from = QFileInfo(m_settings->getCacheFolder()).canonicalFilePath();
    m_to = QFileInfo(folder).canonicalFilePath();
    m_stop = false;
    m_bytesDone = 0;
    m_bytesTotal = 0;
    m_renames = isSameVolume(m_from, m_to);
    qInfo().noquote() << "Moving the cache from" << m_from << "to" << m_to;
    if (!writeRecord(&m_settings->store(), m_from, m_to, m_renames)) {
        clearRecord(&m_settings->store());
        emit finished(Outcome::Failed, unwritableSettings());
        return;
    }
    m_progressTimer.start();
    m_watcher.setFuture(QtConcurrent::run([this] { return m_renames ? rename() : copy(); }));
}

// Worker thread.
CacheMover::Result CacheMover::rename() const
{
    const auto error = renameEntries(m_from, m_to);
    if (error.isEmpty())
        return {Outcome::Moved, {}, true};
    const bool undone = renameEntries(m_to, m_from).isEmpty();
    return {Outcome::Failed, error, undone};
}

// Worker thread.
CacheMover::Result CacheMover::copy()
{
    const auto items = listCache(m_from, m_stop);
    const auto bytes = TreeCopy::sizeOf(items);
    const auto room = freeSpace(m_to);
    if (room && *room < bytes + spareBytes)
        return {Outcome::Failed,
                tr("%1 are needed, but only %2 are free")
                    .arg(formatMemory(bytes + spareBytes), formatMemory(*room)),
                true};
    m_bytesTotal = 2 * bytes; // copied and compared
    TreeCopy tree(m_from, m_to, m_stop, &m_bytesDone);
    auto error = tree.copy(items);
    if (error.isEmpty() && !m_stop)
        error = tree.compare(items);
    if (error.isEmpty() && !m_stop)
        return {Outcome::Moved, {}, true};
    TreeCopy::removeCopy(m_from, m_to);
    return {error.isEmpty() ? Outcome::Cancelled : Outcome::Failed, error, true};
}

void CacheMover::reportProgress()
{
    const qint64 total = m_bytesTotal;
    const qint64 done = m_bytesDone;
    const double fraction = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
    const auto text = done * 2 <= total ? tr("Copying the cache") : tr("Comparing the copy");
    emit progressUpdate(static_cast<float>(qMin(fraction, 1.0)), text);
}

void CacheMover::onMoved()
{
    m_progressTimer.stop();
    const auto result = m_watcher.result();
    if (result.outcome == Outcome::Moved) {
        // Without the setting nothing is removed: the record leads the next start to a whole cache.
        if (!switchTo(m_settings, m_to)) {
            if (!m_renames)
                m_settings->setCacheFolder(m_from);
            emit finished(Outcome::Failed, unwritableSettings());
            return;
        }
        qInfo().noquote() << "The cache is in" << m_to << "now";
        emit progressUpdate(1.0F, tr("Removing the old folder"));
        m_removal.setFuture(QtConcurrent::run(removeCache, m_from));
        return;
    }
    qInfo().noquote() << "The cache stays in" << m_from << result.error;
    if (result.settled) // else the next start goes on
        clearRecord(&m_settings->store());
    emit finished(result.outcome, result.error);
}

void CacheMover::recover(Settings* settings)
{
    auto& store = settings->store();
    const auto from = store.value(fromKey()).toString();
    const auto to = store.value(toKey()).toString();
    if (from.isEmpty() || to.isEmpty() || from == to)
        return;
    qInfo().noquote() << "The move of the cache from" << from << "to" << to << "was interrupted";
    const bool switched = QDir::cleanPath(settings->getCacheFolder()) == QDir::cleanPath(to);
    if (!switched && store.value(renamesKey()).toBool()) {
        const auto error = QDir().mkpath(to) ? renameEntries(from, to) : to;
        if (!error.isEmpty()) {
            qWarning().noquote() << "The cache could not be moved:" << error;
            return;
        }
        if (switchTo(settings, to))
            clearRecord(&store);
        return;
    }
    // What is removed is not in use: the copy that is not complete, or the original of one that is.
    auto* removal = new QFutureWatcher<void>(settings);
    connect(removal, &QFutureWatcher<void>::finished, settings, [settings, removal] {
        clearRecord(&settings->store());
        removal->deleteLater();
    });
    removal->setFuture(switched ? QtConcurrent::run(removeCache, from)
                                : QtConcurrent::run(&TreeCopy::removeCopy, from, to));
}
