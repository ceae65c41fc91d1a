#include "cache/safepath.h"

#include <QDir>
#include <QFileInfo>

SafePath::SafePath(const QString& root) : m_root(QDir::cleanPath(root)) {}

bool SafePath::isSafeText(const QString& relativePath)
{
    if (relativePath.isEmpty() || relativePath.startsWith(QLatin1Char('/')) ||
        relativePath.endsWith(QLatin1Char('/')))
        return false;
    if (relativePath.contains(QChar::Null) || relativePath.contains(QLatin1Char('\\')))
        return false;
    const auto parts = relativePath.splitRef(QLatin1Char('/'));
    for (const auto& part : parts) {
        if (part.isEmpty() || part == QLatin1String(".") || part == QLatin1String(".."))
            return false;
    }
    return true;
}

QString SafePath::resolve(const QString& relativePath)
{
    if (!isSafeText(relativePath))
        return {};
    const auto slash = relativePath.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0 && !isFolderInside(relativePath.left(slash)))
        return {};
    return m_root + QLatin1Char('/') + relativePath;
}

bool SafePath::isFolderInside(const QString& folder)
{
    const auto known = m_folders.constFind(folder);
    if (known != m_folders.constEnd())
        return *known;
    // The nearest part that exists decides: what is made below it is made by us.
    if (m_canonicalRoot.isEmpty())
        m_canonicalRoot = QFileInfo(m_root).canonicalFilePath();
    bool inside = true;
    QString part = folder;
    while (!part.isEmpty()) {
        const QFileInfo info(m_root + QLatin1Char('/') + part);
        if (info.isSymLink() || info.exists()) {
            const auto canonical = info.canonicalFilePath();
            inside = canonical.startsWith(m_canonicalRoot + QLatin1Char('/'));
            break;
        }
        part = part.left(qMax(part.lastIndexOf(QLatin1Char('/')), 0));
    }
    m_folders.insert(folder, inside);
    return inside;
}
