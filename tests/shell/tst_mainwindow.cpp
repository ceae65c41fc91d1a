#include "logging/messagehandler.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "shell/mainwindow.h"
#include "shell/simplegui.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>

#include <csignal>

class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::map<QString, std::unique_ptr<ServerManager>> m_servers;
    std::unique_ptr<MainWindow> m_window;

    static Settings* settings() { return Settings::instance(); }
    static bool hasLogged(const QString& text)
    {
        for (const auto& record : getLastLogMessages(1000)) {
            if (record.message.contains(text))
                return true;
        }
        return false;
    }
    /** Returns at once, so that what is looked at next still belongs to the same cycle. */
    static bool waitForLog(const QString& text)
    {
        QElapsedTimer timer;
        for (timer.start(); !hasLogged(text) && !timer.hasExpired(20000);)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return hasLogged(text);
    }
    bool hasReported(const QString& text)
    {
        for (const auto& report : m_service->backend().exceptionReports()) {
            if (report.value("exception").toArray().first().toObject().value("value") == text)
                return true;
        }
        return false;
    }
    static int countLogged(const QString& text)
    {
        int count = 0;
        for (const auto& record : getLastLogMessages(1000))
            count += record.message == text ? 1 : 0;
        return count;
    }
    static void setCommandLine(bool skipTestServers, bool skipVersionCheck = false)
    {
        CommandLine commandLine;
        commandLine.disableWebGui = true;
        commandLine.skipTestServers = skipTestServers;
        commandLine.skipVersionCheck = skipVersionCheck;
        settings()->setCommandLine(commandLine);
    }
    QString message() const
    {
        auto* label = m_window->findChild<QLabel*>("message");
        return label ? label->text() : QString();
    }
    QJsonArray savedProcesses() const
    {
        return QJsonDocument::fromJson(readSample(settings()->getLauncherLogsFolder() + "/processes.json"))
            .object()
            .value("processes")
            .toArray();
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        QApplication::setQuitOnLastWindowClosed(false);
        settings()->setCacheFolder(QDir::tempPath());
        settings()->initialize(); // from here on it knows whether it is online
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers[key] = std::make_unique<ServerManager>(key, entry);
                    settings()->registerServer(key, m_servers[key].get());
                });
        connect(settings(), &Settings::serverActivationRequested, this,
                [this](const QString& key, bool active) { m_servers.at(key)->setActive(active); });
    }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        settings()->setCacheFolder(m_cache->path());
        settings()->store().remove("LauncherLastDownloaded");
        settings()->store().setValue("LauncherLastVerifyTime", QDateTime::currentDateTime());
        setCommandLine(true);
        settings()->setUseCustomWine(true);
        settings()->registerWineManager(m_wine.get());
        installLogMessageHandler({});
        for (int i = 0; i < 1100; ++i)
            qDebug("-"); // pushes the records of the last test out of the history
        m_window = std::make_unique<MainWindow>();
    }
    void cleanup()
    {
        m_window.reset();
        qInstallMessageHandler(nullptr);
    }
    void cleanupTestCase()
    {
        m_servers.clear();
        m_service.reset();
    }

    void hasTitleAndMenu()
    {
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Velkor Launcher - version 1548102"));
        const auto* menu = m_window->findChild<QMenu*>({}, Qt::FindDirectChildrenOnly);
        QStringList items;
        for (const auto* action : menu->actions()) {
            if (!action->isSeparator())
                items << action->text();
        }
        QCOMPARE(items, (QStringList{"&Server list", "Se&ttings...", "Shared &Cache...",
                                     "C&lient Settings...", "Start LogLens", "&Network diagnostics...",
                                     "Show in File Browser", "&Refresh", "About...", "E&xit"}));
    }

    void refreshesAllServersAndComesAgain()
    {
        setCommandLine(false);
        settings()->setEnabledTestServers({"pl"});
        m_service->tree().publish("ks", "1", {{"a", "b"}});
        m_service->tree().publish("pl", "2", {{"c", "d"}});
        m_window->onLoadFinished();
        QVERIFY(waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(m_servers.at("ks")->isReady() && m_servers.at("pl")->isReady());
        QVERIFY(message().startsWith("Everything is up to date."));
        QTRY_VERIFY(countLogged("Starting refresh cycle") >= 3); // the test's minutes are short
        settings()->setEnabledTestServers({});
    }

    void goesOnAfterAFailureAndReportsIt()
    {
        setCommandLine(false);
        settings()->setEnabledTestServers({"pl"});
        m_service->tree().publish("ks", "3", {{"a", "b"}});
        m_service->content().faults().set("/velkor_3.txt", Fault::answerWith(404));
        m_service->tree().publish("pl", "4", {{"c", "d"}});
        m_window->refresh();
        QVERIFY(waitForLog("Scheduling refresh after 2 minutes"));
        QVERIFY(hasLogged("Update failed for Kestrel with error: 2"));
        QVERIFY(m_servers.at("pl")->isReady());
        QVERIFY2(message().startsWith("Kestrel: Kestrel client file-index not available"),
                 qPrintable(message()));
        QTRY_VERIFY(hasReported("ks update failed with a download error"));
        m_service->content().faults().clear();
        QTRY_VERIFY(m_servers.at("ks")->isReady()); // the cycle comes round
        settings()->setEnabledTestServers({});
    }

    void refusesASecondRefreshMeanwhile()
    {
        m_service->tree().publish("ks", "5", {{"a", "b"}});
        m_window->refresh();
        m_window->refresh();
        QVERIFY(hasLogged("Refresh already in progress"));
        QTRY_VERIFY(hasLogged("refreshServers done"));
    }

    void forgetsTheBuildWhenASourceIsLost()
    {
        m_service->tree().publish("ks", "6", {{"a", "b"}});
        m_window->refresh();
        QTRY_COMPARE(settings()->store().value("LauncherLastDownloaded/ks").toString(), QStringLiteral("6"));
        QTRY_VERIFY(m_servers.at("ks")->isReady());
        // A file goes from the cache between the download and the copy.
        m_service->tree().publish("ks", "7", {{"a", "other"}});
        const auto lost = m_cache->filePath("ResFiles" + SampleTree::pathOf("other"));
        const auto once = connect(m_servers.at("ks").get(), &ServerManager::progressUpdate, this,
                                  [lost](ServerManager*, float, const QString& text) {
                                      if (text == "Copying files")
                                          QFile::remove(lost);
                                  });
        QTRY_VERIFY(hasLogged("Update failed for Kestrel with error: 5"));
        QTRY_COMPARE(settings()->store().value("LauncherLastDownloaded/ks").toString(), QString());
        disconnect(once);
        QTRY_VERIFY(m_servers.at("ks")->isReady()); // the next cycle repairs it
        QCOMPARE(m_servers.at("ks")->getStagingFolderBuild(), QStringLiteral("7"));
    }

    void retriesWhenTheCacheCannotBeMade()
    {
        settings()->setCacheFolder("/proc/nothing/cache");
        m_window->refresh();
        QVERIFY(waitForLog("Cache folder does not exist"));
        QVERIFY(hasLogged("Scheduling refresh after 120 seconds"));
        const auto* box = m_window->findChild<QMessageBox*>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(
            box->text(),
            QStringLiteral("Cache folder does not exist and could not be created at /proc/nothing/cache/"));
        QTRY_VERIFY(countLogged("Starting refresh cycle") >= 2);
    }

    void readsTheOfficialVersion()
    {
        writeSample(m_service->tree().path() + QUrl(settings()->getUrlForVersionInfo()).path(),
                    "{\"version\": \"1548102\"}");
        m_window->refresh();
        QTRY_VERIFY(hasLogged("Official version is 1548102"));
        QTRY_VERIFY(hasLogged("refreshServers done"));
        QVERIFY(QFile::remove(m_service->tree().path() + QUrl(settings()->getUrlForVersionInfo()).path()));
        QTRY_VERIFY(hasLogged("Couldn't establish official version")); // the next cycle
        QTRY_VERIFY(hasLogged("refreshServers done"));
    }

    void skipsTheVersionCheckByRequest()
    {
        setCommandLine(true, true);
        m_window->refresh();
        QTRY_VERIFY(hasLogged("refreshServers done"));
        QVERIFY(hasLogged("Skipping version check by request"));
        QCOMPARE(m_service->requestsFor(QUrl(settings()->getUrlForVersionInfo()).path()), 0);
    }

    void showsHostsThatCannotBeReachedAndGoesOn()
    {
        m_service->tree().publish("ks", "20", {{"a", "b"}});
        m_service->backend().gateway().die();
        m_window->refresh();
        QVERIFY(waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(m_service->backend().gateway().start());
        const auto host = settings()->getDeployment().eventGateway;
        QVERIFY(hasLogged(QStringLiteral("Could not connect to %1 Connection refused").arg(host)));
        QVERIFY(message().startsWith("Everything is up to date."));
        QVERIFY2(
            message().contains(
                QStringLiteral("Connection error: Could not connect to %1: Connection refused").arg(host)),
            qPrintable(message()));
        QTRY_VERIFY(!message().contains("Connection error")); // a later cycle
    }

    void installsWineBeforeTheServers()
    {
        settings()->setUseCustomWine(false);
        m_service->tree().publishWine("8.0", {{"bin/regedit", "#!/bin/sh\n"}});
        m_service->tree().publish("ks", "21", {{"a", "b"}});
        m_window->refresh();
        QVERIFY(waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(QFile::exists(m_cache->filePath("wine/bin/regedit")));
        QVERIFY(m_servers.at("ks")->isReady());
    }

    void reactsToTheEndOfWine_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("report");
        QTest::addColumn<int>("seconds");
        QTest::newRow("unknown") << 1 << "Wine update failed with an unknown error" << 120;
        QTest::newRow("download") << 2 << "Wine update failed with a download error" << 120;
        QTest::newRow("disk") << 3 << "Wine update failed with a disk write error" << 120;
        QTest::newRow("clients") << 4 << QString() << 120;
        QTest::newRow("source") << 5 << QString() << 5;
        QTest::newRow("copy") << 6 << QString() << 120;
        QTest::newRow("authentication") << 9 << QString() << 120;
    }
    void reactsToTheEndOfWine()
    {
        QFETCH(int, code);
        QFETCH(QString, report);
        QFETCH(int, seconds);
        settings()->setUseCustomWine(false);
        settings()->store().setValue("LauncherLastDownloaded/wine", "8.0");
        WineManager wine;
        settings()->registerWineManager(&wine);
        m_window = std::make_unique<MainWindow>();
        emit wine.endUpdate(code);
        QVERIFY(waitForLog(QStringLiteral("Update failed for Wine with error: %1").arg(code)));
        QVERIFY(hasLogged(QStringLiteral("Scheduling refresh after %1 seconds").arg(seconds)));
        QVERIFY(!hasLogged("refreshServers"));
        QVERIFY(message().startsWith("Wine could not be updated: "));
        QCOMPARE(hasLogged("Unhandled error for Wine"), code > 5);
        QCOMPARE(settings()->store().value("LauncherLastDownloaded/wine").toString(),
                 code == 5 ? QString() : QStringLiteral("8.0"));
        if (!report.isEmpty())
            QTRY_VERIFY(hasReported(report));
        QTRY_VERIFY(hasLogged("Starting refresh cycle")); // after the time that was said
        m_window.reset();
        settings()->registerWineManager(m_wine.get());
    }

    void tracksClients()
    {
        auto* server = m_servers.at("ks").get();
        server->startProcess("/bin/sh", {"-c", "read x"}, {}, "player");
        QVERIFY(m_window->isProcessRunning());
        const auto saved = savedProcesses();
        QCOMPARE(saved.size(), 1);
        const auto client = saved.first().toObject();
        QCOMPARE(client.value("servername").toString(), QStringLiteral("ks"));
        QCOMPARE(client.value("username").toString(), QStringLiteral("player"));
        QVERIFY(client.value("pid").toInt() > 0);
        QCOMPARE(message(), QStringLiteral("The client for Kestrel is running"));
        ::kill(client.value("pid").toInt(), SIGKILL);
        QTRY_VERIFY(!m_window->isProcessRunning());
        QVERIFY(hasLogged(QStringLiteral("Process %1 crashed").arg(client.value("pid").toInt())));
        QCOMPARE(message(), QStringLiteral("The client for Kestrel has crashed"));
        QVERIFY(savedProcesses().isEmpty());
        const auto file = settings()->getLauncherLogsFolder() + "/processes.json";
        QCOMPARE(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    }

    void showsLaunchFailures()
    {
        m_servers.at("ks")->startProcess("/no/such/wine", {}, {}, {});
        const auto* box = m_window->findChild<QMessageBox*>();
        QVERIFY(box);
        QCOMPARE(box->text(), QStringLiteral("Could not find file /no/such/wine"));
    }

    void quitsOnCloseAndKeepsItsGeometry()
    {
        m_window->onLoadFinished();
        QCOMPARE(m_window->minimumSize(), QSize(900, 580));
        m_window->resize(1000, 600);
        settings()->setShouldMinimizeToTray(true); // there is no tray here
        QSignalSpy quit(qApp, &QCoreApplication::aboutToQuit);
        QTimer::singleShot(0, m_window.get(), &QWidget::close);
        QCOMPARE(QApplication::exec(), 0);
        settings()->setShouldMinimizeToTray(false);
        QVERIFY(hasLogged("Closing main window") && hasLogged("SimpleGui closed"));
        m_window->refresh();
        QVERIFY(hasLogged("Refresh skipped as main window is closing down"));
        m_window = std::make_unique<MainWindow>();
        m_window->onLoadFinished();
        QCOMPARE(m_window->size(), QSize(1000, 600));
    }
};

VELKOR_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
