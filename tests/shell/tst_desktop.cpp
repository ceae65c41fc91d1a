#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "shell/runninglauncher.h"
#include "shell/traystatus.h"
#include "shell/wakewatch.h"
#include "tests/testkit/testmain.h"

#include <QSignalSpy>
#include <QtConcurrent>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

/** What the launcher has to do with the desktop around it. */
class TestDesktop : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_runtime;
    std::unique_ptr<WineManager> m_wine;
    std::vector<std::unique_ptr<ServerManager>> m_servers;

    static Settings* settings() { return Settings::instance(); }
    static ServerManager* kestrel() { return settings()->getServer("ks"); }

private slots:
    void initTestCase()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
        Settings::useDeployment(sampleDeployment());
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers.push_back(std::make_unique<ServerManager>(key, entry));
                    settings()->registerServer(key, m_servers.back().get());
                });
        settings()->initializeServers();
        settings()->setEnabledTestServers({"pl"});
    }

    void trayTellsWhatHappens()
    {
        TrayStatus status([] { return true; }, 0);
        QSignalSpy changed(&status, &TrayStatus::changed);
        status.watch(kestrel());
        status.watch(kestrel());
        status.watch(settings()->getServer("pl"));
        QVERIFY(status.lines().isEmpty());
        for (int i = 0; i <= 1000; ++i)
            emit kestrel()->progressUpdate(kestrel(), i / 2000.0F, "12 of 34 files");
        QTRY_COMPARE(changed.size(), 1); // however often something comes
        QCOMPARE(status.lines(), QStringList{"Kestrel: 50 % - 12 of 34 files"});
        auto* plover = settings()->getServer("pl");
        emit plover->failedUpdate(plover, 2, "Version info not available");
        emit kestrel()->ready(kestrel());
        QCOMPARE(status.lines(), (QStringList{"Kestrel: Ready", "Plover: Version info not available"}));
    }

    void notifiesOfWhatTookLongAndNobodySaw_data()
    {
        QTest::addColumn<bool>("watched");
        QTest::addColumn<int>("longMs");
        QTest::addColumn<int>("notifications");
        QTest::newRow("hidden and long") << false << 0 << 2;
        QTest::newRow("watched") << true << 0 << 0;
        QTest::newRow("short") << false << 60000 << 0;
    }
    void notifiesOfWhatTookLongAndNobodySaw()
    {
        QFETCH(bool, watched);
        QFETCH(int, longMs);
        TrayStatus status([watched] { return watched; }, longMs);
        QSignalSpy wanted(&status, &TrayStatus::notificationWanted);
        status.watch(kestrel());
        emit kestrel()->ready(kestrel()); // nothing was updated
        emit kestrel()->startUpdate(kestrel());
        emit kestrel()->ready(kestrel());
        emit kestrel()->startUpdate(kestrel());
        emit kestrel()->failedUpdate(kestrel(), 3, "Disk full");
        emit kestrel()->failedUpdate(kestrel(), 3, "Disk full"); // a launch was refused
        QTEST(wanted.size(), "notifications");
        if (!wanted.isEmpty()) {
            QCOMPARE(wanted.at(0), (QVariantList{"Kestrel is ready", "The update has ended.", false}));
            QCOMPARE(wanted.at(1), (QVariantList{"Kestrel could not be updated", "Disk full", true}));
        }
    }

    void secondStartShowsTheFirst()
    {
        QVERIFY(!RunningLauncher::show());
        auto first = std::make_unique<RunningLauncher>();
        QSignalSpy requests(first.get(), &RunningLauncher::showRequested);
        const RunningLauncher beside; // two side by side are allowed
        auto shown = QtConcurrent::run(&RunningLauncher::show);
        QVERIFY(requests.wait());
        QTRY_VERIFY(shown.isFinished());
        QVERIFY(shown.result());
        first.reset();
        QVERIFY(!RunningLauncher::show());
    }

    void noticesSleep()
    {
        std::chrono::milliseconds slept(1000);
        WakeWatch watch([&slept] { return slept; }, std::chrono::milliseconds(5));
        QSignalSpy woken(&watch, &WakeWatch::woken);
        slept += std::chrono::seconds(2); // less than a sleep
        QTest::qWait(50);
        QCOMPARE(woken.size(), 0);
        slept += std::chrono::minutes(10);
        QVERIFY(woken.wait());
        QTest::qWait(50);
        QCOMPARE(woken.size(), 1);
    }

    void noticesANetworkThatComes()
    {
        if (!qEnvironmentVariableIsSet("VELKOR_OWN_NETWORK")) {
            QProcess child; // has a network of its own, in which nothing is up yet
            child.setProcessChannelMode(QProcess::MergedChannels);
            auto environment = QProcessEnvironment::systemEnvironment();
            environment.insert("VELKOR_OWN_NETWORK", "1");
            child.setProcessEnvironment(environment);
            child.start("unshare",
                        {"-rn", QCoreApplication::applicationFilePath(), "noticesANetworkThatComes"});
            QVERIFY(child.waitForFinished(60000));
            const auto said = child.readAll();
            if (said.contains("unshare failed"))
                QSKIP("No network of its own can be had here");
            QVERIFY2(child.exitCode() == 0, said);
            return;
        }
        WakeWatch watch;
        QSignalSpy changed(&watch, &WakeWatch::networkChanged);
        const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
        ifreq request{};
        qstrcpy(request.ifr_name, "lo");
        request.ifr_flags = IFF_UP;
        QCOMPARE(::ioctl(socket, SIOCSIFFLAGS, &request), 0);
        ::close(socket);
        QVERIFY(changed.wait(20000));
        QCOMPARE(changed.size(), 1);
    }
};

VELKOR_TEST_MAIN(TestDesktop)
#include "tst_desktop.moc"
