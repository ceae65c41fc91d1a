#include "download/livecounts.h"

#include "download/downloader.h"
#include "download/downloadfromindextask.h"
#include "index/indexparser.h"

#include <QDebug>

void logLiveCounts()
{
    qDebug() << "Downloader:" << LiveCount<Downloader>::count();
    qDebug() << "DownloadFromIndexTask:" << LiveCount<DownloadFromIndexTask>::count();
    qDebug() << "IndexParser:" << LiveCount<IndexParser>::count();
    qDebug() << "Index:" << LiveCount<Index>::count();
    qDebug() << "IndexEntry:" << LiveCount<IndexEntry>::count();
}
