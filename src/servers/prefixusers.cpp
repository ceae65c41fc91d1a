#include "servers/prefixusers.h"

#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QDir>
#include <QFile>

namespace
{
QByteArrayList readStrings(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\0') : QByteArrayList();
}
} // namespace

bool isClientRunningIn(const QString& prefix)
{
    const auto variable = "WINEPREFIX=" + QFile::encodeName(QDir::cleanPath(prefix));
    const auto processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto& process : processes) {
        if (!process.at(0).isDigit())
            continue;
        const auto folder = QStringLiteral("/proc/") + process;
        // Wine's own helpers run in the prefix as well, and linger for some seconds.
        const auto program = readStrings(folder + QStringLiteral("/cmdline"));
        const bool isClient = std::any_of(program.cbegin(), program.cend(), [](const QByteArray& part) {
            return part.endsWith("exefile.exe");
        });
        if (isClient && readStrings(folder + QStringLiteral("/environ")).contains(variable))
            return true;
    }
    return false;
}

bool isAnyClientRunning()
{
    const auto* settings = Settings::instance();
    const auto keys = settings->getFullServerList();
    const bool tracked = std::any_of(keys.cbegin(), keys.cend(), [settings](const QString& key) {
        const auto* server = settings->getServer(key);
        return server && server->isRunningProcesses();
    });
    return tracked || isClientRunningIn(settings->getWineEnvFolder());
}
