#pragma once

#include "logging/logrecord.h"

#include <QFile>
#include <QVector>

/** Reads a log file of the launcher while it is being written. Lines that begin with no time belong to the
 * record before them. */
class LogTail
{
public:
    explicit LogTail(const QString& path);

    /** Why the file cannot be read, for people; empty when it can. */
    QString problem() const { return m_file.isOpen() ? QString() : m_file.errorString(); }
    /** What has come since the last call; of a file that is long already, the end. A line without its end has
     * to wait. */
    QVector<LogRecord> read();

private:
    QFile m_file;
    QByteArray m_rest;
};
