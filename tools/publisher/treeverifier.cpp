#include "tools/publisher/treeverifier.h"

#include "cache/md5many.h"
#include "cache/safepath.h"
#include "download/patchmanager.h"
#include "index/indexparser.h"
#include "tools/publisher/contentstore.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

TreeVerifier::TreeVerifier(const QString& tree) : m_tree(tree) {}

QStringList TreeVerifier::verify()
{
    const auto announcements =
        QDir(m_tree).entryList({QStringLiteral("velkorclient_*.json")}, QDir::Files, QDir::Name);
    const auto wineLists = QDir(m_tree).entryList({QStringLiteral("wine_*.json")}, QDir::Files, QDir::Name);
    const auto launchers =
        QDir(m_tree).entryList({QStringLiteral("velkorlauncher_linux_*.json")}, QDir::Files, QDir::Name);
    if (announcements.isEmpty() && wineLists.isEmpty() && launchers.isEmpty())
        m_problems << QStringLiteral("%1 announces nothing").arg(m_tree);
    for (const auto& fileName : announcements)
        verifyAnnouncement(fileName);
    for (const auto& fileName : wineLists)
        verifyWineVersions(fileName);
    for (const auto& fileName : launchers)
        verifyLauncher(fileName);
    verifyContents();
    verifyBundles();
    verifyPatches();
    return m_problems;
}

/** Null where the file cannot be read or is no JSON. */
QJsonDocument TreeVerifier::readJson(const QString& fileName) const
{
    QFile file(m_tree + QLatin1Char('/') + fileName);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()) : QJsonDocument();
}

void TreeVerifier::verifyAnnouncement(const QString& fileName)
{
    const auto object = readJson(fileName).object();
    const auto build = object.value(QLatin1String("build")).toString();
    if (build.isEmpty()) {
        m_problems << QStringLiteral("%1 names no build").arg(fileName);
        return;
    }
    const bool isProtected = object.value(QLatin1String("protected")).toBool();
    verifyIndex(isProtected ? QStringLiteral("prod/velkor_%1").arg(build)
                            : QStringLiteral("velkor_%1.txt").arg(build),
                fileName);
}

void TreeVerifier::verifyWineVersions(const QString& fileName)
{
    const auto versions = readJson(fileName).array();
    if (versions.isEmpty())
        m_problems << QStringLiteral("%1 lists no version").arg(fileName);
    for (const auto& value : versions) {
        const auto version = value.toObject().value(QLatin1String("version")).toString();
        if (version.isEmpty())
            m_problems << QStringLiteral("%1 has an entry without a version").arg(fileName);
        else
            verifyIndex(QStringLiteral("wine_linux_%1.txt").arg(version), fileName);
    }
}

void TreeVerifier::verifyLauncher(const QString& fileName)
{
    const auto object = readJson(fileName).object();
    const auto version = object.value(QLatin1String("version")).toString();
    if (version.isEmpty())
        m_problems << QStringLiteral("%1 names no version").arg(fileName);
    else
        verifyIndex(QStringLiteral("velkorlauncher_linux_%1.txt").arg(version), fileName);
}

void TreeVerifier::verifyIndex(const QString& path, const QString& what)
{
    QFile file(m_tree + QLatin1Char('/') + path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_problems
            << QStringLiteral("%1 needs %2, which cannot be read: %3").arg(what, path, file.errorString());
        return;
    }
    const auto bytes = file.readAll();
    IndexParser parser;
    parser.parse(bytes.constData(), static_cast<size_t>(bytes.size()));
    if (parser.malformedLines() > 0)
        m_problems << QStringLiteral("%1 has %2 malformed lines").arg(path).arg(parser.malformedLines());
    QString resourceIndex;
    for (const auto& entry : parser.getIndex()->entries()) {
        if (entry->name.startsWith(QLatin1String("sym:")))
            continue;
        if (!SafePath::isSafeText(entry->cachedName)) {
            m_problems << QStringLiteral("%1: %2 points outside the tree").arg(path, entry->name);
            continue;
        }
        if (!m_checked.contains(entry->cachedName)) {
            m_checked.insert(entry->cachedName);
            m_expected.append({entry->cachedName, entry->checksum, entry->size, entry->name});
        }
        if (entry->name == QLatin1String("app:/resfileindex.txt"))
            resourceIndex = entry->cachedName;
    }
    if (!resourceIndex.isEmpty())
        verifyIndex(resourceIndex, path);
}

void TreeVerifier::verifyContents()
{
    QVector<QString> paths;
    for (const auto& expected : qAsConst(m_expected))
        paths << m_tree + QLatin1Char('/') + expected.cachedName;
    const auto checksums = md5OfFiles(paths);
    for (int i = 0; i < m_expected.size(); ++i) {
        const auto& expected = m_expected[i];
        if (checksums[i].isEmpty())
            m_problems << QStringLiteral("%1 (%2) is missing").arg(expected.cachedName, expected.what);
        else if (QFileInfo(paths[i]).size() != expected.size)
            m_problems
                << QStringLiteral("%1 (%2) has the wrong size").arg(expected.cachedName, expected.what);
        else if (checksums[i] != expected.md5.toLatin1())
            m_problems
                << QStringLiteral("%1 (%2) has the wrong content").arg(expected.cachedName, expected.what);
    }
}

void TreeVerifier::verifyBundles()
{
    QDirIterator lists(m_tree + QStringLiteral("/bundles"), {QStringLiteral("*.bundle.chunks")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (lists.hasNext()) {
        QFile list(lists.next());
        const auto chunks =
            list.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(list.readAll()).array() : QJsonArray();
        if (chunks.isEmpty())
            m_problems << QStringLiteral("%1 lists no chunk").arg(list.fileName());
        for (const auto& value : chunks) {
            const auto chunk = value.toObject();
            const auto name = chunk.value(QLatin1String("name")).toString();
            const auto path = QFileInfo(list).path() + QLatin1Char('/') + name;
            ++m_chunks;
            if (!SafePath::isSafeText(name) ||
                QFileInfo(path).size() != chunk.value(QLatin1String("size")).toDouble() ||
                QString::fromLatin1(md5OfFiles({path}).first()) !=
                    chunk.value(QLatin1String("checksum")).toString())
                m_problems << QStringLiteral("%1 is not as its list says").arg(path);
        }
    }
}

// The name of a patch tells where it starts and where it leads: "<cached name>_<md5 of the result>.patch".
void TreeVerifier::verifyPatches()
{
    const ContentStore store(m_tree);
    const QDir folder(m_tree + QStringLiteral("/patches"));
    QDirIterator patches(folder.path(), {QStringLiteral("*.patch")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (patches.hasNext()) {
        const auto name = folder.relativeFilePath(patches.next()).chopped(6);
        const auto md5 = name.mid(name.lastIndexOf(QLatin1Char('_')) + 1);
        QByteArray from;
        QByteArray to;
        QByteArray patch;
        ++m_patches;
        if (!store.readFile(name.left(name.lastIndexOf(QLatin1Char('_'))), &from) ||
            !store.readFile(ContentStore::cachedNameFor(md5), &to) ||
            !store.readFile(QStringLiteral("patches/%1.patch").arg(name), &patch))
            m_problems << QStringLiteral("patches/%1.patch: its files cannot be read").arg(name);
        else if (PatchManager::rebuild(from, patch, static_cast<size_t>(to.size()), md5).isNull())
            m_problems << QStringLiteral("patches/%1.patch does not lead to its file").arg(name);
    }
}
