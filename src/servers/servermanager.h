#pragma once

#include "index/index.h"
#include "servers/attachedprocess.h"
#include "servers/buildrecord.h"
#include "servers/fulldownload.h"
#include "servers/heldprogress.h"
#include "tasks/task.h"

#include <QFutureWatcher>
#include <QJsonObject>
#include <QSet>

#include <functional>

class Downloader;
class DownloadFromIndexTask;

/**
 * Keeps one game server's client up to date and starts it.
 *
 * refresh() runs the chain version information, binaries index, binaries, prefetched resources, copy into the
 * staging folder, ready; each step is a task on the scheduler queue named after the server. With all
 * resources wanted, a download in the background follows. Failures end the chain with failedUpdate(); what is
 * in the cache stays, and the next refresh goes on from there. Main thread; indexes are parsed on the global
 * thread pool.
 */
class ServerManager : public QObject
{
    Q_OBJECT

public:
    /** name is the catalogue key, entry the catalogue's object for it. */
    ServerManager(const QString& name, const QJsonObject& entry, QObject* parent = nullptr);
    /** Clients that still run are left running. */
    ~ServerManager() override;

    QString getName() const { return m_name; }
    QString getDisplayName() const { return m_displayName; }
    /** URL of the version information. */
    QString getPatchInfo() const { return m_patchInfoUrl; }
    QString getServer() const { return m_server; }
    QString getBuild() const { return m_build; }
    /** Of the newest build that is known. Any thread. */
    IndexPtr getIndex() const { return m_index.get(); }
    /** Of the last build whose binaries were downloaded completely, also by an earlier run. Any thread. */
    IndexPtr getInstalledIndex() const { return m_installedIndex.get(); }
    IndexPtr getCurrentIndex() const { return m_currentIndex; }
    IndexPtr getPrefetchIndex() const { return m_prefetchIndex; }
    IndexPtr getCurrentPrefetchIndex() const { return m_currentPrefetchIndex; }
    /** Of the build whose resources were last downloaded; null before the first. Any thread. */
    IndexPtr getResourceIndex() const { return m_fullDownload.getIndex(); }
    QString getStagingFolder() const { return m_record.stagingFolder(); }
    /** The client's executable in the staging folder. */
    QString getExefileName() const;
    /** The file in the cache that the binaries index names so; empty when there is none. */
    QString findFileInIndex(const QString& name) const;
    /** The build recorded in the staging folder's start.ini, or an empty string. */
    QString getStagingFolderBuild() const { return m_record.stagingFolderBuild(); }
    /** The staging folder holds the current build, and play() may be called. */
    bool isReady() const { return m_ready; }
    /** Between refresh() and its endUpdate() or failedUpdate(). */
    bool isUpdating() const { return m_updating; }
    /** What was last told of the update, for people. */
    QString progressText() const { return m_progress.shownText(); }
    /** All resources are being downloaded in the background, or are about to be. */
    bool isFullDownloadRunning() const { return m_fullDownload.isRunning(); }
    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }
    /** Asked before a long download, and where there seems to be too little room; see DownloadFromIndexTask.
     */
    using Review = std::function<void(ServerManager* server, DownloadFromIndexTask* task)>;
    void setReview(const Review& review) { m_review = review; }
    /** While there is a reason why downloads are held, it stands where the progress is told otherwise. */
    void setHeldBecause(const QString& reason);
    bool isRunningProcesses() const { return !m_processes.isEmpty(); }

    /** The token of the logged-in user, for protected builds; it is kept out of all records. */
    void setToken(const QString& token);
    /** Starts one update; a server that is not active stays silent. */
    void refresh();
    /** Forgets the known build; the server is not ready any more. */
    void reset();
    /** Makes the next update download the binaries again. */
    void resetLastDownloaded();
    void saveLastDownloadedBuild() { m_record.save(); }

    /**
     * Starts a client; token, settingsProfile and username may be empty. The calling thread waits until the
     * staging folder has been checked. Failures come as failedUpdate() or showErrorMessage().
     */
    void play(const QString& token, const QString& settingsProfile, const QString& username);
    /** Starts a program under Wine's environment and tracks it. */
    void startProcess(const QString& program, const QStringList& arguments, const QString& workingDirectory,
                      const QString& username);
    /** Chooses the Wine program and completes the client's arguments. */
    void prepareForStartingProcess(QString& workingDirectory, QStringList& arguments, QString& program) const;
    /** Follows a client until it ends; whoever gets processStarted() deletes it after its finished(). */
    void trackProcess(AttachedProcess* process);
    /** Tracks a process that this launcher did not start. */
    void attachProcess(qint64 pid, const QString& username);

signals:
    void startUpdate(ServerManager* server);
    void endUpdate(ServerManager* server);
    /** code: one of UpdateError; message: for the player. */
    void failedUpdate(ServerManager* server, int code, const QString& message);
    void ready(ServerManager* server);
    void versionUpdate(ServerManager* server, const QString& build);
    /** fraction: 0 to 1 over the whole update. */
    void progressUpdate(ServerManager* server, float fraction, const QString& message);
    /** Speed and time left of a download, for people; empty when none runs. */
    void transferUpdate(ServerManager* server, const QString& text);
    /** Files were taken from the player's folder instead of being downloaded. */
    void filesAdopted(int files, qint64 bytes);
    void processRequested(ServerManager* server);
    void processStarted(ServerManager* server, AttachedProcess* process);
    void showErrorMessage(const QString& title, const QString& text, int number);

private:
    /** Which step the progress belongs to. */
    enum class DownloadStep { Binaries = 0, Prefetch = 1, Copy = 2, FullResources = 4 };

    // The chain, in the order in which it runs
    void onPatchInfoDownloadFinished(Task* task);
    void startUpdateTo(const QString& newBuild);
    void downloadBinaryIndex();
    void onBinaryIndexDownloadFinished(Task* task);
    void downloadBinaries();
    void onBinariesDownloadFinished(Task* task);
    void loadPrefetchIndex();
    void onPrefetchIndexLoaded();
    void onPrefetchDownloadFinished(Task* task);
    void copyBinaries();
    void onCopyFinished(Task* task);
    void markMainDownloadDone();

    void reportWineLaunch() const;
    void notifyError(int code, const QString& message);
    /** With the task's own words for the player, where it has some. */
    void notifyTaskError(const Task* task);
    /** Tells how far the whole update is when one of its steps is this far. */
    void onProgressUpdate(DownloadStep step, float fraction, const QString& message);
    void reportProgress();
    Task* makeDownload(const QString& taskName, const IndexPtr& index, const QString& baseUrl,
                       DownloadStep step);
    void scheduleStep(Task* task, void (ServerManager::*onFinished)(Task*));
    void scheduleDownload(const QString& taskName, const QUrl& url, void (ServerManager::*onFinished)(Task*));

    PublishedIndex m_index;
    PublishedIndex m_installedIndex;
    IndexPtr m_currentIndex;
    IndexPtr m_prefetchIndex;
    IndexPtr m_currentPrefetchIndex;
    QFutureWatcher<IndexPtr> m_prefetchWatcher;
    QSet<AttachedProcess*> m_processes;
    QString m_build;
    QString m_stagingFolderBuild;
    const QString m_name;
    const QString m_displayName;
    const QString m_patchInfoUrl;
    const QString m_server;
    BuildRecord m_record;
    QString m_token;
    int m_tokenRetries = 0;
    bool m_ready = false;
    bool m_updating = false;
    bool m_active = false;
    bool m_isProtected = false;
    HeldProgress m_progress;
    Review m_review;
    FullDownload m_fullDownload;
};
