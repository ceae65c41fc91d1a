#include "web/pagecalls.h"

#include <QVector>

#include <array>

namespace
{
struct CallRow {
    PageCall call;
    const char* text;
    /** Which placeholder takes an array or an object, which were made here and are code; 0 for none. */
    int codePlaceholder;
};

const std::array<CallRow, 24>& callTable()
{
    static constexpr std::array<CallRow, 24> table = {{
        {PageCall::SetVersion, "setVersion('%1')", 0},
        {PageCall::AddServers, "addServers(%1)", 1},
        {PageCall::ServerItem, "{'name': '%1', 'displayName': '%2'}", 0},
        {PageCall::SetPlayable, "setPlayable('%1', %2)", 0},
        {PageCall::UpdateProgress, "updateProgress('%1', %2, '%3')", 0},
        {PageCall::SetClientVersion, "setClientVersion('%1', %2)", 0},
        {PageCall::ShowError, "showError('%1', '%2', %3)", 0},
        {PageCall::SetSettings, "setSettings(%1)", 1},
        {PageCall::SetDeviceId, "setDeviceId('%1')", 0},
        {PageCall::ProfileList, "profilelist('%1', %2)", 2},
        {PageCall::ProfileItem, "'%1'", 0},
        {PageCall::SettingOk, "settingok(%1, %2)", 0},
        {PageCall::SettingError, "settingerror(%1, %2, %3)", 0},
        {PageCall::ProcessRunning, "processstatus({server:'%1', username:'%2', isRunning: true})", 0},
        {PageCall::ProcessEnded, "processstatus({server:'%1', username:'%2', isRunning: false, crashed: %3})",
         0},
        {PageCall::WebSocketOpened, "websocketopened(%1, %2)", 0},
        {PageCall::WebSocketMessage, "websocketmessage('%1')", 0},
        {PageCall::SsoCode, "ssoCode('%1')", 0},
        {PageCall::SsoCodeWithState, "ssoCode('%1', '%2')", 0},
        {PageCall::SsoCodeToRemember, "ssoCode('%1', '%2', %3)", 0},
        {PageCall::SetHeadingAtLoad, "setHeading('%1')", 0},
        {PageCall::SetMessageAtLoad, "setMessage('%1')", 0},
        {PageCall::SetHeading, "setHeading(\"%1\")", 0},
        {PageCall::SetMessage, "setMessage(\"%1\")", 0},
    }};
    return table;
}

bool isLineBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

QString fitBetween(QChar quote, QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (auto& c : text) {
        if (c == quote)
            c = QChar(quote == QLatin1Char('\'') ? 0x2019 : 0x201D);
        else if (c == QLatin1Char('\\'))
            c = QLatin1Char('/');
        else if (isLineBreak(c))
            c = QLatin1Char(' ');
    }
    return text;
}

QString fitBare(const QString& text)
{
    QString fit;
    for (const auto c : text) {
        if (c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('.') ||
            (fit.isEmpty() && c == QLatin1Char('-')))
            fit += c;
    }
    return fit;
}

QString fitFor(const QString& text, const CallRow& row, int placeholder)
{
    if (placeholder == row.codePlaceholder)
        return text;
    const auto templateText = QString::fromLatin1(row.text);
    const int position = templateText.indexOf(QStringLiteral("%%1").arg(placeholder));
    const auto before = position > 0 ? templateText.at(position - 1) : QChar();
    return before == QLatin1Char('\'') || before == QLatin1Char('"') ? fitBetween(before, text)
                                                                     : fitBare(text);
}
} // namespace

QString formatPageCall(PageCall call, const QStringList& arguments)
{
    const auto& row = callTable()[static_cast<size_t>(call)];
    Q_ASSERT(row.call == call);
    QStringList fit;
    for (int i = 0; i < arguments.size(); ++i)
        fit << fitFor(arguments.at(i), row, i + 1);
    const auto text = QString::fromLatin1(row.text);
    // All at once: an argument may contain what looks like a placeholder.
    switch (fit.size()) {
    case 1:
        return text.arg(fit.at(0));
    case 2:
        return text.arg(fit.at(0), fit.at(1));
    default:
        return text.arg(fit.at(0), fit.at(1), fit.at(2));
    }
}

QString formatArray(PageCall item, const QVector<QStringList>& elements)
{
    QStringList items;
    for (const auto& element : elements)
        items << formatPageCall(item, element);
    return QLatin1Char('[') + items.join(QLatin1String(", ")) + QLatin1Char(']');
}

QString formatNumber(double number) { return QString::number(number, 'g', 6); }

QString progressTarget(const QString& script)
{
    static const auto prefix = QStringLiteral("updateProgress('");
    return script.startsWith(prefix) ? script.section(QLatin1Char('\''), 1, 1) : QString();
}
