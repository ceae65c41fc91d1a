#include "tests/e2e/virtualdisplay.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** A runtime made of this machine's Wine: published, downloaded, installed, and used to run the client. */
class TestWine : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<VirtualDisplay> m_display;
    QTemporaryDir m_folder;
    std::unique_ptr<LauncherProcess> m_launcher;

    QString file(const QString& path) const { return m_launcher->cache() + "/" + path; }
    static void run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        QVERIFY(process.waitForFinished(200000));
        QVERIFY2(process.exitCode() == 0, process.readAll());
    }
    void startLauncher()
    {
        m_launcher->setEnvironment("QT_QPA_PLATFORM", "xcb");
        m_launcher->setEnvironment("DISPLAY", m_display->name());
        m_launcher->set("UseCustomWine", false);
        m_launcher->set("LauncherRunClientsWith64Bit", true);
        m_launcher->start({"-d", "-k", "--client-args=/windowed"});
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes", 200000));
    }
    void playAndQuit()
    {
        const auto geometry = m_display->geometryOf(m_display->waitForWindow("Velkor Launcher - version"));
        m_display->click(geometry.topRight() + QPoint(-110, 130));
        const auto window = m_display->waitForWindow("Velkor demo client");
        QVERIFY(window);
        m_display->click(m_display->geometryOf(window).bottomLeft() + QPoint(76, -32));
        QVERIFY(m_launcher->waitForLog("finished with exit code 0", 60000));
    }
    void endLauncher()
    {
        m_launcher->process().terminate();
        QVERIFY(m_launcher->process().waitForFinished(20000));
    }
    /** What Wine itself keeps, once it has ended. */
    QString registry()
    {
        QProcess server;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("WINEPREFIX", file("wineenv"));
        server.setProcessEnvironment(environment);
        server.start(file("wine/bin/wineserver"), {"-w"});
        return server.waitForFinished(60000) ? QString::fromUtf8(readSample(file("wineenv/user.reg")))
                                             : QString();
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_display = std::make_unique<VirtualDisplay>();
        QVERIFY(!m_display->name().isEmpty());
        m_service->tree().publish("ks", "100",
                                  {{"bin64/exefile.exe", readSample(VELKOR_BIN "/exefile.exe")}});
        run(VELKOR_SOURCE "/scripts/wine-runtime", {m_folder.filePath("runtime")});
        run(VELKOR_BIN "/velkor-publish", {"wine", "--version", "8.0", "--from", m_folder.filePath("runtime"),
                                           "--out", m_service->tree().path()});
        m_launcher = std::make_unique<LauncherProcess>(m_service->backend());
    }
    void cleanupTestCase()
    {
        m_launcher.reset();
        m_display.reset();
        m_service.reset();
    }

    void playsWithNothingButWhatWasDownloaded()
    {
        m_launcher->set("WineVideoMemory", 2048);
        m_launcher->set("WineRetinaMode", true);
        startLauncher();
        QVERIFY(m_launcher->log().contains("Wine 8.0 has been installed"));
        QCOMPARE(QFile::symLinkTarget(file("wine/bin/wine")), file("wine/bin/wine64"));
        QVERIFY(QFileInfo(file("wine/lib/wine/wine64")).isExecutable());
        playAndQuit();
        endLauncher();
        const auto settings = registry();
        QVERIFY(settings.contains("\"VideoMemorySize\"=\"2048\""));
        QVERIFY(settings.contains("\"RetinaMode\"=\"y\""));
        QCOMPARE(QFileInfo(file("wineenv/drive_c/windows/Fonts/ARIAL.TTF")).size(),
                 QFileInfo(file("wine/haldenadditions/fonts/ARIAL.TTF")).size());
        QStringList events;
        for (const auto& event : m_service->backend().gateway().events())
            events << event.type.mid(QString("velkor_launcher.").size());
        QVERIFY(events.contains("ReleaseWineLaunched") && events.contains("ClientLaunched"));
    }

    void writesChangedSettingsAtTheNextLaunch()
    {
        m_launcher->set("WineVideoMemory", 0);
        m_launcher->set("WineRetinaMode", false);
        startLauncher();
        QVERIFY(!m_launcher->log().contains("Purging Wine staging folders"));
        playAndQuit();
        endLauncher();
        const auto settings = registry();
        QVERIFY(!settings.contains("VideoMemorySize"));
        QVERIFY(settings.contains("\"RetinaMode\"=\"n\""));
    }

    void keepsTheGameWhenWineIsReplaced()
    {
        const auto exe = m_launcher->stagingFolder("ks") + "/bin64/exefile.exe";
        const auto placed = QFileInfo(exe).lastModified();
        run(VELKOR_BIN "/velkor-publish", {"wine", "--version", "8.1", "--from", m_folder.filePath("runtime"),
                                           "--out", m_service->tree().path()});
        startLauncher();
        QVERIFY(m_launcher->log().contains("Wine 8.1 has been installed"));
        QCOMPARE(QFileInfo(exe).lastModified(), placed);
        playAndQuit();
        endLauncher();
        QVERIFY(registry().contains("\"RetinaMode\"=\"n\""));
    }
};

VELKOR_TEST_MAIN(TestWine)
#include "tst_e2e_wine.moc"
