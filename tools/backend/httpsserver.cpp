#include "tools/backend/httpsserver.h"

#include "cache/safepath.h"

#include <QFileInfo>

HttpsServer::HttpsServer(const KeyAndCertificate& identity, Handler handler, QObject* parent)
    : QTcpServer(parent), m_key(identity.key, QSsl::Ec), m_certificate(identity.certificate),
      m_handler(std::move(handler))
{
}

bool HttpsServer::open()
{
    if (!isListening() && !listen(QHostAddress::LocalHost, m_port))
        return false;
    m_port = serverPort();
    return true;
}

void HttpsServer::refuse()
{
    close();
    const auto connections = findChildren<HttpConnection*>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(connections);
}

void HttpsServer::incomingConnection(qintptr descriptor)
{
    auto* socket = new QSslSocket;
    if (!socket->setSocketDescriptor(descriptor)) {
        delete socket;
        return;
    }
    socket->setLocalCertificate(m_certificate);
    socket->setPrivateKey(m_key);
    socket->setPeerVerifyMode(QSslSocket::VerifyNone);
    socket->startServerEncryption();
    new HttpConnection(
        socket, [this](const HttpRequest& request, Fault* fault) { return handle(request, fault); }, this);
}

HttpResponse HttpsServer::handle(const HttpRequest& request, Fault* fault)
{
    *fault = m_faults.take(request.path);
    auto response = m_handler(request);
    if (fault->kind == Fault::Kind::Status) {
        response = {fault->status, "text/plain", "fault", {}};
    }
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back({request, response.status});
    }
    emit requestAnswered(request.method, request.path, response.status);
    return response;
}

std::vector<LoggedRequest> HttpsServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void HttpsServer::clearRequests()
{
    const std::lock_guard lock(m_mutex);
    m_requests.clear();
}

HttpsServer::Handler serveFolder(const QString& folder)
{
    return [folder](const HttpRequest& request) -> HttpResponse {
        const auto relative = request.path.mid(1);
        const auto path = folder + QLatin1Char('/') + relative;
        if (!SafePath::isSafeText(relative) || !QFileInfo(path).isFile())
            return {404, "text/plain", "not found", {}};
        return {200, "application/octet-stream", {}, path};
    };
}
