// The part of MainWindow that offers what players ask for beside playing: pausing and limiting downloads,
// using files that are there already, and tools that look into the launcher.

#include "download/downloadfromindextask.h"
#include "logging/filelogger.h"
#include "logging/formatmemory.h"
#include "maintenance/reportdialog.h"
#include "servers/downloadcontrol.h"
#include "servers/prefixusers.h"
#include "servers/servermanager.h"
#include "settings/settings.h"
#include "shell/adoptdialog.h"
#include "shell/downloadplandialog.h"
#include "shell/launchoptionsdialog.h"
#include "shell/logdialog.h"
#include "shell/mainwindow.h"
#include "shell/toolsmenu.h"
#include "shell/updatewatchdog.h"
#include "tasks/scheduler.h"

#include <QDebug>

namespace
{
constexpr int answerWaitMs = 30000;
constexpr int stuckAfterMs = 60000;
} // namespace

template <typename Dialog, typename... Arguments>
Dialog* MainWindow::openTool(Arguments&&... arguments)
{
    if (auto* open = findChild<Dialog*>()) {
        open->raise();
        open->activateWindow();
        return nullptr;
    }
    auto* dialog = new Dialog(std::forward<Arguments>(arguments)..., this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    return dialog;
}

void MainWindow::setupTools()
{
    auto* settings = Settings::instance();
    m_downloads = new DownloadControl(settings, isAnyClientRunning, this);
    connect(m_downloads, &DownloadControl::stateChanged, this, &MainWindow::showDownloadState);
    m_tools = new ToolsMenu(m_downloads, this);
    connect(m_tools, &ToolsMenu::adoptRequested, this, &MainWindow::showAdoptDialog);
    connect(m_tools, &ToolsMenu::launchOptionsRequested, this,
            [this, settings] { openTool<LaunchOptionsDialog>(settings); });
    connect(m_tools, &ToolsMenu::logRequested, this,
            [this] { openTool<LogDialog>(FileLogger::instance()->path()); });
    connect(m_tools, &ToolsMenu::reportRequested, this,
            [this] { openTool<ReportDialog>(Diagnostics::usualPlan()); });
    m_watchdog = new UpdateWatchdog(
        [this] { return describeActivity(); },
        std::chrono::milliseconds(settings->getDeployment().scaledDelay(stuckAfterMs)), this);
}

void MainWindow::showDownloadState()
{
    switch (m_downloads->state()) {
    case DownloadControl::State::Paused:
        setMessage(tr("Downloads are paused."));
        break;
    case DownloadControl::State::WaitingForClients:
        setMessage(tr("Downloads wait until no client runs."));
        break;
    case DownloadControl::State::Running:
        setMessage(tr("Downloads go on."));
        break;
    }
}

QString MainWindow::describeActivity() const
{
    if (m_cacheInUse)
        return QStringLiteral("the dialog of the shared cache");
    const auto held = m_downloads->state() == DownloadControl::State::Running
                          ? QString()
                          : QStringLiteral(" (downloads are held: %1)").arg(m_downloads->reason());
    if (const auto* task = Scheduler::instance()->currentTask())
        return task->activity() + held;
    if (m_connectionCheck)
        return QStringLiteral("the check of the hosts");
    if (m_refreshedServer)
        return QStringLiteral("%1: a sign-in, or an index being read")
            .arg(m_refreshedServer->getDisplayName());
    return m_refreshInProgress ? QStringLiteral("a step of the refresh cycle, or an answer to a question")
                               : QString();
}

// Whatever a refresh hangs at: what has not answered is asked again, and a cycle that does nothing is begun
// anew.
void MainWindow::onRefreshChosen()
{
    m_roomRefused.clear(); // the player may have made room
    if (m_downloads->state() != DownloadControl::State::Running)
        showDownloadState();
    if (auto* question = findChild<DownloadPlanDialog*>()) {
        question->raise();
        question->activateWindow();
        return;
    }
    auto* task = Scheduler::instance()->currentTask();
    if (m_refreshInProgress && task) {
        qInfo().noquote() << "Refresh chosen while this goes on:" << task->activity();
        task->askAgain();
        return;
    }
    const bool isIdle = !m_connectionCheck && !m_cacheInUse;
    if (m_refreshInProgress && isIdle && m_watchdog->isStuck()) {
        qWarning() << "The refresh cycle is begun anew, it was stuck";
        m_refreshInProgress = false;
    }
    refresh();
}

// A player who has paused is asked when downloads go on.
void MainWindow::reviewDownload(ServerManager* server, DownloadFromIndexTask* task)
{
    using Decision = DownloadFromIndexTask::Decision;
    if (m_downloads->state() != DownloadControl::State::Running) {
        auto* once = new QObject(task);
        connect(m_downloads, &DownloadControl::stateChanged, once, [this, server, task, once] {
            once->deleteLater();
            reviewDownload(server, task);
        });
        return;
    }
    const auto& plan = task->plan();
    const auto key = server->getName();
    if (plan.isShortOfRoom() &&
        m_roomRefused.value(key) == plan.roomNeeded) { // asked already, nothing has changed
        QTimer::singleShot(0, task, [task] { task->decide(Decision::GiveUp); });
        return;
    }
    auto* settings = Settings::instance();
    auto* dialog = new DownloadPlanDialog(
        server->getDisplayName(), plan, settings->getCacheFolder(),
        std::chrono::milliseconds(settings->getDeployment().scaledDelay(answerWaitMs)), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, task, [task] { task->decide(Decision::Start); });
    connect(dialog, &DownloadPlanDialog::postponed, m_downloads, [this] { m_downloads->setPaused(true); });
    connect(dialog, &QDialog::rejected, task, [this, task, key] {
        const bool isShort = task->plan().isShortOfRoom();
        if (isShort)
            m_roomRefused.insert(key, task->plan().roomNeeded);
        task->decide(isShort ? Decision::GiveUp : Decision::Start); // one that was put off is paused
    });
    connect(task, &QObject::destroyed, dialog, &QObject::deleteLater);
    dialog->show();
}

void MainWindow::showAdoptDialog()
{
    auto* settings = Settings::instance();
    auto* dialog = openTool<AdoptDialog>(settings->getAdoptedFolder(), settings->getCacheFolder());
    if (!dialog)
        return;
    connect(dialog, &QDialog::accepted, this, [this, dialog, settings] {
        qInfo().noquote() << "Files are to be taken from" << dialog->folder();
        settings->setAdoptedFolder(dialog->folder(), dialog->linkFiles());
        setMessage(tr("What is missing is taken from %1 where it is there.").arg(dialog->folder()));
        refresh();
    });
}

void MainWindow::onFilesAdopted(int files, qint64 bytes)
{
    setMessage(tr("Files that need not be downloaded: %1 (%2)").arg(files).arg(formatMemory(bytes)));
}

void MainWindow::forgetAdoptedFolder()
{
    if (!isFullDownloadRunning() && !Settings::instance()->getAdoptedFolder().isEmpty())
        Settings::instance()->forgetAdoptedFolder();
}
