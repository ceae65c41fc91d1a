#include "settings/settings.h"

#include "settings/abandonedlock.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QHostInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

namespace
{
struct Language {
    const char* code;
    const char* name;
};

constexpr Language s_languages[] = {
    {"", "English"}, {"ru", "Russian"}, {"fr", "French"}, {"de", "German"}, {"ja", "Japanese"},
};

QString clientEnvironmentKey(const QString& server)
{
    return QStringLiteral("LauncherClientEnvironment/%1").arg(server);
}

/** With less, nothing would ever come. */
constexpr double minDownloadLimit = 0.01;

QString adoptedFolderKey() { return QStringLiteral("LauncherAdoptedFolder"); }
QString linkAdoptedKey() { return QStringLiteral("LauncherLinkAdoptedFiles"); }

constexpr int resManThreadCounts[] = {0, 2, 4, 8, 16};

bool isLanguage(const QString& code)
{
    return std::any_of(std::begin(s_languages), std::end(s_languages),
                       [&](const Language& language) { return code == QLatin1String(language.code); });
}

QString normaliseFolder(QString folder)
{
    if (folder.isEmpty())
        return folder;
    if (folder == QLatin1String("~") || folder.startsWith(QLatin1String("~/")))
        folder.replace(0, 1, QDir::homePath());
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

std::optional<Deployment>& chosenDeployment()
{
    static std::optional<Deployment> deployment;
    return deployment;
}

const char* jsonTypeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Null:
        return "null";
    case QJsonValue::Bool:
        return "bool";
    case QJsonValue::Double:
        return "number";
    case QJsonValue::String:
        return "string";
    case QJsonValue::Array:
        return "array";
    case QJsonValue::Object:
        return "object";
    case QJsonValue::Undefined:
        break;
    }
    return "undefined";
}

/** Names the application for the settings store; has to run before the store is opened. */
Deployment nameApplication(const Deployment& deployment)
{
    QCoreApplication::setOrganizationName(QStringLiteral("Halden"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("haldengames"));
    QCoreApplication::setApplicationName(QStringLiteral("Velkor"));
    return deployment;
}
} // namespace

Settings::Settings(const Deployment& deployment) : m_deployment(nameApplication(deployment))
{
    load();
    m_clientLogsFolder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                         QStringLiteral("/ClientLogs");
    if (getVersionType() == 2 && !isOnInternalNetwork()) {
        set(Id::VersionType, 1);
        m_store.setValue(QStringLiteral("LauncherType"), 1);
    }
}

Settings::~Settings() = default;

void Settings::useDeployment(const Deployment& deployment) { chosenDeployment() = deployment; }

Settings* Settings::instance()
{
    static Settings* settings = nullptr;
    if (!settings) {
        Q_ASSERT_X(chosenDeployment(), "Settings", "useDeployment() has to be called first");
        settings = new Settings(*chosenDeployment());
    }
    return settings;
}

QVariant Settings::storedValue(const SettingRow& row, const QVariant& fallback) const
{
    QVariant value = m_store.value(QLatin1String(row.key), fallback);
    value.convert(static_cast<int>(row.defaultValue.type()));
    return value;
}

void Settings::load()
{
    for (const auto& row : settingsTable()) {
        const bool loaded = row.onStart == SettingRow::OnStart::Loaded;
        setNormalised(row.id, loaded ? storedValue(row, row.defaultValue) : row.defaultValue);
    }
    m_enabledTestServers = value(Id::TestServers).toStringList();
    m_enabledTestServers.sort();
    m_enabledTestServers.removeDuplicates();
    m_store.setValue(QStringLiteral("LauncherTestServers"), m_enabledTestServers);
    removeAbandonedLocks(m_store.fileName());
    // Later writes keep the permissions that the file has.
    m_store.sync();
    QFile::setPermissions(m_store.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void Settings::setNormalised(Id id, const QVariant& value)
{
    switch (id) {
    case Id::CacheFolder:
        return set(id, normaliseFolder(value.toString()));
    case Id::Language:
        return set(id, isLanguage(value.toString()) ? value.toString() : QString());
    case Id::WineVersion:
        return set(id, value.toString().isEmpty() ? QVariant(QStringLiteral("latest")) : value);
    case Id::DownloadLimit: {
        const double limit = value.toDouble();
        return set(id, limit > 0 && limit <= maxDownloadLimit ? qMax(limit, minDownloadLimit) : 0.0);
    }
    default:
        return set(id, value);
    }
}

void Settings::setCacheFolder(const QString& folder) { setNormalised(Id::CacheFolder, folder); }

void Settings::setLanguage(const QString& code)
{
    setNormalised(Id::Language, code);
    setupTranslator();
}

void Settings::setDownloadLimit(double megabytesPerSecond)
{
    setNormalised(Id::DownloadLimit, megabytesPerSecond);
}

QStringList Settings::getClientEnvironment(const QString& server) const
{
    return m_store.value(clientEnvironmentKey(server)).toStringList();
}

void Settings::setClientEnvironment(const QString& server, const QStringList& lines)
{
    if (lines.isEmpty())
        m_store.remove(clientEnvironmentKey(server));
    else
        m_store.setValue(clientEnvironmentKey(server), lines);
}

QString Settings::getAdoptedFolder() const { return m_store.value(adoptedFolderKey()).toString(); }

bool Settings::linksAdoptedFiles() const { return m_store.value(linkAdoptedKey()).toBool(); }

void Settings::setAdoptedFolder(const QString& folder, bool linkFiles)
{
    m_store.setValue(linkAdoptedKey(), linkFiles);
    m_store.setValue(adoptedFolderKey(), folder);
    emit adoptedFolderChosen();
}

void Settings::forgetAdoptedFolder()
{
    m_store.remove(linkAdoptedKey());
    m_store.remove(adoptedFolderKey());
}

void Settings::setWineVersion(const QString& version) { setNormalised(Id::WineVersion, version); }

void Settings::setResManThreadCount(ResManThreadCountOption option)
{
    set(Id::ResManThreadCount, resManThreadCounts[option]);
}

Settings::ResManThreadCountOption Settings::getResManThreadCountAsOption() const
{
    const auto* end = std::end(resManThreadCounts);
    const auto* found = std::find(std::begin(resManThreadCounts), end, getResManThreadCount());
    return found == end ? ThreadsDefault
                        : static_cast<ResManThreadCountOption>(found - std::begin(resManThreadCounts));
}

QStringList Settings::getResManThreadCountOptions()
{
    QStringList names{tr("Default")};
    for (const int count : resManThreadCounts) {
        if (count > 0)
            names << QString::number(count);
    }
    return names;
}

QString Settings::getGraphicsModeString() const
{
    return runClientsWithDx9() ? QStringLiteral("dx9") : QStringLiteral("dx11");
}

void Settings::fillMap(QVariantMap& map) const
{
    for (const auto& row : settingsTable())
        map.insert(QLatin1String(row.key), value(row.id));
    map.insert(QStringLiteral("LauncherTestServers"), m_enabledTestServers);
}

void Settings::save()
{
    QVariantMap map;
    fillMap(map);
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
        m_store.setValue(entry.key(), entry.value());
    emit settingsChanged();
}

QJsonObject Settings::saveToJson() const
{
    QVariantMap map;
    fillMap(map);
    return QJsonObject::fromVariantMap(map);
}

void Settings::setFromJson(const QJsonObject& object)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key().isEmpty() || member.key().contains(QLatin1Char('/'))) {
            qWarning().noquote() << "The key" << member.key() << "cannot be set";
            continue;
        }
        qDebug().noquote() << "Setting" << member.key() << "to a value of type"
                           << jsonTypeName(member.value().type());
        m_store.setValue(member.key(), member.value().toVariant());
    }
    for (const auto& row : settingsTable()) {
        if (row.fromPage != SettingRow::FromPage::Accepted)
            continue;
        if (row.id == Id::TestServers)
            setEnabledTestServers(storedValue(row, m_enabledTestServers).toStringList());
        else if (row.id == Id::Language)
            setLanguage(storedValue(row, value(row.id)).toString());
        else
            setNormalised(row.id, storedValue(row, value(row.id)));
    }
}

bool Settings::isOnInternalNetwork() const
{
    const auto domain = QHostInfo::localDomainName();
    const auto host = QHostInfo::localHostName();
    return std::any_of(
        m_deployment.internalDomains.cbegin(), m_deployment.internalDomains.cend(),
        [&](const QString& internal) { return domain == internal || host.endsWith(internal); });
}

QString Settings::getVersion() const { return QStringLiteral(VELKOR_VERSION); }

QStringList Settings::getVersionTypeNames() const
{
    QStringList names{tr("Release"), tr("Beta")};
    if (isOnInternalNetwork())
        names << tr("Development");
    return names;
}

QStringList Settings::getLanguagesSupported() const
{
    QStringList codes;
    for (const auto& language : s_languages)
        codes << QLatin1String(language.code);
    return codes;
}

QString Settings::getLanguageName(const QString& code) const
{
    for (const auto& language : s_languages) {
        if (code == QLatin1String(language.code))
            return QLatin1String(language.name);
    }
    return {};
}

QString Settings::getDefaultCacheLocation() const
{
    QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/../SharedCache"));
    if (folder.mkpath(QStringLiteral(".")))
        return normaliseFolder(QDir::cleanPath(folder.absolutePath()));
    return normaliseFolder(QStringLiteral("~/.velkor"));
}

QString Settings::getLauncherLogsFolder() const
{
    const auto location = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return location.isEmpty() ? QString() : location + QStringLiteral("/Launcher");
}

QString Settings::getWineEnvFolder() const
{
    return m_wineEnvFolder.isEmpty() ? QDir::cleanPath(getCacheFolder() + QStringLiteral("/wineenv"))
                                     : m_wineEnvFolder;
}

QString Settings::urlPrefix() const
{
    return m_useSsl ? QStringLiteral("https:/") : QStringLiteral("http:/");
}

QString Settings::getBaseUrlForVersion() const
{
    return QStringLiteral("%1/%2/").arg(urlPrefix(), m_deployment.binariesHost);
}

QString Settings::getBaseUrlForResources() const
{
    return QStringLiteral("%1/%2/").arg(urlPrefix(), m_deployment.resourcesHost);
}

QString Settings::getBaseUrlForProtectedBinaries() const
{
    return QStringLiteral("%1/%2/prod/").arg(urlPrefix(), m_deployment.apiGatewayHost);
}

QString Settings::getUrlForGuiVersionInfo() const
{
    return QStringLiteral("%1/%2/version.json").arg(urlPrefix(), m_deployment.launcherWebHost);
}

QString Settings::getUrlForVersionInfo() const
{
    return QStringLiteral("%1velkorlauncher_linux_%2.json")
        .arg(getBaseUrlForBinaries(), m_versionTypes.value(getVersionType(), m_versionTypes.constFirst()));
}

QString Settings::getUrlForLauncherIndex(const QString& build) const
{
    return QStringLiteral("%1velkorlauncher_linux_%2.txt").arg(getBaseUrlForBinaries(), build);
}

QString Settings::getLandingPageUrl(const QString& serverKey) const
{
    return QStringLiteral("https://%1/%2/").arg(m_deployment.launcherWebHost, serverKey);
}

QString Settings::getLogglyUrl()
{
    if (m_logglyUrl.isEmpty()) {
        m_logglyUrl = QStringLiteral("https://%1/bulk/%2/tag/http,launcher,linux,%3,%4")
                          .arg(m_deployment.logCollectionHost, m_deployment.logCollectionToken, getVersion(),
                               QSysInfo::kernelVersion());
    }
    return m_logglyUrl;
}

void Settings::checkIfFirstRun()
{
    const auto key = QStringLiteral("FirstRunTimestamp");
    m_isFirstRun = !m_store.contains(key);
    if (m_isFirstRun)
        m_store.setValue(key, QDateTime::currentSecsSinceEpoch());
}

bool Settings::checkIfFirstClientLaunch(const QString& server)
{
    const auto key = QStringLiteral("FirstClientLaunchTimestamp");
    if (m_store.contains(key))
        return false;
    qDebug().noquote() << "First client launch, on" << server;
    m_store.setValue(key, QDateTime::currentSecsSinceEpoch());
    return true;
}

bool Settings::checkIfUIVersion6ResizeDone()
{
    const auto key = QStringLiteral("UIVersion6ResizeDone");
    const bool done = m_store.contains(key);
    if (!done)
        m_store.setValue(key, true);
    return done;
}

void Settings::storeMachineHash()
{
    const auto key = QStringLiteral("MachineHash");
    const auto hash = QString::fromLatin1(m_machineHash.toHex());
    if (!m_store.contains(key))
        qDebug() << "Machine hash is being stored for the first time";
    else if (m_store.value(key).toString() != hash)
        qDebug() << "Machine hash has changed";
    else
        qDebug() << "Machine hash is unchanged";
    m_store.setValue(key, hash);
    if (hash.isEmpty())
        qDebug() << "Empty machine hash";
    else
        qDebug().noquote() << "Machine hash is" << hash;
}
