#pragma once

#include <QString>

/** What trying to write to a folder has shown. */
struct DiskDiagnosis {
    bool canWrite = false;
    /** The system's words; empty when writing, reading back and deleting have worked. */
    QString error;
    bool isReadOnly = false;
    /** Bytes; negative where the system does not tell. */
    qint64 freeBytes = -1;
    QString fileSystem;

    /** One or more lines for people. */
    QString describe() const;
};

/** Writes a small file into the folder, reads it back and deletes it. Any thread; may block on a slow disk.
 */
DiskDiagnosis diagnoseDiskWrite(const QString& folder);
