#include "tools/loglens/logreceiver.h"

#include <QTcpSocket>

// A message that never ends is cut here.
static constexpr int maxMessageLength = 1 << 20;

LogReceiver::LogReceiver(QObject* parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &LogReceiver::onNewConnection);
}

// The sockets end with the server, after this object's own part is gone.
LogReceiver::~LogReceiver()
{
    for (auto socket = m_connections.keyBegin(); socket != m_connections.keyEnd(); ++socket)
        (*socket)->disconnect(this);
}

bool LogReceiver::listen(quint16 port) { return m_server.listen(QHostAddress::LocalHost, port); }

void LogReceiver::onNewConnection()
{
    while (auto* socket = m_server.nextPendingConnection()) {
        m_connections.insert(socket, {});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            onReadyRead(socket);
            m_connections.remove(socket);
            socket->deleteLater();
            emit launchersChanged();
        });
        emit launchersChanged();
    }
}

void LogReceiver::onReadyRead(QTcpSocket* socket)
{
    const auto found = m_connections.find(socket);
    if (found == m_connections.end())
        return;
    auto& buffer = found->buffer;
    buffer += socket->readAll();
    QVector<LogRecord> records;
    int at = 0;
    bool valid = true;
    for (; valid && buffer.size() - at >= LogRecord::size; at += LogRecord::size)
        valid = take(buffer.mid(at, LogRecord::size), &*found, &records);
    buffer.remove(0, valid ? at : buffer.size());
    if (!records.isEmpty())
        emit received(records);
    if (!valid) {
        emit refused();
        socket->abort();
    }
}

bool LogReceiver::take(const QByteArray& bytes, Connection* connection, QVector<LogRecord>* records)
{
    LogRecord record;
    if (!decodeLogRecord(bytes, &record))
        return false;
    auto& unfinished = connection->unfinished;
    if (connection->hasUnfinished)
        unfinished.message += record.message;
    else
        unfinished = record;
    connection->hasUnfinished = record.continues && unfinished.message.size() < maxMessageLength;
    if (!connection->hasUnfinished) {
        unfinished.continues = false;
        records->append(unfinished);
    }
    return true;
}
