#pragma once

#include <QString>

/** A count of bytes for people: "B", "KB", "MB" or "GB" with two decimals. */
QString formatMemory(long long bytes);
