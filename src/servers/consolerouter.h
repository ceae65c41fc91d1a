#pragma once

class QProcess;

/**
 * Writes what a client prints into the log: standard output as debug messages, standard error by the prefix that Wine
 * puts before a line. Lasts as long as the process object.
 */
void routeConsoleOutputToLog(QProcess* process);
