#pragma once

class QProcess;

/**
 * Writes what a client prints into the log: standard output as debug messages, standard error by the prefix
 * that Wine puts before a line. Lasts as long as the process object.
 */
void routeConsoleOutputToLog(QProcess* process);

/**
 * Whether Wine has said of the process, whose output is routed, that it crashed. Wine itself ends in good
 * order then, with an exit code that a program might have chosen as well.
 */
bool hasAnnouncedCrash(const QProcess& process);
