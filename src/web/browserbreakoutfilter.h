#pragma once

#include <QMutex>
#include <QNetworkAccessManager>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>

/**
 * Decides which addresses, met while browsing in a pop-up, leave the launcher for the system's browser. The
 * rules are two lists of address prefixes, loaded from a JSON document that the page names and reloaded every
 * few minutes. Main thread, but for breakout() and the lists.
 */
class browserBreakoutFilter : public QObject
{
    Q_OBJECT

public:
    explicit browserBreakoutFilter(QObject* parent = nullptr);

    /**
     * Whether the address has to leave: the blacklist names it, or there is a whitelist that does not cover
     * it. Prefixes are compared with case. Any thread.
     */
    bool breakout(const QString& url) const;

    /** Takes the rules from there, now and from now on. An answer that fails leaves the rules as they are. */
    void update(const QUrl& url);
    /** Milliseconds between two loads. */
    int getUpdateInterval() const { return m_updateInterval; }
    void setUpdateInterval(int ms);

    QStringList getWhitelist() const;
    QStringList getBlacklist() const;

public slots:
    /** Loads the rules again, and waits for the next time. */
    void autoUpdate();

signals:
    void filterUpdated();

private:
    void onNetworkRequestFinished(QNetworkReply* reply);

    QNetworkAccessManager m_network;
    QTimer m_timer;
    QUrl m_url;
    int m_updateInterval = 300000;
    mutable QRecursiveMutex m_mutex; // of the lists
    QStringList m_whitelist;
    QStringList m_blacklist;
};
