#include "maintenance/clientsettingsprofiles.h"
#include "maintenance/migratesettingsgui.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QSignalSpy>

Q_DECLARE_METATYPE(ClientSettingsProfileResult)

class TestClientSettingsProfiles : public QObject
{
    Q_OBJECT

private:
    using Result = ClientSettingsProfileResult;
    std::unique_ptr<QTemporaryDir> m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::map<QString, std::unique_ptr<ServerManager>> m_servers;

    static Settings* settings() { return Settings::instance(); }
    QString folder(const QString& server, const QString& name) const
    {
        return m_cache->filePath("wineenv/drive_c/users/player/AppData/Local/Halden/Velkor/" + server +
                                 "/settings_" + name);
    }

private slots:
    void initTestCase()
    {
        Settings::useDeployment(sampleDeployment());
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers[key] = std::make_unique<ServerManager>(key, entry);
                    settings()->registerServer(key, m_servers[key].get());
                });
        settings()->initializeServers();
        settings()->setEnabledTestServers({"pl"});
    }
    void init()
    {
        m_cache = std::make_unique<QTemporaryDir>();
        settings()->setCacheFolder(m_cache->path());
        QDir().mkpath(m_cache->filePath("wineenv/drive_c/users/Public"));
        writeSample(folder("ks", "Default") + "/core/prefs.ini", "default");
        writeSample(folder("ks", "Mining") + "/core/prefs.ini", "mining");
    }
    void cleanupTestCase() { m_servers.clear(); }

    void listsDefaultFirst()
    {
        writeSample(folder("ks", "alpha") + "/x", "x");
        writeSample(folder("ks", "bad.name") + "/x", "x");
        QCOMPARE(getSettingsProfiles("ks"), (QStringList{"Default", "alpha", "Mining"}));
        QCOMPARE(getSettingsProfiles("pl"), QStringList{"Default"});
        QCOMPARE(getSettingsProfiles("../ks"), QStringList{"Default"});
    }

    void createsCopies()
    {
        const QSignalSpy changes(settings(), &Settings::clientSettingsProfilesChanged);
        QVERIFY(createSettingsProfile("pl", "From Kestrel", "ks", "mining") == Result::Success);
        QCOMPARE(readSample(folder("pl", "From Kestrel") + "/core/prefs.ini"), QByteArray("mining"));
        QVERIFY(createSettingsProfile("ks", "Copy", "ks", "default") == Result::Success);
        QCOMPARE(readSample(folder("ks", "Copy") + "/core/prefs.ini"), QByteArray("default"));
        QVERIFY(createSettingsProfile("pl", "Empty") == Result::Success);
        QVERIFY(createSettingsProfile("pl", "Of nothing", "pl", "Default") == Result::Success);
        QCOMPARE(getSettingsProfiles("pl"), (QStringList{"Default", "Empty", "From Kestrel", "Of nothing"}));
        QCOMPARE(changes.size(), 4);
        QCOMPARE(changes.first().first().toString(), QString("pl"));
        // Nothing temporary is left beside them.
        const QDir beside(QFileInfo(folder("pl", "Empty")).path());
        QCOMPARE(beside.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 3);
    }

    void refusesNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("letters of any script") << QString::fromUtf8("Ünïcode 你好 ё_-9") << true;
        QTest::newRow("64") << QString(64, 'x') << true;
        QTest::newRow("65") << QString(65, 'x') << false;
        for (const auto* bad :
             {"", " ", " x", "x ", "a/b", "..", "a.b", "a\\b", "a:b", "a\nb", "x\n", "dEFAULT"})
            QTest::newRow(QByteArray("bad: ") + QByteArray(bad).toPercentEncoding()) << QString(bad) << false;
    }
    void refusesNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, allowed);
        const auto before = readFolder(m_cache->path());
        const auto expected = allowed ? Result::Success : Result::InvalidName;
        QVERIFY(createSettingsProfile("ks", name) == expected);
        if (!allowed) {
            QVERIFY(renameSettingsProfile("ks", "Mining", name) == expected);
            QCOMPARE(readFolder(m_cache->path()), before);
        }
    }

    void tellsWhatIsWrong()
    {
        QVERIFY(createSettingsProfile("ks", "MINING") == Result::AlreadyExists);
        QVERIFY(createSettingsProfile("ks", "New", "ks", "Absent") == Result::DoesNotExist);
        QVERIFY(createSettingsProfile("../ks", "New") == Result::DoesNotExist);
        QVERIFY(renameSettingsProfile("ks", "Absent", "New") == Result::DoesNotExist);
        QVERIFY(renameSettingsProfile("ks", "Default", "New") == Result::InvalidName);
        QVERIFY(deleteSettingsProfile("ks", "Default") == Result::InvalidName);
        QVERIFY(deleteSettingsProfile("ks", "Absent") == Result::DoesNotExist);
        writeSample(folder("ks", "Other") + "/x", "x");
        QVERIFY(renameSettingsProfile("ks", "Mining", "other") == Result::AlreadyExists);
        for (const auto result : {Result::InvalidName, Result::AlreadyExists, Result::DoesNotExist,
                                  Result::ClientsRunning, Result::FileOperationFailed})
            QVERIFY(!describeProfileResult(result).isEmpty());
    }

    void renamesAndDeletes()
    {
        QVERIFY(renameSettingsProfile("ks", "mining", "MINING") == Result::Success); // only its case
        QCOMPARE(getSettingsProfiles("ks"), (QStringList{"Default", "MINING"}));
        QVERIFY(renameSettingsProfile("ks", "Mining", "Trade") == Result::Success);
        QCOMPARE(readSample(folder("ks", "Trade") + "/core/prefs.ini"), QByteArray("mining"));
        const QTemporaryDir outside;
        writeSample(outside.filePath("kept"), "mine");
        QVERIFY(QFile::link(outside.path(), folder("ks", "Trade") + "/link"));
        QVERIFY(deleteSettingsProfile("ks", "trade") == Result::Success);
        QCOMPARE(getSettingsProfiles("ks"), QStringList{"Default"});
        QVERIFY(QFile::exists(outside.filePath("kept")));
    }

    void leavesProfilesOfRunningClientsAlone()
    {
        auto* server = m_servers.at("ks").get();
        AttachedProcess* client = nullptr;
        connect(server, &ServerManager::processStarted, this,
                [&](ServerManager*, AttachedProcess* process) { client = process; });
        server->startProcess("/bin/sh", {"-c", "read x"}, {}, {});
        QVERIFY(client);
        QVERIFY(createSettingsProfile("ks", "New", "ks", "Mining") == Result::ClientsRunning);
        QVERIFY(renameSettingsProfile("ks", "Mining", "New") == Result::ClientsRunning);
        QVERIFY(deleteSettingsProfile("ks", "Mining") == Result::ClientsRunning);
        QVERIFY(createSettingsProfile("pl", "New", "ks", "Mining") == Result::Success); // another server's
        client->close();
        QTRY_VERIFY(!server->isRunningProcesses());
        delete client;
    }

    void managesThemInADialog()
    {
        MigrateSettingsGui dialog;
        const auto lists = dialog.findChildren<QListWidget*>();
        const auto servers = dialog.findChildren<QComboBox*>();
        QCOMPARE(servers[1]->currentText(), QString("Plover"));
        const auto press = [&](const QString& label) {
            for (auto* button : dialog.findChildren<QAbstractButton*>()) {
                if (button->text() == label) {
                    button->click();
                    return;
                }
            }
            QFAIL(qPrintable("no button " + label));
        };
        QString typed;
        QTimer answering;
        connect(&answering, &QTimer::timeout, this, [&] {
            auto* open = QApplication::activeModalWidget();
            if (auto* input = qobject_cast<QInputDialog*>(open)) {
                input->setTextValue(typed);
                input->accept();
            } else if (auto* box = qobject_cast<QMessageBox*>(open)) {
                box->button(QMessageBox::Yes)->click();
            }
        });
        answering.start(10);
        lists[0]->setCurrentRow(1);
        press("C&opy >");
        QCOMPARE(getSettingsProfiles("pl"), (QStringList{"Default", "Mining"}));
        typed = "Second";
        press("C&opy >"); // asks for another name
        QCOMPARE(getSettingsProfiles("pl"), (QStringList{"Default", "Mining", "Second"}));
        typed = "Trade";
        press("&Rename...");
        QCOMPARE(getSettingsProfiles("ks"), (QStringList{"Default", "Trade"}));
        QCOMPARE(lists[0]->count(), 2);
        lists[0]->setCurrentRow(1);
        press("&Delete...");
        QCOMPARE(getSettingsProfiles("ks"), QStringList{"Default"});
    }
};

VELKOR_TEST_MAIN(TestClientSettingsProfiles)
#include "tst_clientsettingsprofiles.moc"
