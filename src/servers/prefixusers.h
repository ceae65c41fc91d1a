#pragma once

#include <QString>

/**
 * Whether a client of ours, started by this launcher or by an earlier one, runs in the Wine prefix. Processes
 * of other users are not seen. Any thread; takes a few milliseconds.
 */
bool isClientRunningIn(const QString& prefix);

/** Whether a client of any server runs: one that is tracked, or one of an earlier launcher. Main thread. */
bool isAnyClientRunning();
