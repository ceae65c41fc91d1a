#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** The real launcher when something goes wrong: nothing bad may ever stand under a final name. */
class TestFaults : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    SampleFiles publishMany(const QString& build, int files, int bytes, int seed = 0)
    {
        SampleFiles client;
        for (int i = 0; i < files; ++i)
            client.insert(QStringLiteral("data/%1.dat").arg(i), sampleBytes(seed + i, bytes));
        m_service->tree().publish("ks", build, client);
        return client;
    }
    /** Whether every file of the cache is what its name says. */
    static QString badCacheFile(const QString& cache)
    {
        const auto files = readFolder(cache + "/ResFiles");
        for (auto file = files.begin(); file != files.end(); ++file) {
            if (!file.key().endsWith(".tmp") && !file.key().endsWith("_" + md5Of(file.value())))
                return file.key();
        }
        return {};
    }
    static bool isInstalled(const LauncherProcess& launcher, const SampleFiles& client)
    {
        auto staged = readFolder(launcher.stagingFolder("ks"));
        staged.remove("start.ini");
        return staged == client;
    }
    /** The launcher's cache on a file system of its own, for as long as it runs; afterwards only listing.txt
     * is left. */
    static void mountCache(LauncherProcess* launcher, const QString& mount)
    {
        QDir().mkpath(launcher->cache());
        const auto script =
            mount +
            QStringLiteral(" && shift && \"$@\"; code=$?; find \"$0\" -type f -printf '%s %f\\n' > ") +
            launcher->home() + "/listing.txt; exit $code";
        launcher->startThrough({"unshare", "-rm", "sh", "-c", script, launcher->cache(), "--"});
    }
    static bool canMount()
    {
        return QProcess::execute("unshare", {"-rm", "mount", "-t", "tmpfs", "none", "/mnt"}) == 0;
    }

private slots:
    void init() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service.reset(); }

    void completesAfterBeingKilled()
    {
        const auto client = publishMany("100", 2000, 4000);
        LauncherProcess launcher(m_service->backend());
        for (const int requests : {5, 60, 150, 250}) {
            m_service->reset();
            m_service->content().faults().set("/*", Fault::slow(80000)); // or all are there at once
            launcher.start({"-d", "-k", "-e"});
            QTRY_VERIFY_WITH_TIMEOUT(int(m_service->content().requests().size()) > requests, 60000);
            launcher.process().kill();
            QVERIFY(launcher.process().waitForFinished());
            QVERIFY(!isInstalled(launcher, client));
            QCOMPARE(badCacheFile(launcher.cache()), QString());
        }
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, client));
        QCOMPARE(badCacheFile(launcher.cache()), QString());
        QVERIFY(QDir(launcher.cache() + "/ResFiles")
                    .entryList({".updating*"}, QDir::Files | QDir::Hidden)
                    .isEmpty());
    }

    void repairsAfterAPowerCut()
    {
        const auto client = publishMany("100", 300, 5000);
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        // What a power cut leaves: the mark, and names whose content was never written, or only in part.
        writeSample(launcher.cache() + "/ResFiles/.updating-1", {});
        int i = 0;
        for (const auto& content : client) {
            if (++i % 3 == 0)
                writeSample(launcher.resFile(content), content.left(i % 2 == 0 ? 0 : 4096));
        }
        QDir(launcher.stagingFolder("ks")).removeRecursively();
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(badCacheFile(launcher.cache()), QString());
        QVERIFY(isInstalled(launcher, client));
        QCOMPARE(int(m_service->content().requests().size()), 3 + 100);
    }

    void sharesACacheWithAnotherLauncher()
    {
        const auto client = publishMany("100", 600, 30000);
        LauncherProcess first(m_service->backend());
        LauncherProcess second(m_service->backend());
        second.shareCache(first.cache());
        first.start({"-d", "-k", "-e"});
        second.start({"-d", "-k", "-e"});
        for (auto* launcher : {&first, &second}) {
            QVERIFY(launcher->process().waitForFinished(90000));
            QCOMPARE(launcher->process().exitCode(), 0);
            QVERIFY2(!launcher->log().contains("Update failed"), "see the log below");
        }
        QCOMPARE(badCacheFile(first.cache()), QString());
        QVERIFY(isInstalled(first, client));
    }

    void wantsRoomBeforeItBegins()
    {
        if (!canMount())
            QSKIP("This machine does not let a test mount a file system");
        publishMany("100", 60, 100000);
        LauncherProcess launcher(m_service->backend());
        mountCache(&launcher, "mount -t tmpfs -o size=3m none \"$0\"");
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("Update failed for Kestrel with error: 3"));
        QVERIFY2(QRegularExpression("Not enough room in .*: 5\\.\\d\\d MB needed, [23]\\.\\d\\d MB free")
                     .match(launcher.log())
                     .hasMatch(),
                 qPrintable(launcher.log().right(3000)));
        const auto listing = readSample(launcher.home() + "/listing.txt");
        QVERIFY2(!listing.contains("_") || listing.count('\n') < 3, listing);
    }

    void stopsOnAFullDisk()
    {
        if (!canMount())
            QSKIP("This machine does not let a test mount a file system");
        publishMany("100", 60, 100000);
        // There seems to be room.
        const auto index = m_service->tree().path() + "/velkor_100.txt";
        writeSample(index, readSample(index).replace(",100000,", ",1,"));
        LauncherProcess launcher(m_service->backend());
        mountCache(&launcher, "mount -t tmpfs -o size=3m none \"$0\"");
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY2(launcher.log().contains("Update failed for Kestrel with error: 3"),
                 qPrintable(launcher.log().right(3000)));
        const auto listing = QString::fromUtf8(readSample(launcher.home() + "/listing.txt")).split('\n');
        int whole = 0;
        for (const auto& line : listing) {
            if (!QRegularExpression("_[0-9a-f]{32}$").match(line).hasMatch())
                continue;
            QVERIFY2(line.startsWith("100000 ") || line.startsWith("17 ") || line.startsWith("18 "),
                     qPrintable(line));
            ++whole;
        }
        QVERIFY(whole > 5);
    }

    void stopsOnAReadOnlyCache()
    {
        if (!canMount())
            QSKIP("This machine does not let a test mount a file system");
        publishMany("100", 5, 1000);
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        const auto before = readFolder(launcher.cache());
        publishMany("101", 5, 1000, 500);
        mountCache(&launcher, "mount --bind \"$0\" \"$0\" && mount -o remount,bind,ro \"$0\"");
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY2(launcher.log().contains("Update failed for Kestrel with error: 3"),
                 qPrintable(launcher.log().right(3000)));
        QCOMPARE(readFolder(launcher.cache()), before);
    }

    void namesTheFailure_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status"); // negative: wrong bytes
        QTest::addColumn<int>("code");
        QTest::newRow("version missing") << "/velkorclient_KS.json" << 404 << 2;
        QTest::newRow("index denied") << "/velkor_100.txt" << 401 << 9;
        QTest::newRow("file missing") << SampleTree::pathOf(sampleBytes(0, 5000)) << 404 << 2;
        QTest::newRow("file always failing") << SampleTree::pathOf(sampleBytes(0, 5000)) << 500 << 2;
        QTest::newRow("file always wrong") << SampleTree::pathOf(sampleBytes(0, 5000)) << -1 << 2;
    }
    void namesTheFailure()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(int, code);
        const auto client = publishMany("100", 3, 5000);
        m_service->content().faults().set(path, status < 0 ? Fault::wrongBytes() : Fault::answerWith(status));
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(
            launcher.log().contains(QStringLiteral("Update failed for Kestrel with error: %1").arg(code)));
        QCOMPARE(badCacheFile(launcher.cache()), QString());
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, client));
    }

    void refusesAConnectionThatIsRefused()
    {
        publishMany("100", 3, 5000);
        LauncherProcess launcher(m_service->backend());
        m_service->backend().refuse(m_service->content());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("Update failed for Kestrel with error: 2"));
    }

    void staysInsideItsCache()
    {
        publishMany("100", 3, 5000);
        const QTemporaryDir outside;
        const auto index = m_service->tree().path() + "/velkor_100.txt";
        const auto content = m_service->tree().addContent("x", "evil");
        const auto row = QStringLiteral("%1,%2,") + content->checksum + ",4,4,33188\n";
        QByteArray rows = readSample(index);
        rows += row.arg("app:/a", "../../../escaped").toUtf8();
        rows += row.arg("app:/b", outside.filePath("escaped")).toUtf8();
        rows += row.arg("app:/../../../escaped", content->cachedName).toUtf8();
        rows += "sym:/out,sym:app:/../../..,d41d8cd98f00b204e9800998ecf8427e,0,0,0\n";
        rows += row.arg("app:/out/escaped", content->cachedName).toUtf8();
        writeSample(index, rows);
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("Update failed for Kestrel with error: 2"));
        QVERIFY(launcher.log().contains("skips 2 rows that point outside the cache"));
        QVERIFY(QDir(outside.path()).isEmpty());
        const auto files = readFolder(launcher.home());
        for (auto file = files.begin(); file != files.end(); ++file)
            QVERIFY2(!file.key().contains("escaped"), qPrintable(file.key()));
        QVERIFY(QFile::exists(launcher.resFile(sampleBytes(1, 5000)))); // the rest is done all the same
    }

    void survivesAMalformedIndex()
    {
        const auto client = publishMany("100", 3, 5000);
        const auto index = m_service->tree().path() + "/velkor_100.txt";
        writeSample(index, "no commas at all\n,,,\n" + readSample(index));
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("Skipped 2 malformed lines"));
        QVERIFY(isInstalled(launcher, client));
    }
};

VELKOR_TEST_MAIN(TestFaults)
#include "tst_e2e_faults.moc"
