#include "maintenance/cachelisting.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace
{
constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

CacheItem::Kind kindOf(mode_t mode)
{
    if (S_ISREG(mode))
        return CacheItem::Kind::File;
    if (S_ISLNK(mode))
        return CacheItem::Kind::Link;
    return S_ISDIR(mode) ? CacheItem::Kind::Folder : CacheItem::Kind::Other;
}

bool inspect(const QString& root, const QString& path, CacheItem* item)
{
    struct stat status;
    const auto absolute = QFile::encodeName(path.isEmpty() ? root : root + QLatin1Char('/') + path);
    if (::lstat(absolute.constData(), &status) != 0)
        return false;
    *item = {path,          kindOf(status.st_mode), status.st_size, status.st_mtim.tv_sec,
             status.st_dev, status.st_ino};
    return true;
}

/** names: wildcards for what stands at the top; empty for all. */
QVector<CacheItem> list(const QString& root, const QStringList& names, const std::atomic<bool>& stop)
{
    QVector<CacheItem> items;
    CacheItem item;
    if (!inspect(root, {}, &item) || item.kind != CacheItem::Kind::Folder)
        return items;
    QStringList folders{QString()};
    while (!folders.isEmpty() && !stop) {
        const auto folder = folders.takeLast();
        const auto filter = folder.isEmpty() ? names : QStringList();
        const auto found = QDir(root + QLatin1Char('/') + folder)
                               .entryList(filter, everything | QDir::CaseSensitive, QDir::NoSort);
        for (const auto& name : found) {
            const auto path = folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
            if (!inspect(root, path, &item)) // gone meanwhile
                continue;
            items.append(item);
            if (item.kind == CacheItem::Kind::Folder)
                folders << path;
        }
    }
    return items;
}
} // namespace

QVector<CacheItem> listTree(const QString& root, const std::atomic<bool>& stop)
{
    return list(root, {}, stop);
}

QStringList cacheEntries()
{
    return {QStringLiteral("ResFiles"), QStringLiteral("wine"), QStringLiteral("wineenv"),
            QStringLiteral("index_*.txt")};
}

QVector<CacheItem> listCache(const QString& cacheFolder, const std::atomic<bool>& stop)
{
    return list(cacheFolder, cacheEntries(), stop);
}

void removeCache(const QString& cacheFolder)
{
    const QDir folder(cacheFolder);
    const auto names = folder.entryList(cacheEntries(), everything | QDir::CaseSensitive);
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
