#pragma once

#include "maintenance/cachelisting.h"

/**
 * Copies folder trees. Links are copied as links; those that lead into the old tree lead into the new one
 * afterwards. Errors are texts for people; empty means success. Worker threads.
 */
class TreeCopy
{
public:
    /** done counts the bytes that have been copied and compared. */
    TreeCopy(QString from, QString to, const std::atomic<bool>& stop, std::atomic<qint64>* done);

    /** Bytes that a copy takes. */
    static qint64 sizeOf(const QVector<CacheItem>& items);

    /** Copies the items, which are those of the old tree, and has them written to the disk. */
    QString copy(const QVector<CacheItem>& items);
    /** Compares the content of all files. */
    QString compare(const QVector<CacheItem>& items);
    /** Makes the links of the tree at "to", which once stood at "from", lead into it. */
    QString adaptLinks(const QVector<CacheItem>& items);
    /** Removes from the copy whatever also stands in the original, and nothing else. */
    static void removeCopy(const QString& from, const QString& to);

private:
    QString copyFile(const CacheItem& item);
    QString copyLink(const CacheItem& item);

    const QString m_from;
    const QString m_to;
    const std::atomic<bool>& m_stop;
    std::atomic<qint64>* const m_done;
};
