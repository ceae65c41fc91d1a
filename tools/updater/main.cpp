// Replaces an installed launcher by a newer one that is in its cache, and starts it.

#include "cache/installfolder.h"
#include "index/indexparser.h"
#include "tools/updater/installer.h"
#include "tools/updater/waitforprocess.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
constexpr auto usage =
    "Usage: updater RESOURCESFOLDER LAUNCHERINDEX INSTALLFOLDER\n"
    "       updater --finish INSTALLFOLDER\n\n"
    "Waits for the launcher that has started it to end, replaces it, and starts it again.\n"
    "With --finish it ends what an interrupted run has left.\n";
constexpr std::chrono::seconds longestWait(60);

/** In the cache folder, where the launcher starts the updater; none where it only finishes an earlier run,
 * for then it stands wherever the player has started the launcher. */
QString& logFile()
{
    static QString path;
    return path;
}

void log(const QString& text)
{
    const auto line = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) + QLatin1Char('\t') + text;
    std::fprintf(stderr, "%s\n", qPrintable(line));
    QFile file(logFile());
    if (!logFile().isEmpty() && file.open(QIODevice::Append))
        file.write(line.toUtf8() + '\n');
}

void waitForLauncher()
{
    bool known = false;
    const int process = qEnvironmentVariableIntValue(InstallFolder::launcherProcessVariable, &known);
    qunsetenv(InstallFolder::launcherProcessVariable);
    if (known && process > 1 && !waitForProcess(process, longestWait))
        log(QStringLiteral("The launcher, process %1, has not ended; it is replaced all the same")
                .arg(process));
}

/** A launcher that is the old one still would only find the same update again. */
bool startLauncher(const QString& folder, Installer::Outcome outcome)
{
    const bool isNew = outcome == Installer::Outcome::Installed;
    if (outcome == Installer::Outcome::Stuck)
        qputenv(InstallFolder::stuckVariable, "1");
    const auto program = InstallFolder::launcher(folder);
    const QStringList arguments{isNew ? QStringLiteral("--updating")
                                      : QStringLiteral("--skip-version-check")};
    const bool started = QProcess::startDetached(program, arguments, folder);
    log(QStringLiteral("%1 %2 %3")
            .arg(started ? QStringLiteral("Started") : QStringLiteral("Could not start"), program,
                 arguments.first()));
    return started;
}

int conclude(const QString& folder, Installer::Outcome outcome, const QString& error)
{
    if (!error.isEmpty())
        log(error);
    if (outcome == Installer::Outcome::Busy) // the other one starts the launcher
        return 1;
    log(outcome == Installer::Outcome::Installed ? QStringLiteral("The new launcher is installed")
                                                 : QStringLiteral("The launcher was not replaced"));
    return startLauncher(folder, outcome) && outcome == Installer::Outcome::Installed ? 0 : 1;
}

int finish(const QString& folder)
{
    QString error;
    const auto outcome = Installer(folder).finish(&error);
    return conclude(folder, outcome, error);
}

int install(const QString& resources, const QString& indexFile, const QString& folder)
{
    logFile() = QStringLiteral("updater.log");
    QFile::remove(logFile());
    waitForLauncher();
    QFile file(indexFile);
    const auto index = file.open(QIODevice::ReadOnly) ? parseIndex(file.readAll(), indexFile) : IndexPtr();
    QString error;
    const auto outcome = Installer(folder).install(index, resources, &error);
    return conclude(folder, outcome, error);
}
} // namespace

int main(int argc, char** argv)
{
    // Sockets of the old launcher would be held open for the new one.
    ::syscall(SYS_close_range, 3U, ~0U, 0U);
    const QCoreApplication app(argc, argv);
    const auto arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() == 2 && arguments.first() == QLatin1String("--finish"))
        return finish(QFileInfo(arguments.at(1)).absoluteFilePath());
    if (arguments.size() == 3)
        return install(arguments.at(0), arguments.at(1), QFileInfo(arguments.at(2)).absoluteFilePath());
    const bool wantsHelp = arguments == QStringList{QStringLiteral("--help")};
    std::fputs(usage, wantsHelp ? stdout : stderr);
    return wantsHelp ? 0 : 2;
}
