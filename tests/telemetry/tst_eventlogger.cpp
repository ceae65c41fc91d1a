#include "telemetry/eventlogger.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <velkor_launcher/launcher.pb.h>

/** The event logger against a real gateway, in good and in bad days. */
class TestEventLogger : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    Gateway& gateway() { return m_service->backend().gateway(); }
    std::unique_ptr<EventLogger> newLogger(int port = 0)
    {
        return std::make_unique<EventLogger>(
            QStringLiteral("127.0.0.1:%1").arg(port == 0 ? gateway().port() : port), "velkor.example");
    }
    /** The servers that the arrived events name, in the order of their arrival. */
    QStringList servers()
    {
        QStringList names;
        for (const auto& event : gateway().events()) {
            velkor_launcher::ClientUpdateStarted message;
            if (event.type == "velkor_launcher.ClientUpdateStarted" &&
                message.ParseFromArray(event.payload.constData(), event.payload.size()))
                names << QString::fromStdString(message.target_server());
        }
        return names;
    }
    static QStringList numbered(int from, int to)
    {
        QStringList names;
        for (int i = from; i < to; ++i)
            names << QString::number(i);
        return names;
    }
    static void send(EventLogger* logger, int from, int to)
    {
        for (int i = from; i < to; ++i)
            logger->clientUpdateStarted(QString::number(i));
    }
    /** Milliseconds that the shutdown takes. */
    static qint64 shutdown(EventLogger* logger)
    {
        QElapsedTimer timer;
        timer.start();
        logger->launcherShutdown(0, 0, 1);
        logger->waitForWorker();
        return timer.elapsed();
    }

private slots:
    void init() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service.reset(); }

    void sendsWhatHappens()
    {
        const auto logger = newLogger();
        logger->setAuthenticationToken("ticket of the player");
        const auto before = QDateTime::currentSecsSinceEpoch();
        logger->launcherInstalled(12345);
        logger->launcherStarted();
        logger->clientUpdateStarted("ks");
        logger->clientUpdateFailed("ks", 9);
        logger->clientUpdateCompleted("ks");
        logger->customWineLaunched("ks", "dx9");
        logger->releaseWineLaunched("ks", "8.0", "dx11");
        logger->developmentWineLaunched("ks", "main", "8.1", "else");
        logger->clientInitiallyLaunched("ks", 1, false);
        logger->clientLaunched("ks", true);
        logger->launcherUpdating("1", "2", 0);
        logger->launcherShutdown(1, 2, 60);
        logger->waitForWorker();

        const auto events = gateway().events();
        QStringList types;
        for (const auto& event : events) {
            types << event.type.mid(QString("velkor_launcher.").size());
            QCOMPARE(event.typeUrl, "type.velkor.example/" + event.type);
            QCOMPARE(event.session, logger->getSession());
            QCOMPARE(event.ticket, QByteArray("ticket of the player"));
            QCOMPARE(event.stream, 1);
        }
        QCOMPARE(types, (QStringList{"Installed", "Started", "ClientUpdateStarted", "ClientUpdateFailed",
                                     "ClientUpdateCompleted", "CustomWineLaunched", "ReleaseWineLaunched",
                                     "DevelopmentWineLaunched", "ClientInitiallyLaunched", "ClientLaunched",
                                     "UpdateStarted", "Shutdown"}));
        QCOMPARE(logger->getSession().size(), 16);

        velkor_launcher::Installed installed;
        installed.ParseFromArray(events[0].payload.constData(), events[0].payload.size());
        QVERIFY(installed.install_time().seconds() >= before); // the time of the call, not 12345
        velkor_launcher::Started started;
        started.ParseFromArray(events[1].payload.constData(), events[1].payload.size());
        QCOMPARE(started.application().version(), std::string("1548102"));
        QCOMPARE(started.host().os().kind(), velkor_launcher::OS::LINUX);
        QCOMPARE(int(started.host().mac_address().size()), 6);
        QVERIFY(events[3].text.contains("error_code: 9"));
        QVERIFY(events[5].text.contains("directx_mode: DX9") && !events[5].text.contains("launch_time"));
        QVERIFY(events[6].text.contains("wine_build: \"8.0\"") && events[6].text.contains("DX11"));
        QVERIFY(events[7].text.contains("wine_branch: \"main\" wine_build: \"8.1\"") &&
                !events[7].text.contains("directx_mode"));
        QVERIFY(events[8].text.contains("BITNESS_32") && events[9].text.contains("BITNESS_64"));
        QVERIFY(events[10].text.contains("target_version: \"2\""));
        QVERIFY(events[11].text.contains("clients_running: 1 clients_started: 2"));
    }

    void givesUpNoEventWhileTheGatewayIsAway()
    {
        gateway().die();
        const auto logger = newLogger();
        send(logger.get(), 0, 5);
        QTest::qWait(1500);
        QVERIFY(gateway().start());
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 5), 20000);
        QVERIFY(shutdown(logger.get()) < 5000);
        QCOMPARE(gateway().events().size(), 6);
    }

    void goesOnAfterTheGatewayDied()
    {
        const auto logger = newLogger();
        send(logger.get(), 0, 3);
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 3), 20000);
        QTest::qWait(500);
        gateway().die();
        send(logger.get(), 3, 6);
        QTest::qWait(1000);
        QVERIFY(gateway().start());
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 6), 20000); // nothing lost, nothing twice
        send(logger.get(), 6, 8);
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 8), 20000);
        shutdown(logger.get());
        QCOMPARE(gateway().events().last().type, QString("velkor_launcher.Shutdown"));
    }

    void triesAgainAfterAnError()
    {
        gateway().setFault(Gateway::Fault::Refuse);
        const auto logger = newLogger();
        send(logger.get(), 0, 4);
        QTest::qWait(1500);
        QVERIFY(gateway().events().isEmpty());
        gateway().setFault(Gateway::Fault::None);
        QTRY_COMPARE_WITH_TIMEOUT(servers().size(), 4, 20000);
        shutdown(logger.get());
        auto names = servers();
        names.sort();
        QCOMPARE(names, numbered(0, 4));
    }

    void getsThroughAGatewayThatEndsStreams()
    {
        gateway().setFault(Gateway::Fault::EndEachStream);
        const auto logger = newLogger();
        for (int i = 0; i < 3; ++i) {
            send(logger.get(), i, i + 1);
            QTRY_VERIFY_WITH_TIMEOUT(servers().contains(QString::number(i)), 20000);
            QTest::qWait(1000);
        }
        gateway().setFault(Gateway::Fault::None);
        shutdown(logger.get());
        // Not necessarily as the last: what a stream's end has left open comes behind it.
        const auto events = gateway().events();
        QVERIFY(std::any_of(events.begin(), events.end(),
                            [](const auto& event) { return event.type.endsWith("Shutdown"); }));
    }

    // A stream lasts ten seconds; what comes afterwards goes on a new one.
    void outlivesItsStream()
    {
        const auto logger = newLogger();
        send(logger.get(), 0, 1);
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 1), 20000);
        QTest::qWait(11000);
        send(logger.get(), 1, 3);
        QTRY_COMPARE_WITH_TIMEOUT(servers(), numbered(0, 3), 20000);
        QCOMPARE(gateway().events().first().stream, 1);
        QVERIFY(gateway().events().last().stream > 1);
        QVERIFY(shutdown(logger.get()) < 5000);
        QCOMPARE(gateway().events().size(), 4);
    }

    void endsInTime_data()
    {
        QTest::addColumn<int>("trouble");
        QTest::addColumn<int>("milliseconds");
        QTest::newRow("no gateway") << 0 << 3000;
        QTest::newRow("stalls") << 1 << 11500;
        QTest::newRow("refuses") << 2 << 11500;
        QTest::newRow("not trusted") << 3 << 3000;
    }
    void endsInTime()
    {
        QFETCH(int, trouble);
        QFETCH(int, milliseconds);
        const CertificateAuthority stranger;
        Gateway untrusted(stranger.issueForLoopback());
        QVERIFY(untrusted.start());
        if (trouble == 0)
            gateway().die();
        else if (trouble == 1)
            gateway().setFault(Gateway::Fault::Stall);
        else if (trouble == 2)
            gateway().setFault(Gateway::Fault::Refuse);
        const auto logger = newLogger(trouble == 3 ? untrusted.port() : 0);
        send(logger.get(), 0, 2);
        QTest::qWait(700);
        const auto took = shutdown(logger.get());
        QVERIFY2(took < milliseconds, qPrintable(QString::number(took)));
        QVERIFY(untrusted.events().isEmpty());
    }

    void leavesThePoolItsThreads()
    {
        auto* pool = QThreadPool::globalInstance();
        const int before = pool->maxThreadCount();
        pool->setMaxThreadCount(2); // as on one core
        {
            const auto logger = newLogger();
            send(logger.get(), 0, 1);
            QTRY_COMPARE_WITH_TIMEOUT(servers().size(), 1, 20000);
            QSemaphore running;
            QSemaphore goOn;
            QVector<QFuture<void>> jobs;
            for (int i = 0; i < 2; ++i) {
                jobs << QtConcurrent::run([&] {
                    running.release();
                    goOn.acquire();
                });
            }
            QVERIFY(running.tryAcquire(2, 5000));
            goOn.release(2);
            for (auto& job : jobs)
                job.waitForFinished();
        }
        QCOMPARE(pool->maxThreadCount(), 2);
        pool->setMaxThreadCount(before);
    }

    void takesEventsFromManyThreads()
    {
        const auto logger = newLogger();
        QVector<QFuture<void>> senders;
        for (int thread = 0; thread < 8; ++thread)
            senders << QtConcurrent::run(
                [&logger, thread] { send(logger.get(), thread * 50, thread * 50 + 50); });
        for (auto& sender : senders)
            sender.waitForFinished();
        shutdown(logger.get());
        auto names = servers();
        QCOMPARE(names.size(), 400);
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), 400);
    }

    void sendsNoBrokenTicket()
    {
        const auto logger = newLogger();
        logger->setAuthenticationToken("line one\nline two");
        send(logger.get(), 0, 1);
        QTRY_COMPARE_WITH_TIMEOUT(servers().size(), 1, 20000);
        QCOMPARE(gateway().events().first().ticket, QByteArray());
    }

    void preparesRecords()
    {
        const auto logger = newLogger();
        const auto record = QJsonDocument::fromJson(logger->prepareMessage({{"type", "x"}})).object();
        QCOMPARE(record.value("sessionid").toString(), QString::fromLatin1(logger->getSession().toHex()));
        QVERIFY(QDateTime::fromString(record.value("timestamp").toString(), Qt::ISODateWithMs).isValid());
    }
};

VELKOR_TEST_MAIN(TestEventLogger)
#include "tst_eventlogger.moc"
