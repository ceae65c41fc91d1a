#include "tools/publisher/patchpublisher.h"

#include "download/patchmanager.h"
#include "tools/publisher/patchmaker.h"

#include <QtConcurrent>

#include <mutex>

// A patch that is not smaller by so much is not worth the work of applying it.
static constexpr double worthwhileShare = 0.6;

QVector<PatchPublisher::Pair> PatchPublisher::changedFiles(const Index& oldIndex, const Index& newIndex)
{
    QHash<QString, IndexEntryPtr> old;
    for (const auto& row : oldIndex.entries())
        old.insert(row->name, row);
    QVector<Pair> pairs;
    QSet<QString> seen;
    for (const auto& row : newIndex.entries()) {
        const auto from = old.value(row->name);
        if (!from || from->checksum == row->checksum || row->name.startsWith(QLatin1String("sym:")))
            continue;
        const auto key = from->cachedName + row->checksum;
        if (!seen.contains(key))
            pairs.append({from, row});
        seen.insert(key);
    }
    return pairs;
}

/** Null when there is none that is worth it. */
QByteArray PatchPublisher::patchFor(const Pair& pair) const
{
    QByteArray from;
    QByteArray to;
    if (!m_store.readFile(pair.from->cachedName, &from) || !m_store.readFile(pair.to->cachedName, &to))
        return {};
    const auto patch = makePatch(from, to);
    if (patch.isNull() || patch.size() >= to.size() * worthwhileShare)
        return {};
    // What is published has been tried.
    const auto rebuilt =
        PatchManager::rebuild(from, patch, static_cast<size_t>(to.size()), pair.to->checksum);
    return rebuilt == to ? patch : QByteArray();
}

bool PatchPublisher::publish(const Index& oldIndex, const Index& newIndex, QString* error)
{
    auto pairs = changedFiles(oldIndex, newIndex);
    std::mutex mutex;
    bool done = true;
    QtConcurrent::blockingMap(pairs, [&](const Pair& pair) {
        const auto patch = patchFor(pair);
        const std::lock_guard lock(mutex);
        if (patch.isNull() || !done)
            return;
        done = m_store.writeFile(
            QStringLiteral("patches/%1_%2.patch").arg(pair.from->cachedName, pair.to->checksum), patch,
            error);
        ++m_patches;
        m_patchBytes += patch.size();
        m_fileBytes += pair.to->size;
    });
    return done;
}
