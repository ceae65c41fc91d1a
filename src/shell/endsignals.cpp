#include "shell/endsignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace
{
constexpr int endingSignals[] = {SIGTERM, SIGINT, SIGHUP};
int notification = -1;

extern "C" void onSignal(int /*number*/)
{
    const uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(notification, &one, sizeof one);
}
} // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent)
{
    notification = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto* notifier = new QSocketNotifier(notification, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        uint64_t count = 0;
        if (::read(notification, &count, sizeof count) > 0)
            emit endRequested();
    });
    for (const int number : endingSignals)
        std::signal(number, onSignal);
}

EndSignals::~EndSignals()
{
    for (const int number : endingSignals)
        std::signal(number, SIG_DFL);
    ::close(notification);
}
