#include "tools/backend/gateway.h"

#include <google/protobuf/dynamic_message.h>
#include <grpcpp/grpcpp.h>
#include <mutex>
#include <thread>
#include <vector>
#include <velkor_launcher/gateway.grpc.pb.h>

using namespace velkor_launcher;

namespace
{
QString describe(const google::protobuf::Any& any, const std::string& type)
{
    const auto* descriptor = google::protobuf::DescriptorPool::generated_pool()->FindMessageTypeByName(type);
    if (!descriptor)
        return QStringLiteral("(unknown)");
    const auto* prototype = google::protobuf::MessageFactory::generated_factory()->GetPrototype(descriptor);
    const std::unique_ptr<google::protobuf::Message> message(prototype->New());
    if (!message->ParseFromString(any.value()))
        return QStringLiteral("(malformed)");
    return QString::fromStdString(message->ShortDebugString());
}

ReceivedEvent received(const Event& event)
{
    ReceivedEvent result;
    const auto& url = event.payload().type_url();
    const auto type = url.substr(url.find('/') + 1);
    result.type = QString::fromStdString(type);
    result.typeUrl = QString::fromStdString(url);
    result.text = describe(event.payload(), type);
    result.payload = QByteArray::fromStdString(event.payload().value());
    result.session = QByteArray::fromStdString(event.md5_session());
    return result;
}
} // namespace

struct Gateway::Server final : public gateway::GatewayService::Service {
    KeyAndCertificate identity;
    std::unique_ptr<grpc::Server> server;
    int port = 0;
    mutable std::mutex mutex; // of what follows
    Fault fault = Fault::None;
    std::vector<ReceivedEvent> events;
    std::function<void(const ReceivedEvent&)> listener;
    int streams = 0;

    Fault currentFault() const
    {
        const std::lock_guard lock(mutex);
        return fault;
    }

    void keep(const ReceivedEvent& event)
    {
        std::function<void(const ReceivedEvent&)> tell;
        {
            const std::lock_guard lock(mutex);
            events.push_back(event);
            tell = listener;
        }
        if (tell)
            tell(event);
    }

    grpc::Status PublishEvent(grpc::ServerContext* context, grpc::ServerReader<Event>* reader,
                              gateway::DefaultResponse* response) override
    {
        int number = 0;
        {
            const std::lock_guard lock(mutex);
            number = ++streams;
        }
        QByteArray ticket;
        const auto metadata = context->client_metadata().find("x-custom-auth-ticket");
        if (metadata != context->client_metadata().end())
            ticket = QByteArray(metadata->second.data(), static_cast<int>(metadata->second.size()));
        if (currentFault() == Fault::Refuse)
            return {grpc::StatusCode::UNAVAILABLE, "refused"};
        while (currentFault() == Fault::Stall && !context->IsCancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(20));

        Event event;
        while (reader->Read(&event)) {
            auto arrived = received(event);
            arrived.ticket = ticket;
            arrived.stream = number;
            keep(arrived);
            if (currentFault() == Fault::EndEachStream)
                break;
            if (currentFault() == Fault::FailEachStream)
                return {grpc::StatusCode::INTERNAL, "failed"};
        }
        response->set_message("ok");
        return grpc::Status::OK;
    }
};

Gateway::Gateway(const KeyAndCertificate& identity) : m_server(std::make_unique<Server>())
{
    m_server->identity = identity;
}

Gateway::~Gateway() { die(); }

bool Gateway::start()
{
    grpc::SslServerCredentialsOptions options;
    options.pem_key_cert_pairs.push_back(
        {m_server->identity.key.toStdString(), m_server->identity.certificate.toStdString()});
    grpc::ServerBuilder builder;
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
    int port = 0;
    builder.AddListeningPort("127.0.0.1:" + std::to_string(m_server->port),
                             grpc::SslServerCredentials(options), &port);
    builder.RegisterService(m_server.get());
    m_server->server = builder.BuildAndStart();
    if (!m_server->server || port == 0)
        return false;
    m_server->port = port;
    return true;
}

void Gateway::die()
{
    if (!m_server->server)
        return;
    m_server->server->Shutdown(std::chrono::system_clock::now());
    m_server->server.reset();
}

int Gateway::port() const { return m_server->port; }

void Gateway::setFault(Fault fault)
{
    const std::lock_guard lock(m_server->mutex);
    m_server->fault = fault;
}

QVector<ReceivedEvent> Gateway::events() const
{
    const std::lock_guard lock(m_server->mutex);
    return {m_server->events.begin(), m_server->events.end()};
}

void Gateway::clear()
{
    const std::lock_guard lock(m_server->mutex);
    m_server->events.clear();
}

void Gateway::setListener(std::function<void(const ReceivedEvent&)> listener)
{
    const std::lock_guard lock(m_server->mutex);
    m_server->listener = std::move(listener);
}
