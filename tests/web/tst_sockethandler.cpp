#include "tests/testkit/testmain.h"
#include "web/sockethandler.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QWebSocket>

class TestSocketHandler : public QObject
{
    Q_OBJECT

private:
    static QUrl addressOf(const SocketHandler& handler)
    {
        return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(handler.port()));
    }
    static bool connects(QWebSocket* client, const SocketHandler& handler)
    {
        client->open(addressOf(handler));
        return QTest::qWaitFor([client] { return client->state() == QAbstractSocket::ConnectedState; }, 2000);
    }

private slots:
    void passesTextsOn()
    {
        SocketHandler handler("own.example");
        QSignalSpy texts(&handler, &SocketHandler::textMessageReceived);
        QVERIFY(handler.startListening(0));
        QWebSocket first;
        QWebSocket second;
        QVERIFY(connects(&first, handler));
        QVERIFY(connects(&second, handler));
        first.sendBinaryMessage("binary");
        first.sendTextMessage("one");
        QTRY_COMPARE(texts.size(), 1);
        QCOMPARE(texts.at(0).at(0).toString(), QString("one"));
        first.close();
        second.sendTextMessage("two");
        QTRY_COMPARE(texts.size(), 2);
    }

    void refusesMessagesThatAreTooLong()
    {
        SocketHandler handler("own.example");
        QSignalSpy texts(&handler, &SocketHandler::textMessageReceived);
        QVERIFY(handler.startListening(0));
        QWebSocket client;
        QVERIFY(connects(&client, handler));
        client.sendTextMessage(QString(SocketHandler::maxMessageBytes, 'x'));
        QTRY_COMPARE(texts.size(), 1);
        client.sendTextMessage(QString(SocketHandler::maxMessageBytes + 1, 'x'));
        QTRY_COMPARE(client.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(texts.size(), 1);
    }

    void looksAtTheOrigin_data()
    {
        QTest::addColumn<QString>("origin");
        QTest::addColumn<bool>("welcome");
        QTest::newRow("the launcher's own host") << "https://own.example" << true;
        QTest::newRow("another page") << "https://evil.example" << false;
        QTest::newRow("own host without encryption") << "http://own.example" << false;
        QTest::newRow("own host, another port") << "https://own.example:444" << false;
        QTest::newRow("a page of nobody") << "null" << false;
    }
    void looksAtTheOrigin()
    {
        QFETCH(QString, origin);
        SocketHandler handler("own.example");
        QVERIFY(handler.startListening(0));
        QWebSocket client(origin);
        QTEST(connects(&client, handler), "welcome");
    }

    void tellsThatAPortIsTaken()
    {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        SocketHandler handler("own.example");
        QVERIFY(!handler.startListening(other.serverPort()));
    }
};

VELKOR_TEST_MAIN(TestSocketHandler)
#include "tst_sockethandler.moc"
