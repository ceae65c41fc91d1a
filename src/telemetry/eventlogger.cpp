#include "telemetry/eventlogger.h"

#include "logging/messagehandler.h"
#include "settings/settings.h"
#include "telemetry/eventstream.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QJsonDocument>
#include <QSslConfiguration>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <thread>
#include <velkor_launcher/launcher.pb.h>

using namespace velkor_launcher;
using std::chrono::steady_clock;

namespace
{
constexpr std::chrono::seconds shutdownTime{10};
/** At the end, so much of that may go into reaching the gateway. */
constexpr std::chrono::seconds lastConnectTime{1};
constexpr std::chrono::milliseconds pauseAfterFailure{200};
constexpr auto cipherSuites = "ECDHE-ECDSA-AES128-GCM-SHA256:ECDHE-RSA-AES128-GCM-SHA256:"
                              "ECDHE-ECDSA-AES256-GCM-SHA384:ECDHE-RSA-AES256-GCM-SHA384";
constexpr auto timeFormat = "yyyy-MM-ddTHH:mm:ss.zzzZ";

/** The system's authorities, and those that the deployment has added. */
std::string rootCertificates()
{
    auto certificates = QSslConfiguration::defaultConfiguration().caCertificates();
    if (certificates.isEmpty())
        certificates = QSslConfiguration::systemCaCertificates();
    QByteArray pem;
    for (const auto& certificate : qAsConst(certificates))
        pem += certificate.toPem();
    return pem.toStdString();
}
} // namespace

QByteArray EventLogger::newSession()
{
    const auto text = firstHardwareAddress() + QString::number(QDateTime::currentMSecsSinceEpoch());
    return QCryptographicHash::hash(text.toLocal8Bit(), QCryptographicHash::Md5);
}

EventLogger::EventLogger(const QString& gateway, const QString& domain)
    : m_gateway(gateway.toStdString()), m_typeUrlPrefix(QStringLiteral("type.%1").arg(domain).toStdString()),
      m_session(newSession())
{
    // Read by the library when its first channel is made.
    qputenv("GRPC_SSL_CIPHER_SUITES", cipherSuites);
    qputenv("GRPC_ENABLE_FORK_SUPPORT", "0");
}

EventLogger::~EventLogger()
{
    stopNow();
    waitForWorker();
}

EventLogger* EventLogger::instance()
{
    static auto* logger = [] {
        auto* made = new EventLogger(Settings::instance()->getEventLoggerHost(),
                                     Settings::instance()->getDeployment().typeUrlDomain);
        // The end of the application waits for the pool, hence for the worker.
        qAddPostRoutine([] { instance()->stopNow(); });
        return made;
    }();
    return logger;
}

void EventLogger::stopNow()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_stopTime = std::min(m_stopTime, steady_clock::now());
    }
    m_wake.notify_all();
}

void EventLogger::beginShutdown()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_stopTime = steady_clock::now() + shutdownTime;
    }
    qDebug() << "grpc shutdown timer started";
    m_wake.notify_all();
}

void EventLogger::setAuthenticationToken(const QString& token)
{
    logRedactor().addSecret(token);
    const std::lock_guard lock(m_mutex);
    if (token == m_token)
        return;
    qDebug() << "Authentication token is changing";
    m_token = token;
}

QString EventLogger::getAuthenticationToken() const
{
    const std::lock_guard lock(m_mutex);
    return m_token;
}

/** What may stand in a header of a request; a token that may not would make every stream fail. */
std::string EventLogger::ticket() const
{
    const auto token = getAuthenticationToken().toUtf8();
    const bool isPrintable =
        std::all_of(token.begin(), token.end(), [](char c) { return c >= ' ' && c <= '~'; });
    return isPrintable ? token.toStdString() : std::string();
}

void EventLogger::queueAllocatedEvent(Payload message)
{
    qDebug().noquote() << "grpc Queueing" << QString::fromStdString(message->GetTypeName()) << ":"
                       << QString::fromStdString(message->ShortDebugString());
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(message));
        // Only ever one worker: one that has ended is not replaced.
        if (!std::exchange(m_started, true))
            m_sender = QtConcurrent::run([this] { sendQueuedEvents(); });
    }
    m_wake.notify_all();
}

// On a thread of the global pool, which has one more for as long as this lasts.
void EventLogger::sendQueuedEvents()
{
    auto* pool = QThreadPool::globalInstance();
    pool->releaseThread();
    {
        EventStream stream({m_gateway, rootCertificates(), [this] { return ticket(); }}, m_typeUrlPrefix,
                           m_session);
        while (waitForWork()) {
            if (!stream.setupGrpc([this] { return isTooLateToConnect(); })) {
                qDebug() << "grpc setup failed";
                break;
            }
            if (!sendBatch(&stream))
                std::this_thread::sleep_for(pauseAfterFailure);
        }
    }
    pool->reserveThread();
}

bool EventLogger::isTooLateToConnect()
{
    const std::lock_guard lock(m_mutex);
    return m_stopping && steady_clock::now() > m_stopTime - shutdownTime + lastConnectTime;
}

/** Returns false when there is no reason to go on: the launcher ends, and all is sent or its time is up. */
bool EventLogger::waitForWork()
{
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return !m_queue.empty() || m_stopping; });
    if (!m_stopping)
        return true;
    if (m_queue.empty())
        return false;
    if (steady_clock::now() < m_stopTime)
        return true;
    qDebug() << "grpc shutdown timeout";
    return false;
}

steady_clock::duration EventLogger::timeLeft()
{
    const std::lock_guard lock(m_mutex);
    return std::max(m_stopTime - steady_clock::now(), steady_clock::duration::zero());
}

/** Sends what is queued; puts back what is not known to have arrived. */
bool EventLogger::sendBatch(EventStream* stream)
{
    std::list<Payload> batch;
    {
        const std::lock_guard lock(m_mutex);
        batch.swap(m_queue);
    }
    std::list<Payload> written;
    while (!batch.empty() && stream->sendAllocatedEvent(*batch.front()))
        written.splice(written.end(), batch, batch.begin());
    const bool arrived = m_stopping && batch.empty() ? stream->finish(timeLeft()) : stream->confirmed();
    if (!arrived)
        batch.splice(batch.begin(), written);
    if (batch.empty())
        return true;
    const std::lock_guard lock(m_mutex);
    m_queue.splice(m_queue.end(), batch);
    return false;
}

void EventLogger::logJson(const QJsonObject& /*record*/) {}

void EventLogger::logJsonBlocking(const QJsonObject& /*record*/) {}

QByteArray EventLogger::prepareMessage(QJsonObject record) const
{
    record.insert(QStringLiteral("sessionid"), QString::fromLatin1(m_session.toHex()));
    record.insert(QStringLiteral("machine_hash"),
                  QString::fromLatin1(Settings::instance()->getMachineHash().toHex()));
    if (!record.contains(QLatin1String("timestamp")))
        record.insert(QStringLiteral("timestamp"),
                      QDateTime::currentDateTimeUtc().toString(QLatin1String(timeFormat)));
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

void EventLogger::outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                                const QString& message, int repeatCount)
{
    if (typeName != QLatin1String("debug"))
        return;
    logJson({{QStringLiteral("timestamp"), time.toString(QLatin1String(timeFormat))},
             {QStringLiteral("type"), typeName},
             {QStringLiteral("channel"), category},
             {QStringLiteral("message"), message},
             {QStringLiteral("repeat"), repeatCount}});
}
