#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <unistd.h>

/** The real launcher on networks as operators and players have them. */
class TestNetwork : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    static int freePort()
    {
        QTcpServer server;
        return server.listen(QHostAddress::LocalHost) ? server.serverPort() : 0;
    }

private slots:
    void init() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service.reset(); }

    void isServedByNginx()
    {
        const SampleFiles client{{"bin/exefile.exe", sampleBytes(1, 300000)}, {"a", "b"}};
        m_service->tree().publish("ks", "100", client);
        const QTemporaryDir state;
        const int port = freePort();
        const auto identity = m_service->backend().authority().issueForLoopback();
        writeSample(state.filePath("host.pem"), identity.certificate);
        writeSample(state.filePath("host.key"), identity.key);
        auto configuration = readSample(VELKOR_SOURCE "/docs/nginx.conf");
        configuration.replace("@TREE@", QFile::encodeName(m_service->tree().path()));
        configuration.replace("@STATE@", QFile::encodeName(state.path()));
        configuration.replace("@PORT@", QByteArray::number(port));
        if (geteuid() == 0) // its workers are somebody else otherwise, who cannot read the tree
            configuration.prepend("user root;\n");
        writeSample(state.filePath("nginx.conf"), configuration);
        QProcess nginx;
        nginx.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        nginx.start("/usr/sbin/nginx",
                    {"-e", state.filePath("error.log"), "-c", state.filePath("nginx.conf")});
        QVERIFY(nginx.waitForStarted());
        QTRY_VERIFY(QFile::exists(state.filePath("nginx.pid")));

        const auto host = QStringLiteral("127.0.0.1:%1").arg(port);
        m_service->backend().writeDeployment({{"binariesHost", host}, {"resourcesHost", host}});
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        auto staged = readFolder(launcher.stagingFolder("ks"));
        for (const auto* generated : {"start.ini", "resfileindex.txt", "resfileindex_prefetch.txt"})
            staged.remove(generated);
        QCOMPARE(staged, client);
        QVERIFY(m_service->content().requests().empty());
        nginx.terminate();
        QVERIFY(nginx.waitForFinished());
    }

    void usesTheSystemsProxyWhereItIsWanted_data()
    {
        QTest::addColumn<bool>("wanted");
        QTest::newRow("wanted") << true;
        QTest::newRow("not wanted") << false;
    }
    void usesTheSystemsProxyWhereItIsWanted()
    {
        QFETCH(bool, wanted);
        // A host that only a proxy could know: what is on this machine is never asked for through one.
        m_service->backend().writeDeployment({{"binariesHost", "content.velkor.invalid"}});
        QTcpServer proxy; // sends everybody away
        QByteArray asked;
        connect(&proxy, &QTcpServer::newConnection, &proxy, [&] {
            auto* socket = proxy.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [&asked, socket] {
                asked += socket->readAll();
                socket->write("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
                socket->disconnectFromHost();
            });
        });
        QVERIFY(proxy.listen(QHostAddress::LocalHost));
        LauncherProcess launcher(m_service->backend());
        launcher.set("LauncherUseProxy", wanted);
        for (const auto* variable : {"http_proxy", "https_proxy"})
            launcher.setEnvironment(variable, QStringLiteral("http://127.0.0.1:%1").arg(proxy.serverPort()));
        launcher.setEnvironment("no_proxy", {});
        launcher.start({"-d", "-k", "-e"});
        QTRY_COMPARE_WITH_TIMEOUT(launcher.process().state(), QProcess::NotRunning, 60000);
        QCOMPARE(asked.contains("CONNECT content.velkor.invalid:443"), wanted);
    }
};

VELKOR_TEST_MAIN(TestNetwork)
#include "tst_e2e_network.moc"
