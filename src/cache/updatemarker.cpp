#include "cache/updatemarker.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <unistd.h>

namespace
{
// File systems and clocks may round a time down.
constexpr qint64 timeSlackMs = 2000;

std::mutex heldMutex;
QHash<QString, std::weak_ptr<UpdateMarker>>& heldMarkers()
{
    static QHash<QString, std::weak_ptr<UpdateMarker>> markers;
    return markers;
}

QString resFiles(const QString& cacheRoot)
{
    return QDir::cleanPath(cacheRoot + QStringLiteral("/ResFiles"));
}

/** Opens and locks the file; -1 when that is not possible, with errno set. */
int openLocked(const QString& path, int flags, int lockOperation)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (descriptor < 0)
        return -1;
    if (::flock(descriptor, lockOperation) == 0)
        return descriptor;
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return -1;
}

QStringList markerNames(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral(".updating-*")}, QDir::Files | QDir::Hidden | QDir::System);
}

QString md5OfFile(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return QString::fromLatin1(hash.result().toHex());
}

QString md5InName(const QString& cachedName)
{
    static const QRegularExpression pattern(QStringLiteral("_([0-9a-f]{32})\\z"));
    return pattern.match(cachedName).captured(1);
}
} // namespace

UpdateMarker::UpdateMarker(QString path, int descriptor) : m_path(std::move(path)), m_descriptor(descriptor)
{
}

UpdateMarker::~UpdateMarker() { ::close(m_descriptor); }

std::shared_ptr<UpdateMarker> UpdateMarker::acquire(const QString& cacheRoot, QString* error)
{
    const auto folder = resFiles(cacheRoot);
    const auto path = QStringLiteral("%1/.updating-%2").arg(folder).arg(QCoreApplication::applicationPid());
    const std::lock_guard lock(heldMutex);
    if (auto held = heldMarkers().value(path).lock())
        return held;
    QDir().mkpath(folder);
    const int descriptor = openLocked(path, O_RDWR | O_CREAT, LOCK_EX | LOCK_NB);
    if (descriptor < 0) {
        *error = QStringLiteral("%1: %2").arg(path, qt_error_string(errno));
        return nullptr;
    }
    std::shared_ptr<UpdateMarker> marker(new UpdateMarker(path, descriptor));
    heldMarkers().insert(path, marker);
    return marker;
}

bool UpdateMarker::release(std::shared_ptr<UpdateMarker>&& marker)
{
    const auto held = std::move(marker);
    const bool written = ::syncfs(held->m_descriptor) == 0;
    if (!written)
        qWarning().noquote() << "The file system could not write everything:" << qt_error_string(errno);
    const std::lock_guard lock(heldMutex);
    if (written && held.use_count() == 1)
        QFile::remove(held->m_path);
    return written;
}

bool UpdateMarker::isHeld(const QString& cacheRoot)
{
    const auto folder = resFiles(cacheRoot);
    const auto names = markerNames(folder);
    return std::any_of(names.cbegin(), names.cend(), [&](const QString& name) {
        const int descriptor = openLocked(folder + QLatin1Char('/') + name, O_RDONLY, LOCK_SH | LOCK_NB);
        if (descriptor < 0)
            return errno == EWOULDBLOCK;
        ::close(descriptor);
        return false;
    });
}

QStringList UpdateMarker::findDead(const QString& folder, QDateTime* oldest)
{
    QStringList dead;
    const auto names = markerNames(folder);
    for (const auto& name : names) {
        const auto path = folder + QLatin1Char('/') + name;
        const int descriptor = openLocked(path, O_RDONLY, LOCK_EX | LOCK_NB);
        if (descriptor < 0)
            continue;
        ::close(descriptor);
        dead << path;
        const auto time = QFileInfo(path).lastModified();
        *oldest = oldest->isValid() ? qMin(*oldest, time) : time;
    }
    return dead;
}

UpdateMarker::Recovery
UpdateMarker::recoverAfterCrash(const QString& cacheRoot,
                                const std::function<QString(const QString& cachedName)>& expectedMd5,
                                const std::atomic<bool>& stop)
{
    Recovery recovery;
    const auto folder = resFiles(cacheRoot);
    if (markerNames(folder).isEmpty())
        return recovery;

    // A second launcher waits here, and finds the cache in order.
    const auto lockPath = folder + QStringLiteral("/.recovering");
    const int recoveryLock = openLocked(lockPath, O_RDWR | O_CREAT, LOCK_EX);
    if (recoveryLock < 0) {
        qWarning().noquote() << "Cannot check the cache after an interrupted update:" << lockPath
                             << qt_error_string(errno);
        return recovery;
    }
    QDateTime oldest;
    const auto dead = findDead(folder, &oldest);
    if (!dead.isEmpty()) {
        qWarning()
            << "An earlier update was interrupted, checking the files that it may have left unfinished";
        recovery.markers = dead.size();
        removeBadFiles(folder, oldest.addMSecs(-timeSlackMs), expectedMd5, stop, &recovery);
        if (!stop) {
            for (const auto& path : dead)
                QFile::remove(path);
        }
        qInfo() << "Files checked after the interruption:" << recovery.checked
                << "removed:" << recovery.removed;
    }
    ::close(recoveryLock);
    return recovery;
}

void UpdateMarker::removeBadFiles(const QString& folder, const QDateTime& youngFrom,
                                  const std::function<QString(const QString& cachedName)>& expectedMd5,
                                  const std::atomic<bool>& stop, Recovery* recovery)
{
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext() && !stop) {
        const auto path = files.next();
        const auto info = files.fileInfo();
        const auto name = info.fileName();
        if (info.lastModified() < youngFrom || name.startsWith(QLatin1Char('.')) ||
            name.endsWith(QLatin1String(".tmp")))
            continue;
        const auto cachedName = path.mid(folder.size() + 1);
        if (cachedName.startsWith(QLatin1String("bundles/"))) // checked before they are used
            continue;
        auto md5 = expectedMd5(cachedName);
        if (md5.isEmpty())
            md5 = md5InName(cachedName);
        ++recovery->checked;
        if (!info.isSymLink() && !md5.isEmpty() && md5OfFile(path) == md5)
            continue;
        qWarning().noquote() << "Removing unfinished file" << path;
        ++recovery->removed;
        QFile::remove(path);
    }
}
