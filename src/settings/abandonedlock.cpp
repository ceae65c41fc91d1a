#include "settings/abandonedlock.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLockFile>
#include <QThread>

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
            QLockFile(path).removeStaleLockFile(); // fails while the owner lives
    }
}
