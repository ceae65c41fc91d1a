#include "download/downloader.h"
#include "download/patchmanager.h"
#include "logging/filelogger.h"
#include "logging/loglens.h"
#include "logging/messagehandler.h"
#include "maintenance/cachemover.h"
#include "servers/serverindexes.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "shell/endsignals.h"
#include "shell/interruptedupdate.h"
#include "shell/mainwindow.h"
#include "shell/runninglauncher.h"
#include "shell/theme.h"
#include "shell/wakewatch.h"
#include "tasks/scheduler.h"
#include "telemetry/eventlogger.h"
#include "telemetry/exceptionlogger.h"
#include "web/browserbreakoutfilter.h"

#include <QApplication>
#include <QDebug>
#include <QNetworkProxyFactory>
#include <QThread>
#include <QThreadPool>

#include <cstdio>
#include <google/protobuf/stubs/common.h>
#include <map>
#include <memory>

namespace
{
/** Creates what the settings are the registry of, and owns it. */
class ServerFactory
{
public:
    explicit ServerFactory(Settings* settings) : m_settings(settings)
    {
        PatchManager::instance()->setIndexLookup(&m_indexes);
        settings->registerWineManager(&m_wineManager);
        settings->registerBrowserBreakoutFilter(&m_breakoutFilter);
        QObject::connect(settings, &Settings::serverDeclared, &m_wineManager,
                         [this](const QString& key, const QJsonObject& entry) { create(key, entry); });
        QObject::connect(settings, &Settings::serverActivationRequested, &m_wineManager,
                         [this](const QString& key, bool active) {
                             withServer(key, [active](auto* server) { server->setActive(active); });
                         });
        QObject::connect(settings, &Settings::lastKnownBuildResetRequested, &m_wineManager,
                         [this](const QString& key) {
                             withServer(key, [](auto* server) {
                                 server->reset();
                                 server->resetLastDownloaded();
                             });
                         });
    }
    ~ServerFactory()
    {
        PatchManager::instance()->setIndexLookup(nullptr);
        m_settings->registerBrowserBreakoutFilter(nullptr);
    }
    Q_DISABLE_COPY_MOVE(ServerFactory)

private:
    void create(const QString& key, const QJsonObject& entry)
    {
        auto& server = m_servers[key];
        server = std::make_unique<ServerManager>(key, entry);
        m_settings->registerServer(key, server.get());
    }

    template <typename Action>
    void withServer(const QString& key, const Action& action)
    {
        if (auto* server = m_settings->getServer(key))
            action(server);
    }

    Settings* const m_settings;
    const ServerIndexes m_indexes;
    WineManager m_wineManager;
    browserBreakoutFilter m_breakoutFilter;
    std::map<QString, std::unique_ptr<ServerManager>> m_servers;
};

int complain(const QString& message)
{
    std::fprintf(stderr, "velkorlauncher: %s\n", qPrintable(message));
    return 1;
}

/** What has to be decided before the application object exists. */
void setApplicationAttributes()
{
    if (!qEnvironmentVariableIsSet("QT_OPENGL")) {
        const bool hardware = Settings::instance()->getEnableHardwareRendering();
        QCoreApplication::setAttribute(hardware ? Qt::AA_UseDesktopOpenGL : Qt::AA_UseSoftwareOpenGL);
    }
    if (Settings::instance()->getEnableHighDpiScaling())
        QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

void startLogging()
{
    logRedactor().addSecretsOfEnvironment();
    QVector<LoggerBase*> sinks{LogLens::instance(), EventLogger::instance()};
    if (FileLogger::instance()->initialize(Settings::instance()->getLauncherLogsFolder()))
        sinks << FileLogger::instance();
    installLogMessageHandler(sinks);
}

void setupThreadPool()
{
    auto* pool = QThreadPool::globalInstance();
    const int ideal = QThread::idealThreadCount();
    if (ideal == 1) {
        pool->setMaxThreadCount(2);
        qDebug() << "Processor single-core or not recognised, maximum threads forced to 2";
    }
    qDebug() << "Global QThreadPool thread-counts:"
             << "ideal" << ideal << " max" << pool->maxThreadCount() << " active"
             << pool->activeThreadCount();
}

int run(QApplication* app)
{
    const Theme theme(app);
    startLogging();
    auto* settings = Settings::instance();
    ExceptionLogger::instance(); // belongs to this thread
    settings->logStartup();
    CacheMover::recover(settings);
    settings->initialize();
    settings->initializeFromArgs(*app);
    QNetworkProxyFactory::setUseSystemConfiguration(settings->useProxy());
    setupThreadPool();
    if (settings->showsRunningLauncher() && RunningLauncher::show()) {
        qInfo() << "A launcher is running already; its window has been shown";
        return 0;
    }

    auto factory = std::make_unique<ServerFactory>(settings);
    qDebug() << "Creating main window";
    auto window = std::make_unique<MainWindow>();
    const RunningLauncher runningLauncher;
    QObject::connect(&runningLauncher, &RunningLauncher::showRequested, window.get(),
                     &MainWindow::restoreWindow);
    const WakeWatch wakeWatch;
    QObject::connect(&wakeWatch, &WakeWatch::woken, window.get(), &MainWindow::refresh);
    QObject::connect(&wakeWatch, &WakeWatch::networkChanged, window.get(), &MainWindow::refresh);
    const EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::endRequested, window.get(), &MainWindow::quit);
    qDebug() << "Entering app.exec";
    const int result = QApplication::exec();

    Scheduler::instance()->stop();
    window.reset();
    factory.reset();
    Downloader::endManager();
    ExceptionLogger::instance()->abandonReports();
    settings->store().sync();
    EventLogger::instance()->waitForWorker();
    return result;
}
} // namespace

int main(int argc, char** argv)
{
    GOOGLE_PROTOBUF_VERIFY_VERSION;
    finishInterruptedUpdate();
    QString error;
    const auto deployment = Deployment::load(&error);
    if (!deployment)
        return complain(error);
    Settings::useDeployment(*deployment);
    setApplicationAttributes();

    auto app = std::make_unique<QApplication>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (!deployment->trustExtraCertificates(&error))
        return complain(error);
    const int result = run(app.get());
    flushLogMessages();
    qInstallMessageHandler(nullptr);
    return result;
}
