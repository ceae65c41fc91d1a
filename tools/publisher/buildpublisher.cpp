#include "tools/publisher/buildpublisher.h"

#include "index/indexparser.h"
#include "tools/publisher/bundlewriter.h"
#include "tools/publisher/patchpublisher.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <fnmatch.h>

namespace
{
constexpr int plainMode = 33188;
constexpr int executableMode = 33261;
constexpr int linkMode = 41471;

/** All files and links below a folder, by relative path, sorted. */
QStringList listFolder(const QString& folder)
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

bool isPublishableName(const QString& name)
{
    static const QRegularExpression bad(QStringLiteral("[,\\n\\r\\\\\\x{0}]"));
    return !name.contains(bad);
}
} // namespace

BuildPublisher::BuildPublisher(const BuildOptions& options) : m_options(options), m_store(options.tree) {}

bool BuildPublisher::publish(QString* error)
{
    return checkOptions(error) && addClientFiles(error) && addStartIni(error) && addResources(error) &&
           addPatches(error) && addBundles(error) && announce(error);
}

bool BuildPublisher::checkOptions(QString* error) const
{
    static const QRegularExpression word(QStringLiteral("^[A-Za-z0-9._-]+$"));
    if (!word.match(m_options.server).hasMatch())
        *error = QStringLiteral("--server must be a catalogue key, such as ks");
    else if (!word.match(m_options.build).hasMatch())
        *error = QStringLiteral("--build must be a build number");
    else if (!std::all_of(m_options.previous.begin(), m_options.previous.end(),
                          [](const QString& build) { return word.match(build).hasMatch(); }))
        *error = QStringLiteral("--previous must be a build number");
    else if (!QFileInfo(m_options.from).isDir())
        *error = QStringLiteral("--from must be a folder: %1").arg(m_options.from);
    else if (!m_options.resources.isEmpty() && !QFileInfo(m_options.resources).isDir())
        *error = QStringLiteral("--resources must be a folder: %1").arg(m_options.resources);
    else if (m_options.resources.isEmpty() && !m_options.prefetch.isEmpty())
        *error = QStringLiteral("--prefetch selects from the resources, so it needs --resources");
    else if (m_options.tree.isEmpty() || !QDir().mkpath(m_options.tree))
        *error = QStringLiteral("--out must be a folder that can be made: %1").arg(m_options.tree);
    else
        return true;
    return false;
}

bool BuildPublisher::addRow(QByteArray* index, const QString& name, const StoredContent& content, int mode,
                            QString* error)
{
    if (!isPublishableName(name)) {
        *error = QStringLiteral("An index cannot hold this name: %1").arg(name);
        return false;
    }
    const QStringList fields{name,
                             content.cachedName,
                             content.md5,
                             QString::number(content.size),
                             QString::number(content.size),
                             QString::number(mode)};
    *index += fields.join(QLatin1Char(',')).toUtf8() + '\n';
    ++m_files;
    m_bytes += content.size;
    return true;
}

bool BuildPublisher::addClientFiles(QString* error)
{
    const auto paths = listFolder(m_options.from);
    for (const auto& relativePath : paths) {
        const auto path = m_options.from + QLatin1Char('/') + relativePath;
        const QFileInfo info(path);
        if (relativePath == QLatin1String("start.ini"))
            continue;
        if (info.isSymLink()) {
            if (!addLink(path, relativePath, error))
                return false;
            continue;
        }
        const auto content = m_store.addFile(path, error);
        const int mode = info.isExecutable() ? executableMode : plainMode;
        if (!content || !addRow(&m_index, QStringLiteral("app:/") + relativePath, *content, mode, error))
            return false;
    }
    return true;
}

bool BuildPublisher::addLink(const QString& path, const QString& relativePath, QString* error)
{
    const auto target = QDir(m_options.from).relativeFilePath(QDir::cleanPath(QFile::symLinkTarget(path)));
    if (target.startsWith(QLatin1String("..")) || QDir::isAbsolutePath(target)) {
        *error = QStringLiteral("The link %1 leads out of the folder").arg(path);
        return false;
    }
    const auto md5 = QString::fromLatin1(QCryptographicHash::hash({}, QCryptographicHash::Md5).toHex());
    return addRow(&m_index, QStringLiteral("sym:/") + relativePath,
                  {QStringLiteral("sym:app:/") + target, md5, 0}, linkMode, error);
}

bool BuildPublisher::addTextFile(const QString& name, const QByteArray& text, QString* error)
{
    const auto content = m_store.addBytes(text, error);
    return content && addRow(&m_index, QStringLiteral("app:/") + name, *content, plainMode, error);
}

// The launcher reads the installed build from start.ini, so whatever else stands there, the build is this
// one.
bool BuildPublisher::addStartIni(QString* error)
{
    QByteArray text;
    QFile file(m_options.from + QStringLiteral("/start.ini"));
    if (file.open(QIODevice::ReadOnly))
        text = file.readAll();
    QByteArrayList lines;
    bool inMain = false;
    for (const auto& line : text.split('\n')) {
        const auto trimmed = line.trimmed();
        if (trimmed.startsWith('['))
            inMain = trimmed == "[main]";
        const bool isBuild = inMain && trimmed.left(trimmed.indexOf('=')).trimmed() == "build";
        if (!trimmed.isEmpty() && !isBuild && trimmed != "[main]")
            lines << line;
        else if (trimmed == "[main]")
            lines << "[main]"
                  << "build=" + m_options.build.toUtf8();
    }
    if (!lines.contains("[main]"))
        lines << "[main]"
              << "build=" + m_options.build.toUtf8();
    return addTextFile(QStringLiteral("start.ini"), lines.join('\n') + '\n', error);
}

bool BuildPublisher::addResources(QString* error)
{
    if (m_options.resources.isEmpty())
        return true;
    QByteArray all;
    QByteArray prefetch;
    QSet<QString> unusedGlobs(m_options.prefetch.cbegin(), m_options.prefetch.cend());
    const auto paths = listFolder(m_options.resources);
    for (const auto& relativePath : paths) {
        const auto name = QStringLiteral("res:/") + relativePath;
        const auto content = m_store.addFile(m_options.resources + QLatin1Char('/') + relativePath, error);
        if (!content || !addRow(&all, name, *content, plainMode, error))
            return false;
        bool first = false;
        for (const auto& glob : m_options.prefetch) {
            if (::fnmatch(QFile::encodeName(glob).constData(), QFile::encodeName(relativePath).constData(),
                          0) != 0)
                continue;
            first = true;
            unusedGlobs.remove(glob);
        }
        if (first)
            prefetch += all.mid(all.lastIndexOf('\n', all.size() - 2) + 1);
    }
    if (!unusedGlobs.isEmpty()) {
        *error = QStringLiteral("--prefetch %1 selects no resource").arg(*unusedGlobs.cbegin());
        return false;
    }
    m_prefetchIndex = prefetch;
    return addTextFile(QStringLiteral("resfileindex.txt"), all, error) &&
           (m_options.prefetch.isEmpty() ||
            addTextFile(QStringLiteral("resfileindex_prefetch.txt"), prefetch, error));
}

// The launcher patches the client's own files only, so these are all that need patches.
bool BuildPublisher::addPatches(QString* error)
{
    const auto index = parseIndex(m_index, QStringLiteral("new index"));
    for (const auto& build : m_options.previous) {
        QByteArray text;
        if (!m_store.readFile(QStringLiteral("velkor_%1.txt").arg(build), &text) &&
            !m_store.readFile(QStringLiteral("prod/velkor_%1").arg(build), &text)) {
            *error = QStringLiteral("--previous %1: the tree has no such build").arg(build);
            return false;
        }
        PatchPublisher publisher(m_store);
        if (!publisher.publish(*parseIndex(text, build), *index, error))
            return false;
        m_patches += publisher.patchCount();
        m_patchBytes += publisher.patchBytes();
        m_patchedBytes += publisher.fileBytes();
    }
    return true;
}

bool BuildPublisher::addBundles(QString* error)
{
    if (!m_options.bundle)
        return true;
    const QPair<QString, QByteArray> indexes[] = {
        {QStringLiteral("velkor_%1.txt"), m_index},
        {QStringLiteral("resfileindex_prefetch_%1.txt"), m_prefetchIndex}};
    for (const auto& [name, text] : indexes) {
        const auto index = parseIndex(text, name);
        index->setName(name.arg(m_options.build));
        index->setBuild(m_options.build);
        if (!text.isEmpty() && !BundleWriter(m_store, *index, m_options.chunkSize).write(error))
            return false;
    }
    return true;
}

// The document that announces the build comes last: a build that is half there is never announced.
bool BuildPublisher::announce(QString* error)
{
    const auto indexPath = m_options.isProtected ? QStringLiteral("prod/velkor_%1").arg(m_options.build)
                                                 : QStringLiteral("velkor_%1.txt").arg(m_options.build);
    const QJsonObject version{{QStringLiteral("build"), m_options.build},
                              {QStringLiteral("protected"), m_options.isProtected}};
    return m_store.writeFile(indexPath, m_index, error) &&
           m_store.writeFile(QStringLiteral("velkorclient_%1.json").arg(m_options.server.toUpper()),
                             QJsonDocument(version).toJson(), error);
}
