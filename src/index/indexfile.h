#pragma once

#include "index/index.h"

/**
 * Reads and parses an index file. Null when the path is empty, or when the file cannot be read, which is
 * reported. May run on any thread.
 */
IndexPtr getIndexFromFile(const QString& path);
