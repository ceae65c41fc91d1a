#pragma once

#include "index/index.h"
#include "tasks/task.h"

#include <QFutureWatcher>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <functional>

/** One file to place. */
struct CopyItem {
    QString source;
    QString target;
    /** Lower-case hexadecimal. */
    QString md5;
    /** Permission bits to set; 0 leaves the default. */
    quint32 mode = 0;
};

/** 0 when the target has the item's MD5, 7 when it has not, does not exist or cannot be read. Any thread. */
int verifyItem(const CopyItem& item);

/**
 * Places one file unless it is right already: 0 done, 5 the source does not exist, 6 the copy failed. Any
 * thread.
 */
int copyIfNeeded(const CopyItem& item);

/**
 * Brings a staging folder in line with an index: copies the files whose content differs out of the cache and
 * makes the symbolic links. Nothing is touched while clients run. Runs as a task, or at once with
 * copyFiles().
 *
 * Error codes: 0; 2 a row points outside the folder (the others are placed all the same); 3 a link could not
 * be made; 4 clients are running; 5 a source is missing from the cache; 6 a copy failed. Main thread; files
 * are checked and copied on the global thread pool.
 */
class Copier : public Task
{
    Q_OBJECT

public:
    /** Where to: the staging folder of Wine when name is "wine", else that of the server with this key. */
    Copier(const IndexPtr& index, const QString& name, QObject* parent = nullptr);
    /** clientsRunning may be empty where nothing runs from the folder. */
    Copier(const IndexPtr& index, const QString& cacheFolder, const QString& destination,
           std::function<bool()> clientsRunning, QObject* parent = nullptr);
    ~Copier() override;

    void go() override;
    void cancel() override {} // a copy runs to its end
    /** Files that are being copied are completed. */
    void pause() override { m_watcher.pause(); }
    void resume() override { m_watcher.resume(); }

    QString activity() const override;

    /** The same in one go; returns the error code. The calling thread waits. */
    int copyFiles();

    /** Targets that could not be placed. */
    QStringList getFailedFiles() const { return m_failedFiles; }

signals:
    void progressUpdate(float fraction, const QString& message);

private slots:
    void onProgressValueChanged(int value);
    void onMapFinished();

private:
    struct BatchResult {
        int code = 0;
        QStringList failed;
    };
    using Batch = QVector<CopyItem>;

    void determineFilesToCopy();
    static QVector<Batch> toBatches(const QVector<CopyItem>& items);
    static BatchResult copyBatch(const Batch& batch, std::atomic<bool>* copying);
    int collect(const QVector<BatchResult>& results);
    bool createSymlinks() const;
    bool areClientsRunning() const { return m_clientsRunning && m_clientsRunning(); }

    struct Link {
        QString path;
        QString target;
    };

    const IndexPtr m_index;
    const QString m_cacheFolder;
    const QString m_destination;
    const std::function<bool()> m_clientsRunning;
    QVector<Batch> m_batches;
    QVector<Link> m_links;
    QStringList m_failedFiles;
    int m_refusedRows = 0;
    std::atomic<bool> m_copying{false};
    QFutureWatcher<BatchResult> m_watcher;
};
