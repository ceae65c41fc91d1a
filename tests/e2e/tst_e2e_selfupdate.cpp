#include "tests/e2e/pagedriver.h"
#include "tests/e2e/virtualdisplay.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <QRandomGenerator>

#include <csignal>

/** The real launcher replaces itself: an installation of its own, and a newer version on the backend. */
class TestSelfUpdate : public QObject
{
    Q_OBJECT

private:
    const QString m_current = QStringLiteral("1548102");
    const QString m_next = QStringLiteral("1548103");

    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<VirtualDisplay> m_display;
    QTemporaryDir m_versions;
    std::unique_ptr<QTemporaryDir> m_place;
    std::unique_ptr<LauncherProcess> m_launcher;

    QString installFolder() const { return m_place->filePath("install"); }
    QString versionFolder(const QString& version) const { return m_versions.filePath(version); }
    QString indexPath() const
    {
        return m_service->tree().path() + "/velkorlauncher_linux_" + m_next + ".txt";
    }

    /** The launcher that was built, as if it had been built with another version. */
    void makeVersion(const QString& version)
    {
        const auto folder = versionFolder(version);
        const auto program = folder + "/velkorlauncher";
        QDir().mkpath(folder);
        QVERIFY(QFile::copy(VELKOR_BIN "/velkorlauncher", program));
        QVERIFY(QFile::copy(VELKOR_BIN "/updater", folder + "/updater"));
        QCOMPARE(QProcess::execute("strip", {program, folder + "/updater"}), 0);
        auto bytes = readSample(program);
        const auto wide = [](const QString& text) {
            return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        };
        QVERIFY(bytes.contains(wide(m_current)));
        bytes.replace(wide(m_current), wide(version));
        writeSample(program, bytes);
        writeSample(folder + "/share/version.txt", version.toUtf8());
        for (int i = 0; i < 40; ++i)
            writeSample(QStringLiteral("%1/share/%2.dat").arg(folder).arg(i),
                        sampleBytes(version.toInt() + i, 50000));
    }
    void publish(const QString& version, const QString& channel = "release")
    {
        QCOMPARE(QProcess::execute(VELKOR_BIN "/velkor-publish",
                                   {"launcher", "--version", version, "--from", versionFolder(version),
                                    "--out", m_service->tree().path(), "--channel", channel}),
                 0);
    }
    void install(const QString& version)
    {
        QDir(installFolder()).removeRecursively();
        QCOMPARE(QProcess::execute("cp", {"-a", versionFolder(version), installFolder()}), 0);
    }
    /** Which version is installed; empty when it is not whole. */
    QString installedVersion() const
    {
        const auto files = readFolder(installFolder());
        for (const auto& version : {m_current, m_next}) {
            if (files == readFolder(versionFolder(version)))
                return version;
        }
        return {};
    }
    static QVector<pid_t> processesOf(const QString& program)
    {
        QVector<pid_t> found;
        const auto processes = QDir("/proc").entryList(QDir::Dirs);
        for (const auto& process : processes) {
            if (QFile::symLinkTarget("/proc/" + process + "/exe").startsWith(program))
                found << process.toInt();
        }
        return found;
    }
    /** The launchers that run from the installation. */
    QVector<pid_t> running() const { return processesOf(installFolder() + "/velkorlauncher"); }
    /** Ends them, also those that an updater is just starting: until it is replaced, its child is an updater.
     */
    void endAll()
    {
        const auto stillRunning = [this] {
            const auto left = running() + processesOf(versionFolder(m_next) + "/updater");
            for (const auto process : left)
                ::kill(process, SIGKILL);
            return !left.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(!stillRunning(), 20000);
    }
    void newLauncher(const QString& platform = "xcb")
    {
        m_launcher = std::make_unique<LauncherProcess>(m_service->backend());
        m_launcher->setProgram(installFolder() + "/velkorlauncher");
        m_launcher->setEnvironment("QT_QPA_PLATFORM", platform);
        m_launcher->setEnvironment("DISPLAY", m_display->name());
        m_launcher->setEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    }
    void press(const QString& title, const QString& key)
    {
        const auto window = m_display->waitForWindow(title);
        QVERIFY(window);
        m_display->xdotool({"windowfocus", "--sync", QString::number(window)});
        m_display->xdotool({"key", key});
    }
    void takePicture(const QString& name) const
    {
        const auto folder = qEnvironmentVariable("VELKOR_PICTURES");
        if (!folder.isEmpty())
            QProcess::execute(
                "import", {"-display", m_display->name(), "-window", "root", folder + '/' + name + ".png"});
    }
    /** Runs the updater in the launcher's cache as the launcher does. */
    void startUpdater(QProcess* updater) const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", m_launcher->home());
        environment.insert("XDG_CONFIG_HOME", m_launcher->home() + "/.config");
        environment.insert("XDG_DATA_HOME", m_launcher->home() + "/.local/share");
        environment.insert("VELKOR_DEPLOYMENT_FILE", m_service->backend().deploymentFile());
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        updater->setProcessEnvironment(environment);
        updater->setWorkingDirectory(m_place->path());
        updater->start(versionFolder(m_next) + "/updater",
                       {m_service->tree().path(), indexPath(), installFolder()});
        QVERIFY(updater->waitForStarted());
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->backend().writeDeployment({{"delayScale", 0.02}});
        m_display = std::make_unique<VirtualDisplay>();
        QVERIFY(!m_display->name().isEmpty());
        m_service->tree().publish("ks", "100", {{"a", "b"}});
        makeVersion(m_current);
        makeVersion(m_next);
    }
    void init()
    {
        m_place = std::make_unique<QTemporaryDir>();
        publish(m_next);
        install(m_current);
    }
    void cleanup()
    {
        endAll();
        m_launcher.reset();
        m_service->reset();
        m_service->backend().gateway().clear();
    }
    void cleanupTestCase()
    {
        m_display.reset();
        m_service.reset();
    }

    void becomesTheNextVersion()
    {
        newLauncher();
        const int port = freePort();
        m_launcher->useWebEngine(m_service->backend(), m_display->name(), port);
        m_launcher->set("LauncherTestServers", QStringList());
        m_launcher->start({});
        QVERIFY(m_display->waitForWindow("New version available"));
        takePicture("update-question");
        press("New version available", "Return");
        QVERIFY(m_launcher->process().waitForFinished(60000));
        QCOMPARE(m_launcher->process().exitCode(), 1);
        PageDriver page(port);
        QVERIFY(page.attach("/demo/?updating=true", 60000));
        QCOMPARE(installedVersion(), m_next);
        QCOMPARE(running().size(), 1);
        QVERIFY(m_launcher->waitForLog("Velkor Launcher version " + m_next));
        QVERIFY(m_launcher->waitForLog("Official version is " + m_next));
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        ::kill(running().first(), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(running().isEmpty(), 30000);

        QStringList events;
        for (const auto& event : m_service->backend().gateway().events())
            events << event.type.section('.', 1);
        QCOMPARE(events.count("UpdateStarted"), 1);
        QCOMPARE(events.count("Installed"), 1);
        QCOMPARE(events.count("Started"), 2);
    }

    void isOfferedOnce()
    {
        newLauncher();
        m_launcher->start({"-d", "-k"});
        press("New version available", "Escape");
        QVERIFY(m_launcher->waitForLog("User cancelled self-update"));
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(m_launcher->waitForLog("Skipping version check by request", 40000));
        QCOMPARE(m_launcher->log().count("Official version is"), 1);
        QCOMPARE(installedVersion(), m_current);
        QCOMPARE(running().size(), 1);
    }

    void canBeCancelledWhileItDownloads()
    {
        newLauncher();
        m_service->content().faults().set(
            SampleTree::pathOf(readSample(versionFolder(m_next) + "/velkorlauncher")), Fault::slow(200000));
        m_launcher->start({"-d", "-k"});
        QVERIFY(m_launcher->waitForLog("Starting task Downloader for self update"));
        press("Velkor Launcher Update", "Escape");
        QVERIFY(m_launcher->waitForLog("User cancelled self-update"));
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        QCOMPARE(installedVersion(), m_current);
    }

    void survivesFaults_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("logged");
        QTest::newRow("no index") << "no index"
                                  << "Downloader for";
        QTest::newRow("no updater")
            << "no updater"
            << "Couldn't locate old updater entry in launcher-index - aborting update";
        QTest::newRow("wrong bytes") << "wrong bytes"
                                     << "Download failed for  " + m_next;
        QTest::newRow("updater lost") << "updater lost"
                                      << "Couldn't update updater - aborting update";
    }
    void survivesFaults()
    {
        QFETCH(QString, fault);
        QFETCH(QString, logged);
        newLauncher();
        const auto updater = readSample(versionFolder(m_next) + "/updater");
        auto index = readSample(indexPath());
        const auto lines = index.split('\n');
        if (fault == "no index")
            QFile::remove(indexPath());
        if (fault == "no updater") {
            QByteArrayList kept;
            for (const auto& line : lines) {
                if (!line.startsWith("app:/updater,"))
                    kept << line;
            }
            writeSample(indexPath(), kept.join('\n'));
        }
        if (fault == "wrong bytes")
            m_service->content().faults().set(SampleTree::pathOf(updater), Fault::wrongBytes());
        m_launcher->start({"-d", "-k"});
        if (fault == "no updater" || fault == "updater lost") {
            QVERIFY(m_display->waitForWindow("New version available"));
            if (fault == "updater lost")
                writeSample(m_launcher->resFile(updater), "not an updater");
            press("New version available", "Return");
        }
        QVERIFY(m_launcher->waitForLog(logged));
        takePicture("update-" + QString(fault).replace(' ', '-'));
        press(fault == "no updater" || fault == "updater lost" ? "New version available"
                                                               : "Velkor Launcher Update",
              "Escape");
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        QCOMPARE(installedVersion(), m_current);
        QVERIFY(!QFile::exists(m_launcher->cache() + "/updater.log"));
    }

    void findsTheUpdaterOfTheOldIndex()
    {
        newLauncher();
        publish(m_current, "beta"); // so that its content can be fetched
        const auto oldIndex = m_service->tree().path() + "/velkorlauncher_linux_" + m_current + ".txt";
        writeSample(m_launcher->cache() + "/velkorlauncher_linux_" + m_current + ".txt",
                    readSample(oldIndex));
        const auto updater = readSample(versionFolder(m_current) + "/updater");
        writeSample(m_launcher->resFile(updater), updater);
        auto index = readSample(indexPath());
        index.remove(index.indexOf("app:/updater,"),
                     index.mid(index.indexOf("app:/updater,")).indexOf('\n') + 1);
        writeSample(indexPath(), index);
        m_launcher->start({"-d", "-k"});
        press("New version available", "Return");
        QVERIFY(m_launcher->process().waitForFinished(60000));
        QCOMPARE(m_launcher->process().exitCode(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(running().size(), 1, 30000);
        QCOMPARE(installedVersion(), m_next); // both versions have the same updater
    }

    void leavesAnInstallationAloneThatIsNotItsOwn()
    {
        if (QProcess::execute("unshare", {"-rm", "mount", "-t", "tmpfs", "none", "/mnt"}) != 0)
            QSKIP("This machine does not let a test mount a file system");
        newLauncher();
        m_launcher->startThrough(
            {"unshare", "-rm", "sh", "-c",
             "mount --bind \"$0\" \"$0\" && mount -o remount,bind,ro \"$0\" && shift && exec \"$@\"",
             installFolder(), "--"});
        m_launcher->start({"-d", "-k"});
        QVERIFY(m_launcher->waitForLog("The launcher is updated by the package manager"));
        QVERIFY(m_display->waitForWindow("Velkor Launcher Update"));
        takePicture("update-elsewhere");
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes")); // without an answer
        QVERIFY(!m_launcher->log().contains("Index downloader for self updating"));
    }

    void leavesTheOldOneWhenTheDiskIsFull()
    {
        if (QProcess::execute("unshare", {"-rm", "mount", "-t", "tmpfs", "none", "/mnt"}) != 0)
            QSKIP("This machine does not let a test mount a file system");
        newLauncher("offscreen");
        qint64 size = 2000000; // no room for a second copy
        const auto files = readFolder(installFolder());
        for (const auto& file : files)
            size += file.size();
        QProcess updater;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", m_launcher->home());
        updater.setProcessEnvironment(environment);
        updater.setWorkingDirectory(m_place->path());
        updater.start(
            "unshare",
            {"-rm", "sh", "-c",
             QStringLiteral(
                 "mount -t tmpfs -o size=%1 none \"$0\" && cp -a \"$1\"/. \"$0\" && \"$2\" \"$3\" \"$4\" "
                 "\"$0\"; diff -r \"$0\" \"$1\" && echo unchanged; exec pkill -f \"$0/velkorlauncher\"")
                 .arg(size),
             installFolder(), versionFolder(m_current), versionFolder(m_next) + "/updater",
             m_service->tree().path(), indexPath()});
        QVERIFY(updater.waitForFinished(60000));
        QVERIFY(updater.readAllStandardOutput().contains("unchanged"));
        QVERIFY(readSample(m_place->filePath("updater.log")).contains("--skip-version-check"));
    }

    void isWholeAfterAnyKill()
    {
        newLauncher("offscreen");
        m_launcher->set("SharedCacheFolder", m_launcher->cache());
        QElapsedTimer timer;
        timer.start();
        QProcess first;
        startUpdater(&first); // undisturbed, to know how long it takes
        QVERIFY(first.waitForFinished(60000));
        const int takes = static_cast<int>(timer.elapsed());
        endAll();
        QCOMPARE(installedVersion(), m_next);
        QMap<QString, int> outcomes;
        for (int kill = 0; kill < 20; ++kill) {
            install(m_current);
            QProcess updater;
            startUpdater(&updater);
            QTest::qSleep(1 + QRandomGenerator::global()->bounded(takes));
            updater.kill();
            QVERIFY(updater.waitForFinished());
            endAll(); // it may just have started the launcher
            m_launcher->start({"-d", "-k", "-s"});
            QVERIFY(m_launcher->waitForLog("Entering app.exec"));
            const auto version = installedVersion();
            QVERIFY2(!version.isEmpty(), "neither the old nor the new version");
            QVERIFY(m_launcher->log().contains("Velkor Launcher version " + version));
            ++outcomes[version];
            m_launcher->process().kill();
            m_launcher->process().waitForFinished();
            endAll();
        }
        QVERIFY(!QFile::exists("updater.log")); // whoever starts a launcher may stand anywhere
        qDebug() << "Update of" << takes << "ms; versions after the kills:" << outcomes;
    }

    void developersAreNotAsked()
    {
        makeVersion("9999999");
        install("9999999");
        newLauncher();
        m_launcher->start({"-d", "-k"});
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(m_launcher->log().contains("Skipping version check for dev version"));
        QCOMPARE(m_service->requestsFor("/velkorlauncher_linux_release.json"), 0);
    }
};

VELKOR_TEST_MAIN(TestSelfUpdate)
#include "tst_e2e_selfupdate.moc"
