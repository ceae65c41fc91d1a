#include "download/downloadplan.h"

#include "cache/freespace.h"
#include "download/cachescan.h"

#include <QSet>

/** Adds up what the missing rows need. */
static void measure(DownloadPlan* plan, const QString& cacheFolder)
{
    constexpr qint64 diskBlock = 4096;
    QSet<QString> contents;
    plan->missingBytes = plan->bytesToFetch = plan->roomNeeded = 0;
    for (const auto& entry : qAsConst(plan->missing)) {
        plan->missingBytes += entry->size;
        if (contents.contains(entry->cachedName))
            continue;
        contents.insert(entry->cachedName);
        plan->bytesToFetch += entry->size;
        plan->roomNeeded += (entry->size + diskBlock - 1) / diskBlock * diskBlock;
    }
    plan->roomLeft = plan->missing.isEmpty() ? std::nullopt : freeSpace(cacheFolder);
}

DownloadPlan planDownload(const Index& index, const QString& cacheFolder)
{
    const auto scan = scanCache(index, cacheFolder);
    DownloadPlan plan;
    plan.missing = scan.missing;
    plan.checked = scan.checked;
    plan.checkedBytes = scan.checkedBytes;
    plan.refused = scan.refused;
    plan.firstRefused = scan.firstRefused;
    measure(&plan, cacheFolder);
    return plan;
}

void updatePlan(DownloadPlan* plan, const Adoption& adoption, const QString& cacheFolder)
{
    plan->missing = adoption.missing;
    plan->adoptedFiles = adoption.files;
    plan->adoptedBytes = adoption.bytes;
    measure(plan, cacheFolder);
}
