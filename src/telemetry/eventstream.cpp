#include "telemetry/eventstream.h"

#include <QDebug>

#include <grpcpp/grpcpp.h>
#include <grpcpp/security/credentials.h>
#include <velkor_launcher/gateway.grpc.pb.h>

using velkor_launcher::gateway::DefaultResponse;
using velkor_launcher::gateway::GatewayService;

namespace
{
constexpr std::chrono::seconds streamLifetime{10};
/** How long a broken stream may take to show. */
constexpr std::chrono::milliseconds confirmation{300};
constexpr std::chrono::milliseconds channelCheck{100};
constexpr std::chrono::milliseconds channelReport{1000};
constexpr int firstReconnectMs = 500;
constexpr int maxReconnectMs = 5000;

/** Whether the gateway has what was written: it says so itself, or the stream's time was up. */
bool endedInOrder(const grpc::Status& status)
{
    return status.ok() || status.error_code() == grpc::StatusCode::DEADLINE_EXCEEDED;
}

/** Adds the player's ticket to each call. */
class MyCustomAuthenticator : public grpc::MetadataCredentialsPlugin
{
public:
    explicit MyCustomAuthenticator(std::function<std::string()> token) : m_token(std::move(token)) {}

    bool IsBlocking() const override { return false; }
    grpc::Status GetMetadata(grpc::string_ref /*serviceUrl*/, grpc::string_ref /*methodName*/,
                             const grpc::AuthContext& /*context*/,
                             std::multimap<grpc::string, grpc::string>* metadata) override
    {
        metadata->insert({"x-custom-auth-ticket", m_token()});
        return grpc::Status::OK;
    }

private:
    const std::function<std::string()> m_token;
};

std::shared_ptr<grpc::Channel> createChannel(const GatewayAddress& address)
{
    grpc::SslCredentialsOptions options;
    options.pem_root_certs = address.rootCertificates;
    const auto credentials = grpc::CompositeChannelCredentials(
        grpc::SslCredentials(options),
        grpc::MetadataCredentialsFromPlugin(std::make_unique<MyCustomAuthenticator>(address.token)));
    grpc::ChannelArguments arguments;
    // A gateway that comes back is found soon, also by a new channel.
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    arguments.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, firstReconnectMs);
    arguments.SetInt(GRPC_ARG_MIN_RECONNECT_BACKOFF_MS, maxReconnectMs);
    arguments.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, maxReconnectMs);
    arguments.SetInt(GRPC_ARG_ENABLE_HTTP_PROXY, 0);
    qDebug() << "grpc channel created";
    return grpc::CreateCustomChannel(address.target, credentials, arguments);
}
} // namespace

/** The open call, with all that belongs to it. What happens on it is noticed while one of its methods waits.
 */
class EventStream::Call
{
public:
    explicit Call(GatewayService::Stub* stub)
    {
        m_context.set_deadline(std::chrono::system_clock::now() + streamLifetime);
        m_writer = stub->AsyncPublishEvent(&m_context, &m_response, &m_queue, tag(Step::Start));
        // Asked for at once, so that the end is noticed whenever it comes.
        m_writer->Finish(&m_status, tag(Step::End));
        m_pending = tagBit(Step::Start) | tagBit(Step::End);
    }
    ~Call()
    {
        m_context.TryCancel();
        while (m_pending != 0)
            takeStep(Clock::now() + streamLifetime);
        m_queue.Shutdown();
        void* rest = nullptr;
        bool ok = false;
        while (m_queue.Next(&rest, &ok)) {
        }
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool write(const velkor_launcher::Event& event)
    {
        // The call has to be under way; both end with the call at the latest.
        if (!waitFor(Step::Start, streamLifetime) || hasEnded())
            return false;
        m_pending |= tagBit(Step::Write);
        m_writer->Write(event, tag(Step::Write));
        return waitFor(Step::Write, streamLifetime) && m_lastOk;
    }

    /** Tells the gateway that nothing more comes. */
    void endWriting()
    {
        if (hasEnded())
            return;
        m_pending |= tagBit(Step::WritesDone);
        m_writer->WritesDone(tag(Step::WritesDone));
    }

    bool waitForEnd(Clock::duration patience) { return waitFor(Step::End, patience); }
    bool hasEnded() const { return (m_pending & tagBit(Step::End)) == 0; }
    const grpc::Status& status() const { return m_status; }

private:
    enum class Step : uintptr_t { Start, Write, WritesDone, End };
    static void* tag(Step step) { return reinterpret_cast<void*>(static_cast<uintptr_t>(step) + 1); }
    static unsigned tagBit(Step step) { return 1U << static_cast<uintptr_t>(step); }

    bool waitFor(Step step, Clock::duration patience)
    {
        const auto until = Clock::now() + patience;
        while ((m_pending & tagBit(step)) != 0) {
            if (!takeStep(until))
                return false;
        }
        return true;
    }

    bool takeStep(Clock::time_point until)
    {
        void* step = nullptr;
        bool ok = false;
        const auto left = until - Clock::now();
        const auto deadline =
            std::chrono::system_clock::now() + std::chrono::duration_cast<std::chrono::milliseconds>(left);
        if (m_queue.AsyncNext(&step, &ok, deadline) != grpc::CompletionQueue::GOT_EVENT)
            return false;
        const auto which = static_cast<Step>(reinterpret_cast<uintptr_t>(step) - 1);
        m_pending &= ~tagBit(which);
        if (which == Step::Write)
            m_lastOk = ok;
        return true;
    }

    grpc::ClientContext m_context;
    grpc::CompletionQueue m_queue;
    DefaultResponse m_response;
    grpc::Status m_status;
    std::unique_ptr<grpc::ClientAsyncWriter<velkor_launcher::Event>> m_writer;
    unsigned m_pending = 0;
    bool m_lastOk = false;
};

struct EventStream::Grpc {
    std::shared_ptr<grpc::Channel> channel;
    std::unique_ptr<GatewayService::Stub> stub;
    std::unique_ptr<Call> call; // ends before what it needs
};

EventStream::EventStream(GatewayAddress address, std::string typeUrlPrefix, QByteArray session)
    : m_address(std::move(address)), m_typeUrlPrefix(std::move(typeUrlPrefix)), m_session(std::move(session)),
      m_grpc(std::make_unique<Grpc>())
{
}

EventStream::~EventStream() { cleanupGrpc(); }

bool EventStream::setupGrpc(const std::function<bool()>& giveUp)
{
    if (m_grpc->call && !m_grpc->call->waitForEnd(Clock::duration::zero()))
        return true;
    if (m_grpc->call)
        cleanupGrpc();
    if (!m_grpc->channel)
        m_grpc->channel = createChannel(m_address);
    if (!waitForChannel(giveUp))
        return false;
    qDebug() << "grpc channel is ready";
    m_grpc->stub = GatewayService::NewStub(m_grpc->channel);
    m_grpc->call = std::make_unique<Call>(m_grpc->stub.get());
    return true;
}

bool EventStream::waitForChannel(const std::function<bool()>& giveUp)
{
    auto nextReport = Clock::now();
    for (;;) {
        const auto state = m_grpc->channel->GetState(true);
        if (state == GRPC_CHANNEL_READY)
            return true;
        if (state == GRPC_CHANNEL_SHUTDOWN) {
            qDebug() << "grpc channel shutdown";
            m_grpc->channel.reset();
            return false;
        }
        if (giveUp()) {
            qDebug() << "grpc aborting channel state check";
            return false;
        }
        if (Clock::now() >= nextReport) {
            qDebug() << "grpc state" << static_cast<int>(state);
            nextReport = Clock::now() + channelReport;
        }
        m_grpc->channel->WaitForStateChange(state, std::chrono::system_clock::now() + channelCheck);
    }
}

bool EventStream::sendAllocatedEvent(const google::protobuf::Message& payload)
{
    if (!m_grpc->call)
        return false;
    qDebug().noquote() << "grpc Sending" << QString::fromStdString(payload.GetTypeName()) << ":"
                       << QString::fromStdString(payload.ShortDebugString());
    velkor_launcher::Event event;
    event.mutable_payload()->PackFrom(payload, m_typeUrlPrefix);
    event.set_md5_session(m_session.constData(), static_cast<size_t>(m_session.size()));
    if (m_grpc->call->write(event)) {
        qDebug() << "grpc event publish succeeded";
        return true;
    }
    qDebug() << "grpc event publish failed";
    return false;
}

bool EventStream::confirmed()
{
    if (!m_grpc->call)
        return false;
    if (!m_grpc->call->waitForEnd(confirmation))
        return true;
    const bool inOrder = endedInOrder(m_grpc->call->status());
    cleanupGrpc();
    return inOrder;
}

bool EventStream::finish(Clock::duration patience)
{
    if (!m_grpc->call)
        return false;
    m_grpc->call->endWriting();
    const bool ended = m_grpc->call->waitForEnd(patience);
    const bool inOrder = ended && endedInOrder(m_grpc->call->status());
    cleanupGrpc();
    return inOrder;
}

void EventStream::cleanupGrpc()
{
    if (m_grpc->call && m_grpc->call->hasEnded() && !m_grpc->call->status().ok())
        qDebug().noquote() << "grpc stream ended:"
                           << QString::fromStdString(m_grpc->call->status().error_message());
    m_grpc->call.reset();
    if (m_grpc->stub)
        qDebug() << "grpc stub orphaned";
    m_grpc->stub.reset();
    if (m_grpc->channel)
        qDebug() << "grpc channel orphaned";
    m_grpc->channel.reset();
}
