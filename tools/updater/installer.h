#pragma once

#include "index/index.h"

#include <QString>
#include <QVector>

/**
 * Replaces the files of an installed launcher by those of a newer one, all or none.
 *
 * The new files are written and checked beside the old ones first, below "<install folder>/.update". A
 * journal there, written in one step, is the decision: before it nothing has changed; from then on whoever
 * comes next, after whatever interruption, brings the replacement to its end, or, where that fails, undoes
 * it. Files that the new version does not name stay. One process at a time; others are refused.
 */
class Installer
{
public:
    explicit Installer(const QString& installFolder);
    ~Installer();
    Q_DISABLE_COPY_MOVE(Installer)

    enum class Outcome {
        Installed, // the new launcher is in place
        Unchanged, // the old one is
        Busy,      // another process is at work on it
        Stuck,     // neither is whole; finish() has to be called again
    };

    /** Installs all rows of the index from the cache's content folder. error says why it did not happen. */
    Outcome install(const IndexPtr& index, const QString& resourcesFolder, QString* error);

    /** Ends what an interrupted run has left; Unchanged where there is nothing. */
    Outcome finish(QString* error);

    /** Whether a run was interrupted after its decision. */
    static bool isUnfinished(const QString& installFolder);

private:
    struct Entry {
        QString path; // relative to the install folder
        bool existed; // before the update
    };

    bool lock(QString* error);
    bool prepare(const IndexPtr& index, const QString& resourcesFolder, QString* error);
    bool prepareFile(const IndexEntry& row, const QString& source, QString* error);
    bool writeJournal(QString* error) const;
    bool readJournal(QString* error);
    Outcome commit(QString* error);
    bool replaceFiles(QString* error);
    bool replaceFile(int number, QString* error);
    bool rollBack(QString* error);
    void cleanUp() const;
    QString newFile(int number) const;
    QString oldFile(int number) const;
    QString target(int number) const;

    const QString m_folder;
    const QString m_work;
    QVector<Entry> m_entries;
    int m_lock = -1;
};
