#pragma once

#include "logging/livecount.h"

#include <QSharedData>
#include <QSharedDataPointer>
#include <QString>

/** One row of an index: a file of a build. Immutable once parsed, and shared between indexes and threads. */
class IndexEntry : public QSharedData, public LiveCount<IndexEntry>
{
public:
    IndexEntry() = default;
    IndexEntry(QString name, QString cachedName, QString checksum, qint64 size)
        : name(std::move(name)), cachedName(std::move(cachedName)), checksum(std::move(checksum)), size(size)
    {
    }

    const QString& getCachedFilename() const { return cachedName; }

    /** Logical name with a scheme, "app:/bin/exefile.exe"; "sym:/link" for a symbolic link. */
    QString name;
    /** Path of the content below the cache's "ResFiles"; for a link "sym:app:/target". */
    QString cachedName;
    /** MD5 of the content in hexadecimal. */
    QString checksum;
    /** Bytes of the content. */
    qint64 size = 0;
    /** Bytes of the compressed form, as served. */
    qint64 compressedSize = 0;
    /** The file's mode, in the publisher's indexes. */
    qint32 flags = 0;
};

using IndexEntryPtr = QSharedDataPointer<IndexEntry>;
