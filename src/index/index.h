#pragma once

#include "index/indexentry.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSharedPointer>

#include <mutex>

class Index;
/** Null means that no index is available. */
using IndexPtr = QSharedPointer<Index>;

/** The files of one build, in the order of its index file. Not changed any more once it is handed around. */
class Index : public LiveCount<Index>
{
public:
    QString getName() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    QString getBuild() const { return m_build; }
    void setBuild(const QString& build) { m_build = build; }

    const QList<IndexEntryPtr>& entries() const { return m_entries; }
    void append(const IndexEntryPtr& entry) { m_entries.append(entry); }
    void reserve(int rows) { m_entries.reserve(rows); }

    /** The cached name of the first row of that name, or an empty string. */
    QString getCachedName(const QString& name) const;

    /** Appends the rows of other whose names are not here yet; null changes nothing. */
    void combine(const IndexPtr& other);
    /** Appends the rows of other whose content is not here yet, whatever their names. */
    void combineContents(const IndexPtr& other);

private:
    QString m_name;
    QString m_build;
    QList<IndexEntryPtr> m_entries;
};

/** An index that one thread replaces and any thread may ask for. */
class PublishedIndex
{
public:
    IndexPtr get() const
    {
        const std::lock_guard lock(m_mutex);
        return m_index;
    }
    void set(const IndexPtr& index)
    {
        const std::lock_guard lock(m_mutex);
        m_index = index;
    }

private:
    mutable std::mutex m_mutex;
    IndexPtr m_index;
};

/** The rows of one index by name; of rows with the same name the last one. */
class IndexMap : public QMap<QString, IndexEntryPtr>
{
public:
    explicit IndexMap(const IndexPtr& index);
};
