#include "settings/abandonedlock.h"

#include <QLockFile>

namespace
{
/** Whoever makes the lock writes the owner's name into it in far less. */
constexpr int abandonedAfterMs = 1000;
constexpr int patienceMs = 1500;
} // namespace

// Taken for a moment: the toolkit removes an old lock on the way, unless its owner lives.
void removeAbandonedLock(const QString& settingsFile)
{
    QLockFile lock(settingsFile + QStringLiteral(".lock"));
    lock.setStaleLockTime(abandonedAfterMs);
    lock.tryLock(patienceMs);
}
