#include "maintenance/installationstate.h"

#include "cache/freespace.h"
#include "logging/formatmemory.h"
#include "logging/messagehandler.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"

#include <QDir>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>
#include <QThread>

#include <gnu/libc-version.h>
#include <sys/sysinfo.h>

namespace
{
/** Lines of the form "what: how much". */
class Lines
{
public:
    void add(const QString& what, const QString& text)
    {
        m_text += QStringLiteral("%1: %2\n").arg(what, text);
    }
    void add(const QString& what, bool is) { add(what, is ? QStringLiteral("yes") : QStringLiteral("no")); }
    void addHeading(const QString& text) { m_text += QStringLiteral("\n[%1]\n").arg(text); }
    QString text() const { return m_text; }

private:
    QString m_text;
};

QString memoryOfMachine()
{
    struct sysinfo info = {};
    return ::sysinfo(&info) == 0 ? formatMemory(static_cast<qint64>(info.totalram) * info.mem_unit)
                                 : QString();
}

QString describeValue(const QVariant& value)
{
    return value.type() == QVariant::StringList ? value.toStringList().join(QStringLiteral(", "))
                                                : value.toString();
}

QString describeRows(const IndexPtr& index)
{
    return index ? QStringLiteral("%1 rows").arg(index->entries().size()) : QStringLiteral("not known");
}
} // namespace

QString describeVersions()
{
    const auto* settings = Settings::instance();
    const auto* wine = settings->getWineManager();
    Lines lines;
    lines.add(QStringLiteral("Launcher"), settings->getVersion());
    lines.add(QStringLiteral("System"), QSysInfo::prettyProductName());
    lines.add(QStringLiteral("Kernel"), QSysInfo::kernelVersion());
    lines.add(QStringLiteral("Architecture"), QSysInfo::currentCpuArchitecture());
    lines.add(QStringLiteral("C library"), QString::fromLatin1(gnu_get_libc_version()));
    lines.add(QStringLiteral("Toolkit"), QString::fromLatin1(qVersion()));
    lines.add(QStringLiteral("Threads"), QString::number(QThread::idealThreadCount()));
    lines.add(QStringLiteral("Memory"), memoryOfMachine());
    lines.add(QStringLiteral("Windows by"), QGuiApplication::platformName());
    for (const auto* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE"})
        lines.add(QLatin1String(name), qEnvironmentVariable(name));
    const auto screens = QGuiApplication::screens();
    for (const auto* screen : screens) {
        lines.add(QStringLiteral("Screen"), QStringLiteral("%1 x %2 at %3 %")
                                                .arg(screen->size().width())
                                                .arg(screen->size().height())
                                                .arg(screen->devicePixelRatio() * 100));
    }
    lines.add(QStringLiteral("Language"), QLocale().name());
    lines.add(QStringLiteral("Wine of the launcher"),
              wine && wine->isInstalled() ? wine->getVersion() : QStringLiteral("not installed"));
    return lines.text();
}

QString describeSettings()
{
    const auto* settings = Settings::instance();
    QVariantMap map;
    settings->fillMap(map);
    Lines lines;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
        lines.add(entry.key(), describeValue(entry.value()));
    const auto keys = settings->getFullServerList();
    for (const auto& key : keys) {
        for (const auto& variable : settings->getClientEnvironment(key)) {
            const auto name = variable.section(QLatin1Char('='), 0, 0).trimmed();
            logRedactor().addSecretOfVariable(name, variable.section(QLatin1Char('='), 1));
            lines.add(QStringLiteral("Environment of %1").arg(key), variable);
        }
    }
    return lines.text();
}

QString describeServers()
{
    const auto* settings = Settings::instance();
    Lines lines;
    lines.add(QStringLiteral("Cache"), settings->getCacheFolder());
    const auto room = freeSpace(settings->getCacheFolder());
    lines.add(QStringLiteral("Free there"), room ? formatMemory(*room) : QStringLiteral("not known"));
    if (const auto* wine = settings->getWineManager())
        lines.add(QStringLiteral("Wine is being installed"), wine->isInstalling());
    const auto keys = settings->getServerList();
    for (const auto& key : keys) {
        const auto* server = settings->getServer(key);
        if (!server)
            continue;
        lines.addHeading(QStringLiteral("%1, %2").arg(key, server->getDisplayName()));
        lines.add(QStringLiteral("Active"), server->isActive());
        lines.add(QStringLiteral("Ready"), server->isReady());
        lines.add(QStringLiteral("Updating"), server->isUpdating());
        lines.add(QStringLiteral("Says"), server->progressText());
        lines.add(QStringLiteral("Newest build"), server->getBuild());
        lines.add(QStringLiteral("Build in the staging folder"), server->getStagingFolderBuild());
        lines.add(QStringLiteral("Newest index"), describeRows(server->getIndex()));
        lines.add(QStringLiteral("Installed index"), describeRows(server->getInstalledIndex()));
        lines.add(QStringLiteral("Full download"), server->isFullDownloadRunning());
        lines.add(QStringLiteral("Clients run"), server->isRunningProcesses());
    }
    return lines.text();
}
