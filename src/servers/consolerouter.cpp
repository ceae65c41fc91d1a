#include "servers/consolerouter.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QProcess>

Q_LOGGING_CATEGORY(wine, "wine")

static void logWineLine(const QString& line)
{
    if (line.startsWith(QLatin1String("fixme:")))
        qCDebug(wine).noquote() << line;
    else if (line.startsWith(QLatin1String("info:")))
        qCInfo(wine).noquote() << line;
    else if (line.startsWith(QLatin1String("warn:")))
        qCWarning(wine).noquote() << line;
    else if (line.startsWith(QLatin1String("err:")))
        qCCritical(wine).noquote() << line;
    else
        qDebug().noquote() << line;
}

static constexpr auto crashProperty = "crashAnnounced";

bool hasAnnouncedCrash(const QProcess& process) { return process.property(crashProperty).toBool(); }

static QStringList toLines(const QByteArray& output)
{
    // Windows programs end their lines with a carriage return as well.
    return QString::fromLocal8Bit(output)
        .remove(QLatin1Char('\r'))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void routeConsoleOutputToLog(QProcess* process)
{
    QObject::connect(process, &QProcess::readyReadStandardOutput, process, [process] {
        const auto lines = toLines(process->readAllStandardOutput());
        for (const auto& line : lines)
            qDebug().noquote() << line;
    });
    QObject::connect(process, &QProcess::readyReadStandardError, process, [process] {
        const auto lines = toLines(process->readAllStandardError());
        for (const auto& line : lines) {
            logWineLine(line);
            if (line.startsWith(QLatin1String("wine: Unhandled ")))
                process->setProperty(crashProperty, true);
        }
    });
}
