#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

/** Content that is in the tree: what an index row says of it. */
struct StoredContent {
    QString cachedName; // "<2 hex>/<16 hex>_<md5>"
    QString md5;
    qint64 size = 0;
};

/**
 * The content-addressed part of a tree: the same bytes are one file, however many names point to it. Files
 * are written to a temporary name and renamed.
 */
class ContentStore
{
public:
    explicit ContentStore(const QString& tree);

    /** Adds a file. Returns none and explains in error when it cannot be read or is too large for an index.
     */
    std::optional<StoredContent> addFile(const QString& path, QString* error);
    std::optional<StoredContent> addBytes(const QByteArray& bytes, QString* error);

    /** Reads a file of the tree; returns false when that is not possible. */
    bool readFile(const QString& relativePath, QByteArray* bytes) const;

    static QString cachedNameFor(const QString& md5);

    /** Writes a file of the tree by way of a temporary name. */
    bool writeFile(const QString& relativePath, const QByteArray& bytes, QString* error) const;

private:
    const QString m_tree;
};
