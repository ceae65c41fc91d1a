#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include "index/index.h"

/** Files by relative path. */
using SampleFiles = QMap<QString, QByteArray>;

/** Writes a file and the folders above it; fails the test when that is not possible. */
void writeSample(const QString& path, const QByteArray& bytes);
QByteArray readSample(const QString& path);
/** Every regular file below a folder, with its content. Hidden files are left out. */
SampleFiles readFolder(const QString& folder);

/** Bytes that look random and are the same for the same seed. */
QByteArray sampleBytes(int seed, int size);

QString md5Of(const QByteArray& bytes);

/** What a build is published with besides its files. */
struct SampleExtras {
    bool isProtected = false;
    /** Builds that patches are made from. */
    QStringList previous;
    /** Bytes of a bundle's chunks; 0 for no bundle. */
    int chunkSize = 0;
};

/** A published tree that tests add builds to. */
class SampleTree
{
public:
    QString path() const { return m_folder.filePath(QStringLiteral("tree")); }

    /** Publishes client and resource files as a build of a server; all resources below "first/" are
     * prefetched. */
    void publish(const QString& server, const QString& build, const SampleFiles& client,
                 const SampleFiles& resources = {}, const SampleExtras& extras = {});

    /** Publishes a Wine runtime; what is below "bin/" is made executable. */
    void publishWine(const QString& version, const SampleFiles& files, bool isDevelopment = false);

    /** Makes a build that has been published the current one again. */
    void announce(const QString& server, const QString& build) const;

    /** Puts content into the tree and returns the index row that names it. */
    IndexEntryPtr addContent(const QString& name, const QByteArray& bytes);

    /** The URL path of content. */
    static QString pathOf(const QByteArray& bytes);

private:
    QTemporaryDir m_folder;
    int m_published = 0;
};
