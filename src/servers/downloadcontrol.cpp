#include "servers/downloadcontrol.h"

#include "download/ratelimiter.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "tasks/scheduler.h"

#include <QDebug>

#include <cmath>
#include <utility>

static constexpr int clientCheckMs = 2000;
static constexpr double bytesPerMegabyte = 1024 * 1024;

DownloadControl::DownloadControl(Settings* settings, std::function<bool()> areClientsRunning, QObject* parent)
    : QObject(parent), m_settings(settings), m_areClientsRunning(std::move(areClientsRunning))
{
    m_clientTimer.setInterval(settings->getDeployment().scaledDelay(clientCheckMs));
    connect(&m_clientTimer, &QTimer::timeout, this, &DownloadControl::apply);
    connect(settings, &Settings::settingsChanged, this, &DownloadControl::apply);
    apply();
}

void DownloadControl::setPaused(bool paused)
{
    m_settings->setDownloadsPaused(paused);
    m_settings->save();
}

void DownloadControl::setLimit(double megabytesPerSecond)
{
    m_settings->setDownloadLimit(megabytesPerSecond);
    m_settings->save();
}

QString DownloadControl::reason() const
{
    switch (m_state) {
    case State::Paused:
        return tr("Paused");
    case State::WaitingForClients:
        return tr("Waiting until no client runs");
    case State::Running:
        break;
    }
    return {};
}

// Who starts the launcher for one refresh without a person wants it to come to its end.
DownloadControl::State DownloadControl::findState()
{
    const bool waitsForClients = m_settings->downloadsOnlyWithoutClients();
    if (waitsForClients != m_clientTimer.isActive())
        waitsForClients ? m_clientTimer.start() : m_clientTimer.stop();
    if (m_settings->shouldExitAfterRefresh())
        return State::Running;
    if (m_settings->areDownloadsPaused())
        return State::Paused;
    return waitsForClients && m_areClientsRunning() ? State::WaitingForClients : State::Running;
}

void DownloadControl::apply()
{
    const auto limit = std::llround(m_settings->getDownloadLimit() * bytesPerMegabyte);
    if (limit != RateLimiter::instance()->limit()) {
        RateLimiter::instance()->setLimit(limit);
        emit limitChanged();
    }
    const auto state = findState();
    if (std::exchange(m_state, state) == state)
        return;
    qInfo().noquote() << (state == State::Running ? QStringLiteral("Downloads go on")
                                                  : QStringLiteral("Downloads are held: ") + reason());
    hold();
    emit stateChanged();
}

void DownloadControl::hold() const
{
    const bool held = m_state != State::Running;
    RateLimiter::instance()->setHeld(held);
    Scheduler::instance()->setHeld(held);
    const auto keys = m_settings->getFullServerList();
    for (const auto& key : keys) {
        if (auto* server = m_settings->getServer(key))
            server->setHeldBecause(reason());
    }
    if (auto* wine = m_settings->getWineManager())
        wine->setHeldBecause(reason());
}
