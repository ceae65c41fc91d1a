// The part of ServerManager that starts clients and follows them.

#include "servers/servermanager.h"

#include "logging/loglens.h"
#include "logging/messagehandler.h"
#include "servers/clientcommand.h"
#include "servers/consolerouter.h"
#include "servers/copier.h"
#include "servers/launchoptions.h"
#include "servers/steam.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "telemetry/eventlogger.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace
{
QProcessEnvironment environmentWith(const LaunchOptions& options)
{
    auto environment = Settings::instance()->getWineManager()->getWineProcessEnvironment();
    for (const auto& [name, value] : options.variables) {
        logRedactor().addSecretOfVariable(name, value);
        environment.insert(name, value);
    }
    return environment;
}
} // namespace

void ServerManager::play(const QString& token, const QString& settingsProfile, const QString& username)
{
    logRedactor().addSecret(token);
    if (!m_ready) {
        emit failedUpdate(this, DiskWriteError, tr("Not ready to play"));
        return;
    }
    const auto index = getIndex();
    if (!index) {
        qDebug().noquote() << "play called before index was parsed - can't verify binaries for "
                           << m_displayName;
    } else {
        const int code = Copier(index, m_name).copyFiles();
        if (code == ClientsRunningError) {
            notifyError(code, tr("Cannot copy files for %1 while clients are running").arg(m_displayName));
            return;
        }
        if (code != NoError) {
            notifyError(code, tr("Could not copy files for %1").arg(m_displayName));
            return;
        }
    }
    emit processRequested(this);
    if (Settings::instance()->runClientsWithLogging())
        connectLogLens();

    auto arguments = buildClientArguments({m_server, token, settingsProfile, Steam::instance()->isRunning()},
                                          *Settings::instance());
    QString program;
    QString workingDirectory;
    prepareForStartingProcess(workingDirectory, arguments, program);
    qDebug().noquote() << program << arguments;
    startProcess(program, arguments, workingDirectory, username);
}

void ServerManager::prepareForStartingProcess(QString& /*workingDirectory*/, QStringList& arguments,
                                              QString& program) const
{
    const auto* settings = Settings::instance();
    program = getWineProgram(*settings);
    arguments.prepend(getExefileName());
    // Wine's drive Z is the root of the host's file system.
    arguments << QStringLiteral("/remotefilecachefolder=Z:%1/ResFiles")
                     .arg(QDir::cleanPath(settings->getCacheFolder()));
}

void ServerManager::startProcess(const QString& program, const QStringList& arguments,
                                 const QString& workingDirectory, const QString& username)
{
    auto* settings = Settings::instance();
    if (settings->getWineManager()->isInstalling()) {
        emit showErrorMessage(tr("Client launch failure"),
                              tr("Wine is being updated. Please wait until that is done."), 10);
        return;
    }
    LaunchOptions options;
    auto problem = readWrapper(settings->getLaunchWrapper(), &options);
    if (problem.isEmpty())
        problem = readVariables(settings->getClientEnvironment(m_name), &options);
    if (!problem.isEmpty()) {
        qWarning().noquote() << "Cannot launch client:" << problem;
        emit showErrorMessage(tr("Client launch failure"), problem, 10);
        return;
    }
    auto process = std::make_unique<QProcess>();
    settings->getWineManager()->prepareEnv();
    process->setProcessEnvironment(environmentWith(options));
    qDebug().noquote() << "(" + process->processEnvironment().toStringList().join(QStringLiteral(", ")) + ")";
    reportWineLaunch();
    if (!QFileInfo::exists(program)) {
        qDebug().noquote() << program << " not found, cannot launch client. Staging folder was "
                           << workingDirectory;
        emit showErrorMessage(tr("Client launch failure"), tr("Could not find file %1").arg(program), 10);
        return;
    }
    if (settings->shouldRouteConsoleOutputToLog())
        routeConsoleOutputToLog(process.get());
    process->setWorkingDirectory(workingDirectory);
    const auto command = options.wrapper + QStringList{program} + arguments;
    process->setProgram(command.constFirst());
    process->setArguments(command.mid(1));
    if (!options.wrapper.isEmpty())
        qInfo().noquote() << "The client is started by" << options.wrapper;

    auto* attached = new AttachedProcess(process.get());
    auto* started = process.release();
    attached->setProperty("server", m_name);
    attached->setProperty("username", username);
    started->start(QIODevice::ReadWrite);
    const bool is64 = settings->runClientsWith64Bit();
    if (settings->checkIfFirstClientLaunch(m_name))
        EventLogger::instance()->clientInitiallyLaunched(m_name, QDateTime::currentSecsSinceEpoch(), is64);
    EventLogger::instance()->clientLaunched(m_name, is64);
    trackProcess(attached);
}

void ServerManager::reportWineLaunch() const
{
    const auto* settings = Settings::instance();
    auto* events = EventLogger::instance();
    const auto graphicsMode = settings->getGraphicsModeString();
    if (settings->useCustomWine())
        events->customWineLaunched(m_name, graphicsMode);
    else if (settings->useWineDevVersions())
        events->developmentWineLaunched(m_name, settings->getWineVersionBranch(), settings->getWineVersion(),
                                        graphicsMode);
    else
        events->releaseWineLaunched(m_name, settings->getWineVersion(), graphicsMode);
}

void ServerManager::attachProcess(qint64 pid, const QString& username)
{
    auto* attached = new AttachedProcess(pid);
    attached->setProperty("server", m_name);
    attached->setProperty("username", username);
    trackProcess(attached);
}

void ServerManager::trackProcess(AttachedProcess* process)
{
    m_processes.insert(process);
    connect(process, &AttachedProcess::finished, this,
            [this](AttachedProcess* ended) { m_processes.remove(ended); });
    emit processStarted(this, process);
}
