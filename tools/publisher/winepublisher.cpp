#include "tools/publisher/winepublisher.h"

#include "tools/publisher/indexwriter.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

bool WinePublisher::checkOptions(QString* error) const
{
    static const QRegularExpression word(QStringLiteral("^[A-Za-z0-9._-]+\\z"));
    if (!word.match(m_options.version).hasMatch())
        *error = QStringLiteral("--version must be a word, such as 8.0-2");
    else if (!QFileInfo(m_options.from).isDir())
        *error = QStringLiteral("--from must be a folder: %1").arg(m_options.from);
    else if (!QFileInfo::exists(m_options.from + QStringLiteral("/bin/regedit")))
        *error = QStringLiteral("--from must be a Wine runtime; this one has no bin/regedit: %1")
                     .arg(m_options.from);
    else if (m_options.tree.isEmpty() || !QDir().mkpath(m_options.tree))
        *error = QStringLiteral("--out must be a folder that can be made: %1").arg(m_options.tree);
    else
        return true;
    return false;
}

bool WinePublisher::publish(QString* error)
{
    if (!checkOptions(error))
        return false;
    ContentStore store(m_options.tree);
    IndexWriter index(&store);
    if (!index.addFolder(m_options.from, {}, error))
        return false;
    m_files = index.fileCount();
    m_bytes = index.byteCount();

    const auto listName =
        QStringLiteral("wine_linux_%1.json")
            .arg(m_options.isDevelopment ? QStringLiteral("dev") : QStringLiteral("release"));
    const QJsonObject entry{{QStringLiteral("version"), m_options.version}};
    QJsonArray versions;
    if (!readVersions(store, listName, &versions, error))
        return false;
    versions.prepend(entry);
    return store.writeFile(QStringLiteral("wine_linux_%1.txt").arg(m_options.version), index.text(), error) &&
           store.writeFile(listName, QJsonDocument(versions).toJson(), error);
}

// The versions that are announced already, but for this one; none where the list does not exist yet.
bool WinePublisher::readVersions(const ContentStore& store, const QString& listName, QJsonArray* versions,
                                 QString* error) const
{
    QByteArray list;
    if (!store.readFile(listName, &list))
        return true;
    const auto document = QJsonDocument::fromJson(list);
    if (!document.isArray()) {
        *error = QStringLiteral("%1 in the tree is not a list of versions").arg(listName);
        return false;
    }
    const auto known = document.array();
    for (const auto& entry : known) {
        if (entry.toObject().value(QLatin1String("version")).toString() != m_options.version)
            versions->append(entry);
    }
    return true;
}
