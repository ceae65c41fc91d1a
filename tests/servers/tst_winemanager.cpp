#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QSignalSpy>

#include <csignal>

using namespace std::chrono_literals;

class TestWineManager : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<WineManager> m_wine;
    QVector<float> m_progress;

    // Writes down what it was called with and what it was to import.
    static constexpr auto regedit = "#!/bin/sh\n"
                                    "mkdir -p \"$WINEPREFIX/drive_c/windows/Fonts\"\n"
                                    "echo \"$@\" >>\"$WINEPREFIX/regedit.log\"\n"
                                    "[ -f \"$1\" ] && cp \"$1\" \"$WINEPREFIX/imported.reg\"\n"
                                    "exit 3\n";

    static Settings* settings() { return Settings::instance(); }
    QString file(const QString& path) const { return m_cache->filePath(path); }
    static QString lastDownloaded()
    {
        // What another process would read.
        return QSettings(settings()->store().fileName(), QSettings::NativeFormat)
            .value("LauncherLastDownloaded/wine")
            .toString();
    }
    void publish(const QString& version, bool isDevelopment = false)
    {
        m_service->tree().publishWine(
            version,
            {{"bin/regedit", regedit}, {"bin/wine", "wine " + version.toUtf8()}, {"lib/a.so", "library"}},
            isDevelopment);
    }
    void makeManager(std::chrono::milliseconds regEditTimeout = 30s)
    {
        m_wine = std::make_unique<WineManager>(nullptr, regEditTimeout);
        settings()->registerWineManager(m_wine.get());
        connect(m_wine.get(), &WineManager::progressUpdate, this,
                [this](float fraction) { m_progress << fraction; });
    }
    /** The code that the update ends with. */
    int refresh()
    {
        m_progress.clear();
        QSignalSpy started(m_wine.get(), &WineManager::startUpdate);
        QSignalSpy ended(m_wine.get(), &WineManager::endUpdate);
        m_wine->refresh();
        const bool hasEnded = QTest::qWaitFor([&] { return !ended.isEmpty(); }, 30000);
        return hasEnded && started.size() == 1 && ended.size() == 1 ? ended.first().first().toInt() : -1;
    }
    bool hasReported(const QString& type)
    {
        const auto text = QString::fromUtf8(readAllReports());
        return text.contains("\"" + type + "\"");
    }
    QByteArray readAllReports()
    {
        QByteArray all;
        for (const auto& logged : m_service->backend().reports().requests())
            all += logged.request.body;
        return all;
    }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        QDir(m_service->tree().path()).removeRecursively();
        settings()->setCacheFolder(m_cache->path());
        settings()->store().remove("LauncherLastDownloaded");
        settings()->setWineVersion("latest");
        settings()->setWineVersionBranch({});
        settings()->setUseWineDevVersions(false);
        settings()->setWineVideoMemory(1024);
        settings()->setWineRetinaMode(false);
        makeManager();
    }
    void cleanupTestCase()
    {
        m_wine.reset();
        m_service.reset();
    }

    void installsAndPreparesThePrefix()
    {
        publish("8.0");
        QVector<QString> waits;
        connect(m_wine.get(), &WineManager::waiting, this, [&](const QString& text) { waits << text; });
        QCOMPARE(refresh(), 0);
        QCOMPARE(readSample(file("wine/bin/wine")), QByteArray("wine 8.0"));
        QVERIFY(QFileInfo(file("wine/bin/regedit")).isExecutable());
        QVERIFY(!QFileInfo(file("wine/lib/a.so")).isExecutable());
        QCOMPARE(lastDownloaded(), QStringLiteral("8.0"));
        QCOMPARE(readSample(file("wineenv/regedit.log")), file("wine/settings.reg").toUtf8() + "\n");
        QCOMPARE(readSample(file("wineenv/imported.reg")),
                 QByteArray("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Wine\\Direct3D]\n"
                            "\"VideoMemorySize\"=\"1024\"\n"
                            "[HKEY_CURRENT_USER\\Software\\Wine\\Mac Driver]\n\"RetinaMode\"=\"n\"\n"));
        QCOMPARE(waits.size(), 1);
        QVERIFY(std::is_sorted(m_progress.begin(), m_progress.end()));
        QCOMPARE(m_progress.last(), 1.0F);
    }

    void deletesTheVideoMemoryThatIsNotWanted()
    {
        publish("8.0");
        settings()->setWineVideoMemory(0);
        settings()->setWineRetinaMode(true);
        m_service->tree().publishWine(
            "8.1", {{"bin/regedit", regedit}, {"haldenadditions/fonts/ARIAL.TTF", "font"}});
        QCOMPARE(refresh(), 0);
        QCOMPARE(readSample(file("wineenv/regedit.log")).split('\n').first(),
                 QByteArray("/D HKEY_CURRENT_USER\\Software\\Wine\\Direct3D"));
        QCOMPARE(readSample(file("wineenv/imported.reg")),
                 QByteArray("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Wine\\Mac Driver]\n"
                            "\"RetinaMode\"=\"y\"\n"));
        QCOMPARE(readSample(file("wineenv/drive_c/windows/Fonts/ARIAL.TTF")), QByteArray("font"));
    }

    void choosesTheVersion_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("chosen");
        const QByteArray two = R"([{"version": "8.1-blue"}, {"version": "8.0-red"}])";
        QTest::newRow("the first") << two << QString() << "8.1-blue";
        QTest::newRow("of a branch") << two << "red"
                                     << "8.0-red";
        QTest::newRow("the first when the branch has none") << two << "Red"
                                                            << "8.1-blue";
        QTest::newRow("texts") << QByteArray(R"(["8.0-red", "8.1-blue"])") << QString() << "8.0-red";
        QTest::newRow("entries that are none")
            << QByteArray(R"([{}, 7, {"version": 8}, {"version": ""}, {"version": "../8.0"},
                              {"version": "8.1-blue"}])")
            << QString() << "8.1-blue";
    }
    void choosesTheVersion()
    {
        QFETCH(QByteArray, list);
        QFETCH(QString, filter);
        QFETCH(QString, chosen);
        publish("8.0-red");
        publish("8.1-blue");
        writeSample(m_service->tree().path() + "/wine_linux_release.json", list);
        settings()->setWineVersionBranch(filter);
        const QSignalSpy announced(m_wine.get(), &WineManager::versionUpdate);
        QCOMPARE(refresh(), 0);
        QCOMPARE(announced.first().first().toString(), chosen);
        QCOMPARE(readSample(file("wine/bin/wine")), "wine " + chosen.toUtf8());
    }

    void takesDevelopmentAndPinnedVersions()
    {
        publish("8.0");
        publish("9.0", true);
        settings()->setUseWineDevVersions(true);
        QCOMPARE(refresh(), 0);
        QCOMPARE(lastDownloaded(), QStringLiteral("9.0"));
        settings()->setWineVersion("8.0");
        m_service->content().clearRequests();
        QCOMPARE(refresh(), 0);
        QCOMPARE(lastDownloaded(), QStringLiteral("8.0"));
        QCOMPARE(m_service->requestsFor("/wine_linux_dev.json"), 0);
        settings()->setWineVersion("../8.0"); // nobody offers this
        QCOMPARE(refresh(), 2);
        QCOMPARE(lastDownloaded(), QStringLiteral("8.0"));
    }

    void leavesWhatIsInstalled()
    {
        publish("8.0");
        QCOMPARE(refresh(), 0);
        writeSample(file("wine/mark"), "mine");
        m_service->content().clearRequests();
        QCOMPARE(refresh(), 0);
        QCOMPARE(m_service->requestsFor("/wine_linux_8.0.txt"), 0);
        makeManager(); // the next start
        QCOMPARE(refresh(), 0);
        QCOMPARE(m_service->requestsFor("/wine_linux_8.0.txt"), 1);
        QVERIFY(QFile::exists(file("wine/mark")));

        QVERIFY(QDir(file("wine")).removeRecursively());
        QCOMPARE(refresh(), 0);
        QVERIFY(QFile::exists(file("wine/bin/wine")));
        QVERIFY(QDir(file("wine")).removeRecursively());
        makeManager();
        QCOMPARE(refresh(), 0);
        QVERIFY(QFile::exists(file("wine/bin/wine")));
    }

    void purgesAllButTheGames()
    {
        const QTemporaryDir outside;
        writeSample(outside.filePath("kept"), "mine");
        const QStringList kept{"wineenv/drive_c/ks/bin/exefile.exe", "wineenv/drive_c/users/p/settings"};
        const QStringList gone{"wineenv/user.reg",
                               "wineenv/system.reg",
                               "wineenv/userdef.reg",
                               "wineenv/drive_c/windows/a/b",
                               "wineenv/drive_c/Program Files/c",
                               "wine/lib/old.so"};
        for (const auto& path : kept + gone)
            writeSample(file(path), "x");
        QVERIFY(QFile::link(outside.path(), file("wineenv/drive_c/windows/link")));
        publish("8.0");
        QCOMPARE(refresh(), 0);
        for (const auto& path : kept)
            QVERIFY2(QFile::exists(file(path)), qPrintable(path));
        for (const auto& path : gone)
            QVERIFY2(!QFile::exists(file(path)), qPrintable(path));
        QVERIFY(QFile::exists(outside.filePath("kept")));

        // Folders that lie elsewhere are left alone.
        QVERIFY(QDir(file("wineenv/drive_c")).removeRecursively() && QDir(file("wine")).removeRecursively());
        writeSample(outside.filePath("windows/kept"), "mine");
        QVERIFY(QFile::link(outside.path(), file("wineenv/drive_c")));
        QVERIFY(QFile::link(outside.path(), file("wine")));
        m_wine->purgeStagingFolders();
        QVERIFY(QFile::exists(outside.filePath("windows/kept")) && QFile::exists(outside.filePath("kept")));
        QVERIFY(!QFileInfo(file("wine")).isSymLink());
    }

    void failsWithCodes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status"); // 0: the connection is cut
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("report");
        QTest::newRow("no list") << "/wine_linux_release.json" << 404 << 2 << QString();
        QTest::newRow("list denied") << "/wine_linux_release.json" << 401 << 9 << QString();
        QTest::newRow("list cut") << "/wine_linux_release.json" << 0 << 1 << QString();
        QTest::newRow("no index") << "/wine_linux_8.0.txt" << 404 << 2 << "DownloadError";
        QTest::newRow("no files") << "a file" << 404 << 2 << QString();
    }
    void failsWithCodes()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(int, code);
        QFETCH(QString, report);
        publish("8.0");
        if (path == "a file")
            path = SampleTree::pathOf("library");
        m_service->content().faults().set(path, status > 0 ? Fault::answerWith(status) : Fault::cut());
        QCOMPARE(refresh(), code);
        QVERIFY(!QFile::exists(file("wine")) && lastDownloaded().isEmpty());
        if (!report.isEmpty())
            QTRY_VERIFY(hasReported(report));
        m_service->content().faults().clear();
        QCOMPARE(refresh(), 0);
        QVERIFY(QFile::exists(file("wine/bin/wine")));
    }

    void refusesDocumentsThatAreNone()
    {
        const auto list = m_service->tree().path() + "/wine_linux_release.json";
        for (const auto* text : {"", "[]", "{}", "[1, null]", "nonsense"}) {
            writeSample(list, text);
            QCOMPARE(refresh(), 2);
        }
        QFile::remove(list);
        publish("8.0");
        writeSample(m_service->tree().path() + "/wine_linux_8.0.txt", "nonsense");
        QCOMPARE(refresh(), 2);
        QTRY_VERIFY(hasReported("InvalidIndex"));
        QVERIFY(!QFile::exists(file("wine")));
    }

    // Whatever the next list says, also the version that was there before.
    void repairsAnInstallationThatBrokeOff()
    {
        publish("8.0");
        QCOMPARE(refresh(), 0);
        publish("8.1");
        const auto lost = m_cache->path() + "/ResFiles" + SampleTree::pathOf("library");
        const auto breaking =
            connect(m_wine.get(), &WineManager::progressUpdate, this, [lost](float fraction) {
                if (fraction >= 0.8F)
                    QFile::remove(lost);
            });
        QCOMPARE(refresh(), 5);
        disconnect(breaking);
        QVERIFY(lastDownloaded().isEmpty());
        QVERIFY(!QFile::exists(file("wine/lib/a.so")));
        publish("8.0"); // back again
        QCOMPARE(refresh(), 0);
        QCOMPARE(readSample(file("wine/lib/a.so")), QByteArray("library"));
        QCOMPARE(readSample(file("wine/bin/wine")), QByteArray("wine 8.0"));
    }

    void replacesNothingWhileAClientRuns()
    {
        publish("8.0");
        QCOMPARE(refresh(), 0);
        publish("8.1");
        // Started by an earlier launcher: nobody tracks it.
        QProcess client;
        client.setProcessEnvironment(m_wine->getWineProcessEnvironment());
        client.start("/bin/sh", {"-c", "read x", "C:\\ks\\bin\\exefile.exe"});
        QVERIFY(client.waitForStarted());
        QCOMPARE(refresh(), 4);
        QCOMPARE(readSample(file("wine/bin/wine")), QByteArray("wine 8.0"));
        client.closeWriteChannel();
        QVERIFY(client.waitForFinished());
        QCOMPARE(refresh(), 0);
        QCOMPARE(readSample(file("wine/bin/wine")), QByteArray("wine 8.1"));
    }

    void endsARegeditThatHangs()
    {
        makeManager(500ms);
        m_service->tree().publishWine(
            "8.0", {{"bin/regedit", "#!/bin/sh\nmkdir -p \"$WINEPREFIX\"\nsleep 1000 &\necho $! "
                                    ">\"$WINEPREFIX/pid\"\nwait\n"}});
        QCOMPARE(refresh(), 0);
        const auto child = readSample(file("wineenv/pid")).trimmed().toInt();
        QVERIFY(child > 0);
        QTRY_VERIFY(::kill(child, 0) != 0 ||
                    readSample(QStringLiteral("/proc/%1/stat").arg(child)).contains(" Z "));
        m_wine->prepareEnv(); // nothing is left over that disturbs the next
    }
};

VELKOR_TEST_MAIN(TestWineManager)
#include "tst_winemanager.moc"
