#pragma once

#include "tests/testkit/sample.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>

class LocalBackend;

/** The real launcher, run in a home folder of its own against a backend. */
class LauncherProcess
{
public:
    /** The launcher takes the backend's deployment file, and does without our own Wine unless told otherwise.
     */
    explicit LauncherProcess(const LocalBackend& backend);
    ~LauncherProcess();
    Q_DISABLE_COPY_MOVE(LauncherProcess)

    QString home() const { return m_home.path(); }
    QString cache() const { return m_cache; }
    /** Lets this launcher use another one's cache. */
    void shareCache(const QString& cache);
    QString stagingFolder(const QString& server) const
    {
        return m_cache + QStringLiteral("/wineenv/drive_c/") + server;
    }
    QString resFile(const QByteArray& content) const
    {
        return m_cache + QStringLiteral("/ResFiles") + SampleTree::pathOf(content);
    }

    /** Settings of the stored file; read by the launcher when it starts. */
    void set(const QString& key, const QVariant& value);
    QVariant setting(const QString& key) const;
    void setEnvironment(const QString& name, const QString& value) { m_environment.insert(name, value); }
    /** Lets the web engine work on this display, and its pages trust the backend. port: where debuggers reach
     * the engine. */
    void useWebEngine(const LocalBackend& backend, const QString& display, int port);
    /** Another launcher than the one that was built. */
    void setProgram(const QString& path) { m_program = path; }
    /** A program that the launcher is started through, with its arguments. */
    void startThrough(const QStringList& wrapper) { m_wrapper = wrapper; }

    void start(const QStringList& arguments);
    /** Runs one refresh of the main server unattended; returns the exit code, or -1 when it does not end in
     * time. */
    int refreshOnce(const QStringList& moreArguments = {});
    QProcess& process() { return m_process; }

    /** The log of the newest run; start() removes those of earlier ones. */
    QString log() const;
    /** Whether the log has this text by now, waiting for it for a while. from: what stands before this
     * position does not count. */
    bool waitForLog(const QString& text, int milliseconds = 40000, int from = 0) const;
    /** What the last refreshOnce() has printed. */
    QString standardError() const { return m_standardError; }
    QString standardOutput() const { return m_standardOutput; }

private:
    QStringList logFiles() const;

    QTemporaryDir m_home;
    QString m_cache;
    QProcess m_process;
    QProcessEnvironment m_environment;
    QString m_program = QStringLiteral(VELKOR_BIN "/velkorlauncher");
    QStringList m_wrapper;
    QString m_standardError;
    QString m_standardOutput;
};
