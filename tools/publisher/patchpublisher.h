#pragma once

#include "index/index.h"
#include "tools/publisher/contentstore.h"

/** Adds patches from an earlier build's files to a tree, for those that have changed. */
class PatchPublisher
{
public:
    explicit PatchPublisher(const ContentStore& store) : m_store(store) {}

    /** Makes the patches that are worth it, several at a time. Returns false and explains in error when one
     * cannot be written. */
    bool publish(const Index& oldIndex, const Index& newIndex, QString* error);

    int patchCount() const { return m_patches; }
    qint64 patchBytes() const { return m_patchBytes; }
    /** Bytes of the files that the patches lead to. */
    qint64 fileBytes() const { return m_fileBytes; }

private:
    struct Pair {
        IndexEntryPtr from;
        IndexEntryPtr to;
    };
    static QVector<Pair> changedFiles(const Index& oldIndex, const Index& newIndex);
    QByteArray patchFor(const Pair& pair) const;

    const ContentStore& m_store;
    int m_patches = 0;
    qint64 m_patchBytes = 0;
    qint64 m_fileBytes = 0;
};
