// The part of Settings that runs once at start, with the application in place.

#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QProcessEnvironment>
#include <QStorageInfo>
#include <QTranslator>

// The class is deprecated in this version of the toolkit, yet is what reports the state of the network.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <QNetworkConfigurationManager>

void Settings::setupNetworkState()
{
    qDebug() << "Creating network configuration manager";
    auto* manager = new QNetworkConfigurationManager(this);
    m_networkConfiguration = manager;
    qDebug() << (isOnline() ? "Network configuration manager is online"
                            : "Network configuration manager is offline");
    connect(manager, &QNetworkConfigurationManager::onlineStateChanged, this, [](bool online) {
        qDebug() << (online ? "Network connection established" : "Network connection lost");
    });
    manager->updateConfigurations();
}

bool Settings::isOnline() const
{
    const auto* manager = qobject_cast<QNetworkConfigurationManager*>(m_networkConfiguration);
    return manager && manager->isOnline();
}
#pragma GCC diagnostic pop

void Settings::initialize()
{
    setupTranslator();
    setupNetworkState();
    ensureCacheFolder();
    save();
    logEffectiveSettings();
}

void Settings::initializeFromArgs(const QCoreApplication& app)
{
    setCommandLine(CommandLine::process(app));
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() >= 2)
        qInfo().noquote() << "Command line arguments:"
                          << "(" + arguments.join(QStringLiteral(", ")) + ")";
}

void Settings::ensureCacheFolder()
{
    const auto folder = getCacheFolder();
    if (folder.isEmpty()) {
        setCacheFolder(getDefaultCacheLocation());
        return;
    }
    if (QDir().mkpath(folder))
        return;
    const auto fallback = getDefaultCacheLocation();
    const auto question =
        tr("The directory %1 that is set as the shared cache location does not exist and cannot be "
           "created. Do you want to revert to the default value (%2)?")
            .arg(QDir::toNativeSeparators(folder), fallback);
    if (QMessageBox::question(nullptr, tr("Warning"), question) == QMessageBox::Yes)
        setCacheFolder(fallback);
}

void Settings::logEffectiveSettings() const
{
    qDebug() << "Run clients with logging:" << runClientsWithLogging();
    qDebug() << "Run clients with DX9:" << runClientsWithDx9();
    qDebug() << "Run clients with 64Bit:" << runClientsWith64Bit();
    qDebug() << "Download everything:" << shouldDownloadEverything();
    qDebug().noquote() << "Language:" << getLanguage();
    qDebug() << "Ignore certification errors:" << getIgnoreCertErrors();
    qDebug() << "Qt version:"
             << "5.11.0";
    qDebug().noquote() << "Current folder:" << QDir::currentPath();
    qDebug().noquote() << "Cache folder:" << getCacheFolder();
    qDebug().noquote() << "Application dir:" << QCoreApplication::applicationDirPath();
    qDebug().noquote() << "Client logs folder:" << getClientLogsFolder();
    qDebug().noquote() << "Base url for binaries:" << getBaseUrlForBinaries();
    qDebug().noquote() << "Base url for resources:" << getBaseUrlForResources();

    const QStorageInfo current(QDir::currentPath());
    const QStorageInfo cache(getCacheFolder());
    qDebug().noquote() << "Space available on" << current.rootPath() << ":" << current.bytesFree();
    if (cache.rootPath() != current.rootPath())
        qDebug().noquote() << "Space available on" << cache.rootPath() << ":" << cache.bytesFree();
}

void Settings::setupTranslator()
{
    for (auto** translator : {&m_translator, &m_toolkitTranslator}) {
        delete *translator; // which removes it
        *translator = nullptr;
    }
    if (getLanguage().isEmpty())
        return;
    const auto folder = QCoreApplication::applicationDirPath();
    const auto name = QStringLiteral("velkorlauncher_%1").arg(getLanguage());
    qDebug().noquote() << "Installing translator from" << name;
    m_translator = new QTranslator(this);
    if (!m_translator->load(name, folder))
        qWarning().noquote() << "Loading translations from" << folder << "failed!";
    if (!QCoreApplication::installTranslator(m_translator))
        qWarning().noquote() << "Installing translator from" << folder << "failed!";
    // The toolkit's own buttons and dialogs, where the system has their translations.
    m_toolkitTranslator = new QTranslator(this);
    if (m_toolkitTranslator->load(QStringLiteral("qtbase_") + getLanguage(),
                                  QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(m_toolkitTranslator);
}

void Settings::logStartup()
{
    qInfo().noquote() << "Velkor Launcher version" << getVersion();
    qInfo().noquote() << "Version type:"
                      << m_versionTypes.value(getVersionType(), m_versionTypes.constFirst());
    qInfo().noquote() << "Running on" << QSysInfo::prettyProductName() << QSysInfo::kernelVersion();
    qInfo() << "System environment:";
    const auto environment = QProcessEnvironment::systemEnvironment().toStringList();
    for (const auto& variable : environment)
        qInfo().noquote() << variable;
    storeMachineHash();
    checkIfFirstRun();
}
