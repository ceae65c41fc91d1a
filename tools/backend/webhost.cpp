#include "tools/backend/webhost.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>
#include <QUuid>

#include <memory>

namespace
{
QString guiVersion() { return QStringLiteral("demo"); }

HttpResponse answerJson(const QJsonObject& object)
{
    return {200, "application/json", QJsonDocument(object).toJson(), {}};
}

HttpResponse refuse(int status) { return {status, "text/plain", "refused", {}}; }

/** Who has logged in. */
class Logins
{
public:
    HttpResponse authorize(const QJsonObject& login)
    {
        const auto user = login.value(QLatin1String("user")).toString();
        if (user.isEmpty() || login.value(QLatin1String("password")).toString() == QLatin1String("wrong"))
            return refuse(403);
        return answerJson({{QStringLiteral("code"), add(user)}});
    }
    HttpResponse giveToken(const QJsonObject& request)
    {
        const auto code = request.value(QLatin1String("code")).toString();
        const auto refresh = request.value(QLatin1String("refresh")).toString();
        const auto user = code.isEmpty() ? m_users.value(refresh) : m_users.take(code);
        if (user.isEmpty())
            return refuse(403);
        return answerJson({{QStringLiteral("user"), user},
                           {QStringLiteral("token"), QStringLiteral("token-of-%1-%2").arg(user, newSecret())},
                           {QStringLiteral("refresh"), code.isEmpty() ? refresh : add(user)}});
    }

private:
    static QString newSecret() { return QUuid::createUuid().toString(QUuid::WithoutBraces); }
    QString add(const QString& user)
    {
        auto secret = newSecret();
        m_users.insert(secret, user);
        return secret;
    }

    QHash<QString, QString> m_users; // by code, or by what is kept of a login
};

HttpResponse serveFile(const QString& root, QString path)
{
    if (path.isEmpty() || path.endsWith(QLatin1Char('/')))
        path += QStringLiteral("index.html");
    const auto file = root + path;
    if (path.contains(QLatin1String("..")) || !QFileInfo(file).isFile())
        return refuse(404);
    // Browsers run modules only when they are served as what they are.
    const auto type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension).name();
    return {200, type.toLatin1(), {}, file};
}
} // namespace

HttpsServer::Handler webHost(const QString& pageFolder)
{
    return [pageFolder, logins = std::make_shared<Logins>()](const HttpRequest& request) -> HttpResponse {
        const auto& path = request.path;
        const auto body = QJsonDocument::fromJson(request.body).object();
        if (path == QLatin1String("/version.json"))
            return answerJson({{QStringLiteral("release"), guiVersion()},
                               {QStringLiteral("beta"), guiVersion()},
                               {QStringLiteral("dev"), guiVersion()}});
        if (path == QLatin1String("/login/authorize"))
            return logins->authorize(body);
        if (path == QLatin1String("/login/token"))
            return logins->giveToken(body);
        const auto page = QLatin1Char('/') + guiVersion() + QLatin1Char('/');
        if (path.startsWith(page))
            return serveFile(pageFolder + QStringLiteral("/launcher/"), path.mid(page.size()));
        return serveFile(pageFolder, path);
    };
}
