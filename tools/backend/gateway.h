#pragma once

#include "tools/backend/certificates.h"

#include <QVector>

#include <functional>
#include <memory>

/** An event that has arrived at the gateway. */
struct ReceivedEvent {
    /** Full name of the payload's type, "velkor_launcher.Started". */
    QString type;
    QString typeUrl;
    /** The payload on one line, for people. */
    QString text;
    QByteArray payload;
    /** The session mark, 16 bytes. */
    QByteArray session;
    /** The player's ticket that came with the stream. */
    QByteArray ticket;
    /** Counts the streams that have been opened, from 1. */
    int stream = 0;
};

/** The telemetry gateway of the backend: a gRPC server over TLS on 127.0.0.1. Any thread. */
class Gateway
{
public:
    enum class Fault {
        None,
        Refuse,        // answers each stream with an error at once
        Stall,         // opens streams and reads nothing
        EndEachStream, // takes one event of each stream and ends it
        FailEachStream // takes one event of each stream and then answers with an error
    };

    explicit Gateway(const KeyAndCertificate& identity);
    ~Gateway();
    Q_DISABLE_COPY_MOVE(Gateway)

    /** Listens, on the same port as before if it listened already. Returns false when that fails. */
    bool start();
    /** Cuts all connections and listens no more. */
    void die();
    int port() const;

    void setFault(Fault fault);
    /** Everything that has arrived since the last clear, in order. */
    QVector<ReceivedEvent> events() const;
    void clear();
    /** Called for each event, on a thread of the server. Set it before start(). */
    void setListener(std::function<void(const ReceivedEvent&)> listener);

private:
    struct Server;
    const std::unique_ptr<Server> m_server;
};
