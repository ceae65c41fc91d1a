#pragma once

#include <QStringList>
#include <QUrl>

#include <optional>

/** Where the launcher's own page for errors stands. */
QUrl errorPageUrl();

/** Who may send commands to the launcher: pages on HTTPS, of the listed hosts where there is a list, and the
 * launcher's error page. */
class CommandPolicy
{
public:
    /** hosts: each "host", which stands for all of its ports, or "host:port"; none: every host. */
    explicit CommandPolicy(const std::optional<QStringList>& hosts) : m_hosts(hosts) {}

    bool mayCommand(const QUrl& page) const;

private:
    std::optional<QStringList> m_hosts;
};

/** Makes what a login puts into an address (code, token) secrets of the log. */
void addSecretsOf(const QUrl& url);
