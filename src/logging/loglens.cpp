#include "logging/loglens.h"

#include "logging/logmessage.h"
#include "logging/logrecord.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkProxy>

namespace
{
constexpr int retryMs = 5000;
/** More than so many bytes are not handed to the system at a time, so that what waits can still be dropped.
 */
constexpr qint64 maxInSocket = 65536;

int typeOf(const QString& typeName)
{
    int type = 0;
    while (type < 4 && loggingGetTypeStringFromType(type) != typeName)
        ++type;
    return type;
}
} // namespace

LogLens::LogLens(quint16 port) : m_port(port)
{
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &LogLens::open);
    connect(&m_socket, &QTcpSocket::connected, this, &LogLens::sendWaiting);
    connect(&m_socket, &QTcpSocket::bytesWritten, this, &LogLens::sendWaiting);
    connect(&m_socket, &QTcpSocket::stateChanged, this, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            m_retry.start(retryMs);
    });
}

// A socket that ends tells so, when the timer is gone already.
LogLens::~LogLens() { m_socket.disconnect(this); }

LogLens* LogLens::instance()
{
    static auto* lens = new LogLens;
    return lens;
}

void connectLogLens() { LogLens::instance()->connectToViewer(); }

void LogLens::connectToViewer()
{
    m_wanted = true;
    open();
}

void LogLens::open()
{
    if (m_socket.state() == QAbstractSocket::UnconnectedState)
        m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port, QIODevice::WriteOnly);
}

void LogLens::outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                            const QString& message, int repeatCount)
{
    if (!m_wanted)
        return;
    LogRecord record;
    record.type = typeOf(typeName);
    record.msSinceEpoch = time.toMSecsSinceEpoch();
    record.processId = static_cast<quint32>(QCoreApplication::applicationPid());
    record.repeatCount = static_cast<quint32>(repeatCount);
    record.category = category;
    record.message = message;
    const auto records = encodeLogRecords(record);
    for (int at = 0; at < records.size(); at += LogRecord::size)
        m_waiting.push_back(records.mid(at, LogRecord::size));
    while (m_waiting.size() > static_cast<size_t>(maxWaiting))
        m_waiting.pop_front();
    sendWaiting();
}

void LogLens::sendWaiting()
{
    while (!m_waiting.empty() && m_socket.state() == QAbstractSocket::ConnectedState &&
           m_socket.bytesToWrite() < maxInSocket) {
        m_socket.write(m_waiting.front());
        m_waiting.pop_front();
    }
}
