#pragma once

#include <QObject>
#include <QVector>

class QWebSocket;
class QWebSocketCorsAuthenticator;
class QWebSocketServer;

/**
 * A WebSocket server on 127.0.0.1 through which programs of this machine send texts to the page. It sends
 * nothing back. Programs that send no Origin are welcome, and so is the launcher's own web host; any other
 * web page is refused, and so are messages of more than 1 MiB. Main thread.
 */
class SocketHandler : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maxMessageBytes = qint64(1024) * 1024;

    /** ownHost: "host" or "host:port" of the web pages that may connect. */
    explicit SocketHandler(const QString& ownHost, QObject* parent = nullptr);
    /** Drops all clients. */
    ~SocketHandler() override;

    /** Returns false when the port cannot be had. 0 takes any free one. */
    bool startListening(quint16 port);
    quint16 port() const;

signals:
    void textMessageReceived(const QString& message);
    void closed();

private slots:
    void onConnected();
    void onDisconnected();

private:
    void onOriginReceived(QWebSocketCorsAuthenticator* authenticator) const;

    const QString m_ownHost;
    QWebSocketServer* const m_server;
    QVector<QWebSocket*> m_clients;
};
