#include "tools/publisher/contentstore.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <limits>

ContentStore::ContentStore(const QString& tree) : m_tree(tree) {}

QString ContentStore::cachedNameFor(const QString& md5)
{
    return QStringLiteral("%1/%2_%3").arg(md5.left(2), md5.left(16), md5);
}

std::optional<StoredContent> ContentStore::addFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Cannot read %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    if (file.size() > std::numeric_limits<qint32>::max()) {
        *error = QStringLiteral("%1 is larger than an index can say (2147483647 bytes)").arg(path);
        return std::nullopt;
    }
    const auto bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *error = QStringLiteral("Cannot read %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    return addBytes(bytes, error);
}

std::optional<StoredContent> ContentStore::addBytes(const QByteArray& bytes, QString* error)
{
    const auto md5 = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
    const StoredContent content{cachedNameFor(md5), md5, bytes.size()};
    if (QFileInfo(m_tree + QLatin1Char('/') + content.cachedName).size() == content.size &&
        QFileInfo::exists(m_tree + QLatin1Char('/') + content.cachedName))
        return content;
    if (!writeFile(content.cachedName, bytes, error))
        return std::nullopt;
    return content;
}

bool ContentStore::readFile(const QString& relativePath, QByteArray* bytes) const
{
    QFile file(m_tree + QLatin1Char('/') + relativePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    *bytes = file.readAll();
    return file.error() == QFileDevice::NoError;
}

bool ContentStore::writeFile(const QString& relativePath, const QByteArray& bytes, QString* error) const
{
    const auto path = m_tree + QLatin1Char('/') + relativePath;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
    return false;
}
