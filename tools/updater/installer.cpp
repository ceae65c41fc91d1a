#include "tools/updater/installer.h"

#include "cache/installfolder.h"
#include "cache/safepath.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr qint64 blockSize = qint64(1) << 20;
constexpr auto rollBackName = "/rollback";

bool fail(QString* error, const QString& text)
{
    *error = text;
    return false;
}

bool failWithErrno(QString* error, const QString& path)
{
    return fail(error, QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno))));
}

bool waitForDisk(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool written = ::fsync(file) == 0;
    ::close(file);
    return written;
}

bool renameFile(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/** Keeps a file under a second name; by a copy where the volume has no links. */
bool keepFile(const QString& path, const QString& copy)
{
    if (::link(QFile::encodeName(path).constData(), QFile::encodeName(copy).constData()) == 0)
        return true;
    return QFile::copy(path, copy) && waitForDisk(copy);
}

bool createFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !waitForDisk(path))
        return fail(error, QStringLiteral("%1: %2").arg(path, file.errorString()));
    return true;
}

/** Copies a file and returns the MD5 of what was copied; empty, with an error, when that fails. */
QByteArray copyFile(const QString& from, const QString& to, QString* error)
{
    QFile source(from);
    QFile copy(to);
    if (!source.open(QIODevice::ReadOnly)) {
        fail(error, QStringLiteral("%1: %2").arg(from, source.errorString()));
        return {};
    }
    QCryptographicHash hash(QCryptographicHash::Md5);
    bool written = copy.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
    for (auto block = source.read(blockSize); written && !block.isEmpty(); block = source.read(blockSize)) {
        hash.addData(block);
        written = copy.write(block) == block.size();
    }
    if (!written || !copy.flush() || ::fsync(copy.handle()) != 0) {
        fail(error, QStringLiteral("%1: %2").arg(to, copy.errorString()));
        return {};
    }
    return hash.result().toHex();
}
} // namespace

Installer::Installer(const QString& installFolder)
    : m_folder(QDir::cleanPath(installFolder)), m_work(InstallFolder::workFolder(m_folder))
{
}

Installer::~Installer()
{
    if (m_lock >= 0)
        ::close(m_lock);
}

bool Installer::isUnfinished(const QString& installFolder)
{
    return QFileInfo::exists(InstallFolder::journal(installFolder));
}

QString Installer::newFile(int number) const { return QStringLiteral("%1/new/%2").arg(m_work).arg(number); }

QString Installer::oldFile(int number) const { return QStringLiteral("%1/old/%2").arg(m_work).arg(number); }

QString Installer::target(int number) const
{
    return m_folder + QLatin1Char('/') + m_entries.at(number).path;
}

bool Installer::lock(QString* error)
{
    m_lock = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_lock < 0)
        return failWithErrno(error, m_folder);
    return ::flock(m_lock, LOCK_EX | LOCK_NB) == 0 ||
           fail(error, QStringLiteral("Another updater is at work in %1").arg(m_folder));
}

Installer::Outcome Installer::install(const IndexPtr& index, const QString& resourcesFolder, QString* error)
{
    if (m_lock < 0 && !lock(error))
        return m_lock < 0 ? Outcome::Unchanged : Outcome::Busy;
    if (isUnfinished(m_folder)) {
        const auto outcome = finish(error);
        if (outcome == Outcome::Stuck)
            return outcome;
    }
    if (!prepare(index, resourcesFolder, error) || !writeJournal(error)) {
        cleanUp();
        return Outcome::Unchanged;
    }
    return commit(error);
}

bool Installer::prepare(const IndexPtr& index, const QString& resourcesFolder, QString* error)
{
    cleanUp();
    m_entries.clear();
    if (!QDir().mkpath(m_work + QStringLiteral("/new")) || !QDir().mkpath(m_work + QStringLiteral("/old")))
        return fail(error, QStringLiteral("%1 cannot be written").arg(m_folder));
    if (!index || index->getCachedName(QStringLiteral("app:/velkorlauncher")).isEmpty())
        return fail(error, QStringLiteral("The index names no launcher"));
    SafePath resources(resourcesFolder);
    SafePath folder(m_folder);
    QSet<QString> seen;
    for (const auto& row : index->entries()) {
        const QString prefix = QStringLiteral("app:/");
        const QString name = row->name;
        const auto path = QDir::cleanPath(name.mid(prefix.size()));
        if (!name.startsWith(prefix) || folder.resolve(path).isEmpty() || path.startsWith(QLatin1Char('.')) ||
            seen.contains(path))
            return fail(error, QStringLiteral("The index has a row that cannot be installed: %1").arg(name));
        seen.insert(path);
        const auto source = resources.resolve(row->cachedName);
        const QFileInfo present(m_folder + QLatin1Char('/') + path);
        if (source.isEmpty() || present.isDir())
            return fail(error, QStringLiteral("%1 cannot be installed").arg(path));
        m_entries.append({path, present.exists() || present.isSymLink()});
        if (!prepareFile(*row, source, error))
            return false;
    }
    return true;
}

bool Installer::prepareFile(const IndexEntry& row, const QString& source, QString* error)
{
    const auto file = newFile(m_entries.size() - 1);
    const auto md5 = copyFile(source, file, error);
    if (md5.isEmpty())
        return false;
    if (md5 != row.checksum.toLatin1())
        return fail(error, QStringLiteral("%1 is damaged").arg(source));
    const auto mode = static_cast<mode_t>(row.flags & 0777);
    if (mode != 0 && ::chmod(QFile::encodeName(file).constData(), mode | S_IRUSR | S_IWUSR) != 0)
        return failWithErrno(error, file);
    return true;
}

// A line for each file: whether it was there before, and its path.
bool Installer::writeJournal(QString* error) const
{
    QByteArray text;
    for (const auto& entry : m_entries)
        text += (entry.existed ? "1 " : "0 ") + entry.path.toUtf8() + '\n';
    QSaveFile journal(InstallFolder::journal(m_folder));
    if (!waitForDisk(m_work + QStringLiteral("/new")) || !journal.open(QIODevice::WriteOnly) ||
        journal.write(text) != text.size() || !journal.commit() || !waitForDisk(m_work))
        return fail(error, QStringLiteral("%1: %2").arg(journal.fileName(), journal.errorString()));
    return true;
}

bool Installer::readJournal(QString* error)
{
    QFile journal(InstallFolder::journal(m_folder));
    if (!journal.open(QIODevice::ReadOnly))
        return fail(error, QStringLiteral("%1: %2").arg(journal.fileName(), journal.errorString()));
    m_entries.clear();
    SafePath folder(m_folder);
    const auto lines = journal.readAll().split('\n');
    for (const auto& line : lines) {
        const auto path = QString::fromUtf8(line.mid(2));
        if (line.isEmpty())
            continue;
        if (folder.resolve(path).isEmpty())
            return fail(error, QStringLiteral("The journal names a file outside: %1").arg(path));
        m_entries.append({path, line.startsWith('1')});
    }
    return true;
}

Installer::Outcome Installer::finish(QString* error)
{
    if (m_lock < 0 && !lock(error))
        return m_lock < 0 ? Outcome::Unchanged : Outcome::Busy;
    if (!isUnfinished(m_folder)) {
        cleanUp();
        return Outcome::Unchanged;
    }
    if (!readJournal(error))
        return Outcome::Stuck;
    if (QFileInfo::exists(m_work + QLatin1String(rollBackName)))
        return rollBack(error) ? Outcome::Unchanged : Outcome::Stuck;
    return commit(error);
}

Installer::Outcome Installer::commit(QString* error)
{
    if (replaceFiles(error)) {
        cleanUp();
        return Outcome::Installed;
    }
    QString another;
    return rollBack(&another) ? Outcome::Unchanged : Outcome::Stuck;
}

bool Installer::replaceFiles(QString* error)
{
    for (int number = 0; number < m_entries.size(); ++number) {
        if (QFileInfo::exists(newFile(number)) && !replaceFile(number, error)) // else that was done before
            return false;
    }
    return waitForDisk(m_folder) || failWithErrno(error, m_folder);
}

bool Installer::replaceFile(int number, QString* error)
{
    const auto path = target(number);
    if (!QDir().mkpath(QFileInfo(path).path()))
        return fail(error, QStringLiteral("%1 cannot be made").arg(QFileInfo(path).path()));
    // A copy that was kept by an interrupted run may be half of one.
    QFile::remove(oldFile(number));
    if (m_entries.at(number).existed && !keepFile(path, oldFile(number)))
        return failWithErrno(error, oldFile(number));
    return renameFile(newFile(number), path) || failWithErrno(error, path);
}

// What was replaced comes back and what was not there before goes. The mark says that this has begun: from
// then on going forward is no way any more.
bool Installer::rollBack(QString* error)
{
    if (!createFile(m_work + QLatin1String(rollBackName), error) || !waitForDisk(m_work))
        return false;
    for (int number = 0; number < m_entries.size(); ++number) {
        if (QFileInfo::exists(newFile(number))) // was never put into place
            continue;
        const bool undone =
            !m_entries.at(number).existed
                ? !QFileInfo::exists(target(number)) || QFile::remove(target(number))
                : !QFileInfo::exists(oldFile(number)) || renameFile(oldFile(number), target(number));
        if (!undone)
            return failWithErrno(error, target(number));
    }
    cleanUp();
    return true;
}

// The journal goes first: without it the rest means nothing.
void Installer::cleanUp() const
{
    QFile::remove(InstallFolder::journal(m_folder));
    waitForDisk(m_work);
    QDir(m_work).removeRecursively();
}
