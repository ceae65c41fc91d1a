#pragma once

#include <QDateTime>
#include <QString>

/** One log record, as it is kept in the history. Secrets in it have been redacted. */
struct LogMessage {
    /** Local time at which the record was logged. */
    QDateTime time;
    /** 0 debug, 1 warning, 2 critical, 3 fatal, 4 info: the toolkit's numbers. */
    int type = 0;
    /** "default" for records logged without a category; empty when the category is missing. */
    QString category;
    QString message;
};

/** The type's name as it stands in files and streams: "debug", "warning", "error", "fatal", "info", or "". */
QString loggingGetTypeStringFromType(int type);
