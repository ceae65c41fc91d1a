#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSslCertificate>
#include <QStringList>

#include <chrono>

class QSslError;
class QSslSocket;

/** What a look at one host has found. Times are in milliseconds, each for its step alone; -1 if not reached.
 */
struct HostFinding {
    enum class Verdict { Good, Slow, NoAddress, NotReachable, NoAnswer, BadCertificate, NoSecureConnection };
    QString host;
    Verdict verdict = Verdict::NoAnswer;
    /** The system's words for what went wrong; empty if nothing did. */
    QString error;
    QStringList addresses;
    qint64 lookupMs = -1;
    qint64 connectMs = -1;
    qint64 handshakeMs = -1;
    QString protocol;
    QString cipher;
    QList<QSslCertificate> chain;

    /** A paragraph for people. */
    QString describe() const;
};

/** Looks one host up, connects to it, and makes a secure connection; sends no request. Main thread. */
class HostProbe : public QObject
{
    Q_OBJECT

public:
    /** host: "host" or "host:port". timeout: for all steps together; slower than slow counts as slow. */
    explicit HostProbe(const QString& host, std::chrono::milliseconds timeout, std::chrono::milliseconds slow,
                       QObject* parent = nullptr);

    /** finished() follows, once. */
    void start();

signals:
    void finished(const HostFinding& finding);

private:
    void onLookedUp(const QStringList& addresses, const QString& error);
    void onConnected();
    void onEncrypted();
    void onSslErrors(const QList<QSslError>& errors);
    void onSocketError();
    void onTimeout();
    void end(HostFinding::Verdict verdict, const QString& error = QString());

    const std::chrono::milliseconds m_timeout;
    const std::chrono::milliseconds m_slow;
    QString m_name;
    quint16 m_port = 0;
    HostFinding m_finding;
    QSslSocket* const m_socket;
    QElapsedTimer m_step;
    bool m_ended = false;
};
