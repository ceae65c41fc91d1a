#include "tools/publisher/bundlewriter.h"

#include "tools/publisher/compressor.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtConcurrent>
#include <QtEndian>

namespace
{
constexpr int compressionLevel = 8;
/** So much content is compressed at a time, on all processors. */
constexpr qint64 windowBytes = qint64(128) << 20;

struct Record {
    IndexEntryPtr row;
    QByteArray bytes;
};

/** A record of the stream; empty when the content cannot be read. */
QByteArray recordOf(const ContentStore& store, const IndexEntry& row)
{
    QByteArray content;
    const bool isLink = row.cachedName.startsWith(QLatin1String("sym:"));
    if (!isLink && !store.readFile(row.cachedName, &content))
        return {};
    constexpr int lengthSize = 4;
    const auto block = compressed(content, compressionLevel);
    QByteArray record(lengthSize, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(block.size() - lengthSize), record.data());
    return record + block;
}
} // namespace

BundleWriter::BundleWriter(const ContentStore& store, const Index& index, int chunkSize)
    : m_store(store), m_index(index), m_chunkSize(chunkSize)
{
}

bool BundleWriter::write(QString* error)
{
    const auto& rows = m_index.entries();
    for (int next = 0; next < rows.size();) {
        std::vector<Record> window;
        for (qint64 bytes = 0; next < rows.size() && bytes < windowBytes; ++next) {
            window.push_back({rows[next], {}});
            bytes += rows[next]->size;
        }
        QtConcurrent::blockingMap(window,
                                  [this](Record& record) { record.bytes = recordOf(m_store, *record.row); });
        for (const auto& record : window) {
            if (record.bytes.isEmpty()) {
                *error = QStringLiteral("The tree lacks %1").arg(record.row->cachedName);
                return false;
            }
            if (!append(record.bytes, error))
                return false;
        }
    }
    return (m_chunk.isEmpty() || writeChunk(error)) &&
           m_store.writeFile(path(QStringLiteral(".bundle.chunks")), QJsonDocument(m_list).toJson(), error);
}

bool BundleWriter::append(const QByteArray& bytes, QString* error)
{
    for (int position = 0; position < bytes.size();) {
        const int length = qMin(bytes.size() - position, m_chunkSize - m_chunk.size());
        m_chunk.append(bytes.constData() + position, length);
        position += length;
        if (m_chunk.size() == m_chunkSize && !writeChunk(error))
            return false;
    }
    return true;
}

bool BundleWriter::writeChunk(QString* error)
{
    const auto suffix = QStringLiteral(".bundle.%1").arg(m_list.size());
    const auto md5 = QCryptographicHash::hash(m_chunk, QCryptographicHash::Md5).toHex();
    m_list.append(QJsonObject{{QStringLiteral("name"), m_index.getName() + suffix},
                              {QStringLiteral("size"), m_chunk.size()},
                              {QStringLiteral("checksum"), QString::fromLatin1(md5)}});
    const bool written = m_store.writeFile(path(suffix), m_chunk, error);
    m_chunk.clear();
    return written;
}

QString BundleWriter::path(const QString& suffix) const
{
    return QStringLiteral("bundles/%1/%2").arg(m_index.getBuild(), m_index.getName() + suffix);
}
