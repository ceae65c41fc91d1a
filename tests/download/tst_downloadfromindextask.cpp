#include "download/cachescan.h"
#include "download/downloadfromindextask.h"
#include "download/downloadqueue.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"
#include "tools/publisher/bundlewriter.h"

#include <sys/stat.h>

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
    /** Publishes the bundle of an index, which gets a name for it. */
    void bundle(const IndexPtr& index)
    {
        static int builds = 0;
        index->setBuild(QString::number(++builds));
        index->setName("index.txt");
        QString error;
        if (!BundleWriter(ContentStore(m_service->tree().path()), *index, 20000).write(&error))
            qFatal("%s", qPrintable(error));
    }
    IndexPtr publishBundle(int files, int bytes)
    {
        const auto index = publish(files, bytes);
        bundle(index);
        return index;
    }
    static QString listPath(const IndexPtr& index)
    {
        return QStringLiteral("/bundles/%1/%2.bundle.chunks").arg(index->getBuild(), index->getName());
    }
    /** Requests for files rather than for parts of a bundle. */
    int fileRequests()
    {
        int count = 0;
        for (const auto& logged : m_service->content().requests())
            count += logged.request.path.startsWith("/bundles/") ? 0 : 1;
        return count;
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

    void takesFilesFromAFolder_data()
    {
        QTest::addColumn<bool>("link");
        QTest::newRow("copied") << false;
        QTest::newRow("linked") << true;
    }
    void takesFilesFromAFolder()
    {
        QFETCH(bool, link);
        const auto index = publishBundle(20, 3000); // nearly all is missing, yet no bundle is needed
        const QTemporaryDir old;
        for (int i = 0; i < 20; ++i) {
            auto content = sampleBytes(i, 3000);
            if (i == 3)
                content[100] = static_cast<char>(~content[100]); // damaged
            if (i == 5)
                content.chop(1);
            writeSample(old.filePath(QStringLiteral("game/%1/%2").arg(i % 3).arg(i)), content);
        }
        QFile::link(old.filePath("nowhere"), old.filePath("game/dangling"));
        const auto before = readFolder(old.path());
        const auto task = newTask(index);
        task->adoptFrom({old.path(), link});
        QSignalSpy adopted(task.get(), &DownloadFromIndexTask::filesAdopted);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        QVERIFY(finished.wait(30000));
        QCOMPARE(task->getErrorCode(), 0);
        QCOMPARE(adopted.first(), (QVariantList{18, qint64(18 * 3000)}));
        QStringList fetched;
        for (const auto& logged : m_service->content().requests())
            fetched << logged.request.path;
        fetched.sort();
        QStringList damaged{SampleTree::pathOf(sampleBytes(3, 3000)),
                            SampleTree::pathOf(sampleBytes(5, 3000))};
        damaged.sort();
        QCOMPARE(fetched, damaged);
        QCOMPARE(readFolder(old.path()), before);
        for (int i = 0; i < 20; ++i) {
            const auto path = m_cache->filePath("ResFiles" + SampleTree::pathOf(sampleBytes(i, 3000)));
            QCOMPARE(readSample(path), sampleBytes(i, 3000));
            struct stat status;
            QCOMPARE(::stat(QFile::encodeName(path), &status), 0);
            QCOMPARE(status.st_nlink > 1, link && i != 3 && i != 5);
        }
        QVERIFY(hiddenFiles().isEmpty());
    }

    void looksIntoAFolderThatIsNamedMeanwhile()
    {
        const auto index = publish(60, 20000);
        const QTemporaryDir old;
        for (int i = 0; i < 60; ++i)
            writeSample(old.filePath(QString::number(i)), sampleBytes(i, 20000));
        m_service->content().faults().set("*", Fault::slow(10000));
        const auto task = newTask(index);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        QTRY_VERIFY(!m_service->content().requests().empty());
        task->adoptFrom({old.path(), false});
        QVERIFY(finished.wait(30000));
        QCOMPARE(task->getErrorCode(), 0);
        QVERIFY(m_service->content().requests().size() <= 10); // those that were in flight
        QCOMPARE(readFolder(m_cache->path()).size(), 60);
    }

    void asksWhereThereIsTooLittleRoom_data()
    {
        using Decision = DownloadFromIndexTask::Decision;
        QTest::addColumn<int>("decision");
        QTest::addColumn<int>("error");
        QTest::newRow("continue anyway") << int(Decision::Start) << 0;
        QTest::newRow("give up") << int(Decision::GiveUp) << 3;
    }
    void asksWhereThereIsTooLittleRoom()
    {
        QFETCH(int, decision);
        QFETCH(int, error);
        auto index = publish(3, 1000);
        const auto small = m_service->tree().addContent("app:/huge", "small");
        index->append(
            IndexEntryPtr(new IndexEntry(small->name, small->cachedName, small->checksum, qint64(1) << 60)));
        const auto task = newTask(index);
        int asked = 0;
        task->setReview([&](DownloadFromIndexTask* reviewed) {
            ++asked;
            QVERIFY(reviewed->plan().isShortOfRoom() && reviewed->plan().isLong());
            QVERIFY(readFolder(m_cache->path()).isEmpty());
            QTimer::singleShot(0, reviewed,
                               [=] { reviewed->decide(DownloadFromIndexTask::Decision(decision)); });
        });
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        QVERIFY(finished.wait(30000));
        QCOMPARE(asked, 1);
        QCOMPARE(task->getErrorCode(), error);
        QCOMPARE(readFolder(m_cache->path()).size(), error == 0 ? 4 : 0);
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
        m_service->content().faults().set("*", Fault::slow(10000));
        const auto task = newTask(index);
        QSignalSpy finished(task.get(), &Task::finished);
        task->go();
        QTRY_VERIFY(!m_service->content().requests().empty());
        QCOMPARE(hiddenFiles(),
                 QStringList{QStringLiteral(".updating-%1").arg(QCoreApplication::applicationPid())});
        m_service->content().faults().clear();
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

    void choosesTheBundle_data()
    {
        QTest::addColumn<int>("missing");
        QTest::addColumn<int>("largeMissing");
        QTest::addColumn<bool>("byBundle");
        QTest::newRow("90 of 100") << 90 << 0 << false;
        QTest::newRow("91 of 100") << 91 << 0 << true;
        QTest::newRow("nearly 91 of 100 count as 90") << 90 << 1 << false;
    }
    void choosesTheBundle()
    {
        QFETCH(int, missing);
        QFETCH(int, largeMissing);
        QFETCH(bool, byBundle);
        const auto index = publishBundle(100 + largeMissing, 1000);
        for (int i = missing + largeMissing; i < index->entries().size(); ++i)
            writeSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName), "x");
        m_service->reset();
        QCOMPARE(run(index), 0);
        QCOMPARE(m_service->requestsFor(listPath(index)), byBundle ? 1 : 0);
        QCOMPARE(fileRequests(), byBundle ? 0 : missing + largeMissing);
        for (int i = 0; i < missing; ++i)
            QCOMPARE(readSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName)),
                     sampleBytes(i, 1000));
        QVERIFY(!QFile::exists(m_cache->filePath("ResFiles/bundles")));
        QVERIFY(hiddenFiles().isEmpty());
    }

    void looksAtBytesToo()
    {
        auto index = publish(10, 10);
        index->append(m_service->tree().addContent("app:/large", sampleBytes(77, 5000)));
        bundle(index);
        for (int i = 0; i < 10; ++i)
            writeSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName), "x");
        m_service->reset();
        QCOMPARE(run(index), 0);
        QCOMPARE(m_service->requestsFor(listPath(index)), 1);
        QCOMPARE(fileRequests(), 0);
    }

    void goesOnWithoutABrokenBundle_data()
    {
        QTest::addColumn<QString>("path"); // below the bundle's own
        QTest::addColumn<int>("fault");
        QTest::newRow("no list") << ".chunks" << 404;
        QTest::newRow("list is no list") << ".chunks" << 1;
        QTest::newRow("chunk missing") << ".1" << 404;
        QTest::newRow("chunk broken") << ".1" << 1;
        QTest::newRow("record broken") << "" << 0;
    }
    void goesOnWithoutABrokenBundle()
    {
        QFETCH(QString, path);
        QFETCH(int, fault);
        auto index = publish(20, 3000);
        if (fault == 0) { // the chunks are as listed, but their content is another one's
            auto other = IndexPtr::create();
            for (const auto& entry : index->entries())
                other->append(entry);
            other->append(m_service->tree().addContent("app:/y", "y"));
            std::swap(index, other);
            bundle(other);
            index->setName(other->getName());
            index->setBuild(other->getBuild());
        } else {
            bundle(index);
            m_service->content().faults().set(listPath(index).chopped(7) + path,
                                              fault == 1 ? Fault::wrongBytes() : Fault::answerWith(fault));
        }
        m_service->content().clearRequests();
        QCOMPARE(run(index), 0);
        QCOMPARE(m_service->requestsFor(listPath(index)), 1);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(readSample(m_cache->filePath("ResFiles/" + index->entries()[i]->cachedName)),
                     sampleBytes(i, 3000));
        QVERIFY(!QFile::exists(m_cache->filePath("ResFiles/bundles")));
        QVERIFY(hiddenFiles().isEmpty());
    }

    void goesOnWithTheChunksItHas()
    {
        const auto index = publishBundle(20, 3000);
        const auto folder = "bundles/" + index->getBuild();
        const auto chunk = "/" + index->getName() + ".bundle.0";
        writeSample(m_cache->filePath("ResFiles/" + folder + chunk),
                    readSample(m_service->tree().path() + "/" + folder + chunk));
        writeSample(m_cache->filePath("ResFiles/.updating-99999"), {}); // the launcher died meanwhile
        m_service->reset();
        QCOMPARE(run(index), 0);
        QCOMPARE(m_service->requestsFor("/" + folder + chunk), 0);
        QCOMPARE(fileRequests(), 0);
    }

    void pausesAnywhereInABundle()
    {
        const auto index = publishBundle(40, 30000);
        for (int pauseAt = 0; pauseAt < 60; pauseAt += 3) {
            m_cache = std::make_unique<QTemporaryDir>();
            const auto task = newTask(index);
            QSignalSpy finished(task.get(), &Task::finished);
            task->go();
            QTest::qWait(pauseAt);
            task->pause();
            const int before = finished.count();
            QTest::qWait(30);
            QCOMPARE(finished.count(), before);
            task->resume();
            QTRY_COMPARE(finished.count(), 1);
            QCOMPARE(task->getErrorCode(), 0);
        }
    }

    void endsInTheMiddleOfUnpacking()
    {
        const auto index = publishBundle(300, 100000);
        for (int i = 0; i < 6; ++i) {
            const auto task = newTask(index);
            task->go();
            QTest::qWait(i * 60);
        }
        QCOMPARE(run(index), 0);
    }
};

VELKOR_TEST_MAIN(TestDownloadFromIndexTask)
#include "tst_downloadfromindextask.moc"
