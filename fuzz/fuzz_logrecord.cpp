// A record of the live log is either refused or survives being written and read again.

#include "logging/logrecord.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto bytes = QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size))
                           .leftJustified(LogRecord::size, '\0', true);
    LogRecord record;
    if (!decodeLogRecord(bytes, &record))
        return 0;
    if (record.type < 0 || record.type > 4)
        std::abort();
    const auto encoded = encodeLogRecords(record);
    LogRecord again;
    if (encoded.isEmpty() || encoded.size() % LogRecord::size != 0 ||
        !decodeLogRecord(encoded.left(LogRecord::size), &again) || again.type != record.type ||
        again.msSinceEpoch != record.msSinceEpoch)
        std::abort();
    return 0;
}
