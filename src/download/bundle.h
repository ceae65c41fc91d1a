#pragma once

#include "index/index.h"

#include <QJsonArray>
#include <QUrl>
#include <QVector>

/**
 * Where the bundle of an index is: its list of chunks on the server, its chunk files in the cache. Any
 * thread, one at a time.
 */
class Bundle
{
public:
    /** cacheRoot: the chunks are kept below its "ResFiles/bundles/<build>". */
    Bundle(const IndexPtr& index, const QString& cacheRoot);

    /** Whether the index can have one: it has a name and a build, and both can be parts of a path. */
    bool isPossible() const { return !m_folder.isEmpty(); }

    QUrl listUrl(const QString& baseUrl) const;

    /**
     * Takes the list of chunks: a JSON array of objects with "name", "size" and "checksum". Returns what is
     * wrong with it, or an empty string. What it says must be believable for the index.
     */
    QString readList(const QByteArray& json);

    const QJsonArray& chunks() const { return m_chunks; }
    /** The chunks as rows of an index, to download them by. */
    QVector<IndexEntryPtr> chunkEntries() const;
    /** Bytes of the chunks that are not in the cache yet. */
    qint64 missingBytes() const;
    /** Path of the chunk files, but for ".bundle.<number>". */
    QString chunkBase() const { return m_resFiles + QLatin1Char('/') + m_folder + m_index->getName(); }

    /** Removes the chunk files, and those that any launcher left long ago. */
    void removeChunks() const;
    /** Whether there is anything to remove. */
    bool hasChunks() const;

private:
    QString checkChunk(const QJsonValue& value, int number) const;

    const IndexPtr m_index;
    const QString m_resFiles;
    QString m_folder; // relative to m_resFiles, ends with "/"
    QJsonArray m_chunks;
};
