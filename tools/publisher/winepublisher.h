#pragma once

#include <QString>

class ContentStore;
class QJsonArray;

/** What a Wine version is made of. */
struct WineOptions {
    QString version;
    /** Folder of the runtime: its programs are in "bin" below. */
    QString from;
    QString tree;
    /** Announce it to those who want development versions, instead of to all. */
    bool isDevelopment = false;
};

/** Publishes one version of the Wine runtime into a tree of static files, with its links and modes. */
class WinePublisher
{
public:
    explicit WinePublisher(const WineOptions& options) : m_options(options) {}

    /**
     * Makes the version the first of its list; the others stay. Returns false and explains in error when
     * something is wrong; the version is then not announced.
     */
    bool publish(QString* error);

    int fileCount() const { return m_files; }
    qint64 byteCount() const { return m_bytes; }

private:
    bool checkOptions(QString* error) const;
    bool readVersions(const ContentStore& store, const QString& listName, QJsonArray* versions,
                      QString* error) const;

    const WineOptions m_options;
    int m_files = 0;
    qint64 m_bytes = 0;
};
