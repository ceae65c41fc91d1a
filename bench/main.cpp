#include "bench/contest.h"

#include "tests/testkit/temporaryhome.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QThreadPool>

#include <cstdio>

static QString toTable(const QVector<ContestResult>& results)
{
    QString table = QStringLiteral("| work | against | ratio | goal |\n|---|---|---|---|\n");
    for (const auto& result : results) {
        table += QStringLiteral("| %1 | %2 | %3 | %4 |\n")
                     .arg(result.work, result.against, QString::number(result.ratio, 'f', 2), result.goal);
    }
    return table;
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    const TemporaryHome home;
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption(
        {QStringLiteral("write"), QStringLiteral("Write the table to a file"), QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("only"),
         QStringLiteral("Run one group: index, scan, staging, start, transfer, verify, download, limit"),
         QStringLiteral("group")});
    parser.addOption({QStringLiteral("memory"),
                      QStringLiteral("Measure the memory of parsing, for another run"),
                      QStringLiteral("side:count")});
    parser.process(app);
    if (parser.isSet(QStringLiteral("memory"))) {
        std::printf("%.0f\n", parsingMemory(parser.value(QStringLiteral("memory"))));
        return 0;
    }
    if (QThreadPool::globalInstance()->maxThreadCount() < 2)
        QThreadPool::globalInstance()->setMaxThreadCount(2);

    const QVector<QPair<QString, QVector<ContestResult> (*)()>> groups{
        {QStringLiteral("index"), benchIndex},       {QStringLiteral("scan"), benchScan},
        {QStringLiteral("staging"), benchStaging},   {QStringLiteral("start"), benchStart},
        {QStringLiteral("transfer"), benchTransfer}, {QStringLiteral("verify"), benchVerify},
        {QStringLiteral("download"), benchDownload}, {QStringLiteral("limit"), benchLimit},
    };
    QVector<ContestResult> results;
    for (const auto& group : groups) {
        if (parser.isSet(QStringLiteral("only")) && parser.value(QStringLiteral("only")) != group.first)
            continue;
        std::fprintf(stderr, "Measuring: %s\n", qPrintable(group.first));
        results += group.second();
    }
    const auto table = toTable(results);
    std::printf("%s", qPrintable(table));
    if (!parser.isSet(QStringLiteral("write")))
        return 0;
    QFile file(parser.value(QStringLiteral("write")));
    const auto text =
        QStringLiteral(
            "# Benchmarks\n\nA ratio says how many times as much the other one needs (time, memory or "
            "work) as ours does: above 1, ours is better. Machines are noisy; only ratios of runs side by "
            "side "
            "mean something.\n\n") +
        table;
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0 ? 0 : 1;
}
