#pragma once

#include <QtGlobal>

#include <functional>

/** Where the records of a patch come from. */
struct PatchStream {
    /** Delivers exactly so many bytes, or returns false: there are not so many, or the length is negative. */
    std::function<bool(char* to, int length)> read;
};

/**
 * Rebuilds a file from its old version and the records of a patch: each has the lengths of its two blocks and
 * a seek (three 64-bit integers, little-endian), then bytes that are added to the old ones, then bytes that
 * are new. Writes to the newSize bytes at newBytes only, and reads from the oldSize bytes at oldBytes only;
 * old bytes outside of the old file count as zero. Returns 0, or -1 when the records are damaged.
 */
int bspatch(const char* oldBytes, qint64 oldSize, char* newBytes, qint64 newSize, const PatchStream& stream);
