#include "tests/e2e/pagedriver.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

int freePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : 0;
}

PageDriver::~PageDriver() = default;

// The list is small and comes from this machine, in one plain answer.
QJsonArray PageDriver::targets() const
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_port));
    if (!socket.waitForConnected(1000))
        return {};
    socket.write("GET /json HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    const auto isComplete = [&answer] {
        const int head = answer.indexOf("\r\n\r\n");
        const int field = answer.indexOf("Content-Length:");
        return head > 0 && field > 0 &&
               answer.size() >=
                   head + 4 + answer.mid(field + 15, answer.indexOf('\r', field) - field - 15).toInt();
    };
    while (!isComplete() && socket.waitForReadyRead(1000))
        answer += socket.readAll();
    return QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n") + 4)).array();
}

QStringList PageDriver::addresses() const
{
    QStringList found;
    const auto all = targets();
    for (const auto& target : all) {
        if (target.toObject().value(QLatin1String("type")) == QLatin1String("page"))
            found << target.toObject().value(QLatin1String("url")).toString();
    }
    return found;
}

bool PageDriver::attach(const QString& addressPart, int milliseconds)
{
    QString address;
    const bool found = QTest::qWaitFor(
        [&] {
            const auto all = targets();
            for (const auto& target : all) {
                const auto object = target.toObject();
                if (object.value(QLatin1String("url")).toString().contains(addressPart))
                    address = QStringLiteral("ws://127.0.0.1:%1/devtools/page/%2")
                                  .arg(m_port)
                                  .arg(object.value(QLatin1String("id")).toString());
            }
            return !address.isEmpty();
        },
        milliseconds);
    if (!found)
        return false;
    m_socket = std::make_unique<QWebSocket>();
    QObject::connect(m_socket.get(), &QWebSocket::textMessageReceived, m_socket.get(),
                     [this](const QString& text) {
                         const auto message = QJsonDocument::fromJson(text.toUtf8()).object();
                         if (message.value(QLatin1String("id")).toInt() == m_lastId)
                             m_answer = message;
                     });
    m_socket->open(QUrl(address));
    const bool connected =
        QTest::qWaitFor([this] { return m_socket->state() == QAbstractSocket::ConnectedState; }, 10000);
    if (!connected)
        qWarning().noquote() << address << m_socket->errorString();
    return connected;
}

QJsonObject PageDriver::request(const QString& method, const QJsonObject& parameters)
{
    m_answer = {};
    ++m_lastId;
    if (!m_socket)
        return {};
    m_socket->sendTextMessage(
        QString::fromUtf8(QJsonDocument(QJsonObject{{QStringLiteral("id"), m_lastId},
                                                    {QStringLiteral("method"), method},
                                                    {QStringLiteral("params"), parameters}})
                              .toJson(QJsonDocument::Compact)));
    const auto isOver = [this] {
        return !m_answer.isEmpty() || m_socket->state() != QAbstractSocket::ConnectedState;
    };
    if (!QTest::qWaitFor(isOver, 10000))
        qWarning().noquote() << "The page does not answer:" << method;
    return m_answer.value(QLatin1String("result")).toObject();
}

QVariant PageDriver::evaluate(const QString& expression)
{
    const auto result =
        request(QStringLiteral("Runtime.evaluate"), {{QStringLiteral("expression"), expression},
                                                     {QStringLiteral("returnByValue"), true},
                                                     {QStringLiteral("awaitPromise"), true},
                                                     {QStringLiteral("userGesture"), true}});
    if (result.contains(QLatin1String("exceptionDetails")))
        return {};
    return result.value(QLatin1String("result")).toObject().value(QLatin1String("value")).toVariant();
}

bool PageDriver::waitFor(const QString& expression, int milliseconds)
{
    return QTest::qWaitFor([&] { return evaluate(expression).toBool(); }, milliseconds);
}

bool PageDriver::click(const QString& selector)
{
    const auto element = QStringLiteral("document.querySelector(`%1`)").arg(selector);
    return waitFor(QStringLiteral("!!%1 && !%1.disabled").arg(element)) &&
           evaluate(QStringLiteral("%1.click(); true").arg(element)).toBool();
}

bool PageDriver::type(const QString& selector, const QString& text)
{
    if (!evaluate(QStringLiteral("document.querySelector(`%1`).focus(); true").arg(selector)).toBool())
        return false;
    request(QStringLiteral("Input.insertText"), {{QStringLiteral("text"), text}});
    return evaluate(QStringLiteral("document.querySelector(`%1`).value").arg(selector)).toString() == text;
}
