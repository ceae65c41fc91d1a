#include "shell/wakewatch.h"

#include <QDebug>
#include <QSocketNotifier>

#include <cerrno>
#include <ctime>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr std::chrono::seconds shortestSleep(5);
constexpr std::chrono::seconds settleTime(3);

std::chrono::milliseconds read(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) +
           std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::nanoseconds(time.tv_nsec));
}
} // namespace

WakeWatch::WakeWatch(Clock sleptTime, std::chrono::milliseconds every, QObject* parent)
    : QObject(parent), m_sleptTime(std::move(sleptTime)), m_slept(m_sleptTime())
{
    connect(&m_clockTimer, &QTimer::timeout, this, &WakeWatch::lookAtClock);
    m_clockTimer.start(every);
    m_settleTimer.setSingleShot(true);
    connect(&m_settleTimer, &QTimer::timeout, this, &WakeWatch::networkChanged);
    listenToNetwork();
}

WakeWatch::~WakeWatch()
{
    m_notifier.reset();
    if (m_socket >= 0)
        ::close(m_socket);
}

// One of the two clocks stands still while the machine sleeps.
std::chrono::milliseconds WakeWatch::systemSleptTime()
{
    return read(CLOCK_BOOTTIME) - read(CLOCK_MONOTONIC);
}

void WakeWatch::lookAtClock()
{
    const auto before = std::exchange(m_slept, m_sleptTime());
    if (m_slept - before < shortestSleep)
        return;
    qDebug() << "The machine has slept for" << (m_slept - before).count() / 1000 << "s";
    emit woken();
}

// The kernel tells of every address that comes, whoever looks after the network.
void WakeWatch::listenToNetwork()
{
    m_socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    if (m_socket < 0 || ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        qDebug() << "Changes of the network are not noticed here";
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &WakeWatch::readNetworkMessages);
}

void WakeWatch::readNetworkMessages()
{
    alignas(nlmsghdr) char buffer[8192];
    for (;;) {
        const auto length = ::recv(m_socket, buffer, sizeof buffer, 0);
        if (length < 0 && errno == ENOBUFS) // there was more than could be kept
            m_settleTimer.start(settleTime);
        if (length <= 0)
            return;
        auto left = static_cast<unsigned>(length);
        for (auto* message = reinterpret_cast<nlmsghdr*>(buffer); NLMSG_OK(message, left);
             message = NLMSG_NEXT(message, left)) {
            if (message->nlmsg_type == RTM_NEWADDR)
                m_settleTimer.start(settleTime);
        }
    }
}
