#include "maintenance/connectionchecker.h"

#include "settings/settings.h"

#include <QDebug>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

namespace
{
constexpr int httpsPort = 443;

QString okResult() { return QStringLiteral("ok"); }
QString ignoredResult() { return QStringLiteral("certErrorIgnored"); }

QString hostOf(const QObject* socket) { return socket->property("host").toString(); }
} // namespace

ConnectionChecker::ConnectionChecker(QObject* parent, std::chrono::milliseconds timeout)
    : QObject(parent), m_timeout(timeout)
{
}

void ConnectionChecker::startSecureConnectionCheck(const QStringList& hosts)
{
    m_results.clear();
    for (const auto& host : hosts)
        m_results.insert(host, QString());
    const auto checked = m_results.keys();
    for (const auto& host : checked)
        connectTo(host);
}

void ConnectionChecker::connectTo(const QString& host)
{
    auto* socket = new QSslSocket(this);
    socket->setProperty("host", host);
    connect(socket, &QSslSocket::encrypted, this, &ConnectionChecker::onEncrypted);
    connect(socket, &QAbstractSocket::errorOccurred, this, &ConnectionChecker::onError);
    connect(socket, QOverload<const QList<QSslError>&>::of(&QSslSocket::sslErrors), this,
            &ConnectionChecker::onSslErrors);
    QTimer::singleShot(m_timeout, socket, [this, socket] { onTimeout(socket); });
    qDebug().noquote() << "Checking connection to" << host;
    const auto url = QUrl(QStringLiteral("https://") + host);
    socket->connectToHostEncrypted(url.host(), static_cast<quint16>(url.port(httpsPort)));
}

void ConnectionChecker::onEncrypted()
{
    auto* socket = sender();
    qDebug().noquote() << "connected" << hostOf(socket);
    setResult(hostOf(socket), okResult());
    socket->deleteLater();
}

void ConnectionChecker::onError(QAbstractSocket::SocketError error)
{
    const auto* socket = qobject_cast<QSslSocket*>(sender());
    const auto host = hostOf(socket);
    if (m_results.value(host) == okResult()) // what happens to the connection afterwards is no matter
        return;
    qDebug().noquote() << "connection error:" << host << socket->errorString();
    if (error == QAbstractSocket::SslHandshakeFailedError && Settings::instance()->getIgnoreCertErrors())
        setResult(host, ignoredResult());
    else
        fail(host, socket->errorString());
}

void ConnectionChecker::onSslErrors(const QList<QSslError>& errors)
{
    const auto host = hostOf(sender());
    QStringList texts;
    for (const auto& error : errors)
        texts << error.errorString();
    qDebug().noquote() << "SSL error:" << host << texts.join(QStringLiteral(", "));
    if (Settings::instance()->getIgnoreCertErrors()) {
        setResult(host, ignoredResult());
        return;
    }
    if (errors.isEmpty())
        qWarning() << "Unspecified SSL error";
    fail(host, errors.isEmpty() ? QStringLiteral("Unknown error") : texts.join(QStringLiteral(", ")));
}

void ConnectionChecker::onTimeout(QSslSocket* socket)
{
    const auto host = hostOf(socket);
    socket->disconnect(this);
    socket->abort();
    if (!m_results.value(host).isEmpty())
        return;
    qDebug().noquote() << "connection error:" << host << "no answer";
    fail(host, tr("No answer within %n second(s)", nullptr,
                  static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(m_timeout).count())));
}

void ConnectionChecker::fail(const QString& host, const QString& error)
{
    m_results.insert(host, error);
    emit connectionFailed(host, error);
    setResult(host, error);
}

void ConnectionChecker::setResult(const QString& host, const QString& result)
{
    m_results.insert(host, result);
    for (const auto& known : qAsConst(m_results)) {
        if (known.isEmpty())
            return;
    }
    emit finished();
}

QStringList serviceHosts(const Deployment& deployment)
{
    const QUrl collector(deployment.sentryDsn);
    const auto collectorHost = collector.port() > 0
                                   ? QStringLiteral("%1:%2").arg(collector.host()).arg(collector.port())
                                   : collector.host();
    QStringList hosts{deployment.binariesHost,    deployment.resourcesHost, deployment.apiGatewayHost,
                      deployment.launcherWebHost, deployment.eventGateway,  collectorHost};
    hosts.removeDuplicates();
    return hosts;
}
