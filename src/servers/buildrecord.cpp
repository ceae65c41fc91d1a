#include "servers/buildrecord.h"

#include "index/indexfile.h"
#include "settings/settings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QSaveFile>

// Nothing has been installed yet: not a failure to report.
static IndexPtr loadIfThere(const QString& path)
{
    return QFile::exists(path) ? getIndexFromFile(path) : IndexPtr();
}

BuildRecord::BuildRecord(const QString& name)
    : m_name(name), m_lastDownloaded(Settings::instance()->store().value(settingsKey()).toString())
{
}

QString BuildRecord::stagingFolder() const
{
    return QDir::cleanPath(Settings::instance()->getCacheFolder() + QStringLiteral("/wineenv/drive_c/") +
                           m_name);
}

QString BuildRecord::settingsKey() const { return QStringLiteral("LauncherLastDownloaded/%1").arg(m_name); }

QString BuildRecord::cachedIndexPath() const
{
    return QDir::cleanPath(
        QStringLiteral("%1/index_%2.txt").arg(Settings::instance()->getCacheFolder(), m_name));
}

QString BuildRecord::installedIndexPath() const
{
    return QDir::cleanPath(
        QStringLiteral("%1/index_%2_installed.txt").arg(Settings::instance()->getCacheFolder(), m_name));
}

IndexPtr BuildRecord::loadIndex() const { return loadIfThere(cachedIndexPath()); }

IndexPtr BuildRecord::loadInstalledIndex(const IndexPtr& newest) const
{
    return QFile::exists(installedIndexPath()) ? getIndexFromFile(installedIndexPath()) : newest;
}

IndexPtr BuildRecord::loadPrefetchIndex() const
{
    return loadIfThere(stagingFolder() + QStringLiteral("/resfileindex_prefetch.txt"));
}

void BuildRecord::keepIndex(const QByteArray& bytes, const QString& build) const
{
    if (!m_lastDownloaded.isEmpty() && build != m_lastDownloaded && !QFile::exists(installedIndexPath()))
        QFile::rename(cachedIndexPath(), installedIndexPath());
    QSaveFile file(cachedIndexPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        qDebug().noquote() << "The index could not be kept in" << file.fileName() << file.errorString();
}

void BuildRecord::dropInstalledIndex() const { QFile::remove(installedIndexPath()); }

QString BuildRecord::installedBuild() const
{
    // A record that is there but empty says that files have been lost.
    const bool filesLost =
        m_lastDownloaded.isEmpty() && Settings::instance()->store().contains(settingsKey());
    return filesLost ? QString() : stagingFolderBuild();
}

QString BuildRecord::stagingFolderBuild() const
{
    const auto path = stagingFolder() + QStringLiteral("/start.ini");
    if (!QFile::exists(path)) {
        qDebug().noquote() << path << "not found, cannot read staging-folder build";
        return {};
    }
    const QSettings ini(path, QSettings::IniFormat);
    if (ini.status() == QSettings::FormatError) {
        qDebug().noquote() << "Invalid INI format of " << path;
        return {};
    }
    return ini.value(QStringLiteral("main/build")).toString();
}

void BuildRecord::save() const
{
    qDebug().noquote() << "Saving" << m_name << m_lastDownloaded << "in registry";
    Settings::instance()->store().setValue(settingsKey(), m_lastDownloaded);
}
