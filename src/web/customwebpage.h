#pragma once

#include "servers/attachedprocess.h"
#include "web/commandpolicy.h"
#include "web/pagecalls.h"

#include <QPointer>
#include <QQueue>
#include <QSet>
#include <QWebEnginePage>

#include <memory>

class QWebEngineView;
struct BridgeCommand;
class ServerManager;
class SocketHandler;
enum class ClientSettingsProfileResult;

/**
 * The page of the web interface, and of each pop-up that it opens: the two-way bridge between the page's
 * script and the launcher. The page sends commands by logging "launcher:" and a JSON object; the launcher
 * calls global functions of the page. docs/page.md describes both. Main thread.
 */
class CustomWebPage : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit CustomWebPage(QWidget* parent = nullptr);
    /** Closes the pop-ups. */
    ~CustomWebPage() override;

    /**
     * Whether the page as it is now may send commands; once it has a frame of another host, the address of
     * the script that speaks counts as well. Warns once about a page that may not.
     */
    bool mayCommand(const QUrl& script);
    /** Runs a command; sender is the page whose script has sent it. Commands that are not known are logged.
     */
    void handleCommand(const QString& json, CustomWebPage* sender);
    /** Runs the script, or, until the page has said that it is ready, keeps it in a queue. */
    void executeJavaScript(const QString& script);
    /** The page is ready: it gets its version, the queue, and the state of everything. */
    void handleJavascriptReady();
    bool isJavascriptLoaded() const { return m_javascriptLoaded; }

    // Calls of the page
    void setPlayable(const QString& server, bool playable);
    /** fraction: 0 to 1. */
    void setProgress(const QString& server, float fraction, const QString& text);
    void showErrorMessage(const QString& title, const QString& message, int code);
    void setSettings();
    void setDeviceId(const QString& id);
    void profilelist(const QString& server);
    void settingResult(ClientSettingsProfileResult result, const QString& server, const QString& name);
    /** From now on the page is told about the client. */
    void processStarted(ServerManager* server, AttachedProcess* process);
    /** The running client of that server and user; null when there is none. */
    AttachedProcess* findProcess(const QString& server, const QString& username) const;

    /** The page that has opened this one; it gets this page's commands. */
    void setOwner(CustomWebPage* owner) { m_owner = owner; }
    /** Whether addresses that are to leave for the system's browser do so. */
    void setBreakoutFilterState(bool on) { m_breakoutFilterState = on; }

public slots:
    void onServerReady(ServerManager* server);
    void onServerStartUpdate(ServerManager* server);
    void onServerProgressUpdate(ServerManager* server, float fraction, const QString& text);
    void onServerFailedUpdate(ServerManager* server, int code, const QString& message);
    void onServerVersionUpdate(ServerManager* server, const QString& build);
    void onProcessStarted(ServerManager* server, AttachedProcess* process);
    void onProcessFinished(AttachedProcess* process, int exitCode);
    void onWineStartUpdate();
    void onWineProgressUpdate(float fraction, const QString& text);
    void onDeviceIdAllocated(const QString& id);
    void onTextMessageReceived(const QString& message);
    void onLoadFinished(bool ok);

signals:
    /** The page wants the dialog that verifies and moves the cache. */
    void cacheDialogRequested();
    /** The page wants the manager of the client's settings profiles. */
    void profilesDialogRequested();
    /** The page wants downloads to be paused, or to go on. */
    void pauseRequested();
    void resumeRequested();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    bool certificateError(const QWebEngineCertificateError& error) override;
    QWebEnginePage* createWindow(WebWindowType type) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int lineNumber,
                                  const QString& sourceId) override;

private slots:
    void onLoadStarted();
    void onUrlChanged(const QUrl& url);
    void onRenderProcessTerminated(RenderProcessTerminationStatus status, int exitCode);
    void connectServers();

private:
    struct Command {
        const char* name;
        void (CustomWebPage::*run)(const BridgeCommand& command, CustomWebPage* sender);
    };
    static const std::vector<Command>& commandTable();

    // One for each command
    void javascriptReady(const BridgeCommand& command, CustomWebPage* sender);
    void launchVelkor(const BridgeCommand& command, CustomWebPage* sender);
    void processStatus(const BridgeCommand& command, CustomWebPage* sender);
    void quitProcess(const BridgeCommand& command, CustomWebPage* sender);
    void switchToProcessOf(const BridgeCommand& command, CustomWebPage* sender);
    void openUrl(const BridgeCommand& command, CustomWebPage* sender);
    void changeSettings(const BridgeCommand& command, CustomWebPage* sender);
    void openCacheDialog(const BridgeCommand& command, CustomWebPage* sender);
    void createProfile(const BridgeCommand& command, CustomWebPage* sender);
    void renameProfile(const BridgeCommand& command, CustomWebPage* sender);
    void deleteProfile(const BridgeCommand& command, CustomWebPage* sender);
    void getProfiles(const BridgeCommand& command, CustomWebPage* sender);
    void openProfilesDialog(const BridgeCommand& command, CustomWebPage* sender);
    void setTitleBarHeight(const BridgeCommand& command, CustomWebPage* sender);
    void clearAllVisitedLinks(const BridgeCommand& command, CustomWebPage* sender);
    void openWebSocket(const BridgeCommand& command, CustomWebPage* sender);
    void closeWebSocket(const BridgeCommand& command, CustomWebPage* sender);
    void setToken(const BridgeCommand& command, CustomWebPage* sender);
    void finishSso(const BridgeCommand& command, CustomWebPage* sender);
    void pauseDownloads(const BridgeCommand& command, CustomWebPage* sender);
    void resumeDownloads(const BridgeCommand& command, CustomWebPage* sender);

    void connectEvents();
    void call(PageCall call, const QStringList& arguments);
    void dropSupersededProgress();
    void closePopup(QWebEngineView* view);

    const CommandPolicy m_policy;
    bool m_javascriptLoaded = false;
    QQueue<QString> m_pendingScripts;
    QPointer<CustomWebPage> m_owner;
    bool m_breakoutFilterState = false;
    QVector<QWebEngineView*> m_popups;
    QSet<AttachedProcess*> m_processes;
    std::unique_ptr<SocketHandler> m_socket;
    /** A frame of the page shows an address that may not send commands. */
    bool m_hasForeignFrame = false;
    bool m_hasWarned = false; // about a refused command, since the page was loaded
};
