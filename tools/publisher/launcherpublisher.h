#pragma once

#include <QString>

/** What a version of the launcher is made of. */
struct LauncherOptions {
    QString version;
    /** Folder of an installed launcher, with "velkorlauncher" and "updater" at its top. */
    QString from;
    QString tree;
    /** Who gets it: release, beta or dev. */
    QString channel;
};

/** Publishes one version of the launcher into a tree of static files. */
class LauncherPublisher
{
public:
    explicit LauncherPublisher(const LauncherOptions& options) : m_options(options) {}

    /** Makes the version the channel's current one. Returns false and explains in error when something is
     * wrong; the version is then not announced. */
    bool publish(QString* error);

    int fileCount() const { return m_files; }
    qint64 byteCount() const { return m_bytes; }

private:
    bool checkOptions(QString* error) const;

    const LauncherOptions m_options;
    int m_files = 0;
    qint64 m_bytes = 0;
};
