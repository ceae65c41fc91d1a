#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "shell/settingsdialog.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

class TestSettingsDialog : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    QTemporaryDir m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::vector<std::unique_ptr<ServerManager>> m_servers;
    std::unique_ptr<SettingsDialog> m_dialog;
    QStringList m_questions;

    static Settings* settings() { return Settings::instance(); }
    /** The field that the label leads to. */
    template <typename Field>
    Field* field(const QString& label)
    {
        for (const auto* text : m_dialog->findChildren<QLabel*>()) {
            if (QString(text->text()).remove('&') == label && text->buddy()) {
                auto* found = qobject_cast<Field*>(text->buddy());
                return found ? found : text->buddy()->findChild<Field*>();
            }
        }
        return nullptr;
    }
    void offerVersions(const QString& kind, const QByteArray& json)
    {
        writeSample(m_service->tree().path() + "/wine_linux_" + kind + ".json", json);
    }
    void open() { m_dialog = std::make_unique<SettingsDialog>(settings()); }
    /** Presses OK and answers the questions that come. */
    void pressOk(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        m_questions.clear();
        QTimer answering;
        connect(&answering, &QTimer::timeout, this, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m_questions << box->text();
                box->button(answer)->click();
            }
        });
        answering.start(10);
        m_dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    }
    QStringList items(const QString& label)
    {
        QStringList texts;
        const auto* box = field<QComboBox>(label);
        for (int i = 0; box && i < box->count(); ++i)
            texts << box->itemText(i);
        return texts;
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        settings()->setCacheFolder(m_cache.path());
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers.push_back(std::make_unique<ServerManager>(key, entry));
                    settings()->registerServer(key, m_servers.back().get());
                });
        settings()->initializeServers();
        QDir().mkpath(m_service->tree().path());
    }
    void cleanup() { m_dialog.reset(); }
    void cleanupTestCase()
    {
        m_servers.clear();
        m_service.reset();
    }

    void hasItsRowsInOrder()
    {
        open();
        QStringList labels;
        for (const auto* text : m_dialog->findChildren<QLabel*>()) {
            if (text->buddy())
                labels << QString(text->text()).remove('&');
        }
        QCOMPARE(labels, (QStringList{"Language:",
                                      "Version type:",
                                      "Download everything:",
                                      "Run clients with logging:",
                                      "Run clients with DX9:",
                                      "Run clients with 64 bit:",
                                      "Minimize to tray on close:",
                                      "Ignore certification errors:",
                                      "Use system configuration for proxy:",
                                      "Enable high DPI scaling:",
                                      "Enable hardware rendering:",
                                      "Thread count for resource download in client",
                                      "Test Servers",
                                      "Show the running launcher at a second start:",
                                      "Limit of all downloads together:",
                                      "Keep downloads until no client runs:",
                                      "Use custom Wine",
                                      "Custom Wine path",
                                      "Use dev versions",
                                      "Dev branch",
                                      "Wine version",
                                      "WINEDEBUG",
                                      "Retina mode",
                                      "Video memory"}));
        QCOMPARE(items("Thread count for resource download in client"),
                 (QStringList{"Default", "2", "4", "8", "16"}));
        QCOMPARE(items("Video memory"), (QStringList{"Auto detect", "512", "1024", "2048", "3184", "4096"}));
        QCOMPARE(items("Version type:").mid(0, 2), (QStringList{"Release", "Beta"}));
        // Each letter leads to one field only, and every field explains itself.
        QString letters;
        for (const auto* text : m_dialog->findChildren<QLabel*>()) {
            const int at = text->text().indexOf('&');
            if (at < 0)
                continue;
            const auto letter = text->text().at(at + 1).toLower();
            QVERIFY2(!letters.contains(letter), qPrintable(text->text()));
            letters += letter;
            QVERIFY2(!text->buddy()->toolTip().isEmpty(), qPrintable(text->text()));
        }
        QCOMPARE(letters.size(), 24);
    }

    void appliesAndSavesEverythingAtOnce()
    {
        open();
        field<QComboBox>("Version type:")->setCurrentIndex(1);
        const QStringList switches{"Download everything:",
                                   "Run clients with logging:",
                                   "Run clients with DX9:",
                                   "Run clients with 64 bit:",
                                   "Minimize to tray on close:",
                                   "Ignore certification errors:",
                                   "Enable high DPI scaling:",
                                   "Enable hardware rendering:",
                                   "Use custom Wine",
                                   "Use dev versions",
                                   "Retina mode",
                                   "Use system configuration for proxy:"};
        const auto values = [] {
            const auto* s = settings();
            return QVector<bool>{
                s->shouldDownloadEverything(), s->runClientsWithLogging(),      s->runClientsWithDx9(),
                s->runClientsWith64Bit(),      s->shouldMinimizeToTray(),       s->getIgnoreCertErrors(),
                s->getEnableHighDpiScaling(),  s->getEnableHardwareRendering(), s->useCustomWine(),
                s->useWineDevVersions(),       s->getWineRetinaMode(),          s->useProxy()};
        };
        auto expected = values();
        for (int i = 0; i < switches.size(); ++i) {
            auto* box = field<QCheckBox>(switches[i]);
            QVERIFY2(box, qPrintable(switches[i]));
            QCOMPARE(box->isChecked(), expected[i]);
            box->toggle();
            expected[i] = !expected[i];
        }
        field<QComboBox>("Thread count for resource download in client")->setCurrentIndex(3);
        field<QComboBox>("Video memory")->setCurrentText("3184");
        field<QLineEdit>("Custom Wine path")->setText("/opt/wine/bin/wine");
        field<QLineEdit>("Dev branch")->setText("main");
        field<QLineEdit>("WINEDEBUG")->setText("+loaddll");
        auto* server = field<QCheckBox>("Test Servers");
        QVERIFY(server);
        const auto before = settings()->getEnabledTestServers();
        const int wanted = before.size() + (server->isChecked() ? -1 : 1);
        server->click();
        QCOMPARE(settings()->getEnabledTestServers(), before); // not before OK
        QSignalSpy changed(settings(), &Settings::settingsChanged);
        QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
        pressOk();
        QCOMPARE(m_questions.size(), 1); // about the certificates
        QCOMPARE(accepted.count(), 1);
        QVERIFY(changed.count() >= 1);
        QCOMPARE(values(), expected);
        QCOMPARE(settings()->getVersionType(), 1);
        QCOMPARE(settings()->getResManThreadCount(), 8);
        QCOMPARE(settings()->getWineVideoMemory(), 3184);
        QCOMPARE(settings()->getCustomWinePath(), QString("/opt/wine/bin/wine"));
        QCOMPARE(settings()->getWineVersionBranch(), QString("main"));
        QCOMPARE(settings()->getWinedebug(), QString("+loaddll"));
        QCOMPARE(settings()->getEnabledTestServers().size(), wanted);
        QCOMPARE(settings()->store().value("WineVideoMemory").toInt(), 3184);
    }

    void staysWhenAQuestionIsDenied()
    {
        settings()->setIgnoreCertErrors(false);
        settings()->setWinedebug("before");
        open();
        field<QCheckBox>("Ignore certification errors:")->setChecked(true);
        field<QLineEdit>("WINEDEBUG")->setText("after");
        QSignalSpy finished(m_dialog.get(), &QDialog::finished);
        pressOk(QMessageBox::No);
        QCOMPARE(m_questions.size(), 1);
        QVERIFY(m_questions.first().contains("\n\nAre you sure you want to continue?"));
        QCOMPARE(finished.count(), 0);
        QCOMPARE(settings()->getWinedebug(), QString("before"));

        auto* type = field<QComboBox>("Version type:");
        while (type->count() < 3)
            type->addItem("Development"); // as on the internal network
        type->setCurrentIndex(2);
        pressOk(QMessageBox::No);
        QVERIFY(m_questions.first().startsWith("A Development version of the launcher may be unstable."));
        QCOMPARE(finished.count(), 0);
        QCOMPARE(settings()->getWinedebug(), QString("before"));
    }

    void offersTheServersVersions_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QStringList>("versions");
        QTest::newRow("texts") << QByteArray("[\"8.0\", \"8.1\"]") << QStringList{"Latest", "8.0", "8.1"};
        QTest::newRow("objects") << QByteArray("[{\"version\": \"8.0\"}, {\"version\": \"8.1\"}]")
                                 << QStringList{"Latest", "8.0", "8.1"};
        QTest::newRow("with nonsense")
            << QByteArray("[7, {}, \"8.1\", null]") << QStringList{"Latest", "8.1"};
    }
    void offersTheServersVersions()
    {
        QFETCH(QByteArray, json);
        QFETCH(QStringList, versions);
        settings()->setUseWineDevVersions(false);
        settings()->setIgnoreCertErrors(false);
        settings()->setWineVersion("8.1");
        offerVersions("release", json);
        open();
        QTRY_COMPARE(items("Wine version"), versions);
        QCOMPARE(field<QComboBox>("Wine version")->currentText(), QString("8.1"));
        field<QComboBox>("Wine version")->setCurrentIndex(0);
        pressOk();
        QCOMPARE(settings()->getWineVersion(), QString("latest"));
    }

    void asksAgainForDevelopmentVersions()
    {
        settings()->setUseWineDevVersions(false);
        offerVersions("release", "[\"8.0\"]");
        offerVersions("dev", "[\"9.0-dev\"]");
        open();
        QTRY_COMPARE(items("Wine version"), (QStringList{"Latest", "8.0"}));
        field<QCheckBox>("Use dev versions")->setChecked(true);
        QTRY_COMPARE(items("Wine version"), (QStringList{"Latest", "9.0-dev"}));
    }

    void keepsTheChoiceWithoutTheServer_data()
    {
        QTest::addColumn<QByteArray>("json"); // null for no document
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("<html>");
        QTest::newRow("empty") << QByteArray("[]");
    }
    void keepsTheChoiceWithoutTheServer()
    {
        QFETCH(QByteArray, json);
        QFile::remove(m_service->tree().path() + "/wine_linux_release.json");
        if (!json.isNull())
            offerVersions("release", json);
        settings()->setUseWineDevVersions(false);
        settings()->setIgnoreCertErrors(false);
        settings()->setWineVersion("8.1");
        open();
        const auto note = [this] {
            for (const auto* label : m_dialog->findChildren<QLabel*>()) {
                if (label->text().contains("versions could not") ||
                    label->text().contains("offers no versions"))
                    return true;
            }
            return false;
        };
        QTRY_VERIFY(note());
        QCOMPARE(items("Wine version"), (QStringList{"Latest", "8.1"}));
        pressOk();
        QCOMPARE(settings()->getWineVersion(), QString("8.1"));
    }

    void mayCloseBeforeTheAnswer()
    {
        for (int i = 0; i < 5; ++i) {
            open();
            QTest::qWait(i * 3);
            m_dialog.reset();
        }
        QTest::qWait(100);
    }
};

VELKOR_TEST_MAIN(TestSettingsDialog)
#include "tst_settingsdialog.moc"
