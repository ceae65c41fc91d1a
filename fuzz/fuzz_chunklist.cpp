// A list of chunks is either refused with a reason or harmless: names as expected, sizes that can be true.

#include "download/bundle.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const auto index = [] {
        auto result = IndexPtr::create();
        result->setName(QStringLiteral("velkor_1.txt"));
        result->setBuild(QStringLiteral("1"));
        result->append(IndexEntryPtr(
            new IndexEntry(QStringLiteral("app:/x"), QStringLiteral("ab/x"), QString(), 100000)));
        return result;
    }();
    Bundle bundle(index, QStringLiteral("/nowhere"));
    const auto problem =
        bundle.readList(QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    const auto entries = bundle.chunkEntries();
    if (problem.isEmpty() == entries.isEmpty())
        std::abort();
    qint64 bytes = 0;
    for (int i = 0; i < entries.size(); ++i) {
        const auto& entry = *entries[i];
        bytes += entry.size;
        if (entry.cachedName != QStringLiteral("bundles/1/velkor_1.txt.bundle.%1").arg(i) || entry.size < 1 ||
            entry.checksum.size() != 32)
            std::abort();
    }
    if (bytes > 200000)
        std::abort();
    return 0;
}
