#include "tests/e2e/virtualdisplay.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** What a player does to spare the line and the disk, with the real launcher. */
class TestComforts : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<LauncherProcess> m_launcher;
    SampleFiles m_client;
    SampleFiles m_resources;

    /** Paths of content that was asked for, each once. */
    QStringList fetched() const
    {
        QSet<QString> paths;
        for (const auto& logged : m_service->content().requests()) {
            if (logged.request.path.count('/') == 2 && logged.request.path.contains('_'))
                paths << logged.request.path;
        }
        auto sorted = paths.values();
        sorted.sort();
        return sorted;
    }
    SampleFiles cached() const
    {
        auto files = readFolder(m_launcher->cache() + "/ResFiles");
        for (auto file = files.begin(); file != files.end();)
            file = file.key().endsWith(".tmp") ? files.erase(file) : std::next(file);
        return files;
    }
    void newLauncher()
    {
        m_launcher = std::make_unique<LauncherProcess>(m_service->backend());
        m_launcher->set("LauncherTestServers", QStringList());
        m_launcher->setEnvironment("QT_QPA_PLATFORM", "xcb");
        m_launcher->setEnvironment("DISPLAY", m_display->name());
        m_launcher->setEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    }
    void press(const QString& title, const QStringList& keys)
    {
        const auto window = m_display->waitForWindow(title);
        QVERIFY2(window, qPrintable(title));
        m_display->xdotool({"windowfocus", "--sync", QString::number(window)});
        m_display->xdotool(QStringList{"key", "--delay", "200"} + keys);
    }
    const QString m_list = "Velkor Launcher - version"; // the window, with the server list in it

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->backend().writeDeployment({{"delayScale", 0.02}});
        m_display = std::make_unique<VirtualDisplay>();
        QVERIFY(!m_display->name().isEmpty());
        for (int i = 0; i < 12; ++i) {
            m_client.insert(QStringLiteral("bin/%1").arg(i), sampleBytes(i, 400000));
            m_resources.insert(QStringLiteral("first/%1").arg(i), sampleBytes(i + 100, 30000));
        }
        m_service->tree().publish("ks", "100", m_client, m_resources);
    }
    void cleanup()
    {
        m_launcher.reset();
        m_service->reset();
    }
    void cleanupTestCase()
    {
        m_display.reset();
        m_service.reset();
    }

    void staysPausedOverARestart()
    {
        newLauncher();
        m_service->content().faults().set("/*", Fault::slow(30000));
        m_launcher->start({"-d", "-k", "-s"});
        QVERIFY(m_launcher->waitForLog("Downloading " + m_launcher->cache()));
        press(m_list, {"alt+d"});
        QVERIFY(m_launcher->waitForLog("Downloads are held: Paused"));
        m_launcher->process().kill();
        m_launcher->process().waitForFinished();
        QVERIFY(m_launcher->setting("LauncherDownloadsPaused").toBool());

        m_service->reset();
        m_launcher->start({"-d", "-k", "-s"});
        QVERIFY(m_launcher->waitForLog("Downloads are held: Paused"));
        QVERIFY(m_launcher->waitForLog("Downloader for Kestrel Pausing"));
        QTest::qWait(500); // nothing may come in the meantime
        QCOMPARE(fetched(), QStringList());
        press(m_list, {"alt+d"});
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        const auto paused = cached();

        newLauncher();
        m_launcher->start({"-d", "-k", "-s"});
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        QCOMPARE(paused, cached());
    }

    void takesWhatAnOlderInstallationHas_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("damaged");
        QTest::newRow("game folder") << "game" << QStringList();
        QTest::newRow("damaged game folder") << "game" << QStringList{"bin/3", "first/7"};
        QTest::newRow("copied cache") << "cache" << QStringList();
    }
    void takesWhatAnOlderInstallationHas()
    {
        QFETCH(QString, source);
        QFETCH(QStringList, damaged);
        newLauncher();
        const QTemporaryDir old;
        if (source == "cache") {
            QCOMPARE(m_launcher->refreshOnce({"-d"}), 0);
            QCOMPARE(QProcess::execute("cp", {"-a", m_launcher->cache() + "/ResFiles", old.filePath("copy")}),
                     0);
            newLauncher();
        } else {
            for (auto file = m_client.cbegin(); file != m_client.cend(); ++file)
                writeSample(old.filePath(file.key()), file.value());
            for (auto file = m_resources.cbegin(); file != m_resources.cend(); ++file)
                writeSample(old.filePath(file.key()), file.value());
        }
        QStringList expected;
        for (const auto& name : qAsConst(damaged)) {
            auto content = readSample(old.filePath(name));
            expected << SampleTree::pathOf(content);
            content[content.size() / 2] = static_cast<char>(~content[content.size() / 2]);
            writeSample(old.filePath(name), content);
        }
        expected.sort();
        m_service->reset();
        m_launcher->set("LauncherAdoptedFolder", old.path());
        QCOMPARE(m_launcher->refreshOnce({"-d"}), 0);
        auto content = fetched();
        // Indexes of resources and the like are made anew with each build, and are no game files.
        for (const auto* generated : {"start.ini", "resfileindex.txt", "resfileindex_prefetch.txt"})
            content.removeAll(
                SampleTree::pathOf(readSample(m_launcher->stagingFolder("ks") + '/' + generated)));
        QCOMPARE(content, expected);
        for (const auto& file : qAsConst(m_client))
            QCOMPARE(readSample(m_launcher->resFile(file)), file);
        QVERIFY(m_launcher->setting("LauncherAdoptedFolder").toString().isEmpty());
    }

    void saysWhatItWaitsForAndIsHelpedByRefresh()
    {
        newLauncher();
        m_service->content().faults().set(SampleTree::pathOf(m_client.value("bin/5")), Fault::stall(1));
        m_launcher->start({"-d", "-k", "-s"});
        QVERIFY(m_launcher->waitForLog("Nothing has moved for"));
        const auto log = m_launcher->log();
        const auto line = log.mid(log.indexOf("Nothing has moved for")).section('\n', 0, 0);
        QVERIFY2(line.contains("Downloader for Kestrel: ") &&
                     line.contains(SampleTree::pathOf(m_client.value("bin/5"))),
                 qPrintable(line));
        QTest::qWait(3500); // until the request counts as one that does not answer
        press(m_list, {"alt+f", "r"});
        QVERIFY(
            m_launcher->waitForLog("Scheduling refresh after 15 minutes", 15000)); // sooner than by itself
        QCOMPARE(readSample(m_launcher->resFile(m_client.value("bin/5"))), m_client.value("bin/5"));
    }
};

VELKOR_TEST_MAIN(TestComforts)
#include "tst_e2e_comforts.moc"
