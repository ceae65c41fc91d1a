#pragma once

#include "shell/processlist.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <functional>

class QSystemTrayIcon;
class ServerManager;
class SimpleGui;
class TitleBar;

/**
 * The launcher's one top-level window and the driver of its periodic work: shows the server list, owns menu
 * and tray icon, runs the refresh cycle, and decides on closing whether to quit or to hide.
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
    /** Sizes and shows the window for the first time, and starts the first cycle soon after. */
    void onLoadFinished();
    /** Shows the window again after it was hidden. */
    void restoreWindow();
    /** Ends the launcher, whatever the settings say about hiding. */
    void quit();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    // The cycle, in the order in which it runs
    void onVersionCheckFinished();
    void refreshServers();
    void onEndUpdate(ServerManager* server);
    void onFailedUpdate(ServerManager* server, int code, const QString& message);
    void onRefreshServersDone();
    void rescheduleRefresh();

    void onProcessStarted(ServerManager* server, AttachedProcess* process);
    void onProcessEnded(AttachedProcess* process, int exitCode, bool crashed);
    void showErrorMessage(const QString& title, const QString& text);
    void showAboutDialog();
    void startLogLens();
    void onShowSharedCacheFolder();
    void onShowLauncherLogsFolder();

private:
    void setupMenu();
    void setupTrayIcon(QMenu* menu);
    void connectServers();
    void showServerList();
    void setMessage(const QString& text);
    void initializeGeometry();

    bool checkSharedCacheIsWritable();
    void waitForBackgroundTasks();
    void reportFailure(ServerManager* server, int code);
    void scheduleRefresh(int milliseconds);
    bool allServersReady() const;
    void logShutdown() const;

    TitleBar* m_titleBar = nullptr;
    QMenu* m_menu = nullptr;
    QSystemTrayIcon* m_trayIcon = nullptr;
    SimpleGui* m_serverList = nullptr;
    ProcessList m_processes;
    int m_clientsStarted = 0;
    QElapsedTimer m_sessionTime;
    QTimer m_refreshTimer;
    bool m_refreshInProgress = false;
    bool m_closingDown = false;
    bool m_hiddenToTray = false;
    /** What remains of the cycle: the servers that have not had their turn. */
    QStringList m_serversToRefresh;
    QPointer<ServerManager> m_refreshedServer;
    QString m_lastFailure;
};
