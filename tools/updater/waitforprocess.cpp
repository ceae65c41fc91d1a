#include "tools/updater/waitforprocess.h"

#include <cerrno>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

bool waitForProcess(pid_t process, std::chrono::milliseconds longest)
{
    // A descriptor, unlike a number, never comes to mean another process.
    const int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0)
        return errno == ESRCH;
    const auto end = std::chrono::steady_clock::now() + longest;
    pollfd events{descriptor, POLLIN, 0};
    int ready = -1;
    do {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        ready = ::poll(&events, 1, static_cast<int>(std::max(left.count(), decltype(left)::rep(0))));
    } while (ready < 0 && errno == EINTR);
    ::close(descriptor);
    return ready > 0;
}
