#pragma once

#include <QObject>
#include <QProcess>
#include <QVariant>

/**
 * A running client: one that this launcher started, or one that is known by its process id only. The dynamic
 * properties "server" (catalogue key) and "username" say whose it is. Main thread.
 */
class AttachedProcess : public QObject
{
    Q_OBJECT

public:
    AttachedProcess() = default;
    /** Takes ownership of the process. */
    explicit AttachedProcess(QProcess* process);
    explicit AttachedProcess(qint64 pid) : m_pid(pid) {}
    /** Deletes the process, and so ends it if it still runs. */
    ~AttachedProcess() override;

    qint64 processId() const;
    /** QProcess::CrashExit after a crash, also of the program inside Wine; NormalExit for a process known by
     * its id. */
    QProcess::ExitStatus exitStatus() const;
    QProcess::ProcessState state() const;
    /** Ends the process. */
    void close();
    /** Lets the process live on when this object, and then the launcher, goes. */
    void detach();

    QString server() const { return property("server").toString(); }
    QString username() const { return property("username").toString(); }

signals:
    void finished(AttachedProcess* process, int exitCode);

private slots:
    void onFinished(int exitCode);

private:
    QProcess* m_process = nullptr;
    qint64 m_pid = 0;
};

/** Window tricks of other platforms; nothing to do here. */
void closeProcessNicely(AttachedProcess* process);
void switchToProcess(AttachedProcess* process);
