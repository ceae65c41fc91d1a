#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <csignal>

/** What the real launcher tells the gateway, and what it does when there is none that listens. */
class TestTelemetry : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    Gateway& gateway() { return m_service->backend().gateway(); }
    QStringList types()
    {
        QStringList types;
        for (const auto& event : gateway().events())
            types << event.type.mid(QString("velkor_launcher.").size());
        return types;
    }

private slots:
    void init()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->tree().publish("ks", "100", {{"bin/exefile.exe", "program"}});
    }
    void cleanup() { m_service.reset(); }

    void tellsWhatHappens()
    {
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(types(), (QStringList{"Installed", "Started", "ClientUpdateStarted", "ClientUpdateCompleted",
                                       "Shutdown"}));
        const auto session = gateway().events().first().session;
        QCOMPARE(session.size(), 16);
        for (const auto& event : gateway().events()) {
            QCOMPARE(event.session, session);
            QCOMPARE(event.typeUrl, "type.velkor.example/" + event.type);
        }
        QVERIFY(gateway().events()[2].text.contains("target_server: \"ks\""));

        gateway().clear();
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(types(), (QStringList{"Started", "Shutdown"}));
        QVERIFY(gateway().events().first().session != session);

        gateway().clear();
        m_service->tree().publish("ks", "101", {{"bin/exefile.exe", "new program"}});
        m_service->content().faults().set(SampleTree::pathOf("new program"), Fault::answerWith(404));
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(types(), (QStringList{"Started", "ClientUpdateStarted", "ClientUpdateFailed", "Shutdown"}));
        QVERIFY(gateway().events()[2].text.contains("error_code: 2"));
    }

    void saysGoodbyeWhenItIsTerminated()
    {
        LauncherProcess launcher(m_service->backend());
        launcher.start({"-d", "-k"});
        QVERIFY(launcher.waitForLog("Scheduling refresh after 15 minutes"));
        ::kill(static_cast<pid_t>(launcher.process().processId()), SIGTERM);
        QVERIFY(launcher.process().waitForFinished(15000));
        QCOMPARE(launcher.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(types().last(), QString("Shutdown"));
    }

    void neverDelaysAnUpdate_data()
    {
        QTest::addColumn<QString>("trouble");
        for (const auto* trouble :
             {"absent", "refuses", "stalls", "ends streams", "fails streams", "untrusted"})
            QTest::newRow(trouble) << trouble;
    }
    void neverDelaysAnUpdate()
    {
        QFETCH(QString, trouble);
        const CertificateAuthority stranger;
        Gateway untrusted(stranger.issueForLoopback());
        if (trouble == "absent")
            gateway().die();
        else if (trouble == "refuses")
            gateway().setFault(Gateway::Fault::Refuse);
        else if (trouble == "stalls")
            gateway().setFault(Gateway::Fault::Stall);
        else if (trouble == "ends streams")
            gateway().setFault(Gateway::Fault::EndEachStream);
        else if (trouble == "fails streams")
            gateway().setFault(Gateway::Fault::FailEachStream);
        else if (untrusted.start())
            m_service->backend().writeDeployment(
                {{"eventGateway", QStringLiteral("127.0.0.1:%1").arg(untrusted.port())},
                 {"delayScale", 0.001}});
        LauncherProcess launcher(m_service->backend());
        QElapsedTimer timer;
        timer.start();
        launcher.start({"-d", "-k", "-e"});
        QVERIFY(launcher.waitForLog("Velkor Launcher closing"));
        const auto updated = timer.elapsed();
        QVERIFY(launcher.process().waitForFinished(30000));
        QCOMPARE(launcher.process().exitCode(), 0);
        QVERIFY2(timer.elapsed() - updated < 12000, qPrintable(QString::number(timer.elapsed() - updated)));
        QCOMPARE(readSample(launcher.stagingFolder("ks") + "/bin/exefile.exe"), QByteArray("program"));
        QVERIFY(!launcher.log().contains("Update failed"));
        QVERIFY(untrusted.events().isEmpty());
    }

    void losesNothingWhenTheGatewayDies()
    {
        m_service->backend().writeDeployment({{"delayScale", 0.002}}); // refreshes every 1.8 seconds
        LauncherProcess launcher(m_service->backend());
        launcher.start({"-d", "-k"});
        QTRY_VERIFY_WITH_TIMEOUT(types().contains("ClientUpdateCompleted"), 20000);
        QTest::qWait(500);
        gateway().die();
        m_service->tree().publish("ks", "101", {{"bin/exefile.exe", "new program"}});
        QVERIFY(launcher.waitForLog("grpc Queueing velkor_launcher.ClientUpdateStarted"));
        QTRY_COMPARE_WITH_TIMEOUT(launcher.log().count("grpc Queueing velkor_launcher.ClientUpdateCompleted"),
                                  2, 20000);
        QVERIFY(gateway().start());
        QTRY_COMPARE_WITH_TIMEOUT(types().count("ClientUpdateCompleted"), 2, 30000);
        QCOMPARE(types(), (QStringList{"Installed", "Started", "ClientUpdateStarted", "ClientUpdateCompleted",
                                       "ClientUpdateStarted", "ClientUpdateCompleted"}));
    }
};

VELKOR_TEST_MAIN(TestTelemetry)
#include "tst_e2e_telemetry.moc"
