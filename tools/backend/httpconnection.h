#pragma once

#include "tools/backend/faults.h"

#include <QFile>
#include <QHash>
#include <QObject>
#include <QSslSocket>

#include <functional>
#include <memory>

struct HttpRequest {
    QString method;
    /** Decoded, without the query. */
    QString path;
    QString query;
    /** Names in lower case. */
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;
};

struct HttpResponse {
    int status = 200;
    QByteArray contentType = "application/octet-stream";
    QByteArray body;
    /** Sent instead of the body when it is not empty. */
    QString file;
};

/** One connection of a server: reads requests, sends responses, with faults on demand. Deletes itself at its
 * end. */
class HttpConnection : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<HttpResponse(const HttpRequest&, Fault* fault)>;

    /** Takes ownership of the socket. */
    HttpConnection(QSslSocket* socket, Handler handler, QObject* parent);

private:
    void readRequests();
    bool takeRequest(HttpRequest* request);
    void respond(const HttpRequest& request);
    qint64 startOf(const HttpRequest& request) const;
    void sendHead(const HttpResponse& response);
    void sendBody();
    void sendSlowly();
    QByteArray nextBytes(qint64 atMost);

    QSslSocket* const m_socket;
    const Handler m_handler;
    QByteArray m_input;
    bool m_busy = false; // a response is being sent

    // The response in progress
    Fault m_fault;
    QByteArray m_body;
    std::unique_ptr<QFile> m_file;
    qint64 m_length = 0;
    qint64 m_sent = 0;
};
