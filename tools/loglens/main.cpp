#include "logging/loglens.h"
#include "shell/theme.h"
#include "tools/loglens/logwindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QNetworkProxy>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows the live log of the launchers on this machine."));
    parser.addHelpOption();
    parser.process(app);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);

    LogReceiver receiver;
    if (!receiver.listen(LogLens::defaultPort)) {
        std::fprintf(stderr, "velkor-loglens: port %d: %s\n", LogLens::defaultPort,
                     qPrintable(receiver.errorString()));
        return 1;
    }
    const Theme theme(qApp);
    LogWindow window(&receiver);
    window.show();
    return QApplication::exec();
}
