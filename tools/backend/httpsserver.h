#pragma once

#include "tools/backend/certificates.h"
#include "tools/backend/httpconnection.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

#include <vector>

/** One request that a server has answered. */
struct LoggedRequest {
    HttpRequest request;
    int status = 0;
};

/**
 * An HTTPS server on a free port of 127.0.0.1. It lives on the thread it was created on; what is marked "any
 * thread" may be called from elsewhere while it works.
 */
class HttpsServer : public QTcpServer
{
    Q_OBJECT

public:
    using Handler = std::function<HttpResponse(const HttpRequest&)>;

    HttpsServer(const KeyAndCertificate& identity, Handler handler, QObject* parent = nullptr);

    /** Listens, on the same port as before if it listened already. */
    bool open();
    /** Connections are refused from now on, and those that exist are closed. */
    void refuse();

    /** Any thread, once open. */
    int port() const { return m_port; }
    /** Any thread. */
    FaultTable& faults() { return m_faults; }
    /** All requests since the last clearRequests(). Any thread. */
    std::vector<LoggedRequest> requests() const;
    void clearRequests();

signals:
    void requestAnswered(const QString& method, const QString& path, int status);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    HttpResponse handle(const HttpRequest& request, Fault* fault);

    const QSslKey m_key;
    const QSslCertificate m_certificate;
    const Handler m_handler;
    quint16 m_port = 0;
    FaultTable m_faults;
    mutable std::mutex m_mutex;
    std::vector<LoggedRequest> m_requests;
};

/** Serves the files below a folder. */
HttpsServer::Handler serveFolder(const QString& folder);
