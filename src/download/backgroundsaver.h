#pragma once

#include <QCryptographicHash>
#include <QFile>
#include <QFutureWatcher>
#include <QMap>
#include <QObject>

#include <memory>

/**
 * Turns the byte streams of a download queue into verified files of the cache: each goes to a temporary file
 * beside its final place, is hashed while it arrives, and is renamed into place only when its MD5 is right.
 * Of a patch, what is checked and put into place is the file that it rebuilds.
 *
 * Downloads are known by their URL as text. Each one that was created ends in exactly one of the three
 * signals, except after cancel(). Failures of the file system are reported. Main thread; moving a file may
 * block for a second when the file system makes difficulties.
 */
class BackgroundSaver : public QObject
{
    Q_OBJECT

public:
    explicit BackgroundSaver(QObject* parent = nullptr);
    ~BackgroundSaver() override;

    /**
     * Prepares a download to finalPath (absolute); checksum is the expected MD5 in lower-case hexadecimal.
     * Returns false when no temporary file could be made. An earlier download of the same URL is replaced.
     */
    bool createTempFile(const QString& url, const QString& finalPath, const QString& checksum);

    /**
     * The same for a patch: the file at basePath, patched, has size bytes and the checksum. Both a patch that
     * cannot be applied and one that leads elsewhere end as corrupt.
     */
    bool createTempFileForPatch(const QString& url, const QString& finalPath, size_t size,
                                const QString& checksum, const QString& basePath);

    /** Appends to the temporary file. Returns false when the bytes could not be written: the download is lost
     * then. */
    bool addData(const QString& url, const QByteArray& bytes);

    /** Ends a download: checks it and moves it into place. */
    void finalize(const QString& url);
    /** Ends the download of a patch: it is applied on the global thread pool. */
    void finalizePatch(const QString& url);

    /** Forgets a download. Its temporary file stays and is replaced by the next attempt. */
    void cancel(const QString& url) { removeUrl(url); }
    void removeUrl(const QString& url);

signals:
    void fileSucceeded(const QString& url);
    void fileCorrupt(const QString& url);
    void fileFailed(const QString& url);

private:
    struct DownloadData {
        QFile file; // the final path with ".tmp" appended
        QCryptographicHash hash{QCryptographicHash::Md5};
        QString checksum;
        QString finalPath;
        // Of a patch only
        QString basePath;
        size_t size = 0;
        QFutureWatcher<bool> watcher;
    };

    std::shared_ptr<DownloadData> createTempFileHelper(const QString& url, const QString& finalPath,
                                                       const QString& checksum);
    bool createFolders(const QString& url, const QString& path);
    static bool copyTempFileToFinalLocation(DownloadData* data);
    void onApplyPatchFinished(const QString& url);

    QMap<QString, std::shared_ptr<DownloadData>> m_downloads;
};
