#include "index/index.h"

#include <QSet>

QString Index::getCachedName(const QString& name) const
{
    for (const auto& entry : m_entries) {
        if (entry->name == name)
            return entry->cachedName;
    }
    return {};
}

void Index::combine(const IndexPtr& other)
{
    if (!other)
        return;
    QSet<QString> names;
    names.reserve(m_entries.size());
    for (const auto& entry : qAsConst(m_entries))
        names.insert(entry->name);
    for (const auto& entry : other->entries()) {
        if (!names.contains(entry->name))
            m_entries.append(entry);
    }
}

void Index::combineContents(const IndexPtr& other)
{
    if (!other)
        return;
    QSet<QString> contents;
    contents.reserve(m_entries.size());
    for (const auto& entry : qAsConst(m_entries))
        contents.insert(entry->cachedName);
    for (const auto& entry : other->entries()) {
        if (!contents.contains(entry->cachedName))
            m_entries.append(entry);
    }
}

IndexMap::IndexMap(const IndexPtr& index)
{
    if (!index)
        return;
    for (const auto& entry : index->entries())
        insert(entry->name, entry);
}
