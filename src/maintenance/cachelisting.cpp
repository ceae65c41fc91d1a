#include "maintenance/cachelisting.h"

#include <QDir>
#include <QFile>
#include <QtConcurrent>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace
{
CacheItem::Kind kindOf(mode_t mode)
{
    if (S_ISREG(mode))
        return CacheItem::Kind::File;
    if (S_ISLNK(mode))
        return CacheItem::Kind::Link;
    return S_ISDIR(mode) ? CacheItem::Kind::Folder : CacheItem::Kind::Other;
}

CacheItem makeItem(const QString& path, const struct stat& status)
{
    return {path,          kindOf(status.st_mode), status.st_size, status.st_mtim.tv_sec,
            status.st_dev, status.st_ino};
}

bool inspect(const QString& root, const QString& path, CacheItem* item)
{
    struct stat status;
    const auto absolute = QFile::encodeName(path.isEmpty() ? root : root + QLatin1Char('/') + path);
    if (::lstat(absolute.constData(), &status) != 0)
        return false;
    *item = makeItem(path, status);
    return true;
}

/** Appends what stands directly in a folder. */
void listFolder(const QString& root, const QString& folder, QVector<CacheItem>* items)
{
    DIR* directory = ::opendir(QFile::encodeName(root + QLatin1Char('/') + folder).constData());
    if (!directory)
        return;
    const auto prefix = folder.isEmpty() ? QString() : folder + QLatin1Char('/');
    while (const auto* entry = ::readdir(directory)) {
        struct stat status;
        const bool isSelf = qstrcmp(entry->d_name, ".") == 0 || qstrcmp(entry->d_name, "..") == 0;
        // What is gone meanwhile is no matter.
        if (!isSelf && ::fstatat(::dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
            items->append(makeItem(prefix + QFile::decodeName(entry->d_name), status));
    }
    ::closedir(directory);
}

/** All below a folder, the folder itself left out. */
QVector<CacheItem> listBelow(const QString& root, const QString& top, const std::atomic<bool>& stop)
{
    QVector<CacheItem> items;
    QStringList folders{top};
    while (!folders.isEmpty() && !stop) {
        const int first = items.size();
        listFolder(root, folders.takeLast(), &items);
        for (int i = first; i < items.size(); ++i) {
            if (items[i].kind == CacheItem::Kind::Folder)
                folders << items[i].path;
        }
    }
    return items;
}

/** What stands directly in root and is kept, with all that is below. */
template <typename Keep>
QVector<CacheItem> list(const QString& root, const std::atomic<bool>& stop, const Keep& keep)
{
    CacheItem self;
    QVector<CacheItem> items;
    if (!inspect(root, {}, &self) || self.kind != CacheItem::Kind::Folder)
        return items;
    QVector<CacheItem> top;
    listFolder(root, {}, &top);
    struct Part {
        QString folder;
        QVector<CacheItem> items;
    };
    std::vector<Part> parts; // each thread writes parts of its own only
    for (const auto& item : qAsConst(top)) {
        if (!keep(item.path))
            continue;
        items.append(item);
        if (item.kind == CacheItem::Kind::Folder)
            parts.push_back({item.path, {}});
    }
    QtConcurrent::blockingMap(parts, [&](Part& part) { part.items = listBelow(root, part.folder, stop); });
    for (const auto& part : parts)
        items += part.items;
    return items;
}
} // namespace

QVector<CacheItem> listTree(const QString& root, const std::atomic<bool>& stop)
{
    return list(root, stop, [](const QString& /*name*/) { return true; });
}

QStringList cacheEntries(const QString& cacheFolder)
{
    return QDir(cacheFolder)
        .entryList({QStringLiteral("ResFiles"), QStringLiteral("wine"), QStringLiteral("wineenv"),
                    QStringLiteral("index_*.txt"), QStringLiteral("velkorlauncher_linux_*.txt")},
                   QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot |
                       QDir::CaseSensitive);
}

QVector<CacheItem> listCache(const QString& cacheFolder, const std::atomic<bool>& stop)
{
    const auto entries = cacheEntries(cacheFolder);
    return list(cacheFolder, stop, [&](const QString& name) { return entries.contains(name); });
}

void removeCache(const QString& cacheFolder)
{
    const QDir folder(cacheFolder);
    const auto names = cacheEntries(cacheFolder);
    for (const auto& name : names) {
        const auto path = folder.filePath(name);
        if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
            QDir(path).removeRecursively();
        else
            QFile::remove(path);
    }
    QDir().rmdir(cacheFolder);
}

bool removeItem(const QString& root, const CacheItem& item)
{
    CacheItem now;
    if (!inspect(root, item.path, &now))
        return true;
    if (now.kind != item.kind || now.device != item.device || now.number != item.number ||
        (now.kind == CacheItem::Kind::File && (now.size != item.size || now.changed != item.changed)))
        return false;
    const auto path = root + QLatin1Char('/') + item.path;
    return item.kind == CacheItem::Kind::Folder ? QDir(path).removeRecursively() : QFile::remove(path);
}
