#pragma once

#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QTimer>
#include <QWidget>

class AttachedProcess;
class CustomWebEngineView;
class CustomWebPage;
class QWebChannel;
class ServerManager;
class Task;
class WebAPI;

/** The logging category of the web interface, "web". */
const QLoggingCategory& web();

/**
 * Shows the web interface: finds out which version of it is current, loads that, and shows a page of its own
 * while that is not possible. A page whose process has died is loaded again. Main thread.
 */
class WebGui : public QWidget
{
    Q_OBJECT

public:
    explicit WebGui(QWidget* parent = nullptr);
    ~WebGui() override;

    /** Asks for the current version, until there is an answer. */
    void checkGuiVersion();
    /** Shows texts instead of the page: plain, but for "<br>". */
    void loadErrorPage(const QString& heading, const QString& message);
    void reload();
    /** Whether the page has said that it is ready for calls. */
    bool isPageReady() const;

    /** The text is shown as progress of the main server. */
    void setStatusMessage(const QString& text);
    void showErrorMessage(const QString& title, const QString& message, int code);
    void processStarted(ServerManager* server, AttachedProcess* process);
    /** The ticket of the user's Steam session; empty outside Steam. */
    static QByteArray getSteamTicket();

signals:
    /** The first page has been loaded, be it the error page. */
    void loadFinished(bool ok);
    /** The page wants one of the launcher's dialogs. */
    void cacheDialogRequested();
    void profilesDialogRequested();
    /** The page wants downloads to be paused, or to go on. */
    void pauseRequested();
    void resumeRequested();

public slots:
    void onVersionInfoDownloadFinished(Task* task);
    void onLoadTimeout();
    void onLoadFinished(bool ok);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    enum class LoadState { Checking = 0, AddressSet = 1, Failed = 2 };

    void askAgain(const QUrl& address);
    void onVersionInfo(const QByteArray& bytes);
    void onVersionInfoFailed(const QString& reason);
    void loadPage(const QString& guiVersion);
    QUrl pageAddress(const QString& guiVersion) const;
    void checkAgain(int milliseconds);
    void onRenderProcessTerminated(int status);
    void logProfile() const;

    WebAPI* const m_api;
    QWebChannel* const m_channel;
    QPointer<CustomWebPage> m_page;
    QPointer<CustomWebEngineView> m_view;
    QNetworkAccessManager m_network;
    QTimer m_loadTimeout;
    QTimer m_retry;
    LoadState m_loadState = LoadState::Checking;
    bool m_isFirstCheck = true;
    bool m_firstLoadSignalled = false;
    bool m_errorPageShown = false;
    QString m_errorHeading;
    QString m_errorMessage;
    int m_terminations = 0; // of render processes, since a page has been loaded for a while
};
