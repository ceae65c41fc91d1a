#include "bench/contest.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

static constexpr int rounds = 5;

static double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double contest(const Measure& ours, const Measure& theirs)
{
    QVector<double> oursTook;
    QVector<double> theirsTook;
    for (int round = 0; round < rounds; ++round) {
        oursTook << ours();
        theirsTook << theirs();
    }
    return median(theirsTook) / median(oursTook);
}

double timed(const std::function<void()>& action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double timedProgram(const QString& program, const QStringList& arguments, const QString& folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setStandardOutputFile(QProcess::nullDevice());
    return timed([&] {
        process.start(program, arguments);
        if (process.waitForFinished(600000) && process.exitCode() == 0)
            return;
        std::fprintf(stderr, "%s failed: %s\n", qPrintable(program),
                     process.readAllStandardError().constData());
        std::exit(1);
    });
}

double residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

double memoryOf(const QString& what)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), what});
    process.waitForFinished(120000);
    return process.readAllStandardOutput().trimmed().toDouble();
}
