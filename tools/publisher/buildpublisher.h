#pragma once

#include "tools/publisher/contentstore.h"

#include <QStringList>

/** What a build is made of. */
struct BuildOptions {
    QString server;
    QString build;
    /** Folder of the client's files. */
    QString from;
    QString tree;
    /** Folder of the resource files; empty for none. */
    QString resources;
    /** Globs over the resources' relative paths: which of them are fetched before the client may start. */
    QStringList prefetch;
    /** The index may be fetched with a token only. */
    bool isProtected = false;
};

/** Publishes one build of one server into a tree of static files. */
class BuildPublisher
{
public:
    explicit BuildPublisher(const BuildOptions& options);

    /** Returns false and explains in error when something is wrong; the build is then not announced. */
    bool publish(QString* error);

    int fileCount() const { return m_files; }
    qint64 byteCount() const { return m_bytes; }

private:
    bool checkOptions(QString* error) const;
    bool addClientFiles(QString* error);
    bool addResources(QString* error);
    bool addStartIni(QString* error);
    bool announce(QString* error);
    bool addTextFile(const QString& name, const QByteArray& text, QString* error);
    bool addRow(QByteArray* index, const QString& name, const StoredContent& content, int mode,
                QString* error);
    bool addLink(const QString& path, const QString& relativePath, QString* error);

    const BuildOptions m_options;
    ContentStore m_store;
    QByteArray m_index;
    int m_files = 0;
    qint64 m_bytes = 0;
};
