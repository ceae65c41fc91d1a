#pragma once

#include "index/indexentry.h"

#include <QString>
#include <QVector>

#include <atomic>
#include <functional>

/** A folder with game files of the player's, from which the cache takes what it needs instead of downloading
 * it. */
struct AdoptedFolder {
    QString path;
    /** Files of the folder become files of the cache as well, under a second name, where the file system can
     * do that; they take no room then, but must not be changed any more. */
    bool linkFiles = false;
};

/** What was taken from such a folder. */
struct Adoption {
    int files = 0;
    qint64 bytes = 0;
    /** The rows that are still missing, in the order in which they were given. */
    QVector<IndexEntryPtr> missing;
};

/**
 * Looks for the content of the rows in the folder, under whatever names, and takes what has the right size
 * and MD5 into cacheRoot + "/ResFiles": as a link where that is wanted, else as a copy, which shares its
 * blocks with the original where the file system can do that. Links in the folder are not followed; nothing
 * in it is changed.
 *
 * mayCopy: whether there is room for copies that take room. progress is told a fraction from 0 to 1 now and
 * then. Once stop is set it returns soon. Any thread; takes as long as reading all files of matching sizes.
 */
Adoption adoptFiles(const AdoptedFolder& folder, const QVector<IndexEntryPtr>& missing,
                    const QString& cacheRoot, bool mayCopy, const std::function<void(float)>& progress,
                    const std::atomic<bool>& stop);
