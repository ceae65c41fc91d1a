// The fast parser has to agree with the slow one on whatever bytes come.

#include "index/indexparser.h"

#include <QStringList>

#include <cstdint>
#include <cstdlib>

static bool isSame(const IndexEntry& a, const IndexEntry& b)
{
    return a.name == b.name && a.cachedName == b.cachedName && a.checksum == b.checksum && a.size == b.size &&
           a.compressedSize == b.compressedSize && a.flags == b.flags;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    IndexParser parser;
    parser.parse(reinterpret_cast<const char*>(data), size);
    const auto& rows = parser.getIndex()->entries();

    int row = 0;
    auto bytes = QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size));
    bytes.replace('\0', '\n');
    for (const auto& line : bytes.split('\n')) {
        if (line.count(',') < 5)
            continue;
        const auto expected = parser.parseSingleLine(QString::fromLocal8Bit(line));
        // Bytes that are no text may decode differently as part of a line; the fields have to match
        // otherwise.
        if (QString::fromLocal8Bit(line).toLocal8Bit() == line && !isSame(*rows[row], *expected))
            std::abort();
        ++row;
    }
    if (row != rows.size())
        std::abort();
    return 0;
}
