#pragma once

#include <QString>
#include <QStringList>

class Settings;

/** What a launch adds to the settings. Empty texts leave their argument out. */
struct ClientLaunch {
    /** The name or host that the catalogue gives for the server. */
    QString server;
    QString token;
    QString settingsProfile;
    bool insideSteam = false;
};

/** The arguments of a game client, in the order that it expects. */
QStringList buildClientArguments(const ClientLaunch& launch, const Settings& settings);

/** The Wine program that runs clients: the user's own, or that of the downloaded runtime. */
QString getWineProgram(const Settings& settings);
