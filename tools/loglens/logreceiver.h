#pragma once

#include "logging/logrecord.h"

#include <QHash>
#include <QTcpServer>

class QTcpSocket;

/** Takes the live logs of launchers on this machine and puts messages that came in parts together again. */
class LogReceiver : public QObject
{
    Q_OBJECT

public:
    explicit LogReceiver(QObject* parent = nullptr);
    ~LogReceiver() override;

    /** Listens on 127.0.0.1; port 0 takes a free one. Returns false when the port is taken. */
    bool listen(quint16 port);
    int port() const { return m_server.serverPort(); }
    QString errorString() const { return m_server.errorString(); }
    int launchers() const { return m_connections.size(); }

signals:
    /** Whole messages, in the order in which they came. */
    void received(const QVector<LogRecord>& records);
    void launchersChanged();
    /** A connection sent what is no log, and was closed. */
    void refused();

private:
    struct Connection {
        QByteArray buffer;
        LogRecord unfinished;
        bool hasUnfinished = false;
    };

    void onNewConnection();
    void onReadyRead(QTcpSocket* socket);
    /** Returns false when the bytes are no record. */
    static bool take(const QByteArray& bytes, Connection* connection, QVector<LogRecord>* records);

    QTcpServer m_server;
    QHash<QTcpSocket*, Connection> m_connections;
};
