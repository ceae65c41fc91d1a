#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/** What a player adds to the start of a client. */
struct LaunchOptions {
    /** A program and its arguments, to be put in front of the Wine program; empty for none. */
    QStringList wrapper;
    QVector<QPair<QString, QString>> variables;
};

/**
 * Reads the command that is put in front of Wine: words divided by blanks, where double quotes hold words
 * together. A name without "/" is looked up in PATH, "~/" is the home folder. Returns why the command cannot
 * be used, for the player; empty when it can.
 */
QString readWrapper(const QString& command, LaunchOptions* options);

/** Reads lines of the form NAME=value; empty ones do not count. Returns what is wrong with the first bad one.
 */
QString readVariables(const QStringList& lines, LaunchOptions* options);
