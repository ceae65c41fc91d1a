#include "servers/servermanager.h"

#include "download/downloader.h"
#include "download/downloadfromindextask.h"
#include "download/patchmanager.h"
#include "index/indexfile.h"
#include "index/indexparser.h"
#include "logging/messagehandler.h"
#include "servers/copier.h"
#include "servers/indexdownload.h"
#include "settings/settings.h"
#include "tasks/scheduler.h"
#include "telemetry/eventlogger.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QJsonDocument>
#include <QTimer>
#include <QUrlQuery>
#include <QtConcurrent>

namespace
{
constexpr int maxTokenRetries = 5;
constexpr int tokenRetryDelayMs = 10000;
} // namespace

ServerManager::ServerManager(const QString& name, const QJsonObject& entry, QObject* parent)
    : QObject(parent), m_name(name), m_displayName(entry.value(QLatin1String("displayName")).toString()),
      m_patchInfoUrl(QStringLiteral("%1velkorclient_%2.json")
                         .arg(Settings::instance()->getBaseUrlForVersion(), name.toUpper())),
      m_server(entry.value(QLatin1String("server")).toString()), m_record(name),
      m_fullDownload([this](const IndexPtr& index) {
          return makeDownload(QStringLiteral("Full resource download for %1").arg(m_displayName), index,
                              Settings::instance()->getBaseUrlForResources(), DownloadStep::FullResources);
      })
{
    connect(&m_prefetchWatcher, &QFutureWatcher<IndexPtr>::finished, this,
            &ServerManager::onPrefetchIndexLoaded);
    connect(&m_fullDownload, &FullDownload::ended, this, [this](bool began) {
        emit progressUpdate(this, 1.0F, began ? tr("Ready") : QStringLiteral("Ready"));
    });
    m_index.set(m_record.loadIndex());
    m_installedIndex.set(m_record.loadInstalledIndex(getIndex()));
    m_currentPrefetchIndex = m_record.loadPrefetchIndex();
    m_stagingFolderBuild = m_record.installedBuild();
}

ServerManager::~ServerManager()
{
    m_prefetchWatcher.waitForFinished();
    for (auto* process : qAsConst(m_processes))
        process->detach();
}

QString ServerManager::getExefileName() const
{
    const auto folder =
        Settings::instance()->runClientsWith64Bit() ? QStringLiteral("bin64") : QStringLiteral("bin");
    return QStringLiteral("%1/%2/exefile.exe").arg(getStagingFolder(), folder);
}

QString ServerManager::findFileInIndex(const QString& name) const
{
    const auto index = getIndex();
    const auto cachedName = index ? index->getCachedName(name) : QString();
    if (cachedName.isEmpty())
        return {};
    return QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/ResFiles/") +
                           cachedName);
}

void ServerManager::setToken(const QString& token)
{
    m_token = token;
    if (token.isEmpty())
        return;
    logRedactor().addSecret(token);
    qDebug().noquote() << "Got token for" << m_name;
}

void ServerManager::reset()
{
    m_build.clear();
    m_ready = false;
}

void ServerManager::resetLastDownloaded()
{
    m_record.setLastDownloaded({});
    m_stagingFolderBuild.clear(); // nor does what is installed count
    m_record.save();
}

void ServerManager::refresh()
{
    if (m_ready)
        m_stagingFolderBuild = m_build;
    if (!m_active) {
        qDebug().noquote() << "Skipping refresh for" << m_displayName << ", server not enabled";
        return;
    }
    m_ready = false;
    m_updating = true;
    m_progress.fraction = 0;
    m_progress.text.clear();
    scheduleDownload(QStringLiteral("Patch info downloader for %1").arg(m_displayName), QUrl(m_patchInfoUrl),
                     &ServerManager::onPatchInfoDownloadFinished);
}

void ServerManager::onPatchInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError()) {
        reportException("DownloadError", task->getErrorString(), "servermanager",
                        "onPatchInfoDownloadFinished", __LINE__);
        notifyError(DownloadError, tr("Version info not available"));
        return;
    }
    const auto* downloader = qobject_cast<Downloader*>(task);
    if (!downloader) {
        reportException("RuntimeError", QStringLiteral("Task is not of the expected type"), "servermanager",
                        "onPatchInfoDownloadFinished", __LINE__);
        notifyError(UnknownError, tr("Version info not available"));
        return;
    }
    const auto info = QJsonDocument::fromJson(downloader->getContents()).object();
    const auto newBuild = info.value(QLatin1String("build")).toString();
    if (newBuild.isEmpty()) {
        reportException("RuntimeError", QStringLiteral("Couldn't find build number in patch info file"),
                        "servermanager", "onPatchInfoDownloadFinished", __LINE__);
        notifyError(DownloadError, tr("Version info not available"));
        return;
    }
    emit versionUpdate(this, newBuild);
    m_isProtected = info.value(QLatin1String("protected")).toBool(false);
    qDebug().noquote() << "Build on" << m_name << ":" << newBuild << "-"
                       << (m_isProtected ? "protected" : "public");
    if (!QDir(getStagingFolder()).exists()) {
        m_record.setLastDownloaded({});
        m_stagingFolderBuild.clear();
    }
    if (newBuild == m_stagingFolderBuild) {
        qDebug().noquote() << m_name << ": Build is unchanged";
        m_build = newBuild;
        m_ready = true;
        m_updating = false;
        emit progressUpdate(this, 1.0F, tr("Ready"));
        emit ready(this);
        emit endUpdate(this);
        return;
    }
    startUpdateTo(newBuild);
}

void ServerManager::startUpdateTo(const QString& newBuild)
{
    qDebug().noquote() << m_name << ": Last build was" << m_stagingFolderBuild;
    EventLogger::instance()->clientUpdateStarted(m_name);
    m_build = newBuild;
    m_tokenRetries = 0;
    emit startUpdate(this);
    downloadBinaryIndex();
}

void ServerManager::downloadBinaryIndex()
{
    const auto* settings = Settings::instance();
    QUrl url(QStringLiteral("%1velkor_%2.txt").arg(settings->getBaseUrlForVersion(), m_build));
    if (!m_isProtected) {
        qDebug().noquote() << "Downloading public binary index for" << m_name;
    } else if (m_token.isEmpty()) {
        if (++m_tokenRetries < maxTokenRetries) {
            qDebug().noquote() << "Missing token for protected server" << m_displayName << "- retrying";
            QTimer::singleShot(settings->getDeployment().scaledDelay(tokenRetryDelayMs), this,
                               &ServerManager::downloadBinaryIndex);
            return;
        }
        qDebug().noquote() << "Missing token for protected server" << m_displayName;
        notifyError(ProtectedBuildError, tr("Must be logged in to %1 to get the build").arg(m_displayName));
        return;
    } else {
        qDebug().noquote() << "Downloading protected binary index for" << m_name;
        url = QUrl(QStringLiteral("%1velkor_%2").arg(settings->getBaseUrlForProtectedBinaries(), m_build));
        QUrlQuery query;
        query.addQueryItem(QStringLiteral("server"), QString::fromLatin1(QUrl::toPercentEncoding(m_name)));
        query.addQueryItem(QStringLiteral("token"), QString::fromLatin1(QUrl::toPercentEncoding(m_token)));
        url.setQuery(query);
    }
    scheduleDownload(QStringLiteral("Index downloader for %1").arg(m_displayName), url,
                     &ServerManager::onBinaryIndexDownloadFinished);
}

void ServerManager::onBinaryIndexDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError()) {
        reportException(
            "RuntimeError",
            QStringLiteral("%1 when getting index for %2").arg(task->getErrorString(), m_displayName),
            "servermanager", "onBinaryIndexDownloadFinished", __LINE__);
        if (task->getErrorCode() == DownloadError)
            notifyError(DownloadError, tr("%1 client file-index not available").arg(m_displayName));
        else if (task->getErrorCode() == AuthenticationError)
            notifyError(AuthenticationError,
                        tr("Authentication is required to download %1 client").arg(m_displayName));
        else
            notifyError(UnknownError,
                        tr("Unknown error while trying to get %1 client file-index").arg(m_displayName));
        return;
    }
    const auto* downloader = qobject_cast<Downloader*>(task);
    if (!downloader) {
        reportException("RuntimeError", QStringLiteral("Task is not of the expected type"), "servermanager",
                        "onBinaryIndexDownloadFinished", __LINE__);
        notifyError(UnknownError, tr("Index not available"));
        return;
    }
    const auto bytes = downloader->getContents();
    qDebug("Index size: %d", bytes.size());
    const auto index = parseIndex(bytes, task->taskName());
    if (!index || index->entries().isEmpty()) {
        reportException("InvalidIndex", QStringLiteral("Invalid index for %1").arg(m_displayName),
                        "servermanager", "onBinaryIndexDownloadFinished", __LINE__);
        notifyError(DownloadError, tr("Index not available"));
        return;
    }
    PatchManager::instance()->setBaseIndex();
    m_record.keepIndex(bytes, m_build);
    index->setName(QStringLiteral("velkor_%1.txt").arg(m_build));
    index->setBuild(m_build);
    m_index.set(index);
    if (m_build == m_record.lastDownloaded()) {
        qDebug().noquote() << "Current build" << m_build << "same as last downloaded";
        markMainDownloadDone();
        return;
    }
    qDebug().noquote() << "Current build" << m_build << "different from last downloaded"
                       << m_record.lastDownloaded() << "- downloading from binaries index";
    downloadBinaries();
}

void ServerManager::downloadBinaries()
{
    scheduleStep(makeDownload(QStringLiteral("Downloader for %1").arg(m_displayName), getIndex(),
                              Settings::instance()->getBaseUrlForBinaries(), DownloadStep::Binaries),
                 &ServerManager::onBinariesDownloadFinished);
}

void ServerManager::onBinariesDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError()) {
        notifyTaskError(task);
        return;
    }
    m_installedIndex.set(getIndex());
    m_record.dropInstalledIndex();
    m_record.setLastDownloaded(m_build);
    m_record.save();
    loadPrefetchIndex();
}

void ServerManager::loadPrefetchIndex()
{
    m_prefetchWatcher.setFuture(QtConcurrent::run(
        getIndexFromFile, findFileInIndex(QStringLiteral("app:/resfileindex_prefetch.txt"))));
}

void ServerManager::onPrefetchIndexLoaded()
{
    m_prefetchIndex = m_prefetchWatcher.result();
    if (!m_prefetchIndex) {
        qDebug().noquote() << "No prefetch index found for" << m_name;
        copyBinaries();
        return;
    }
    m_prefetchIndex->setName(QStringLiteral("resfileindex_prefetch_%1.txt").arg(m_build));
    m_prefetchIndex->setBuild(m_build);
    scheduleStep(makeDownload(QStringLiteral("Resource prefetch for %1").arg(m_displayName), m_prefetchIndex,
                              Settings::instance()->getBaseUrlForResources(), DownloadStep::Prefetch),
                 &ServerManager::onPrefetchDownloadFinished);
}

void ServerManager::onPrefetchDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError())
        notifyTaskError(task);
    else
        copyBinaries();
}

void ServerManager::copyBinaries()
{
    auto* copier = new Copier(getIndex(), m_name, this);
    copier->setProperty("name", QStringLiteral("Copier for %1").arg(m_displayName));
    connect(copier, &Copier::progressUpdate, this, [this](float fraction, const QString& message) {
        onProgressUpdate(DownloadStep::Copy, fraction, message);
    });
    emit progressUpdate(this, 0.0F, tr("Copying files"));
    m_progress.text = tr("Copying files");
    scheduleStep(copier, &ServerManager::onCopyFinished);
}

void ServerManager::onCopyFinished(Task* task)
{
    task->deleteLater();
    if (task->getErrorCode() == ClientsRunningError)
        notifyError(ClientsRunningError,
                    tr("Cannot copy files for %1 while clients are running").arg(m_displayName));
    else if (task->isError())
        notifyTaskError(task);
    else
        markMainDownloadDone();
}

void ServerManager::markMainDownloadDone()
{
    m_ready = true;
    m_updating = false;
    m_currentIndex = getIndex();
    m_currentPrefetchIndex = m_prefetchIndex;
    EventLogger::instance()->clientUpdateCompleted(m_name);
    emit progressUpdate(this, 1.0F, tr("Ready"));
    emit endUpdate(this);
    emit ready(this);
    if (Settings::instance()->shouldDownloadEverything() && !m_fullDownload.isRunning() &&
        !Scheduler::instance()->hasBackgroundTask())
        m_fullDownload.start(findFileInIndex(QStringLiteral("app:/resfileindex.txt")));
}

void ServerManager::notifyTaskError(const Task* task)
{
    const auto reason = task->getErrorString();
    notifyError(task->getErrorCode(), reason.isEmpty() ? tr("Error! See log for details") : reason);
}

void ServerManager::notifyError(int code, const QString& message)
{
    m_updating = false;
    EventLogger::instance()->clientUpdateFailed(m_name, static_cast<unsigned>(code));
    emit progressUpdate(this, 0.0F, message);
    emit failedUpdate(this, code, message);
}

void ServerManager::onProgressUpdate(DownloadStep step, float fraction, const QString& message)
{
    float overall = fraction;
    switch (step) {
    case DownloadStep::Binaries:
        overall = fraction * 0.2F;
        break;
    case DownloadStep::Prefetch:
        overall = fraction * 0.6F + 0.2F;
        break;
    case DownloadStep::Copy:
        overall = fraction * 0.2F + 0.8F;
        break;
    case DownloadStep::FullResources:
        break;
    }
    m_progress.fraction = overall;
    m_progress.text = message;
    reportProgress();
}

void ServerManager::reportProgress()
{
    if (!m_progress.shownText().isEmpty()) // else nothing has been told yet
        emit progressUpdate(this, m_progress.fraction, m_progress.shownText());
}

void ServerManager::setHeldBecause(const QString& reason)
{
    m_progress.heldBecause = reason;
    if (m_updating || m_fullDownload.isRunning())
        reportProgress();
}

Task* ServerManager::makeDownload(const QString& taskName, const IndexPtr& index, const QString& baseUrl,
                                  DownloadStep step)
{
    auto* task = makeIndexDownload(taskName, index, baseUrl, this);
    if (m_review)
        task->setReview([this](DownloadFromIndexTask* reviewed) { m_review(this, reviewed); });
    connect(task, &DownloadFromIndexTask::filesAdopted, this, &ServerManager::filesAdopted);
    connect(
        task, &DownloadFromIndexTask::progressUpdate, this,
        [this, step](float fraction, const QString& message) { onProgressUpdate(step, fraction, message); });
    connect(task, &DownloadFromIndexTask::transferUpdate, this,
            [this](const QString& text) { emit transferUpdate(this, text); });
    if (!m_progress.heldBecause.isEmpty())
        reportProgress();
    return task;
}

void ServerManager::scheduleStep(Task* task, void (ServerManager::*onFinished)(Task*))
{
    connect(task, &Task::finished, this, onFinished);
    emit Scheduler::instance()->schedule(m_name, task);
}

void ServerManager::scheduleDownload(const QString& taskName, const QUrl& url,
                                     void (ServerManager::*onFinished)(Task*))
{
    auto* task = new Downloader(url, this);
    task->setProperty("name", taskName);
    scheduleStep(task, onFinished);
}
