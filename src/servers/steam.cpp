#include "servers/steam.h"

#include "logging/messagehandler.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

namespace
{
constexpr int maxTicketBytes = 1024;

// The flat C interface
using Init = bool (*)();
using Shutdown = void (*)();
using GetUser = void* (*)();
/** Newer libraries take the identity of the server that the ticket is for, where null stands for any; older
 * ones do not look at it. */
using GetTicket = uint32_t (*)(void* user, void* buffer, int size, uint32_t* length, const void* identity);

/** The newest first; which one there is depends on the age of the library. */
constexpr const char* userFunctions[] = {"SteamAPI_SteamUser_v023", "SteamAPI_SteamUser_v022",
                                         "SteamAPI_SteamUser_v021", "SteamAPI_SteamUser_v020", "SteamUser"};
} // namespace

Steam* Steam::instance()
{
    static Steam steam;
    return &steam;
}

Steam::Steam()
{
    const auto beside = QCoreApplication::applicationDirPath() + QStringLiteral("/libsteam_api.so");
    m_library.setFileName(QFileInfo::exists(beside) ? beside : QStringLiteral("steam_api"));
}

Steam::~Steam()
{
    if (!m_initialized)
        return;
    if (const auto shutdown = reinterpret_cast<Shutdown>(m_library.resolve("SteamAPI_Shutdown")))
        shutdown();
}

bool Steam::initialize()
{
    if (m_initialized)
        return true;
    const auto init = reinterpret_cast<Init>(m_library.resolve("SteamAPI_Init"));
    m_initialized = init && init();
    return m_initialized;
}

void* Steam::user()
{
    if (!initialize())
        return nullptr;
    for (const auto* name : userFunctions) {
        if (const auto getUser = reinterpret_cast<GetUser>(m_library.resolve(name)))
            return getUser();
    }
    qWarning() << "The Steam library has no user function that is known";
    return nullptr;
}

bool Steam::isRunning() { return user() != nullptr; }

QByteArray Steam::sessionTicket()
{
    auto* self = user();
    const auto getTicket =
        reinterpret_cast<GetTicket>(m_library.resolve("SteamAPI_ISteamUser_GetAuthSessionTicket"));
    if (!self || !getTicket)
        return {};
    QByteArray buffer(maxTicketBytes, '\0');
    uint32_t length = 0;
    if (getTicket(self, buffer.data(), buffer.size(), &length, nullptr) == 0 || length > maxTicketBytes)
        return {};
    buffer.truncate(static_cast<int>(length));
    logRedactor().addSecret(QString::fromLatin1(buffer.toHex()));
    return buffer;
}
