#include "download/backgroundsaver.h"

#include "download/patchmanager.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>
#include <QtConcurrent>

#include <cstdio>
#include <sys/stat.h>

namespace
{
constexpr int maxOpenAttempts = 20;
constexpr int maxMoveAttempts = 5;
constexpr unsigned long moveRetryDelayMs = 300;

void report(const char* kind, const QString& message, const char* function, int line)
{
    ExceptionLogger::instance()->logException(QLatin1String(kind), message, QLatin1String(function),
                                              QStringLiteral("backgroundsaver"), line);
}

bool renameFile(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/**
 * Opens a file of our own, never one that another launcher has open: writing into that would damage its
 * download. That other one may make its own between our two steps, so this can take several attempts.
 */
bool openFresh(QFile* file)
{
    for (int attempt = 0; attempt < maxOpenAttempts; ++attempt) {
        QFile::remove(file->fileName());
        if (file->open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered))
            return true;
        if (!QFileInfo(file->fileName()).isFile())
            break;
    }
    return false;
}

/** Whether the name still leads to the file that is open: another launcher may have put its own file there.
 */
bool isStillAt(const QFile& file, const QString& path)
{
    struct stat opened;
    struct stat named;
    return ::fstat(file.handle(), &opened) == 0 &&
           ::lstat(QFile::encodeName(path).constData(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/** Copies the content of an open file, whose name is gone, to a fresh file beside finalPath and renames that.
 */
bool publishCopy(QFile* file, const QString& finalPath)
{
    QTemporaryFile copy(finalPath + QStringLiteral(".XXXXXX.tmp"));
    if (!file->seek(0) || !copy.open())
        return false;
    QByteArray block;
    do {
        block = file->read(1 << 20);
        if (copy.write(block) != block.size())
            return false;
    } while (!block.isEmpty());
    if (file->error() != QFileDevice::NoError || !copy.flush())
        return false;
    copy.setPermissions(file->permissions());
    copy.setAutoRemove(!renameFile(copy.fileName(), finalPath));
    return !copy.autoRemove();
}
} // namespace

BackgroundSaver::BackgroundSaver(QObject* parent) : QObject(parent) {}

// Patches that are being applied use the records.
BackgroundSaver::~BackgroundSaver()
{
    for (const auto& data : qAsConst(m_downloads))
        data->watcher.waitForFinished();
}

bool BackgroundSaver::createFolders(const QString& url, const QString& path)
{
    const auto folder = QFileInfo(path).absolutePath();
    if (QFileInfo(folder).isDir())
        return true;
    qDebug().noquote() << "Directory does not exist - creating" << folder;
    if (QDir().mkpath(folder))
        return true;
    report("CreateDirectoryFailed", QStringLiteral("Couldn't create directory %1").arg(folder),
           "createFolders", __LINE__);
    emit fileFailed(url);
    return false;
}

std::shared_ptr<BackgroundSaver::DownloadData>
BackgroundSaver::createTempFileHelper(const QString& url, const QString& finalPath, const QString& checksum)
{
    const auto tempPath = finalPath + QStringLiteral(".tmp");
    if (!createFolders(url, tempPath)) {
        report("CreateDirectoriesFailed",
               QStringLiteral("Could not create directories for %1, %2").arg(url, tempPath),
               "createTempFileHelper", __LINE__);
        return nullptr;
    }
    auto data = std::make_shared<DownloadData>();
    data->file.setFileName(tempPath);
    if (!openFresh(&data->file)) {
        report("TempFileOpenFailed", QStringLiteral("Could not open temp file for %1, %2").arg(url, tempPath),
               "createTempFileHelper", __LINE__);
        return nullptr;
    }
    data->checksum = checksum;
    data->finalPath = finalPath;
    m_downloads.insert(url, data);
    return data;
}

bool BackgroundSaver::createTempFile(const QString& url, const QString& finalPath, const QString& checksum)
{
    return createTempFileHelper(url, finalPath, checksum) != nullptr;
}

bool BackgroundSaver::createTempFileForPatch(const QString& url, const QString& finalPath, size_t size,
                                             const QString& checksum, const QString& basePath)
{
    const auto data = createTempFileHelper(url, finalPath, checksum);
    if (!data)
        return false;
    data->basePath = basePath;
    data->size = size;
    return true;
}

bool BackgroundSaver::addData(const QString& url, const QByteArray& bytes)
{
    const auto data = m_downloads.value(url);
    if (!data) {
        report("NoTempFile", QStringLiteral("No tempfile for %1").arg(url), "addData", __LINE__);
        return false;
    }
    if (data->file.write(bytes) != bytes.size()) {
        qWarning().noquote() << "Couldn't write to" << data->file.fileName() << data->file.errorString();
        // What was written is of no use, and the space may be what is missing.
        data->file.remove();
        return false;
    }
    data->hash.addData(bytes);
    return true;
}

void BackgroundSaver::finalize(const QString& url)
{
    const auto data = m_downloads.value(url);
    if (!data) {
        emit fileFailed(url);
        return;
    }
    if (QString::fromLatin1(data->hash.result().toHex()) != data->checksum) {
        // The record stays until the next attempt replaces it.
        qWarning().noquote() << "Corrupt download:" << url;
        emit fileCorrupt(url);
        return;
    }
    const bool moved = copyTempFileToFinalLocation(data.get());
    removeUrl(url);
    if (moved)
        emit fileSucceeded(url);
    else
        emit fileFailed(url);
}

void BackgroundSaver::finalizePatch(const QString& url)
{
    const auto data = m_downloads.value(url);
    if (!data) {
        emit fileFailed(url);
        return;
    }
    // Queued, since the watcher ends with the record.
    connect(
        &data->watcher, &QFutureWatcher<bool>::finished, this, [this, url] { onApplyPatchFinished(url); },
        Qt::QueuedConnection);
    data->watcher.setFuture(QtConcurrent::run([data = data.get()] {
        return PatchManager::applyPatch(data->basePath, data->finalPath, data->size, data->checksum,
                                        &data->file);
    }));
}

void BackgroundSaver::onApplyPatchFinished(const QString& url)
{
    const auto data = m_downloads.value(url);
    if (!data) {
        qDebug().noquote() << "BackgroundSaver::onApplyPatchFinished" << url << "does not exist";
        return;
    }
    const bool applied = data->watcher.result();
    if (isStillAt(data->file, data->file.fileName()))
        data->file.remove(); // the patch itself
    removeUrl(url);
    if (applied)
        emit fileSucceeded(url);
    else
        emit fileCorrupt(url);
}

bool BackgroundSaver::copyTempFileToFinalLocation(DownloadData* data)
{
    const auto tempPath = data->file.fileName();
    for (int attempt = 1; attempt <= maxMoveAttempts; ++attempt) {
        const bool moved = isStillAt(data->file, tempPath) ? renameFile(tempPath, data->finalPath)
                                                           : publishCopy(&data->file, data->finalPath);
        if (moved)
            return true;
        qWarning().noquote() << "Error when copying temp file to final location" << qt_error_string(errno);
        if (QFileInfo(data->finalPath).isFile()) {
            qDebug().noquote() << "File exists for" << tempPath << "to" << data->finalPath;
            return true;
        }
        if (attempt == maxMoveAttempts)
            break;
        qDebug().noquote() << "Retrying copy of temp file to final location for" << tempPath << "to"
                           << data->finalPath;
        QThread::msleep(moveRetryDelayMs);
    }
    report("CopyFailed",
           QStringLiteral("Couldn't copy temp file to final location for %1 to %2 after %3 attempts")
               .arg(tempPath, data->finalPath)
               .arg(maxMoveAttempts),
           "copyTempFileToFinalLocation", __LINE__);
    return false;
}

void BackgroundSaver::removeUrl(const QString& url)
{
    const auto data = m_downloads.take(url);
    if (!data) {
        qDebug().noquote() << "Background saver trying to remove" << url << "but it does not exist";
    } else if (data->watcher.isRunning()) {
        qDebug().noquote() << "Background saver removing" << url << "while patch is being applied";
        data->watcher.disconnect(this);
        data->watcher.waitForFinished();
    }
}
