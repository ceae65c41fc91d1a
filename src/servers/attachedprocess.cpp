#include "servers/attachedprocess.h"

#include "servers/consolerouter.h"

AttachedProcess::AttachedProcess(QProcess* process) : m_process(process)
{
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &AttachedProcess::onFinished);
    // A program that cannot be started ends without ever having run.
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onFinished(-1);
    });
}

AttachedProcess::~AttachedProcess() { delete m_process; }

qint64 AttachedProcess::processId() const { return m_process ? m_process->processId() : m_pid; }

QProcess::ExitStatus AttachedProcess::exitStatus() const
{
    if (!m_process)
        return QProcess::NormalExit;
    return hasAnnouncedCrash(*m_process) ? QProcess::CrashExit : m_process->exitStatus();
}

QProcess::ProcessState AttachedProcess::state() const
{
    return m_process ? m_process->state() : QProcess::NotRunning;
}

void AttachedProcess::close()
{
    if (m_process)
        m_process->close();
}

void AttachedProcess::detach()
{
    // Destroying the object would end the client with it.
    static QList<QProcess*> leftRunning;
    if (m_process) {
        m_process->disconnect();
        leftRunning << std::exchange(m_process, nullptr);
    }
}

void AttachedProcess::onFinished(int exitCode) { emit finished(this, exitCode); }

void closeProcessNicely(AttachedProcess* /*process*/) {}

void switchToProcess(AttachedProcess* /*process*/) {}
