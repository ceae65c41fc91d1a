#include "shell/updatedialog.h"

#include "cache/wholefile.h"
#include "download/downloader.h"
#include "download/downloadfromindextask.h"
#include "index/indexparser.h"
#include "servers/prefixusers.h"
#include "settings/settings.h"
#include "shell/updaterstarter.h"
#include "tasks/scheduler.h"
#include "telemetry/eventlogger.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace
{
constexpr int timeoutMs = 30000;
constexpr int secondMs = 1000;

QString queueName() { return QStringLiteral("launcher"); }
} // namespace

UpdateDialog::UpdateDialog(const QString& version, QWidget* parent)
    : QDialog(parent), m_version(version),
      m_cacheFolder(QDir::cleanPath(Settings::instance()->getCacheFolder()))
{
    setUpWindow();
    m_timeout.setSingleShot(true);
    m_countdown.setInterval(secondMs);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        if (m_step == Step::Asking)
            performAutoUpdate();
        else
            reject();
    });
    connect(&m_countdown, &QTimer::timeout, this, &UpdateDialog::onSecond);
    if (needsElevation())
        setStep(Step::Telling,
                tr("Version %1 of the launcher is available. This launcher was installed by your "
                   "system: please update it with the system's package manager.")
                    .arg(version));
    else
        downloadBinaryIndex();
}

// A task that is still running ends with its object.
UpdateDialog::~UpdateDialog() { delete m_task; }

void UpdateDialog::setUpWindow()
{
    setWindowTitle(tr("Velkor Launcher Update"));
    m_label = new QLabel(tr("Downloading new version %1").arg(m_version), this);
    m_label->setWordWrap(true);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setMinimumWidth(420);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 1000);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Progress"));
    auto* buttons = new QDialogButtonBox(this);
    m_cancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    m_ok = buttons->addButton(tr("OK"), QDialogButtonBox::AcceptRole);
    connect(m_ok, &QPushButton::clicked, this, &UpdateDialog::onOk);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(16);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_progress);
    layout->addWidget(buttons);
}

bool UpdateDialog::isUsableVersion(const QString& version)
{
    static const QRegularExpression word(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9._-]{0,63}\\z"));
    return word.match(version).hasMatch();
}

bool UpdateDialog::needsElevation()
{
    const auto folder = QCoreApplication::applicationDirPath();
    const bool isSystems =
        folder.startsWith(QLatin1String("/usr/")) && !folder.startsWith(QLatin1String("/usr/local/"));
    return isSystems || !QFileInfo(folder).isWritable();
}

QString UpdateDialog::indexPath(const QString& version) const
{
    return UpdaterStarter::indexPath(m_cacheFolder, version);
}

void UpdateDialog::setStep(Step step, const QString& text)
{
    m_step = step;
    m_text = text;
    m_timeout.stop();
    m_countdown.stop();
    m_progress->setVisible(step == Step::Downloading);
    m_ok->setVisible(step != Step::Downloading);
    m_ok->setText(step == Step::Failed ? tr("Retry") : tr("OK"));
    m_cancel->setVisible(step != Step::Telling);
    (step == Step::Downloading ? m_cancel : m_ok)->setFocus();
    if (step == Step::Asking || step == Step::Failed) {
        m_secondsLeft = timeoutMs / secondMs;
        m_timeout.start(timeoutMs);
        m_countdown.start();
        m_ok->setDefault(true);
    }
    showText();
    adjustSize();
}

void UpdateDialog::showText()
{
    auto text = m_text;
    if (m_step == Step::Asking && m_timeout.isActive())
        text += tr(" Update will be applied automatically in %2 seconds.")
                    .replace(QLatin1String("%2"), QString::number(m_secondsLeft));
    else if (m_step == Step::Failed)
        text += QLatin1Char('\n') + tr("The launcher goes on without it in %1 seconds.").arg(m_secondsLeft);
    m_label->setText(text);
}

// Nothing happens by itself while somebody plays.
void UpdateDialog::onSecond()
{
    if (m_step == Step::Asking && isAnyClientRunning()) {
        m_timeout.stop();
        m_secondsLeft = timeoutMs / secondMs;
    } else if (!m_timeout.isActive()) {
        m_timeout.start(timeoutMs);
    } else {
        m_secondsLeft = qMax(0, m_secondsLeft - 1);
    }
    showText();
}

void UpdateDialog::onOk()
{
    if (m_step == Step::Asking)
        performAutoUpdate();
    else if (m_step == Step::Failed)
        downloadBinaryIndex();
    else
        reject();
}

void UpdateDialog::downloadBinaryIndex()
{
    m_progress->setValue(0);
    setStep(Step::Downloading, tr("Downloading binary index for new version %1").arg(m_version));
    auto* downloader = new Downloader(QUrl(Settings::instance()->getUrlForLauncherIndex(m_version)));
    m_task = downloader;
    downloader->setProperty("name", QStringLiteral("Index downloader for self updating"));
    connect(downloader, &Task::finished, this, &UpdateDialog::onIndexDownloadFinished);
    emit Scheduler::instance()->schedule(queueName(), downloader);
}

void UpdateDialog::onIndexDownloadFinished(Task* task)
{
    task->deleteLater();
    const auto* downloader = qobject_cast<Downloader*>(task);
    const auto bytes = downloader ? downloader->getContents() : QByteArray();
    if (task->isError() || bytes.isEmpty()) {
        setStep(Step::Failed, tr("The list of the new version's files could not be downloaded."));
        return;
    }
    if (!saveIndex(bytes)) {
        setStep(Step::Failed, tr("The list of the new version's files could not be saved."));
        return;
    }
    removeOldIndexes();
    m_index = parseIndex(bytes, indexPath(m_version));
    downloadFromIndex();
}

bool UpdateDialog::saveIndex(const QByteArray& bytes) const
{
    QString error;
    if (QDir().mkpath(m_cacheFolder) && writeWholeFile(indexPath(m_version), bytes, &error))
        return true;
    qWarning().noquote() << "Failed to save file" << indexPath(m_version) << error;
    return false;
}

// Those of this version and the new one are of use; what only others name may be purged.
void UpdateDialog::removeOldIndexes() const
{
    const auto kept = QStringList{indexPath(m_version), indexPath(Settings::instance()->getVersion())};
    const auto names =
        QDir(m_cacheFolder).entryList({QStringLiteral("velkorlauncher_linux_*.txt")}, QDir::Files);
    for (const auto& name : names) {
        const auto path = m_cacheFolder + QLatin1Char('/') + name;
        if (!kept.contains(path))
            QFile::remove(path);
    }
}

void UpdateDialog::downloadFromIndex()
{
    setStep(Step::Downloading, tr("Downloading new launcher binaries"));
    auto* task = new DownloadFromIndexTask(QStringLiteral("Downloader for self update"), m_index,
                                           Settings::instance()->getBaseUrlForBinaries(), m_cacheFolder);
    m_task = task;
    task->setProperty("name", QStringLiteral("Downloader for self update"));
    connect(task, &DownloadFromIndexTask::progressUpdate, this, &UpdateDialog::onProgressUpdate);
    connect(task, &Task::finished, this, &UpdateDialog::onDownloadFinished);
    emit Scheduler::instance()->schedule(queueName(), task);
}

void UpdateDialog::onProgressUpdate(float fraction, const QString& /*message*/)
{
    m_progress->setValue(static_cast<int>(fraction * 1000));
    m_text = tr("Downloading new launcher binaries (%1%)").arg(static_cast<int>(fraction * 100));
    showText();
}

void UpdateDialog::onDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->isError()) {
        qDebug().noquote() << "Download failed for " << m_version;
        const auto reason = task->getErrorString();
        setStep(Step::Failed, reason.isEmpty()
                                  ? tr("The new version could not be downloaded.")
                                  : tr("The new version could not be downloaded: %1").arg(reason));
        return;
    }
    qDebug().noquote() << "Download finished for " << m_version;
    setWindowTitle(tr("New version available"));
    setStep(Step::Asking,
            tr("The Velkor launcher has downloaded an update (version %1). Press OK to apply the "
               "update or Cancel to stay on the current version.")
                .arg(m_version));
}

void UpdateDialog::performAutoUpdate()
{
    const auto problem = UpdaterStarter(m_cacheFolder, m_version, m_index).start();
    if (!problem.isEmpty()) {
        setStep(Step::Failed, tr("The new version cannot be installed: %1").arg(problem));
        return;
    }
    qDebug() << "Auto update successfully initiated";
    logUpdate(UpdateInitiated);
    accept();
    QCoreApplication::exit(1);
}

void UpdateDialog::logUpdate(UpdateStatus status) const
{
    const auto current = Settings::instance()->getVersion();
    EventLogger::instance()->launcherUpdating(current, m_version, 0);
    EventLogger::instance()->logJson({{QStringLiteral("type"), QStringLiteral("update")},
                                      {QStringLiteral("status"), status},
                                      {QStringLiteral("from"), current},
                                      {QStringLiteral("to"), m_version}});
}
