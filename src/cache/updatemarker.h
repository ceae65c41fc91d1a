#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

/**
 * Marks a cache as being written, so that a power cut cannot leave bad files that look whole.
 *
 * Files in the cache are trusted when they are there, yet the operating system writes their content long
 * after it has named them. While any marker of this process is held, the file "ResFiles/.updating-<process
 * id>" exists and is locked. A marker file that nobody has locked was left by a process that died, perhaps
 * with the machine: recoverAfterCrash() then checks every file that is younger than it.
 *
 * All operations may run on any thread.
 */
class UpdateMarker
{
public:
    /**
     * Marks the cache below cacheRoot; the marker file goes when the last holder in this process calls
     * release(). Returns null and explains in error when the file cannot be made.
     */
    static std::shared_ptr<UpdateMarker> acquire(const QString& cacheRoot, QString* error);
    ~UpdateMarker();

    /**
     * Waits until the file system has written everything, then removes the marker file if this is the last
     * holder. Blocks, for seconds in the worst case. Where writing fails the marker file stays, for a later
     * start to act on; returns false then.
     */
    static bool release(std::shared_ptr<UpdateMarker>&& marker);

    /** Whether any launcher, this one included, is writing to the cache. */
    static bool isHeld(const QString& cacheRoot);

    struct Recovery {
        int markers = 0;
        int checked = 0;
        int removed = 0;
    };
    /**
     * Looks for markers of dead processes; where there are any, every file below ResFiles that is younger
     * than the oldest of them is compared with the MD5 that its cached name ends in (expectedMd5 is asked
     * first), removed when it differs or cannot be judged, and the markers are removed. Two launchers do this
     * one after the other. Once stop is set it returns soon, and leaves the markers for the next time.
     */
    static Recovery recoverAfterCrash(const QString& cacheRoot,
                                      const std::function<QString(const QString& cachedName)>& expectedMd5,
                                      const std::atomic<bool>& stop);

private:
    UpdateMarker(QString path, int descriptor);
    static QStringList findDead(const QString& folder, QDateTime* oldest);
    static void removeBadFiles(const QString& folder, const QDateTime& youngFrom,
                               const std::function<QString(const QString& cachedName)>& expectedMd5,
                               const std::atomic<bool>& stop, Recovery* recovery);
    Q_DISABLE_COPY_MOVE(UpdateMarker)

    const QString m_path;
    const int m_descriptor;
};
