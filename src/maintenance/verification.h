#pragma once

#include "maintenance/cachelisting.h"
#include "maintenance/verifier.h"

/** Counters that another thread reads while a verification runs. */
struct VerificationCounters {
    const std::atomic<bool>* stop;
    std::atomic<int>* filesTotal;
    std::atomic<qint64>* bytesTotal;
    std::atomic<int>* filesDone;
    std::atomic<qint64>* bytesDone;
};

/** One verification: the work that Verifier does on its own threads. */
class Verification
{
public:
    Verification(const QString& cacheFolder, const VerificationCounters& counters, QThreadPool* pool);

    /** Blocks until all is done, or stop is set; runs on a thread of the pool and uses the others. */
    VerifyReport run(const Verifier::KnownFiles& known, bool purge);

private:
    struct Candidate {
        CacheItem item;
        QByteArray md5;
    };
    struct Known {
        QByteArray md5;
        qint64 size = 0;
    };

    void gather(const Index& index);
    void judge(const QVector<CacheItem>& items);
    void checkContents();
    void checkBatch(int first, int last);
    void removeDamaged();
    void purge();
    bool isLeftAlone(const CacheItem& item) const;
    void addDamaged(const CacheItem& item, const char* problem);

    const QString m_cacheFolder;
    const QString m_root;
    const VerificationCounters m_counters;
    QThreadPool* const m_pool;
    const qint64 m_started;
    QHash<QString, Known> m_known;
    QVector<Candidate> m_candidates;
    QVector<CacheItem> m_damagedItems; // as in the report
    QVector<CacheItem> m_extraItems;
    std::mutex m_mutex; // guards the report while batches run
    VerifyReport m_report;
};
