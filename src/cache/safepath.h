#pragma once

#include <QHash>
#include <QString>

/**
 * Turns relative paths that came from outside into paths below one root, and refuses those that would leave
 * it: by their text (absolute, "..", NUL, backslash) or through a symbolic link that stands on the way.
 *
 * Answers about folders are remembered, so one object serves one job. Not for use from several threads at
 * once.
 */
class SafePath
{
public:
    /** root: an absolute folder; it need not exist yet. */
    explicit SafePath(const QString& root);

    /** Whether the text of the path alone keeps it below any root. Looks at no file. */
    static bool isSafeText(const QString& relativePath);

    /** The absolute path, or an empty string when the path is refused. The last component may be a link. */
    QString resolve(const QString& relativePath);

    QString root() const { return m_root; }

private:
    bool isFolderInside(const QString& folder);

    const QString m_root;
    QString m_canonicalRoot;
    QHash<QString, bool> m_folders;
};
