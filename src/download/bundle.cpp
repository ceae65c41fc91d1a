#include "download/bundle.h"

#include "cache/safepath.h"
#include "download/chunkreader.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cmath>

namespace
{
constexpr int keepForeignChunksSecs = 24 * 60 * 60;

bool isPathComponent(const QString& text)
{
    return !text.isEmpty() && !text.contains(QLatin1Char('/')) && text != QLatin1String(".") &&
           SafePath::isSafeText(text);
}

/** How long the stream of an index's bundle can be: what cannot be compressed grows a little. */
double maxStreamSize(const Index& index)
{
    double bytes = 0;
    for (const auto& row : index.entries())
        bytes += static_cast<double>(row->size) * 1.01 + 64;
    return bytes;
}
} // namespace

Bundle::Bundle(const IndexPtr& index, const QString& cacheRoot)
    : m_index(index), m_resFiles(QDir::cleanPath(cacheRoot + QStringLiteral("/ResFiles")))
{
    if (isPathComponent(index->getName()) && isPathComponent(index->getBuild()))
        m_folder = QStringLiteral("bundles/%1/").arg(index->getBuild());
}

QUrl Bundle::listUrl(const QString& baseUrl) const
{
    return QStringLiteral("%1bundles/%2/%3")
        .arg(baseUrl, m_index->getBuild(), m_index->getName() + QStringLiteral(".bundle.chunks"));
}

QString Bundle::readList(const QByteArray& json)
{
    QJsonParseError parseError;
    const auto document = QJsonDocument::fromJson(json, &parseError);
    const auto chunks = document.array();
    if (!document.isArray())
        return document.isNull() ? parseError.errorString() : QStringLiteral("it is no array");
    if (chunks.isEmpty())
        return QStringLiteral("it names no chunk");
    double bytes = 0;
    for (int i = 0; i < chunks.size(); ++i) {
        const auto problem = checkChunk(chunks[i], i);
        if (!problem.isEmpty())
            return QStringLiteral("chunk %1: %2").arg(i).arg(problem);
        bytes += chunks[i].toObject().value(QLatin1String("size")).toDouble();
    }
    if (bytes > maxStreamSize(*m_index))
        return QStringLiteral("its chunks are larger than their content can be");
    m_chunks = chunks;
    return {};
}

QString Bundle::checkChunk(const QJsonValue& value, int number) const
{
    static const QRegularExpression md5(QStringLiteral("^[0-9a-f]{32}\\z"));
    const auto chunk = value.toObject();
    const auto size = chunk.value(QLatin1String("size")).toDouble(-1);
    if (chunk.value(QLatin1String("name")).toString() != ChunkReader::chunkFile(m_index->getName(), number))
        return QStringLiteral("its name is not what it has to be");
    if (size < 1 || size != std::floor(size))
        return QStringLiteral("its size is no count of bytes");
    if (!md5.match(chunk.value(QLatin1String("checksum")).toString()).hasMatch())
        return QStringLiteral("its checksum is no MD5");
    return {};
}

QVector<IndexEntryPtr> Bundle::chunkEntries() const
{
    QVector<IndexEntryPtr> entries;
    for (const auto& value : m_chunks) {
        const auto chunk = value.toObject();
        const auto name = m_folder + chunk.value(QLatin1String("name")).toString();
        entries << IndexEntryPtr(
            new IndexEntry(name, name, chunk.value(QLatin1String("checksum")).toString(),
                           static_cast<qint64>(chunk.value(QLatin1String("size")).toDouble())));
    }
    return entries;
}

qint64 Bundle::missingBytes() const
{
    qint64 bytes = 0;
    for (const auto& entry : chunkEntries()) {
        if (!QFileInfo::exists(m_resFiles + QLatin1Char('/') + entry->cachedName))
            bytes += entry->size;
    }
    return bytes;
}

bool Bundle::hasChunks() const
{
    const QFileInfo root(m_resFiles + QStringLiteral("/bundles"));
    return root.exists() && !root.isSymLink(); // what is behind a link is not ours to remove
}

void Bundle::removeChunks() const
{
    if (!hasChunks())
        return;
    const auto root = m_resFiles + QStringLiteral("/bundles");
    const auto own = chunkBase() + QStringLiteral(".bundle.");
    const auto old = QDateTime::currentDateTime().addSecs(-keepForeignChunksSecs);
    QDirIterator files(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const auto path = files.next();
        if (path.startsWith(own) || files.fileInfo().lastModified() < old)
            QFile::remove(path);
    }
    const QDir folder(root);
    for (const auto& build : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        folder.rmdir(build); // those that are empty now
    folder.rmdir(root);
}
