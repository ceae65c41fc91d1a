#pragma once

#include <QString>

#include <optional>

/**
 * Bytes that this user may still write below a folder, which need not exist yet; none when the file system
 * does not tell. Any thread; may block on a slow file system.
 */
std::optional<qint64> freeSpace(const QString& folder);
