#include "shell/settingsdialog.h"

#include "download/downloader.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "tasks/scheduler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDebug>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace
{
constexpr int developmentType = 2;

void setUpForm(QFormLayout* form)
{
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setHorizontalSpacing(16);
    form->setVerticalSpacing(10);
}

QString latestText() { return SettingsDialog::tr("Latest"); }
} // namespace

SettingsDialog::SettingsDialog(Settings* settings, QWidget* parent) : QDialog(parent), m_settings(settings)
{
    setWindowTitle(tr("Settings"));
    auto* forms = new QWidget(this);
    auto* columns = new QHBoxLayout(forms);
    columns->setContentsMargins(20, 20, 20, 8);
    columns->setSpacing(24);
    columns->addWidget(createGeneralForm(), 1, Qt::AlignTop);
    columns->addWidget(createWineForm(), 1, Qt::AlignTop);
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(forms);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setContentsMargins(20, 8, 20, 20);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::onOk);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
    layout->addWidget(buttons);
    resize(forms->sizeHint().boundedTo(QSize(1100, 760)) + QSize(20, 80));
    populateWineVersions();
}

void SettingsDialog::addRow(QFormLayout* form, const QString& label, QWidget* field, const QString& help)
{
    field->setToolTip(help);
    form->addRow(label, field);
    if (auto* text = form->labelForField(field))
        text->setToolTip(help);
}

QCheckBox* SettingsDialog::addSwitch(QFormLayout* form, const QString& label, bool on,
                                     void (Settings::*set)(bool), const QString& help)
{
    auto* box = new QCheckBox(this);
    box->setChecked(on);
    box->setAccessibleName(QString(label).remove(QLatin1Char('&')));
    addRow(form, label, box, help);
    m_switches.append({box, set});
    return box;
}

QGroupBox* SettingsDialog::createGeneralForm()
{
    auto* widget = new QGroupBox(tr("Launcher and clients"), this);
    auto* form = new QFormLayout(widget);
    setUpForm(form);
    const auto* s = m_settings;

    m_language = new QComboBox(widget);
    for (const auto& code : s->getLanguagesSupported())
        m_language->addItem(s->getLanguageName(code), code);
    m_language->setCurrentIndex(qMax(0, m_language->findData(s->getLanguage())));
    addRow(form, tr("&Language:"), m_language,
           tr("Language of the launcher; all of it changes at the next start"));

    m_versionType = new QComboBox(widget);
    m_versionType->addItems(s->getVersionTypeNames());
    m_versionType->setCurrentIndex(qBound(0, s->getVersionType(), m_versionType->count() - 1));
    addRow(form, tr("&Version type:"), m_versionType, tr("Which releases of the launcher you get"));

    addSwitch(form, tr("&Download everything:"), s->shouldDownloadEverything(),
              &Settings::setShouldDownloadEverything,
              tr("Fetch all resources in advance instead of while you play"));
    addSwitch(form, tr("&Run clients with logging:"), s->runClientsWithLogging(),
              &Settings::setRunClientsWithLogging, tr("Show the log live in LogLens while clients run"));
    addSwitch(form, tr("Run clients with D&X9:"), s->runClientsWithDx9(), &Settings::setRunClientsWithDx9,
              tr("For graphics hardware that has trouble with newer versions"));
    addSwitch(form, tr("Run clients with &64 bit:"), s->runClientsWith64Bit(),
              &Settings::setRunClientsWith64Bit, tr("Start the client's 64-bit program"));
    addSwitch(form, tr("&Minimize to tray on close:"), s->shouldMinimizeToTray(),
              &Settings::setShouldMinimizeToTray, tr("Closing the window leaves the launcher in the tray"));
    m_ignoreCertErrors = addSwitch(
        form, tr("&Ignore certification errors:"), s->getIgnoreCertErrors(), &Settings::setIgnoreCertErrors,
        tr("Go on where a server cannot prove who it is; only for networks that you know to be safe"));
    addSwitch(form, tr("Use system configuration for &proxy:"), s->useProxy(), &Settings::setUseProxy,
              tr("Reach the network the way your system is set up to; takes effect at the next start"));
    addSwitch(form, tr("Enable hi&gh DPI scaling:"), s->getEnableHighDpiScaling(),
              &Settings::setEnableHighDpiScaling,
              tr("Larger windows on fine screens; takes effect at the next start"));
    addSwitch(form, tr("Enable hard&ware rendering:"), s->getEnableHardwareRendering(),
              &Settings::setEnableHardwareRendering,
              tr("Draw with the graphics hardware; takes effect at the next start"));

    m_threadCount = new QComboBox(widget);
    m_threadCount->addItems(Settings::getResManThreadCountOptions());
    m_threadCount->setCurrentIndex(s->getResManThreadCountAsOption());
    addRow(form, tr("&Thread count for resource download in client"), m_threadCount,
           tr("How many files the client fetches at a time"));
    addRow(form, tr("Test &Servers"), createTestServers(),
           tr("Servers beside the main one that are kept up to date"));
    addSwitch(form, tr("Show the running l&auncher at a second start:"), s->showsRunningLauncher(),
              &Settings::setShowsRunningLauncher,
              tr("Instead of opening another launcher beside it; takes effect at the next start"));
    addDownloadRows(form);
    return widget;
}

void SettingsDialog::addDownloadRows(QFormLayout* form)
{
    m_downloadLimit = new QDoubleSpinBox(this);
    m_downloadLimit->setRange(0, Settings::maxDownloadLimit);
    m_downloadLimit->setDecimals(2);
    m_downloadLimit->setSuffix(tr(" MB/s"));
    m_downloadLimit->setSpecialValueText(tr("None"));
    m_downloadLimit->setValue(m_settings->getDownloadLimit());
    addRow(form, tr("Limit o&f all downloads together:"), m_downloadLimit, tr("0 is no limit"));
    addSwitch(form, tr("&Keep downloads until no client runs:"), m_settings->downloadsOnlyWithoutClients(),
              &Settings::setDownloadsOnlyWithoutClients,
              tr("Nothing is downloaded while you play; it goes on afterwards"));
}

QWidget* SettingsDialog::createTestServers()
{
    auto* widget = new QWidget(this);
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto enabled = m_settings->getStoredTestServers();
    for (const auto& key : m_settings->getFullServerList()) {
        if (key == m_settings->getMainServerName())
            continue;
        const auto* server = m_settings->getServer(key);
        auto* box = new QCheckBox(server ? server->getDisplayName() : key, widget);
        box->setChecked(enabled.contains(key));
        layout->addWidget(box);
        m_testServers.append({key, box});
        if (m_testServers.size() == 1)
            widget->setFocusProxy(box);
    }
    return widget;
}

QGroupBox* SettingsDialog::createWineForm()
{
    auto* group = new QGroupBox(tr("Wine options"), this);
    auto* form = new QFormLayout(group);
    setUpForm(form);
    const auto* s = m_settings;
    addSwitch(form, tr("Use &custom Wine"), s->useCustomWine(), &Settings::setUseCustomWine,
              tr("Run clients with a Wine of your own instead of the one that comes with the game"));
    m_customWinePath = new QLineEdit(s->getCustomWinePath(), group);
    m_customWinePath->setPlaceholderText(QStringLiteral("winehq-binary"));
    addRow(form, tr("Custom Wine pat&h"), m_customWinePath, tr("The program that starts your own Wine"));
    m_useDevVersions =
        addSwitch(form, tr("Use d&ev versions"), s->useWineDevVersions(), &Settings::setUseWineDevVersions,
                  tr("Choose from versions that are still being tested"));
    connect(m_useDevVersions, &QCheckBox::toggled, this, &SettingsDialog::populateWineVersions);
    m_wineBranch = new QLineEdit(s->getWineVersionBranch(), group);
    addRow(form, tr("Dev &branch"), m_wineBranch, tr("Only development versions of this branch"));

    m_wineVersion = new QComboBox(group);
    m_wineVersion->addItem(latestText());
    m_wineVersion->addItem(s->getWineVersion());
    if (s->getWineVersion() == QLatin1String("latest"))
        m_wineVersion->removeItem(1);
    selectWineVersion(s->getWineVersion());
    addRow(form, tr("Wine versio&n"), m_wineVersion,
           tr("\"Latest\" follows what the game's makers recommend"));
    m_wineVersionNote = new QLabel(group);
    m_wineVersionNote->setObjectName(QStringLiteral("note"));
    m_wineVersionNote->setWordWrap(true);
    m_wineVersionNote->setTextFormat(Qt::PlainText);
    form->addRow(QString(), m_wineVersionNote);

    m_wineVersionNote->setMinimumWidth(260);

    m_wineDebug = new QLineEdit(s->getWinedebug(), group);
    addRow(form, tr("WINEDEB&UG"), m_wineDebug, tr("What Wine writes to the log, such as \"+loaddll,-all\""));
    addSwitch(form, tr("Retina m&ode"), s->getWineRetinaMode(), &Settings::setWineRetinaMode,
              tr("Let clients use every pixel of a fine screen"));
    m_videoMemory = new QComboBox(group);
    m_videoMemory->addItem(tr("Auto detect"));
    m_videoMemory->addItems({QStringLiteral("512"), QStringLiteral("1024"), QStringLiteral("2048"),
                             QStringLiteral("3184"), QStringLiteral("4096")});
    m_videoMemory->setCurrentIndex(
        qMax(0, m_videoMemory->findText(QString::number(s->getWineVideoMemory()))));
    addRow(form, tr("Video memor&y"), m_videoMemory, tr("Megabytes; what Wine tells clients that there is"));
    return group;
}

void SettingsDialog::selectWineVersion(const QString& version)
{
    m_wineVersion->setCurrentIndex(qMax(0, m_wineVersion->findText(version)));
}

void SettingsDialog::populateWineVersions()
{
    const auto kind = m_useDevVersions->isChecked() ? QStringLiteral("dev") : QStringLiteral("release");
    const auto url = QStringLiteral("%1wine_%2_%3.json")
                         .arg(m_settings->getBaseUrlForBinaries(), QStringLiteral("linux"), kind);
    qDebug().noquote() << "Getting available Wine versions at" << url;
    m_wineVersionNote->setText(Scheduler::instance()->isBlocked()
                                   ? tr("Downloads are paused; the versions come when they go on.")
                                   : tr("Looking for versions..."));
    auto* downloader = new Downloader(QUrl(url), this);
    downloader->setProperty("name", QStringLiteral("Wine info downloader"));
    downloader->setProperty("request", ++m_wineRequest);
    connect(downloader, &Task::finished, this, &SettingsDialog::onWineInfoDownloadFinished);
    // Where its turn comes between the downloads of a refresh, not among them.
    emit Scheduler::instance()->schedule(QStringLiteral("wine"), downloader);
}

void SettingsDialog::onWineInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    if (task->property("request").toInt() != m_wineRequest)
        return;
    const auto* downloader = qobject_cast<Downloader*>(task);
    const auto list = QJsonDocument::fromJson(downloader ? downloader->getContents() : QByteArray()).array();
    const auto versions = WineManager::filterWineVersions(list, {});
    if (versions.isEmpty()) {
        m_wineVersionNote->setText(
            task->isError() ? tr("The versions could not be loaded: %1").arg(task->getErrorString())
                            : tr("The server offers no versions"));
        return;
    }
    const auto chosen = m_wineVersion->currentText();
    m_wineVersion->clear();
    m_wineVersion->addItem(latestText());
    m_wineVersion->addItems(versions);
    selectWineVersion(m_wineVersion->findText(chosen) > 0 ? chosen : m_settings->getWineVersion());
    m_wineVersionNote->clear();
}

bool SettingsDialog::confirm(const QString& question)
{
    return QMessageBox::question(this, tr("Warning"), question, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void SettingsDialog::onOk()
{
    if (m_versionType->currentIndex() == developmentType &&
        !confirm(tr("A Development version of the launcher may be unstable. It is not recommended for users "
                    "unless explicitly asked for by the developers. Are you sure want to select the "
                    "Development version?")))
        return;
    if (m_ignoreCertErrors->isChecked() &&
        !confirm(tr("If you choose to ignore certificate errors you will not be warned about potential "
                    "security incidents in the future. It is not recommended unless you are sure you are on "
                    "a safe network.\n\nAre you sure you want to continue?")))
        return;
    apply();
    m_settings->save();
    accept();
}

void SettingsDialog::apply()
{
    m_settings->setVersionType(m_versionType->currentIndex());
    for (const auto& choice : qAsConst(m_switches))
        (m_settings->*choice.set)(choice.box->isChecked());
    m_settings->setResManThreadCount(
        static_cast<Settings::ResManThreadCountOption>(m_threadCount->currentIndex()));
    m_settings->setDownloadLimit(m_downloadLimit->value());
    m_settings->setWinedebug(m_wineDebug->text());
    m_settings->setWineVersion(m_wineVersion->currentIndex() == 0 ? QStringLiteral("latest")
                                                                  : m_wineVersion->currentText());
    m_settings->setWineVersionBranch(m_wineBranch->text());
    m_settings->setWineVideoMemory(m_videoMemory->currentText().toInt());
    m_settings->setCustomWinePath(m_customWinePath->text());
    QStringList testServers;
    for (const auto& [key, box] : qAsConst(m_testServers)) {
        if (box->isChecked())
            testServers << key;
    }
    m_settings->setEnabledTestServers(testServers);
    m_settings->setLanguage(m_language->currentData().toString());
}
