#include "logging/messagehandler.h"
#include "maintenance/diagnosticsdialog.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"
#include "tools/backend/certificates.h"

#include <QClipboard>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>

using namespace std::chrono_literals;

/** Passes connections on to a server, each after a while. */
class SlowRoad : public QTcpServer
{
public:
    SlowRoad(int targetPort, int delayMs) : m_targetPort(targetPort), m_delayMs(delayMs)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            auto* client = nextPendingConnection();
            QTimer::singleShot(m_delayMs, client, [this, client] { passOn(client); });
        });
    }

private:
    void passOn(QTcpSocket* client)
    {
        auto* target = new QTcpSocket(client);
        target->connectToHost(QHostAddress::LocalHost, static_cast<quint16>(m_targetPort));
        connect(target, &QTcpSocket::connected, client,
                [client, target] { target->write(client->readAll()); });
        connect(client, &QTcpSocket::readyRead, target, [client, target] {
            if (target->state() == QAbstractSocket::ConnectedState)
                target->write(client->readAll());
        });
        connect(target, &QTcpSocket::readyRead, client,
                [client, target] { client->write(target->readAll()); });
    }
    const int m_targetPort;
    const int m_delayMs;
};

class TestDiagnostics : public QObject
{
    Q_OBJECT

private:
    using Verdict = HostFinding::Verdict;
    std::unique_ptr<BackendFixture> m_service;
    const CertificateAuthority m_stranger;

    QString local(int port) const { return QStringLiteral("127.0.0.1:%1").arg(port); }
    Diagnostics::Plan plan() const
    {
        Diagnostics::Plan plan;
        plan.hosts = QStringList{local(m_service->content().port())};
        plan.cacheFolder = QDir::tempPath();
        plan.timeout = 1500ms;
        plan.slow = 600ms;
        return plan;
    }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void cleanupTestCase() { m_service.reset(); }

    void tellsTheVerdictOfEachHost()
    {
        const auto good = local(m_service->content().port());
        HttpsServer stranger(m_stranger.issueForLoopback(), HttpsServer::Handler());
        QVERIFY(stranger.open());
        HttpsServer refusing(m_stranger.issueForLoopback(), HttpsServer::Handler());
        QVERIFY(refusing.open());
        refusing.refuse();
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        QTcpServer plain; // speaks, but not securely
        QVERIFY(plain.listen(QHostAddress::LocalHost));
        connect(&plain, &QTcpServer::newConnection, this, [&] {
            auto* client = plain.nextPendingConnection();
            client->write("220 this is no secure server\r\n");
            client->disconnectFromHost();
        });
        SlowRoad slow(m_service->content().port(), 800);
        QMap<QString, Verdict> expected{{good, Verdict::Good},
                                        {local(stranger.port()), Verdict::BadCertificate},
                                        {local(refusing.port()), Verdict::NotReachable},
                                        {local(silent.serverPort()), Verdict::NoAnswer},
                                        {local(plain.serverPort()), Verdict::NoSecureConnection},
                                        {local(slow.serverPort()), Verdict::Slow},
                                        {"no-such-host.invalid", Verdict::NoAddress}};
        auto all = plan();
        all.hosts = expected.keys();
        Diagnostics diagnostics;
        QSignalSpy finished(&diagnostics, &Diagnostics::finished);
        diagnostics.start(all);
        QVERIFY(finished.wait(20000));
        QCOMPARE(diagnostics.findings().size(), expected.size());
        for (const auto& finding : diagnostics.findings()) {
            // A resolver that does not answer at all takes longer than we wait.
            if (finding.host == "no-such-host.invalid" && finding.verdict == Verdict::NoAnswer)
                continue;
            QVERIFY2(finding.verdict == expected.value(finding.host), qPrintable(finding.describe()));
            QVERIFY(diagnostics.text().contains(finding.host));
        }
        const auto text = diagnostics.text();
        for (const auto* part : {"TLS 1.3", "Certificate: ", "valid from", "Connection refused",
                                 "cannot prove who it is", "does not answer", "Writing to the cache works"})
            QVERIFY2(text.contains(part), part);
    }

    void measuresADownload()
    {
        writeSample(m_service->tree().path() + "/large", QByteArray(2000000, 'x'));
        auto one = plan();
        one.download = QUrl(m_service->baseUrl() + "large");
        Diagnostics diagnostics;
        QSignalSpy finished(&diagnostics, &Diagnostics::finished);
        diagnostics.start(one);
        QVERIFY(finished.wait(20000));
        QVERIFY2(diagnostics.text().contains("Download: 1.91 MB in"), qPrintable(diagnostics.text()));
        one.download = QUrl(m_service->baseUrl() + "absent");
        diagnostics.start(one);
        QVERIFY(finished.wait(20000));
        QVERIFY2(diagnostics.text().contains("Download: Failed after"), qPrintable(diagnostics.text()));
    }

    void tellsWhyTheDiskCannotBeWritten()
    {
        const QTemporaryDir folder;
        const auto good = diagnoseDiskWrite(folder.path() + "/new");
        QVERIFY(good.canWrite && good.freeBytes > 0 && good.error.isEmpty());
        QVERIFY(QDir(folder.path() + "/new").isEmpty());
        const auto bad = diagnoseDiskWrite("/proc/nothing");
        QVERIFY(!bad.canWrite && !bad.error.isEmpty());
        QVERIFY(bad.describe().contains("Writing to the cache fails"));
    }

    void showsNothingPersonal()
    {
        logRedactor().addSecret("a-very-secret-token");
        qputenv("USER", "alice");
        const auto clean =
            withoutPersonalData("a-very-secret-token " + QDir::homePath() + "/.velkor of alice, malice kept");
        QCOMPARE(clean, QStringLiteral("[redacted] ~/.velkor of [user], malice kept"));
    }

    void copiesAndSaves()
    {
        DiagnosticsDialog dialog(plan());
        auto* text = dialog.findChild<QPlainTextEdit*>();
        const auto buttons = dialog.findChildren<QPushButton*>();
        const auto button = [&](const QString& label) {
            return *std::find_if(buttons.begin(), buttons.end(),
                                 [&](const QPushButton* b) { return b->text() == label; });
        };
        QVERIFY(!button("&Run again")->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(button("&Run again")->isEnabled(), 20000);
        QVERIFY(text->toPlainText().contains(": good"));
        button("&Copy")->click();
        QCOMPARE(QApplication::clipboard()->text(), text->toPlainText());
        const QTemporaryDir folder;
        QCOMPARE(dialog.saveTo(folder.filePath("result.txt")), QString());
        QCOMPARE(QString::fromUtf8(readSample(folder.filePath("result.txt"))), text->toPlainText());
        QVERIFY(!dialog.saveTo("/proc/nothing/result.txt").isEmpty());
    }
};

VELKOR_TEST_MAIN(TestDiagnostics)
#include "tst_diagnostics.moc"
