#pragma once

#include "index/index.h"

#include <QObject>

#include <memory>

class QFile;
class ServerIndexLookup;

/**
 * Knows the old build that patches start from, rebuilds files from patches, and counts how that goes. Main
 * thread, but for applyPatch() and rebuild().
 */
class PatchManager : public QObject
{
    Q_OBJECT

public:
    static PatchManager* instance();

    /** Where setBaseIndex() finds the old build. Not owned; null for none. */
    void setIndexLookup(const ServerIndexLookup* lookup) { m_lookup = lookup; }

    /** Takes the main server's installed build as the old one. Without one every file is fetched whole. */
    void setBaseIndex();

    /** The old build's row of the same name; null when there is none, or when its content is the same. */
    IndexEntryPtr getPatchBase(const IndexEntryPtr& entry) const;

    /**
     * Rebuilds a file of newSize bytes from the one at basePath and an open patch file, checks its MD5
     * (checksum, lower-case hexadecimal) and puts it at targetPath in one step. Returns false after a line in
     * the log. Any thread.
     */
    static bool applyPatch(const QString& basePath, const QString& targetPath, size_t newSize,
                           const QString& checksum, QFile* patchFile);

    /** The new content; a null array, and a line in the log, when the patch does not lead there. Any thread.
     */
    static QByteArray rebuild(const QByteArray& oldContent, const QByteArray& patch, size_t newSize,
                              const QString& checksum);

    void countRequested() { ++m_requested; }
    void countApplied() { ++m_applied; }
    void countFailed() { ++m_failed; }
    void resetStats();
    /** Logs one line with the counts. */
    void logStats(const QString& name) const;

private:
    PatchManager() = default;

    const ServerIndexLookup* m_lookup = nullptr;
    std::unique_ptr<IndexMap> m_base;
    int m_requested = 0;
    int m_applied = 0;
    int m_failed = 0;
};
