#include "bench/contest.h"
#include "tests/testkit/launcherprocess.h"
#include "tools/backend/localbackend.h"

#include <QTest>

#include <cstdio>

// Not a contest: what a start costs, printed as parts of the goal.
QVector<ContestResult> benchStart()
{
    SampleTree tree;
    const QTemporaryDir state;
    LocalBackend backend(tree.path(), state.filePath(QStringLiteral("state")), {});
    QString error;
    if (!backend.start(&error))
        qFatal("%s", qPrintable(error));
    double resident = 0;
    const auto startOnce = [&] {
        LauncherProcess launcher(backend);
        launcher.setEnvironment(QStringLiteral("QT_LOGGING_RULES"), QString());
        const double seconds = timed([&] {
            launcher.start({QStringLiteral("-d"), QStringLiteral("-k")});
            while (!launcher.log().contains(QLatin1String("Entering app.exec")))
                QTest::qSleep(2);
        });
        launcher.waitForLog(QStringLiteral("Scheduling refresh"));
        resident = readSample(QStringLiteral("/proc/%1/statm").arg(launcher.process().processId()))
                       .split(' ')
                       .value(1)
                       .toDouble() *
                   4096;
        return seconds;
    };
    const auto startTime = contest(startOnce, [] { return 0.3; });
    const auto memory = contest([&] { return resident; }, [] { return 80.0 * 1024 * 1024; });
    return {{QStringLiteral("start until the window stands"), QStringLiteral("300 ms"), startTime,
             QStringLiteral("1")},
            {QStringLiteral("resident memory with the server list"), QStringLiteral("80 MB"), memory,
             QStringLiteral("1")}};
}
