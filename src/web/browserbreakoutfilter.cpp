#include "web/browserbreakoutfilter.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>

namespace
{
bool startsWithAny(const QString& url, const QStringList& prefixes)
{
    return std::any_of(prefixes.cbegin(), prefixes.cend(),
                       [&](const QString& prefix) { return url.startsWith(prefix); });
}

/** The entries that are texts; an empty one would stand for every address, so it counts for nothing. */
QStringList prefixesOf(const QJsonValue& value)
{
    QStringList prefixes;
    const auto entries = value.toArray();
    for (const auto& entry : entries) {
        if (!entry.toString().isEmpty())
            prefixes << entry.toString();
    }
    return prefixes;
}
} // namespace

browserBreakoutFilter::browserBreakoutFilter(QObject* parent) : QObject(parent)
{
    m_network.setTransferTimeout();
    m_network.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &browserBreakoutFilter::autoUpdate);
    connect(&m_network, &QNetworkAccessManager::finished, this,
            &browserBreakoutFilter::onNetworkRequestFinished);
    m_timer.start(m_updateInterval);
}

bool browserBreakoutFilter::breakout(const QString& url) const
{
    const QMutexLocker lock(&m_mutex);
    const bool isUncovered = !m_whitelist.isEmpty() && !startsWithAny(url, m_whitelist);
    return isUncovered || startsWithAny(url, m_blacklist);
}

void browserBreakoutFilter::update(const QUrl& url)
{
    m_url = url;
    autoUpdate();
}

void browserBreakoutFilter::autoUpdate()
{
    m_timer.stop();
    if (!m_url.isEmpty())
        m_network.get(QNetworkRequest(m_url));
    m_timer.start(m_updateInterval);
}

void browserBreakoutFilter::setUpdateInterval(int ms)
{
    m_updateInterval = ms;
    m_timer.start(ms);
}

void browserBreakoutFilter::onNetworkRequestFinished(QNetworkReply* reply)
{
    reply->deleteLater();
    const auto address = reply->request().url().toDisplayString();
    if (reply->error() != QNetworkReply::NoError) {
        qDebug().noquote() << "browserBreakoutFilter:" << address << "error" << reply->errorString();
        return;
    }
    const auto rules = QJsonDocument::fromJson(reply->readAll()).object();
    qDebug().noquote() << "browserBreakoutFilter: Loading from" << address;
    {
        const QMutexLocker lock(&m_mutex);
        if (rules.contains(QLatin1String("whitelist"))) {
            m_whitelist = prefixesOf(rules.value(QLatin1String("whitelist")));
            qDebug() << "browserBreakoutFilter: New whitelist loaded (" << m_whitelist.size() << "entries )";
        }
        if (rules.contains(QLatin1String("blacklist"))) {
            m_blacklist = prefixesOf(rules.value(QLatin1String("blacklist")));
            qDebug() << "browserBreakoutFilter: New blacklist loaded (" << m_blacklist.size() << "entries )";
        }
    }
    emit filterUpdated();
}

QStringList browserBreakoutFilter::getWhitelist() const
{
    const QMutexLocker lock(&m_mutex);
    return m_whitelist;
}

QStringList browserBreakoutFilter::getBlacklist() const
{
    const QMutexLocker lock(&m_mutex);
    return m_blacklist;
}
