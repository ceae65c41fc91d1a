// The part of Settings that reads the server catalogue and decides which servers are served.

#include "settings/settings.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

void Settings::initializeServers()
{
    QFile file(QStringLiteral(":/servers.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "Couldn't open servers.json";
        return;
    }
    // The host of one server belongs to the deployment, not to the catalogue.
    const auto json = file.readAll().replace("@heronHost@", m_deployment.heronHost.toUtf8());
    setServers(QJsonDocument::fromJson(json).object());
}

void Settings::setServers(const QJsonObject& catalogue)
{
    auto servers = catalogue.value(QLatin1String("servers")).toObject();
    auto order = catalogue.value(QLatin1String("order")).toArray();
    m_mainServer = order.first().toString();

    QStringList enabled;
    for (const auto& key : qAsConst(m_commandLine.extraTestServers)) {
        order.append(key);
        enabled << key;
        if (!servers.contains(key)) {
            servers.insert(
                key,
                QJsonObject{{QStringLiteral("displayName"), key.left(1).toUpper() + key.mid(1).toLower()},
                            {QStringLiteral("server"), key.toLower() + m_deployment.gameServerDomainSuffix}});
        }
    }

    m_fullServerList.clear();
    for (const auto& item : qAsConst(order)) {
        const auto key = item.toString();
        if (!m_fullServerList.contains(key))
            m_fullServerList << key;
    }
    for (const auto& key : qAsConst(m_enabledTestServers)) {
        if (m_fullServerList.contains(key) && !enabled.contains(key))
            enabled << key;
    }
    m_enabledTestServers = enabled;

    for (auto server = servers.constBegin(); server != servers.constEnd(); ++server) {
        const bool active = server.key() == m_mainServer || m_enabledTestServers.contains(server.key());
        emit serverDeclared(server.key(), server.value().toObject());
        emit serverActivationRequested(server.key(), active);
    }
}

QStringList Settings::getServerList() const
{
    const auto enabled = getEnabledTestServers();
    QStringList keys;
    for (const auto& key : m_fullServerList) {
        if (key == m_mainServer || enabled.contains(key))
            keys << key;
    }
    return keys;
}

QStringList Settings::getEnabledTestServers() const
{
    return m_commandLine.skipTestServers ? QStringList() : m_enabledTestServers;
}

void Settings::setEnabledTestServers(const QStringList& keys)
{
    QStringList kept;
    for (const auto& key : qAsConst(m_fullServerList)) {
        if (!getServer(key))
            continue;
        const bool wanted = keys.contains(key);
        if (wanted)
            kept << key;
        emit serverActivationRequested(key, wanted || key == m_mainServer);
    }
    m_enabledTestServers = kept;
    emit serverListChanged();
}

void Settings::resetLastKnownBuildForAllServers()
{
    const auto keys = getServerList();
    for (const auto& key : keys) {
        if (getServer(key))
            emit lastKnownBuildResetRequested(key);
    }
}
