#pragma once

#include <QHash>
#include <QObject>

class AttachedProcess;

/**
 * The clients that run now, of all servers, as they are recorded in processes.json. Deletes each process
 * object after it has ended. Main thread.
 */
class ProcessList : public QObject
{
    Q_OBJECT

public:
    /** folder: where processes.json goes. */
    explicit ProcessList(const QString& folder, QObject* parent = nullptr);

    void add(AttachedProcess* process);
    bool isEmpty() const { return m_processIds.isEmpty(); }
    int size() const { return m_processIds.size(); }
    QList<AttachedProcess*> processes() const { return m_processIds.keys(); }

    /** Writes processes.json, readable by its owner only. Returns false, with a log line, when that fails. */
    bool save() const;

signals:
    void ended(AttachedProcess* process, int exitCode, bool crashed);

private:
    void onFinished(AttachedProcess* process, int exitCode);

    const QString m_folder;
    QHash<AttachedProcess*, qint64> m_processIds; // an ended process has forgotten its id
};
