#pragma once

#include <QString>

/** How large a generated game is. */
struct DemoGame {
    /** Resource files; their sizes vary around averageBytes. */
    int resources = 2200;
    int averageBytes = 50000;
    /** Two builds share all resources but every twentieth. */
    int build = 1;
    /** The Windows program that becomes the client. */
    QString client;
};

/**
 * Writes a game into folder + "/client" and folder + "/resources". The same game always has the same content.
 * Returns false and explains in error when a file cannot be written.
 */
bool generateDemoGame(const DemoGame& game, const QString& folder, QString* error);
