#include "servers/clientcommand.h"

#include "settings/settings.h"

#include <QDir>
#include <QStandardPaths>

QStringList buildClientArguments(const ClientLaunch& launch, const Settings& settings)
{
    QStringList arguments{QStringLiteral("/noconsole"), QStringLiteral("/server:") + launch.server};
    if (settings.runClientsWithDx9())
        arguments << QStringLiteral("/gfxPlatform=dx9");
    if (!launch.token.isEmpty())
        arguments << QStringLiteral("/ssoToken=") + launch.token;
    if (!launch.settingsProfile.isEmpty())
        arguments << QStringLiteral("/settingsprofile=") + launch.settingsProfile;
    if (launch.insideSteam)
        arguments << QStringLiteral("/steamUser");
    if (!settings.getMachineHash().isEmpty())
        arguments << QStringLiteral("/machineHash=") + QString::fromLatin1(settings.getMachineHash().toHex());
    if (settings.getResManThreadCount() != 0)
        arguments << QStringLiteral("/resManThreadCount=%1").arg(settings.getResManThreadCount());
    arguments << settings.getClientArgs().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return arguments;
}

QString getWineProgram(const Settings& settings)
{
    if (settings.useCustomWine()) {
        const auto program = settings.getCustomWinePath();
        // "wine" is a command to look up, as a shell would.
        const auto found =
            program.contains(QLatin1Char('/')) ? QString() : QStandardPaths::findExecutable(program);
        return found.isEmpty() ? program : found;
    }
    const auto name = settings.runClientsWith64Bit() ? QStringLiteral("wine64") : QStringLiteral("wine");
    return QDir::cleanPath(settings.getCacheFolder() + QStringLiteral("/wine/bin/") + name);
}
