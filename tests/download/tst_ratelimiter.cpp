#include "download/downloader.h"
#include "download/downloadqueue.h"
#include "download/ratelimiter.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

namespace
{
constexpr int fileSize = 6000000;
}

/** The download limit and the hold, on real transfers. */
class TestRateLimiter : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<DownloadQueue> m_queue;
    RateLimiter* const m_limiter = RateLimiter::instance();
    QVector<QByteArray> m_contents;

    /** What stands in the cache by now, in bytes. */
    qint64 stored() const
    {
        qint64 bytes = 0;
        const auto files = readFolder(m_cache->path());
        for (const auto& file : files)
            bytes += file.size();
        return bytes;
    }
    void start(int count)
    {
        m_contents.clear();
        for (int i = 0; i < count; ++i) {
            m_contents << sampleBytes(i, fileSize);
            m_queue->enqueue(m_service->tree().addContent("app:/x", m_contents.last()));
        }
        m_queue->startDownload();
    }
    void verifyComplete()
    {
        QCOMPARE(m_queue->getError(), 0);
        QCOMPARE(readFolder(m_cache->path()).size(), m_contents.size());
        for (const auto& content : qAsConst(m_contents))
            QCOMPARE(readSample(m_cache->filePath("ResFiles" + SampleTree::pathOf(content))), content);
    }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void init()
    {
        m_service->reset();
        m_cache = std::make_unique<QTemporaryDir>();
        m_queue = std::make_unique<DownloadQueue>(m_service->baseUrl(), m_cache->path(), "test queue");
    }
    void cleanup()
    {
        m_limiter->setHeld(false);
        m_limiter->setLimit(0);
    }
    void cleanupTestCase()
    {
        m_queue.reset();
        m_service.reset();
    }

    void givesWhatTheLimitAllows()
    {
        constexpr qint64 limit = 1000000;
        constexpr auto file = RateLimiter::Kind::File;
        RateLimiter limiter;
        QCOMPARE(limiter.take(123456789, file), 123456789LL); // none
        limiter.setLimit(limit);
        QElapsedTimer clock;
        clock.start();
        QSignalSpy refilled(&limiter, &RateLimiter::refilled);
        qint64 granted = 0;
        while (clock.elapsed() < 600) {
            granted += limiter.take(limit, file);
            QVERIFY(refilled.wait(5000)); // whoever was refused hears of more
            QVERIFY2(granted <= limit / 12 + clock.elapsed() * limit / 1000,
                     qPrintable(QString::number(granted)));
        }
        QVERIFY(granted > 0);
        limiter.setLimit(0);
        QCOMPARE(limiter.take(limit, file), limit);
    }

    void isKeptByAllRequestsTogether()
    {
        constexpr qint64 limit = 2000000;
        m_limiter->setLimit(limit);
        Downloader document(QUrl(m_service->baseUrl() + "document"));
        const auto text = sampleBytes(99, 500000);
        writeSample(m_service->tree().path() + "/document", text);
        QElapsedTimer clock;
        clock.start();
        start(3);
        QSignalSpy documentEnded(&document, &Task::finished);
        document.go();
        QVERIFY(documentEnded.wait(20000));
        QVERIFY(stored() < fileSize); // it did not wait for the files
        QCOMPARE(document.getContents(), text);
        QTRY_VERIFY_WITH_TIMEOUT(stored() > limit, 30000);
        QVERIFY(stored() + text.size() <= limit / 12 + clock.elapsed() * limit / 1000);

        // Another limit does not break what is being transferred.
        m_limiter->setLimit(4 * limit);
        const auto before = stored();
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(stored() > before + limit, 30000);
        m_limiter->setLimit(0);
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        QVERIFY(finished.wait(30000));
        verifyComplete();
        for (const auto& content : qAsConst(m_contents))
            QCOMPARE(m_service->requestsFor(SampleTree::pathOf(content)), 1);
    }

    void goesOnWhereItWasHeld_data()
    {
        QTest::addColumn<bool>("serverKnowsParts");
        QTest::newRow("the rest is fetched") << true;
        QTest::newRow("a server that sends all") << false;
    }
    void goesOnWhereItWasHeld()
    {
        QFETCH(bool, serverKnowsParts);
        m_limiter->setLimit(3000000);
        start(2);
        const auto path = SampleTree::pathOf(m_contents.first());
        if (!serverKnowsParts)
            m_service->content().faults().set(path, Fault::noRange());
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        for (int hold = 1; hold <= 2; ++hold) {
            const auto before = stored();
            QTRY_VERIFY_WITH_TIMEOUT(stored() > before + 1000000, 30000);
            m_limiter->setHeld(true);
            const auto held = stored();
            QTest::qWait(300); // nothing may come in the meantime
            QCOMPARE(stored(), held);
            m_limiter->setHeld(false);
        }
        m_limiter->setLimit(0);
        QVERIFY(finished.wait(30000));
        verifyComplete();
        qint64 start = 0;
        for (const auto& logged : m_service->content().requests()) {
            if (logged.request.path == path)
                start = logged.request.headers.value("range").mid(6).chopped(1).toLongLong();
        }
        QVERIFY(start > 0);
    }

    void startsNothingWhileHeld()
    {
        m_limiter->setHeld(true);
        start(2);
        QTest::qWait(200);
        QCOMPARE(m_service->content().requests().size(), 0);
        QSignalSpy finished(m_queue.get(), &DownloadQueue::finished);
        m_limiter->setHeld(false);
        QVERIFY(finished.wait(30000));
        verifyComplete();
    }
};

VELKOR_TEST_MAIN(TestRateLimiter)
#include "tst_ratelimiter.moc"
