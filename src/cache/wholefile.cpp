#include "cache/wholefile.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace
{
bool writeAll(int descriptor, const QByteArray& content)
{
    const char* next = content.constData();
    auto left = static_cast<size_t>(content.size());
    while (left > 0) {
        const auto written = ::write(descriptor, next, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        next += written;
        left -= static_cast<size_t>(written);
    }
    return true;
}
} // namespace

bool writeWholeFile(const QString& path, const QByteArray& content, QString* error)
{
    const auto finalName = QFile::encodeName(path);
    // Another process or thread may be writing the same file.
    static std::atomic<unsigned> serial{0};
    const auto tempName = finalName + '.' + QByteArray::number(qlonglong(::getpid())) + '-' +
                          QByteArray::number(serial++) + ".tmp";
    const int descriptor =
        ::open(tempName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    bool done = descriptor >= 0 && writeAll(descriptor, content);
    // Some file systems tell only here that the space is used up.
    int failure = done ? 0 : errno;
    if (descriptor >= 0 && ::close(descriptor) != 0 && done) {
        done = false;
        failure = errno;
    }
    if (done && std::rename(tempName.constData(), finalName.constData()) == 0)
        return true;
    *error = qt_error_string(done ? errno : failure);
    if (descriptor >= 0)
        ::unlink(tempName.constData());
    return false;
}
