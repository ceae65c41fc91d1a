// The part of CustomWebPage that carries out the page's commands.

#include "logging/messagehandler.h"
#include "maintenance/clientsettingsprofiles.h"
#include "servers/servermanager.h"
#include "settings/settings.h"
#include "telemetry/eventlogger.h"
#include "web/bridgecommand.h"
#include "web/customwebpage.h"
#include "web/sockethandler.h"

#include <QDebug>
#include <QDesktopServices>
#include <QJsonDocument>
#include <QUrlQuery>
#include <QWebEngineProfile>

const std::vector<CustomWebPage::Command>& CustomWebPage::commandTable()
{
    static const std::vector<Command> table{
        {"javascriptReady", &CustomWebPage::javascriptReady},
        {"launchvelkor", &CustomWebPage::launchVelkor},
        {"processstatus", &CustomWebPage::processStatus},
        {"quitprocess", &CustomWebPage::quitProcess},
        {"switchtoprocess", &CustomWebPage::switchToProcessOf},
        {"openurl", &CustomWebPage::openUrl},
        {"settings", &CustomWebPage::changeSettings},
        {"openCacheDialog", &CustomWebPage::openCacheDialog},
        {"createprofile", &CustomWebPage::createProfile},
        {"renameprofile", &CustomWebPage::renameProfile},
        {"deleteprofile", &CustomWebPage::deleteProfile},
        {"getprofiles", &CustomWebPage::getProfiles},
        {"openprofilesdialog", &CustomWebPage::openProfilesDialog},
        {"settitlebarheight", &CustomWebPage::setTitleBarHeight},
        {"clearAllVisitedLinks", &CustomWebPage::clearAllVisitedLinks},
        {"openwebsocket", &CustomWebPage::openWebSocket},
        {"closewebsocket", &CustomWebPage::closeWebSocket},
        {"settoken", &CustomWebPage::setToken},
        {"ssoCode", &CustomWebPage::finishSso},
        {"pausedownloads", &CustomWebPage::pauseDownloads},
        {"resumedownloads", &CustomWebPage::resumeDownloads},
    };
    return table;
}

void CustomWebPage::handleCommand(const QString& json, CustomWebPage* sender)
{
    const auto command = BridgeCommand::parse(json);
    for (const auto& secret : command.secrets)
        logRedactor().addSecret(secret);
    qDebug().noquote() << "handleCommand:" << command.loggable;
    const auto& table = commandTable();
    const auto row = std::find_if(table.cbegin(), table.cend(), [&](const Command& candidate) {
        return command.name == QLatin1String(candidate.name);
    });
    if (row != table.cend())
        (this->*row->run)(command, sender);
}

void CustomWebPage::javascriptReady(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    handleJavascriptReady();
}

void CustomWebPage::launchVelkor(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const auto key = command.text("server");
    auto* server = Settings::instance()->getServer(key);
    if (!server) {
        qWarning().noquote() << "Invalid server name:" << key;
        return;
    }
    server->play(command.text("token"), command.text("settingsProfile"), command.text("username"));
}

void CustomWebPage::processStatus(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const auto server = command.text("server");
    const auto username = command.text("username");
    if (findProcess(server, username))
        call(PageCall::ProcessRunning, {server, username});
}

void CustomWebPage::quitProcess(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    if (auto* process = findProcess(command.text("server"), command.text("username")))
        closeProcessNicely(process);
}

void CustomWebPage::switchToProcessOf(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    if (auto* process = findProcess(command.text("server"), command.text("username")))
        switchToProcess(process);
}

void CustomWebPage::openUrl(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    QDesktopServices::openUrl(QUrl(command.text("url"), QUrl::TolerantMode));
}

// The settings are saved at once: what a page may not change gets its old value back in the store.
void CustomWebPage::changeSettings(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    auto* settings = Settings::instance();
    const auto served = settings->getServerList();
    settings->setFromJson(QJsonDocument::fromJson(command.text("value").toUtf8()).object());
    settings->save();
    settings->store().sync();
    if (settings->getServerList() != served)
        emit settings->startRefreshCycle();
}

void CustomWebPage::openCacheDialog(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    qDebug() << "VerifierGui opened from web gui";
    emit cacheDialogRequested();
}

void CustomWebPage::openProfilesDialog(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    emit profilesDialogRequested();
}

void CustomWebPage::createProfile(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const auto server = command.text("server");
    const auto name = command.text("name");
    const auto inherit = command.arguments.value(QLatin1String("inherit")).toObject();
    settingResult(createSettingsProfile(server, name, inherit.value(QLatin1String("server")).toString(),
                                        inherit.value(QLatin1String("name")).toString()),
                  server, name);
}

void CustomWebPage::renameProfile(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const auto server = command.text("server");
    const auto name = command.text("name");
    settingResult(renameSettingsProfile(server, name, command.text("newname")), server, name);
}

void CustomWebPage::deleteProfile(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const auto server = command.text("server");
    const auto name = command.text("name");
    settingResult(deleteSettingsProfile(server, name), server, name);
}

void CustomWebPage::getProfiles(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    profilelist(command.text("server"));
}

void CustomWebPage::setTitleBarHeight(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    emit Settings::instance()->setTitleBarHeight(command.arguments.value(QLatin1String("height")).toInt());
}

void CustomWebPage::clearAllVisitedLinks(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    profile()->clearAllVisitedLinks();
}

void CustomWebPage::openWebSocket(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    const int port = command.arguments.value(QLatin1String("port")).toInt();
    m_socket.reset(); // the old one may hold the port
    m_socket = std::make_unique<SocketHandler>(Settings::instance()->getDeployment().launcherWebHost);
    connect(m_socket.get(), &SocketHandler::textMessageReceived, this, &CustomWebPage::onTextMessageReceived);
    const bool isPort = port > 0 && port <= 65535;
    const bool listening = isPort && m_socket->startListening(static_cast<quint16>(port));
    call(PageCall::WebSocketOpened, {QString::number(port), QString::number(listening ? 1 : 0)});
}

void CustomWebPage::closeWebSocket(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    m_socket.reset();
}

void CustomWebPage::onTextMessageReceived(const QString& message)
{
    qDebug().noquote() << "Text message received:" << message;
    if (message.contains(QLatin1Char('\''))) {
        qWarning().noquote() << "CustomWebPage::onTextMessageReceived - Invalid message:" << message;
        return;
    }
    call(PageCall::WebSocketMessage, {message});
}

void CustomWebPage::setToken(const BridgeCommand& command, CustomWebPage* /*sender*/)
{
    auto* settings = Settings::instance();
    const auto key = command.text("server");
    const auto token = command.text("token");
    auto* server = settings->getServer(key);
    if (!server)
        return;
    server->setToken(token);
    qDebug() << "setToken";
    emit settings->startRefreshCycle();
    if (key == settings->getMainServerName())
        EventLogger::instance()->setAuthenticationToken(token);
}

void CustomWebPage::finishSso(const BridgeCommand& command, CustomWebPage* sender)
{
    const auto code = command.text("code");
    qDebug().noquote() << "Got ssoCode:" << code;
    const QUrlQuery query(sender->url());
    QStringList answer{code};
    if (query.hasQueryItem(QStringLiteral("state"))) {
        answer << query.queryItemValue(QStringLiteral("state"), QUrl::FullyDecoded);
        qDebug().noquote() << "Got ssoState:" << answer.constLast();
        if (query.hasQueryItem(QStringLiteral("remember"))) {
            answer << query.queryItemValue(QStringLiteral("remember"), QUrl::FullyDecoded).toLower();
            qDebug().noquote() << "Got ssoRemember:" << answer.constLast();
        }
    }
    static constexpr PageCall forms[] = {PageCall::SsoCode, PageCall::SsoCodeWithState,
                                         PageCall::SsoCodeToRemember};
    call(forms[answer.size() - 1], answer);
    // Later: the engine is still busy with the page.
    if (sender != this)
        QMetaObject::invokeMethod(sender, &QWebEnginePage::windowCloseRequested, Qt::QueuedConnection);
}

void CustomWebPage::pauseDownloads(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    emit pauseRequested();
}

void CustomWebPage::resumeDownloads(const BridgeCommand& /*command*/, CustomWebPage* /*sender*/)
{
    emit resumeRequested();
}
