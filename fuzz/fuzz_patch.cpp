// The records of a patch, whatever they are, never lead outside of the two buffers.

#include "download/bspatch.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

// Input: sizes of old and new file in one and two bytes, then the records.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 3)
        return 0;
    const int oldSize = data[0];
    const int newSize = data[1] + 256 * data[2];
    const std::unique_ptr<char[]> oldBytes(new char[static_cast<size_t>(oldSize)]());
    const std::unique_ptr<char[]> newBytes(new char[static_cast<size_t>(newSize)]());
    const uint8_t* next = data + 3;
    size_t left = size - 3;
    const PatchStream stream{[&](char* to, int length) {
        if (length < 0 || static_cast<size_t>(length) > left)
            return false;
        std::memcpy(to, next, static_cast<size_t>(length));
        next += length;
        left -= static_cast<size_t>(length);
        return true;
    }};
    const int code = bspatch(oldBytes.get(), oldSize, newBytes.get(), newSize, stream);
    if (code != 0 && code != -1)
        std::abort();
    return 0;
}
