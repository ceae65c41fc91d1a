#pragma once

#include <QString>
#include <QStringList>

/** How an operation on a profile has ended. */
enum class ClientSettingsProfileResult {
    Success = 0,
    InvalidName = 1,
    AlreadyExists = 2,
    DoesNotExist = 3,
    ClientsRunning = 4,
    FileOperationFailed = 5,
};

/** For people, with a capital letter and without a full stop; empty for success. */
QString describeProfileResult(ClientSettingsProfileResult result);

/**
 * The settings profiles of the game's clients: for each server folders in the Wine prefix, of which a client
 * is told the name. Names consist of letters, digits, blanks, "-" and "_" and are compared without case.
 * "Default" always exists; it can be neither renamed nor deleted, nor made anew. Changes announce themselves
 * with Settings::clientSettingsProfilesChanged(). All on the main thread.
 */

/** "Default" first, the others by name. */
QStringList getSettingsProfiles(const QString& server);

/** Where the profile's files are, whether it exists or not. */
QString settingsProfileFolder(const QString& server, const QString& name);

/** Makes a profile: a copy of another one, also of another server; an empty one where fromName is empty. */
ClientSettingsProfileResult createSettingsProfile(const QString& server, const QString& name,
                                                  const QString& fromServer = QString(),
                                                  const QString& fromName = QString());
ClientSettingsProfileResult renameSettingsProfile(const QString& server, const QString& name,
                                                  const QString& newName);
ClientSettingsProfileResult deleteSettingsProfile(const QString& server, const QString& name);
