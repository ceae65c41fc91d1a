#pragma once

#include "download/adoptedfiles.h"
#include "index/index.h"

#include <optional>

/** What there is to do to bring the cache up to date with an index. Sizes are in bytes. */
struct DownloadPlan {
    /** The rows whose files are not there, in the order of the index. */
    QVector<IndexEntryPtr> missing;
    /** Rows that were looked for, and their sizes added up. */
    int checked = 0;
    qint64 checkedBytes = 0;
    /** Of the missing rows, each of them counted. */
    qint64 missingBytes = 0;
    /** Rows whose path would leave the cache, and the first of these paths. */
    int refused = 0;
    QString firstRefused;
    /** What was taken from the player's folder. */
    int adoptedFiles = 0;
    qint64 adoptedBytes = 0;

    /** To be fetched, each content once. */
    qint64 bytesToFetch = 0;
    /** What these files take on the disk, and what is free; none where the file system does not tell. */
    qint64 roomNeeded = 0;
    std::optional<qint64> roomLeft;

    qint64 bytesPresent() const { return checkedBytes - missingBytes; }
    /** With so many bytes more. */
    bool isShortOfRoom(qint64 moreBytes = 0) const { return roomLeft && *roomLeft < roomNeeded + moreBytes; }
    /** So much that somebody may want to know before it begins. */
    bool isLong() const { return bytesToFetch >= qint64(1) << 30; }
};

/** Looks what is missing in the cache, and how much room that needs. Any thread. */
DownloadPlan planDownload(const Index& index, const QString& cacheFolder);

/** Leaves out what was taken from the player's folder. */
void updatePlan(DownloadPlan* plan, const Adoption& adoption, const QString& cacheFolder);
