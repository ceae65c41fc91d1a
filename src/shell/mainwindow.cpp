#include "shell/mainwindow.h"

#include "logging/loglens.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "shell/frameresizer.h"
#include "shell/settingsdialog.h"
#include "shell/titlebar.h"
#include "shell/toolsmenu.h"
#include "shell/traystatus.h"
#include "telemetry/eventlogger.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QUrl>

namespace
{
constexpr int firstRefreshDelayMs = 300;
constexpr int minTitleBarHeight = 36;
constexpr int maxTitleBarHeight = 96;

QString geometryKey() { return QStringLiteral("LauncherWindowGeometry"); }
} // namespace

MainWindow::MainWindow() : m_processes(Settings::instance()->getLauncherLogsFolder())
{
    const auto* settings = Settings::instance();
    auto title = tr("Velkor Launcher - version %1").arg(settings->getVersion());
    if (settings->getVersionType() == 2)
        title += QStringLiteral(" Development");
    setWindowTitle(title);
    m_sessionTime.start();
    setWindowFlag(Qt::FramelessWindowHint);
    m_refreshTimer.setSingleShot(true);
    connect(&m_refreshTimer, &QTimer::timeout, this, &MainWindow::refresh);
    connect(settings, &Settings::startRefreshCycle, this, &MainWindow::refresh);
    connect(&m_processes, &ProcessList::ended, this, &MainWindow::onProcessEnded);

    setupMenu();
    m_titleBar = new TitleBar(this);
    m_titleBar->setTitle(title);
    m_titleBar->setMenu(m_menu);
    setMenuWidget(m_titleBar);
    setWindowIcon(QIcon(QStringLiteral("://images/icon.png")));

    qDebug() << "Initializing servers";
    Settings::instance()->initializeServers();
    setupTools();
    setupTrayIcon(m_menu);
    connectServers();
    connectWine();
    connect(settings, &Settings::serverListChanged, this, &MainWindow::connectServers);
    connect(settings, &Settings::setTitleBarHeight, this, [this](int height) {
        m_titleBar->setFixedHeight(qBound(minTitleBarHeight, height, maxTitleBarHeight));
    });
    createInterface();
    new FrameResizer(this);
}

MainWindow::~MainWindow()
{
    m_closingDown = true;
    logShutdown();
}

void MainWindow::setupMenu()
{
    m_menu = new QMenu(this);
    m_menu->addAction(tr("&Server list"), this,
                      [this] { showServerList(m_menu, tr("Server list - Velkor Launcher")); });
    m_menu->addAction(tr("Se&ttings..."), this, &MainWindow::showSettings);
    m_menu->addAction(tr("Shared &Cache..."), this, &MainWindow::showVerifyDialog);
    m_menu->addAction(tr("C&lient Settings..."), this, &MainWindow::showMigrateSettingsDialog);
    m_menu->addAction(tr("Start LogLens"), this, &MainWindow::startLogLens);
    m_menu->addAction(tr("&Network diagnostics..."), this, &MainWindow::showDiagnoseNetworkDialog);
    auto* folders = m_menu->addMenu(tr("Show in File Browser"));
    folders->addAction(tr("Launcher logs"), this, &MainWindow::onShowLauncherLogsFolder);
    folders->addAction(tr("Shared cache"), this, &MainWindow::onShowSharedCacheFolder);
    m_menu->addSeparator();
    m_menu->addAction(tr("&Refresh"), this, &MainWindow::onRefreshChosen);
    m_menu->addAction(tr("About..."), this, &MainWindow::showAboutDialog);
    m_menu->addSeparator();
    m_menu->addAction(tr("E&xit"), this, &MainWindow::quit);
}

void MainWindow::setupTrayIcon(QMenu* menu)
{
    m_trayIcon = new QSystemTrayIcon(QIcon(QStringLiteral("://images/trayicon.png")), this);
    // The window's menu, below what the launcher is doing.
    auto* trayMenu = new QMenu(this);
    m_statusAction = trayMenu->addAction(QString());
    m_statusAction->setEnabled(false);
    trayMenu->addSeparator();
    trayMenu->addAction(m_tools->pauseAction());
    trayMenu->addMenu(m_tools->limitMenu());
    trayMenu->addSeparator();
    trayMenu->addActions(menu->actions());
    m_trayIcon->setContextMenu(trayMenu);
    connect(m_trayIcon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            restoreWindow();
    });
    m_trayIcon->show();
    setupTrayStatus();
}

void MainWindow::setupTrayStatus()
{
    constexpr int longUpdateMs = 60000;
    const int longMs = Settings::instance()->getDeployment().scaledDelay(longUpdateMs);
    m_trayStatus =
        new TrayStatus([this] { return isVisible() && !isMinimized() && isActiveWindow(); }, longMs, this);
    connect(m_trayStatus, &TrayStatus::changed, this, &MainWindow::showTrayStatus);
    connect(m_trayStatus, &TrayStatus::notificationWanted, this,
            [this](const QString& title, const QString& text, bool isFailure) {
                qDebug().noquote() << "Notification:" << title << text;
                m_trayIcon->showMessage(title, text,
                                        isFailure ? QSystemTrayIcon::Warning : QSystemTrayIcon::Information);
            });
    showTrayStatus();
}

void MainWindow::showTrayStatus()
{
    const auto lines = m_trayStatus->lines();
    m_trayIcon->setToolTip((QStringList{windowTitle()} + lines).join(QLatin1Char('\n')));
    m_statusAction->setText(lines.join(QStringLiteral("; ")).replace(QLatin1Char('&'), QLatin1String("&&")));
    m_statusAction->setVisible(!lines.isEmpty());
}

// Runs again when a test server is enabled; a server is connected once all the same.
void MainWindow::connectServers()
{
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys) {
        auto* server = Settings::instance()->getServer(key);
        if (!server)
            continue;
        qDebug().noquote() << "Connecting signals for" << key;
        m_trayStatus->watch(server);
        connect(server, &ServerManager::processStarted, this, &MainWindow::onProcessStarted,
                Qt::UniqueConnection);
        connect(server, &ServerManager::showErrorMessage, this, &MainWindow::onServerError,
                Qt::UniqueConnection);
        connect(server, &ServerManager::filesAdopted, this, &MainWindow::onFilesAdopted,
                Qt::UniqueConnection);
        if (!Settings::instance()->shouldExitAfterRefresh())
            server->setReview(
                [this](ServerManager* asked, DownloadFromIndexTask* task) { reviewDownload(asked, task); });
    }
}

void MainWindow::connectWine()
{
    auto* wine = Settings::instance()->getWineManager();
    if (!wine)
        return;
    // Queued, so that what the manager does after announcing its end is done before the next step.
    connect(wine, &WineManager::endUpdate, this, &MainWindow::onWineEndUpdate, Qt::QueuedConnection);
    connect(wine, &WineManager::progressUpdate, this, [this](float fraction, const QString& message) {
        setMessage(tr("%1 (%2 %)").arg(message).arg(static_cast<int>(fraction * 100)));
    });
    connect(wine, &WineManager::waiting, this, &MainWindow::setMessageAtOnce);
}

void MainWindow::initializeGeometry()
{
    auto* settings = Settings::instance();
    setMinimumSize(settings->getMinimumLauncherSize());
    resize(settings->getDefaultLauncherSize());
    auto frame = geometry();
    frame.moveCenter(screen()->availableGeometry().center());
    setGeometry(frame);
    if (settings->checkIfUIVersion6ResizeDone())
        restoreGeometry(settings->store().value(geometryKey()).toByteArray());
}

void MainWindow::onLoadFinished()
{
    if (std::exchange(m_wasShown, true))
        return;
    initializeGeometry();
    show();
    if (Settings::instance()->isFirstRun())
        EventLogger::instance()->launcherInstalled(QDateTime::currentSecsSinceEpoch());
    EventLogger::instance()->launcherStarted();
    QTimer::singleShot(firstRefreshDelayMs, this, &MainWindow::refresh);
}

void MainWindow::restoreWindow()
{
    if (m_hiddenToTray)
        restoreWebGui();
    m_hiddenToTray = false;
    showNormal();
    raise();
    activateWindow();
}

void MainWindow::onProcessStarted(ServerManager* server, AttachedProcess* process)
{
    m_processes.add(process);
    ++m_clientsStarted;
    setMessage(tr("The client for %1 is running").arg(server->getDisplayName()));
}

void MainWindow::onProcessEnded(AttachedProcess* process, int exitCode, bool crashed)
{
    const auto* server = Settings::instance()->getServer(process->server());
    const auto name = server ? server->getDisplayName() : process->server();
    if (crashed)
        setMessage(tr("The client for %1 has crashed").arg(name));
    else
        setMessage(tr("The client for %1 has ended with exit code %2").arg(name).arg(exitCode));
}

void MainWindow::showAboutDialog()
{
    auto* box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(tr("About"));
    box->setIconPixmap(QIcon(QStringLiteral("://images/icon.png")).pixmap(64, 64));
    box->setText(tr("Velkor Launcher"));
    box->setInformativeText(tr("Version %1\nToolkit %2\nShared cache: %3")
                                .arg(Settings::instance()->getVersion(), QString::fromLatin1(qVersion()),
                                     QDir::toNativeSeparators(Settings::instance()->getCacheFolder())));
    box->open();
}

void MainWindow::showSettings()
{
    if (auto* open = findChild<SettingsDialog*>()) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto* dialog = new SettingsDialog(Settings::instance(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, &MainWindow::refresh); // what was chosen takes effect at once
    dialog->open();
}

// The viewer comes with the launcher; one that runs already is used as well.
void MainWindow::startLogLens()
{
    const auto viewer = QCoreApplication::applicationDirPath() + QStringLiteral("/velkor-loglens");
    if (!QProcess::startDetached(viewer, {}))
        qWarning().noquote() << "The log viewer could not be started:" << viewer;
    connectLogLens();
}

static void openFolder(const QString& folder)
{
    QDir().mkpath(folder);
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        qWarning().noquote() << "No file browser could be started for" << folder;
}

void MainWindow::onShowSharedCacheFolder() { openFolder(Settings::instance()->getCacheFolder()); }

void MainWindow::onShowLauncherLogsFolder() { openFolder(Settings::instance()->getLauncherLogsFolder()); }

void MainWindow::saveState()
{
    m_processes.save();
    Settings::instance()->store().setValue(geometryKey(), saveGeometry());
    Settings::instance()->store().sync();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    qDebug() << "Closing main window";
    event->accept();
    saveState();
    releaseInterface();
    const auto dialogs = findChildren<QDialog*>();
    for (auto* dialog : dialogs)
        dialog->close();

    const bool trayIsVisible = m_trayIcon->isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
    if (Settings::instance()->shouldMinimizeToTray() && trayIsVisible && !m_closingDown) {
        qDebug() << "Minimizing to tray rather than closing fully";
        m_hiddenToTray = true;
        hide();
        return;
    }
    m_closingDown = true;
    QCoreApplication::quit();
}

void MainWindow::quit()
{
    m_closingDown = true;
    if (!close())
        QCoreApplication::quit();
}

// Translations are applied at the next start.
void MainWindow::changeEvent(QEvent* event)
{
    if (event->type() != QEvent::LanguageChange)
        QMainWindow::changeEvent(event);
}

void MainWindow::logShutdown() const
{
    qInfo() << "Velkor Launcher closing," << m_processes.size() << "client(s) still running";
    EventLogger::instance()->launcherShutdown(m_processes.size(), m_clientsStarted,
                                              static_cast<int>(m_sessionTime.elapsed() / 1000));
}
