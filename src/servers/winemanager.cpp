#include "servers/winemanager.h"

#include "cache/safepath.h"
#include "cache/wholefile.h"
#include "download/downloader.h"
#include "download/downloadfromindextask.h"
#include "index/indexfile.h"
#include "index/indexparser.h"
#include "servers/copier.h"
#include "servers/indexdownload.h"
#include "servers/prefixusers.h"
#include "settings/settings.h"
#include "tasks/scheduler.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QtConcurrent>

namespace
{
QString queueName() { return QStringLiteral("wine"); }

QString lastDownloadedKey() { return QStringLiteral("LauncherLastDownloaded/wine"); }
} // namespace

WineManager::WineManager(QObject* parent, std::chrono::milliseconds regEditTimeout)
    : QObject(parent), m_regEditTimeout(regEditTimeout),
      m_lastDownloaded(Settings::instance()->store().value(lastDownloadedKey()).toString())
{
    if (QFile::exists(keptIndexPath()))
        m_index.set(getIndexFromFile(keptIndexPath()));
    connect(&m_purgeWatcher, &QFutureWatcher<void>::finished, this, &WineManager::onPurged);
}

WineManager::~WineManager() { m_purgeWatcher.waitForFinished(); }

QString WineManager::getStagingFolder() const
{
    return QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/wine"));
}

QString WineManager::keptIndexPath() const
{
    return QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/index_wine.txt"));
}

QString WineManager::getIndexName() const { return QStringLiteral("wine_linux_%1.txt").arg(m_version); }

QStringList WineManager::filterWineVersions(const QJsonArray& versions, const QString& filter)
{
    QStringList chosen;
    for (const auto& entry : versions) {
        const auto version =
            entry.isString() ? entry.toString() : entry.toObject().value(QLatin1String("version")).toString();
        // The version becomes part of the names of files.
        const bool usable = !version.isEmpty() && !version.contains(QLatin1Char('/')) &&
                            SafePath::isSafeText(version) && !version.contains(QLatin1Char(','));
        if (usable && version.contains(filter))
            chosen << version;
    }
    return chosen;
}

void WineManager::saveLastDownloadedBuild()
{
    Settings::instance()->store().setValue(lastDownloadedKey(), m_lastDownloaded);
    Settings::instance()->store().sync();
}

void WineManager::resetLastDownloaded()
{
    m_lastDownloaded.clear();
    m_installedVersion.clear();
    m_ready = false;
    saveLastDownloadedBuild();
}

void WineManager::refresh()
{
    if (m_ready)
        m_installedVersion = m_version;
    m_ready = false;
    m_step = Step::Updating;
    m_errorText.clear();
    emit startUpdate();
    downloadVersionInfo();
}

void WineManager::downloadVersionInfo()
{
    const auto* settings = Settings::instance();
    const auto pinned = settings->getWineVersion();
    if (pinned != QLatin1String("latest")) {
        if (filterWineVersions({pinned}, {}).isEmpty()) {
            qWarning().noquote() << "The Wine version of the settings is not one:" << pinned;
            end(DownloadError);
            return;
        }
        chooseVersion(pinned);
        startWineUpdate(pinned);
        return;
    }
    const auto branch = settings->useWineDevVersions() ? QStringLiteral("dev") : QStringLiteral("release");
    const auto fileName = QStringLiteral("wine_linux_%1.json").arg(branch);
    qDebug().noquote() << "Checking wine version at" << settings->getBaseUrlForBinaries() + fileName;
    scheduleDownload(QStringLiteral("launcher"), QStringLiteral("Wine info downloader"), fileName,
                     &WineManager::onVersionInfoDownloadFinished);
}

void WineManager::onVersionInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    const auto* downloader = qobject_cast<Downloader*>(task);
    const auto list = QJsonDocument::fromJson(downloader ? downloader->getContents() : QByteArray()).array();
    const auto all = filterWineVersions(list, {});
    if (all.isEmpty()) {
        qWarning().noquote() << "No Wine versions found" << task->getErrorString();
        m_errorText = task->getErrorString();
        end(task->isError() ? task->getErrorCode() : DownloadError);
        return;
    }
    const auto matching = filterWineVersions(list, Settings::instance()->getWineVersionBranch());
    chooseVersion(matching.isEmpty() ? all.first() : matching.first());
    qDebug().noquote() << "Wine version is" << m_version;
    if (m_version == m_installedVersion && QFileInfo::exists(getStagingFolder())) {
        m_ready = true;
        end(NoError);
        return;
    }
    QTimer::singleShot(0, this, [this] { startWineUpdate(m_version); });
}

void WineManager::chooseVersion(const QString& version)
{
    m_version = version;
    emit versionUpdate(m_version);
}

void WineManager::startWineUpdate(const QString& version)
{
    if (!QFileInfo::exists(getStagingFolder()))
        m_lastDownloaded.clear();
    m_downloadStep = DownloadStep::Download;
    qDebug().noquote() << "startWineUpdate" << version;
    scheduleDownload(queueName(), QStringLiteral("Index downloader for wine"), getIndexName(),
                     &WineManager::onIndexDownloadFinished);
}

void WineManager::onIndexDownloadFinished(Task* task)
{
    task->deleteLater();
    const auto* downloader = qobject_cast<Downloader*>(task);
    if (task->isError() || !downloader) {
        reportException("DownloadError",
                        QStringLiteral("%1 when downloading Wine index").arg(task->getErrorString()),
                        "winemanager", "onIndexDownloadFinished", __LINE__);
        m_errorText = task->getErrorString();
        end(DownloadError);
        return;
    }
    const auto bytes = downloader->getContents();
    qDebug("Index size: %d", bytes.size());
    const auto index = parseIndex(bytes, task->taskName());
    if (!index || index->entries().isEmpty()) {
        reportException("InvalidIndex", QStringLiteral("Invalid index for wine"), "winemanager",
                        "onIndexDownloadFinished", __LINE__);
        end(DownloadError);
        return;
    }
    index->setName(getIndexName());
    index->setBuild(m_version);
    m_index.set(index);
    QString error;
    if (!writeWholeFile(keptIndexPath(), bytes, &error)) // as with servers: nothing depends on it
        qDebug().noquote() << "The index could not be kept in" << keptIndexPath() << error;
    if (m_version == m_lastDownloaded) {
        m_ready = true;
        end(NoError);
        return;
    }
    auto* download = makeIndexDownload(QStringLiteral("Downloader for wine"), index,
                                       Settings::instance()->getBaseUrlForBinaries(), this);
    connect(download, &DownloadFromIndexTask::progressUpdate, this, &WineManager::onProgressUpdate);
    connect(download, &Task::finished, this, &WineManager::onDownloadFinished);
    emit Scheduler::instance()->schedule(queueName(), download);
}

void WineManager::onDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError())
        end(task);
    else
        copyWineFiles();
}

// Until the copy is complete no version counts as installed, whatever happens to the process meanwhile.
void WineManager::copyWineFiles()
{
    if (isAnyClientRunning()) {
        qDebug() << "Wine is not replaced while clients are running";
        end(ClientsRunningError);
        return;
    }
    m_step = Step::Installing;
    resetLastDownloaded();
    m_downloadStep = DownloadStep::Copy;
    onProgressUpdate(0.0F, tr("Removing the old version"));
    const auto* settings = Settings::instance();
    m_purgeWatcher.setFuture(
        QtConcurrent::run(&WineManager::purge, settings->getCacheFolder(), settings->getWineEnvFolder()));
}

void WineManager::onPurged()
{
    auto* copier = new Copier(m_index.get(), queueName(), this);
    copier->setProperty("name", QStringLiteral("Copier for wine"));
    connect(copier, &Copier::progressUpdate, this, &WineManager::onProgressUpdate);
    connect(copier, &Task::finished, this, &WineManager::onCopyFinished);
    emit Scheduler::instance()->schedule(queueName(), copier);
}

void WineManager::onCopyFinished(Task* task)
{
    task->deleteLater();
    m_downloadStep = DownloadStep::Done;
    emit progressUpdate(1.0F, QStringLiteral("Up to date"));
    if (!task->isError()) {
        m_ready = true;
        m_lastDownloaded = m_version;
        saveLastDownloadedBuild();
        prepareEnv();
        qDebug().noquote() << "Wine" << m_version << "has been installed in" << getStagingFolder();
    }
    end(task);
}

void WineManager::end(const Task* task)
{
    m_errorText = task->getErrorString();
    end(task->getErrorCode());
}

void WineManager::end(int errorCode)
{
    m_step = Step::Idle;
    emit endUpdate(errorCode);
}

void WineManager::onProgressUpdate(float fraction, const QString& text)
{
    float overall = fraction;
    if (m_downloadStep == DownloadStep::Download)
        overall = fraction * 0.8F;
    else if (m_downloadStep == DownloadStep::Copy)
        overall = fraction * 0.19F + 0.8F;
    m_progress.fraction = overall;
    m_progress.text = text;
    reportProgress();
}

void WineManager::reportProgress()
{
    if (!m_progress.shownText().isEmpty())
        emit progressUpdate(m_progress.fraction, tr("Wine: %1").arg(m_progress.shownText()));
}

void WineManager::setHeldBecause(const QString& reason)
{
    m_progress.heldBecause = reason;
    if (m_step != Step::Idle)
        reportProgress();
}

void WineManager::scheduleDownload(const QString& queue, const QString& taskName, const QString& fileName,
                                   void (WineManager::*onFinished)(Task*))
{
    auto* task = new Downloader(QUrl(Settings::instance()->getBaseUrlForBinaries() + fileName), this);
    task->setProperty("name", taskName);
    connect(task, &Task::finished, this, onFinished);
    emit Scheduler::instance()->schedule(queue, task);
}
