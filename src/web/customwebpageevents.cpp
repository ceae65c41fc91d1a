// The part of CustomWebPage that tells the page what happens to servers, Wine and clients.

#include "maintenance/clientsettingsprofiles.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "web/customwebpage.h"

#include <QDebug>
#include <QJsonDocument>

#include <cmath>

namespace
{
QString literal(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
} // namespace

void CustomWebPage::connectEvents()
{
    const auto* settings = Settings::instance();
    connect(settings, &Settings::settingsChanged, this, &CustomWebPage::setSettings);
    connect(settings, &Settings::clientSettingsProfilesChanged, this, &CustomWebPage::profilelist);
    connect(settings, &Settings::deviceIdAllocated, this, &CustomWebPage::onDeviceIdAllocated);
    connect(settings, &Settings::serverListChanged, this, &CustomWebPage::connectServers);
    connectServers();
    if (const auto* wine = settings->getWineManager()) {
        connect(wine, &WineManager::startUpdate, this, &CustomWebPage::onWineStartUpdate);
        connect(wine, &WineManager::progressUpdate, this, &CustomWebPage::onWineProgressUpdate);
    }
}

// Runs again when a test server is enabled; a server is connected once all the same.
void CustomWebPage::connectServers()
{
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys) {
        const auto* server = Settings::instance()->getServer(key);
        if (!server)
            continue;
        const auto once = Qt::UniqueConnection;
        connect(server, &ServerManager::ready, this, &CustomWebPage::onServerReady, once);
        connect(server, &ServerManager::startUpdate, this, &CustomWebPage::onServerStartUpdate, once);
        connect(server, &ServerManager::failedUpdate, this, &CustomWebPage::onServerFailedUpdate, once);
        connect(server, &ServerManager::progressUpdate, this, &CustomWebPage::onServerProgressUpdate, once);
        connect(server, &ServerManager::versionUpdate, this, &CustomWebPage::onServerVersionUpdate, once);
        connect(server, &ServerManager::processStarted, this, &CustomWebPage::onProcessStarted, once);
        connect(server, &ServerManager::showErrorMessage, this, &CustomWebPage::showErrorMessage, once);
    }
}

void CustomWebPage::handleJavascriptReady()
{
    const auto* settings = Settings::instance();
    call(PageCall::SetVersion, {settings->getVersion()}); // behind whatever waits already
    m_javascriptLoaded = true;
    while (!m_pendingScripts.isEmpty())
        executeJavaScript(m_pendingScripts.dequeue());

    const auto served = settings->getServerList();
    for (const auto& key : served) {
        const auto* server = settings->getServer(key);
        if (server && server->isReady()) {
            setPlayable(key, true);
            setProgress(key, 1, tr("Ready"));
        }
        if (server && !server->getBuild().isEmpty())
            call(PageCall::SetClientVersion, {key, server->getBuild()});
    }
    QVector<QStringList> all;
    const auto keys = settings->getFullServerList();
    for (const auto& key : keys) {
        const auto* server = settings->getServer(key);
        all.append({key, server ? server->getDisplayName() : key});
    }
    call(PageCall::AddServers, {formatArray(PageCall::ServerItem, all)});
    setSettings();
    qDebug() << "handleJavascriptReady";
    emit Settings::instance()->startRefreshCycle();
}

void CustomWebPage::setPlayable(const QString& server, bool playable)
{
    call(PageCall::SetPlayable, {server, literal(playable)});
}

void CustomWebPage::setProgress(const QString& server, float fraction, const QString& text)
{
    const auto known = std::isfinite(fraction) ? qBound(0.0F, fraction, 1.0F) : 0.0F;
    call(PageCall::UpdateProgress, {server, formatNumber(known), text});
}

void CustomWebPage::showErrorMessage(const QString& title, const QString& message, int code)
{
    call(PageCall::ShowError, {title, message, QString::number(code)});
}

void CustomWebPage::setSettings()
{
    const QJsonDocument settings(Settings::instance()->saveToJson());
    call(PageCall::SetSettings, {QString::fromUtf8(settings.toJson(QJsonDocument::Compact))});
}

void CustomWebPage::setDeviceId(const QString& id) { call(PageCall::SetDeviceId, {id}); }

void CustomWebPage::profilelist(const QString& server)
{
    QVector<QStringList> items;
    const auto names = getSettingsProfiles(server);
    for (const auto& name : names)
        items.append({name});
    call(PageCall::ProfileList, {server, formatArray(PageCall::ProfileItem, items)});
}

void CustomWebPage::settingResult(ClientSettingsProfileResult result, const QString& server,
                                  const QString& name)
{
    if (result == ClientSettingsProfileResult::Success)
        call(PageCall::SettingOk, {server, name});
    else
        call(PageCall::SettingError, {server, name, QString::number(static_cast<int>(result))});
}

void CustomWebPage::onServerReady(ServerManager* server) { setPlayable(server->getName(), true); }

void CustomWebPage::onServerStartUpdate(ServerManager* server) { setPlayable(server->getName(), false); }

void CustomWebPage::onServerProgressUpdate(ServerManager* server, float fraction, const QString& text)
{
    setProgress(server->getName(), fraction, text);
}

void CustomWebPage::onServerFailedUpdate(ServerManager* /*server*/, int code, const QString& message)
{
    showErrorMessage(tr("Error"), message, code);
}

void CustomWebPage::onServerVersionUpdate(ServerManager* server, const QString& build)
{
    call(PageCall::SetClientVersion, {server->getName(), build});
}

void CustomWebPage::onWineStartUpdate()
{
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys)
        setPlayable(key, false);
}

void CustomWebPage::onWineProgressUpdate(float fraction, const QString& text)
{
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys)
        setProgress(key, fraction, text);
}

void CustomWebPage::onDeviceIdAllocated(const QString& id)
{
    qDebug().noquote() << "Device ID allocated:" << id;
    setDeviceId(id);
}

void CustomWebPage::processStarted(ServerManager* server, AttachedProcess* process)
{
    onProcessStarted(server, process);
}

void CustomWebPage::onProcessStarted(ServerManager* server, AttachedProcess* process)
{
    m_processes.insert(process);
    connect(process, &AttachedProcess::finished, this, &CustomWebPage::onProcessFinished,
            Qt::UniqueConnection);
    call(PageCall::ProcessRunning, {server->getName(), process->username()});
}

AttachedProcess* CustomWebPage::findProcess(const QString& server, const QString& username) const
{
    const auto found = std::find_if(m_processes.cbegin(), m_processes.cend(), [&](const auto* process) {
        return process->server() == server && process->username() == username;
    });
    return found == m_processes.cend() ? nullptr : *found;
}

void CustomWebPage::onProcessFinished(AttachedProcess* process, int /*exitCode*/)
{
    if (!m_processes.remove(process)) {
        qWarning() << "CustomWebPage::onProcessFinished couldn't find process";
        return;
    }
    const bool crashed = process->exitStatus() == QProcess::CrashExit;
    call(PageCall::ProcessEnded, {process->server(), process->username(), literal(crashed)});
    process->deleteLater();
}
