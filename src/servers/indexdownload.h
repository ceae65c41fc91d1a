#pragma once

#include "index/index.h"

#include <QString>

class DownloadFromIndexTask;
class QObject;

/** A task that brings the launcher's cache up to date with the index, and looks into the folder that the
 * player has named for what is missing. baseUrl ends with "/"; the parent owns the task. */
DownloadFromIndexTask* makeIndexDownload(const QString& name, const IndexPtr& index, const QString& baseUrl,
                                         QObject* parent);
