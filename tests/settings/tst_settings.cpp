#include "settings/abandonedlock.h"
#include "settings/settings.h"
#include "tests/testkit/testmain.h"

#include <QJsonArray>
#include <QLockFile>
#include <QSignalSpy>

class TestSettings : public QObject
{
    Q_OBJECT

private:
    static void store(const QString& key, const QVariant& value) { QSettings().setValue(key, value); }

    /** Lets the settings have managers without any server class; the pointers are never followed. */
    static void registerManagers(Settings* settings)
    {
        connect(settings, &Settings::serverDeclared, settings, [settings](const QString& key) {
            settings->registerServer(key, reinterpret_cast<ServerManager*>(settings));
        });
    }
    static QMap<QString, bool> activations(const QSignalSpy& spy)
    {
        QMap<QString, bool> active;
        for (const auto& call : spy)
            active.insert(call.at(0).toString(), call.at(1).toBool());
        return active;
    }

private slots:
    void init()
    {
        Settings named(sampleDeployment()); // gives the store its name
        QSettings().clear();
    }

    void startsWithDefaults()
    {
        const Settings settings(sampleDeployment());
        QCOMPARE(settings.getCacheFolder(), QDir::homePath() + "/.velkor/");
        QVERIFY(settings.runClientsWithDx9());
        QCOMPARE(settings.getGraphicsModeString(), QStringLiteral("dx9"));
        QVERIFY(!settings.runClientsWith64Bit());
        QVERIFY(settings.useProxy());
        QCOMPARE(settings.getWineVersion(), QStringLiteral("latest"));
        QCOMPARE(settings.getWineVersionBranch(), QStringLiteral("halden-master"));
        QCOMPARE(settings.getCustomWinePath(), QStringLiteral("wine"));
    }

    // A launcher that is killed while it makes a lock leaves one without a name in it.
    void startsSoonBesideAbandonedLocks_data()
    {
        QTest::addColumn<QStringList>("locks");
        QTest::addColumn<int>("age"); // s
        QTest::newRow("first") << QStringList{".lock"} << 0;
        QTest::newRow("both") << QStringList{".lock", ".lock.rmlock"} << 0;
        QTest::newRow("ahead") << QStringList{".lock"} << -3600; // the clock has been set back
    }
    void startsSoonBesideAbandonedLocks()
    {
        QFETCH(QStringList, locks);
        QFETCH(int, age);
        const auto path = QSettings().fileName();
        for (const auto& suffix : qAsConst(locks)) {
            QFile lock(path + suffix);
            QVERIFY(lock.open(QIODevice::WriteOnly));
            QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-age),
                                     QFileDevice::FileModificationTime));
        }
        QElapsedTimer timer;
        timer.start();
        const Settings settings(sampleDeployment());
        QVERIFY2(!timer.hasExpired(10000), qPrintable(QString::number(timer.elapsed())));
        for (const auto& suffix : qAsConst(locks))
            QVERIFY(!QFile::exists(path + suffix));
    }

    void leavesALockThatIsHeld()
    {
        QLockFile lock(QSettings().fileName() + ".lock");
        QVERIFY(lock.lock());
        QTest::qSleep(1100);
        removeAbandonedLocks(QSettings().fileName());
        QVERIFY(QFile::exists(QSettings().fileName() + ".lock"));
    }

    void repairsStoredValues_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("effective");
        QTest::newRow("unknown language") << "LauncherLanguage" << QVariant("xx") << QVariant("");
        QTest::newRow("known language") << "LauncherLanguage" << QVariant("de") << QVariant("de");
        QTest::newRow("empty version") << "WineVersion" << QVariant("") << QVariant("latest");
        QTest::newRow("home") << "SharedCacheFolder" << QVariant("~/games")
                              << QVariant(QDir::homePath() + "/games/");
        QTest::newRow("slash kept") << "SharedCacheFolder" << QVariant("/data/") << QVariant("/data/");
        QTest::newRow("name with tilde") << "SharedCacheFolder" << QVariant("/a~b") << QVariant("/a~b/");
        QTest::newRow("development outside") << "LauncherType" << QVariant(2) << QVariant(1);
        QTest::newRow("number from text") << "WineVideoMemory" << QVariant("many") << QVariant(0);
        QTest::newRow("odd count kept") << "ResManThreadCount" << QVariant(3) << QVariant(3);
        QTest::newRow("debug forgotten") << "WineDebug" << QVariant("+all") << QVariant("");
    }
    void repairsStoredValues()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QVariant, effective);
        store(key, stored);
        QVariantMap map;
        Settings(sampleDeployment()).fillMap(map);
        QCOMPARE(map.value(key), effective);
    }

    void writesRepairsBackAtOnce()
    {
        store(QStringLiteral("LauncherType"), 2);
        store(QStringLiteral("LauncherTestServers"), QStringList{"pl", "osprey", "pl"});
        const Settings settings(sampleDeployment());
        QCOMPARE(QSettings().value(QStringLiteral("LauncherType")).toInt(), 1);
        QCOMPARE(QSettings().value(QStringLiteral("LauncherTestServers")).toStringList(),
                 (QStringList{"osprey", "pl"}));
    }

    void keepsEverySettingAcrossARestart()
    {
        QVariantMap before;
        {
            Settings settings(sampleDeployment());
            settings.setCacheFolder(QStringLiteral("/tmp/x"));
            settings.setRunClientsWithDx9(false);
            settings.setResManThreadCount(Settings::Threads8);
            settings.setWineVideoMemory(512);
            settings.setUseCustomWine(true);
            settings.setWineVersion(QStringLiteral("7.1"));
            QSignalSpy changed(&settings, &Settings::settingsChanged);
            settings.save();
            QCOMPARE(changed.count(), 1);
            settings.fillMap(before);
        }
        QCOMPARE(before.size(), int(SettingRow::count));
        QVariantMap after;
        Settings again(sampleDeployment());
        again.fillMap(after);
        QCOMPARE(after, before);
        QCOMPARE(again.getResManThreadCountAsOption(), Settings::Threads8);
        QCOMPARE(QFileInfo(QSettings().fileName()).permissions() & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void showsAnOddThreadCountAsDefault()
    {
        store(QStringLiteral("ResManThreadCount"), 3);
        const Settings settings(sampleDeployment());
        QCOMPARE(settings.getResManThreadCountAsOption(), Settings::ThreadsDefault);
        QCOMPARE(settings.getResManThreadCount(), 3);
        QCOMPARE(Settings::getResManThreadCountOptions(), (QStringList{"Default", "2", "4", "8", "16"}));
    }

    void letsThePageSetItsSubset()
    {
        Settings settings(sampleDeployment());
        settings.setFromJson({{"LauncherRunClientsWithDx9", false},
                              {"WineDebug", "+seh"},
                              {"LauncherLanguage", "xx"},
                              {"SharedCacheFolder", "/elsewhere"},
                              {"WineVersion", "5.0"},
                              {"Unheard", 7}});
        QVERIFY(!settings.runClientsWithDx9());
        QCOMPARE(settings.getWinedebug(), QStringLiteral("+seh"));
        QCOMPARE(settings.getLanguage(), QString());
        QCOMPARE(settings.getCacheFolder(), QDir::homePath() + "/.velkor/");
        QCOMPARE(settings.getWineVersion(), QStringLiteral("latest"));
        QCOMPARE(QSettings().value(QStringLiteral("Unheard")).toInt(), 7);
        QCOMPARE(settings.saveToJson().value("LauncherRunClientsWithDx9"), QJsonValue(false));
        QVERIFY(settings.saveToJson().value("LauncherTestServers").isArray());
    }

    void buildsAddresses()
    {
        Settings settings(sampleDeployment());
        QCOMPARE(settings.getBaseUrlForVersion(), QStringLiteral("https://binaries.test.invalid/"));
        QCOMPARE(settings.getBaseUrlForResources(), QStringLiteral("https://resources.test.invalid:8443/"));
        QCOMPARE(settings.getBaseUrlForProtectedBinaries(), QStringLiteral("https://api.test.invalid/prod/"));
        QCOMPARE(settings.getUrlForVersionInfo(),
                 QStringLiteral("https://binaries.test.invalid/velkorlauncher_linux_release.json"));
        QCOMPARE(settings.getUrlForLauncherIndex(QStringLiteral("5")),
                 QStringLiteral("https://binaries.test.invalid/velkorlauncher_linux_5.txt"));
        QCOMPARE(settings.getLandingPageUrl(QStringLiteral("pl")),
                 QStringLiteral("https://web.test.invalid/pl/"));
        QVERIFY(settings.getLogglyUrl().startsWith(
            QStringLiteral("https://logs.test.invalid/bulk/11111111-2222-3333-4444-555555555555/tag/"
                           "http,launcher,linux,1548102,")));
    }

    void remembersFirstTimes()
    {
        Settings settings(sampleDeployment());
        QVERIFY(!settings.checkIfUIVersion6ResizeDone());
        QVERIFY(settings.checkIfUIVersion6ResizeDone());
        store(QStringLiteral("FirstRunTimestamp"), 5);
        settings.checkIfFirstRun();
        QCOMPARE(settings.store().value(QStringLiteral("FirstRunTimestamp")).toInt(), 5);
        settings.checkIfFirstClientLaunch(QStringLiteral("ks"));
        QVERIFY(settings.store().value(QStringLiteral("FirstClientLaunchTimestamp")).toLongLong() >
                1600000000);
    }

    void readsTheCatalogue()
    {
        store(QStringLiteral("LauncherTestServers"), QStringList{"pl", "zz"});
        Settings settings(sampleDeployment());
        registerManagers(&settings);
        QSignalSpy declared(&settings, &Settings::serverDeclared);
        QSignalSpy activation(&settings, &Settings::serverActivationRequested);
        settings.initializeServers();
        QCOMPARE(settings.getMainServerName(), QStringLiteral("ks"));
        QCOMPARE(settings.getFullServerList(), (QStringList{"ks", "pl", "osprey", "heron"}));
        QCOMPARE(settings.getServerList(), (QStringList{"ks", "pl"}));
        QCOMPARE(settings.getEnabledTestServers(), QStringList{"pl"});
        QCOMPARE(declared.count(), 5);
        QCOMPARE(activations(activation),
                 (QMap<QString, bool>{
                     {"gr", false}, {"heron", false}, {"ks", true}, {"osprey", false}, {"pl", true}}));
        for (const auto& call : declared) {
            if (call.at(0) == "heron")
                QCOMPARE(call.at(1).toJsonObject().value("server"), QJsonValue("heron.servers.test.invalid"));
        }
    }

    void enablesAndDisablesTestServers()
    {
        Settings settings(sampleDeployment());
        registerManagers(&settings);
        settings.initializeServers();
        QSignalSpy changed(&settings, &Settings::serverListChanged);
        QSignalSpy activation(&settings, &Settings::serverActivationRequested);
        settings.setEnabledTestServers({"heron", "unknown"});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(settings.getServerList(), (QStringList{"ks", "heron"}));
        QCOMPARE(activations(activation),
                 (QMap<QString, bool>{{"heron", true}, {"ks", true}, {"osprey", false}, {"pl", false}}));
    }

    void addsServersOfTheCommandLine_data()
    {
        QTest::addColumn<QStringList>("extra");
        QTest::addColumn<bool>("skipTestServers");
        QTest::addColumn<QStringList>("served");
        QTest::newRow("hidden one") << QStringList{"gr"} << false << QStringList{"ks", "pl", "osprey", "gr"};
        QTest::newRow("new one twice")
            << QStringList{"Falcon", "Falcon"} << false << QStringList{"ks", "pl", "osprey", "Falcon"};
        QTest::newRow("none but main") << QStringList{} << true << QStringList{"ks"};
        QTest::newRow("nothing") << QStringList{} << false << QStringList{"ks", "pl", "osprey"};
    }
    void addsServersOfTheCommandLine()
    {
        QFETCH(QStringList, extra);
        QFETCH(bool, skipTestServers);
        Settings settings(sampleDeployment());
        registerManagers(&settings);
        CommandLine commandLine;
        commandLine.extraTestServers = extra;
        commandLine.skipTestServers = skipTestServers;
        settings.setCommandLine(commandLine);
        QSignalSpy declared(&settings, &Settings::serverDeclared);
        settings.initializeServers();
        QTEST(settings.getServerList(), "served");
        QVERIFY(settings.getServer(QStringLiteral("pl")));
        for (const auto& call : declared) {
            if (call.at(0) == "Falcon")
                QCOMPARE(call.at(1).toJsonObject(),
                         (QJsonObject{{"displayName", "Falcon"}, {"server", "falcon.servers.test.invalid"}}));
            if (call.at(0) == "gr")
                QCOMPARE(call.at(1).toJsonObject().value("server"), QJsonValue("grebe"));
        }
        QCOMPARE(settings.saveToJson().value("LauncherTestServers").toArray().contains("pl"), true);
    }

    void survivesABadCatalogue()
    {
        Settings settings(sampleDeployment());
        settings.setServers({});
        QVERIFY(settings.getFullServerList().isEmpty());
        QVERIFY(settings.getServerList().isEmpty());
        QCOMPARE(settings.getServer(QStringLiteral("ks")), nullptr);
    }
};

VELKOR_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
