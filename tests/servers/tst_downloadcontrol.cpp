#include "download/patchmanager.h"
#include "download/ratelimiter.h"
#include "servers/downloadcontrol.h"
#include "servers/serverindexes.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "tasks/scheduler.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

/** What the player says about downloads, on real updates of a server. */
class TestDownloadControl : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<WineManager> m_wine;
    ServerIndexes m_indexes;
    std::unique_ptr<ServerManager> m_server;
    std::unique_ptr<DownloadControl> m_control;
    bool m_areClientsRunning = false;
    QString m_text; // what the server's row says
    QMap<bool, SampleFiles> m_undisturbed;

    static Settings* settings() { return Settings::instance(); }
    /** As at a start of the launcher. */
    void start()
    {
        m_control.reset();
        m_server = std::make_unique<ServerManager>("ks", QJsonObject{{"displayName", "Kestrel"}});
        settings()->registerServer("ks", m_server.get());
        m_server->setActive(true);
        connect(m_server.get(), &ServerManager::progressUpdate, this,
                [this](ServerManager*, float, const QString& text) { m_text = text; });
        m_control = std::make_unique<DownloadControl>(settings(), [this] { return m_areClientsRunning; });
    }
    static SampleFiles client(int build)
    {
        SampleFiles files;
        for (int i = 0; i < 12; ++i) {
            auto content = sampleBytes(i, 300000);
            content.replace(1000, 10, sampleBytes(build, 10)); // little changes between builds
            files.insert(QStringLiteral("bin/%1").arg(i), content);
        }
        for (int i = 0; i < 120; ++i) // enough for several groups of copies
            files.insert(QStringLiteral("share/%1").arg(i), sampleBytes(i + 1000, 100));
        return files;
    }
    static SampleFiles cacheOf(const QString& folder)
    {
        auto files = readFolder(folder + "/ResFiles");
        for (auto file = files.begin(); file != files.end();)
            file = file.key().endsWith(".tmp") ? files.erase(file) : std::next(file);
        return files;
    }
    static QString activity()
    {
        const auto* task = Scheduler::instance()->currentTask();
        return task ? task->activity() : QString();
    }
    bool waitForReady() const
    {
        return QTest::qWaitFor([this] { return m_server->isReady(); }, 60000);
    }

    /** It comes to rest, and stays there. */
    void verifyRest()
    {
        QString last;
        QVERIFY(QTest::qWaitFor(
            [&] {
                const bool rests = activity() == last && !last.isEmpty();
                last = activity();
                QTest::qWait(150);
                return rests && m_text == "Paused";
            },
            20000));
        QVERIFY(!m_server->isReady());
        const auto requests = m_service->content().requests().size();
        QTest::qWait(300);
        QCOMPARE(m_service->content().requests().size(), requests);
        QCOMPARE(activity(), last);
    }
    /** What an update that nobody pauses leads to. */
    SampleFiles undisturbed(bool isUpdate)
    {
        auto& expected = m_undisturbed[isUpdate];
        if (!expected.isEmpty())
            return expected;
        const QTemporaryDir other;
        settings()->setCacheFolder(other.path());
        settings()->store().remove("LauncherLastDownloaded/ks");
        if (isUpdate)
            m_service->tree().announce("ks", "100");
        start();
        m_server->refresh();
        waitForReady();
        if (isUpdate) {
            m_service->tree().announce("ks", "101");
            m_server->refresh();
            const bool isUpdated = QTest::qWaitFor(
                [this] { return m_server->isReady() && m_server->getBuild() == "101"; }, 60000);
            if (!isUpdated)
                return {};
        }
        expected = cacheOf(other.path());
        return expected;
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        settings()->initializeServers();
        PatchManager::instance()->setIndexLookup(&m_indexes);
    }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        settings()->setCacheFolder(m_cache->path());
        settings()->store().remove("LauncherLastDownloaded/ks");
        settings()->setDownloadsPaused(false);
        settings()->setDownloadsOnlyWithoutClients(false);
        settings()->setDownloadLimit(0);
        m_areClientsRunning = false;
        start();
    }
    void cleanup() { m_control->setPaused(false); }
    void cleanupTestCase()
    {
        PatchManager::instance()->setIndexLookup(nullptr);
        m_control.reset();
        m_server.reset();
        m_service.reset();
    }

    void pausesInEveryPhase_data()
    {
        QTest::addColumn<QString>("phase"); // what the log would say of it
        QTest::addColumn<bool>("isUpdate"); // from an older build
        QTest::addColumn<int>("chunkSize");
        QTest::addColumn<bool>("restart");
        for (const bool restart : {false, true}) {
            const auto how = restart ? "restarted" : "resumed";
            QTest::addRow("version, %s", how) << "Patch info" << false << 0 << restart;
            QTest::addRow("scan, %s", how) << "looks what is missing" << false << 0 << restart;
            QTest::addRow("bundle info, %s", how) << "Bundle info" << false << 200000 << restart;
            QTest::addRow("chunks, %s", how) << ".bundle." << false << 200000 << restart;
            QTest::addRow("files, %s", how) << "requests in flight" << false << 0 << restart;
            QTest::addRow("patching, %s", how) << "/patches/" << true << 0 << restart;
            QTest::addRow("copying, %s", how) << "Copier" << false << 0 << restart;
        }
    }
    void pausesInEveryPhase()
    {
        QFETCH(QString, phase);
        QFETCH(bool, isUpdate);
        QFETCH(int, chunkSize);
        QFETCH(bool, restart);
        m_service->tree().publish("ks", "100", client(100), {}, {false, {}, chunkSize});
        if (isUpdate) {
            m_server->refresh();
            QVERIFY(waitForReady());
            m_service->tree().publish("ks", "101", client(101), {}, {false, {"100"}, 0});
        }
        m_service->content().faults().set("/*", Fault::slow(2000000)); // so that each phase can be met
        const auto isReached = [&] { return m_control->state() != DownloadControl::State::Running; };
        const auto pauseIn = [&] {
            if (!isReached() && activity().contains(phase))
                m_control->setPaused(true);
            return isReached();
        };
        // Some phases are too short to be met by looking now and then.
        QObject atStart;
        connect(Scheduler::instance(), &Scheduler::schedule, &atStart,
                [&] { QTimer::singleShot(0, &atStart, pauseIn); });
        m_server->refresh();
        QVERIFY2(QTest::qWaitFor(pauseIn, 20000), qPrintable(activity()));
        Scheduler::instance()->disconnect(&atStart);
        QTest::qWait(300);
        if (restart) {
            start();
            m_server->refresh();
        }
        // A copy that was interrupted is completed when the player plays: after a restart there is nothing to
        // do.
        if (phase != "Copier" || !restart)
            verifyRest();
        m_service->content().faults().clear();
        m_control->setPaused(false);
        QVERIFY2(waitForReady(), qPrintable(activity()));
        QCOMPARE(m_text, QStringLiteral("Ready"));
        const auto paused = cacheOf(m_cache->path());
        QCOMPARE(paused, undisturbed(isUpdate));
    }

    void waitsForClients()
    {
        m_service->tree().publish("ks", "100", client(100));
        m_areClientsRunning = true;
        settings()->setDownloadsOnlyWithoutClients(true);
        settings()->save();
        QCOMPARE(m_control->state(), DownloadControl::State::WaitingForClients);
        m_server->refresh();
        QTRY_COMPARE(m_text, QStringLiteral("Waiting until no client runs"));
        QVERIFY(cacheOf(m_cache->path()).isEmpty());
        m_control->setPaused(true); // the player's word comes first
        QCOMPARE(m_control->state(), DownloadControl::State::Paused);
        m_control->setPaused(false);
        m_areClientsRunning = false; // noticed by itself
        QVERIFY(waitForReady());
    }

    void bringsTheLimitToTheRequests()
    {
        QSignalSpy changed(m_control.get(), &DownloadControl::limitChanged);
        settings()->setFromJson({{"LauncherDownloadLimit", 2.5}, {"LauncherDownloadsPaused", true}});
        settings()->save();
        QCOMPARE(RateLimiter::instance()->limit(), qint64(2.5 * 1024 * 1024));
        QCOMPARE(m_control->state(), DownloadControl::State::Running); // pausing takes a command
        for (const auto& nonsense : {QJsonValue(-1), QJsonValue("x"), QJsonValue(1e300), QJsonValue()}) {
            settings()->setFromJson({{"LauncherDownloadLimit", nonsense}});
            settings()->save();
            QCOMPARE(RateLimiter::instance()->limit(), 0LL);
        }
        m_control->setLimit(1);
        QCOMPARE(RateLimiter::instance()->limit(), 1024 * 1024LL);
        QCOMPARE(changed.size(), 3);
        settings()->setFromJson({{"LauncherDownloadLimit", 1e-7}}); // so little that nothing would ever come
        settings()->save();
        QVERIFY(RateLimiter::instance()->limit() > 10000);
        m_control->setLimit(0);
    }

    void isNotHeldInAnUnattendedRun()
    {
        settings()->setDownloadsPaused(true);
        CommandLine commandLine;
        commandLine.exitAfterRefresh = true;
        settings()->setCommandLine(commandLine);
        start();
        QCOMPARE(m_control->state(), DownloadControl::State::Running);
        settings()->setCommandLine({});
    }
};

VELKOR_TEST_MAIN(TestDownloadControl)
#include "tst_downloadcontrol.moc"
