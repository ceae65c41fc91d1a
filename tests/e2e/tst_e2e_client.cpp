#include "tests/e2e/virtualdisplay.h"
#include "tests/e2e/wineprefix.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>

/** The real launcher starting a real Windows program under a real Wine, by a click on Play. */
class TestClient : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<WinePrefix> m_prefix;
    std::unique_ptr<LauncherProcess> m_launcher;

    void startLauncher(const QString& clientArguments)
    {
        m_launcher = std::make_unique<LauncherProcess>(m_service->backend());
        m_launcher->shareCache(m_prefix->cache());
        m_launcher->setEnvironment("QT_QPA_PLATFORM", "xcb");
        m_launcher->setEnvironment("DISPLAY", m_display->name());
        m_launcher->set("UseCustomWine", true);
        m_launcher->set("CustomWinePath", WinePrefix::wine);
        m_launcher->set("LauncherRunClientsWith64Bit", true);
        m_launcher->start({"-d", "-k", "--client-args=" + clientArguments});
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
    }
    void clickPlay()
    {
        const auto geometry = m_display->geometryOf(m_display->waitForWindow("Velkor Launcher - version"));
        m_display->click(geometry.topRight() + QPoint(-110, 130));
        QVERIFY(m_launcher->waitForLog("exefile.exe"));
    }
    void clickQuit(qint64 window)
    {
        m_display->click(m_display->geometryOf(window).bottomLeft() + QPoint(76, -32));
    }
    QJsonArray savedProcesses() const
    {
        const auto file = m_launcher->home() + "/.local/share/Halden/Velkor/Launcher/processes.json";
        return QJsonDocument::fromJson(readSample(file)).object().value("processes").toArray();
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        // The delays of the cycle are short here: a refresh while a client runs comes at once.
        m_service->backend().writeDeployment({{"delayScale", 0.002}});
        m_display = std::make_unique<VirtualDisplay>();
        QVERIFY(!m_display->name().isEmpty());
        m_service->tree().publish("ks", "100",
                                  {{"bin64/exefile.exe", readSample(VELKOR_BIN "/exefile.exe")}});
        m_prefix = std::make_unique<WinePrefix>(m_display->name());
    }
    void cleanup() { m_launcher.reset(); }
    void cleanupTestCase()
    {
        m_prefix.reset();
        m_display.reset();
        m_service.reset();
    }

    void passesTheArgumentsAndTheExitCode()
    {
        const auto reportFile = m_prefix->filePath("arguments.txt");
        startLauncher("/report=Z:" + reportFile + " /print=hello  /exit=3");
        clickPlay();
        QVERIFY(m_launcher->waitForLog("finished with exit code 3", 60000));
        QCOMPARE(QString::fromUtf8(readSample(reportFile)).split('\n', Qt::SkipEmptyParts),
                 (QStringList{"/noconsole", "/server:kestrel", "/gfxPlatform=dx9", "/settingsprofile=Default",
                              "/report=Z:" + reportFile, "/print=hello", "/exit=3",
                              "/remotefilecachefolder=Z:" + m_prefix->filePath("cache/ResFiles")}));
        QVERIFY(m_launcher->log().contains("\thello\n")); // what the client prints goes to the log
        QVERIFY(!m_launcher->log().contains("crashed"));
        QVERIFY(m_launcher->setting("FirstClientLaunchTimestamp").isValid());

        m_launcher->process().terminate();
        QVERIFY(m_launcher->process().waitForFinished(20000));
        QStringList events;
        for (const auto& event : m_service->backend().gateway().events())
            events << event.type.mid(QString("velkor_launcher.").size());
        QCOMPARE(events, (QStringList{"Installed", "Started", "ClientUpdateStarted", "ClientUpdateCompleted",
                                      "CustomWineLaunched", "ClientInitiallyLaunched", "ClientLaunched",
                                      "Shutdown"}));
        QVERIFY(m_service->backend().gateway().events().last().text.contains("clients_started: 1"));
    }

    void tellsACrash()
    {
        startLauncher("/crash");
        clickPlay();
        QVERIFY(m_launcher->waitForLog("crashed", 60000));
        QVERIFY(!m_launcher->log().contains("finished with exit code"));
    }

    void refusesToUpdateWhileTheClientRuns()
    {
        startLauncher("/windowed");
        clickPlay();
        const auto window = m_display->waitForWindow("Velkor demo client");
        QVERIFY(window);
        QCOMPARE(savedProcesses().size(), 1);
        QVERIFY(savedProcesses().first().toObject().value("pid").toInt() > 0);

        m_service->tree().publish(
            "ks", "101", {{"bin64/exefile.exe", readSample(VELKOR_BIN "/exefile.exe")}, {"new", "file"}});
        QVERIFY(m_launcher->waitForLog("Update failed for Kestrel with error: 4"));
        QVERIFY(!QFile::exists(m_prefix->filePath("cache/wineenv/drive_c/ks/new")));

        clickQuit(window);
        QVERIFY(m_launcher->waitForLog("finished with exit code 0", 60000));
        QVERIFY(savedProcesses().isEmpty());
        // The files have been downloaded; the next launch puts them into place.
        QVERIFY(QTest::qWaitFor([this] { return m_launcher->log().count("Build is unchanged") > 2; }, 60000));
        clickPlay();
        const auto again = m_display->waitForWindow("Velkor demo client");
        QVERIFY(again);
        QVERIFY(QFile::exists(m_prefix->filePath("cache/wineenv/drive_c/ks/new")));
        clickQuit(again);
        QVERIFY(QTest::qWaitFor([this] { return m_launcher->log().count("finished with exit code 0") == 2; },
                                60000));
    }
};

VELKOR_TEST_MAIN(TestClient)
#include "tst_e2e_client.moc"
