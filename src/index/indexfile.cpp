#include "index/indexfile.h"

#include "index/indexparser.h"
#include "telemetry/exceptionlogger.h"

#include <QFile>

IndexPtr getIndexFromFile(const QString& path)
{
    if (path.isEmpty())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        reportException("OpenFailed", QStringLiteral("Couldn't open index file %1").arg(path), "indexparser",
                        "getIndexFromFile", __LINE__);
        return {};
    }
    return parseIndex(file.readAll(), path);
}
