#include "download/adoptedfiles.h"

#include "cache/md5many.h"
#include "cache/safepath.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <cstdio>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{
constexpr int filesAtATime = 64;
constexpr qint64 blockSize = 1 << 20;

QByteArray md5OfFile(const QString& path) { return md5OfFiles({path}).constFirst(); }

/** Makes target share the blocks of source; only some file systems can. */
bool shareBlocks(const QString& source, QFile* target)
{
    QFile file(source);
    return file.open(QIODevice::ReadOnly) && ::ioctl(target->handle(), FICLONE, file.handle()) == 0;
}

bool copyBytes(const QString& source, QFile* target)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (;;) {
        const auto block = file.read(blockSize);
        if (block.isEmpty())
            return file.error() == QFileDevice::NoError;
        if (target->write(block) != block.size())
            return false;
    }
}

/** Places files into the cache: each is complete and checked before it gets its name. */
class Adopter
{
public:
    Adopter(const AdoptedFolder& folder, const QString& cacheRoot, bool mayCopy)
        : m_folder(folder), m_resFiles(cacheRoot + QStringLiteral("/ResFiles")), m_mayCopy(mayCopy)
    {
    }

    bool place(const QString& source, const IndexEntry& entry)
    {
        const auto target = m_resFiles.resolve(entry.cachedName);
        if (target.isEmpty())
            return false;
        if (QFileInfo(target).isFile())
            return true;
        QDir().mkpath(QFileInfo(target).absolutePath());
        // What was read before may have been changed since: what counts is what stands in the cache.
        const auto temporary = QStringLiteral("%1.adopted%2.tmp").arg(target).arg(::getpid());
        QFile::remove(temporary);
        const bool placed = (link(source, temporary) || copy(source, temporary)) &&
                            md5OfFile(temporary) == entry.checksum.toLatin1() &&
                            std::rename(QFile::encodeName(temporary), QFile::encodeName(target)) == 0;
        if (!placed)
            QFile::remove(temporary);
        return placed;
    }

private:
    bool link(const QString& source, const QString& target) const
    {
        return m_folder.linkFiles && ::link(QFile::encodeName(source), QFile::encodeName(target)) == 0;
    }
    bool copy(const QString& source, const QString& target)
    {
        QFile file(target);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return false;
        if (shareBlocks(source, &file))
            return true;
        if (!m_mayCopy || !copyBytes(source, &file) || !file.flush()) {
            if (file.error() == QFileDevice::ResourceError || file.error() == QFileDevice::WriteError)
                m_mayCopy = false; // the disk is full
            return false;
        }
        return true;
    }

    const AdoptedFolder m_folder;
    SafePath m_resFiles;
    bool m_mayCopy;
};

using Wanted = QHash<QByteArray, IndexEntryPtr>; // by MD5

QStringList filesOfSizes(const QString& folder, const QSet<qint64>& sizes, const std::atomic<bool>& stop)
{
    QStringList files;
    QDirIterator iterator(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext() && !stop) {
        const auto path = iterator.next();
        if (sizes.contains(iterator.fileInfo().size()))
            files << path;
    }
    return files;
}
} // namespace

Adoption adoptFiles(const AdoptedFolder& folder, const QVector<IndexEntryPtr>& missing,
                    const QString& cacheRoot, bool mayCopy, const std::function<void(float)>& progress,
                    const std::atomic<bool>& stop)
{
    Wanted wanted;
    QSet<qint64> sizes;
    for (const auto& entry : missing) {
        wanted.insert(entry->checksum.toLatin1(), entry);
        sizes.insert(entry->size);
    }
    const auto files = filesOfSizes(folder.path, sizes, stop);
    Adoption adoption;
    QSet<QString> taken; // cached names
    Adopter adopter(folder, cacheRoot, mayCopy);
    for (int first = 0; first < files.size() && !wanted.isEmpty() && !stop; first += filesAtATime) {
        progress(static_cast<float>(first) / static_cast<float>(files.size()));
        const auto group = files.mid(first, filesAtATime).toVector();
        const auto checksums = md5OfFiles(group, &stop);
        for (int i = 0; i < group.size() && !stop; ++i) {
            const auto entry = wanted.value(checksums[i]);
            if (!entry || !adopter.place(group[i], *entry))
                continue;
            wanted.remove(checksums[i]);
            taken.insert(entry->cachedName);
            ++adoption.files;
            adoption.bytes += entry->size;
        }
    }
    for (const auto& entry : missing) {
        if (!taken.contains(entry->cachedName))
            adoption.missing.append(entry);
    }
    qInfo().noquote() << "Took" << adoption.files << "files with" << adoption.bytes << "bytes from"
                      << folder.path << "-" << adoption.missing.size() << "rows are still missing";
    return adoption;
}
