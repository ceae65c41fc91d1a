#include "logging/messagehandler.h"
#include "servers/clientcommand.h"
#include "servers/launchoptions.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QSignalSpy>

#include <csignal>

class TestClientLaunch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WineManager> m_wine;
    QTemporaryDir m_cache;

    static Settings* settings() { return Settings::instance(); }
    static void setClientArgs(const QString& text)
    {
        CommandLine commandLine;
        commandLine.clientArgs = text;
        settings()->setCommandLine(commandLine);
    }
    /** A program in place of Wine. */
    QString script(const QByteArray& body)
    {
        const auto path = m_cache.filePath("fake wine");
        writeSample(path, "#!/bin/sh\n" + body);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

private slots:
    void initTestCase()
    {
        Settings::useDeployment(sampleDeployment());
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
    }
    void init()
    {
        settings()->setCacheFolder(m_cache.path());
        settings()->setRunClientsWithDx9(true);
        settings()->setRunClientsWith64Bit(false);
        settings()->setUseCustomWine(false);
        settings()->setResManThreadCount(Settings::ThreadsDefault);
        setClientArgs({});
        settings()->setLaunchWrapper({});
        settings()->setClientEnvironment("ks", {});
    }

    void buildsArgumentsInOrder()
    {
        settings()->setResManThreadCount(Settings::Threads8);
        setClientArgs("  /one   /two ");
        QCOMPARE(buildClientArguments({"kestrel", "tok", "my profile", true}, *settings()),
                 (QStringList{"/noconsole", "/server:kestrel", "/gfxPlatform=dx9", "/ssoToken=tok",
                              "/settingsprofile=my profile", "/steamUser", "/resManThreadCount=8", "/one",
                              "/two"}));
    }

    void leavesEmptyArgumentsOut()
    {
        settings()->setRunClientsWithDx9(false);
        QCOMPARE(buildClientArguments({"kestrel", {}, {}, false}, *settings()),
                 (QStringList{"/noconsole", "/server:kestrel"}));
    }

    void choosesWine()
    {
        QCOMPARE(getWineProgram(*settings()), m_cache.path() + "/wine/bin/wine");
        settings()->setRunClientsWith64Bit(true);
        QCOMPARE(getWineProgram(*settings()), m_cache.path() + "/wine/bin/wine64");
        settings()->setUseCustomWine(true);
        settings()->setCustomWinePath("/opt/my wine/bin/wine");
        QCOMPARE(getWineProgram(*settings()), QStringLiteral("/opt/my wine/bin/wine"));
        settings()->setCustomWinePath("sh"); // a command
        QVERIFY(getWineProgram(*settings()).endsWith("/sh"));
        settings()->setCustomWinePath("no such command");
        QCOMPARE(getWineProgram(*settings()), QStringLiteral("no such command"));
    }

    void completesTheCommand()
    {
        settings()->setRunClientsWith64Bit(true);
        const ServerManager server("ks", {});
        QString folder;
        QString program;
        QStringList arguments{"/noconsole"};
        server.prepareForStartingProcess(folder, arguments, program);
        QCOMPARE(arguments,
                 (QStringList{m_cache.path() + "/wineenv/drive_c/ks/bin64/exefile.exe", "/noconsole",
                              "/remotefilecachefolder=Z:" + m_cache.path() + "/ResFiles"}));
        QVERIFY(folder.isEmpty());
    }

    void preparesTheEnvironment()
    {
        settings()->setWinedebug("+seh");
        const auto environment = m_wine->getWineProcessEnvironment();
        QCOMPARE(environment.value("WINEPREFIX"), m_cache.path() + "/wineenv");
        QCOMPARE(environment.value("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
        QCOMPARE(environment.value("WINEDEBUG"), QStringLiteral("+seh"));
        QVERIFY(environment.contains("PATH"));
    }

    void readsLaunchOptions_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("wrapper");
        QTest::addColumn<QString>("problem");
        const QStringList none;
        QTest::newRow("empty") << "  " << none << "";
        QTest::newRow("command with arguments") << "env -u A" << QStringList{"env", "-u", "A"} << "";
        QTest::newRow("quotes") << "/bin/sh -c \"a b\"" << QStringList{"sh", "-c", "a b"} << "";
        QTest::newRow("open quote") << "env \"a" << none << "quotation mark";
        QTest::newRow("no such command") << "no-such-command -f" << none << "no-such-command";
        QTest::newRow("not a program") << "/etc/passwd" << none << "/etc/passwd";
        QTest::newRow("relative path") << "bin/sh" << none << "bin/sh";
    }
    void readsLaunchOptions()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, wrapper);
        QFETCH(QString, problem);
        LaunchOptions options;
        const auto found = readWrapper(command, &options);
        QCOMPARE(found.isEmpty(), problem.isEmpty());
        QVERIFY(found.contains(problem));
        if (!options.wrapper.isEmpty()) {
            QVERIFY(QFileInfo(options.wrapper.first()).isExecutable());
            options.wrapper.first() = QFileInfo(options.wrapper.first()).fileName();
        }
        QCOMPARE(options.wrapper, wrapper);
    }

    void checksVariables()
    {
        LaunchOptions options;
        QVERIFY(readVariables({"A=b=c", "", "_X9="}, &options).isEmpty());
        QCOMPARE(options.variables, (QVector<QPair<QString, QString>>{{"A", "b=c"}, {"_X9", ""}}));
        for (const auto* bad : {"A", "=x", "9A=x", "A B=x", "WINEPREFIX=/"})
            QVERIFY2(!readVariables({"OK=1", bad}, &options).isEmpty(), bad);
    }

    void putsTheWrapperInFront()
    {
        const auto record = m_cache.filePath("record");
        const auto wrapper = m_cache.filePath("wrapper");
        writeSample(wrapper,
                    "#!/bin/sh\necho \"$@ $HUD $SECRET_SAUCE\" > '" + record.toUtf8() + "'\nexec \"$@\"\n");
        QFile::setPermissions(wrapper, QFile::ReadOwner | QFile::ExeOwner);
        settings()->setLaunchWrapper(wrapper + " env -u A");
        settings()->setClientEnvironment("ks", {"HUD=1", "SECRET_SAUCE=ketchup"});
        settings()->setClientEnvironment("other", {"HUD=2"});
        installLogMessageHandler({});
        ServerManager server("ks", {});
        QSignalSpy started(&server, &ServerManager::processStarted);
        const auto program = script("exit 7");
        server.startProcess(program, {"/one"}, {}, {});
        auto* process = started.first().at(1).value<AttachedProcess*>();
        QSignalSpy finished(process, &AttachedProcess::finished);
        QVERIFY(finished.wait());
        QCOMPARE(finished.first().at(1).toInt(), 7);
        QCOMPARE(QString::fromUtf8(readSample(record)), "env -u A " + program + " /one 1 ketchup\n");
        qInstallMessageHandler(nullptr);
        for (const auto& logged : getLastLogMessages(50))
            QVERIFY2(!logged.message.contains("ketchup"), qPrintable(logged.message));
        delete process;
    }

    void startsNothingWithBadOptions()
    {
        ServerManager server("ks", {});
        QSignalSpy message(&server, &ServerManager::showErrorMessage);
        QSignalSpy started(&server, &ServerManager::processStarted);
        settings()->setLaunchWrapper("no-such-command");
        server.startProcess(script("exit 0"), {}, {}, {});
        settings()->setLaunchWrapper({});
        settings()->setClientEnvironment("ks", {"nonsense"});
        server.startProcess(script("exit 0"), {}, {}, {});
        QCOMPARE(message.size(), 2);
        QVERIFY(message.at(0).at(1).toString().contains("no-such-command"));
        QVERIFY(message.at(1).at(1).toString().contains("nonsense"));
        QVERIFY(started.isEmpty());
    }

    void complainsWithoutWine()
    {
        ServerManager server("ks", {{"displayName", "Kestrel"}});
        QSignalSpy message(&server, &ServerManager::showErrorMessage);
        QSignalSpy started(&server, &ServerManager::processStarted);
        server.startProcess("/no/such/wine", {}, {}, {});
        QCOMPARE(message.first().mid(1), (QVariantList{"Could not find file /no/such/wine", 10}));
        QCOMPARE(message.first().at(0).toString(), QStringLiteral("Client launch failure"));
        QVERIFY(started.isEmpty() && !server.isRunningProcesses());
    }

    void followsAClient_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<bool>("crashed");
        QTest::newRow("good") << QByteArray("exit 0") << 0 << false;
        QTest::newRow("error") << QByteArray("exit 7") << 7 << false;
        QTest::newRow("crash") << QByteArray("kill -SEGV $$") << int(SIGSEGV) << true;
        QTest::newRow("crash inside Wine")
            << QByteArray("echo 'wine: Unhandled page fault on write access' >&2; exit 5") << 5 << true;
    }
    void followsAClient()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, crashed);
        ServerManager server("ks", {});
        QSignalSpy started(&server, &ServerManager::processStarted);
        server.startProcess(script(body), {}, {}, "player");
        auto* process = started.first().at(1).value<AttachedProcess*>();
        QCOMPARE(process->server(), QStringLiteral("ks"));
        QCOMPARE(process->username(), QStringLiteral("player"));
        QVERIFY(server.isRunningProcesses());
        QSignalSpy finished(process, &AttachedProcess::finished);
        QVERIFY(finished.wait());
        QTEST(finished.first().at(1).toInt(), "exitCode");
        QCOMPARE(process->exitStatus() == QProcess::CrashExit, crashed);
        QVERIFY(!server.isRunningProcesses());
        delete process;
    }

    void noticesAProgramThatCannotStart()
    {
        writeSample(m_cache.filePath("no program"), "text");
        ServerManager server("ks", {});
        QSignalSpy started(&server, &ServerManager::processStarted);
        server.startProcess(m_cache.filePath("no program"), {}, {}, {});
        QTRY_VERIFY(!server.isRunningProcesses());
        delete started.first().at(1).value<AttachedProcess*>();
    }

    void logsWhatTheClientPrints()
    {
        installLogMessageHandler({});
        ServerManager server("ks", {});
        QSignalSpy started(&server, &ServerManager::processStarted);
        server.startProcess(script("echo hello\necho 'err:seh broken' >&2\necho 'fixme:x todo' >&2\necho "
                                   "'warn:y careful' >&2\necho 'other' >&2\n"),
                            {}, {}, {});
        auto* process = started.first().at(1).value<AttachedProcess*>();
        QSignalSpy finished(process, &AttachedProcess::finished);
        QVERIFY(finished.wait());
        qInstallMessageHandler(nullptr);
        QStringList lines;
        for (const auto& record : getLastLogMessages(20))
            lines << QStringLiteral("%1/%2/%3")
                         .arg(record.category, loggingGetTypeStringFromType(record.type), record.message);
        for (const auto* line :
             {"default/debug/hello", "wine/error/err:seh broken", "wine/debug/fixme:x todo",
              "wine/warning/warn:y careful", "default/debug/other"})
            QVERIFY2(lines.contains(line), line);
        delete process;
    }

    void leavesClientsRunningWhenItEnds()
    {
        auto server = std::make_unique<ServerManager>("ks", QJsonObject());
        QSignalSpy started(server.get(), &ServerManager::processStarted);
        server->startProcess(script("exec sleep 30"), {}, {}, {});
        auto* process = started.first().at(1).value<AttachedProcess*>();
        QTRY_VERIFY(process->processId() > 0);
        const auto pid = static_cast<pid_t>(process->processId());
        server.reset();
        delete process;
        QCOMPARE(::kill(pid, 0), 0);
        ::kill(pid, SIGKILL);
    }

    void knowsAProcessByItsId()
    {
        const AttachedProcess process(4711);
        QCOMPARE(process.processId(), 4711);
        QCOMPARE(process.state(), QProcess::NotRunning);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(AttachedProcess().processId(), 0);
    }
};

VELKOR_TEST_MAIN(TestClientLaunch)
#include "tst_clientlaunch.moc"
