#pragma once

#include "index/serverindexlookup.h"

/** Looks the indexes up at the managers that the settings know. Main thread. */
class ServerIndexes : public ServerIndexLookup
{
public:
    IndexPtr installedIndex(const QString& serverKey) const override;
};
