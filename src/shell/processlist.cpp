#include "shell/processlist.h"

#include "servers/attachedprocess.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

ProcessList::ProcessList(const QString& folder, QObject* parent) : QObject(parent), m_folder(folder) {}

void ProcessList::add(AttachedProcess* process)
{
    m_processIds.insert(process, process->processId());
    connect(process, &AttachedProcess::finished, this, &ProcessList::onFinished);
    save();
}

void ProcessList::onFinished(AttachedProcess* process, int exitCode)
{
    const auto id = m_processIds.take(process);
    const bool crashed = process->exitStatus() == QProcess::CrashExit;
    if (crashed)
        qWarning() << "Process" << id << "crashed";
    else
        qDebug() << "Process" << id << "finished with exit code" << exitCode;
    save();
    emit ended(process, exitCode, crashed);
    process->deleteLater();
}

bool ProcessList::save() const
{
    QJsonArray processes;
    for (auto process = m_processIds.cbegin(); process != m_processIds.cend(); ++process) {
        processes.append(QJsonObject{{QStringLiteral("pid"), process.value()},
                                     {QStringLiteral("servername"), process.key()->server()},
                                     {QStringLiteral("username"), process.key()->username()}});
    }
    QDir().mkpath(m_folder);
    QFile file(m_folder + QStringLiteral("/processes.json"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        qWarning().noquote() << "Couldn't save the list of clients:" << file.errorString();
        return false;
    }
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(QJsonObject{{QStringLiteral("processes"), processes}}).toJson());
    return true;
}
