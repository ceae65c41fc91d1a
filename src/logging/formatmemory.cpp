#include "logging/formatmemory.h"

QString formatMemory(long long bytes)
{
    constexpr long long kilo = 1024;
    constexpr long long mega = kilo * 1024;
    constexpr long long giga = mega * 1024;
    const auto format = [bytes](long long unit, const char* name) {
        const float number = static_cast<float>(bytes) / static_cast<float>(unit);
        return QStringLiteral("%1 %2").arg(static_cast<double>(number), 0, 'f', 2).arg(QLatin1String(name));
    };
    if (bytes < kilo)
        return format(1, "B");
    if (bytes < mega)
        return format(kilo, "KB");
    if (bytes < giga)
        return format(mega, "MB");
    return format(giga, "GB");
}
