#pragma once

#include <QFrame>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class ServerManager;

/** One row of the server list: a server's name, build, state and progress, the profile its client uses, and
 * the button that starts the client. */
class ServerLine : public QFrame
{
    Q_OBJECT

public:
    /** server is not owned and has to outlive the row. */
    explicit ServerLine(ServerManager* server, QWidget* parent = nullptr);

    QString key() const;

private slots:
    void onStartUpdate(ServerManager* server);
    void onProgressUpdate(ServerManager* server, float fraction, const QString& message);
    void onTransferUpdate(ServerManager* server, const QString& text);
    void onVersionUpdate(ServerManager* server, const QString& build);
    void onPlay();
    void refreshClientSettingsProfiles();
    void onClientSettingsProfilesChanged(const QString& server);

private:
    void setStatus(const QString& text);
    void updatePlayButton();

    ServerManager* const m_server;
    QLabel* const m_build;
    QLabel* const m_status;
    QProgressBar* const m_progress;
    QComboBox* const m_profiles;
    QPushButton* const m_play;
};
