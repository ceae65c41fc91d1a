#pragma once

#include "index/index.h"
#include "servers/heldprogress.h"
#include "tasks/task.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QObject>
#include <QProcessEnvironment>

#include <chrono>

class QJsonArray;

/**
 * Keeps the Wine runtime in the cache up to date and prepares the prefix that all clients run in.
 *
 * refresh() runs the chain list of versions, index, files, removal of the old runtime, copy into the staging
 * folder, prefix; it ends with endUpdate(). What is installed is forgotten before the old runtime is removed,
 * so that an installation that breaks off in the middle, for whatever reason, is done again by the next
 * refresh. Nothing is removed while a client runs in the prefix. Main thread; files are removed and copied on
 * the global thread pool.
 */
class WineManager : public QObject
{
    Q_OBJECT

public:
    /** regEditTimeout: how long a run of regedit may take before it is ended. */
    explicit WineManager(QObject* parent = nullptr,
                         std::chrono::milliseconds regEditTimeout = std::chrono::seconds(30));
    ~WineManager() override;

    /** Where the Wine runtime lives: its programs are in "bin" below. */
    QString getStagingFolder() const;
    /** Of the version that the last refresh has chosen; empty before. */
    QString getVersion() const { return m_version; }
    QString getIndexName() const;
    /** Of the newest version that is known, also to an earlier run; null before the first. Any thread. */
    IndexPtr getIndex() const { return m_index.get(); }
    /** Any thread. */
    bool isInstalled() const { return QFileInfo::exists(getStagingFolder()); }
    /** The runtime or the prefix is being replaced; no client may be started. */
    bool isInstalling() const { return m_step == Step::Installing; }

    /** Why the last update failed, for the player; empty where there is nothing to say. */
    QString getErrorText() const { return m_errorText; }

    /** While there is a reason why downloads are held, it stands where the progress is told otherwise. */
    void setHeldBecause(const QString& reason);

    /** Starts one update; only one at a time. */
    void refresh();
    /** Makes the next update install again; takes effect even if the process is killed. */
    void resetLastDownloaded();
    void saveLastDownloadedBuild();

    /**
     * Writes the settings into the prefix, which comes into being where it does not exist. The calling thread
     * waits for Wine, for up to a minute.
     */
    void prepareEnv();
    /** The launcher's own environment with the variables of the prefix put in. */
    QProcessEnvironment getWineProcessEnvironment() const;
    /** Runs Wine's registry editor and waits for it; one that takes too long is ended. */
    void runRegEdit(const QStringList& arguments);
    /** Writes what regedit is to import. A key that has to go is deleted at once. */
    void writeSettingsFile(const QString& path);
    /** Removes runtime and prefix but for the games' own folders. Failures are logged. */
    void purgeStagingFolders() const;

    /**
     * The versions of a list in its order: entries are objects with "version", or the versions themselves.
     * Those that do not contain the filter are left out, unless it is empty, and so are those that cannot be
     * part of a file name.
     */
    static QStringList filterWineVersions(const QJsonArray& versions, const QString& filter);

signals:
    void startUpdate();
    /** errorCode: one of UpdateError. */
    void endUpdate(int errorCode);
    void versionUpdate(const QString& version);
    /** fraction: 0 to 1 over the whole update. */
    void progressUpdate(float fraction, const QString& message);
    /** The main thread is about to wait for a program of Wine; message tells the player so. */
    void waiting(const QString& message);

private:
    /** Which step the progress belongs to. */
    enum class DownloadStep { Download = 0, Copy = 1, Done = 2 };
    enum class Step { Idle, Updating, Installing };

    // The chain, in the order in which it runs
    void downloadVersionInfo();
    void onVersionInfoDownloadFinished(Task* task);
    void startWineUpdate(const QString& version);
    void onIndexDownloadFinished(Task* task);
    void onDownloadFinished(Task* task);
    void copyWineFiles();
    void onPurged();
    void onCopyFinished(Task* task);
    /** As the task has ended. */
    void end(const Task* task);
    void end(int errorCode);

    QString keptIndexPath() const;
    void chooseVersion(const QString& version);
    void onProgressUpdate(float fraction, const QString& text);
    void reportProgress();
    void scheduleDownload(const QString& queue, const QString& taskName, const QString& fileName,
                          void (WineManager::*onFinished)(Task*));
    static void purge(const QString& cacheFolder, const QString& prefixFolder);
    void copyFont() const;

    const std::chrono::milliseconds m_regEditTimeout;
    bool m_ready = false;
    DownloadStep m_downloadStep = DownloadStep::Download;
    Step m_step = Step::Idle;
    HeldProgress m_progress;
    QString m_version;
    QString m_errorText;
    QString m_lastDownloaded;
    QString m_installedVersion;
    PublishedIndex m_index;
    QFutureWatcher<void> m_purgeWatcher;
};
