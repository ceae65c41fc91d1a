#include "telemetry/eventlogger.h"

#include "settings/settings.h"
#include "telemetry/eventstream.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QJsonDocument>
#include <QNetworkInterface>
#include <QSslConfiguration>
#include <QSysInfo>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <thread>
#include <velkor_launcher/launcher.pb.h>

using namespace velkor_launcher;
using std::chrono::steady_clock;

namespace
{
constexpr auto launcherBuild = "1548102";
constexpr std::chrono::seconds shutdownTime{10};
/** At the end, so much of that may go into reaching the gateway. */
constexpr std::chrono::seconds lastConnectTime{1};
constexpr std::chrono::milliseconds pauseAfterFailure{200};
constexpr auto cipherSuites = "ECDHE-ECDSA-AES128-GCM-SHA256:ECDHE-RSA-AES128-GCM-SHA256:"
                              "ECDHE-ECDSA-AES256-GCM-SHA384:ECDHE-RSA-AES256-GCM-SHA384";
constexpr auto timeFormat = "yyyy-MM-ddTHH:mm:ss.zzzZ";

/** Of the first network interface that has one and is not the loopback; the loopback's where there is no
 * other. */
QString firstHardwareAddress()
{
    const auto interfaces = QNetworkInterface::allInterfaces();
    for (const auto& interface : interfaces) {
        if (!(interface.flags() & QNetworkInterface::IsLoopBack) && !interface.hardwareAddress().isEmpty())
            return interface.hardwareAddress();
    }
    return interfaces.isEmpty() ? QString() : interfaces.first().hardwareAddress();
}

QByteArray newSession()
{
    const auto text = firstHardwareAddress() + QString::number(QDateTime::currentMSecsSinceEpoch());
    return QCryptographicHash::hash(text.toLocal8Bit(), QCryptographicHash::Md5);
}

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

void fillTimestamp(google::protobuf::Timestamp* timestamp)
{
    timestamp->set_seconds(QDateTime::currentSecsSinceEpoch());
}

graphics::DirectXMode dxStringToDXMode(const QString& text)
{
    if (text == QLatin1String("dx9"))
        return graphics::DX9;
    return text == QLatin1String("dx11") ? graphics::DX11 : graphics::UNKNOWN;
}

void assign(std::string* to, const QByteArray& bytes)
{
    to->assign(bytes.constData(), static_cast<size_t>(bytes.size()));
}
} // namespace

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
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    waitForWorker();
}

EventLogger* EventLogger::instance()
{
    static auto* logger = new EventLogger(Settings::instance()->getEventLoggerHost(),
                                          Settings::instance()->getDeployment().typeUrlDomain);
    return logger;
}

void EventLogger::launcherInstalled(long long /*installTime*/)
{
    auto message = std::make_unique<Installed>();
    fillTimestamp(message->mutable_install_time());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::launcherStarted()
{
    auto message = std::make_unique<Started>();
    const auto* settings = Settings::instance();
    auto* application = message->mutable_application();
    application->set_version(launcherBuild);
    application->set_build_tag(static_cast<Application::BuildTag>(settings->getVersionType()));
    application->set_locale(Application::WORLD);
    auto* host = message->mutable_host();
    fillOsInfo(host->mutable_os());
    const auto address = firstHardwareAddress();
    qDebug().noquote() << "Hardware address:" << address;
    assign(host->mutable_mac_address(), QByteArray::fromHex(address.toLatin1().replace(':', "")));
    assign(host->mutable_md5_hash(), settings->getMachineHash());
    fillTimestamp(message->mutable_start_time());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::launcherUpdating(const QString& /*from*/, const QString& to, int /*cancelled*/)
{
    auto message = std::make_unique<UpdateStarted>();
    fillTimestamp(message->mutable_start_time());
    message->set_target_version(to.toStdString());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::launcherShutdown(int clientsRunning, int clientsLaunched, int /*sessionDuration*/)
{
    auto message = std::make_unique<Shutdown>();
    fillTimestamp(message->mutable_shutdown_time());
    message->set_clients_running(clientsRunning);
    message->set_clients_started(clientsLaunched);
    queueAllocatedEvent(std::move(message));
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_stopTime = steady_clock::now() + shutdownTime;
    }
    m_wake.notify_all();
}

void EventLogger::clientInitiallyLaunched(const QString& server, long long /*launchTime*/, bool is64)
{
    auto message = std::make_unique<ClientInitiallyLaunched>();
    fillTimestamp(message->mutable_launch_time());
    message->set_target_server(server.toStdString());
    fillClientOptions(message->mutable_client_options(), is64);
    queueAllocatedEvent(std::move(message));
}

void EventLogger::clientLaunched(const QString& server, bool is64)
{
    auto message = std::make_unique<ClientLaunched>();
    fillTimestamp(message->mutable_launch_time());
    message->set_target_server(server.toStdString());
    fillClientOptions(message->mutable_client_options(), is64);
    queueAllocatedEvent(std::move(message));
}

void EventLogger::clientUpdateStarted(const QString& server)
{
    auto message = std::make_unique<ClientUpdateStarted>();
    fillTimestamp(message->mutable_start_time());
    message->set_target_server(server.toStdString());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::clientUpdateCompleted(const QString& server)
{
    auto message = std::make_unique<ClientUpdateCompleted>();
    fillTimestamp(message->mutable_completion_time());
    message->set_target_server(server.toStdString());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::clientUpdateFailed(const QString& server, unsigned int code)
{
    auto message = std::make_unique<ClientUpdateFailed>();
    fillTimestamp(message->mutable_failure_time());
    message->set_error_code(code);
    message->set_target_server(server.toStdString());
    queueAllocatedEvent(std::move(message));
}

void EventLogger::releaseWineLaunched(const QString& server, const QString& wineBuild, const QString& dx)
{
    auto message = std::make_unique<ReleaseWineLaunched>();
    message->set_target_server(server.toStdString());
    message->set_wine_build(wineBuild.toStdString());
    fillOsInfo(message->mutable_os());
    message->set_directx_mode(dxStringToDXMode(dx));
    queueAllocatedEvent(std::move(message));
}

void EventLogger::developmentWineLaunched(const QString& server, const QString& branch, const QString& build,
                                          const QString& dx)
{
    auto message = std::make_unique<DevelopmentWineLaunched>();
    message->set_target_server(server.toStdString());
    message->set_wine_branch(branch.toStdString());
    message->set_wine_build(build.toStdString());
    fillOsInfo(message->mutable_os());
    message->set_directx_mode(dxStringToDXMode(dx));
    queueAllocatedEvent(std::move(message));
}

void EventLogger::customWineLaunched(const QString& server, const QString& dx)
{
    auto message = std::make_unique<CustomWineLaunched>();
    message->set_target_server(server.toStdString());
    fillOsInfo(message->mutable_os());
    message->set_directx_mode(dxStringToDXMode(dx));
    queueAllocatedEvent(std::move(message));
}

void EventLogger::fillOsInfo(OS* os)
{
    os->set_kind(OS::LINUX);
    os->set_version(QSysInfo::productVersion().toStdString());
}

void EventLogger::fillClientOptions(ClientOptions* options, bool is64)
{
    options->set_bitness(is64 ? ClientOptions::BITNESS_64 : ClientOptions::BITNESS_32);
}

void EventLogger::setAuthenticationToken(const QString& token)
{
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
