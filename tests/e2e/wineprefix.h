#pragma once

#include <QProcessEnvironment>
#include <QTemporaryDir>

/** A cache folder with a Wine prefix for the system's Wine, in which a crash ends the program at once. What
 * still runs there ends with it. */
class WinePrefix
{
public:
    static constexpr auto wine = "/usr/lib/wine/wine64";

    /** display: where the programs' windows go. */
    explicit WinePrefix(const QString& display);
    ~WinePrefix();
    Q_DISABLE_COPY_MOVE(WinePrefix)

    /** The launcher's cache, with the prefix in it. */
    QString cache() const { return filePath(QStringLiteral("cache")); }
    /** A place beside the cache. */
    QString filePath(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
};
