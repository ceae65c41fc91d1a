#pragma once

#include <QString>

/**
 * Tells the operators of an update that failed, by its code (one of UpdateError), where they want to know:
 * nothing is sent about clients that run, nor about downloads while the machine is offline. name is the
 * server's key, or "Wine".
 */
void reportUpdateFailure(const QString& name, int code);

/** What the code means, for the player: the end of a sentence. */
QString describeUpdateError(int code);
