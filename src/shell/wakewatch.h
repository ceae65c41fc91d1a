#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

class QSocketNotifier;

/**
 * Notices when the machine has slept, and when the network has changed: after both, what was found out before
 * may not hold any more. Main thread.
 */
class WakeWatch : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<std::chrono::milliseconds()>;

    /** sleptTime: how long the machine has slept since it was started; every: how often that is looked at. */
    explicit WakeWatch(Clock sleptTime = systemSleptTime,
                       std::chrono::milliseconds every = std::chrono::seconds(10), QObject* parent = nullptr);
    ~WakeWatch() override;

    static std::chrono::milliseconds systemSleptTime();

signals:
    /** The machine is awake again. */
    void woken();
    /** An address has come, some moments ago: the network has had time to settle. */
    void networkChanged();

private:
    void lookAtClock();
    void listenToNetwork();
    void readNetworkMessages();

    const Clock m_sleptTime;
    std::chrono::milliseconds m_slept;
    QTimer m_clockTimer;
    QTimer m_settleTimer;
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
