#pragma once

#include "logging/loggerbase.h"

#include <QByteArray>
#include <QFuture>
#include <QJsonObject>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <string>

class EventStream;

namespace google::protobuf
{
class Message;
}
namespace velkor_launcher
{
class ClientOptions;
class OS;
} // namespace velkor_launcher

/**
 * Sends telemetry: one message for each happening, queued at once and sent by a worker on the global thread
 * pool. While the gateway cannot be reached, events wait in memory; one that could not be delivered is sent
 * again behind newer ones. At shutdown the worker has ten seconds for what is left.
 *
 * The event methods may be called from any thread and return at once.
 */
class EventLogger : public LoggerBase
{
    Q_OBJECT

public:
    /** gateway: "host:port"; domain: stands in the type URL of the events. */
    EventLogger(const QString& gateway, const QString& domain);
    /** Waits for the worker: see launcherShutdown(). */
    ~EventLogger() override;

    /** The one object of the process; it is made on first use, from the settings, and never destroyed. */
    static EventLogger* instance();

    /** The time that is sent is that of the call. */
    void launcherInstalled(long long installTime);
    void launcherStarted();
    void launcherUpdating(const QString& from, const QString& to, int cancelled);
    /** The last event: from then on the worker has ten seconds. sessionDuration is in seconds. */
    void launcherShutdown(int clientsRunning, int clientsLaunched, int sessionDuration);
    void clientInitiallyLaunched(const QString& server, long long launchTime, bool is64);
    void clientLaunched(const QString& server, bool is64);
    void clientUpdateStarted(const QString& server);
    void clientUpdateCompleted(const QString& server);
    /** code: how the update ended, a number of UpdateError. */
    void clientUpdateFailed(const QString& server, unsigned int code);
    /** dx: "dx9" or "dx11". The launches of Wine carry no time. */
    void releaseWineLaunched(const QString& server, const QString& wineBuild, const QString& dx);
    void developmentWineLaunched(const QString& server, const QString& branch, const QString& build,
                                 const QString& dx);
    void customWineLaunched(const QString& server, const QString& dx);

    /** MD5 that marks this run, 16 bytes. */
    QByteArray getSession() const { return m_session; }
    /** The login's ticket; it goes along with each stream. Any thread. */
    void setAuthenticationToken(const QString& token);
    QString getAuthenticationToken() const;

    /** JSON records are not sent in this build. */
    void logJson(const QJsonObject& record);
    void logJsonBlocking(const QJsonObject& record);
    /** A record as it would be sent: with session, machine and time. */
    QByteArray prepareMessage(QJsonObject record) const;
    void outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                       const QString& message, int repeatCount) override;

    /** Waits until the worker has ended. For the end of the process, after launcherShutdown(). */
    void waitForWorker() { m_sender.waitForFinished(); }

private:
    using Payload = std::unique_ptr<google::protobuf::Message>;

    void queueAllocatedEvent(Payload message);
    void beginShutdown();
    /** Lets the worker end at once, with whatever is queued unsent. */
    void stopNow();
    void sendQueuedEvents();
    bool waitForWork();
    bool isTooLateToConnect();
    std::chrono::steady_clock::duration timeLeft();
    bool sendBatch(EventStream* stream);
    std::string ticket() const;
    static QByteArray newSession();
    /** Of the first network interface that has one and is not the loopback; the loopback's where there is no
     * other. */
    static QString firstHardwareAddress();
    static void fillOsInfo(velkor_launcher::OS* os);
    static void fillClientOptions(velkor_launcher::ClientOptions* options, bool is64);

    const std::string m_gateway;
    const std::string m_typeUrlPrefix;
    const QByteArray m_session;

    mutable std::mutex m_mutex; // of everything below
    std::condition_variable m_wake;
    std::list<Payload> m_queue;
    QString m_token;
    bool m_started = false;
    std::atomic<bool> m_stopping{false};
    std::chrono::steady_clock::time_point m_stopTime = std::chrono::steady_clock::time_point::max();
    QFuture<void> m_sender;
};
