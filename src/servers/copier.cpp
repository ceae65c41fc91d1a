#include "servers/copier.h"

#include "cache/md5many.h"
#include "cache/safepath.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtConcurrent>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int notVerified = 7;
constexpr int batchSize = 32;

QString destinationOf(const QString& name)
{
    const auto* settings = Settings::instance();
    if (name == QLatin1String("wine"))
        return settings->getWineManager()->getStagingFolder();
    return settings->getServer(name)->getStagingFolder();
}

std::function<bool()> clientsOf(const QString& name)
{
    const auto* server = Settings::instance()->getServer(name);
    return server ? [server] { return server->isRunningProcesses(); } : std::function<bool()>();
}

/** Copies beside the target and renames, so that the target is whole at every moment. */
bool replaceFile(const CopyItem& item)
{
    // Another launcher may place the same file at the same time.
    const auto temporary =
        QStringLiteral("%1.%2.tmp").arg(item.target).arg(QCoreApplication::applicationPid());
    QFile::remove(temporary);
    if (!QFile::copy(item.source, temporary))
        return false;
    const auto encoded = QFile::encodeName(temporary);
    // Files of the cache may be private to their owner; what is placed has the default bits unless the index
    // has others.
    const mode_t bits = item.mode != 0 ? item.mode : 0644;
    if (::chmod(encoded.constData(), bits) == 0 &&
        std::rename(encoded.constData(), QFile::encodeName(item.target).constData()) == 0)
        return true;
    QFile::remove(temporary);
    return false;
}

int copyItem(const CopyItem& item)
{
    QDir().mkpath(QFileInfo(item.target).absolutePath());
    qDebug().noquote() << "Copying" << item.source << "to" << item.target;
    if (replaceFile(item))
        return NoError;
    if (!QFileInfo::exists(item.source)) {
        qDebug().noquote() << "Source file does not exists: " << item.source << "(for" << item.target << ")";
        return SourceDoesNotExistError;
    }
    qWarning().noquote() << "Couldn't copy file:" << item.target;
    return CopyError;
}
} // namespace

int verifyItem(const CopyItem& item)
{
    return md5OfFiles({item.target}).constFirst() == item.md5.toLatin1() ? 0 : notVerified;
}

int copyIfNeeded(const CopyItem& item) { return verifyItem(item) == 0 ? 0 : copyItem(item); }

Copier::Copier(const IndexPtr& index, const QString& name, QObject* parent)
    : Copier(index, Settings::instance()->getCacheFolder(), destinationOf(name), clientsOf(name), parent)
{
}

Copier::Copier(const IndexPtr& index, const QString& cacheFolder, const QString& destination,
               std::function<bool()> clientsRunning, QObject* parent)
    : Task(parent), m_index(index), m_cacheFolder(cacheFolder), m_destination(destination),
      m_clientsRunning(std::move(clientsRunning))
{
    using Watcher = QFutureWatcher<BatchResult>;
    connect(&m_watcher, &Watcher::progressValueChanged, this, &Copier::onProgressValueChanged);
    connect(&m_watcher, &Watcher::finished, this, &Copier::onMapFinished);
}

Copier::~Copier()
{
    m_watcher.cancel();
    m_watcher.waitForFinished();
}

void Copier::determineFilesToCopy()
{
    m_links.clear();
    m_failedFiles.clear();
    m_refusedRows = 0;
    SafePath targets(m_destination);
    QVector<CopyItem> items;
    QString firstRefused;
    const auto refuse = [&](const QString& name) {
        if (m_refusedRows++ == 0)
            firstRefused = name;
    };
    for (const auto& entry : m_index->entries()) {
        if (entry->name.startsWith(QLatin1String("sym:/"))) {
            const auto path = targets.resolve(entry->name.mid(5));
            const bool safeTarget = entry->cachedName.startsWith(QLatin1String("sym:app:/"));
            const auto target = safeTarget ? targets.resolve(entry->cachedName.mid(9)) : QString();
            if (path.isEmpty() || target.isEmpty())
                refuse(entry->name);
            else
                m_links.append({path, target});
        } else if (entry->name.startsWith(QLatin1String("app:/"))) {
            const auto target = targets.resolve(entry->name.mid(5));
            if (target.isEmpty() || !SafePath::isSafeText(entry->cachedName))
                refuse(entry->name);
            else
                items.append(
                    {QDir::cleanPath(m_cacheFolder + QStringLiteral("/ResFiles/") + entry->cachedName),
                     target, entry->checksum, static_cast<quint32>(entry->flags) & 0777U});
        } else {
            qDebug().noquote() << "Copier asked to copy" << entry->name << "to" << m_destination;
        }
    }
    if (m_refusedRows > 0)
        qWarning().noquote() << "Skipping" << m_refusedRows << "rows that point outside" << m_destination
                             << ", the first is" << firstRefused;
    m_batches = toBatches(items);
}

QVector<Copier::Batch> Copier::toBatches(const QVector<CopyItem>& items)
{
    QVector<Batch> batches;
    for (int first = 0; first < items.size(); first += batchSize)
        batches.append(items.mid(first, batchSize));
    return batches;
}

// Worker thread. The files of a batch are checked together, which is several times as fast as one by one.
Copier::BatchResult Copier::copyBatch(const Batch& batch, std::atomic<bool>* copying)
{
    QVector<QString> targets;
    for (const auto& item : batch)
        targets.append(item.target);
    const auto checksums = md5OfFiles(targets);
    BatchResult result;
    for (int i = 0; i < batch.size(); ++i) {
        if (checksums[i] == batch[i].md5.toLatin1())
            continue;
        copying->store(true, std::memory_order_relaxed);
        const int code = copyItem(batch[i]);
        if (code != NoError) {
            result.code = code;
            result.failed << batch[i].target;
        }
    }
    return result;
}

void Copier::go()
{
    determineFilesToCopy();
    if (m_batches.isEmpty() && m_links.isEmpty() && m_refusedRows == 0) {
        emit finished(this);
        return;
    }
    if (areClientsRunning()) {
        setError(ClientsRunningError);
        emit finished(this);
        return;
    }
    auto* copying = &m_copying;
    m_watcher.setFuture(QtConcurrent::mapped(
        m_batches, std::function<BatchResult(const Batch&)>(
                       [copying](const Batch& batch) { return copyBatch(batch, copying); })));
}

void Copier::onProgressValueChanged(int value)
{
    const int first = m_watcher.progressMinimum();
    const int range = m_watcher.progressMaximum() - first;
    const float fraction = range > 0 ? static_cast<float>(value - first) / static_cast<float>(range) : 0.0F;
    emit progressUpdate(fraction, m_copying ? tr("Copying files") : tr("Verifying files"));
}

void Copier::onMapFinished()
{
    setError(collect(m_watcher.future().results().toVector()));
    emit finished(this);
}

QString Copier::activity() const
{
    return QStringLiteral("%1: the disk, %2 of %3 groups of files done")
        .arg(taskName())
        .arg(m_watcher.progressValue())
        .arg(m_watcher.progressMaximum());
}

int Copier::copyFiles()
{
    determineFilesToCopy();
    if (m_batches.isEmpty() && m_links.isEmpty() && m_refusedRows == 0)
        return NoError;
    if (areClientsRunning())
        return ClientsRunningError;
    auto* copying = &m_copying;
    return collect(QtConcurrent::blockingMapped<QVector<BatchResult>>(
        m_batches, std::function<BatchResult(const Batch&)>(
                       [copying](const Batch& batch) { return copyBatch(batch, copying); })));
}

int Copier::collect(const QVector<BatchResult>& results)
{
    int code = NoError;
    for (const auto& result : results) {
        m_failedFiles += result.failed;
        if (result.code != NoError)
            code = result.code;
    }
    if (code == NoError && m_refusedRows > 0)
        code = DownloadError;
    if (areClientsRunning())
        code = ClientsRunningError;
    if (!createSymlinks())
        code = DiskWriteError;
    return code;
}

bool Copier::createSymlinks() const
{
    bool success = true;
    for (const auto& link : m_links) {
        if (QFileInfo(link.path).isSymLink() && QFile::symLinkTarget(link.path) == link.target)
            continue;
        qDebug().noquote() << "Symlinking " << link.path << " to " << link.target;
        const QFileInfo existing(link.path);
        if (existing.isDir() && !existing.isSymLink())
            QDir(link.path).removeRecursively();
        else
            QFile::remove(link.path);
        QDir().mkpath(existing.absolutePath());
        if (::symlink(QFile::encodeName(link.target).constData(), QFile::encodeName(link.path).constData()) !=
            0) {
            qWarning().noquote() << "Couldn't create symlink for " << link.path << " to " << link.target;
            success = false;
        }
    }
    return success;
}
