#include "tests/e2e/pagedriver.h"
#include "tests/e2e/virtualdisplay.h"
#include "tests/e2e/wineprefix.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <csignal>

#include <zip.h>

/** The real launcher with the demo's page in the real web engine, used the way a player uses it. */
class TestWeb : public QObject
{
    Q_OBJECT

private:
    const QString m_canPlay =
        "!!document.querySelector('.play') && !document.querySelector('.play').disabled";
    const QString m_cardText = "document.querySelector('[data-server=ks]').textContent";

    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<LauncherProcess> m_launcher;
    std::unique_ptr<PageDriver> m_page;

    HttpsServer& web() { return m_service->backend().web(); }

    void prepare()
    {
        const int port = freePort();
        m_launcher = std::make_unique<LauncherProcess>(m_service->backend());
        m_launcher->useWebEngine(m_service->backend(), m_display->name(), port);
        m_page = std::make_unique<PageDriver>(port);
    }
    void start(const QStringList& arguments = {"-k"})
    {
        if (!m_launcher)
            prepare();
        m_launcher->start(arguments);
    }
    void startAndWaitForPage(const QStringList& arguments = {"-k"})
    {
        start(arguments);
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor(m_canPlay));
    }
    /** Publishes a build when the launcher has nothing to do, and waits for the cycle that comes to update to
     * it. */
    bool updatesTo(const QString& build, const QByteArray& large)
    {
        if (!m_launcher->waitForLog("Scheduling refresh after 15 minutes"))
            return false;
        const int before = m_launcher->log().size();
        m_service->tree().publish(
            "ks", build, {{"bin64/exefile.exe", readSample(VELKOR_BIN "/exefile.exe")}, {"large", large}});
        return m_launcher->waitForLog("setPlayable('ks', false)", 60000, before);
    }
    /** What the player sees instead of the page. */
    bool errorPageSays(const QString& heading, const QString& message)
    {
        if (!m_page->attach("errorpage")) {
            qDebug() << m_page->addresses();
            return false;
        }
        return m_page->waitFor(
            QStringLiteral("document.getElementById('heading').innerText === `%1` && "
                           "document.getElementById('message').innerText.replace('’', `'`) === `%2`")
                .arg(heading, message));
    }
    /** Leaves a picture of the display where somebody who wants to look at it has asked for it. */
    void takePicture(const QString& name) const
    {
        const auto folder = qEnvironmentVariable("VELKOR_PICTURES");
        if (!folder.isEmpty())
            QProcess::execute(
                "import", {"-display", m_display->name(), "-window", "root", folder + '/' + name + ".png"});
    }
    /** The processes that draw pages for the launcher: those that a process of the engine has made. */
    QVector<qint64> renderProcesses() const
    {
        QVector<qint64> found;
        const auto isOfEngine = [](const QString& process) {
            return readProcFile(process, "cmdline").contains("QtWebEngineProcess");
        };
        const auto processes = QDir("/proc").entryList(QDir::Dirs);
        for (const auto& process : processes) {
            const bool isOurs =
                readProcFile(process, "environ").contains("HOME=" + m_launcher->home().toUtf8() + '\0');
            const auto parent = readProcFile(process, "stat").split(')').last().split(' ').value(2);
            if (isOurs && isOfEngine(process) && isOfEngine(parent))
                found << process.toLongLong();
        }
        return found;
    }
    static QByteArray readProcFile(const QString& process, const QString& name)
    {
        QFile file("/proc/" + process + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QMap<QByteArray, QByteArray> readZip(const QString& path)
    {
        QMap<QByteArray, QByteArray> parts;
        auto* archive = zip_open(QFile::encodeName(path), ZIP_RDONLY, nullptr);
        for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive, 0); ++i) {
            zip_stat_t stat;
            zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &stat);
            QByteArray bytes(static_cast<int>(stat.size), '\0');
            auto* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
            zip_fread(file, bytes.data(), stat.size);
            zip_fclose(file);
            parts.insert(stat.name, bytes);
        }
        if (archive)
            zip_close(archive);
        return parts;
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        // A quarter of an hour is 18 seconds here.
        m_service->backend().writeDeployment({{"delayScale", 0.02}});
        m_display = std::make_unique<VirtualDisplay>();
        QVERIFY(!m_display->name().isEmpty());
        m_service->tree().publish("ks", "100",
                                  {{"bin64/exefile.exe", readSample(VELKOR_BIN "/exefile.exe")}});
        m_service->tree().publish("pl", "200", {{"a", "b"}});
    }
    void cleanup()
    {
        m_page.reset();
        m_launcher.reset();
        m_service->reset();
        web().faults().clear();
        m_service->backend().accept(web());
        m_service->backend().gateway().clear();
    }
    void cleanupTestCase()
    {
        m_display.reset();
        m_service.reset();
    }

    void greetsThePageInOrder()
    {
        prepare();
        m_launcher->start({"-k", "--startup-server", "ks", "--updating"});
        QVERIFY(m_page->attach("/demo/?updating=true#ks"));
        QVERIFY(m_page->waitFor(m_canPlay));
        QVERIFY(m_page->waitFor(m_cardText + ".includes('build 100')"));
        QVERIFY(m_page->waitFor("!document.getElementById('update-note').hidden"));
        QVERIFY(m_launcher->waitForLog("Scheduling refresh after 15 minutes"));
        const auto log = m_launcher->log();
        int position = log.indexOf("Loading web gui from https://");
        QVERIFY(position > 0);
        for (const auto* next :
             {"loadStarted (clears Javascript loaded flag)", "handleCommand: {\"cmd\":\"javascriptReady\"}",
              "\tsetVersion('", "\taddServers([{'name': 'ks', 'displayName': 'Kestrel'}, ", "\tsetSettings({",
              "handleJavascriptReady", "Starting refresh cycle", "updateProgress('ks', 0, 'Checking hosts')",
              "setClientVersion('ks', 100)", "updateProgress('ks', 1, 'Ready')", "setPlayable('ks', true)"}) {
            const int found = log.indexOf(QLatin1String(next), position);
            QVERIFY2(found > position, next);
            position = found;
        }
        // The page has named its rules for pop-ups over the web channel.
        QVERIFY(m_launcher->waitForLog("browserBreakoutFilter: New blacklist loaded ( 2 entries )"));
        QVERIFY(m_display->isVisible("Velkor Launcher - version"));
        takePicture("page");
    }

    void reportOfASessionHoldsNoToken()
    {
        prepare();
        m_launcher->start({"-k"});
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor(m_canPlay));
        // The page keeps the token to itself.
        m_page->evaluate("const ask = window.fetch; window.fetch = async (...what) => {"
                         " const answer = await ask(...what);"
                         " if (String(what[0]).endsWith('/login/token'))"
                         "  window.seenToken = (await answer.clone().json()).token;"
                         " return answer; }; 0");
        QVERIFY(m_page->click("#sign"));
        {
            PageDriver login(m_page->port());
            QVERIFY(login.attach("/login/?state="));
            QVERIFY(login.waitFor("!!document.getElementById('login').onsubmit"));
            QVERIFY(login.type("#name", "Anna"));
            QVERIFY(login.type("#password", "rosebud"));
            QVERIFY(login.click("button"));
        }
        QVERIFY(m_page->waitFor("document.getElementById('user').textContent === 'Anna'"));
        const auto token = m_page->evaluate("window.seenToken").toString().toUtf8();
        QVERIFY(token.startsWith("token-of-Anna-"));
        QVERIFY(m_launcher->waitForLog("setToken"));
        for (const auto& form : {token, token.toHex(), token.toBase64(), ("x" + token).toBase64(),
                                 ("user:" + token + "\n").toBase64(), token.toPercentEncoding()})
            m_page->evaluate("console.log('seen " + form + "')");
        QVERIFY(m_launcher->waitForLog("seen"));

        const auto key = [this](const QString& title, const QStringList& keys) {
            const auto window = m_display->waitForWindow(title);
            QVERIFY2(window, qPrintable(title));
            m_display->xdotool({"windowfocus", "--sync", QString::number(window)});
            m_display->xdotool(QStringList{"key", "--delay", "200"} + keys);
        };
        const auto main = m_display->geometryOf(m_display->waitForWindow("Velkor Launcher - version"));
        m_display->click(main.topLeft() + QPoint(20, 20));
        m_display->xdotool({"key", "--delay", "200", "s"});
        key("Server list - Velkor Launcher", {"alt+t", "r"});
        QVERIFY(m_launcher->waitForLog("The report holds", 60000));
        takePicture("report");
        const auto path = m_launcher->home() + "/report.zip";
        key("Report for the support", {"alt+s"});
        QVERIFY(m_display->waitForWindow("Save the report"));
        m_display->xdotool({"type", path});
        m_display->xdotool({"key", "Return"});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path), 20000);

        const auto parts = readZip(path);
        QVERIFY(parts.contains("versions.txt") && parts.contains("diagnostics.txt"));
        const auto all = parts.values().join();
        QVERIFY(all.contains("[redacted]") && all.contains("[ks, Kestrel]") && all.contains("seen "));
        QVERIFY(!all.contains(m_launcher->home().toUtf8()));
        for (const auto& form : {token, token.toHex(), token.toHex().toUpper()})
            QVERIFY(!all.contains(form));
        for (const auto* before : {"", "x", "xx"}) {
            const auto form = (before + token).toBase64();
            QVERIFY(!all.contains(form.mid(4, token.size())));
        }
    }

    void signsInPlaysInsideSteamAndTellsTheCrash()
    {
        const WinePrefix prefix(m_display->name());
        prepare();
        const auto report = prefix.filePath("arguments.txt");
        m_launcher->shareCache(prefix.cache());
        m_launcher->set("CustomWinePath", WinePrefix::wine);
        m_launcher->set("LauncherRunClientsWith64Bit", true);
        const auto steamCalls = prefix.filePath("steam.txt");
        m_launcher->setEnvironment("LD_LIBRARY_PATH", VELKOR_STEAM);
        m_launcher->setEnvironment("STEAM_STANDIN_CALLS", steamCalls);
        m_launcher->start({"-k", "--client-args=/report=Z:" + report + " /crash"});
        QVERIFY(m_page->attach("/demo/?steam_ticket=00feed"));
        QCOMPARE(readSample(steamCalls), QByteArray("Init\nSteamUser\nGetAuthSessionTicket 1024\n"));
        QVERIFY(m_page->waitFor(m_canPlay));
        QVERIFY(m_page->click("#sign"));

        PageDriver login(m_page->port());
        QVERIFY(login.attach("/login/?state="));
        QVERIFY(login.waitFor("!!document.getElementById('login').onsubmit"));
        takePicture("login");
        const auto state = QUrl(login.evaluate("location.href").toString()).query().section('=', 1);
        QVERIFY(login.type("#name", "Anna"));
        QVERIFY(login.type("#password", "wrong"));
        QVERIFY(login.click("button"));
        QVERIFY(login.waitFor("document.getElementById('problem').textContent.includes('wrong')"));
        QVERIFY(login.type("#password", "rosebud"));
        QVERIFY(login.click("#remember"));
        QVERIFY(login.click("button"));
        QVERIFY(m_page->waitFor("document.getElementById('user').textContent === 'Anna'"));
        QTRY_COMPARE_WITH_TIMEOUT(m_page->addresses().size(), 1, 10000); // the pop-up has closed itself
        QVERIFY(m_launcher->log().contains("ssoCode('[redacted]', '" + state + "', true)"));
        QVERIFY(m_launcher->waitForLog("setToken"));

        QVERIFY(m_page->click(".play"));
        QVERIFY(m_page->waitFor(m_cardText + ".includes('Anna: has crashed')", 60000));
        QVERIFY(m_page->waitFor("document.getElementById('errors').textContent.includes('has crashed')"));
        takePicture("crash");
        const auto log = m_launcher->log();
        QVERIFY(log.contains("processstatus({server:'ks', username:'Anna', isRunning: true})"));
        QVERIFY(
            log.contains("processstatus({server:'ks', username:'Anna', isRunning: false, crashed: true})"));
        QVERIFY(readSample(report).contains("/ssoToken=token-of-Anna-"));
        QVERIFY(readSample(report).contains("/steamUser\n"));
        QVERIFY(!log.contains("00feed", Qt::CaseInsensitive));
        QVERIFY(!log.contains("token-of-Anna"));

        // The ticket goes along with the next stream of events.
        m_service->tree().publish("ks", "101", {{"a", "b"}});
        QVERIFY(QTest::qWaitFor(
            [this] {
                const auto events = m_service->backend().gateway().events();
                return events.last().ticket.startsWith("token-of-Anna-");
            },
            60000));
        m_service->tree().announce("ks", "100");
    }

    void changesSettings()
    {
        prepare();
        m_launcher->set("LauncherTestServers", QStringList());
        startAndWaitForPage({});
        QVERIFY(m_page->click("#open-settings"));
        QVERIFY(m_page->waitFor("document.activeElement.dataset.key === 'LauncherLanguage'"));
        QVERIFY(m_page->click("[data-key=LauncherRunClientsWith64Bit]"));
        QTRY_COMPARE_WITH_TIMEOUT(m_launcher->setting("LauncherRunClientsWith64Bit").toBool(), true, 10000);
        takePicture("settings");
        QVERIFY(m_page->click("#test-servers input[value=pl]"));
        QVERIFY(
            m_page->waitFor("document.querySelector('[data-server=pl]')?.textContent.includes('build 200')"));

        QVERIFY(m_page
                    ->evaluate(R"(
            console.log('launcher:' + JSON.stringify({cmd: 'settings', value: JSON.stringify({
                SharedCacheFolder: '/elsewhere', 'SharedCacheMove/from': '/home', PageColour: 'blue'})})); true)")
                    .toBool());
        QTRY_COMPARE_WITH_TIMEOUT(m_launcher->setting("PageColour").toString(), QString("blue"), 10000);
        QCOMPARE(QDir(m_launcher->setting("SharedCacheFolder").toString()), QDir(m_launcher->cache()));
        QVERIFY(!m_launcher->setting("SharedCacheMove/from").isValid());
    }

    void pausesAndLimitsDownloads()
    {
        startAndWaitForPage();
        const auto content = sampleBytes(7, 3000000);
        m_service->content().faults().set(SampleTree::pathOf(content), Fault::slow(40000));
        QVERIFY(updatesTo("102", content));
        QVERIFY(m_page->click("#pause"));
        QVERIFY(m_page->waitFor(m_cardText + ".includes('Paused')"));
        QVERIFY(m_page->waitFor("document.getElementById('pause').textContent === 'Resume downloads'"));
        takePicture("paused");
        m_page->evaluate("const limit = document.querySelector('[data-key=LauncherDownloadLimit]');"
                         " limit.value = '5'; limit.onchange(); 0");
        QVERIFY(m_launcher->waitForLog("Download limit: 5242880 bytes per second"));
        m_service->content().faults().clear();
        QVERIFY(m_page->click("#pause"));
        QVERIFY(m_page->waitFor(m_canPlay + " && " + m_cardText + ".includes('build 102')", 60000));
        m_service->tree().announce("ks", "100");
    }

    void keepsCallsForAPageThatReloads()
    {
        startAndWaitForPage();
        const auto content = sampleBytes(1, 1000000);
        m_service->content().faults().set(SampleTree::pathOf(content), Fault::slow(10000));
        // The page comes slowly while the update goes on.
        web().faults().set("/demo/main.js", Fault::slow(1000));
        QVERIFY(updatesTo("101", content));
        m_page->evaluate("location.reload()");
        QVERIFY(m_launcher->waitForLog("Queueing updateProgress('ks', "));
        web().faults().clear();
        QVERIFY(m_page->attach("/demo/"));
        m_service->content().faults().clear();
        QVERIFY(m_page->waitFor(m_canPlay + " && " + m_cardText + ".includes('build 101')", 60000));
        // What has waited comes right behind the version.
        const auto log = m_launcher->log();
        const int queued = log.indexOf("Queueing updateProgress");
        const int greeted = log.indexOf("\tsetVersion(", queued);
        QVERIFY(greeted > queued);
        QVERIFY(log.indexOf("\tupdateProgress", queued) > log.lastIndexOf("Queueing", greeted));
        m_service->tree().announce("ks", "100");
    }

    void showsWhatIsWrongWithTheWebHost()
    {
        m_service->backend().refuse(web());
        start();
        QVERIFY(errorPageSays("Error", "Couldn't get GUI version info\n\nSee logs for details"));
        QVERIFY(m_display->isVisible("Velkor Launcher - version"));
        takePicture("refused");
        web().faults().set("/version.json", Fault::wrongBytes());
        m_service->backend().accept(web());
        QVERIFY(errorPageSays("Error", "Couldn't establish gui version"));
        takePicture("garbage");
        // The version is known, but the page does not come.
        web().faults().set("/demo/", Fault::cut());
        web().faults().set("/version.json", Fault());
        QVERIFY(errorPageSays("Error", "Couldn't load the page\n\nSee logs for details"));
        takePicture("cut");
        web().faults().clear();
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor(m_canPlay));
    }

    void comesWhileALongDownloadRuns()
    {
        const auto large = sampleBytes(7, 1000000);
        m_service->tree().publish("ks", "102", {{"large", large}});
        m_service->content().faults().set(SampleTree::pathOf(large), Fault::slow(10000));
        m_service->backend().refuse(web());
        start();
        QVERIFY(errorPageSays("Error", "Couldn't get GUI version info\n\nSee logs for details"));
        QVERIFY(m_launcher->waitForLog("Starting task Downloader for Kestrel"));
        m_service->backend().accept(web());
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor("document.querySelector('.play')?.disabled"));
        QVERIFY(!m_launcher->log().contains("ClientUpdateCompleted"));
        m_service->content().faults().clear();
        QVERIFY(m_page->waitFor(m_canPlay, 60000));
        QVERIFY(!m_launcher->log().contains("Update failed"));
        m_service->tree().announce("ks", "100");
    }

    void saysThatItWaitsForASlowWebHost()
    {
        web().faults().set("/version.json", Fault::slow(1));
        start();
        QVERIFY(errorPageSays("Checking GUI version...", "Please wait"));
        takePicture("slow");
        web().faults().clear();
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor(m_canPlay));
        QVERIFY(!m_launcher->log().contains("Couldn't get GUI version info"));
    }

    void startsAPageAgainWhoseProcessIsKilled()
    {
        startAndWaitForPage();
        m_page->evaluate("window.isTheOldPage = true");
        const auto processes = renderProcesses();
        QCOMPARE(processes.size(), 1);
        ::kill(static_cast<pid_t>(processes.first()), SIGKILL);
        QVERIFY(m_launcher->waitForLog("The process of the page has ended, it is started again"));
        QVERIFY(m_page->attach("/demo/"));
        QVERIFY(m_page->waitFor("!window.isTheOldPage && " + m_canPlay));
        QVERIFY(QTest::qWaitFor(
            [this] {
                const auto reports = m_service->backend().exceptionReports();
                return std::any_of(reports.cbegin(), reports.cend(), [](const QJsonObject& report) {
                    return QJsonDocument(report).toJson().contains("RenderProcessTerminated");
                });
            },
            20000));
    }

    void leavesNoPageBehindInTheTray()
    {
        m_display->run(
            {"trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request", "--height", "32"});
        prepare();
        m_launcher->set("LauncherShouldMinimizeToTray", true);
        startAndWaitForPage();
        const auto panel = m_display->xdotool({"search", "--onlyvisible", "--class", "trayer"})
                               .section('\n', 0, 0)
                               .toLongLong();
        QTRY_VERIFY_WITH_TIMEOUT(m_display->geometryOf(panel).width() >= 24, 20000);
        for (int round = 0; round < 3; ++round) {
            const auto window = m_display->geometryOf(m_display->waitForWindow("Velkor Launcher - version"));
            m_display->click(window.topRight() + QPoint(-24, 23));
            QTRY_VERIFY_WITH_TIMEOUT(!m_display->isVisible("Velkor Launcher - version"), 20000);
            QTRY_COMPARE_WITH_TIMEOUT(renderProcesses().size(), 0, 20000);
            m_display->click(m_display->geometryOf(panel).center());
            QVERIFY(m_display->waitForWindow("Velkor Launcher - version"));
            QVERIFY(m_page->attach("/demo/"));
            QVERIFY(m_page->waitFor(m_canPlay));
            QCOMPARE(renderProcesses().size(), 1);
        }
    }
};

VELKOR_TEST_MAIN(TestWeb)
#include "tst_e2e_web.moc"
