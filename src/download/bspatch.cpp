#include "download/bspatch.h"

#include <QtEndian>

#include <limits>

namespace
{
/** Three numbers at the head of a record. */
struct Control {
    qint64 add = 0;
    qint64 extra = 0;
    qint64 seek = 0;
};

bool readControl(const PatchStream& stream, Control* control)
{
    char bytes[3 * sizeof(qint64)];
    if (!stream.read(bytes, sizeof bytes))
        return false;
    control->add = qFromLittleEndian<qint64>(bytes);
    control->extra = qFromLittleEndian<qint64>(bytes + 8);
    control->seek = qFromLittleEndian<qint64>(bytes + 16);
    return true;
}

/** Reads a block that has to fit into what is left of the new file. */
bool readBlock(const PatchStream& stream, char* to, qint64 length, qint64 room)
{
    if (length > room || length > std::numeric_limits<int>::max() || length < std::numeric_limits<int>::min())
        return false;
    return stream.read(to, static_cast<int>(length));
}

/** The loop is on its own, and its pointers never overlap, so that the compiler turns it into vectors. */
#ifndef __clang__ // which does so anyway
__attribute__((optimize("O3")))
#endif
void addBytes(char* __restrict to, const char* __restrict from, qint64 length)
{
    for (qint64 i = 0; i < length; ++i)
        to[i] = static_cast<char>(static_cast<unsigned char>(to[i]) + static_cast<unsigned char>(from[i]));
}

/** Adds the old bytes from oldPos on, as far as they are inside the old file. oldPos + length does not
 * overflow. */
void addOldBytes(char* to, qint64 length, const char* oldBytes, qint64 oldSize, qint64 oldPos)
{
    const qint64 begin = qMax(oldPos, qint64(0));
    const qint64 end = qMin(oldPos + length, oldSize);
    if (begin < end)
        addBytes(to + (begin - oldPos), oldBytes + begin, end - begin);
}
} // namespace

int bspatch(const char* oldBytes, qint64 oldSize, char* newBytes, qint64 newSize, const PatchStream& stream)
{
    qint64 newPos = 0;
    qint64 oldPos = 0;
    while (newPos < newSize) {
        Control control;
        if (!readControl(stream, &control) ||
            !readBlock(stream, newBytes + newPos, control.add, newSize - newPos))
            return -1;
        qint64 oldEnd = 0;
        if (__builtin_add_overflow(oldPos, control.add, &oldEnd))
            return -1;
        addOldBytes(newBytes + newPos, control.add, oldBytes, oldSize, oldPos);
        newPos += control.add;
        oldPos = oldEnd;

        if (!readBlock(stream, newBytes + newPos, control.extra, newSize - newPos))
            return -1;
        newPos += control.extra;
        if (__builtin_add_overflow(oldPos, control.seek, &oldPos))
            return -1;
    }
    return 0;
}
