#include "tools/publisher/launcherpublisher.h"

#include "tools/publisher/indexwriter.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

bool LauncherPublisher::checkOptions(QString* error) const
{
    static const QRegularExpression number(QStringLiteral("^[0-9]+\\z"));
    static const QStringList channels{QStringLiteral("release"), QStringLiteral("beta"),
                                      QStringLiteral("dev")};
    const auto isProgram = [this](const char* name) {
        const QFileInfo file(m_options.from + QLatin1Char('/') + QLatin1String(name));
        return file.isFile() && file.isExecutable();
    };
    if (!number.match(m_options.version).hasMatch())
        *error = QStringLiteral("--version must be a number, such as 1548103");
    else if (!channels.contains(m_options.channel))
        *error = QStringLiteral("--channel must be release, beta or dev");
    else if (!isProgram("velkorlauncher") || !isProgram("updater"))
        *error = QStringLiteral("--from must be an installed launcher, with velkorlauncher and updater: %1")
                     .arg(m_options.from);
    else if (m_options.tree.isEmpty() || !QDir().mkpath(m_options.tree))
        *error = QStringLiteral("--out must be a folder that can be made: %1").arg(m_options.tree);
    else
        return true;
    return false;
}

bool LauncherPublisher::publish(QString* error)
{
    if (!checkOptions(error))
        return false;
    const auto files = IndexWriter::listFolder(m_options.from);
    ContentStore store(m_options.tree);
    IndexWriter index(&store);
    for (const auto& path : files) {
        const auto file = m_options.from + QLatin1Char('/') + path;
        // The updater replaces plain files, and keeps its own records in hidden ones.
        if (QFileInfo(file).isSymLink() || path.startsWith(QLatin1Char('.'))) {
            *error = QStringLiteral("A launcher has neither links nor hidden files: %1").arg(path);
            return false;
        }
        if (!index.addFile(QStringLiteral("app:/") + path, file, error))
            return false;
    }
    m_files = index.fileCount();
    m_bytes = index.byteCount();
    const QJsonObject announcement{{QStringLiteral("version"), m_options.version}};
    return store.writeFile(QStringLiteral("velkorlauncher_linux_%1.txt").arg(m_options.version), index.text(),
                           error) &&
           store.writeFile(QStringLiteral("velkorlauncher_linux_%1.json").arg(m_options.channel),
                           QJsonDocument(announcement).toJson(), error);
}
