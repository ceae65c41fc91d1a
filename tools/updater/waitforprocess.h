#pragma once

#include <sys/types.h>

#include <chrono>

/** Waits until the process has ended, for at most that long; returns whether it has. One that does not exist
 * has. */
bool waitForProcess(pid_t process, std::chrono::milliseconds longest);
