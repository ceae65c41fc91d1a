#pragma once

#include <QString>
#include <QVariant>

#include <array>

/** The persisted settings that have a default: one row each. Loading, saving and JSON walk this table. */
struct SettingRow {
    enum class Id {
        VersionType,
        DownloadEverything,
        RunClientsWithLogging,
        RunClientsWithDx9,
        RunClientsWith64Bit,
        MinimizeToTray,
        TestServers,
        Language,
        IgnoreCertErrors,
        EnableHighDpiScaling,
        EnableHardwareRendering,
        UseProxy,
        ResManThreadCount,
        WineDebug,
        WineVersion,
        WineVersionBranch,
        WineUseDevVersions,
        CacheFolder,
        WineVideoMemory,
        WineRetinaMode,
        UseCustomWine,
        CustomWinePath,
        DownloadLimit,
        DownloadOnlyWithoutClients,
        DownloadsPaused,
        LaunchWrapper,
    };
    enum class OnStart { Loaded, StartsAtDefault };
    enum class FromPage { Accepted, StoredOnly };

    Id id;
    const char* key;
    /** The default, whose type is the setting's type. */
    QVariant defaultValue;
    /** Whether a stored value is read back at start. */
    OnStart onStart;
    /** Whether a value that the web page stores takes effect. */
    FromPage fromPage;

    static constexpr int count = 26;
};

/** All rows, in the order in which they are saved; the row of an id is at the id's position. */
const std::array<SettingRow, SettingRow::count>& settingsTable();
