#pragma once

#include "logging/loggerbase.h"

#include <QFile>

/** Writes the log file of this run and keeps the logs of the last four. Main thread. */
class FileLogger : public LoggerBase
{
    Q_OBJECT

public:
    /** The one object of the process; it is never destroyed. */
    static FileLogger* instance();

    /**
     * Opens a new file "launcherlog-<time>.txt" in the folder, readable by its owner only, and deletes the
     * oldest ones. Returns false when the folder is empty or the file cannot be opened: this run then has no
     * log file.
     */
    bool initialize(const QString& folder);
    /** The file of this run; empty when there is none. */
    QString path() const { return m_file.isOpen() ? m_file.fileName() : QString(); }

    void outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                       const QString& message, int repeatCount) override;

private:
    QFile m_file;
};
