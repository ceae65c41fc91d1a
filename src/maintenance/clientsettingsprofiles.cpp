#include "maintenance/clientsettingsprofiles.h"

#include "maintenance/treecopy.h"
#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <pwd.h>
#include <unistd.h>

namespace
{
using Result = ClientSettingsProfileResult;

QString defaultName() { return QStringLiteral("Default"); }

QString folderPrefix() { return QStringLiteral("settings_"); }

bool isSame(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

bool isValidName(const QString& name)
{
    static const QRegularExpression pattern(
        QStringLiteral("^[\\p{L}\\p{M}\\p{Nd}_-][\\p{L}\\p{M}\\p{Nd} _-]{0,63}\\z"));
    return pattern.match(name).hasMatch() && !name.endsWith(QLatin1Char(' '));
}

/** The name that Wine gives this user: that of the only folder that is not for everybody, or the system's. */
QString wineUser(const QString& prefix)
{
    const auto* account = ::getpwuid(::getuid());
    const auto login = account ? QString::fromLocal8Bit(account->pw_name) : QString();
    auto users = QDir(prefix + QStringLiteral("/drive_c/users")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    users.removeAll(QStringLiteral("Public"));
    return users.isEmpty() || users.contains(login) ? login : users.first();
}

QString serverFolder(const QString& server)
{
    const auto prefix = Settings::instance()->getWineEnvFolder();
    return QDir::cleanPath(QStringLiteral("%1/drive_c/users/%2/AppData/Local/Halden/Velkor/%3")
                               .arg(prefix, wineUser(prefix), server));
}

/** The folder of a profile whatever its case; empty when there is none. */
QString existingFolder(const QString& server, const QString& name)
{
    const QDir folder(serverFolder(server));
    const auto entries = folder.entryList({folderPrefix() + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks);
    for (const auto& entry : entries) {
        if (isSame(entry.mid(folderPrefix().size()), name))
            return folder.filePath(entry);
    }
    return {};
}

bool exists(const QString& server, const QString& name)
{
    return isSame(name, defaultName()) || !existingFolder(server, name).isEmpty();
}

bool isServer(const QString& key) { return Settings::instance()->getFullServerList().contains(key); }

bool areClientsRunning(const QString& server)
{
    const auto* manager = Settings::instance()->getServer(server);
    return manager && manager->isRunningProcesses();
}

Result failed(const QString& what, const QString& reason)
{
    qWarning().noquote() << "Client settings profile:" << what << reason;
    return Result::FileOperationFailed;
}

Result changed(const QString& server)
{
    emit Settings::instance()->clientSettingsProfilesChanged(server);
    return Result::Success;
}
} // namespace

QString describeProfileResult(ClientSettingsProfileResult result)
{
    const auto translate = [](const char* text) {
        return QCoreApplication::translate("ClientSettingsProfiles", text);
    };
    switch (result) {
    case Result::Success:
        return {};
    case Result::InvalidName:
        return translate(
            "A name has up to 64 letters, digits, blanks, \"-\" and \"_\", and is not \"Default\"");
    case Result::AlreadyExists:
        return translate("There is a profile of this name already");
    case Result::DoesNotExist:
        return translate("There is no such profile");
    case Result::ClientsRunning:
        return translate("Profiles cannot be changed while clients of the server are running");
    case Result::FileOperationFailed:
        return translate("The files could not be changed; the log says why");
    }
    return {};
}

QString settingsProfileFolder(const QString& server, const QString& name)
{
    const auto existing = existingFolder(server, name);
    return existing.isEmpty() ? serverFolder(server) + QLatin1Char('/') + folderPrefix() + name : existing;
}

QStringList getSettingsProfiles(const QString& server)
{
    if (!isServer(server))
        return {defaultName()};
    auto entries = QDir(serverFolder(server))
                       .entryList({folderPrefix() + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks,
                                  QDir::Name | QDir::IgnoreCase);
    QStringList names{defaultName()};
    for (const auto& entry : qAsConst(entries)) {
        const auto name = entry.mid(folderPrefix().size());
        if (isValidName(name) && !isSame(name, defaultName()))
            names << name;
    }
    return names;
}

ClientSettingsProfileResult createSettingsProfile(const QString& server, const QString& name,
                                                  const QString& fromServer, const QString& fromName)
{
    if (!isValidName(name) || isSame(name, defaultName()))
        return Result::InvalidName;
    if (isServer(server) && exists(server, name))
        return Result::AlreadyExists;
    if (!isServer(server) || (!fromName.isEmpty() && !(isServer(fromServer) && exists(fromServer, fromName))))
        return Result::DoesNotExist;
    if (areClientsRunning(server))
        return Result::ClientsRunning;
    // Beside the target, so that a profile is there wholly or not at all.
    const auto folder = serverFolder(server);
    if (!QDir().mkpath(folder))
        return failed(folder, QStringLiteral("cannot be made"));
    const QTemporaryDir copy(folder + QStringLiteral("/.copying-XXXXXX"));
    if (!copy.isValid())
        return failed(folder, copy.errorString());
    const auto source = fromName.isEmpty() ? QString() : existingFolder(fromServer, fromName);
    const auto content = copy.filePath(QStringLiteral("content"));
    if (!source.isEmpty()) {
        const std::atomic<bool> never{false};
        std::atomic<qint64> done{0};
        const auto error = TreeCopy(source, content, never, &done).copy(listTree(source, never));
        if (!error.isEmpty())
            return failed(source, error);
    } else if (!QDir().mkpath(content)) {
        return failed(content, QString());
    }
    if (!QDir().rename(content, settingsProfileFolder(server, name)))
        return failed(content, QStringLiteral("cannot be renamed"));
    return changed(server);
}

ClientSettingsProfileResult renameSettingsProfile(const QString& server, const QString& name,
                                                  const QString& newName)
{
    if (isSame(name, defaultName()) || !isValidName(newName) || isSame(newName, defaultName()))
        return Result::InvalidName;
    const auto folder = isServer(server) ? existingFolder(server, name) : QString();
    if (folder.isEmpty())
        return Result::DoesNotExist;
    if (!isSame(name, newName) && exists(server, newName))
        return Result::AlreadyExists;
    if (areClientsRunning(server))
        return Result::ClientsRunning;
    const auto target = serverFolder(server) + QLatin1Char('/') + folderPrefix() + newName;
    if (folder != target && !QDir().rename(folder, target))
        return failed(folder, QStringLiteral("cannot be renamed"));
    return changed(server);
}

ClientSettingsProfileResult deleteSettingsProfile(const QString& server, const QString& name)
{
    if (isSame(name, defaultName()))
        return Result::InvalidName;
    const auto folder = isServer(server) ? existingFolder(server, name) : QString();
    if (folder.isEmpty())
        return Result::DoesNotExist;
    if (areClientsRunning(server))
        return Result::ClientsRunning;
    // Out of sight in one step; what goes away file by file is no profile any more.
    const QTemporaryDir grave(serverFolder(server) + QStringLiteral("/.deleted-XXXXXX"));
    if (!grave.isValid() || !QDir().rename(folder, grave.filePath(QStringLiteral("content"))))
        return failed(folder, QStringLiteral("cannot be removed"));
    return changed(server);
}
