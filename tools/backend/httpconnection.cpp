#include "tools/backend/httpconnection.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QUrl>

namespace
{
constexpr qint64 blockSize = qint64(256) * 1024;
constexpr int slowTickMs = 50;
constexpr int maxHeadSize = 64 * 1024;
} // namespace

HttpConnection::HttpConnection(QSslSocket* socket, Handler handler, QObject* parent)
    : QObject(parent), m_socket(socket), m_handler(std::move(handler))
{
    socket->setParent(this);
    connect(socket, &QSslSocket::readyRead, this, &HttpConnection::readRequests);
    connect(socket, &QSslSocket::disconnected, this, &QObject::deleteLater);
    connect(socket, &QSslSocket::encryptedBytesWritten, this, &HttpConnection::sendBody);
    connect(socket, &QSslSocket::errorOccurred, this, &QObject::deleteLater);
}

void HttpConnection::readRequests()
{
    m_input += m_socket->readAll();
    HttpRequest request;
    while (!m_busy && takeRequest(&request))
        respond(request);
    if (!m_busy && m_input.size() > maxHeadSize && !m_input.contains("\r\n\r\n"))
        m_socket->abort();
}

bool HttpConnection::takeRequest(HttpRequest* request)
{
    const int headEnd = m_input.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return false;
    const auto lines = m_input.left(headEnd).split('\n');
    const auto first = lines.first().trimmed().split(' ');
    *request = {};
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines[i].indexOf(':');
        request->headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
    }
    const int bodySize = qMax(request->headers.value("content-length").toInt(), 0);
    if (m_input.size() < headEnd + 4 + bodySize)
        return false;
    const QUrl url(QString::fromLatin1(first.value(1)));
    request->method = QString::fromLatin1(first.value(0));
    request->path = url.path(QUrl::FullyDecoded);
    request->query = url.query(QUrl::FullyEncoded);
    request->body = m_input.mid(headEnd + 4, bodySize);
    m_input.remove(0, headEnd + 4 + bodySize);
    return true;
}

void HttpConnection::respond(const HttpRequest& request)
{
    m_busy = true;
    m_fault = {};
    auto response = m_handler(request, &m_fault);
    m_file.reset();
    if (!response.file.isEmpty()) {
        m_file = std::make_unique<QFile>(response.file);
        if (!m_file->open(QIODevice::ReadOnly)) {
            m_file.reset();
            response.status = 404;
        }
    }
    m_body = response.body;
    m_length = m_file ? m_file->size() : m_body.size();
    m_sent = response.status == 200 ? startOf(request) : 0;
    if (m_file)
        m_file->seek(m_sent);
    if (m_sent > 0)
        response.status = 206;
    sendHead(response);
    if (request.method == QLatin1String("HEAD"))
        m_sent = m_length;
    if (m_fault.kind == Fault::Kind::Slow)
        sendSlowly();
    else
        sendBody();
}

void HttpConnection::sendSlowly()
{
    auto* ticker = new QTimer(this);
    QElapsedTimer timer;
    timer.start();
    connect(ticker, &QTimer::timeout, this, [this, ticker, timer, start = m_sent] {
        const qint64 due = start + m_fault.bytesPerSecond * timer.elapsed() / 1000 - m_sent;
        if (due > 0)
            m_sent += m_socket->write(nextBytes(due));
        if (m_sent < m_length && !*m_fault.cleared)
            return;
        ticker->deleteLater();
        m_fault = {};
        sendBody();
    });
    ticker->start(slowTickMs);
}

/** Where the part begins that is asked for: "bytes=N-" is the only form that is known. */
qint64 HttpConnection::startOf(const HttpRequest& request) const
{
    const auto range = request.headers.value("range");
    if (m_fault.kind == Fault::Kind::NoRange || !range.startsWith("bytes=") || !range.endsWith('-'))
        return 0;
    const auto start = range.mid(6, range.size() - 7).toLongLong();
    return start > 0 && start < m_length ? start : 0;
}

void HttpConnection::sendHead(const HttpResponse& response)
{
    QByteArray range;
    if (response.status == 206)
        range = "\r\nContent-Range: bytes " + QByteArray::number(m_sent) + '-' +
                QByteArray::number(m_length - 1) + '/' + QByteArray::number(m_length);
    m_socket->write(
        "HTTP/1.1 " + QByteArray::number(response.status) + " -\r\nContent-Type: " + response.contentType +
        "\r\nContent-Length: " + QByteArray::number(m_length - m_sent) + range +
        "\r\nConnection: " + (m_fault.kind == Fault::Kind::Cut ? "close" : "keep-alive") + "\r\n\r\n");
}

QByteArray HttpConnection::nextBytes(qint64 atMost)
{
    auto bytes =
        m_file ? m_file->read(atMost) : m_body.mid(static_cast<int>(m_sent), static_cast<int>(atMost));
    if (m_fault.kind == Fault::Kind::WrongBytes) {
        for (auto& byte : bytes)
            byte = static_cast<char>(~byte);
    }
    return bytes;
}

// Keeps little in the socket's buffer, whatever the size of the file.
void HttpConnection::sendBody()
{
    if (!m_busy || m_fault.kind == Fault::Kind::Slow)
        return;
    const bool half = m_fault.kind == Fault::Kind::Stall || m_fault.kind == Fault::Kind::Cut;
    const qint64 end = half ? m_length / 2 : m_length;
    while (m_sent < end && m_socket->bytesToWrite() + m_socket->encryptedBytesToWrite() < 4 * blockSize) {
        const auto bytes = nextBytes(qMin(blockSize, end - m_sent));
        if (bytes.isEmpty()) { // the file was cut while it was sent
            m_socket->abort();
            return;
        }
        m_sent += m_socket->write(bytes);
    }
    if (m_sent < end)
        return;
    if (m_fault.kind == Fault::Kind::Cut) {
        m_socket->disconnectFromHost();
    } else if (m_fault.kind != Fault::Kind::Stall) {
        m_busy = false;
        QMetaObject::invokeMethod(this, &HttpConnection::readRequests, Qt::QueuedConnection);
    }
}
