#include "servers/winemanager.h"

#include "settings/settings.h"

#include <QDir>

QString WineManager::getStagingFolder() const
{
    return QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/wine"));
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
