#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/** What the command line of this run asks for. */
struct CommandLine {
    bool skipVersionCheck = false;
    bool verifyAfterRefresh = false;
    bool exitAfterRefresh = false;
    bool telemetry = false;
    bool skipTestServers = false;
    bool startedFromUpdater = false;
    bool disableWebGui = false;
    QStringList extraTestServers;
    QString clientArgs;
    QString startupServer;

    /**
     * Reads the application's arguments. Prints the help, or a message about an unknown option or a missing
     * value, and ends the process in these cases.
     */
    static CommandLine process(const QCoreApplication& app);
};
