#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>

class TestServerManager : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<ServerManager> m_server;
    std::unique_ptr<WineManager> m_wine;
    QStringList m_signals; // in the order in which they come
    QVector<float> m_progress;
    QStringList m_texts;

    void newServer()
    {
        m_server = std::make_unique<ServerManager>(
            "ks", QJsonObject{{"displayName", "Kestrel"}, {"server", "kestrel"}});
        Settings::instance()->registerServer("ks", m_server.get());
        m_server->setActive(true);
        auto* s = m_server.get();
        connect(s, &ServerManager::startUpdate, this, [this] { m_signals << "start"; });
        connect(s, &ServerManager::endUpdate, this, [this] { m_signals << "end"; });
        connect(s, &ServerManager::ready, this, [this] { m_signals << "ready"; });
        connect(s, &ServerManager::versionUpdate, this,
                [this](ServerManager*, const QString& build) { m_signals << "version " + build; });
        connect(s, &ServerManager::failedUpdate, this,
                [this](ServerManager*, int code, const QString& message) {
                    m_signals << QStringLiteral("failed %1 %2").arg(code).arg(message);
                });
        connect(s, &ServerManager::progressUpdate, this,
                [this](ServerManager*, float fraction, const QString& text) {
                    m_progress << fraction;
                    m_texts << text;
                });
    }
    QStringList refresh()
    {
        m_signals.clear();
        m_progress.clear();
        m_texts.clear();
        m_server->refresh();
        const bool ended = QTest::qWaitFor([this] { return !m_server->isUpdating(); }, 30000);
        return ended ? m_signals : QStringList{"it never ends"};
    }
    void publish(const QString& build, const SampleFiles& client = {{"bin/exefile.exe", "program"}},
                 bool isProtected = false)
    {
        m_service->tree().publish("ks", build, client,
                                  {{"first/a", "first " + build.toUtf8()}, {"later/b", "later"}},
                                  {isProtected, {}, 0});
    }
    void announce(const QByteArray& document)
    {
        writeSample(m_service->tree().path() + "/velkorclient_KS.json", document);
    }
    QString staged(const QString& name) const { return m_server->getStagingFolder() + "/" + name; }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_wine = std::make_unique<WineManager>();
        Settings::instance()->registerWineManager(m_wine.get());
    }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        Settings::instance()->setCacheFolder(m_cache->path());
        Settings::instance()->setShouldDownloadEverything(false);
        Settings::instance()->store().remove("LauncherLastDownloaded/ks");
        newServer();
    }
    void cleanupTestCase()
    {
        m_server.reset();
        m_service.reset();
    }

    void installsABuild()
    {
        publish("100");
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
        QVERIFY(m_server->isReady());
        QCOMPARE(readSample(staged("bin/exefile.exe")), QByteArray("program"));
        QCOMPARE(m_server->getStagingFolderBuild(), QStringLiteral("100"));
        QCOMPARE(Settings::instance()->store().value("LauncherLastDownloaded/ks").toString(),
                 QStringLiteral("100"));
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf("first 100")), 1);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf("later")), 0);
        QCOMPARE(m_server->getCurrentIndex()->getName(), QStringLiteral("velkor_100.txt"));
        QCOMPARE(m_server->getCurrentPrefetchIndex()->getName(),
                 QStringLiteral("resfileindex_prefetch_100.txt"));
        QVERIFY(QFile::exists(m_cache->filePath("index_ks.txt")));
        QCOMPARE(m_progress.last(), 1.0F);
        QCOMPARE(m_texts.last(), QStringLiteral("Ready"));
        const int copying = m_texts.indexOf("Copying files");
        QCOMPARE(m_progress[copying], 0.0F);
        for (int i = 0; i < copying; ++i)
            QVERIFY(m_progress[i] <= 0.8F);
        for (int i = copying + 1; i < m_progress.size(); ++i)
            QVERIFY(m_progress[i] >= 0.8F);
    }

    void findsABuildUnchanged()
    {
        publish("100");
        refresh();
        m_service->reset();
        QCOMPARE(refresh(), (QStringList{"version 100", "ready", "end"}));
        QCOMPARE(refresh(), (QStringList{"version 100", "ready", "end"}));
        newServer(); // as after a restart
        QCOMPARE(m_server->getIndex()->entries().size(), 4);
        QCOMPARE(refresh(), (QStringList{"version 100", "ready", "end"}));
        QCOMPARE(refresh(), (QStringList{"version 100", "ready", "end"}));
        QCOMPARE(int(m_service->content().requests().size()), 4);
    }

    void reinstallsADeletedStagingFolderFromTheCache()
    {
        publish("100");
        refresh();
        QDir(m_server->getStagingFolder()).removeRecursively();
        m_service->reset();
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
        QCOMPARE(int(m_service->content().requests().size()), 2); // version and index
        QVERIFY(QFile::exists(staged("bin/exefile.exe")));
    }

    void goesStraightToReadyWhenTheBinariesAreThere()
    {
        publish("100");
        refresh();
        writeSample(staged("start.ini"), "[main]\nbuild=99\n");
        QFile::remove(staged("bin/exefile.exe"));
        newServer();
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
        QVERIFY(!QFile::exists(staged("bin/exefile.exe"))); // the launch copies it
    }

    void copiesAgainAfterAFailedCopy()
    {
        publish("100");
        QDir().mkpath(staged("bin/exefile.exe/a folder in its place"));
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "failed 6 Error! See log for details"}));
        QVERIFY(!m_server->isReady());
    }

    void namesEveryFailure_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("faultyPath");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("expected");
        const QByteArray good = R"({"build":"100"})";
        const QStringList noVersion{"failed 2 Version info not available"};
        QTest::newRow("no JSON") << QByteArray("<html>") << "" << 0 << noVersion;
        QTest::newRow("no build") << QByteArray("{}") << "" << 0 << noVersion;
        QTest::newRow("a number") << QByteArray(R"({"build":100})") << "" << 0 << noVersion;
        QTest::newRow("empty build") << QByteArray(R"({"build":""})") << "" << 0 << noVersion;
        QTest::newRow("no version") << good << "/velkorclient_KS.json" << 404 << noVersion;
        QTest::newRow("no index") << good << "/velkor_100.txt" << 404
                                  << QStringList{"version 100", "start",
                                                 "failed 2 Kestrel client file-index not available"};
        QTest::newRow("denied") << good << "/velkor_100.txt" << 401
                                << QStringList{
                                       "version 100", "start",
                                       "failed 9 Authentication is required to download Kestrel client"};
        QTest::newRow("server error")
            << good << "/velkor_100.txt" << 500
            << QStringList{"version 100", "start",
                           "failed 1 Unknown error while trying to get Kestrel client file-index"};
        QTest::newRow("file missing")
            << good << SampleTree::pathOf("program") << 404
            << QStringList{"version 100", "start", "failed 2 Error! See log for details"};
        QTest::newRow("resource missing")
            << good << SampleTree::pathOf("first 100") << 404
            << QStringList{"version 100", "start", "failed 2 Error! See log for details"};
    }
    void namesEveryFailure()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, faultyPath);
        QFETCH(int, status);
        publish("100");
        announce(document);
        if (!faultyPath.isEmpty())
            m_service->content().faults().set(faultyPath, Fault::answerWith(status));
        QTEST(refresh(), "expected");
        QVERIFY(!m_server->isReady());
        QCOMPARE(m_progress.last(), 0.0F);
        // Nothing is lost: the next refresh completes.
        m_service->content().faults().clear();
        announce(R"({"build":"100"})");
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
    }

    void refusesAnIndexWithoutRows()
    {
        publish("100");
        refresh();
        publish("101");
        writeSample(m_service->tree().path() + "/velkor_101.txt", "<html>an error page</html>\n");
        QCOMPARE(refresh(), (QStringList{"version 101", "start", "failed 2 Index not available"}));
        QCOMPARE(m_server->getIndex()->getBuild(), QStringLiteral("100")); // the good one is kept
        QVERIFY(readSample(m_cache->filePath("index_ks.txt")).startsWith("app:/"));
    }

    void survivesMalformedIndexLines()
    {
        publish("100");
        const auto path = m_service->tree().path() + "/velkor_100.txt";
        writeSample(path, "rubbish\n,,\n" + readSample(path));
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
    }

    void waitsForTheTokenOfAProtectedBuild()
    {
        publish("100", {{"bin/exefile.exe", "program"}}, true);
        m_service->reset();
        QCOMPARE(refresh(), (QStringList{"version 100", "start",
                                         "failed 8 Must be logged in to Kestrel to get the build"}));
        QCOMPARE(int(m_service->content().requests().size()), 1); // never asked without a token

        m_server->setToken("to ken&x=y");
        QCOMPARE(refresh(), (QStringList{"version 100", "start", "end", "ready"}));
        QCOMPARE(m_service->requestsFor("/prod/velkor_100"), 1);
        for (const auto& logged : m_service->content().requests()) {
            if (logged.request.path == "/prod/velkor_100")
                QCOMPARE(logged.request.query, QStringLiteral("server=ks&token=to%20ken%26x%3Dy"));
        }
    }

    void staysSilentWhenDisabled()
    {
        m_server->setActive(false);
        m_signals.clear();
        m_server->refresh();
        QTest::qWait(50);
        QVERIFY(m_signals.isEmpty());
    }

    void downloadsEverythingInTheBackground()
    {
        Settings::instance()->setShouldDownloadEverything(true);
        publish("100");
        m_service->content().faults().set(SampleTree::pathOf("later"), Fault::slow(1));
        refresh();
        QVERIFY(m_server->isReady());
        QVERIFY(m_server->isFullDownloadRunning());
        m_service->content().faults().clear();
        QTRY_VERIFY(!m_server->isFullDownloadRunning());
        QVERIFY(QFile::exists(m_cache->filePath("ResFiles" + SampleTree::pathOf("later"))));
        QCOMPARE(m_texts.last(), QStringLiteral("Ready"));
    }

    void reportsFailures()
    {
        publish("100");
        announce("{}");
        refresh();
        QTRY_COMPARE(m_service->backend().exceptionReports().size(), 1);
        const auto exception =
            m_service->backend().exceptionReports().first().value("exception").toArray().at(0).toObject();
        QCOMPARE(exception.value("type").toString(), QStringLiteral("RuntimeError"));
        QCOMPARE(exception.value("value").toString(),
                 QStringLiteral("Couldn't find build number in patch info file"));
        QCOMPARE(exception.value("module").toString(), QStringLiteral("onPatchInfoDownloadFinished"));
    }

    void doesNotPlayBeforeItIsReady()
    {
        m_signals.clear();
        m_server->play({}, {}, {});
        QCOMPARE(m_signals, QStringList{"failed 3 Not ready to play"});
    }
};

VELKOR_TEST_MAIN(TestServerManager)
#include "tst_servermanager.moc"
