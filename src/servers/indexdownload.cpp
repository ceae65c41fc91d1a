#include "servers/indexdownload.h"

#include "download/downloadfromindextask.h"
#include "settings/settings.h"

static AdoptedFolder playersFolder()
{
    const auto* settings = Settings::instance();
    return {settings->getAdoptedFolder(), settings->linksAdoptedFiles()};
}

DownloadFromIndexTask* makeIndexDownload(const QString& name, const IndexPtr& index, const QString& baseUrl,
                                         QObject* parent)
{
    const auto* settings = Settings::instance();
    auto* task = new DownloadFromIndexTask(name, index, baseUrl, settings->getCacheFolder(), parent);
    task->adoptFrom(playersFolder());
    QObject::connect(settings, &Settings::adoptedFolderChosen, task,
                     [task] { task->adoptFrom(playersFolder()); });
    return task;
}
