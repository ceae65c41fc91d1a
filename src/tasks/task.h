#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

/** How an update step ended. The numbers are shared by tasks, signals, telemetry and reports. */
enum UpdateError {
    NoError = 0,
    UnknownError = 1,
    DownloadError = 2,
    DiskWriteError = 3,
    ClientsRunningError = 4,
    SourceDoesNotExistError = 5,
    CopyError = 6,
    ProtectedBuildError = 8,
    AuthenticationError = 9,
};

/**
 * An asynchronous job: started once with go(), it announces its end with finished(), exactly once. Its
 * creator keeps it, gives it the dynamic property "name" for log lines, and deletes it after finished(). Main
 * thread.
 */
class Task : public QObject
{
    Q_OBJECT

public:
    explicit Task(QObject* parent = nullptr) : QObject(parent) {}
    ~Task() override;

    /** Starts the job and returns quickly. */
    virtual void go() = 0;
    virtual void cancel() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;

    /** What it does or waits for, for the log, with figures that change while it moves. */
    virtual QString activity() const { return taskName(); }
    /** Asks again for what has not come for some seconds; nothing that has come is lost. */
    virtual void askAgain() {}

    bool isError() const { return m_errorCode != NoError; }
    /** One of UpdateError; meaningful once finished() has been emitted. */
    int getErrorCode() const { return m_errorCode; }
    QString getErrorString() const { return m_errorString; }
    QString taskName() const { return property("name").toString(); }

signals:
    void finished(Task* task);

protected:
    void setError(int code, const QString& text = QString())
    {
        m_errorCode = code;
        m_errorString = text;
    }

private:
    int m_errorCode = NoError;
    QString m_errorString;
};
