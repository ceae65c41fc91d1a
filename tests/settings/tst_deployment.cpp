#include "settings/deployment.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QJsonDocument>

class TestDeployment : public QObject
{
    Q_OBJECT

private:
    static QJsonObject compiledIn()
    {
        return QJsonDocument::fromJson(
                   readSample(QStringLiteral(VELKOR_SOURCE "/deployments/production.json")))
            .object();
    }
    static std::optional<Deployment> parse(const QJsonObject& object, QString* error)
    {
        return Deployment::parse(QJsonDocument(object).toJson(), QStringLiteral("/base"),
                                 Deployment::Origin::OverrideFile, error);
    }

private slots:
    void loadsWhatIsCompiledIn()
    {
        QString error;
        const auto deployment = Deployment::load(&error);
        QVERIFY2(deployment, qPrintable(error));
        QCOMPARE(deployment->binariesHost, compiledIn().value(QLatin1String("binariesHost")).toString());
        QVERIFY(deployment->commandHosts);
        QCOMPARE(deployment->delayScale, 1.0);
    }

    void refusesBadDocuments_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("complaint");
        const auto changed = [](const char* key, const QJsonValue& value) {
            auto object = compiledIn();
            object.insert(QLatin1String(key), value);
            return QJsonDocument(object).toJson();
        };
        QTest::newRow("not JSON") << QByteArray("{") << "not valid JSON";
        QTest::newRow("array") << QByteArray("[]") << "not a JSON object";
        QTest::newRow("empty") << QByteArray("{}") << "binariesHost";
        QTest::newRow("wrong type") << changed("sentryDsn", 5) << "sentryDsn";
        QTest::newRow("empty host") << changed("resourcesHost", "") << "resourcesHost";
        QTest::newRow("one domain") << changed("internalDomains", QJsonArray{"a"}) << "internalDomains";
        QTest::newRow("hosts no list") << changed("commandHosts", "a") << "commandHosts";
        QTest::newRow("hosts with number") << changed("commandHosts", QJsonArray{1}) << "commandHosts";
        QTest::newRow("negative scale") << changed("delayScale", -1) << "delayScale";
        QTest::newRow("no certificates") << changed("extraCaCertificates", 1) << "extraCaCertificates";
    }
    void refusesBadDocuments()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, complaint);
        QString error;
        QVERIFY(!Deployment::parse(json, QStringLiteral("/"), Deployment::Origin::OverrideFile, &error));
        QVERIFY2(error.contains(complaint), qPrintable(error));
    }

    void scalesDelaysOnlyFromAnOverrideFile()
    {
        auto object = compiledIn();
        object.insert(QStringLiteral("delayScale"), 0.01);
        QString error;
        QCOMPARE(parse(object, &error)->scaledDelay(120000), 1200);
        const auto shipped = Deployment::parse(QJsonDocument(object).toJson(), QStringLiteral("/"),
                                               Deployment::Origin::CompiledIn, &error);
        QCOMPARE(shipped->scaledDelay(120000), 120000);
    }

    void findsCertificatesBesideTheFile()
    {
        auto object = compiledIn();
        object.insert(QStringLiteral("extraCaCertificates"), QStringLiteral("ca.pem"));
        QString error;
        const auto deployment = parse(object, &error);
        QCOMPARE(deployment->extraCaCertificates, QStringLiteral("/base/ca.pem"));
        QVERIFY(!deployment->trustExtraCertificates(&error));
        QVERIFY(error.contains(QLatin1String("/base/ca.pem")));
    }
};

VELKOR_TEST_MAIN(TestDeployment)
#include "tst_deployment.moc"
