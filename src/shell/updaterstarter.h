#pragma once

#include "index/index.h"

#include <QCoreApplication>

/** Brings the updater of a downloaded launcher out of the cache and starts it. Main thread. */
class UpdaterStarter
{
    Q_DECLARE_TR_FUNCTIONS(UpdaterStarter)

public:
    /** index: of the new version; its file and its content are in the cache folder. */
    UpdaterStarter(const QString& cacheFolder, const QString& version, const IndexPtr& index);

    /** Starts the updater, which waits for this process to end. Returns an empty text, or for people what is
     * wrong. */
    QString start() const;

    /** Where a version's index is kept. */
    static QString indexPath(const QString& cacheFolder, const QString& version);

private:
    IndexEntryPtr findRow() const;
    bool copy(const IndexEntry& row) const;
    bool run() const;

    const QString m_cacheFolder;
    const QString m_version;
    const IndexPtr m_index;
};
