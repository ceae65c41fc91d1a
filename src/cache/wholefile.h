#pragma once

#include <QByteArray>
#include <QString>

/**
 * Puts content under a name in one step: it is written to a temporary name in the same folder and renamed, so
 * that nobody ever sees a part of it. Replaces a file of that name. Returns false and explains in error when
 * that fails; the temporary file is gone then. Does not wait for the disk. Any thread.
 */
bool writeWholeFile(const QString& path, const QByteArray& content, QString* error);
