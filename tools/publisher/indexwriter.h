#pragma once

#include "tools/publisher/contentstore.h"

#include <QStringList>

/** Puts files into a tree and writes the rows of the index that names them. */
class IndexWriter
{
public:
    /** The store must outlive the writer. */
    explicit IndexWriter(ContentStore* store) : m_store(store) {}

    /** All files and links below a folder, by relative path, sorted. */
    static QStringList listFolder(const QString& folder);

    /**
     * Adds every file and every link below the folder, but for those relative paths that are left out. Like
     * all that follow, returns false and explains in error when something cannot be published.
     */
    bool addFolder(const QString& folder, const QStringList& leftOut, QString* error);
    bool addFile(const QString& name, const QString& path, QString* error);
    bool addBytes(const QString& name, const QByteArray& bytes, QString* error);

    QByteArray text() const { return m_text; }
    /** The row that was added last, with its line feed. */
    QByteArray lastRow() const { return m_text.mid(m_text.lastIndexOf('\n', m_text.size() - 2) + 1); }
    int fileCount() const { return m_files; }
    qint64 byteCount() const { return m_bytes; }

private:
    bool addLink(const QString& folder, const QString& relativePath, QString* error);
    bool addRow(const QString& name, const StoredContent& content, int mode, QString* error);

    ContentStore* const m_store;
    QByteArray m_text;
    int m_files = 0;
    qint64 m_bytes = 0;
};
