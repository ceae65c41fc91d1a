// The part of WineManager that knows the prefix: what is removed from it, and how it is prepared.

#include "cache/safepath.h"
#include "servers/consolerouter.h"
#include "servers/winemanager.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <csignal>
#include <unistd.h>

namespace
{
QString direct3dKey() { return QStringLiteral("HKEY_CURRENT_USER\\Software\\Wine\\Direct3D"); }

QString macDriverKey() { return QStringLiteral("HKEY_CURRENT_USER\\Software\\Wine\\Mac Driver"); }

/** A program that is ended together with everything it has started. */
class GroupProcess : public QProcess
{
public:
    void killGroup()
    {
        if (processId() > 0)
            ::kill(-static_cast<pid_t>(processId()), SIGKILL);
        waitForFinished();
    }

protected:
    void setupChildProcess() override { ::setpgid(0, 0); }
};

/** Removes a folder; a link in its place goes without what it points to. */
bool removeFolder(const QString& path)
{
    const QFileInfo info(path);
    if (info.isSymLink())
        return QFile::remove(path);
    return !info.exists() || QDir(path).removeRecursively();
}

bool removeFile(const QString& path)
{
    const QFileInfo info(path);
    return (!info.exists() && !info.isSymLink()) || QFile::remove(path);
}
} // namespace

void WineManager::purgeStagingFolders() const
{
    purge(Settings::instance()->getCacheFolder(), Settings::instance()->getWineEnvFolder());
}

void WineManager::purge(const QString& cacheFolder, const QString& prefixFolder)
{
    qDebug() << "Purging Wine staging folders";
    SafePath cache(cacheFolder);
    SafePath prefix(prefixFolder);
    struct Item {
        SafePath* folder;
        const char* path;
        bool (*remove)(const QString&);
        const char* complaint;
    };
    const Item items[] = {
        {&cache, "wine", removeFolder, "Removing wine folder failed"},
        {&prefix, "user.reg", removeFile, "Removing user.reg failed"},
        {&prefix, "system.reg", removeFile, "Removing system.reg failed"},
        {&prefix, "userdef.reg", removeFile, "Removing userdef.reg failed"},
        {&prefix, "drive_c/windows", removeFolder, "Removing windows folder failed"},
        {&prefix, "drive_c/Program Files", removeFolder, "Removing Program Files folder failed"},
    };
    for (const auto& item : items) {
        // Empty where a link leads out of the folder.
        const auto path = item.folder->resolve(QLatin1String(item.path));
        if (path.isEmpty() || !item.remove(path))
            qWarning() << item.complaint;
    }
}

void WineManager::prepareEnv()
{
    qDebug() << "Preparing wineenv";
    emit waiting(tr("Preparing Wine..."));
    const auto path =
        QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/wine/settings.reg"));
    writeSettingsFile(path);
    runRegEdit({path});
    qDebug() << "wineenv exists";
    copyFont();
}

void WineManager::writeSettingsFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug().noquote() << "Cannot write" << path << file.errorString();
        return;
    }
    const auto* settings = Settings::instance();
    QTextStream text(&file);
    text << "REGEDIT4\n\n";
    if (settings->getWineVideoMemory() != 0)
        text << '[' << direct3dKey() << "]\n\"VideoMemorySize\"=\"" << settings->getWineVideoMemory()
             << "\"\n";
    else // Wine falls back to what it finds out itself.
        runRegEdit({QStringLiteral("/D"), direct3dKey()});
    text << '[' << macDriverKey() << "]\n\"RetinaMode\"=\"" << (settings->getWineRetinaMode() ? 'y' : 'n')
         << "\"\n";
}

void WineManager::runRegEdit(const QStringList& arguments)
{
    const auto program = getStagingFolder() + QStringLiteral("/bin/regedit");
    GroupProcess regedit;
    regedit.setProcessEnvironment(getWineProcessEnvironment());
    routeConsoleOutputToLog(&regedit);
    if (!QFileInfo::exists(program)) { // with a custom Wine there may be no runtime of ours
        qDebug().noquote() << program << "does not exist, nothing is written to the registry";
        return;
    }
    regedit.start(program, arguments);
    if (!regedit.waitForStarted()) {
        qWarning().noquote() << "Cannot run" << program << regedit.errorString();
        return;
    }
    if (regedit.waitForFinished(static_cast<int>(m_regEditTimeout.count())))
        return;
    qWarning().noquote() << program << arguments.join(QLatin1Char(' ')) << "has not ended within"
                         << m_regEditTimeout.count() << "ms and is ended now";
    regedit.killGroup();
}

QProcessEnvironment WineManager::getWineProcessEnvironment() const
{
    const auto* settings = Settings::instance();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WINEPREFIX"), settings->getWineEnvFolder());
    // Keeps Wine from asking to download its .NET and HTML engines.
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
    environment.insert(QStringLiteral("WINEDEBUG"), settings->getWinedebug());
    environment.insert(QStringLiteral("DYLD_FALLBACK_LIBRARY_PATH"), QStringLiteral("/usr/X11/lib"));
    return environment;
}

void WineManager::copyFont() const
{
    const auto target = QDir::cleanPath(Settings::instance()->getWineEnvFolder() +
                                        QStringLiteral("/drive_c/windows/Fonts/ARIAL.TTF"));
    if (QFileInfo::exists(target))
        return;
    qDebug() << "Copying Arial font";
    QFile font(getStagingFolder() + QStringLiteral("/haldenadditions/fonts/ARIAL.TTF"));
    if (!font.copy(target))
        qDebug().noquote() << "Arial font could not be copied:" << font.errorString();
}
