#include "servers/combinedindex.h"

#include "cache/md5many.h"
#include "cache/safepath.h"
#include "index/indexfile.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QThread>

namespace
{
constexpr int waits = 10;
constexpr unsigned long waitMs = 300;

IndexPtr waitForIndex(const ServerManager& server)
{
    for (int i = 0; i < waits; ++i) {
        if (auto index = server.getIndex())
            return index;
        QThread::msleep(waitMs);
    }
    return server.getIndex();
}

/** The index that a row of another names; null when its file is not there or is damaged. */
IndexPtr readListedIndex(const IndexPtr& listing, const QString& name)
{
    if (!listing)
        return {};
    for (const auto& row : listing->entries()) {
        if (row->name != name || !SafePath::isSafeText(row->cachedName))
            continue;
        const auto path = QDir::cleanPath(Settings::instance()->getCacheFolder() +
                                          QStringLiteral("/ResFiles/") + row->cachedName);
        return md5OfFiles({path}).first() == row->checksum.toLatin1() ? getIndexFromFile(path) : IndexPtr();
    }
    return {};
}
} // namespace

CombinedIndex getCombinedIndexForServer(const QString& serverKey)
{
    CombinedIndex combined{0, IndexPtr::create()};
    const auto* server = Settings::instance()->getServer(serverKey);
    const auto binaries = server ? waitForIndex(*server) : IndexPtr();
    if (!binaries) {
        qWarning().noquote() << "Couldn't get binary index for" << serverKey;
        ++combined.failureCount;
    }
    combined.index->combine(binaries);
    const auto resources = readListedIndex(binaries, QStringLiteral("app:/resfileindex.txt"));
    if (!resources) {
        qWarning().noquote() << "Couldn't get resource index for" << serverKey;
        ++combined.failureCount;
    }
    combined.index->combine(resources);
    combined.index->combineContents(
        readListedIndex(binaries, QStringLiteral("app:/resfileindex_prefetch.txt")));
    if (!server)
        return combined;
    // What is being downloaded may still be of an older build, and what is installed as well.
    const auto installed = server->getInstalledIndex();
    combined.index->combineContents(server->getResourceIndex());
    combined.index->combineContents(installed);
    if (installed != binaries)
        combined.index->combineContents(readListedIndex(installed, QStringLiteral("app:/resfileindex.txt")));
    return combined;
}

CombinedIndex getCombinedIndexForWine()
{
    CombinedIndex combined{0, IndexPtr::create()};
    const auto* wine = Settings::instance()->getWineManager();
    const auto index = wine ? wine->getIndex() : IndexPtr();
    if (!index && wine && wine->isInstalled()) {
        qWarning() << "Couldn't get index for Wine";
        combined.failureCount = 1;
    }
    combined.index->combine(index);
    return combined;
}

CombinedIndex getCombinedIndexForLauncher()
{
    CombinedIndex combined{0, IndexPtr::create()};
    const QDir cache(Settings::instance()->getCacheFolder());
    const auto names = cache.entryList({QStringLiteral("velkorlauncher_linux_*.txt")}, QDir::Files);
    for (const auto& name : names) {
        const auto index = getIndexFromFile(cache.filePath(name));
        combined.failureCount += index ? 0 : 1;
        combined.index->combineContents(index);
    }
    return combined;
}

void combineIndices(CombinedIndex& accumulated, const CombinedIndex& next)
{
    accumulated.failureCount += next.failureCount;
    if (!accumulated.index)
        accumulated.index = IndexPtr::create();
    accumulated.index->combineContents(next.index);
}
