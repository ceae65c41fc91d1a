#include "cache/freespace.h"

#include <QFileInfo>
#include <QStorageInfo>

std::optional<qint64> freeSpace(const QString& folder)
{
    auto existing = folder;
    while (!QFileInfo::exists(existing)) {
        const auto parent = QFileInfo(existing).absolutePath();
        if (parent == existing)
            return std::nullopt;
        existing = parent;
    }
    const QStorageInfo storage(existing);
    if (!storage.isValid() || !storage.isReady() || storage.bytesTotal() <= 0)
        return std::nullopt;
    return storage.bytesAvailable();
}
