#include "maintenance/treecopy.h"

#include "cache/md5many.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int bufferBytes = 1 << 20;
constexpr int comparedFiles = 64;

QString problem(const QString& path)
{
    return QCoreApplication::translate("CacheMover", "%1: %2").arg(path, qt_error_string(errno));
}

QByteArray readLink(const QString& path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const auto length =
        ::readlink(QFile::encodeName(path).constData(), target.data(), static_cast<size_t>(target.size()));
    return length < 0 ? QByteArray() : target.left(static_cast<int>(length));
}

/** Where a link has to lead once the tree at from stands at to. */
QByteArray adapted(const QByteArray& target, const QString& from, const QString& to)
{
    const auto root = QFile::encodeName(from);
    if (target != root && !target.startsWith(root + '/'))
        return target;
    return QFile::encodeName(to) + target.mid(root.size());
}
} // namespace

TreeCopy::TreeCopy(QString from, QString to, const std::atomic<bool>& stop, std::atomic<qint64>* done)
    : m_from(std::move(from)), m_to(std::move(to)), m_stop(stop), m_done(done)
{
}

qint64 TreeCopy::sizeOf(const QVector<CacheItem>& items)
{
    qint64 bytes = 0;
    for (const auto& item : items) {
        if (item.kind == CacheItem::Kind::File)
            bytes += item.size;
    }
    return bytes;
}

QString TreeCopy::copy(const QVector<CacheItem>& items)
{
    if (!QDir().mkpath(m_to))
        return problem(m_to);
    for (const auto& item : items) {
        if (m_stop)
            return {};
        QString error;
        const auto target = m_to + QLatin1Char('/') + item.path;
        if (item.kind == CacheItem::Kind::Folder)
            error = QDir().mkpath(target) ? QString() : problem(target);
        else if (item.kind == CacheItem::Kind::Link)
            error = copyLink(item);
        else if (item.kind == CacheItem::Kind::File) // sockets and the like belong to programs that run
            error = copyFile(item);
        if (!error.isEmpty())
            return error;
    }
    const int folder = ::open(QFile::encodeName(m_to).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool written = folder >= 0 && ::syncfs(folder) == 0;
    auto error = written ? QString() : problem(m_to);
    if (folder >= 0)
        ::close(folder);
    return error;
}

QString TreeCopy::copyFile(const CacheItem& item)
{
    QFile source(m_from + QLatin1Char('/') + item.path);
    QFile target(m_to + QLatin1Char('/') + item.path);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return QStringLiteral("%1: %2").arg(source.fileName(), source.errorString());
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return QStringLiteral("%1: %2").arg(target.fileName(), target.errorString());
    QByteArray buffer(bufferBytes, Qt::Uninitialized);
    while (!m_stop) {
        const auto length = source.read(buffer.data(), buffer.size());
        if (length < 0)
            return QStringLiteral("%1: %2").arg(source.fileName(), source.errorString());
        if (length == 0)
            break;
        if (target.write(buffer.constData(), length) != length)
            return QStringLiteral("%1: %2").arg(target.fileName(), target.errorString());
        *m_done += length;
    }
    struct stat status;
    if (::fstat(source.handle(), &status) != 0 || ::fchmod(target.handle(), status.st_mode & 07777) != 0)
        return problem(target.fileName());
    const timespec times[2] = {status.st_atim, status.st_mtim};
    return ::futimens(target.handle(), times) == 0 ? QString() : problem(target.fileName());
}

QString TreeCopy::copyLink(const CacheItem& item)
{
    const auto target = readLink(m_from + QLatin1Char('/') + item.path);
    const auto path = m_to + QLatin1Char('/') + item.path;
    if (!target.isEmpty() &&
        ::symlink(adapted(target, m_from, m_to).constData(), QFile::encodeName(path).constData()) == 0)
        return {};
    return problem(path);
}

QString TreeCopy::compare(const QVector<CacheItem>& items)
{
    QVector<QString> paths;
    const auto flush = [&]() -> QString {
        QVector<QString> originals;
        QVector<QString> copies;
        for (const auto& path : qAsConst(paths)) {
            originals << m_from + path;
            copies << m_to + path;
        }
        const auto expected = md5OfFiles(originals, &m_stop);
        const auto found = md5OfFiles(copies, &m_stop);
        for (int i = 0; i < paths.size() && !m_stop; ++i) {
            if (found[i].isEmpty() || found[i] != expected[i])
                return QCoreApplication::translate("CacheMover", "%1 was not copied correctly")
                    .arg(copies[i]);
        }
        paths.clear();
        return {};
    };
    for (const auto& item : items) {
        if (item.kind != CacheItem::Kind::File)
            continue;
        paths << QLatin1Char('/') + item.path;
        *m_done += item.size;
        if (paths.size() < comparedFiles)
            continue;
        auto error = flush();
        if (!error.isEmpty() || m_stop)
            return error;
    }
    return flush();
}

QString TreeCopy::adaptLinks(const QVector<CacheItem>& items)
{
    for (const auto& item : items) {
        const auto path = m_to + QLatin1Char('/') + item.path;
        const auto target = item.kind == CacheItem::Kind::Link ? readLink(path) : QByteArray();
        const auto wanted = adapted(target, m_from, m_to);
        if (wanted == target)
            continue;
        const auto encoded = QFile::encodeName(path);
        if (::unlink(encoded.constData()) != 0 || ::symlink(wanted.constData(), encoded.constData()) != 0)
            return problem(path);
    }
    return {};
}

void TreeCopy::removeCopy(const QString& from, const QString& to)
{
    const std::atomic<bool> never{false};
    auto items = listCache(from, never);
    std::reverse(items.begin(), items.end()); // what is in a folder before the folder
    for (const auto& item : qAsConst(items)) {
        const auto path = to + QLatin1Char('/') + item.path;
        if (item.kind == CacheItem::Kind::Folder)
            QDir().rmdir(path);
        else
            QFile::remove(path);
    }
    QDir().rmdir(to);
}
