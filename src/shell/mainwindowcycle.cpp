// The part of MainWindow that runs the refresh cycle. Read it from top to bottom: each step names the next
// one.

#include "download/downloader.h"
#include "maintenance/connectionchecker.h"
#include "servers/downloadcontrol.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "shell/mainwindow.h"
#include "shell/updatedialog.h"
#include "shell/updatefailures.h"
#include "tasks/scheduler.h"
#include "telemetry/eventlogger.h"
#include "telemetry/exceptionlogger.h"
#include "web/webgui.h"

#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTime>

namespace
{
constexpr int retryDelaySeconds = 120;
constexpr int soonDelaySeconds = 5;
constexpr int minutesWhenReady = 15;
constexpr int minutesWhenNotReady = 2;

/** A launcher that a developer has built for himself. */
QString developerVersion() { return QStringLiteral("9999999"); }

QString timeNow() { return QLocale().toString(QTime::currentTime(), QLocale::ShortFormat); }
} // namespace

void MainWindow::refresh()
{
    if (m_closingDown) {
        qDebug() << "Refresh skipped as main window is closing down";
        return;
    }
    if (m_cacheInUse) {
        qDebug() << "Refresh put off until the cache has been looked after";
        m_refreshWanted = true;
        return;
    }
    if (m_refreshInProgress) {
        qDebug() << "Refresh already in progress";
        return;
    }
    qDebug() << "Starting refresh cycle";
    m_refreshInProgress = true;
    m_refreshTimer.stop();
    m_lastFailure.clear();
    EventLogger::instance()->logJson({{QStringLiteral("sessionDuration"), m_sessionTime.elapsed() / 1000}});
    checkHosts();
}

// A host that cannot be reached is shown and logged; the cycle goes on with what can.
void MainWindow::checkHosts()
{
    if (m_connectionCheck) {
        qDebug() << "checkHosts: Connection check already in progress";
        return;
    }
    setStatus(tr("Checking hosts"));
    m_connectionErrors.clear();
    m_connectionCheck = new ConnectionChecker(this);
    connect(m_connectionCheck, &ConnectionChecker::connectionFailed, this,
            &MainWindow::onConnectionCheckError);
    connect(m_connectionCheck, &ConnectionChecker::finished, this, &MainWindow::onConnectionCheckFinished);
    m_connectionCheck->startSecureConnectionCheck(serviceHosts(Settings::instance()->getDeployment()));
}

void MainWindow::onConnectionCheckError(const QString& host, const QString& error)
{
    qWarning().noquote() << "Could not connect to" << host << error;
    m_connectionErrors.insert(host, error);
    setMessage(describeConnectionErrors());
    if (hasPage() && !m_toldHosts.contains(host))
        m_webGui->showErrorMessage(tr("Connection error"), tr("Could not connect to %1: %2").arg(host, error),
                                   DownloadError);
}

QString MainWindow::describeConnectionErrors() const
{
    if (m_connectionErrors.isEmpty())
        return {};
    const auto first = m_connectionErrors.constBegin();
    const auto text =
        tr("Connection error: %1").arg(tr("Could not connect to %1: %2").arg(first.key(), first.value()));
    const int more = m_connectionErrors.size() - 1;
    return more == 0 ? text : tr("%1 (and %2 more)").arg(text).arg(more);
}

void MainWindow::onConnectionCheckFinished()
{
    m_connectionCheck->disconnect(this); // late answers do not matter
    m_connectionCheck->deleteLater();
    m_connectionCheck = nullptr;
    if (hasPage())
        m_toldHosts = m_connectionErrors.keys();
    checkVersion();
}

void MainWindow::checkVersion()
{
    const auto* settings = Settings::instance();
    if (settings->shouldSkipVersionCheck()) {
        qDebug() << "Skipping version check by request";
        onVersionCheckFinished();
        return;
    }
    if (settings->getVersion() == developerVersion()) {
        qDebug() << "Skipping version check for dev version";
        onVersionCheckFinished();
        return;
    }
    qDebug().noquote() << "Checking version at" << settings->getUrlForVersionInfo();
    auto* downloader = new Downloader(QUrl(settings->getUrlForVersionInfo()), this);
    downloader->setProperty("name", QStringLiteral("Version info downloader"));
    connect(downloader, &Task::finished, this, &MainWindow::onVersionInfoDownloadFinished);
    emit Scheduler::instance()->schedule(QStringLiteral("launcher"), downloader);
}

void MainWindow::onVersionInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    const auto* downloader = qobject_cast<Downloader*>(task);
    const auto info = QJsonDocument::fromJson(downloader ? downloader->getContents() : QByteArray()).object();
    const auto official = info.value(QLatin1String("version")).toString();
    const auto* settings = Settings::instance();
    if (task->isError() || !UpdateDialog::isUsableVersion(official)) {
        qDebug() << "Couldn't establish official version";
        onVersionCheckFinished();
        return;
    }
    qDebug().noquote() << "Official version is" << official;
    if (official == settings->getVersion()) {
        onVersionCheckFinished();
    } else if (settings->shouldExitAfterRefresh()) {
        qDebug() << "Skipping self-update in an unattended run";
        onVersionCheckFinished();
    } else if (m_downloads->state() != DownloadControl::State::Running) {
        qDebug() << "Self-update is put off, downloads are held";
        onVersionCheckFinished();
    } else {
        QTimer::singleShot(0, this, [this, official] { startSelfUpdate(official); });
    }
}

// Offered once in a run: whoever does not want it, or cannot have it, is not asked again.
void MainWindow::startSelfUpdate(const QString& version)
{
    if (m_closingDown)
        return;
    if (UpdateDialog::needsElevation()) {
        qDebug() << "The launcher is updated by the package manager";
        auto* dialog = new UpdateDialog(version, this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
    } else if (UpdateDialog(version, this).exec() == QDialog::Accepted) {
        qDebug() << "Exiting application for self update";
        m_closingDown = true;
        saveState();
        QCoreApplication::exit(1);
        return;
    } else {
        qDebug() << "User cancelled self-update";
    }
    Settings::instance()->setShouldSkipVersionCheck(true);
    if (!m_closingDown)
        onVersionCheckFinished();
}

void MainWindow::onVersionCheckFinished()
{
    offerSettingsMigration();
    if (!checkSharedCacheIsWritable()) {
        rescheduleRefresh(retryDelaySeconds);
        return;
    }
    checkWineVersion();
}

bool MainWindow::checkSharedCacheIsWritable()
{
    const auto folder = Settings::instance()->getCacheFolder();
    if (QDir().mkpath(folder))
        return true;
    qWarning() << "Cache folder does not exist";
    showErrorMessage(tr("Error"),
                     tr("Cache folder does not exist and could not be created at {1}")
                         .replace(QLatin1String("{1}"), QDir::toNativeSeparators(folder)),
                     DiskWriteError);
    return false;
}

void MainWindow::checkWineVersion()
{
    if (Settings::instance()->useCustomWine()) {
        qDebug() << "Skipping wine version check (using custom Wine)";
        onWineCheckFinished();
        return;
    }
    auto* wine = Settings::instance()->getWineManager();
    if (!wine) {
        reportException("RuntimeError", QStringLiteral("No WineManager!"), "mainwindow", "checkWineVersion",
                        __LINE__);
        onWineCheckFinished();
        return;
    }
    setStatus(tr("Checking Wine"));
    wine->refresh();
}

// Without Wine no client can run, so the servers wait as well.
void MainWindow::onWineEndUpdate(int code)
{
    if (code == NoError) {
        onWineCheckFinished();
        return;
    }
    qWarning() << "Update failed for Wine with error:" << code;
    const auto reason = Settings::instance()->getWineManager()->getErrorText();
    m_lastFailure =
        tr("Wine could not be updated: %1").arg(reason.isEmpty() ? describeUpdateError(code) : reason);
    showFailure(tr("%1 (at %2)").arg(m_lastFailure, timeNow()), code);
    if (code == SourceDoesNotExistError)
        Settings::instance()->getWineManager()->resetLastDownloaded();
    else
        reportUpdateFailure(QStringLiteral("Wine"), code);
    if (code == DiskWriteError)
        diagnoseDisk();
    rescheduleRefresh(code == SourceDoesNotExistError ? soonDelaySeconds : retryDelaySeconds);
}

void MainWindow::onWineCheckFinished()
{
    setMessage(tr("Looking for updates"));
    m_serversToRefresh = Settings::instance()->getServerList();
    refreshServers();
}

void MainWindow::refreshServers()
{
    qDebug() << "refreshServers";
    const auto* settings = Settings::instance();
    const auto startupServer = settings->getStartupServer();
    Scheduler::instance()->setPriorityKey(startupServer.isEmpty() ? settings->getMainServerName()
                                                                  : startupServer);
    if (m_refreshedServer) {
        disconnect(m_refreshedServer, &ServerManager::endUpdate, this, &MainWindow::onEndUpdate);
        disconnect(m_refreshedServer, &ServerManager::failedUpdate, this, &MainWindow::onFailedUpdate);
        m_refreshedServer = nullptr;
    }
    while (!m_serversToRefresh.isEmpty() && !m_refreshedServer) {
        auto* server = settings->getServer(m_serversToRefresh.takeFirst());
        if (server && server->isActive())
            m_refreshedServer = server;
    }
    if (!m_refreshedServer) {
        onRefreshServersDone();
        return;
    }
    // Queued, so that what the server does after announcing its end is done before the next step.
    connect(m_refreshedServer, &ServerManager::endUpdate, this, &MainWindow::onEndUpdate,
            Qt::QueuedConnection);
    connect(m_refreshedServer, &ServerManager::failedUpdate, this, &MainWindow::onFailedUpdate,
            Qt::QueuedConnection);
    qDebug().noquote() << "Calling refresh on" << m_refreshedServer->getName();
    m_refreshedServer->refresh();
}

void MainWindow::onEndUpdate(ServerManager* server)
{
    if (server != m_refreshedServer) // had its turn already
        return;
    qDebug().noquote() << "onEndUpdate for" << server->getName();
    refreshServers();
}

void MainWindow::onFailedUpdate(ServerManager* server, int code, const QString& message)
{
    qWarning().noquote() << "Update failed for" << server->getDisplayName() << "with error:" << code;
    m_lastFailure = QStringLiteral("%1: %2").arg(server->getDisplayName(), message);
    setMessage(m_lastFailure);
    if (server != m_refreshedServer || server->isUpdating()) // a launch was refused, the update goes on
        return;
    reportFailure(server, code);
    refreshServers();
}

void MainWindow::reportFailure(ServerManager* server, int code)
{
    const auto name = server->getName();
    switch (code) {
    case NoError:
        reportException("RuntimeError", QStringLiteral("%1 update failed but no error code given").arg(name),
                        "mainwindow", "onFailedUpdate", __LINE__);
        break;
    case SourceDoesNotExistError:
        reportException("SourceDoesNotExist",
                        QStringLiteral("%1 update failed with a source does not exist error").arg(name),
                        "mainwindow", "onFailedUpdate", __LINE__);
        server->reset();
        server->resetLastDownloaded();
        break;
    case ProtectedBuildError:
        break;
    default:
        reportUpdateFailure(name, code);
    }
    if (code == DiskWriteError)
        diagnoseDisk();
}

void MainWindow::onRefreshServersDone()
{
    qDebug() << "refreshServers done";
    m_refreshInProgress = false;
    const bool allReady = allServersReady();
    if (allReady)
        forgetAdoptedFolder();
    if (allReady)
        setMessage(QStringList{tr("Everything is up to date. Last checked at %1.").arg(timeNow()),
                               describeConnectionErrors()}
                       .join(QLatin1Char(' ')));
    else if (!m_lastFailure.isEmpty())
        setMessage(tr("%1 (at %2)").arg(m_lastFailure, timeNow()));

    if (Settings::instance()->shouldVerifyAndPurgeAfterRefresh() && !m_verifiedByRequest) {
        m_verifiedByRequest = true;
        qDebug() << "Waiting for background tasks";
        waitForBackgroundTasks();
        qDebug() << "Verifying and purging after refresh";
        verifyAutomatically();
    }
    if (Settings::instance()->shouldExitAfterRefresh()) {
        qDebug() << "Waiting for background tasks";
        waitForBackgroundTasks();
        qDebug() << "Exiting after refresh";
        m_closingDown = true;
        QCoreApplication::exit(0);
        return;
    }
    runVerify();
    const int minutes = allServersReady() ? minutesWhenReady : minutesWhenNotReady;
    qDebug().noquote() << QStringLiteral("Scheduling refresh after %1 minutes").arg(minutes);
    scheduleRefresh(minutes * 60 * 1000);
}

void MainWindow::rescheduleRefresh(int seconds)
{
    qDebug().noquote() << QStringLiteral("Scheduling refresh after %1 seconds").arg(seconds);
    m_refreshInProgress = false;
    scheduleRefresh(seconds * 1000);
}

void MainWindow::scheduleRefresh(int milliseconds)
{
    m_refreshTimer.start(Settings::instance()->getDeployment().scaledDelay(milliseconds));
}

bool MainWindow::allServersReady() const
{
    const auto* settings = Settings::instance();
    const auto keys = settings->getServerList();
    return std::all_of(keys.cbegin(), keys.cend(), [settings](const QString& key) {
        const auto* server = settings->getServer(key);
        return server && server->isReady();
    });
}

// A full download counts from the moment it is decided, which is before its task reaches the scheduler.
bool MainWindow::isFullDownloadRunning() const
{
    const auto* settings = Settings::instance();
    const auto keys = settings->getServerList();
    return std::any_of(keys.cbegin(), keys.cend(), [settings](const QString& key) {
        const auto* server = settings->getServer(key);
        return server && server->isFullDownloadRunning();
    });
}

void MainWindow::waitForBackgroundTasks()
{
    QEventLoop loop;
    while (!m_closingDown && (isFullDownloadRunning() || Scheduler::instance()->hasBackgroundTask()))
        loop.processEvents(QEventLoop::WaitForMoreEvents);
}
