// The part of MainWindow that runs the refresh cycle. Read it from top to bottom: each step names the next
// one.

#include "servers/servermanager.h"
#include "settings/settings.h"
#include "shell/mainwindow.h"
#include "tasks/scheduler.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTime>

namespace
{
constexpr int retryDelaySeconds = 120;
constexpr int minutesWhenReady = 15;
constexpr int minutesWhenNotReady = 2;

void report(const char* type, const QString& message)
{
    ExceptionLogger::instance()->logException(QLatin1String(type), message, QStringLiteral("onFailedUpdate"),
                                              QStringLiteral("mainwindow"), __LINE__);
}
} // namespace

void MainWindow::refresh()
{
    if (m_closingDown) {
        qDebug() << "Refresh skipped as main window is closing down";
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
    setMessage(tr("Looking for updates"));
    onVersionCheckFinished();
}

void MainWindow::onVersionCheckFinished()
{
    if (!checkSharedCacheIsWritable()) {
        rescheduleRefresh();
        return;
    }
    m_serversToRefresh = Settings::instance()->getServerList();
    refreshServers();
}

bool MainWindow::checkSharedCacheIsWritable()
{
    const auto folder = Settings::instance()->getCacheFolder();
    if (QDir().mkpath(folder))
        return true;
    qWarning() << "Cache folder does not exist";
    showErrorMessage(tr("Error"), tr("Cache folder does not exist and could not be created at {1}")
                                      .replace(QLatin1String("{1}"), QDir::toNativeSeparators(folder)));
    return false;
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
    qDebug().noquote() << "onEndUpdate for" << server->getName();
    refreshServers();
}

void MainWindow::onFailedUpdate(ServerManager* server, int code, const QString& message)
{
    qWarning().noquote() << "Update failed for" << server->getDisplayName() << "with error:" << code;
    m_lastFailure = QStringLiteral("%1: %2").arg(server->getDisplayName(), message);
    setMessage(m_lastFailure);
    if (server->isUpdating()) // a launch was refused, the update goes on
        return;
    reportFailure(server, code);
    refreshServers();
}

void MainWindow::reportFailure(ServerManager* server, int code)
{
    const auto name = server->getName();
    switch (code) {
    case NoError:
        report("RuntimeError", QStringLiteral("%1 update failed but no error code given").arg(name));
        break;
    case UnknownError:
        report("UnknownError", QStringLiteral("%1 update failed with an unknown error").arg(name));
        break;
    case DownloadError:
        if (Settings::instance()->isOnline())
            report("DownloadError", QStringLiteral("%1 update failed with a download error").arg(name));
        break;
    case DiskWriteError:
        report("DiskWriteError", QStringLiteral("%1 update failed with a disk write error").arg(name));
        break;
    case ClientsRunningError:
    case ProtectedBuildError:
        break;
    case SourceDoesNotExistError:
        report("SourceDoesNotExist",
               QStringLiteral("%1 update failed with a source does not exist error").arg(name));
        server->reset();
        server->resetLastDownloaded();
        break;
    default:
        qWarning().noquote() << "Unhandled error for" << name << "with error:" << code;
    }
}

void MainWindow::onRefreshServersDone()
{
    qDebug() << "refreshServers done";
    m_refreshInProgress = false;
    const bool allReady = allServersReady();
    const auto time = QLocale().toString(QTime::currentTime(), QLocale::ShortFormat);
    if (allReady)
        setMessage(tr("Everything is up to date. Last checked at %1.").arg(time));
    else if (!m_lastFailure.isEmpty())
        setMessage(tr("%1 (at %2)").arg(m_lastFailure, time));

    if (Settings::instance()->shouldExitAfterRefresh()) {
        qDebug() << "Waiting for background tasks";
        waitForBackgroundTasks();
        qDebug() << "Exiting after refresh";
        m_closingDown = true;
        QCoreApplication::exit(0);
        return;
    }
    const int minutes = allReady ? minutesWhenReady : minutesWhenNotReady;
    qDebug().noquote() << QStringLiteral("Scheduling refresh after %1 minutes").arg(minutes);
    scheduleRefresh(minutes * 60 * 1000);
}

void MainWindow::rescheduleRefresh()
{
    qDebug().noquote() << QStringLiteral("Scheduling refresh after %1 seconds").arg(retryDelaySeconds);
    m_refreshInProgress = false;
    scheduleRefresh(retryDelaySeconds * 1000);
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
void MainWindow::waitForBackgroundTasks()
{
    const auto* settings = Settings::instance();
    const auto isBusy = [settings] {
        const auto keys = settings->getServerList();
        return std::any_of(keys.cbegin(), keys.cend(), [settings](const QString& key) {
            const auto* server = settings->getServer(key);
            return server && server->isFullDownloadRunning();
        });
    };
    QEventLoop loop;
    while (!m_closingDown && (isBusy() || Scheduler::instance()->hasBackgroundTask()))
        loop.processEvents(QEventLoop::WaitForMoreEvents);
}
