#include "download/chunkreader.h"

ChunkReader::ChunkReader(const QString& base, qint64 bytes) : m_base(base), m_remaining(bytes) {}

QString ChunkReader::chunkFile(const QString& base, int number)
{
    return base + QStringLiteral(".bundle.%1").arg(number);
}

bool ChunkReader::read(char* to, qint64 length)
{
    if (length < 0 || length > m_remaining) {
        m_failure = {QStringLiteral("EndOfBundle"), QStringLiteral("The bundle ends inside a record"),
                     QStringLiteral("read")};
        return false;
    }
    while (length > 0) {
        const auto got = m_chunk.isOpen() ? m_chunk.read(to, length) : 0;
        if (got <= 0) {
            if (!advanceChunk())
                return false;
            continue;
        }
        to += got;
        length -= got;
        m_remaining -= got;
    }
    return true;
}

bool ChunkReader::advanceChunk()
{
    m_chunk.close();
    m_chunk.setFileName(chunkFile(m_base, m_next++));
    if (m_chunk.open(QIODevice::ReadOnly))
        return true;
    m_failure = {QStringLiteral("OpenChunkFailed"),
                 QStringLiteral("Couldn't open chunk file %1").arg(m_chunk.fileName()),
                 QStringLiteral("advanceChunk")};
    return false;
}
