#pragma once

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <functional>

class ServerManager;

/**
 * What the launcher is doing, in a few words for the tray: one line for each server, and a notification when
 * something that took long has ended or failed while nobody was looking. Main thread.
 */
class TrayStatus : public QObject
{
    Q_OBJECT

public:
    /** isWatched: whether the player sees the window, and needs no notification. long: what counts as long.
     */
    TrayStatus(std::function<bool()> isWatched, int longMs, QObject* parent = nullptr);

    /** Follows the server; once for each is enough. */
    void watch(ServerManager* server);

    /** One line for each server. */
    QStringList lines() const;

signals:
    /** Not more than twice a second. */
    void changed();
    void notificationWanted(const QString& title, const QString& text, bool isFailure);

private slots:
    void onStartUpdate(ServerManager* server);
    void onProgressUpdate(ServerManager* server, float fraction, const QString& message);
    void onReady(ServerManager* server);
    void onFailedUpdate(ServerManager* server, int code, const QString& message);

private:
    struct State {
        QString name;
        QString text;
        int percent = 0;
        QElapsedTimer updating; // valid while an update runs
    };

    State& stateOf(ServerManager* server);
    bool endUpdate(State* state);
    void announce();

    const std::function<bool()> m_isWatched;
    const int m_longMs;
    QMap<QString, State> m_states; // by key
    QTimer m_announceTimer;
};
