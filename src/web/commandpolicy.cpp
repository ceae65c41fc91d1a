#include "web/commandpolicy.h"

#include "logging/messagehandler.h"

#include <QUrlQuery>

QUrl errorPageUrl() { return QUrl(QStringLiteral("file:///errorpage/index.html")); }

bool CommandPolicy::mayCommand(const QUrl& page) const
{
    if (page.adjusted(QUrl::RemoveFragment) == errorPageUrl())
        return true;
    if (page.scheme() != QLatin1String("https") || page.host().isEmpty())
        return false;
    if (!m_hosts)
        return true;
    return std::any_of(m_hosts->cbegin(), m_hosts->cend(), [&](const QString& entry) {
        const QUrl allowed(QStringLiteral("https://") + entry);
        return allowed.host() == page.host() && (allowed.port() == -1 || allowed.port() == page.port(443));
    });
}

void addSecretsOf(const QUrl& url)
{
    static const QStringList names{QStringLiteral("code"), QStringLiteral("token"),
                                   QStringLiteral("access_token"), QStringLiteral("id_token"),
                                   QStringLiteral("steam_ticket")};
    for (const auto& part : {url.query(QUrl::FullyEncoded), url.fragment(QUrl::FullyEncoded)}) {
        const QUrlQuery query(part);
        for (const auto& name : names)
            logRedactor().addSecret(query.queryItemValue(name, QUrl::FullyDecoded));
    }
}
