#pragma once

#include "index/index.h"
#include "tools/publisher/contentstore.h"

#include <QJsonArray>

/**
 * Writes the bundle of an index into a tree: the compressed content of all of its rows as one stream, cut
 * into chunks, and the list of these.
 */
class BundleWriter
{
public:
    /** chunkSize: bytes of every chunk but the last. */
    BundleWriter(const ContentStore& store, const Index& index, int chunkSize);

    /** Returns false and explains in error when a file cannot be read or written; the list is written last.
     */
    bool write(QString* error);

private:
    bool append(const QByteArray& bytes, QString* error);
    bool writeChunk(QString* error);
    QString path(const QString& suffix) const;

    const ContentStore& m_store;
    const Index& m_index;
    const int m_chunkSize;
    QByteArray m_chunk;
    QJsonArray m_list;
};
