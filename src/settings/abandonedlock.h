#pragma once

class QString;

/**
 * Removes the toolkit's locks of this settings file when nobody holds them. A launcher that was killed at the
 * moment in which it made a lock leaves one that names no owner, and the next one would wait half a minute
 * for it, without a window. Waits for 1.5 s at most for each; locks that are held stay.
 */
void removeAbandonedLocks(const QString& settingsFile);
