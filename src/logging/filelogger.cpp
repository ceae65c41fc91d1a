#include "logging/filelogger.h"

#include <QDir>

static constexpr int maxLogFiles = 5;

FileLogger* FileLogger::instance()
{
    static auto* logger = new FileLogger;
    return logger;
}

static void removeOldLogs(const QDir& folder)
{
    auto names =
        folder.entryList({QStringLiteral("launcherlog*.txt")}, QDir::Files, QDir::Time | QDir::Reversed);
    while (names.size() >= maxLogFiles)
        QFile::remove(folder.filePath(names.takeFirst()));
}

bool FileLogger::initialize(const QString& folder)
{
    if (folder.isEmpty())
        return false;
    QDir().mkpath(folder);
    removeOldLogs(QDir(folder));

    const auto now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy.MM.dd-HH.mm.ss.zzz"));
    m_file.setFileName(QStringLiteral("%1/launcherlog-%2.txt").arg(folder, now));
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return false;
    m_file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return true;
}

void FileLogger::outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                               const QString& message, int repeatCount)
{
    // The time is local. Tools that read these files expect the letter all the same.
    auto line = time.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")) + QStringLiteral("Z\t") + category +
                QLatin1Char('\t') + typeName + QLatin1Char('\t') + message;
    if (repeatCount > 0)
        line += QStringLiteral(" (Repeated %1 times)").arg(repeatCount);
    m_file.write(line.toUtf8() + '\n');
    m_file.flush();
}
