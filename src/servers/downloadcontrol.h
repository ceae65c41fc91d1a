#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

class Settings;

/**
 * Whether and how fast the launcher downloads, as the player has it: brings the limit of the settings to the
 * requests, and holds updates while they are paused or while a client runs and the player wants none then.
 * Follows the settings. Main thread.
 */
class DownloadControl : public QObject
{
    Q_OBJECT

public:
    enum class State { Running, Paused, WaitingForClients };

    /** settings is not owned; areClientsRunning is asked every few seconds when it matters. */
    DownloadControl(Settings* settings, std::function<bool()> areClientsRunning, QObject* parent = nullptr);

    State state() const { return m_state; }
    /** For the player; empty while downloads run. */
    QString reason() const;

    /** Both are remembered for the next start. */
    void setPaused(bool paused);
    /** Megabytes per second, 0 for none. */
    void setLimit(double megabytesPerSecond);

signals:
    void stateChanged();
    void limitChanged();

private:
    void apply();
    State findState();
    void hold() const;

    Settings* const m_settings;
    const std::function<bool()> m_areClientsRunning;
    State m_state = State::Running;
    QTimer m_clientTimer;
};
