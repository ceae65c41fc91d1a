#pragma once

#include "cache/safepath.h"
#include "download/chunkreader.h"
#include "download/inflater.h"
#include "download/reportthrottle.h"
#include "index/index.h"

#include <QJsonArray>
#include <QObject>
#include <QSet>
#include <QVector>

#include <atomic>
#include <memory>

/**
 * Unpacks the bundle of an index: a stream with one record for each of its rows, a length in 4 bytes
 * (least significant first) and the compressed content. Memory does not grow with the bundle: some 32 MB, or
 * what the largest file takes.
 */
class BundleUnpacker : public QObject
{
    Q_OBJECT

public:
    explicit BundleUnpacker(QObject* parent = nullptr);

    /**
     * Checks the chunk files and unpacks them below targetRoot. chunks: objects with "name", "size" (bytes)
     * and "checksum" (MD5), in the order of the stream; their files are chunkBase + ".bundle.0" and so on.
     * Runs on any thread until all is done; returns false after failed(). Files that are there stay as they
     * are; of links, and of rows whose path would leave targetRoot, nothing is written.
     */
    bool start(const IndexPtr& index, const QString& targetRoot, const QJsonArray& chunks,
               const QString& chunkBase);

    /** The part of start() behind the check of the chunk files. Tells nobody but the caller. */
    BundleFailure unpack(const Index& index, const QString& targetRoot, ChunkReader* reader);

    /** Does nothing: unpacking that was begun is not cancelled. */
    void cancel() {}
    /** Lets start() return soon, with false. For the end of the process. Any thread. */
    void abandon() { m_abandoned = true; }

signals:
    /** fraction: 0 to 1. */
    void progressUpdate(float fraction, const QString& message);
    /** Once, with a sentence for the log. */
    void failed(const QString& message);

private:
    /** Contents that are checked and written together. */
    struct Batch {
        QVector<IndexEntryPtr> rows;
        QVector<QByteArray> contents;
        qint64 bytes = 0;
    };

    BundleFailure verifyChunks(const QJsonArray& chunks, const QString& chunkBase);
    BundleFailure readRecord(const IndexEntry& row, ChunkReader* reader);
    char* placeFor(qint64 size);
    BundleFailure flush();
    BundleFailure writeFile(const IndexEntry& row, const QByteArray& content);
    void reportProgress(const Index& index);

    std::atomic<bool> m_abandoned{false};
    Inflater m_inflater;
    std::unique_ptr<char[]> m_arena;
    QByteArray m_record;
    Batch m_batch;
    std::unique_ptr<SafePath> m_target;
    QSet<QString> m_folders;
    int m_filesDone = 0;
    qint64 m_bytesDone = 0;
    qint64 m_bytesTotal = 0;
    ReportThrottle m_reports;
};
