#pragma once

#include "tools/backend/httpsserver.h"

/**
 * The web host of the backend: announces the web interface's version, serves its page ("launcher" below the
 * folder, under that version) and the login page ("login"), and answers logins: any name with any password
 * but "wrong" gets a code, a code gets a token once, and so does what a remembered login has kept.
 */
HttpsServer::Handler webHost(const QString& pageFolder);
