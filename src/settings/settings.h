#pragma once

#include "settings/commandline.h"
#include "settings/deployment.h"
#include "settings/settingstable.h"

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QSettings>
#include <QSize>

class QTranslator;
class ServerManager;
class WineManager;
class browserBreakoutFilter;

/**
 * The process-wide settings: what is persisted, what the command line asked for, the folders and addresses
 * that follow from them, and the registry of game servers. It is also the hub through which parts that do not
 * know each other talk.
 *
 * Main thread only. Background jobs may read settings that do not change while they run.
 */
class Settings : public QObject
{
    Q_OBJECT

public:
    /** The choices for the thread count of the client's resource manager, in the order in which they are
     * shown. */
    enum ResManThreadCountOption { ThreadsDefault, Threads2, Threads4, Threads8, Threads16 };

    /** Loads the stored settings. Sets the application's organisation and name, which locate the store. */
    explicit Settings(const Deployment& deployment);
    ~Settings() override;

    /**
     * The one object of the process, made on first use and never destroyed. It takes the deployment that was
     * set with useDeployment() before.
     */
    static Settings* instance();
    static void useDeployment(const Deployment& deployment);
    const Deployment& getDeployment() const { return m_deployment; }

    /** Second phase, with the application in place: translator, network state, cache folder, start-up log. */
    void initialize();
    void initializeFromArgs(const QCoreApplication& app);
    void setCommandLine(const CommandLine& commandLine) { m_commandLine = commandLine; }
    void logStartup();

    // Persisted settings
    QString getCacheFolder() const { return text(Id::CacheFolder); }
    void setCacheFolder(const QString& folder);
    QString getLanguage() const { return text(Id::Language); }
    void setLanguage(const QString& code);
    bool runClientsWithLogging() const { return flag(Id::RunClientsWithLogging); }
    void setRunClientsWithLogging(bool on) { set(Id::RunClientsWithLogging, on); }
    bool runClientsWithDx9() const { return flag(Id::RunClientsWithDx9); }
    void setRunClientsWithDx9(bool on) { set(Id::RunClientsWithDx9, on); }
    bool runClientsWith64Bit() const { return flag(Id::RunClientsWith64Bit); }
    void setRunClientsWith64Bit(bool on) { set(Id::RunClientsWith64Bit, on); }
    bool useCustomWine() const { return flag(Id::UseCustomWine); }
    void setUseCustomWine(bool on) { set(Id::UseCustomWine, on); }
    QString getCustomWinePath() const { return text(Id::CustomWinePath); }
    void setCustomWinePath(const QString& path) { set(Id::CustomWinePath, path); }
    bool useWineDevVersions() const { return flag(Id::WineUseDevVersions); }
    void setUseWineDevVersions(bool on) { set(Id::WineUseDevVersions, on); }
    QString getWineVersion() const { return text(Id::WineVersion); }
    void setWineVersion(const QString& version);
    QString getWineVersionBranch() const { return text(Id::WineVersionBranch); }
    void setWineVersionBranch(const QString& branch) { set(Id::WineVersionBranch, branch); }
    /** Megabytes; 0 leaves the choice to Wine. */
    int getWineVideoMemory() const { return number(Id::WineVideoMemory); }
    void setWineVideoMemory(int megabytes) { set(Id::WineVideoMemory, megabytes); }
    bool getWineRetinaMode() const { return flag(Id::WineRetinaMode); }
    void setWineRetinaMode(bool on) { set(Id::WineRetinaMode, on); }
    QString getWinedebug() const { return text(Id::WineDebug); }
    void setWinedebug(const QString& channels) { set(Id::WineDebug, channels); }
    bool useProxy() const { return flag(Id::UseProxy); }
    void setUseProxy(bool on) { set(Id::UseProxy, on); }
    /** Release channel: 0 release, 1 beta, 2 development. */
    int getVersionType() const { return number(Id::VersionType); }
    void setVersionType(int type) { set(Id::VersionType, type); }
    bool shouldDownloadEverything() const { return flag(Id::DownloadEverything); }
    void setShouldDownloadEverything(bool on) { set(Id::DownloadEverything, on); }
    bool shouldMinimizeToTray() const { return flag(Id::MinimizeToTray); }
    void setShouldMinimizeToTray(bool on) { set(Id::MinimizeToTray, on); }
    bool getIgnoreCertErrors() const { return flag(Id::IgnoreCertErrors); }
    void setIgnoreCertErrors(bool on) { set(Id::IgnoreCertErrors, on); }
    bool getEnableHighDpiScaling() const { return flag(Id::EnableHighDpiScaling); }
    void setEnableHighDpiScaling(bool on) { set(Id::EnableHighDpiScaling, on); }
    bool getEnableHardwareRendering() const { return flag(Id::EnableHardwareRendering); }
    void setEnableHardwareRendering(bool on) { set(Id::EnableHardwareRendering, on); }
    /** 0 leaves the choice to the client. */
    int getResManThreadCount() const { return number(Id::ResManThreadCount); }
    void setResManThreadCount(ResManThreadCountOption option);
    ResManThreadCountOption getResManThreadCountAsOption() const;
    static QStringList getResManThreadCountOptions();
    QString getGraphicsModeString() const;
    /** Megabytes (of 1,048,576 bytes) per second that all downloads together may take; 0 is no limit. */
    double getDownloadLimit() const { return value(Id::DownloadLimit).toDouble(); }
    static constexpr double maxDownloadLimit = 10000;
    /** What is no usable number counts as no limit. */
    void setDownloadLimit(double megabytesPerSecond);
    bool downloadsOnlyWithoutClients() const { return flag(Id::DownloadOnlyWithoutClients); }
    void setDownloadsOnlyWithoutClients(bool on) { set(Id::DownloadOnlyWithoutClients, on); }
    /** Paused by the player. */
    bool areDownloadsPaused() const { return flag(Id::DownloadsPaused); }
    void setDownloadsPaused(bool paused) { set(Id::DownloadsPaused, paused); }
    /** The command that is put in front of the Wine program of a client; usually empty. */
    QString getLaunchWrapper() const { return text(Id::LaunchWrapper); }
    void setLaunchWrapper(const QString& command) { set(Id::LaunchWrapper, command.trimmed()); }
    /** The environment variables of a server's clients, as lines of the form NAME=value. */
    QStringList getClientEnvironment(const QString& server) const;
    void setClientEnvironment(const QString& server, const QStringList& lines);
    /** A folder with game files, from which is taken what would have to be downloaded; empty for none. It is
     * remembered until it has been made use of. */
    QString getAdoptedFolder() const;
    /** Whether its files are linked into the cache instead of copied. */
    bool linksAdoptedFiles() const;
    void setAdoptedFolder(const QString& folder, bool linkFiles);
    void forgetAdoptedFolder();
    /** Whether a second start shows the running launcher instead of starting another one. */
    bool showsRunningLauncher() const { return m_store.value(showRunningKey()).toBool(); }
    void setShowsRunningLauncher(bool on) { m_store.setValue(showRunningKey(), on); }

    /** Writes all settings to the store and announces them with settingsChanged(). */
    void save();
    void fillMap(QVariantMap& map) const;
    QJsonObject saveToJson() const;
    /**
     * Stores every member as it stands and applies those that the web page may change. Keys with a "/" are
     * records of the launcher's own and are refused.
     */
    void setFromJson(const QJsonObject& object);
    /** The store itself, for values that belong to other parts (window geometry, last downloaded builds). */
    QSettings& store() { return m_store; }

    // Command line
    bool shouldSkipVersionCheck() const { return m_commandLine.skipVersionCheck; }
    void setShouldSkipVersionCheck(bool skip) { m_commandLine.skipVersionCheck = skip; }
    bool shouldVerifyAndPurgeAfterRefresh() const { return m_commandLine.verifyAfterRefresh; }
    bool shouldExitAfterRefresh() const { return m_commandLine.exitAfterRefresh; }
    bool startedFromUpdater() const { return m_commandLine.startedFromUpdater; }
    bool getDisableWebGui() const { return m_commandLine.disableWebGui; }
    QString getClientArgs() const { return m_commandLine.clientArgs; }
    QString getStartupServer() const { return m_commandLine.startupServer; }

    // Fixed values
    QString getVersion() const;
    QStringList getVersionTypeNames() const;
    QStringList getLanguagesSupported() const;
    QString getLanguageName(const QString& code) const;
    QSize getMainWindowSize() const { return {980, 600}; }
    QSize getPopupWindowSize() const { return {582, 650}; }
    QSize getDefaultLauncherSize() const { return {1184, 580}; }
    QSize getMinimumLauncherSize() const { return {900, 580}; }
    bool shouldRouteConsoleOutputToLog() const { return true; }
    /** Whether the launcher has never run before. */
    bool isFirstRun() const { return m_isFirstRun; }
    QByteArray getMachineHash() const { return m_machineHash; }
    bool isOnline() const;

    // Folders
    /** "SharedCache" beside the application's folder, which is created; "~/.velkor" where that is not
     * possible. */
    QString getDefaultCacheLocation() const;
    /** Empty when the platform has no data location. */
    QString getLauncherLogsFolder() const;
    QString getClientLogsFolder() const { return m_clientLogsFolder; }
    void setClientLogsFolder(const QString& folder) { m_clientLogsFolder = folder; }
    QString getWineEnvFolder() const;
    void setWineEnvFolder(const QString& folder) { m_wineEnvFolder = folder; }

    // Addresses; those called "base" end with "/"
    bool useSsl() const { return m_useSsl; }
    bool useWine() const { return m_useWine; }
    QString getBaseUrlForVersion() const;
    QString getBaseUrlForBinaries() const { return getBaseUrlForVersion(); }
    QString getBaseUrlForResources() const;
    QString getBaseUrlForProtectedBinaries() const;
    QString getUrlForGuiVersionInfo() const;
    QString getUrlForVersionInfo() const;
    QString getUrlForLauncherIndex(const QString& build) const;
    QString getLandingPageUrl(const QString& serverKey) const;
    QString getLogglyUrl();
    QString getEventLoggerHost() const { return m_deployment.eventGateway; }

    // Server catalogue
    /** Reads the compiled-in catalogue; call once, when the command line is known. */
    void initializeServers();
    /** Takes a catalogue: announces every server with serverDeclared() and serverActivationRequested(). */
    void setServers(const QJsonObject& catalogue);
    QString getMainServerName() const { return m_mainServer; }
    QStringList getFullServerList() const { return m_fullServerList; }
    /** The main server and the enabled test servers, in catalogue order. */
    QStringList getServerList() const;
    QStringList getEnabledTestServers() const;
    /** Those that the settings enable, also in a run that skips test servers. */
    QStringList getStoredTestServers() const { return m_enabledTestServers; }
    void setEnabledTestServers(const QStringList& keys);
    /** The manager registered under the key, or null. Not owned. */
    ServerManager* getServer(const QString& key) const { return m_servers.value(key, nullptr); }
    void registerServer(const QString& key, ServerManager* manager) { m_servers.insert(key, manager); }
    WineManager* getWineManager() const { return m_wineManager; }
    void registerWineManager(WineManager* manager) { m_wineManager = manager; }
    browserBreakoutFilter* getBrowserBreakoutFilter() const { return m_browserBreakoutFilter; }
    void registerBrowserBreakoutFilter(browserBreakoutFilter* filter) { m_browserBreakoutFilter = filter; }
    /** Asks every served server to forget its last downloaded build, through lastKnownBuildResetRequested().
     */
    void resetLastKnownBuildForAllServers();

    // First-time markers
    void storeMachineHash();
    void checkIfFirstRun();
    /** Returns whether this is the first client that is ever started. */
    bool checkIfFirstClientLaunch(const QString& server);
    /** Whether the one-time resize was done in an earlier run; from now on it counts as done. */
    bool checkIfUIVersion6ResizeDone();

signals:
    void settingsChanged();
    void serverListChanged();
    /** A catalogue entry was read; who answers creates the manager and calls registerServer(). */
    void serverDeclared(const QString& key, const QJsonObject& entry);
    void serverActivationRequested(const QString& key, bool active);
    void lastKnownBuildResetRequested(const QString& key);
    void clientSettingsProfilesChanged(const QString& server);
    void setTitleBarHeight(int height);
    void tokenRequired(const QString& server);
    void startRefreshCycle();
    void adoptedFolderChosen();
    void deviceIdAllocated(const QString& id);

private:
    using Id = SettingRow::Id;

    const QVariant& value(Id id) const { return m_values[static_cast<size_t>(id)]; }
    bool flag(Id id) const { return value(id).toBool(); }
    int number(Id id) const { return value(id).toInt(); }
    QString text(Id id) const { return value(id).toString(); }
    void set(Id id, const QVariant& value) { m_values[static_cast<size_t>(id)] = value; }

    QVariant storedValue(const SettingRow& row, const QVariant& fallback) const;
    void load();
    void setNormalised(Id id, const QVariant& value);
    bool isOnInternalNetwork() const;
    void ensureCacheFolder();
    void logEffectiveSettings() const;
    void setupNetworkState();
    void setupTranslator();
    QString urlPrefix() const;
    static QString showRunningKey() { return QStringLiteral("LauncherShowRunning"); }

    const Deployment m_deployment;
    QSettings m_store;
    std::array<QVariant, SettingRow::count> m_values;
    CommandLine m_commandLine;
    const bool m_useSsl = true;
    const bool m_useWine = true;
    const QStringList m_versionTypes{QStringLiteral("release"), QStringLiteral("beta"),
                                     QStringLiteral("dev")};
    QByteArray m_machineHash;
    bool m_isFirstRun = false;
    QString m_clientLogsFolder;
    QString m_wineEnvFolder;
    QString m_logglyUrl;
    QTranslator* m_translator = nullptr;
    QTranslator* m_toolkitTranslator = nullptr;
    QObject* m_networkConfiguration = nullptr; // a QNetworkConfigurationManager

    QString m_mainServer;
    QStringList m_fullServerList;
    QStringList m_enabledTestServers;
    QMap<QString, ServerManager*> m_servers;
    WineManager* m_wineManager = nullptr;
    browserBreakoutFilter* m_browserBreakoutFilter = nullptr;
};
