#pragma once

#include <QByteArray>
#include <QLibrary>

/**
 * The Steam client, through its own library, which is looked for when it is first asked for: beside the
 * launcher, then where the system looks. Without it, or outside Steam, there is no user and no ticket. Main
 * thread.
 */
class Steam
{
public:
    /** The one object of the process; made on first use, and ended with it. */
    static Steam* instance();
    ~Steam();
    Q_DISABLE_COPY_MOVE(Steam)

    /** Whether the launcher runs inside Steam. */
    bool isRunning();
    /** A ticket of the user's session, which is a secret; empty without one. */
    QByteArray sessionTicket();

private:
    Steam();
    bool initialize();
    void* user();

    QLibrary m_library;
    bool m_initialized = false;
};
