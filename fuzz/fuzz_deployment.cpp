// A deployment file is either complete or refused with a reason.

#include "settings/deployment.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto json = QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QString error;
    const auto deployment =
        Deployment::parse(json, QStringLiteral("/"), Deployment::Origin::OverrideFile, &error);
    if (deployment ? deployment->binariesHost.isEmpty() || deployment->internalDomains.size() != 2
                   : error.isEmpty())
        std::abort();
    return 0;
}
