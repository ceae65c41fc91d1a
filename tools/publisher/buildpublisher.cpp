#include "tools/publisher/buildpublisher.h"

#include "index/indexparser.h"
#include "tools/publisher/bundlewriter.h"
#include "tools/publisher/patchpublisher.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <fnmatch.h>

BuildPublisher::BuildPublisher(const BuildOptions& options)
    : m_options(options), m_store(options.tree), m_index(&m_store)
{
}

bool BuildPublisher::publish(QString* error)
{
    return checkOptions(error) && addClientFiles(error) && addStartIni(error) && addResources(error) &&
           addPatches(error) && addBundles(error) && announce(error);
}

bool BuildPublisher::checkOptions(QString* error) const
{
    static const QRegularExpression word(QStringLiteral("^[A-Za-z0-9._-]+\\z"));
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

bool BuildPublisher::addClientFiles(QString* error)
{
    return m_index.addFolder(m_options.from, {QStringLiteral("start.ini")}, error);
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
    return m_index.addBytes(QStringLiteral("app:/start.ini"), lines.join('\n') + '\n', error);
}

bool BuildPublisher::addResources(QString* error)
{
    if (m_options.resources.isEmpty())
        return true;
    IndexWriter all(&m_store);
    QByteArray prefetch;
    QSet<QString> unusedGlobs(m_options.prefetch.cbegin(), m_options.prefetch.cend());
    const auto paths = IndexWriter::listFolder(m_options.resources);
    for (const auto& relativePath : paths) {
        if (!all.addFile(QStringLiteral("res:/") + relativePath,
                         m_options.resources + QLatin1Char('/') + relativePath, error))
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
            prefetch += all.lastRow();
    }
    if (!unusedGlobs.isEmpty()) {
        *error = QStringLiteral("--prefetch %1 selects no resource").arg(*unusedGlobs.cbegin());
        return false;
    }
    m_prefetchIndex = prefetch;
    m_resourceFiles = all.fileCount();
    m_resourceBytes = all.byteCount();
    return m_index.addBytes(QStringLiteral("app:/resfileindex.txt"), all.text(), error) &&
           (m_options.prefetch.isEmpty() ||
            m_index.addBytes(QStringLiteral("app:/resfileindex_prefetch.txt"), prefetch, error));
}

// The launcher patches the client's own files only, so these are all that need patches.
bool BuildPublisher::addPatches(QString* error)
{
    const auto index = parseIndex(m_index.text(), QStringLiteral("new index"));
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
        {QStringLiteral("velkor_%1.txt"), m_index.text()},
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
    return m_store.writeFile(indexPath, m_index.text(), error) &&
           m_store.writeFile(QStringLiteral("velkorclient_%1.json").arg(m_options.server.toUpper()),
                             QJsonDocument(version).toJson(), error);
}
