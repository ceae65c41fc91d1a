#pragma once

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

#include <atomic>

class Settings;

/**
 * Moves the cache to another folder: in one step on the same volume, else by copying, comparing, switching
 * the setting, and removing the old one.
 *
 * The setting names a whole cache at every moment. A record in the settings tells a later start what was
 * going on when the process was killed; recover() brings that to an end. One move at a time. Main thread; the
 * work is done on the global thread pool.
 */
class CacheMover : public QObject
{
    Q_OBJECT

public:
    enum class Outcome { Moved, Cancelled, Failed };

    explicit CacheMover(Settings* settings, QObject* parent = nullptr);
    /** Waits for the worker, which ends soon. */
    ~CacheMover() override;

    /** Why the cache cannot go to this folder, for people; empty when nothing speaks against it. */
    QString objection(const QString& folder) const;
    /** Starts; finished() follows in every case. The folder has no objection(). */
    void start(const QString& folder);
    /** Leaves the cache where it is, unless the setting has been switched already. */
    void cancel() { m_stop = true; }
    bool isRunning() const { return m_watcher.isRunning(); }

    /**
     * Ends a move that was interrupted, before anything uses the cache. What is left to remove is removed on
     * the global thread pool.
     */
    static void recover(Settings* settings);

signals:
    /** fraction: 0 to 1; text is for people. */
    void progressUpdate(float fraction, const QString& text);
    /** error is for people, and empty unless the outcome is Failed. */
    void finished(CacheMover::Outcome outcome, const QString& error);

private:
    struct Result {
        Outcome outcome = Outcome::Failed;
        QString error;
        /** All is in one place: there is nothing to go on with. */
        bool settled = false;
    };

    Result rename() const;
    Result copy();
    void reportProgress();
    void onMoved();

    Settings* const m_settings;
    QString m_from;
    QString m_to;
    bool m_renames = false;
    std::atomic<bool> m_stop{false};
    std::atomic<qint64> m_bytesDone{0};
    std::atomic<qint64> m_bytesTotal{0};
    QFutureWatcher<Result> m_watcher;
    QFutureWatcher<void> m_removal;
    QTimer m_progressTimer;
};
