#pragma once

#include <QAbstractSocket>
#include <QMap>
#include <QObject>
#include <QSslError>
#include <QStringList>

#include <chrono>

class QSslSocket;
struct Deployment;

/**
 * Tells whether a TLS connection can be opened to each of a list of hosts. All hosts are tried at once; no
 * request is sent. A host counts as reachable when the handshake completes. Main thread.
 */
class ConnectionChecker : public QObject
{
    Q_OBJECT

public:
    /** timeout: how long to wait for one host. */
    explicit ConnectionChecker(QObject* parent = nullptr,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10));

    /** Starts a check of the hosts, "host" or "host:port"; without a port it is 443. */
    void startSecureConnectionCheck(const QStringList& hosts);

    /**
     * For each host of the check "ok", "certErrorIgnored" or an error text; empty while no answer has come.
     * A later answer replaces an earlier one.
     */
    QMap<QString, QString> results() const { return m_results; }

signals:
    /** A host failed; may come twice for one host. */
    void connectionFailed(const QString& host, const QString& error);
    /** Every host has a result; a late answer makes it come again. */
    void finished();

private slots:
    void onEncrypted();
    void onError(QAbstractSocket::SocketError error);
    void onSslErrors(const QList<QSslError>& errors);

private:
    void connectTo(const QString& host);
    void fail(const QString& host, const QString& error);
    void onTimeout(QSslSocket* socket);
    void setResult(const QString& host, const QString& result);

    const std::chrono::milliseconds m_timeout;
    QMap<QString, QString> m_results;
};

/** The hosts that the launcher needs, each once: what the connection check and the diagnostics look at. */
QStringList serviceHosts(const Deployment& deployment);
