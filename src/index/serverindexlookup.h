#pragma once

#include "index/index.h"

/** What those need who work with the index of another server. */
class ServerIndexLookup
{
public:
    ServerIndexLookup() = default;
    virtual ~ServerIndexLookup() = default;
    Q_DISABLE_COPY_MOVE(ServerIndexLookup)

    /** The binaries index of the build whose files a server last had completely; null while there is none. */
    virtual IndexPtr installedIndex(const QString& serverKey) const = 0;
};
