#include "download/bundleunpacker.h"

#include "cache/md5many.h"
#include "cache/wholefile.h"
#include "logging/formatmemory.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QtEndian>

namespace
{
/** Contents are checked and written in groups, since many are hashed faster than one. */
constexpr int batchBytes = 32 << 20;
constexpr int recordBytes = 1 << 20;
constexpr int batchFiles = 2000;
constexpr qint64 lengthSize = 4;

BundleFailure chunkFailure(const char* kind, const QString& message)
{
    return {QLatin1String(kind), message, QStringLiteral("verifyChunks")};
}

BundleFailure recordFailure(const char* kind, const QString& message)
{
    return {QLatin1String(kind), message, QStringLiteral("start")};
}

BundleFailure wrongSize()
{
    return recordFailure("IncorrectSize", QStringLiteral("Uncompressed buffer is not of the right size"));
}

qint64 sizeOf(const QJsonValue& chunk)
{
    return static_cast<qint64>(chunk.toObject().value(QLatin1String("size")).toDouble());
}
} // namespace

BundleUnpacker::BundleUnpacker(QObject* parent) : QObject(parent) {}

bool BundleUnpacker::start(const IndexPtr& index, const QString& targetRoot, const QJsonArray& chunks,
                           const QString& chunkBase)
{
    qDebug() << "Unpacking bundle";
    auto failure = verifyChunks(chunks, chunkBase);
    if (!failure) {
        qint64 bytes = 0;
        for (const auto& chunk : chunks)
            bytes += sizeOf(chunk);
        ChunkReader reader(chunkBase, bytes);
        try {
            failure = unpack(*index, targetRoot, &reader);
        } catch (const std::bad_alloc&) {
            failure = recordFailure("OutOfMemory", QStringLiteral("The memory does not suffice to unpack"));
        }
    }
    if (!failure)
        return true;
    qWarning().noquote() << "Unpacking failed:" << failure.message;
    if (!m_abandoned)
        ExceptionLogger::instance()->logException(failure.kind, failure.message, failure.function,
                                                  QStringLiteral("bundleunpacker"), __LINE__);
    emit failed(failure.message);
    return false;
}

BundleFailure BundleUnpacker::verifyChunks(const QJsonArray& chunks, const QString& chunkBase)
{
    QVector<QString> files;
    for (int i = 0; i < chunks.size(); ++i) {
        const auto chunk = chunks[i].toObject();
        if (!chunk.contains(QLatin1String("checksum")))
            return chunkFailure("ChunkMissingChecksum", QStringLiteral("Chunk info is missing checksum"));
        if (!chunk.contains(QLatin1String("size")))
            return chunkFailure("ChunkMissingSize", QStringLiteral("Chunk info is missing size"));
        const auto file = ChunkReader::chunkFile(chunkBase, i);
        const QFileInfo info(file);
        if (!info.isFile() || info.size() != sizeOf(chunk))
            return chunkFailure("ChunkIncorrectSize", QStringLiteral("Chunk size is incorrect"));
        files << file;
    }
    const auto checksums = md5OfFiles(files, &m_abandoned);
    for (int i = 0; i < chunks.size(); ++i) {
        if (checksums[i].isEmpty())
            qWarning().noquote() << "Couldn't open" << files[i];
        const auto expected = chunks[i].toObject().value(QLatin1String("checksum")).toString();
        if (QString::fromLatin1(checksums[i]) != expected)
            return chunkFailure("ChunkFailedVerification", QStringLiteral("Chunk failed verification"));
    }
    qDebug() << "Bundle chunks passed verification";
    return {};
}

BundleFailure BundleUnpacker::unpack(const Index& index, const QString& targetRoot, ChunkReader* reader)
{
    m_target = std::make_unique<SafePath>(targetRoot);
    for (const auto& row : index.entries())
        m_bytesTotal += row->size;
    m_arena.reset(new char[batchBytes]);
    m_record.reserve(recordBytes);
    for (const auto& row : index.entries()) {
        if (m_batch.bytes + row->size > batchBytes || m_batch.rows.size() >= batchFiles) {
            if (auto failure = flush())
                return failure;
            reportProgress(index);
            if (m_abandoned)
                return recordFailure("Abandoned", QStringLiteral("The launcher ends"));
        }
        if (auto failure = readRecord(*row, reader))
            return failure;
        m_batch.rows << row;
    }
    return flush();
}

BundleFailure BundleUnpacker::readRecord(const IndexEntry& row, ChunkReader* reader)
{
    char head[2 * lengthSize];
    if (!reader->read(head, sizeof head))
        return reader->failure();
    // The record is as long as it says only if the bundle is; memory is taken for no other.
    const qint64 length = qint64(qFromLittleEndian<quint32>(head)) + lengthSize;
    if (Inflater::announcedLength(head + lengthSize, lengthSize) != row.size)
        return wrongSize();
    if (length - lengthSize > reader->remaining() || length > std::numeric_limits<int>::max() - 64)
        return recordFailure("EndOfBundle", QStringLiteral("The bundle ends inside a record"));
    m_record.resize(static_cast<int>(length));
    std::copy_n(head + lengthSize, lengthSize, m_record.data());
    if (!reader->read(m_record.data() + lengthSize, length - lengthSize))
        return reader->failure();

    if (!Inflater::isPlausible(m_record.constData(), static_cast<size_t>(length)) ||
        !m_inflater.inflateTo(placeFor(row.size), m_record.constData(), static_cast<size_t>(length)))
        return wrongSize();
    if (m_record.capacity() > batchBytes) { // not one large buffer beside another
        m_record = QByteArray();
        m_record.reserve(recordBytes);
    }
    return {};
}

/** Adds content to the batch: in the buffer that all batches use, or in its own if it is too large for that.
 */
char* BundleUnpacker::placeFor(qint64 size)
{
    if (size > batchBytes) {
        m_batch.contents.append(QByteArray(static_cast<int>(size), Qt::Uninitialized));
        m_batch.bytes += size;
        return m_batch.contents.last().data();
    }
    char* place = m_arena.get() + m_batch.bytes;
    m_batch.contents << QByteArray::fromRawData(place, static_cast<int>(size));
    m_batch.bytes += size;
    return place;
}

BundleFailure BundleUnpacker::flush()
{
    const auto checksums = md5OfMany(m_batch.contents);
    for (int i = 0; i < m_batch.rows.size(); ++i) {
        const auto& row = *m_batch.rows[i];
        if (QString::fromLatin1(checksums[i]) != row.checksum)
            return recordFailure(
                "IncorrectChecksum",
                QStringLiteral("Uncompressed buffer does not have the correct MD5 checksum"));
        if (auto failure = writeFile(row, m_batch.contents[i]))
            return failure;
        ++m_filesDone;
        m_bytesDone += row.size;
    }
    m_batch = Batch();
    return {};
}

BundleFailure BundleUnpacker::writeFile(const IndexEntry& row, const QByteArray& content)
{
    if (row.cachedName.startsWith(QLatin1String("sym:")))
        return {};
    const auto path = m_target->resolve(row.cachedName);
    if (path.isEmpty()) {
        qWarning().noquote() << "Not unpacking a path outside the cache:" << row.cachedName;
        return {};
    }
    if (QFileInfo::exists(path))
        return {};
    const auto folder = QFileInfo(path).path();
    if (!m_folders.contains(folder)) {
        QDir().mkpath(folder);
        m_folders.insert(folder);
    }
    QString error;
    if (writeWholeFile(path, content, &error))
        return {};
    return recordFailure("WriteFailed", QStringLiteral("Couldn't write %1: %2").arg(path, error));
}

void BundleUnpacker::reportProgress(const Index& index)
{
    if (!m_reports.isDue())
        return;
    const double fraction =
        m_bytesTotal > 0 ? static_cast<double>(m_bytesDone) / static_cast<double>(m_bytesTotal) : 0;
    emit progressUpdate(static_cast<float>(fraction), tr("Unpacking %1 of %2 files (%3)")
                                                          .arg(m_filesDone)
                                                          .arg(index.entries().size())
                                                          .arg(formatMemory(m_bytesDone)));
}
