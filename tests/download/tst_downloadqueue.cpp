#include "download/downloadqueue.h"
#include "download/patchmanager.h"
#include "index/serverindexlookup.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"
#include "tools/publisher/patchmaker.h"

/** Makes one row the old build for as long as it lives. */
class BaseBuild : public ServerIndexLookup
{
public:
    explicit BaseBuild(const IndexEntryPtr& row) : m_index(IndexPtr::create())
    {
        m_index->append(row);
        PatchManager::instance()->setIndexLookup(this);
        PatchManager::instance()->setBaseIndex();
        PatchManager::instance()->setIndexLookup(nullptr);
    }
    ~BaseBuild() override { PatchManager::instance()->setBaseIndex(); }
    Q_DISABLE_COPY_MOVE(BaseBuild)
    IndexPtr installedIndex(const QString& /*key*/) const override { return m_index; }

private:
    const IndexPtr m_index;
};

class TestDownloadQueue : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<DownloadQueue> m_queue;

    QString localFile(const QByteArray& content) const
    {
        return m_cache->filePath("ResFiles" + SampleTree::pathOf(content));
    }
    void add(const QByteArray& content) { m_queue->enqueue(m_service->tree().addContent("app:/x", content)); }
    /** Runs the queue to its end; returns its error. */
    int run()
    {
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        m_queue->startDownload();
        if (finished.isEmpty() && !finished.wait(30000))
            return -1;
        QTest::qWait(0);
        return finished.count() == 1 ? m_queue->getError() : -2;
    }
    QStringList files() const { return readFolder(m_cache->path()).keys(); }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        m_queue = std::make_unique<DownloadQueue>(m_service->baseUrl(), m_cache->path(), "test queue");
        m_queue->setRetryDelay(20);
    }
    void cleanupTestCase()
    {
        m_queue.reset();
        m_service.reset();
    }

    void finishesAtOnceWhenEmpty()
    {
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        m_queue->startDownload();
        QCOMPARE(finished.count(), 1);
        QCOMPARE(m_queue->getError(), 0);
    }

    void downloadsManyFiles()
    {
        QVector<QByteArray> contents;
        for (int i = 0; i < 200; ++i)
            contents << sampleBytes(i, i * 500);
        for (const auto& content : contents)
            add(content);
        QSignalSpy progress(m_queue.get(), &DownloadQueue::progressUpdate);
        QCOMPARE(run(), 0);
        for (const auto& content : contents)
            QCOMPARE(readSample(localFile(content)), content);
        QVERIFY(!progress.isEmpty());
        QVERIFY(QRegularExpression("^\\d+ of 200 files \\([\\d.]+ [KM]?B\\)$")
                    .match(progress.last().at(1).toString())
                    .hasMatch());
        for (const auto& report : progress)
            QVERIFY(report.at(0).toFloat() <= 1.0F);
    }

    void asksOnceForRowsThatShareContent()
    {
        const QByteArray content = "shared";
        add(content);
        add(content);
        add("other");
        QCOMPARE(run(), 0);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(content)), 1);
    }

    void dropsWhatIsThereByNow()
    {
        add("there");
        writeSample(localFile("there"), "there");
        QCOMPARE(run(), 0);
        QVERIFY(m_service->content().requests().empty());
    }

    void dealsWithFaults_data()
    {
        QTest::addColumn<int>("kind"); // status, or a negative number for a fault of another kind
        QTest::addColumn<int>("times");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("requests");
        constexpr int cut = -1;
        constexpr int wrong = -2;
        QTest::newRow("missing") << 404 << -1 << 2 << 1;
        QTest::newRow("forbidden") << 403 << -1 << 2 << 1;
        QTest::newRow("gone away for good") << 500 << -1 << 2 << 11;
        QTest::newRow("gone away ten times") << 500 << 10 << 0 << 11;
        QTest::newRow("cut for good") << cut << -1 << 2 << 11;
        QTest::newRow("cut ten times") << cut << 10 << 0 << 11;
        QTest::newRow("wrong for good") << wrong << -1 << 2 << 4;
        QTest::newRow("wrong three times") << wrong << 3 << 0 << 4;
    }
    void dealsWithFaults()
    {
        QFETCH(int, kind);
        QFETCH(int, times);
        QFETCH(int, error);
        const auto content = sampleBytes(77, 100000);
        const auto path = SampleTree::pathOf(content);
        m_service->content().faults().set(path, kind == -1   ? Fault::cut(times)
                                                : kind == -2 ? Fault::wrongBytes(times)
                                                             : Fault::answerWith(kind, times));
        add(content);
        QCOMPARE(run(), error);
        QTEST(m_service->requestsFor(path), "requests");
        QCOMPARE(readSample(localFile(content)), error == 0 ? content : QByteArray());
        QTRY_COMPARE(m_service->backend().exceptionReports().size(), error != 0 && kind != -2 ? 1 : 0);
    }

    void startsNothingNewAfterAFailure()
    {
        m_service->content().faults().set(SampleTree::pathOf("bad"), Fault::answerWith(404));
        add("bad");
        for (int i = 0; i < 100; ++i)
            add(sampleBytes(i, 20000));
        QCOMPARE(run(), 2);
        QVERIFY(m_service->content().requests().size() < 60);
    }

    void failsAtOnceWhenRefused()
    {
        add("content");
        m_service->backend().refuse(m_service->content());
        QCOMPARE(run(), 2);
        m_service->backend().accept(m_service->content());
    }

    void triesAgainAfterAStall()
    {
        const auto content = sampleBytes(5, 400000);
        m_service->content().faults().set(SampleTree::pathOf(content), Fault::stall(2));
        m_queue->setStallTimeout(500);
        add(content);
        QCOMPARE(run(), 0);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(content)), 3);
        QCOMPARE(readSample(localFile(content)), content);
    }

    // More requests than connections: those that wait for their turn must not count as stalled.
    void isPatientWithRequestsThatWait()
    {
        for (int i = 0; i < 12; ++i) {
            const auto content = sampleBytes(1000 + i, 300000);
            m_service->content().faults().set(SampleTree::pathOf(content), Fault::slow(200000));
            add(content);
        }
        m_queue->setStallTimeout(1000);
        QCOMPARE(run(), 0);
        QCOMPARE(int(m_service->content().requests().size()), 12);
    }

    void pausesAndResumes()
    {
        for (int i = 0; i < 40; ++i)
            add(sampleBytes(i, 30000));
        m_service->content().faults().set("*", Fault::slow(30000));
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        m_queue->startDownload();
        QTRY_VERIFY(m_service->content().requests().size() >= 3);
        m_queue->pauseDownload();
        const int waiting = m_queue->getSize();
        QVERIFY(waiting > 0);
        QVERIFY(!finished.wait(300));
        QCOMPARE(m_queue->getSize(), waiting);
        m_service->content().faults().clear();
        QCOMPARE(run(), 0);
        QCOMPARE(files().size(), 40);
    }

    void refusesToLeaveTheCache_data()
    {
        QTest::addColumn<QString>("cachedName");
        QTest::newRow("parent") << "../../escaped";
        QTest::newRow("absolute") << "/tmp/velkor-escaped";
        QTest::newRow("through a link") << "out/escaped";
    }
    void refusesToLeaveTheCache()
    {
        QFETCH(QString, cachedName);
        const QTemporaryDir outside;
        QDir().mkpath(m_cache->filePath("ResFiles"));
        QFile::link(outside.path(), m_cache->filePath("ResFiles/out"));
        m_queue->enqueue(IndexEntryPtr(new IndexEntry("app:/x", cachedName, md5Of("x"), 1)));
        QCOMPARE(run(), 2);
        QVERIFY(m_service->content().requests().empty());
        QVERIFY(QDir(outside.path()).isEmpty());
    }

    void stopsWhenNothingCanBeStored()
    {
        writeSample(m_cache->filePath("ResFiles"), "in the way");
        add("content");
        QCOMPARE(run(), 3);
        QVERIFY(m_service->content().requests().empty());
    }

    void patchesWhatItHas_data()
    {
        QTest::addColumn<QByteArray>("patch"); // null for the right one
        QTest::addColumn<bool>("hasBase");
        QTest::addColumn<bool>("applies");
        QTest::newRow("good patch") << QByteArray() << true << true;
        QTest::newRow("no patch on the server") << QByteArray("none") << true << false;
        QTest::newRow("no base in the cache") << QByteArray() << false << false;
        QTest::newRow("wrong magic") << QByteArray("QZMPATCX\1\0\0\0", 12) << true << false;
        QTest::newRow("cut") << makePatch(sampleBytes(1, 50000), sampleBytes(1, 50001)).chopped(5) << true
                             << false;
        QTest::newRow("leads elsewhere")
            << makePatch(sampleBytes(1, 50000), sampleBytes(1, 50000) + "?") << true << false;
    }
    void patchesWhatItHas()
    {
        QFETCH(QByteArray, patch);
        QFETCH(bool, hasBase);
        QFETCH(bool, applies);
        const auto from = sampleBytes(1, 50000);
        const auto to = from + "!";
        if (patch.isNull())
            patch = makePatch(from, to);
        const auto path = QStringLiteral("/patches%1_%2.patch").arg(SampleTree::pathOf(from), md5Of(to));
        QFile::remove(m_service->tree().path() + path);
        if (patch != "none")
            writeSample(m_service->tree().path() + path, patch);
        if (hasBase)
            writeSample(localFile(from), from);
        const BaseBuild base(m_service->tree().addContent("app:/x", from));
        add(to);
        float last = 0;
        connect(m_queue.get(), &DownloadQueue::progressUpdate, this,
                [&](float fraction) { last = fraction; });
        QCOMPARE(run(), 0);
        QCOMPARE(readSample(localFile(to)), to);
        QCOMPARE(m_service->requestsFor(path), hasBase ? 1 : 0);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(to)), applies ? 0 : 1);
        QCOMPARE(files().size(), hasBase ? 2 : 1); // nothing is left of the patch
    }

    // The retries of a file are all there when its patch has failed.
    void patchesUseUpNoRetry()
    {
        const auto from = sampleBytes(1, 50000);
        const auto to = from + "?!";
        writeSample(localFile(from), from);
        writeSample(m_service->tree().path() +
                        QStringLiteral("/patches%1_%2.patch").arg(SampleTree::pathOf(from), md5Of(to)),
                    "nonsense");
        const BaseBuild base(m_service->tree().addContent("app:/x", from));
        add(to);
        m_queue->setRetryDelay(1);
        m_service->content().faults().set(SampleTree::pathOf(to), Fault::answerWith(500, 10));
        QCOMPARE(run(), 0);
        QCOMPARE(readSample(localFile(to)), to);
    }

    void canBeUsedAgain()
    {
        const auto content = sampleBytes(5, 1000);
        m_service->content().faults().set(SampleTree::pathOf(content), Fault::answerWith(404, 1));
        add(content);
        QCOMPARE(run(), 2);
        m_queue->clear();
        QCOMPARE(m_queue->getError(), 0);
        QCOMPARE(m_queue->getBytesToDownload(), qint64(0));
        add(content);
        QCOMPARE(run(), 0);
    }
};

VELKOR_TEST_MAIN(TestDownloadQueue)
#include "tst_downloadqueue.moc"
