#pragma once

#include "tools/publisher/indexwriter.h"

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
    /** Builds that patches are made from; their indexes and files are in the tree. */
    QStringList previous;
    /** Whether bundles are made for the client's and the prefetched files. */
    bool bundle = false;
    int chunkSize = 64 << 20;
};

/** Publishes one build of one server into a tree of static files. */
class BuildPublisher
{
public:
    explicit BuildPublisher(const BuildOptions& options);

    /** Returns false and explains in error when something is wrong; the build is then not announced. */
    bool publish(QString* error);

    int fileCount() const { return m_index.fileCount() + m_resourceFiles; }
    qint64 byteCount() const { return m_index.byteCount() + m_resourceBytes; }
    int patchCount() const { return m_patches; }
    qint64 patchByteCount() const { return m_patchBytes; }
    /** Bytes of the files that the patches lead to. */
    qint64 patchedByteCount() const { return m_patchedBytes; }

private:
    bool checkOptions(QString* error) const;
    bool addClientFiles(QString* error);
    bool addResources(QString* error);
    bool addStartIni(QString* error);
    bool addPatches(QString* error);
    bool addBundles(QString* error);
    bool announce(QString* error);

    const BuildOptions m_options;
    ContentStore m_store;
    IndexWriter m_index;
    QByteArray m_prefetchIndex;
    int m_patches = 0;
    qint64 m_patchBytes = 0;
    qint64 m_patchedBytes = 0;
    int m_resourceFiles = 0;
    qint64 m_resourceBytes = 0;
};
