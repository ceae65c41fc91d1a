#pragma once

#include <QString>

/** Names that the launcher and its updater share: in the folder in which a launcher is installed, and in the
 * environment of the processes that they start. */
struct InstallFolder {
    static QString launcher(const QString& folder) { return folder + QStringLiteral("/velkorlauncher"); }
    static QString updater(const QString& folder) { return folder + QStringLiteral("/updater"); }
    /** Where an updater works. */
    static QString workFolder(const QString& folder) { return folder + QStringLiteral("/.update"); }
    /** While it exists, the files of the folder may be partly old and partly new. */
    static QString journal(const QString& folder) { return workFolder(folder) + QStringLiteral("/journal"); }

    /** The launcher that an updater waits for. */
    static constexpr auto launcherProcessVariable = "VELKOR_LAUNCHER_PROCESS";
    /** The updater could not end what it has begun; the launcher is not to ask it again. */
    static constexpr auto stuckVariable = "VELKOR_UPDATE_STUCK";
};
