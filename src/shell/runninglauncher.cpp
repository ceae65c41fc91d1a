#include "shell/runninglauncher.h"

#include "settings/settings.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QLocalSocket>
#include <QStandardPaths>

namespace
{
constexpr int patienceMs = 1000;
constexpr auto request = "show\n";
} // namespace

// A socket in the user's own folder for such things. Other settings are another launcher.
QString RunningLauncher::name()
{
    const auto settings = Settings::instance()->store().fileName().toUtf8();
    return QStringLiteral("%1/velkorlauncher-%2")
        .arg(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
             QString::fromLatin1(QCryptographicHash::hash(settings, QCryptographicHash::Md5).toHex()));
}

RunningLauncher::RunningLauncher(QObject* parent) : QObject(parent)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        auto* socket = m_server.nextPendingConnection();
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->readLine(16) == request)
                emit showRequested();
            socket->write("shown\n");
            socket->disconnectFromServer();
        });
    });
    // Listening takes the name from whoever has it, also from one that was killed.
    QLocalSocket other;
    other.connectToServer(name());
    if (other.waitForConnected(patienceMs))
        qDebug() << "Another launcher of these settings is running";
    else if (!m_server.listen(name()))
        qDebug().noquote() << "A second start cannot show this launcher:" << m_server.errorString();
}

bool RunningLauncher::show()
{
    QLocalSocket socket;
    socket.connectToServer(name());
    if (!socket.waitForConnected(patienceMs))
        return false;
    socket.write(request);
    return socket.waitForReadyRead(patienceMs);
}
