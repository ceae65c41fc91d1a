#pragma once

#include <QJsonObject>
#include <QStringList>

/** A command of the page, as it was read from the page's console. */
struct BridgeCommand {
    /** "cmd"; empty where there is none. */
    QString name;
    /** All members; empty when the text was no JSON object. */
    QJsonObject arguments;
    /** Tokens and codes. They have to be known to the log before it gets the text. */
    QStringList secrets;
    /** The text as the log may have it. */
    QString loggable;

    /** A string member; empty where there is none. */
    QString text(const char* member) const { return arguments.value(QLatin1String(member)).toString(); }

    static BridgeCommand parse(const QString& json);
};
