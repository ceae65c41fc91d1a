#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <sys/types.h>

/** One thing that stands in a folder tree. */
struct CacheItem {
    enum class Kind { File, Link, Folder, Other };
    QString path; // relative to the root
    Kind kind = Kind::File;
    qint64 size = 0;
    /** Seconds since the epoch. */
    qint64 changed = 0;
    dev_t device = 0;
    ino_t number = 0;
};

/**
 * Everything below a folder, folders before what is in them. Links are listed and never followed; a root that
 * is no folder gives nothing. Ends early when stop is set. Any thread.
 */
QVector<CacheItem> listTree(const QString& root, const std::atomic<bool>& stop);

/** The names of what belongs to the cache at the top of its folder, where other things may stand as well. */
QStringList cacheEntries(const QString& cacheFolder);

/** As listTree(), but only what belongs to the cache. */
QVector<CacheItem> listCache(const QString& cacheFolder, const std::atomic<bool>& stop);

/** Removes what belongs to the cache, and the folder if it is empty then. */
void removeCache(const QString& cacheFolder);

/** Removes a file or a link, or a folder with all that is in it, if it is still what was listed. */
bool removeItem(const QString& root, const CacheItem& item);
