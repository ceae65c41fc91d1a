#pragma once

class QString;

/**
 * Removes the toolkit's lock of this settings file when nobody holds it. A launcher that was killed at the
 * moment in which it made the lock leaves one that names no owner, and the next one would wait half a minute
 * for it, without a window. Waits for 1.5 s at most; a lock that is held stays.
 */
void removeAbandonedLock(const QString& settingsFile);
