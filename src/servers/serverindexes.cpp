#include "servers/serverindexes.h"

#include "servers/servermanager.h"
#include "settings/settings.h"

IndexPtr ServerIndexes::installedIndex(const QString& serverKey) const
{
    const auto* server = Settings::instance()->getServer(serverKey);
    return server ? server->getInstalledIndex() : IndexPtr();
}
