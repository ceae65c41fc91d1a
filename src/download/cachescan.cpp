#include "download/cachescan.h"

#include "cache/safepath.h"

#include <QFile>
#include <QtConcurrent>

#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>

namespace
{
/** The rows of one folder of the cache. */
struct Group {
    QString folder; // absolute
    std::vector<int> rows;
    bool outside = false;
};

using Names = std::unordered_set<std::string>;

/** The names of the regular files in a folder; none when it cannot be listed. */
Names listFiles(const QString& folder)
{
    Names names;
    DIR* directory = ::opendir(QFile::encodeName(folder).constData());
    if (!directory)
        return names;
    while (const auto* item = ::readdir(directory)) {
        bool regular = item->d_type == DT_REG;
        if (item->d_type == DT_UNKNOWN) {
            struct stat status;
            regular = ::fstatat(::dirfd(directory), item->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                      S_ISREG(status.st_mode);
        }
        if (regular)
            names.emplace(item->d_name);
    }
    ::closedir(directory);
    return names;
}

enum RowState : char { Present, Missing, Refused, Link };

/** Puts the rows into groups by folder and judges the text of their paths. */
std::vector<Group> groupRows(const QList<IndexEntryPtr>& entries, const QString& root,
                             std::vector<char>* states)
{
    std::vector<Group> groups;
    QHash<QStringRef, size_t> groupOfFolder;
    SafePath paths(root);
    for (int row = 0; row < entries.size(); ++row) {
        const auto& name = entries[row]->cachedName;
        auto& state = (*states)[static_cast<size_t>(row)];
        if (name.startsWith(QLatin1String("sym:"))) {
            state = Link;
            continue;
        }
        if (!SafePath::isSafeText(name)) {
            state = Refused;
            continue;
        }
        const auto folder = name.leftRef(qMax(name.lastIndexOf(QLatin1Char('/')), 0));
        auto group = groupOfFolder.constFind(folder);
        if (group == groupOfFolder.constEnd()) {
            Group fresh{root + QLatin1Char('/') + folder.toString(), {}, paths.resolve(name).isEmpty()};
            groups.push_back(std::move(fresh));
            group = groupOfFolder.insert(folder, groups.size() - 1);
        }
        groups[*group].rows.push_back(row);
    }
    return groups;
}

void lookForRows(const Group& group, const QList<IndexEntryPtr>& entries, std::vector<char>* states)
{
    if (group.outside) {
        for (const int row : group.rows)
            (*states)[static_cast<size_t>(row)] = Refused;
        return;
    }
    const auto names = listFiles(group.folder);
    std::string name;
    for (const int row : group.rows) {
        const auto& cachedName = entries[row]->cachedName;
        const auto encoded = QFile::encodeName(cachedName.mid(cachedName.lastIndexOf(QLatin1Char('/')) + 1));
        name.assign(encoded.constData(), static_cast<size_t>(encoded.size()));
        if (names.find(name) == names.end())
            (*states)[static_cast<size_t>(row)] = Missing;
    }
}
} // namespace

CacheScan scanCache(const Index& index, const QString& cacheRoot)
{
    const auto& entries = index.entries();
    std::vector<char> states(static_cast<size_t>(entries.size()), Present);
    auto groups = groupRows(entries, QDir::cleanPath(cacheRoot + QStringLiteral("/ResFiles")), &states);
    // Each group writes the states of its own rows only.
    QtConcurrent::blockingMap(groups, [&](const Group& group) { lookForRows(group, entries, &states); });

    CacheScan scan;
    for (int row = 0; row < entries.size(); ++row) {
        const auto& entry = entries[row];
        const auto state = states[static_cast<size_t>(row)];
        if (state == Refused) {
            if (scan.refused++ == 0)
                scan.firstRefused = entry->cachedName;
        } else if (state != Link) {
            ++scan.checked;
            scan.checkedBytes += entry->size;
            if (state == Missing)
                scan.missing.append(entry);
        }
    }
    return scan;
}
