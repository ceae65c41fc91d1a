#pragma once

#include <QFile>
#include <QString>

/** What went wrong with a bundle: a short word for reports, and a sentence. Empty when nothing did. */
struct BundleFailure {
    QString kind;
    QString message;
    /** The step in which it happened. */
    QString function;

    explicit operator bool() const { return !kind.isEmpty(); }
};

/**
 * Reads the stream that the chunk files of a bundle make up, one after the other: base + ".bundle.0" and so
 * on. For one thread.
 */
class ChunkReader
{
public:
    /** bytes: how long the stream is, all chunks together. */
    ChunkReader(const QString& base, qint64 bytes);

    static QString chunkFile(const QString& base, int number);

    /** Bytes that are left. */
    qint64 remaining() const { return m_remaining; }

    /** Reads exactly so many bytes, across chunks if need be. Returns false when that fails. */
    bool read(char* to, qint64 length);

    /** Why reading has failed. */
    const BundleFailure& failure() const { return m_failure; }

private:
    bool advanceChunk();

    const QString m_base;
    qint64 m_remaining;
    QFile m_chunk;
    int m_next = 0;
    BundleFailure m_failure;
};
