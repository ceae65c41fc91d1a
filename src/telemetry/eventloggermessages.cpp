// The part of EventLogger that fills the messages.

#include "telemetry/eventlogger.h"

#include "settings/settings.h"

#include <QDateTime>
#include <QDebug>
#include <QNetworkInterface>
#include <QSysInfo>

#include <velkor_launcher/launcher.pb.h>

using namespace velkor_launcher;

namespace
{
constexpr auto launcherBuild = "1548102";

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

QString EventLogger::firstHardwareAddress()
{
    const auto interfaces = QNetworkInterface::allInterfaces();
    for (const auto& interface : interfaces) {
        if (!(interface.flags() & QNetworkInterface::IsLoopBack) && !interface.hardwareAddress().isEmpty())
            return interface.hardwareAddress();
    }
    return interfaces.isEmpty() ? QString() : interfaces.first().hardwareAddress();
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
    beginShutdown();
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
