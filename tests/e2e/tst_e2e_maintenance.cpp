#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** The real launcher looking after its cache. */
class TestMaintenance : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    const SampleFiles m_client{{"bin/exefile.exe", "program"}, {"data/a", "one"}, {"data/b", "another"}};

    static void makeOld(const QString& path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(
            file.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
    }

private slots:
    void init()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->tree().publish("ks", "100", m_client, {{"first/x", "now"}, {"later/y", "later"}});
    }
    void cleanup() { m_service.reset(); }

    void verifiesUnattendedAndRepairs()
    {
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce({"--verify-after-refresh"}), 0);
        QVERIFY2(launcher.standardOutput().contains("Damaged: 0"), qPrintable(launcher.standardOutput()));
        QVERIFY(launcher.log().contains("Verifying and purging after refresh"));

        const auto damaged = launcher.resFile("one");
        const auto extra = launcher.cache() + "/ResFiles/ab/nobody";
        writeSample(damaged, "oNe");
        writeSample(extra, "x");
        makeOld(extra);
        QCOMPARE(launcher.refreshOnce({"--verify-after-refresh"}), 0);
        const auto said = launcher.standardOutput();
        QVERIFY2(said.contains("Damaged: 1\n") && said.contains("Not needed by anything: 1 ") &&
                     said.contains("Removed of these: 1 "),
                 qPrintable(said));
        QVERIFY(launcher.log().contains("Verification: Damaged: 1"));
        QVERIFY(launcher.log().contains("has the wrong content and was removed"));
        QVERIFY(!QFile::exists(damaged) && !QFile::exists(extra));

        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf("one")), 1);
        QCOMPARE(readSample(damaged), QByteArray("one"));
    }

    void verifiesByItselfEveryTwoWeeks()
    {
        m_service->backend().writeDeployment({{"delayScale", 0.001}});
        LauncherProcess launcher(m_service->backend());
        launcher.set("LauncherLastVerifyTime", QDateTime::currentDateTime().addDays(-15));
        launcher.start({"-d", "-k"});
        QVERIFY(launcher.waitForLog("Automatically verifying and purging after refresh"));
        QVERIFY(launcher.waitForLog("Verification: Damaged: 0"));
        QVERIFY(launcher.waitForLog("Scheduling refresh after 15 minutes"));
        QTRY_VERIFY(launcher.log().count("Starting refresh cycle") > 2);
        QCOMPARE(launcher.log().count("Automatically verifying"), 1);
        launcher.process().terminate();
        QVERIFY(launcher.process().waitForFinished(20000));
        QVERIFY(launcher.setting("LauncherLastVerifyTime").toDateTime().daysTo(QDateTime::currentDateTime()) <
                1);
    }

    // The first damage is found while the launcher runs, and repaired by its next cycle.
    void repairsInTheSameRun()
    {
        m_service->backend().writeDeployment({{"delayScale", 0.001}});
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        writeSample(launcher.resFile("another"), "anotheR");
        launcher.set("LauncherLastVerifyTime", QVariant());
        launcher.start({"-d", "-k"});
        QVERIFY(launcher.waitForLog("Verification: Damaged: 1"));
        QTRY_COMPARE_WITH_TIMEOUT(readSample(launcher.resFile("another")), QByteArray("another"), 20000);
    }
};

VELKOR_TEST_MAIN(TestMaintenance)
#include "tst_e2e_maintenance.moc"
