#include "bench/contest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
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
        std::fprintf(stderr, "%s failed: %s\n", qPrintable(program), process.readAllStandardError().constData());
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

double memoryOf(const std::function<void()>& action)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return 0;
    const pid_t child = ::fork();
    if (child == 0) {
        const double before = residentBytes();
        action();
        const double grown = residentBytes() - before;
        const bool sent = ::write(ends[1], &grown, sizeof grown) == sizeof grown;
        ::_exit(sent ? 0 : 1);
    }
    double grown = 0;
    if (::read(ends[0], &grown, sizeof grown) != sizeof grown)
        std::fprintf(stderr, "The child process has not measured its memory\n");
    ::close(ends[0]);
    ::close(ends[1]);
    ::waitpid(child, nullptr, 0);
    return grown;
}
