#include "shell/serverline.h"

#include "maintenance/clientsettingsprofiles.h"
#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

ServerLine::ServerLine(ServerManager* server, QWidget* parent)
    : QFrame(parent), m_server(server), m_build(new QLabel(server->getBuild(), this)),
      m_status(new QLabel(this)), m_progress(new QProgressBar(this)), m_profiles(new QComboBox(this)),
      m_play(new QPushButton(tr("Play on %1").arg(server->getDisplayName()), this))
{
    auto* name = new QLabel(server->getDisplayName(), this);
    name->setObjectName(QStringLiteral("serverName"));
    name->setFixedWidth(100);
    m_build->setObjectName(QStringLiteral("serverBuild"));
    m_build->setFixedWidth(80);
    m_status->setFixedWidth(200);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_progress->setRange(0, 100);
    m_progress->setFixedWidth(200);
    m_progress->setAccessibleName(tr("Progress of %1").arg(server->getDisplayName()));
    m_profiles->setFixedWidth(160);
    m_profiles->setToolTip(tr("The client's settings profile"));
    m_profiles->setAccessibleName(tr("Settings profile of %1").arg(server->getDisplayName()));
    refreshClientSettingsProfiles();
    m_play->setObjectName(QStringLiteral("play"));
    m_play->setMinimumWidth(160);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 14, 20, 14);
    layout->setSpacing(16);
    layout->addWidget(name);
    layout->addWidget(m_build);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    layout->addWidget(m_profiles);
    layout->addStretch();
    layout->addWidget(m_play);

    setStatus(server->isReady() ? tr("Ready") : tr("Status not verified"));
    m_progress->setValue(server->isReady() ? 100 : 0);
    updatePlayButton();

    connect(server, &ServerManager::startUpdate, this, &ServerLine::onStartUpdate);
    connect(server, &ServerManager::progressUpdate, this, &ServerLine::onProgressUpdate);
    connect(server, &ServerManager::transferUpdate, this, &ServerLine::onTransferUpdate);
    connect(server, &ServerManager::versionUpdate, this, &ServerLine::onVersionUpdate);
    connect(server, &ServerManager::ready, this, &ServerLine::updatePlayButton);
    connect(server, &ServerManager::failedUpdate, this, &ServerLine::updatePlayButton);
    connect(Settings::instance(), &Settings::clientSettingsProfilesChanged, this,
            &ServerLine::onClientSettingsProfilesChanged);
    connect(m_play, &QPushButton::clicked, this, &ServerLine::onPlay);
}

QString ServerLine::key() const { return m_server->getName(); }

void ServerLine::setStatus(const QString& text)
{
    m_status->setText(text);
    m_status->setToolTip(text);
}

void ServerLine::updatePlayButton() { m_play->setEnabled(m_server->isReady()); }

void ServerLine::onStartUpdate(ServerManager* /*server*/)
{
    setStatus(tr("Checking..."));
    updatePlayButton();
}

void ServerLine::onProgressUpdate(ServerManager* /*server*/, float fraction, const QString& message)
{
    m_progress->setValue(static_cast<int>(fraction * 100));
    setStatus(message);
    updatePlayButton();
}

void ServerLine::onTransferUpdate(ServerManager* /*server*/, const QString& text)
{
    m_progress->setToolTip(text);
}

void ServerLine::onVersionUpdate(ServerManager* /*server*/, const QString& build)
{
    m_build->setText(build);
    updatePlayButton();
}

void ServerLine::refreshClientSettingsProfiles()
{
    const auto chosen = m_profiles->currentText();
    m_profiles->clear();
    m_profiles->addItems(getSettingsProfiles(m_server->getName()));
    m_profiles->setCurrentIndex(qMax(0, m_profiles->findText(chosen)));
}

void ServerLine::onClientSettingsProfilesChanged(const QString& server)
{
    if (server == m_server->getName())
        refreshClientSettingsProfiles();
}

void ServerLine::onPlay() { m_server->play(QString(), m_profiles->currentText(), QString()); }
