#include "maintenance/diskdiagnosis.h"

#include "cache/freespace.h"
#include "logging/formatmemory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryFile>

namespace
{
constexpr int testBytes = 65536;

QString diskText(const char* text) { return QCoreApplication::translate("DiskDiagnosis", text); }

/** The nearest folder above that exists. */
QString existingPart(QString folder)
{
    while (!folder.isEmpty() && folder != QLatin1String("/") && !QFileInfo::exists(folder))
        folder = QFileInfo(folder).path();
    return folder;
}

QString tryToWrite(const QString& folder)
{
    if (!QDir().mkpath(folder))
        return diskText("The folder cannot be made");
    QTemporaryFile file(folder + QStringLiteral("/write-test-XXXXXX"));
    const QByteArray content(testBytes, 'v');
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return file.errorString();
    if (!file.seek(0) || file.readAll() != content)
        return diskText("What is read is not what was written");
    return file.remove() ? QString() : file.errorString();
}
} // namespace

DiskDiagnosis diagnoseDiskWrite(const QString& folder)
{
    const auto path = QDir::cleanPath(folder);
    const QStorageInfo volume(existingPart(path));
    DiskDiagnosis diagnosis;
    diagnosis.isReadOnly = volume.isReadOnly();
    diagnosis.fileSystem = QString::fromLatin1(volume.fileSystemType());
    diagnosis.freeBytes = freeSpace(path).value_or(-1);
    diagnosis.error = tryToWrite(path);
    diagnosis.canWrite = diagnosis.error.isEmpty();
    return diagnosis;
}

QString DiskDiagnosis::describe() const
{
    QStringList lines;
    lines << (canWrite ? diskText("Writing to the cache works")
                       : diskText("Writing to the cache fails: %1").arg(error));
    if (isReadOnly)
        lines << diskText("The disk can only be read");
    if (freeBytes >= 0)
        lines << diskText("%1 are free (%2)").arg(formatMemory(freeBytes), fileSystem);
    return lines.join(QLatin1Char('\n'));
}
