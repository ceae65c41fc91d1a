#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** The real launcher, unattended, keeping a game up to date. */
class TestUpdate : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    void publish(const QString& build, const SampleFiles& client)
    {
        m_service->tree().publish("ks", build, client,
                                  {{"first/a", "prefetched " + build.toUtf8()}, {"later/b", "not at first"}});
    }
    QStringList requestedPaths()
    {
        QStringList paths;
        for (const auto& logged : m_service->content().requests()) {
            if (logged.status == 200)
                paths << logged.request.path;
        }
        paths.sort();
        return paths;
    }

private slots:
    void init() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service.reset(); }

    void keepsAGameUpToDate()
    {
        const SampleFiles first{{"bin/exefile.exe", sampleBytes(1, 300000)},
                                {"data/a.dat", sampleBytes(2, 70000)},
                                {"data/b c.dat", sampleBytes(3, 1)},
                                {"empty", {}}};
        publish("100", first);
        LauncherProcess launcher(m_service->backend());

        // A first run fills cache and staging folder, byte for byte.
        QCOMPARE(launcher.refreshOnce(), 0);
        auto staged = readFolder(launcher.stagingFolder("ks"));
        for (const auto* generated : {"start.ini", "resfileindex.txt", "resfileindex_prefetch.txt"})
            QVERIFY(staged.take(generated).size() > 0);
        QCOMPARE(staged, first);
        QVERIFY(QFileInfo(launcher.stagingFolder("ks") + "/bin/exefile.exe").isExecutable());
        QVERIFY(!QFileInfo(launcher.stagingFolder("ks") + "/data/a.dat").permission(QFile::ExeOwner));
        const auto cached = readFolder(launcher.cache() + "/ResFiles");
        for (auto file = cached.begin(); file != cached.end(); ++file)
            QVERIFY2(file.key().endsWith("_" + md5Of(file.value())), qPrintable(file.key()));
        QVERIFY(QFile::exists(launcher.resFile("prefetched 100")));
        QVERIFY(!QFile::exists(launcher.resFile("not at first")));

        // A second run downloads nothing but the version document.
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(requestedPaths(), QStringList{"/velkorclient_KS.json"});

        // A new build downloads the changed files only.
        auto second = first;
        second["data/a.dat"] = "changed";
        publish("101", second);
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(readSample(launcher.stagingFolder("ks") + "/data/a.dat"), QByteArray("changed"));
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf("changed")), 1);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(first["bin/exefile.exe"])), 0);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf("prefetched 101")), 1);
        QCOMPARE(requestedPaths().size(),
                 2 + 5); // version, index; changed file, start.ini, both resource indexes, resource

        // A deleted staging folder is rebuilt without a download of cached content.
        QDir(launcher.stagingFolder("ks")).removeRecursively();
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(requestedPaths(), (QStringList{"/velkor_101.txt", "/velkorclient_KS.json"}));
        QCOMPARE(readSample(launcher.stagingFolder("ks") + "/data/a.dat"), QByteArray("changed"));
    }

    void downloadsEverythingBeforeItExits()
    {
        publish("100", {{"a", "b"}});
        LauncherProcess launcher(m_service->backend());
        launcher.set("LauncherShouldDownloadEverything", true);
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(QFile::exists(launcher.resFile("not at first")));
    }

    void makesLinks()
    {
        m_service->tree().publish("ks", "100", {{"lib/real.so", "code"}});
        const auto index = m_service->tree().path() + "/velkor_100.txt";
        writeSample(index,
                    readSample(index) +
                        "sym:/lib/link.so,sym:app:/lib/real.so,d41d8cd98f00b204e9800998ecf8427e,0,0,41471\n");
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(QFile::symLinkTarget(launcher.stagingFolder("ks") + "/lib/link.so"),
                 launcher.stagingFolder("ks") + "/lib/real.so");
    }

    void endsWithZeroEvenWhenServersFail()
    {
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("Update failed for Kestrel with error: 2"));
        QVERIFY(launcher.log().contains("Exiting after refresh"));
    }

    void readsTheCommandLine()
    {
        publish("100", {{"a", "b"}});
        m_service->tree().publish("gr", "200", {{"c", "d"}});
        LauncherProcess launcher(m_service->backend());
        launcher.set("LauncherTestServers", QStringList());
        launcher.start({"-d", "-e", "-t", "--extra-test-servers=gr"});
        QVERIFY(launcher.process().waitForFinished(60000));
        QVERIFY(launcher.log().contains("Command line arguments: ("));
        QVERIFY(QFile::exists(launcher.stagingFolder("gr") + "/c"));
    }

    void refusesWhatItDoesNotUnderstand_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("deployment");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("unknown option")
            << QStringList{"--nonsense"} << QByteArray() << "Unknown option 'nonsense'";
        QTest::newRow("missing value") << QStringList{"--client-args"} << QByteArray() << "Missing value";
        QTest::newRow("bad deployment") << QStringList() << QByteArray("{}") << "Invalid deployment file";
        QTest::newRow("no certificates") << QStringList() << QByteArray() << "No certificate could be read";
    }
    void refusesWhatItDoesNotUnderstand()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, deployment);
        QFETCH(QString, complaint);
        LauncherProcess launcher(m_service->backend());
        if (!deployment.isEmpty()) {
            writeSample(launcher.home() + "/bad.json", deployment);
            launcher.setEnvironment("VELKOR_DEPLOYMENT_FILE", launcher.home() + "/bad.json");
        } else if (arguments.isEmpty()) {
            m_service->backend().writeDeployment({{"extraCaCertificates", "missing.pem"}});
        }
        launcher.start(arguments);
        QVERIFY(launcher.process().waitForFinished(20000));
        QCOMPARE(launcher.process().exitCode(), 1);
        const auto error = QString::fromLocal8Bit(launcher.process().readAllStandardError());
        QVERIFY2(error.contains(complaint), qPrintable(error));
    }

    void keepsSecretsOutOfItsLog()
    {
        publish("100", {{"a", "b"}});
        LauncherProcess launcher(m_service->backend());
        launcher.setEnvironment("PUBLISHER_TOKEN", "do-not-print-me");
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(launcher.log().contains("PUBLISHER_TOKEN=[redacted]"));
        QVERIFY(!launcher.log().contains("do-not-print-me"));
        QVERIFY(!launcher.log().contains("thread-counts: \"")); // texts stand without quotes
    }

    void removesTestServersFromTheRunOnly()
    {
        publish("100", {{"a", "b"}});
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0); // with --skip-test-servers
        QCOMPARE(launcher.setting("LauncherTestServers").toStringList(), (QStringList{"osprey", "pl"}));
    }
};

VELKOR_TEST_MAIN(TestUpdate)
#include "tst_e2e_update.moc"
