#include "maintenance/hostprobe.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QHostInfo>
#include <QSslCipher>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

namespace
{
constexpr int defaultPort = 443;

QString hostText(const char* text) { return QCoreApplication::translate("HostProbe", text); }

QString verdictText(HostFinding::Verdict verdict)
{
    switch (verdict) {
    case HostFinding::Verdict::Good:
        return hostText("good");
    case HostFinding::Verdict::Slow:
        return hostText("reachable, but slow");
    case HostFinding::Verdict::NoAddress:
        return hostText("the name has no address");
    case HostFinding::Verdict::NotReachable:
        return hostText("cannot be connected to");
    case HostFinding::Verdict::NoAnswer:
        return hostText("does not answer");
    case HostFinding::Verdict::BadCertificate:
        return hostText("cannot prove who it is");
    case HostFinding::Verdict::NoSecureConnection:
        return hostText("no secure connection can be made");
    }
    return {};
}

QString protocolName(QSsl::SslProtocol protocol)
{
    switch (protocol) {
    case QSsl::TlsV1_2:
        return QStringLiteral("TLS 1.2");
    case QSsl::TlsV1_3:
        return QStringLiteral("TLS 1.3");
    default:
        return QStringLiteral("TLS");
    }
}
} // namespace

QString HostFinding::describe() const
{
    QStringList lines{QStringLiteral("%1: %2").arg(host, verdictText(verdict))};
    if (!error.isEmpty())
        lines << hostText("  Error: %1").arg(error);
    if (!addresses.isEmpty())
        lines << hostText("  Addresses: %1 (%2 ms)").arg(addresses.join(QStringLiteral(", "))).arg(lookupMs);
    if (connectMs >= 0)
        lines << hostText("  Connected in %1 ms").arg(connectMs);
    if (handshakeMs >= 0)
        lines << hostText("  Secured in %1 ms with %2, %3").arg(handshakeMs).arg(protocol, cipher);
    for (const auto& certificate : chain)
        lines << hostText("  Certificate: %1, by %2, valid from %3 to %4")
                     .arg(certificate.subjectDisplayName(), certificate.issuerDisplayName(),
                          certificate.effectiveDate().toString(Qt::ISODate),
                          certificate.expiryDate().toString(Qt::ISODate));
    return lines.join(QLatin1Char('\n'));
}

HostProbe::HostProbe(const QString& host, std::chrono::milliseconds timeout, std::chrono::milliseconds slow,
                     QObject* parent)
    : QObject(parent), m_timeout(timeout), m_slow(slow), m_socket(new QSslSocket(this))
{
    const auto url = QUrl(QStringLiteral("https://") + host);
    m_name = url.host();
    m_port = static_cast<quint16>(url.port(defaultPort));
    m_finding.host = host;
    connect(m_socket, &QAbstractSocket::connected, this, &HostProbe::onConnected);
    connect(m_socket, &QSslSocket::encrypted, this, &HostProbe::onEncrypted);
    connect(m_socket, QOverload<const QList<QSslError>&>::of(&QSslSocket::sslErrors), this,
            &HostProbe::onSslErrors);
    connect(m_socket, &QAbstractSocket::errorOccurred, this, &HostProbe::onSocketError);
}

void HostProbe::start()
{
    m_step.start();
    QTimer::singleShot(m_timeout, this, &HostProbe::onTimeout);
    QHostInfo::lookupHost(m_name, this, [this](const QHostInfo& info) {
        QStringList addresses;
        const auto found = info.addresses();
        for (const auto& address : found)
            addresses << address.toString();
        onLookedUp(addresses, info.error() == QHostInfo::NoError ? QString() : info.errorString());
    });
}

void HostProbe::onLookedUp(const QStringList& addresses, const QString& error)
{
    if (m_ended)
        return;
    m_finding.addresses = addresses;
    if (addresses.isEmpty()) {
        end(HostFinding::Verdict::NoAddress, error);
        return;
    }
    m_finding.lookupMs = m_step.restart();
    m_socket->connectToHostEncrypted(m_name, m_port);
}

void HostProbe::onConnected() { m_finding.connectMs = m_step.restart(); }

void HostProbe::onEncrypted()
{
    m_finding.handshakeMs = m_step.elapsed();
    m_finding.protocol = protocolName(m_socket->sessionProtocol());
    m_finding.cipher = m_socket->sessionCipher().name();
    m_finding.chain = m_socket->peerCertificateChain();
    const auto total = m_finding.lookupMs + m_finding.connectMs + m_finding.handshakeMs;
    end(total > m_slow.count() ? HostFinding::Verdict::Slow : HostFinding::Verdict::Good);
}

void HostProbe::onSslErrors(const QList<QSslError>& errors)
{
    QStringList texts;
    for (const auto& error : errors)
        texts << error.errorString();
    m_finding.chain = m_socket->peerCertificateChain();
    end(HostFinding::Verdict::BadCertificate, texts.join(QStringLiteral(", ")));
}

void HostProbe::onSocketError()
{
    const bool connected = m_finding.connectMs >= 0;
    end(connected ? HostFinding::Verdict::NoSecureConnection : HostFinding::Verdict::NotReachable,
        m_socket->errorString());
}

void HostProbe::onTimeout() { end(HostFinding::Verdict::NoAnswer); }

void HostProbe::end(HostFinding::Verdict verdict, const QString& error)
{
    if (std::exchange(m_ended, true))
        return;
    m_finding.verdict = verdict;
    m_finding.error = error;
    m_socket->disconnect(this);
    m_socket->abort();
    emit finished(m_finding);
}
