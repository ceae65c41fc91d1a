#include "settings/settingstable.h"

#include <QStringList>

const std::array<SettingRow, SettingRow::count>& settingsTable()
{
    using Id = SettingRow::Id;
    constexpr auto loaded = SettingRow::OnStart::Loaded;
    constexpr auto forgotten = SettingRow::OnStart::StartsAtDefault;
    constexpr auto accepted = SettingRow::FromPage::Accepted;
    // The page can neither move the cache nor choose the Wine version nor what is put in front of Wine. It
    // pauses downloads with a command.
    constexpr auto storedOnly = SettingRow::FromPage::StoredOnly;

    static const QStringList testServers{QStringLiteral("osprey"), QStringLiteral("pl")};
    static const std::array<SettingRow, SettingRow::count> table = {{
        {Id::VersionType, "LauncherType", 0, loaded, accepted},
        {Id::DownloadEverything, "LauncherShouldDownloadEverything", false, loaded, accepted},
        {Id::RunClientsWithLogging, "LauncherRunClientsWithLogging", false, loaded, accepted},
        {Id::RunClientsWithDx9, "LauncherRunClientsWithDx9", true, loaded, accepted},
        {Id::RunClientsWith64Bit, "LauncherRunClientsWith64Bit", false, loaded, accepted},
        {Id::MinimizeToTray, "LauncherShouldMinimizeToTray", false, loaded, accepted},
        {Id::TestServers, "LauncherTestServers", testServers, loaded, accepted},
        {Id::Language, "LauncherLanguage", QString(), loaded, accepted},
        {Id::IgnoreCertErrors, "LauncherIgnoreCertErrors", false, loaded, accepted},
        {Id::EnableHighDpiScaling, "LauncherEnableHighDpiScaling", false, loaded, accepted},
        {Id::EnableHardwareRendering, "LauncherEnableHardwareRendering", false, loaded, accepted},
        {Id::UseProxy, "LauncherUseProxy", true, loaded, accepted},
        {Id::ResManThreadCount, "ResManThreadCount", 0, loaded, accepted},
        {Id::WineDebug, "WineDebug", QString(), forgotten, accepted},
        {Id::WineVersion, "WineVersion", QStringLiteral("latest"), loaded, storedOnly},
        {Id::WineVersionBranch, "WineVersionBranch", QStringLiteral("halden-master"), loaded, storedOnly},
        {Id::WineUseDevVersions, "WineUseDevVersions", false, loaded, storedOnly},
        {Id::CacheFolder, "SharedCacheFolder", QStringLiteral("~/.velkor"), loaded, storedOnly},
        {Id::WineVideoMemory, "WineVideoMemory", 0, loaded, accepted},
        {Id::WineRetinaMode, "WineRetinaMode", false, loaded, accepted},
        {Id::UseCustomWine, "UseCustomWine", false, loaded, accepted},
        {Id::CustomWinePath, "CustomWinePath", QStringLiteral("wine"), loaded, accepted},
        {Id::DownloadLimit, "LauncherDownloadLimit", 0.0, loaded, accepted},
        {Id::DownloadOnlyWithoutClients, "LauncherDownloadOnlyWithoutClients", false, loaded, accepted},
        {Id::DownloadsPaused, "LauncherDownloadsPaused", false, loaded, storedOnly},
        {Id::LaunchWrapper, "LauncherLaunchWrapper", QString(), loaded, storedOnly},
    }};
    return table;
}
