#include "shell/updaterstarter.h"

#include "cache/installfolder.h"
#include "cache/md5many.h"
#include "cache/safepath.h"
#include "index/indexfile.h"
#include "settings/settings.h"
#include "telemetry/exceptionlogger.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

UpdaterStarter::UpdaterStarter(const QString& cacheFolder, const QString& version, const IndexPtr& index)
    : m_cacheFolder(cacheFolder), m_version(version), m_index(index)
{
}

QString UpdaterStarter::indexPath(const QString& cacheFolder, const QString& version)
{
    return QStringLiteral("%1/velkorlauncher_linux_%2.txt").arg(cacheFolder, version);
}

QString UpdaterStarter::start() const
{
    const auto row = findRow();
    if (!row)
        return tr("it has no updater.");
    if (!copy(*row)) {
        qWarning() << "Couldn't update updater - aborting update";
        return tr("the updater could not be copied.");
    }
    if (!run()) {
        reportException("RuntimeError", QStringLiteral("Updater failed to start"), "updatedialog",
                        "performAutoUpdate", __LINE__);
        return tr("the updater could not be started.");
    }
    return {};
}

/** The updater of the new version, or else of this one; null when there is none. */
IndexEntryPtr UpdaterStarter::findRow() const
{
    const auto name = QStringLiteral("app:/updater");
    const auto find = [&](const IndexPtr& index) {
        const auto row = index ? IndexMap(index).value(name) : IndexEntryPtr();
        return row && SafePath::isSafeText(row->cachedName) ? row : IndexEntryPtr();
    };
    if (const auto row = find(m_index))
        return row;
    qWarning() << "Couldn't locate updater entry in launcher-index - trying to locate old entry...";
    const auto old = indexPath(m_cacheFolder, Settings::instance()->getVersion());
    auto row = find(QFileInfo::exists(old) ? getIndexFromFile(old) : IndexPtr());
    if (!row)
        qWarning() << "Couldn't locate old updater entry in launcher-index - aborting update";
    return row;
}

bool UpdaterStarter::copy(const IndexEntry& row) const
{
    const auto source = m_cacheFolder + QStringLiteral("/ResFiles/") + row.cachedName;
    const auto target = InstallFolder::updater(m_cacheFolder);
    constexpr auto executable = QFileDevice::Permissions(0x7755);
    qDebug().noquote() << "Copying updater from" << source << "to" << target;
    QFile::remove(target);
    return QFile::copy(source, target) && md5OfFiles({target}).first() == row.checksum.toLatin1() &&
           QFile::setPermissions(target, executable);
}

bool UpdaterStarter::run() const
{
    QProcess updater;
    updater.setProgram(InstallFolder::updater(m_cacheFolder));
    updater.setArguments({m_cacheFolder + QStringLiteral("/ResFiles"), indexPath(m_cacheFolder, m_version),
                          QCoreApplication::applicationDirPath()});
    updater.setWorkingDirectory(m_cacheFolder);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(InstallFolder::launcherProcessVariable),
                       QString::number(QCoreApplication::applicationPid()));
    updater.setProcessEnvironment(environment);
    qDebug().noquote() << "Running updater from" << updater.program();
    qDebug().noquote() << "Updater arguments:" << updater.arguments().join(QStringLiteral(", "));
    return updater.startDetached();
}
