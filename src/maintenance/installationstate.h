#pragma once

#include <QString>

// Texts in English, for whoever helps a player.

/** The launcher, the system and what the launcher stands on. */
QString describeVersions();
/** The settings, without the values of environment variables that look like secrets. */
QString describeSettings();
/** Builds and state of each server, of Wine and of the cache. */
QString describeServers();
