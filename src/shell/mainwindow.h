#pragma once

#include "shell/processlist.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QMap>
#include <QPointer>
#include <QTimer>

#include <functional>

class ConnectionChecker;
class DownloadControl;
class DownloadFromIndexTask;
class QSystemTrayIcon;
class ServerManager;
class SimpleGui;
class Task;
class TitleBar;
class ToolsMenu;
class TrayStatus;
class UpdateWatchdog;
class VerifierGui;
class WebGui;

/**
 * The launcher's one top-level window and the driver of its periodic work: shows the web interface or the
 * server list, owns menu and tray icon, runs the refresh cycle, and decides on closing whether to quit or to
 * hide.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    bool isProcessRunning() const { return !m_processes.isEmpty(); }

public slots:
    /** Starts a refresh cycle, unless one is running. */
    void refresh();
    /** Sizes and shows the window for the first time, and starts the first cycle soon after. Comes by itself,
     * as soon as there is something to show. */
    void onLoadFinished();
    /** Shows the window again after it was hidden. */
    void restoreWindow();
    /** Ends the launcher, whatever the settings say about hiding. */
    void quit();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private slots:
    // The cycle, in the order in which it runs
    void checkHosts();
    void onConnectionCheckError(const QString& host, const QString& error);
    void onConnectionCheckFinished();
    void checkVersion();
    void onVersionInfoDownloadFinished(Task* task);
    void startSelfUpdate(const QString& version);
    void onVersionCheckFinished();
    void checkWineVersion();
    void onWineEndUpdate(int code);
    void onWineCheckFinished();
    void refreshServers();
    void onEndUpdate(ServerManager* server);
    void onFailedUpdate(ServerManager* server, int code, const QString& message);
    void onRefreshServersDone();
    void rescheduleRefresh(int seconds);

    void onProcessStarted(ServerManager* server, AttachedProcess* process);
    void onProcessEnded(AttachedProcess* process, int exitCode, bool crashed);
    void onServerError(const QString& title, const QString& text);
    void showVerifyDialog();
    void showMigrateSettingsDialog();
    void showDiagnoseNetworkDialog();
    void showAboutDialog();
    void showSettings();
    /** What the menu's "Refresh" does: starts a refresh, or gets the running one to move. */
    void onRefreshChosen();
    void startLogLens();
    void onShowSharedCacheFolder();
    void onShowLauncherLogsFolder();

private:
    void setupMenu();
    void setupTrayIcon(QMenu* menu);
    void setupTrayStatus();
    void setupTools();
    void showDownloadState();
    void reviewDownload(ServerManager* server, DownloadFromIndexTask* task);
    void onFilesAdopted(int files, qint64 bytes);
    void forgetAdoptedFolder();
    void showAdoptDialog();
    /** Opens the dialog, or brings the open one of its kind to the front. */
    template <typename Dialog, typename... Arguments>
    Dialog* openTool(Arguments&&... arguments);
    /** For the log: what the update is waiting for; empty when there is none. */
    QString describeActivity() const;
    bool isFullDownloadRunning() const;
    void showTrayStatus();
    void connectServers();
    void connectWine();

    // What the window shows
    void createInterface();
    void selectWebGui();
    /** The list takes the place of the web interface. */
    void selectServerList();
    /** Opens the list, in a window of its own beside the web interface. */
    void showServerList(QMenu* menu, const QString& title);
    /** Builds again what was released when the window was hidden. */
    void restoreWebGui();
    void releaseInterface();
    /** For the line below the server list. */
    void setMessage(const QString& text);
    /** A step of the cycle: as setMessage(), and on the page. */
    void setStatus(const QString& text);
    /** Tells the player without waiting for an answer: on the page where there is one, else in a box. */
    void showErrorMessage(const QString& title, const QString& text, int code);
    /** As setMessage(), and as an error on the page. */
    void showFailure(const QString& text, int code);
    bool hasPage() const;
    /** Shows the text before the main thread is kept busy. */
    void setMessageAtOnce(const QString& text);
    void initializeGeometry();
    /** Running clients and geometry, for the next start. */
    void saveState();

    bool checkSharedCacheIsWritable();
    void waitForBackgroundTasks();
    /** Verifies at once; returns when that has ended. */
    void verifyAutomatically();
    void runVerify();
    void diagnoseDisk();
    void offerSettingsMigration();
    void runVerifierDialog(VerifierGui* dialog);
    void reportFailure(ServerManager* server, int code);
    void scheduleRefresh(int milliseconds);
    bool allServersReady() const;
    /** For the message line; empty when all hosts could be reached. */
    QString describeConnectionErrors() const;
    void logShutdown() const;

    TitleBar* m_titleBar = nullptr;
    QMenu* m_menu = nullptr;
    DownloadControl* m_downloads = nullptr;
    ToolsMenu* m_tools = nullptr;
    UpdateWatchdog* m_watchdog = nullptr;
    QMap<QString, qint64>
        m_roomRefused; // the room that a server would need and its player was asked about, by key
    QSystemTrayIcon* m_trayIcon = nullptr;
    TrayStatus* m_trayStatus = nullptr;
    QAction* m_statusAction = nullptr; // tells, and does nothing
    WebGui* m_webGui = nullptr;
    QPointer<SimpleGui> m_serverList;
    bool m_wasShown = false;
    ProcessList m_processes;
    int m_clientsStarted = 0;
    QElapsedTimer m_sessionTime;
    QTimer m_refreshTimer;
    ConnectionChecker* m_connectionCheck = nullptr;
    QMap<QString, QString> m_connectionErrors; // by host
    QStringList m_toldHosts;                   // of which the page knows that they cannot be reached
    bool m_refreshInProgress = false;
    /** While the cache is verified or moved, no refresh starts; one that is wanted comes afterwards. */
    bool m_cacheInUse = false;
    bool m_refreshWanted = false;
    bool m_lookedAtLastVerify = false;
    bool m_verifiedByRequest = false;
    bool m_closingDown = false;
    bool m_hiddenToTray = false;
    /** What remains of the cycle: the servers that have not had their turn. */
    QStringList m_serversToRefresh;
    QPointer<ServerManager> m_refreshedServer;
    QString m_lastFailure;
};
