#include "download/downloader.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QNetworkAccessManager>
#include <QSslConfiguration>

class TestDownloader : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    /** Runs one download to its end. */
    std::unique_ptr<Downloader> fetch(const QString& path)
    {
        auto downloader = std::make_unique<Downloader>(QUrl(m_service->baseUrl() + path));
        QSignalSpy finished(downloader.get(), &Task::finished);
        downloader->go();
        if (!finished.wait(20000) || finished.count() != 1)
            qFatal("The download has not finished once");
        return downloader;
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        writeSample(m_service->tree().path() + "/info.json", R"({"build":"1"})");
    }
    void init() { m_service->reset(); }
    void cleanupTestCase() { m_service.reset(); }

    void fetchesADocument()
    {
        Downloader downloader(QUrl(m_service->baseUrl() + "info.json"));
        downloader.setProgressMessage("fetching");
        QSignalSpy progress(&downloader, &Downloader::progressUpdate);
        QSignalSpy finished(&downloader, &Task::finished);
        downloader.go();
        QVERIFY(finished.wait());
        QCOMPARE(downloader.getErrorCode(), 0);
        QCOMPARE(downloader.getContents(), QByteArray(R"({"build":"1"})"));
        QCOMPARE(progress.last().at(0).toFloat(), 1.0F);
        QCOMPARE(progress.last().at(1).toString(), QStringLiteral("fetching"));
    }

    void endsItsRequestWhenItIsDeleted()
    {
        m_service->content().faults().set("/slow.json", Fault::slow(1));
        writeSample(m_service->tree().path() + "/slow.json", "slow");
        auto abandoned = std::make_unique<Downloader>(QUrl(m_service->baseUrl() + "slow.json"));
        abandoned->go();
        QTest::qWait(50);
        Downloader downloader(QUrl(m_service->baseUrl() + "info.json"));
        QSignalSpy finished(&downloader, &Task::finished);
        downloader.go();
        abandoned.reset();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(downloader.getContents(), QByteArray(R"({"build":"1"})"));
    }

    void mapsFailures_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("code");
        QTest::newRow("denied") << 401 << 9;
        QTest::newRow("missing") << 404 << 2;
        QTest::newRow("forbidden") << 403 << 1;
        QTest::newRow("server") << 500 << 1;
        QTest::newRow("unavailable") << 503 << 1;
    }
    void mapsFailures()
    {
        QFETCH(int, status);
        m_service->content().faults().set("/info.json", Fault::answerWith(status));
        const auto downloader = fetch("info.json");
        QTEST(downloader->getErrorCode(), "code");
        QVERIFY(!downloader->getErrorString().isEmpty());
        QVERIFY(downloader->getContents().isEmpty());
        QCOMPARE(m_service->requestsFor("/info.json"), 1); // nothing is tried twice
    }

    void reportsTransportFailures()
    {
        m_service->content().faults().set("/info.json", Fault::cut());
        QCOMPARE(fetch("info.json")->getErrorCode(), 1);
        m_service->backend().refuse(m_service->content());
        const auto refused = fetch("info.json");
        m_service->backend().accept(m_service->content());
        QCOMPARE(refused->getErrorCode(), 1);
        QVERIFY(!refused->getErrorString().isEmpty());
    }

    void doesNotTrustStrangers()
    {
        const auto trusted = QSslConfiguration::defaultConfiguration();
        auto strict = trusted;
        strict.setCaCertificates({});
        QSslConfiguration::setDefaultConfiguration(strict);
        Downloader::getManager()->clearConnectionCache();
        const auto downloader = fetch("info.json");
        QSslConfiguration::setDefaultConfiguration(trusted);
        Downloader::getManager()->clearConnectionCache();
        QCOMPARE(downloader->getErrorCode(), 1);
        QVERIFY(downloader->getContents().isEmpty());
    }
};

VELKOR_TEST_MAIN(TestDownloader)
#include "tst_downloader.moc"
