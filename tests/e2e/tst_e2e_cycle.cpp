#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QRandomGenerator>

#include <csignal>

/** The refresh cycle of the real launcher when things go wrong. Wine is a small stand-in here. */
class TestCycle : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    static SampleFiles runtime(const QByteArray& version, int files = 3)
    {
        SampleFiles all{{"bin/regedit", "#!/bin/sh\nexit 0\n"}, {"bin/wine", version}};
        for (int i = 0; i < files; ++i)
            all.insert(QStringLiteral("lib/%1.so").arg(i), "library " + QByteArray::number(i) + version);
        return all;
    }
    void startLauncher(LauncherProcess& launcher)
    {
        launcher.set("UseCustomWine", false);
        launcher.start({"-d", "-k"});
    }
    static void terminate(LauncherProcess& launcher)
    {
        launcher.process().terminate();
        QVERIFY(launcher.process().waitForFinished(20000));
        QCOMPARE(launcher.process().exitStatus(), QProcess::NormalExit);
    }
    bool hasReported(const QString& message)
    {
        const auto reports = m_service->backend().exceptionReports();
        return std::any_of(reports.begin(), reports.end(), [&](const QJsonObject& report) {
            return report.value("exception").toArray().first().toObject().value("value") == message;
        });
    }

private slots:
    void init()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->backend().writeDeployment({{"delayScale", 0.001}});
        m_service->tree().publish("ks", "100", {{"bin/exefile.exe", "program"}});
        m_service->tree().publishWine("8.0", runtime("8.0"));
    }
    void cleanup() { m_service.reset(); }

    void retriesAfterEachFailureOfWine_data()
    {
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("report");
        QTest::addColumn<int>("seconds");
        QTest::newRow("the list is cut") << "list" << 1 << "Wine update failed with an unknown error" << 120;
        QTest::newRow("no index") << "index" << 2 << "Wine update failed with a download error" << 120;
        QTest::newRow("no room for files")
            << "disk" << 3 << "Wine update failed with a disk write error" << 120;
        QTest::newRow("a client runs") << "client" << 4 << QString() << 120;
        QTest::newRow("a file vanishes") << "source" << 5 << QString() << 5;
    }
    void retriesAfterEachFailureOfWine()
    {
        QFETCH(QString, trouble);
        QFETCH(int, code);
        QFETCH(QString, report);
        QFETCH(int, seconds);
        LauncherProcess launcher(m_service->backend());
        auto& faults = m_service->content().faults();
        QProcess client;
        if (trouble == "list") {
            faults.set("/wine_linux_release.json", Fault::cut());
        } else if (trouble == "index") {
            faults.set("/wine_linux_8.0.txt", Fault::answerWith(404));
        } else if (trouble == "disk") {
            writeSample(launcher.cache() + "/ResFiles", "in the way");
        } else if (trouble == "client") {
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert("WINEPREFIX", launcher.cache() + "/wineenv");
            client.setProcessEnvironment(environment);
            client.start("/bin/sh", {"-c", "read x", "exefile.exe"});
            QVERIFY(client.waitForStarted());
        } else {
            // While one file is still on its way, another one that has arrived is lost.
            m_service->tree().publishWine("8.1", {{"bin/regedit", "#!/bin/sh\n"},
                                                  {"lib/a.so", "lost"},
                                                  {"lib/z.so", QByteArray(200000, 'z')}});
            faults.set(SampleTree::pathOf(QByteArray(200000, 'z')), Fault::slow(200000, 1));
        }
        startLauncher(launcher);
        if (trouble == "source") {
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(launcher.resFile("lost")), 20000);
            QVERIFY(QFile::remove(launcher.resFile("lost")));
        }
        QVERIFY(launcher.waitForLog(QStringLiteral("Update failed for Wine with error: %1").arg(code)));
        QVERIFY(launcher.waitForLog(QStringLiteral("Scheduling refresh after %1 seconds").arg(seconds)));
        QVERIFY(!launcher.log().contains("Calling refresh on"));
        if (!report.isEmpty())
            QTRY_VERIFY(hasReported(report));

        faults.clear();
        client.closeWriteChannel();
        if (trouble == "disk")
            QVERIFY(QFile::remove(launcher.cache() + "/ResFiles"));
        QVERIFY(launcher.waitForLog("Scheduling refresh after 15 minutes"));
        QVERIFY(QFile::exists(launcher.cache() + "/wine/bin/regedit"));
        QVERIFY(QFile::exists(launcher.stagingFolder("ks") + "/bin/exefile.exe"));
        terminate(launcher);
        if (client.state() != QProcess::NotRunning)
            QVERIFY(client.waitForFinished());
    }

    // Killed in the middle, on the way from one version to the next and back.
    void repairsWhatAKilledLauncherHasLeft_data()
    {
        QTest::addColumn<QString>("moment");
        QTest::newRow("download") << "Wine info downloader";
        QTest::newRow("index") << "startWineUpdate 8.1";
        QTest::newRow("purge") << "Purging Wine staging folders";
        QTest::newRow("copy") << "/cache/wine/lib/1";
        QTest::newRow("prefix") << "Preparing wineenv";
    }
    void repairsWhatAKilledLauncherHasLeft()
    {
        QFETCH(QString, moment);
        LauncherProcess launcher(m_service->backend());
        launcher.set("UseCustomWine", false);
        QCOMPARE(launcher.refreshOnce(), 0);
        m_service->tree().publishWine("8.1", runtime("8.1", 500));
        launcher.start({"-d", "-k"});
        QVERIFY(launcher.waitForLog(moment));
        launcher.process().kill();
        QVERIFY(launcher.process().waitForFinished());

        m_service->tree().publishWine("8.0", runtime("8.0"));
        QCOMPARE(launcher.refreshOnce(), 0);
        auto installed = readFolder(launcher.cache() + "/wine");
        installed.remove("settings.reg");
        QCOMPARE(installed, runtime("8.0"));
    }

    void survivesFaultsOfAllKinds()
    {
        m_service->backend().writeDeployment({{"delayScale", 0.00001}});
        LauncherProcess launcher(m_service->backend());
        startLauncher(launcher);
        QRandomGenerator random(5);
        auto& content = m_service->content();
        const QStringList paths{"/velkorlauncher_linux_release.json",
                                "/wine_linux_release.json",
                                "/wine_linux_*",
                                "/velkorclient_KS.json",
                                "/velkor_*",
                                "/bundles/*",
                                "/*"};
        int rounds = 0;
        int version = 100;
        while (rounds < VELKOR_ROUNDS) {
            content.faults().clear();
            const auto& path = paths[random.bounded(paths.size())];
            const int times = random.bounded(1, 4);
            const int statuses[] = {401, 404, 500, 503, 204};
            switch (random.bounded(6)) {
            case 0:
                content.faults().set(path, Fault::cut(times));
                break;
            case 1:
                content.faults().set(path, Fault::wrongBytes(times));
                break;
            case 2:
                m_service->backend().refuse(m_service->content());
                QTest::qWait(random.bounded(20));
                m_service->backend().accept(m_service->content());
                break;
            default:
                content.faults().set(path, Fault::answerWith(statuses[random.bounded(5)], times));
            }
            if (random.bounded(8) == 0) {
                const auto number = QByteArray::number(++version);
                m_service->tree().publish("ks", number, {{"bin/exefile.exe", number}, {"same", "same"}});
                m_service->tree().publishWine(number, runtime(number));
            }
            QTest::qWait(10);
            rounds += m_service->requestsFor(paths.first());
            content.clearRequests();
            QVERIFY2(launcher.process().state() == QProcess::Running, qPrintable(launcher.log().right(2000)));
        }
        content.faults().clear();
        m_service->tree().publish("ks", "last", {{"bin/exefile.exe", "last"}});
        m_service->tree().publishWine("last", runtime("last"));
        QTRY_COMPARE_WITH_TIMEOUT(readSample(launcher.stagingFolder("ks") + "/bin/exefile.exe"),
                                  QByteArray("last"), 30000);
        QTRY_COMPARE_WITH_TIMEOUT(readSample(launcher.cache() + "/wine/bin/wine"), QByteArray("last"), 30000);
        terminate(launcher);
    }
};

VELKOR_TEST_MAIN(TestCycle)
#include "tst_e2e_cycle.moc"
