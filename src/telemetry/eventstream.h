#pragma once

#include <QByteArray>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace google::protobuf
{
class Message;
}

/** How to reach the gateway that takes events. */
struct GatewayAddress {
    /** "host:port" */
    std::string target;
    /** PEM of the authorities that its certificate is checked against. */
    std::string rootCertificates;
    /** Asked for each stream, on any thread: sent along as the player's ticket. */
    std::function<std::string()> token;
};

/**
 * One stream of events to the gateway: a channel over TLS, and the call on it that stays open for ten
 * seconds. Everything is called on one thread, the sender's; what blocks does so for the stated time at most.
 */
class EventStream
{
public:
    using Clock = std::chrono::steady_clock;
    using Payload = std::unique_ptr<google::protobuf::Message>;

    /** typeUrlPrefix stands before the name of a payload's type; session marks every event. */
    EventStream(GatewayAddress address, std::string typeUrlPrefix, QByteArray session);
    /** Ends what is open at once. */
    ~EventStream();
    EventStream(const EventStream&) = delete;
    EventStream& operator=(const EventStream&) = delete;

    /**
     * Makes sure that there is an open stream, and waits for that until giveUp says so. Returns false when it
     * did, or when the channel can never work.
     */
    bool setupGrpc(const std::function<bool()>& giveUp);

    /**
     * Writes one event. Returns false, with everything torn down, when that fails. What was written counts as
     * delivered only once confirmed() has said so.
     */
    bool sendAllocatedEvent(const google::protobuf::Message& payload);

    /**
     * Whether the events written since the last call are with the gateway: the stream still stands after a
     * moment, or has ended in good order or for its age.
     */
    bool confirmed();

    /** Ends the stream in good order, and waits so long for the gateway's word that it has everything. */
    bool finish(Clock::duration patience);

private:
    class Call;
    struct Grpc;

    bool waitForChannel(const std::function<bool()>& giveUp);
    void cleanupGrpc();

    const GatewayAddress m_address;
    const std::string m_typeUrlPrefix;
    const QByteArray m_session;
    std::unique_ptr<Grpc> m_grpc;
};
