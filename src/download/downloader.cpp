#include "download/downloader.h"

#include "download/ratelimiter.h"
#include "logging/messagehandler.h"

#include <QDebug>
#include <QHostInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>

// A server that accepts the connection and falls silent must not hold up the refresh for ever.
static constexpr int stallTimeoutMs = 30000;
static constexpr int answerWaitMs = 3000;

QString describeSslErrors(const QList<QSslError>& errors)
{
    QStringList texts;
    for (const auto& error : errors)
        texts << error.errorString();
    return texts.join(QStringLiteral(", "));
}

QNetworkAccessManager*& Downloader::sharedManager()
{
    static QNetworkAccessManager* manager = nullptr;
    return manager;
}

QNetworkAccessManager* Downloader::getManager()
{
    auto*& manager = sharedManager();
    if (!manager)
        manager = new QNetworkAccessManager;
    return manager;
}

void Downloader::endManager() { delete std::exchange(sharedManager(), nullptr); }

Downloader::Downloader(const QUrl& url, QObject* parent) : Task(parent), m_url(url)
{
    // A stale guess of the platform about the network's state must not block downloads.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    if (getManager()->networkAccessible() != QNetworkAccessManager::Accessible)
        getManager()->setNetworkAccessible(QNetworkAccessManager::Accessible);
    QT_WARNING_POP
}

// The reply must not be taken for that of the next download.
Downloader::~Downloader() { abandonReply(); }

void Downloader::abandonReply()
{
    if (!m_reply)
        return;
    m_reply->blockSignals(true);
    m_reply->abort();
    m_reply->deleteLater();
    m_reply.clear();
}

QString Downloader::activity() const
{
    return QStringLiteral("%1, %2 bytes of %3")
        .arg(taskName(), QString::number(m_contents.size()), logRedactor().redact(m_url.toString()));
}

void Downloader::askAgain()
{
    if (m_ended || !m_reply || !m_sinceProgress.hasExpired(answerWaitMs))
        return;
    qInfo().noquote() << "Asking again:" << activity();
    abandonReply();
    m_contents.clear();
    issueRequest();
}

// Any reply that the shared manager completes is taken for this download's: the scheduler runs one download
// at a time.
void Downloader::go()
{
    connect(getManager(), &QNetworkAccessManager::finished, this, &Downloader::getFinished);
    issueRequest();
}

void Downloader::issueRequest()
{
    QNetworkRequest request(m_url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(stallTimeoutMs);
    auto* reply = getManager()->get(request);
    m_reply = reply;
    m_sinceProgress.start();
    reply->setReadBufferSize(RateLimiter::instance()->bufferSize());
    connect(reply, &QNetworkReply::readyRead, this, &Downloader::read);
    connect(RateLimiter::instance(), &RateLimiter::refilled, this, &Downloader::read, Qt::UniqueConnection);
    connect(reply, &QNetworkReply::downloadProgress, this, &Downloader::onDownloadProgress);
    connect(
        reply, &QNetworkReply::sslErrors, this,
        [this, reply](const QList<QSslError>& errors) { onSslErrors(reply, errors); }, Qt::DirectConnection);
}

void Downloader::onDownloadProgress(qint64 received, qint64 total)
{
    float fraction = 0;
    if (total >= 1)
        fraction = static_cast<float>(received) / static_cast<float>(total);
    else if (m_expectedSize >= 1)
        fraction = static_cast<float>(received) / static_cast<float>(m_expectedSize);
    emit progressUpdate(fraction, m_progressMessage);
}

void Downloader::onSslErrors(QNetworkReply* reply, const QList<QSslError>& errors)
{
    qWarning().noquote() << "Downloader for" << reply->request().url().toString()
                         << "got ssl errors:" << describeSslErrors(errors);
}

void Downloader::read()
{
    if (!m_reply)
        return;
    m_sinceProgress.start();
    m_contents +=
        m_reply->read(RateLimiter::instance()->take(m_reply->bytesAvailable(), RateLimiter::Kind::Document));
    if (!m_ended || m_reply->bytesAvailable() > 0)
        return;
    m_reply->deleteLater();
    m_reply.clear();
    emit finished(this);
}

void Downloader::getFinished(QNetworkReply* reply)
{
    if (m_ended)
        return;
    m_ended = true;
    if (reply != m_reply)
        m_contents.clear();
    m_reply = reply;
    if (reply->error() == QNetworkReply::NoError) {
        read();
        return;
    }
    fail(reply);
    reply->deleteLater();
    m_reply.clear();
    emit finished(this);
}

void Downloader::fail(QNetworkReply* reply)
{
    m_contents.clear();
    const auto text = reply->errorString();
    const auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    int code = UnknownError;
    if (!status.isValid()) {
        qWarning().noquote() << "Unknown Error" << text;
    } else if (status.toInt() == 401) {
        code = AuthenticationError;
        qWarning() << "Content Access Denied Error";
    } else if (status.toInt() == 404) {
        code = DownloadError;
        qWarning() << "Content Not Found Error";
    } else {
        qWarning() << "Unknown Error: " << status.toInt();
    }
    setError(code, text);

    qWarning().noquote() << "Downloader for" << m_url.toString() << "failed:" << text;
    if (reply->error() == QNetworkReply::SslHandshakeFailedError) {
        const auto chain = reply->sslConfiguration().peerCertificateChain();
        for (const auto& certificate : chain)
            qWarning().noquote() << "Peer certificate:" << certificate.toText();
    }
    QStringList addresses;
    const auto found = QHostInfo::fromName(m_url.host()).addresses();
    for (const auto& address : found)
        addresses << address.toString();
    qDebug().noquote() << "DNS lookup for" << m_url.host() << "returns"
                       << addresses.join(QStringLiteral(", "));
}
