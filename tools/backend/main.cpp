#include "tools/backend/localbackend.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>

#include <cstdio>

static void printReport(const QJsonObject& report)
{
    const auto exception = report.value(QLatin1String("exception")).toArray().first().toObject();
    std::printf("report: %s: %s\n", qPrintable(exception.value(QLatin1String("type")).toString()),
                qPrintable(exception.value(QLatin1String("value")).toString()));
    std::fflush(stdout);
}

static void printEvent(const ReceivedEvent& event)
{
    std::printf("event: %s { %s }\n", qPrintable(event.type.mid(event.type.indexOf('.') + 1)),
                qPrintable(event.text));
    std::fflush(stdout);
}

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Serves a published tree on this machine, and prints the "
                                                    "telemetry and the exception reports that arrive."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("tree"), QStringLiteral("The published tree"), QStringLiteral("folder")},
        {QStringLiteral("state"), QStringLiteral("Where certificates and the deployment file go"),
         QStringLiteral("folder")},
        {QStringLiteral("page"), QStringLiteral("The web interface and its login page"),
         QStringLiteral("folder")},
    });
    parser.process(app);
    if (!parser.isSet(QStringLiteral("tree")) || !parser.isSet(QStringLiteral("state"))) {
        std::fprintf(stderr, "velkor-backend: --tree and --state are needed\n");
        return 1;
    }

    LocalBackend backend(parser.value(QStringLiteral("tree")), parser.value(QStringLiteral("state")),
                         parser.value(QStringLiteral("page")));
    QObject::connect(&backend.reports(), &HttpsServer::requestAnswered, &app,
                     [&backend] { printReport(backend.exceptionReports().constLast()); });
    backend.gateway().setListener(printEvent);
    QString error;
    if (!backend.start(&error)) {
        std::fprintf(stderr, "velkor-backend: %s\n", qPrintable(error));
        return 1;
    }
    std::printf("content on https://127.0.0.1:%d, page on https://127.0.0.1:%d, deployment file %s\n",
                backend.content().port(), backend.web().port(), qPrintable(backend.deploymentFile()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
