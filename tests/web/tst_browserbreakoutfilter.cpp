#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"
#include "web/browserbreakoutfilter.h"

#include <QSignalSpy>

class TestBrowserBreakoutFilter : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    void publish(const QByteArray& rules) { writeSample(m_service->tree().path() + "/rules.json", rules); }
    QUrl address() const { return QUrl(m_service->baseUrl() + "rules.json"); }

private slots:
    void initTestCase() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service->reset(); }
    void cleanupTestCase() { m_service.reset(); }

    void decidesByPrefixes()
    {
        browserBreakoutFilter filter;
        QVERIFY(!filter.breakout("https://anywhere.example/"));
        QSignalSpy updated(&filter, &browserBreakoutFilter::filterUpdated);
        publish("{\"whitelist\": [\"https://a.example/\", 7], \"blacklist\": [\"https://a.example/shop\", "
                "\"\"]}");
        filter.update(address());
        QVERIFY(updated.wait());
        QVERIFY(filter.breakout("https://b.example/"));
        QVERIFY(!filter.breakout("https://a.example/login"));
        QVERIFY(filter.breakout("https://a.example/shop/1"));
        QVERIFY(filter.breakout("https://A.example/login")); // with case
        QCOMPARE(filter.getWhitelist(), QStringList{"https://a.example/"});

        publish("{\"blacklist\": []}"); // says nothing of the whitelist
        filter.update(address());
        QVERIFY(updated.wait());
        QVERIFY(!filter.breakout("https://a.example/shop/1"));
        QVERIFY(filter.breakout("https://b.example/"));
        QVERIFY(filter.getBlacklist().isEmpty());
    }

    void keepsItsRulesThroughFailures()
    {
        browserBreakoutFilter filter;
        QSignalSpy updated(&filter, &browserBreakoutFilter::filterUpdated);
        publish("{\"blacklist\": [\"https://x.example/\"]}");
        filter.update(address());
        QVERIFY(updated.wait());
        m_service->content().faults().set("/rules.json", Fault::answerWith(500, 2));
        filter.setUpdateInterval(20);
        QTRY_VERIFY(m_service->requestsFor("/rules.json") >= 4); // goes on asking
        QCOMPARE(filter.getBlacklist(), QStringList{"https://x.example/"});
        publish("[]"); // no object: names neither list
        QVERIFY(updated.wait());
        QCOMPARE(filter.getBlacklist(), QStringList{"https://x.example/"});
    }
};

VELKOR_TEST_MAIN(TestBrowserBreakoutFilter)
#include "tst_browserbreakoutfilter.moc"
