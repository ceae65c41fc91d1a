#include "tests/testkit/testmain.h"
#include "web/commandpolicy.h"
#include "web/pagecalls.h"

class TestPageCalls : public QObject
{
    Q_OBJECT

private slots:
    void formatsCalls()
    {
        QCOMPARE(formatPageCall(PageCall::UpdateProgress, {"ks", formatNumber(0.25), "10 %1 %2"}),
                 QString("updateProgress('ks', 0.25, '10 %1 %2')"));
        QCOMPARE(
            formatPageCall(PageCall::AddServers,
                           {formatArray(PageCall::ServerItem, {{"ks", "Kestrel"}, {"pl", "Plover"}})}),
            QString("addServers([{'name': 'ks', 'displayName': 'Kestrel'}, {'name': 'pl', 'displayName': "
                    "'Plover'}])"));
        QCOMPARE(
            formatPageCall(PageCall::ProfileList, {"ks", formatArray(PageCall::ProfileItem, {{"Default"}})}),
            QString("profilelist('ks', ['Default'])"));
        QCOMPARE(formatArray(PageCall::ServerItem, {}), QString("[]"));
        QCOMPARE(formatPageCall(PageCall::ShowError, {"Error", "No", "-1"}),
                 QString("showError('Error', 'No', -1)"));
        QCOMPARE(formatNumber(1), QString("1"));
        QCOMPARE(progressTarget("updateProgress('ks', 0.25, 'text')"), QString("ks"));
        QVERIFY(progressTarget("setVersion('1')").isEmpty());
    }

    void makesTextsFit_data()
    {
        QTest::addColumn<int>("call");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("script");
        const int quoted = static_cast<int>(PageCall::SetVersion);
        QTest::newRow("apostrophe") << quoted << "n'est pas"
                                    << "setVersion('n’est pas')";
        QTest::newRow("double quotes stay") << quoted << "\"Kestrel\""
                                            << "setVersion('\"Kestrel\"')";
        QTest::newRow("backslash at the end") << quoted << "C:\\"
                                              << "setVersion('C:/')";
        QTest::newRow("line breaks") << quoted << "a\nb\r\nc\rd"
                                     << "setVersion('a b c d')";
        QTest::newRow("separators") << quoted << QString("a%1b%2").arg(QChar(0x2028)).arg(QChar(0x2029))
                                    << "setVersion('a b ')";
        QTest::newRow("escape from the literal") << quoted << "\\'); alert('"
                                                 << "setVersion('/’); alert(’')";
        QTest::newRow("double-quoted") << static_cast<int>(PageCall::SetHeading) << "Can't \"open\" \\"
                                       << "setHeading(\"Can't ”open” /\")";
    }
    void makesTextsFit()
    {
        QFETCH(int, call);
        QFETCH(QString, text);
        QTEST(formatPageCall(static_cast<PageCall>(call), {text}), "script");
    }

    void letsNoCodeStandBare()
    {
        QCOMPARE(formatPageCall(PageCall::SettingOk, {"ks", "Default"}), QString("settingok(ks, Default)"));
        QCOMPARE(formatPageCall(PageCall::SettingError, {"ks", "steal(document.cookie)", "1"}),
                 QString("settingerror(ks, stealdocument.cookie, 1)"));
        QCOMPARE(formatPageCall(PageCall::SsoCodeToRemember, {"c", "s", "delete--window['x']=`y`"}),
                 QString("ssoCode('c', 's', deletewindowxy)"));
        QCOMPARE(formatPageCall(PageCall::SetClientVersion, {"ks", "1548200"}),
                 QString("setClientVersion('ks', 1548200)"));
    }

    void letsOnlyListedHostsCommand_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("withList");
        QTest::addColumn<bool>("withoutList");
        QTest::newRow("listed") << "https://a.example/page?x#y" << true << true;
        QTest::newRow("listed, another port") << "https://a.example:8443/" << true << true;
        QTest::newRow("listed with its port") << "https://b.example:444/" << true << true;
        QTest::newRow("listed with another port") << "https://b.example/" << false << true;
        QTest::newRow("case does not matter") << "https://A.Example/" << true << true;
        QTest::newRow("not listed") << "https://evil.example/" << false << true;
        QTest::newRow("ends like a listed one") << "https://xa.example/" << false << true;
        QTest::newRow("below a listed one") << "https://x.a.example/" << false << true;
        QTest::newRow("name as user") << "https://a.example@evil.example/" << false << true;
        QTest::newRow("no encryption") << "http://a.example/" << false << false;
        QTest::newRow("error page") << "file:///errorpage/index.html" << true << true;
        QTest::newRow("another file") << "file:///etc/passwd" << false << false;
        QTest::newRow("data") << "data:text/html,x" << false << false;
        QTest::newRow("blank") << "about:blank" << false << false;
        QTest::newRow("none") << "" << false << false;
    }
    void letsOnlyListedHostsCommand()
    {
        QFETCH(QString, address);
        QTEST(CommandPolicy(QStringList{"a.example", "b.example:444"}).mayCommand(QUrl(address)), "withList");
        QTEST(CommandPolicy(std::nullopt).mayCommand(QUrl(address)), "withoutList");
    }
};

VELKOR_TEST_MAIN(TestPageCalls)
#include "tst_pagecalls.moc"
