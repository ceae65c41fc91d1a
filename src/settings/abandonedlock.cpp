#include "settings/abandonedlock.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
/** A lock is made, named and held in far less. */
constexpr qint64 abandonedAfterMs = 1000;
constexpr int patienceMs = 1500;
constexpr unsigned long pauseMs = 50;

/** Also when its time lies ahead, because the clock has been set back. */
bool isOld(const QString& path)
{
    const auto made = QFileInfo(path).lastModified();
    return made.isValid() && qAbs(made.msecsTo(QDateTime::currentDateTime())) > abandonedAfterMs;
}

/** The owner holds the system's lock on the file as long as it lives. */
void removeUnlessHeld(const QString& path)
{
    const auto encoded = QFile::encodeName(path);
    const int file = ::open(encoded.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0)
        return;
    struct stat status {
    };
    // Another launcher may have removed it since it was opened, and a third one have made its own.
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &status) == 0 && status.st_nlink > 0)
        ::unlink(encoded.constData());
    ::close(file);
}
} // namespace

void removeAbandonedLocks(const QString& settingsFile)
{
    // The second one is held while an abandoned first one is removed.
    for (const auto* suffix : {".lock.rmlock", ".lock"}) {
        const auto path = settingsFile + QLatin1String(suffix);
        QElapsedTimer timer;
        timer.start();
        while (QFileInfo::exists(path) && !isOld(path) && !timer.hasExpired(patienceMs))
            QThread::msleep(pauseMs);
        if (isOld(path))
            removeUnlessHeld(path);
    }
}
