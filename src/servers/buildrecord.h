#pragma once

#include "index/index.h"

#include <QString>

/**
 * What is remembered of a server's builds from one run to the next: the build that was downloaded completely
 * (in the settings), the indexes of the newest and of the installed build (files in the cache folder), and
 * the build that stands in the staging folder (its start.ini). Main thread.
 */
class BuildRecord
{
public:
    /** name: the server's key in the catalogue. */
    explicit BuildRecord(const QString& name);

    /** In the cache folder that is set now, like all that is read here. */
    QString stagingFolder() const;
    /** Of the newest build that was known; null when there was none. */
    IndexPtr loadIndex() const;
    /** Of the last build whose files have been downloaded completely; newest where that is the same one. */
    IndexPtr loadInstalledIndex(const IndexPtr& newest) const;
    /** Of the build in the staging folder; null when there is none. */
    IndexPtr loadPrefetchIndex() const;
    /**
     * Keeps the index of this build, which lets a later start know it without a download; nothing else
     * depends on it. The index of the installed build stays beside it until dropInstalledIndex(): patches
     * start from it, also when the launcher has been ended meanwhile.
     */
    void keepIndex(const QByteArray& bytes, const QString& build) const;
    /** The newest build is the installed one now. */
    void dropInstalledIndex() const;

    /** The build in the staging folder; empty when none can be read, or when files of it have been lost since
     * it was placed. */
    QString installedBuild() const;
    /** The build in the staging folder's start.ini, or an empty string. */
    QString stagingFolderBuild() const;

    const QString& lastDownloaded() const { return m_lastDownloaded; }
    /** Takes effect for later runs with save(). */
    void setLastDownloaded(const QString& build) { m_lastDownloaded = build; }
    void save() const;

private:
    QString cachedIndexPath() const;
    QString installedIndexPath() const;
    QString settingsKey() const;

    const QString m_name;
    QString m_lastDownloaded;
};
