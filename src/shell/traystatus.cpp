#include "shell/traystatus.h"

#include "servers/servermanager.h"
#include "settings/settings.h"

static constexpr int announceMs = 500;

TrayStatus::TrayStatus(std::function<bool()> isWatched, int longMs, QObject* parent)
    : QObject(parent), m_isWatched(std::move(isWatched)), m_longMs(longMs)
{
    m_announceTimer.setSingleShot(true);
    connect(&m_announceTimer, &QTimer::timeout, this, &TrayStatus::changed);
}

void TrayStatus::watch(ServerManager* server)
{
    const auto once = Qt::UniqueConnection;
    connect(server, &ServerManager::startUpdate, this, &TrayStatus::onStartUpdate, once);
    connect(server, &ServerManager::progressUpdate, this, &TrayStatus::onProgressUpdate, once);
    connect(server, &ServerManager::ready, this, &TrayStatus::onReady, once);
    connect(server, &ServerManager::failedUpdate, this, &TrayStatus::onFailedUpdate, once);
}

QStringList TrayStatus::lines() const
{
    QStringList lines;
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys) {
        const auto state = m_states.constFind(key);
        if (state == m_states.constEnd())
            continue;
        if (state->percent > 0 && state->percent < 100)
            lines << tr("%1: %2 % - %3").arg(state->name).arg(state->percent).arg(state->text);
        else
            lines << tr("%1: %2").arg(state->name, state->text);
    }
    return lines;
}

TrayStatus::State& TrayStatus::stateOf(ServerManager* server)
{
    auto& state = m_states[server->getName()];
    state.name = server->getDisplayName();
    return state;
}

void TrayStatus::announce()
{
    if (!m_announceTimer.isActive())
        m_announceTimer.start(announceMs);
}

void TrayStatus::onStartUpdate(ServerManager* server)
{
    stateOf(server).updating.start();
    announce();
}

void TrayStatus::onProgressUpdate(ServerManager* server, float fraction, const QString& message)
{
    auto& state = stateOf(server);
    state.percent = static_cast<int>(fraction * 100);
    state.text = message;
    announce();
}

/** Whether that is worth a notification. */
bool TrayStatus::endUpdate(State* state)
{
    const bool tookLong = state->updating.isValid() && state->updating.elapsed() >= m_longMs;
    state->updating.invalidate();
    announce();
    return tookLong && !m_isWatched();
}

void TrayStatus::onReady(ServerManager* server)
{
    auto& state = stateOf(server);
    state.text = tr("Ready");
    state.percent = 100;
    if (endUpdate(&state))
        emit notificationWanted(tr("%1 is ready").arg(state.name), tr("The update has ended."), false);
}

void TrayStatus::onFailedUpdate(ServerManager* server, int /*code*/, const QString& message)
{
    auto& state = stateOf(server);
    state.text = message;
    state.percent = 0;
    if (endUpdate(&state))
        emit notificationWanted(tr("%1 could not be updated").arg(state.name), message, true);
}
