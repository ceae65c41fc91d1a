#include "tools/demo/demogame.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes a generated game: its client and its resources."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Where to"));
    parser.addOptions({
        {QStringLiteral("build"), QStringLiteral("1 or 2"), QStringLiteral("number"), QStringLiteral("1")},
        {QStringLiteral("resources"), QStringLiteral("Number of resource files"), QStringLiteral("number"),
         QStringLiteral("2200")},
    });
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(1);

    DemoGame game;
    game.build = parser.value(QStringLiteral("build")).toInt();
    game.resources = parser.value(QStringLiteral("resources")).toInt();
    game.client = QCoreApplication::applicationDirPath() + QStringLiteral("/exefile.exe");
    QString error;
    if (generateDemoGame(game, parser.positionalArguments().constFirst(), &error))
        return 0;
    std::fprintf(stderr, "velkor-demo-game: %s\n", qPrintable(error));
    return 1;
}
