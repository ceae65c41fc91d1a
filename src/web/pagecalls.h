#pragma once

#include <QStringList>

/** What the launcher calls in the page: global functions that the page defines. */
enum class PageCall {
    SetVersion,        // version
    AddServers,        // array of ServerItem
    ServerItem,        // key, display name: one element of that array
    SetPlayable,       // server, "true" or "false"
    UpdateProgress,    // server, fraction, text
    SetClientVersion,  // server, build
    ShowError,         // title, message, code
    SetSettings,       // object as JSON
    SetDeviceId,       // id
    ProfileList,       // server, array of ProfileItem
    ProfileItem,       // name: one element of that array
    SettingOk,         // server, profile
    SettingError,      // server, profile, code
    ProcessRunning,    // server, user name
    ProcessEnded,      // server, user name, "true" after a crash
    WebSocketOpened,   // port, 1 or 0
    WebSocketMessage,  // text
    SsoCode,           // code
    SsoCodeWithState,  // code, state
    SsoCodeToRemember, // code, state, "true" or "false"
    SetHeadingAtLoad,  // text; of the error page
    SetMessageAtLoad,  // text
    SetHeading,        // text; once the error page is up
    SetMessage,        // text
};

/**
 * The script for a call. A text that goes between quotes is made fit for them: the quote becomes its
 * typographic sibling, a line break a blank, a backslash a slash; so it arrives whole and cannot end its
 * literal. A bare text keeps a sign, letters, digits, "_" and ".", which make a name or a number but do
 * nothing. Arrays and objects go in as they are.
 */
QString formatPageCall(PageCall call, const QStringList& arguments);

/** An array literal of elements, each of the form of item. */
QString formatArray(PageCall item, const QVector<QStringList>& elements);

/** A number in the shortest general form. */
QString formatNumber(double number);

/** For updateProgress() calls the part that names the server; empty for all others. */
QString progressTarget(const QString& script);
