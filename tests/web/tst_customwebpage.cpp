#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "tests/e2e/virtualdisplay.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/temporaryhome.h"
#include "tools/backend/httpsserver.h"
#include "web/browserbreakoutfilter.h"
#include "web/customwebengineview.h"
#include "web/customwebpage.h"

#include <QApplication>
#include <QDesktopServices>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <QWebSocket>
#include <QtTest>

/** Any address without encryption answers with one page. */
class PlainServer : public QTcpServer
{
public:
    explicit PlainServer(const QByteArray& page) : m_page(page)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            auto* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                socket->readAll();
                socket->write(
                    "HTTP/1.1 200 -\r\nContent-Type: text/html\r\nConnection: close\r\nContent-Length: " +
                    QByteArray::number(m_page.size()) + "\r\n\r\n" + m_page);
                socket->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost);
    }

private:
    const QByteArray m_page;
};

/** The bridge with the real engine: pages of a web host on this machine, which commands may come from, and
 * which "localhost", another host on the same port, is not. */
class TestCustomWebPage : public QObject
{
    Q_OBJECT

private:
    const CertificateAuthority m_authority;
    std::unique_ptr<HttpsServer> m_web;
    QMap<QString, QByteArray> m_pages;
    QTemporaryDir m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::unique_ptr<browserBreakoutFilter> m_filter;
    std::vector<std::unique_ptr<ServerManager>> m_servers;
    std::unique_ptr<QWebEngineView> m_view;
    std::unique_ptr<CustomWebPage> m_page;
    QVector<QUrl> m_openedOutside;

    static Settings* settings() { return Settings::instance(); }
    static ServerManager* kestrel() { return settings()->getServer("ks"); }
    QString own(const QString& path = {}) const
    {
        return QStringLiteral("https://127.0.0.1:%1/%2").arg(m_web->port()).arg(path);
    }
    QString foreign(const QString& path = {}) const
    {
        return QStringLiteral("https://localhost:%1/%2").arg(m_web->port()).arg(path);
    }
    /** A script that tries to store a setting. */
    static QByteArray commandFor(const QByteArray& key)
    {
        return "console.log('launcher:' + JSON.stringify({cmd: 'settings', value: JSON.stringify({" + key +
               ": 'yes'})}));";
    }
    static bool isStored(const QString& key) { return settings()->store().contains(key); }

    QVariant evaluate(const QString& expression) const
    {
        // A real event loop: the engine does a little on each of its turns.
        QEventLoop loop;
        QVariant answer;
        m_page->runJavaScript(expression, [&](const QVariant& value) {
            answer = value;
            loop.quit();
        });
        loop.exec();
        return answer;
    }
    QStringList calls() const { return evaluate("calls").toStringList(); }
    /** Opens a page that records what the launcher calls, and does not say that it is ready. */
    void open(const QString& address)
    {
        m_view = std::make_unique<QWebEngineView>();
        m_page = std::make_unique<CustomWebPage>(m_view.get());
        m_view->setPage(m_page.get());
        m_view->show();
        load(address);
    }
    void load(const QString& address)
    {
        QSignalSpy loaded(m_page.get(), &QWebEnginePage::loadFinished);
        m_page->setUrl(QUrl(address));
        QVERIFY(loaded.wait(20000));
        QVERIFY(loaded.first().first().toBool());
    }
    void openReady()
    {
        open(own());
        m_page->handleCommand(R"({"cmd":"javascriptReady"})", m_page.get());
        QTRY_VERIFY(!calls().filter("setSettings").isEmpty());
        evaluate("calls = []; 0");
    }

private slots:
    void initTestCase()
    {
        m_web = std::make_unique<HttpsServer>(
            m_authority.issue("IP:127.0.0.1,DNS:localhost", std::chrono::hours(1)),
            [this](const HttpRequest& request) -> HttpResponse {
                if (!m_pages.contains(request.path))
                    return {404, "text/plain", "not found", {}};
                return {200, "text/html; charset=utf-8", m_pages.value(request.path), {}};
            });
        QVERIFY(m_web->open());
        auto deployment = sampleDeployment();
        deployment.launcherWebHost = QStringLiteral("127.0.0.1:%1").arg(m_web->port());
        deployment.testWebHost = "launcher-test.example:8443";
        deployment.commandHosts = QStringList{"127.0.0.1"};
        Settings::useDeployment(deployment);
        settings()->setCacheFolder(m_cache.path());
        settings()->setIgnoreCertErrors(true);
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        m_filter = std::make_unique<browserBreakoutFilter>();
        settings()->registerBrowserBreakoutFilter(m_filter.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers.push_back(std::make_unique<ServerManager>(key, entry));
                    settings()->registerServer(key, m_servers.back().get());
                });
        settings()->initializeServers();
        settings()->setEnabledTestServers({});
        QDesktopServices::setUrlHandler("https", this, "openOutside");
        m_pages.insert("/", R"(<!DOCTYPE html><script>
            var calls = [];
            for (const name of ['setVersion', 'addServers', 'setPlayable', 'updateProgress', 'setClientVersion',
                                'showError', 'setSettings', 'setDeviceId', 'profilelist', 'settingok', 'settingerror',
                                'processstatus', 'websocketopened', 'websocketmessage', 'ssoCode'])
                window[name] = (...texts) => calls.push(name + JSON.stringify(texts));
        </script>)");
    }
    void openOutside(const QUrl& url) { m_openedOutside << url; }
    void cleanup()
    {
        m_page.reset();
        m_view.reset();
    }
    void cleanupTestCase()
    {
        settings()->registerBrowserBreakoutFilter(nullptr);
        m_web.reset();
    }

    void keepsCallsUntilThePageIsReady()
    {
        open(own());
        m_page->setProgress("ks", 0.5, "Early");
        m_page->handleCommand("not even JSON", m_page.get());
        m_page->handleCommand(R"({"cmd":"JavascriptReady"})", m_page.get()); // compared with case
        QVERIFY(calls().isEmpty());
        QSignalSpy refreshed(settings(), &Settings::startRefreshCycle);
        evaluate("console.log('launcher:{\"cmd\":\"javascriptReady\"}')");
        QTRY_COMPARE(calls().size(), 4);
        QCOMPARE(calls().at(0), QString(R"(updateProgress["ks",0.5,"Early"])"));
        QCOMPARE(calls().at(1), QStringLiteral(R"(setVersion["%1"])").arg(settings()->getVersion()));
        QVERIFY(calls().at(2).startsWith(R"(addServers[[{"name":"ks","displayName":"Kestrel"},)"));
        QVERIFY(calls().at(3).startsWith(R"(setSettings[{"CustomWinePath":)"));
        QCOMPARE(refreshed.size(), 1);

        // What comes while the next page is on its way waits for that one.
        QSignalSpy started(m_page.get(), &QWebEnginePage::loadStarted);
        QSignalSpy loaded(m_page.get(), &QWebEnginePage::loadFinished);
        m_page->triggerAction(QWebEnginePage::Reload);
        QTRY_COMPARE(started.size(), 1);
        m_page->setDeviceId("device");
        QTRY_COMPARE(loaded.size(), 1);
        QVERIFY(calls().isEmpty());
        m_page->handleJavascriptReady();
        QTRY_COMPARE(calls().value(0), QString(R"(setDeviceId["device"])"));
    }

    void keepsWhatCountsOfALongQueue()
    {
        open(own());
        m_page->showErrorMessage("Title", "First", 1);
        for (int i = 0; i < 5000; ++i)
            m_page->setProgress(i % 2 ? "ks" : "pl", i / 5000.0F, "On the way");
        m_page->showErrorMessage("Title", "Last", 1);
        m_page->handleJavascriptReady();
        QTRY_VERIFY(!calls().filter("setSettings").isEmpty());
        QVERIFY(calls().size() < 1100);
        QVERIFY(calls().first().contains("First"));
        const auto errors = calls().indexOf(QRegularExpression("showError.*Last.*"));
        QVERIFY(calls().at(errors - 1).startsWith(R"(updateProgress["ks",0.9998)"));
        QVERIFY(calls().at(errors - 2).startsWith(R"(updateProgress["pl",0.9996)"));
    }

    void textsArriveWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("arrived");
        QTest::newRow("English") << "Can't open \"C:\\\"\nTry again"
                                 << "Can’t open \"C:/\" Try again";
        QTest::newRow("French") << "L'accès n'est pas autorisé : « d'ici »"
                                << "L’accès n’est pas autorisé : « d’ici »";
        QTest::newRow("German") << "„Größe“ ist\r\n'falsch'\\"
                                << "„Größe“ ist ’falsch’/";
        QTest::newRow("Russian") << "Не удалось открыть 'файл'\u2028\\\\"
                                 << "Не удалось открыть ’файл’ //";
        QTest::newRow("Japanese") << "「ファイル」を'開けません'\n"
                                  << "「ファイル」を’開けません’ ";
    }
    void textsArriveWhole()
    {
        QFETCH(QString, text);
        QFETCH(QString, arrived);
        openReady();
        m_page->showErrorMessage(text, text, 3);
        emit kestrel()->progressUpdate(kestrel(), 0.5, text);
        QTRY_COMPARE(calls().size(), 2);
        const auto quoted =
            QString::fromUtf8(QJsonDocument(QJsonArray{arrived}).toJson(QJsonDocument::Compact))
                .mid(1)
                .chopped(1);
        QCOMPARE(calls().at(0), QStringLiteral("showError[%1,%1,3]").arg(quoted));
        QCOMPARE(calls().at(1), QStringLiteral("updateProgress[\"ks\",0.5,%1]").arg(quoted));
    }

    void followsClients()
    {
        openReady();
        auto* process = new AttachedProcess(4711);
        process->setProperty("server", "ks");
        process->setProperty("username", "Anna");
        emit kestrel()->processStarted(kestrel(), process);
        QCOMPARE(m_page->findProcess("ks", "Anna"), process);
        m_page->handleCommand(R"({"cmd":"processstatus","server":"ks","username":"Bert"})", m_page.get());
        m_page->handleCommand(R"({"cmd":"processstatus","server":"ks","username":"Anna"})", m_page.get());
        QTRY_COMPARE(calls().size(), 2);
        QTest::ignoreMessage(QtWarningMsg, "CustomWebPage::onProcessFinished couldn't find process");
        emit process->finished(process, 0);
        emit process->finished(process, 0);
        QVERIFY(!m_page->findProcess("ks", "Anna"));
        QTRY_COMPARE(calls().size(), 3);
        QCOMPARE(
            calls().at(2),
            QString(R"(processstatus[{"server":"ks","username":"Anna","isRunning":false,"crashed":false}])"));
    }

    void managesProfiles()
    {
        openReady();
        evaluate("var ks = 'ks', Second = 'Second'; 0");
        m_page->handleCommand(R"({"cmd":"createprofile","server":"ks","name":"Second",
                                  "inherit":{"server":"ks","name":"Default"}})",
                              m_page.get());
        m_page->handleCommand(R"({"cmd":"createprofile","server":"ks","name":"second","inherit":{}})",
                              m_page.get());
        m_page->handleCommand(R"({"cmd":"deleteprofile","server":"ks","name":"Second"})", m_page.get());
        m_page->handleCommand(R"({"cmd":"getprofiles","server":"pl"})", m_page.get());
        QTRY_VERIFY(calls().contains(R"(profilelist["pl",["Default"]])"));
        const QStringList expected{R"(profilelist["ks",["Default","Second"]])", R"(settingok["ks","Second"])",
                                   R"(profilelist["ks",["Default"]])", R"(settingok["ks","Second"])",
                                   R"(profilelist["pl",["Default"]])"};
        QCOMPARE(calls(), expected); // the name that differs by case only is no name here: that call is lost
    }

    void finishesALogin_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("call");
        QTest::newRow("state and remember") << "?state=abc&remember=TRUE"
                                            << R"(ssoCode["c0de","abc",true])";
        QTest::newRow("state") << "?state=a%27b"
                               << R"(ssoCode["c0de","a’b"])";
        QTest::newRow("no state") << "?remember=true"
                                  << R"(ssoCode["c0de"])";
        QTest::newRow("code to remember") << "?state=s&remember=showError(1)||1"
                                          << "";
    }
    void finishesALogin()
    {
        QFETCH(QString, query);
        QFETCH(QString, call);
        m_pages.insert(
            "/login",
            "<!DOCTYPE "
            "html><script>console.log('launcher:{\"cmd\":\"ssoCode\",\"code\":\"c0de\"}')</script>");
        openReady();
        evaluate(QStringLiteral("window.open('%1'); 0").arg(own("login" + query)));
        if (call.isEmpty()) {
            QTRY_COMPARE(QApplication::topLevelWidgets().size(), 1);
            QVERIFY(calls().isEmpty());
        } else {
            QTRY_COMPARE(calls(), QStringList{call});
        }
        const auto isGone = [this] {
            const auto windows = QApplication::topLevelWidgets();
            return std::count_if(windows.cbegin(), windows.cend(),
                                 [](const auto* w) { return w->isVisible(); }) == 1;
        };
        QTRY_VERIFY(isGone());
    }

    void refusesCommandsOfOthers_data()
    {
        QTest::addColumn<QString>("setup"); // run in the page
        QTest::addColumn<bool>("allowed");
        const auto plain = QStringLiteral("http://127.0.0.1:%1/");
        QTest::newRow("pop-up of the own host") << "window.open('own:stores')" << true;
        QTest::newRow("pop-up of another host") << "window.open('foreign:stores')" << false;
        QTest::newRow("pop-up without encryption") << "window.open('plain:')" << false;
        QTest::newRow("page moves to another host") << "location = 'foreign:stores'" << false;
        QTest::newRow("frame of the own host") << "frame('own:stores')" << true;
        QTest::newRow("frame of another host") << "frame('foreign:stores')" << false;
        QTest::newRow("frame that calls from nowhere") << "frame('foreign:storeslater')" << false;
    }
    void refusesCommandsOfOthers()
    {
        QFETCH(QString, setup);
        QFETCH(bool, allowed);
        const auto done = "new Image().src = '" + own("done").toUtf8() + "';";
        const PlainServer plain("<script>" + commandFor("Stolen") + done + "</script>");
        m_pages.insert("/stores", "<!DOCTYPE html><script>" + commandFor("Stolen") + done + "</script>");
        m_pages.insert("/storeslater", "<!DOCTYPE html><script>setTimeout(console.log, 0, 'launcher:' + "
                                       "JSON.stringify({cmd: 'settings', "
                                       "value: JSON.stringify({Stolen: 'yes'})})); setTimeout(() => {" +
                                           done + "}, 50)</script>");
        settings()->store().remove("Stolen");
        settings()->store().remove("Marker");
        m_web->clearRequests();
        openReady();
        setup.replace("own:", own()).replace("foreign:", foreign());
        setup.replace("plain:", QStringLiteral("http://127.0.0.1:%1/").arg(plain.serverPort()));
        evaluate("function frame(address) { const f = document.createElement('iframe'); f.src = address; "
                 "document.body.append(f); } 0");
        if (!allowed)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Commands are refused from http"));
        evaluate(setup + "; 0");
        if (allowed) {
            QTRY_VERIFY(isStored("Stolen"));
            return;
        }
        // The console of all pages comes in order, so whatever was said before this has been heard.
        const auto wasDone = [this] {
            const auto requests = m_web->requests();
            return std::any_of(requests.cbegin(), requests.cend(),
                               [](const LoggedRequest& logged) { return logged.request.path == "/done"; });
        };
        QTRY_VERIFY_WITH_TIMEOUT(wasDone(), 10000);
        QTest::qWait(300);
        QVERIFY(!isStored("Stolen"));
    }

    void sendsAddressesOfPopupsOutside()
    {
        m_pages.insert("/rules", "{\"blacklist\": [\"https://localhost\"]}");
        QSslConfiguration::setDefaultConfiguration([this] {
            auto configuration = QSslConfiguration::defaultConfiguration();
            configuration.setCaCertificates(QSslCertificate::fromData(m_authority.certificate()));
            return configuration;
        }());
        QSignalSpy updated(m_filter.get(), &browserBreakoutFilter::filterUpdated);
        m_filter->update(QUrl(own("rules")));
        QVERIFY(updated.wait());
        m_pages.insert("/leaves",
                       "<!DOCTYPE html><script>location = '" + foreign("shop").toUtf8() + "'</script>");
        openReady();
        m_openedOutside.clear();
        evaluate(QStringLiteral("window.open('%1'); 0").arg(own("leaves")));
        QTRY_COMPARE(m_openedOutside, QVector<QUrl>{QUrl(foreign("shop"))});
        load(foreign()); // the main page goes where it wants
        QCOMPARE(m_openedOutside.size(), 1);
    }

    void removesOldLoginsToTestServersOnce()
    {
        const auto path = QWebEngineProfile::defaultProfile()->persistentStoragePath() +
                          "/Local Storage/https_launcher-test.example_0.localstorage";
        const auto done = QStringLiteral("LauncherHasClearedLocalStorageAfterSsoFailure");
        settings()->store().remove(done);
        writeSample(path + "-journal", "stale"); // without the file that it belongs to
        std::make_unique<CustomWebEngineView>();
        QVERIFY(!QFile::exists(path + "-journal"));
        QVERIFY(settings()->store().value(done).toBool());
        writeSample(path, "fresh");
        std::make_unique<CustomWebEngineView>();
        QVERIFY(QFile::exists(path));
    }

    void letsLocalProgramsSendTexts()
    {
        openReady();
        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost));
        const int port = free.serverPort();
        const auto command = QStringLiteral(R"({"cmd":"openwebsocket","port":%1})").arg(port);
        m_page->handleCommand(command, m_page.get());
        free.close();
        m_page->handleCommand(command, m_page.get());
        QTRY_COMPARE(calls(), (QStringList{QStringLiteral("websocketopened[%1,0]").arg(port),
                                           QStringLiteral("websocketopened[%1,1]").arg(port)}));
        QWebSocket program;
        program.open(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(port)));
        QTRY_COMPARE(program.state(), QAbstractSocket::ConnectedState);
        program.sendTextMessage("it's refused");
        program.sendTextMessage("C:\\Games\nnew line");
        QTRY_COMPARE(calls().size(), 3);
        QCOMPARE(calls().at(2), QString(R"(websocketmessage["C:/Games new line"])"));

        // Web pages reach for it as well.
        const auto reach =
            QStringLiteral("var state = ''; var s = new WebSocket('ws://127.0.0.1:%1'); s.onopen = () => "
                           "state = 'open'; s.onerror = () => state = 'refused'; 0")
                .arg(port);
        evaluate(reach);
        QTRY_COMPARE(evaluate("state").toString(), QString("open"));
        load(foreign());
        evaluate(reach);
        QTRY_COMPARE(evaluate("state").toString(), QString("refused"));

        m_page->handleCommand(R"({"cmd":"closewebsocket"})", m_page.get());
        QTRY_COMPARE(program.state(), QAbstractSocket::UnconnectedState);
    }

    void keepsUpWithProgress()
    {
        openReady();
        evaluate("var count = 0; window.updateProgress = () => ++count; 0");
        const auto send = [this](int from, int to) {
            for (int i = from; i < to; ++i) {
                emit kestrel()->progressUpdate(kestrel(), i / 30000.0F, "12.3 of 45.6 GB");
                if (i % 100 == 0)
                    QCoreApplication::processEvents();
            }
            QTRY_COMPARE_WITH_TIMEOUT(evaluate("count").toInt(), to, 60000);
        };
        send(0, 10000); // fills what is kept: the history, the engine's buffers
        const auto before = residentBytes();
        send(10000, 30000);
        const auto grown = residentBytes() - before;
        QVERIFY2(grown < 20000000, qPrintable(QString::number(grown)));
    }

private:
    static qint64 residentBytes()
    {
        QFile file("/proc/self/statm");
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
    }
};

int main(int argc, char** argv)
{
    const TemporaryHome home;
    const VirtualDisplay display;
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("DISPLAY", display.name().toLocal8Bit());
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    const QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    TestCustomWebPage test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_customwebpage.moc"
