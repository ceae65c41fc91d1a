#include "web/sockethandler.h"

#include <QDebug>
#include <QUrl>
#include <QWebSocket>
#include <QWebSocketCorsAuthenticator>
#include <QWebSocketServer>

SocketHandler::SocketHandler(const QString& ownHost, QObject* parent)
    : QObject(parent), m_ownHost(ownHost),
      m_server(new QWebSocketServer(QStringLiteral("Velkor Command Handler"), QWebSocketServer::NonSecureMode,
                                    this))
{
    connect(m_server, &QWebSocketServer::newConnection, this, &SocketHandler::onConnected);
    connect(m_server, &QWebSocketServer::closed, this, &SocketHandler::closed);
    connect(m_server, &QWebSocketServer::originAuthenticationRequired, this,
            &SocketHandler::onOriginReceived);
}

SocketHandler::~SocketHandler()
{
    m_server->close();
    for (auto* client : qAsConst(m_clients)) {
        client->disconnect(this);
        delete client;
    }
}

bool SocketHandler::startListening(quint16 port)
{
    if (!m_server->listen(QHostAddress(QHostAddress::LocalHost), port)) {
        qWarning() << "SocketHandler failed to listen on port" << port;
        return false;
    }
    qDebug() << "SocketHandler listening on port" << m_server->serverPort();
    return true;
}

quint16 SocketHandler::port() const { return m_server->serverPort(); }

// A web browser tells which page wants to connect, and no page can change that.
void SocketHandler::onOriginReceived(QWebSocketCorsAuthenticator* authenticator) const
{
    const auto origin = authenticator->origin();
    const bool allowed = origin.isEmpty() || QUrl(origin) == QUrl(QStringLiteral("https://") + m_ownHost);
    if (!allowed)
        qWarning().noquote() << "SocketHandler refuses a page of" << origin.left(200);
    authenticator->setAllowed(allowed);
}

void SocketHandler::onConnected()
{
    while (auto* client = m_server->nextPendingConnection()) {
        client->setMaxAllowedIncomingMessageSize(maxMessageBytes);
        client->setMaxAllowedIncomingFrameSize(maxMessageBytes);
        connect(client, &QWebSocket::textMessageReceived, this, &SocketHandler::textMessageReceived);
        connect(client, &QWebSocket::disconnected, this, &SocketHandler::onDisconnected);
        m_clients.append(client);
    }
}

void SocketHandler::onDisconnected()
{
    auto* client = qobject_cast<QWebSocket*>(sender());
    qDebug() << "socketDisconnected:" << client;
    m_clients.removeAll(client);
    client->deleteLater();
}
