#include "download/cachescan.h"
#include "download/downloadfromindextask.h"
#include "download/downloadqueue.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

class TestDownloadFromIndexTask : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;

    IndexPtr publish(int files, int bytes)
    {
        auto index = IndexPtr::create();
        for (int i = 0; i < files; ++i)
            index->append(
                m_service->tree().addContent(QStringLiteral("app:/%1").arg(i), sampleBytes(i, bytes)));
        return index;
    }
    std::unique_ptr<DownloadFromIndexTask> newTask(const IndexPtr& index)
    {
        return std::make_unique<DownloadFromIndexTask>("test task", index, m_service->baseUrl(),
                                                       m_cache->path());
    }
    /** Runs a task over the index; returns its error code. */
    int run(const IndexPtr& index)
    {
        const auto task = newTask(index);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        if (finished.isEmpty() && !finished.wait(30000))
            return -1;
        return task->getErrorCode();
    }
    QStringList hiddenFiles() const
    {
        return QDir(m_cache->filePath("ResFiles")).entryList({".updating*"}, QDir::Files | QDir::Hidden);
    }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
    }
    void cleanupTestCase() { m_service.reset(); }

    void fetchesOnlyWhatIsMissing()
    {
        const auto index = publish(30, 1000);
        QCOMPARE(run(index), 0);
        QCOMPARE(int(m_service->content().requests().size()), 30);
        m_service->reset();
        QCOMPARE(run(index), 0);
        QVERIFY(m_service->content().requests().empty());
        QFile::remove(m_cache->filePath("ResFiles/" + index->entries()[3]->cachedName));
        QCOMPARE(run(index), 0);
        QCOMPARE(int(m_service->content().requests().size()), 1);
        QVERIFY(hiddenFiles().isEmpty());
    }

    void reportsAMissingIndex()
    {
        QCOMPARE(run(IndexPtr()), 2);
        QTRY_COMPARE(m_service->backend().exceptionReports().size(), 1);
    }

    void leavesLinksAlone()
    {
        auto index = publish(1, 100);
        index->append(IndexEntryPtr(new IndexEntry("sym:/a", "sym:app:/b", md5Of({}), 0)));
        QCOMPARE(run(index), 0);
        QCOMPARE(int(m_service->content().requests().size()), 1);
    }

    void skipsRowsThatPointOutside()
    {
        auto index = publish(2, 100);
        for (const auto* name : {"../evil", "/tmp/evil", "ab/../../evil", "a\\b"})
            index->append(IndexEntryPtr(new IndexEntry("app:/evil", name, md5Of("x"), 1)));
        QCOMPARE(run(index), 2);
        QCOMPARE(readFolder(m_cache->path()).size(), 2); // the others are there all the same
    }

    void repairsAfterAPowerCut()
    {
        const auto index = publish(20, 3000);
        QCOMPARE(run(index), 0);
        // What a cut leaves behind: names without their content, and the mark.
        writeSample(m_cache->filePath("ResFiles/.updating-99999"), {});
        for (int i = 0; i < 5; ++i)
            writeSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName),
                        sampleBytes(i, 3000).left(i * 512));
        m_service->reset();
        QCOMPARE(run(index), 0);
        QCOMPARE(int(m_service->content().requests().size()), 5);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(readSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName)),
                     sampleBytes(i, 3000));
        QVERIFY(hiddenFiles().isEmpty());
    }

    void marksTheCacheWhileItWrites()
    {
        const auto index = publish(3, 50000);
        m_service->content().faults().set("*", Fault::slow(200000));
        const auto task = newTask(index);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        QTRY_VERIFY(!m_service->content().requests().empty());
        QCOMPARE(hiddenFiles(),
                 QStringList{QStringLiteral(".updating-%1").arg(QCoreApplication::applicationPid())});
        QVERIFY(finished.wait(20000));
        QVERIFY(hiddenFiles().isEmpty());
    }

    void staysPausedFromTheFirstMoment()
    {
        const auto task = newTask(publish(10, 1000));
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        task->pause();
        QVERIFY(!finished.wait(300));
        QVERIFY(m_service->content().requests().empty());
        task->resume();
        QVERIFY(finished.wait());
        QCOMPARE(finished.count(), 1);
        QCOMPARE(int(m_service->content().requests().size()), 10);
    }

    // The scheduler takes any end for the end of what runs in front, so what is paused must not end.
    void doesNotEndWhilePaused()
    {
        const auto index = publish(3, 1000);
        QCOMPARE(run(index), 0);
        const auto task = newTask(index);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        task->resume();
        task->pause();
        QVERIFY(!finished.wait(300));
        task->resume();
        QTRY_COMPARE(finished.count(), 1);
    }

    void cannotWriteWhereAFileIs()
    {
        writeSample(m_cache->filePath("ResFiles"), "in the way");
        QCOMPARE(run(publish(1, 10)), 3);
    }

    void survivesItsOwnEnd()
    {
        const auto index = publish(200, 2000);
        for (int i = 0; i < 5; ++i) {
            const auto task = newTask(index);
            task->go();
            QTest::qWait(i * 5);
        }
        QCOMPARE(run(index), 0);
    }

    void seesWhatIsThere()
    {
        const auto index = publish(4, 10);
        writeSample(m_cache->filePath("ResFiles/" + index->entries()[0]->cachedName),
                    "anything: presence is trusted");
        QDir().mkpath(
            m_cache->filePath("ResFiles/" + index->entries()[1]->cachedName)); // a folder is no file
        index->append(IndexEntryPtr(new IndexEntry("res:/flat", "flat name", md5Of("x"), 7)));
        const auto scan = scanCache(*index, m_cache->path());
        QCOMPARE(scan.checked, 5);
        QCOMPARE(scan.checkedBytes, qint64(47));
        QCOMPARE(scan.missing.size(), 4);
        QCOMPARE(scan.missing.first()->name, QStringLiteral("app:/1"));
        QCOMPARE(scan.missing.last()->name, QStringLiteral("res:/flat"));
    }
};

VELKOR_TEST_MAIN(TestDownloadFromIndexTask)
#include "tst_downloadfromindextask.moc"
