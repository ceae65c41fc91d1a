#include "web/bridgecommand.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace
{
/** The members that nobody but the page and the service may see. */
constexpr const char* secretMembers[] = {"token", "code"};

/** Where a text is no JSON, what looks like one of those members is secret all the same. */
QStringList secretsOfBrokenText(const QString& json)
{
    QStringList secrets;
    static const QRegularExpression member(QStringLiteral("\"(?:token|code)\"\\s*:\\s*\"([^\"]+)"));
    for (auto match = member.globalMatch(json); match.hasNext();)
        secrets << match.next().captured(1);
    return secrets;
}
} // namespace

BridgeCommand BridgeCommand::parse(const QString& json)
{
    BridgeCommand command;
    command.arguments = QJsonDocument::fromJson(json.toUtf8()).object();
    command.name = command.text("cmd");
    command.loggable = json;
    if (command.arguments.isEmpty()) {
        command.secrets = secretsOfBrokenText(json);
        return command;
    }
    auto withoutSecrets = command.arguments;
    bool isVerbatim = true;
    for (const auto* name : secretMembers) {
        const auto secret = command.text(name);
        if (secret.isEmpty())
            continue;
        command.secrets << secret;
        isVerbatim = isVerbatim && json.contains(secret);
        withoutSecrets.insert(QLatin1String(name), QStringLiteral("[redacted]"));
    }
    // Written with escapes a secret would not be recognised.
    if (!isVerbatim)
        command.loggable = QString::fromUtf8(QJsonDocument(withoutSecrets).toJson(QJsonDocument::Compact));
    return command;
}
