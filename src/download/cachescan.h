#pragma once

#include "index/index.h"

#include <QVector>

/** What a look at the cache found for an index. */
struct CacheScan {
    /** Rows that were looked for; links and refused rows are not among them. */
    int checked = 0;
    /** Their sizes added up, in bytes. */
    qint64 checkedBytes = 0;
    /** The rows whose files are not there, in the order of the index. */
    QVector<IndexEntryPtr> missing;
    /** Rows whose path would leave the cache, and the first of these paths. */
    int refused = 0;
    QString firstRefused;
};

/**
 * Finds the files of an index that are missing below cacheRoot + "/ResFiles". Each folder is listed once,
 * several at a time on the global thread pool; files are not opened, a file that is there is trusted. Any
 * thread.
 */
CacheScan scanCache(const Index& index, const QString& cacheRoot);
