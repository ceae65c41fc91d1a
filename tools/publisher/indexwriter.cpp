#include "tools/publisher/indexwriter.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace
{
constexpr int plainMode = 33188;
constexpr int executableMode = 33261;
constexpr int linkMode = 41471;

bool isPublishableName(const QString& name)
{
    static const QRegularExpression bad(QStringLiteral("[,\\n\\r\\\\\\x{0}]"));
    return !name.contains(bad);
}
} // namespace

QStringList IndexWriter::listFolder(const QString& folder)
{
    QStringList paths;
    const QDir root(folder);
    QDirIterator files(folder, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (!files.fileInfo().isDir() || files.fileInfo().isSymLink())
            paths << root.relativeFilePath(files.filePath());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

bool IndexWriter::addFolder(const QString& folder, const QStringList& leftOut, QString* error)
{
    const auto paths = listFolder(folder);
    for (const auto& relativePath : paths) {
        if (leftOut.contains(relativePath))
            continue;
        const auto path = folder + QLatin1Char('/') + relativePath;
        const bool added = QFileInfo(path).isSymLink()
                               ? addLink(folder, relativePath, error)
                               : addFile(QStringLiteral("app:/") + relativePath, path, error);
        if (!added)
            return false;
    }
    return true;
}

bool IndexWriter::addFile(const QString& name, const QString& path, QString* error)
{
    const auto content = m_store->addFile(path, error);
    return content &&
           addRow(name, *content, QFileInfo(path).isExecutable() ? executableMode : plainMode, error);
}

bool IndexWriter::addBytes(const QString& name, const QByteArray& bytes, QString* error)
{
    const auto content = m_store->addBytes(bytes, error);
    return content && addRow(name, *content, plainMode, error);
}

bool IndexWriter::addLink(const QString& folder, const QString& relativePath, QString* error)
{
    const auto path = folder + QLatin1Char('/') + relativePath;
    const auto target = QDir(folder).relativeFilePath(QDir::cleanPath(QFile::symLinkTarget(path)));
    if (target.startsWith(QLatin1String("..")) || QDir::isAbsolutePath(target)) {
        *error = QStringLiteral("The link %1 leads out of the folder").arg(path);
        return false;
    }
    const auto md5 = QString::fromLatin1(QCryptographicHash::hash({}, QCryptographicHash::Md5).toHex());
    return addRow(QStringLiteral("sym:/") + relativePath, {QStringLiteral("sym:app:/") + target, md5, 0},
                  linkMode, error);
}

bool IndexWriter::addRow(const QString& name, const StoredContent& content, int mode, QString* error)
{
    if (!isPublishableName(name) || !isPublishableName(content.cachedName)) {
        *error = QStringLiteral("An index cannot hold this name: %1").arg(name);
        return false;
    }
    const QStringList fields{name,
                             content.cachedName,
                             content.md5,
                             QString::number(content.size),
                             QString::number(content.size),
                             QString::number(mode)};
    m_text += fields.join(QLatin1Char(',')).toUtf8() + '\n';
    ++m_files;
    m_bytes += content.size;
    return true;
}
