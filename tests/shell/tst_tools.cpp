#include "logging/messagehandler.h"
#include "servers/downloadcontrol.h"
#include "settings/settings.h"
#include "shell/adoptdialog.h"
#include "shell/downloadplandialog.h"
#include "shell/launchoptionsdialog.h"
#include "shell/logdialog.h"
#include "shell/toolsmenu.h"
#include "shell/updatewatchdog.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

using namespace std::chrono_literals;

/** The tools beside playing, each alone. */
class TestTools : public QObject
{
    Q_OBJECT

private:
    static Settings* settings() { return Settings::instance(); }
    static QPushButton* button(const QDialog& dialog, const QString& text)
    {
        for (auto* candidate : dialog.findChildren<QPushButton*>()) {
            if (QString(candidate->text()).remove('&') == text)
                return candidate;
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        Settings::useDeployment(sampleDeployment());
        settings()->initializeServers();
    }

    void menuPausesAndLimits()
    {
        DownloadControl control(settings(), [] { return false; });
        ToolsMenu menu(&control);
        QCOMPARE(menu.pauseAction()->text(), QStringLiteral("Pause &downloads"));
        menu.pauseAction()->trigger();
        QCOMPARE(control.state(), DownloadControl::State::Paused);
        QCOMPARE(menu.pauseAction()->text(), QStringLiteral("Resume &downloads"));
        QVERIFY(settings()->store().value("LauncherDownloadsPaused").toBool());
        menu.pauseAction()->trigger();
        QCOMPARE(control.state(), DownloadControl::State::Running);

        const auto checked = [&menu] {
            QStringList texts;
            for (const auto* action : menu.limitMenu()->actions()) {
                if (action->isChecked())
                    texts << action->text();
            }
            return texts;
        };
        QCOMPARE(checked(), QStringList{"None"});
        menu.limitMenu()->actions().at(3)->trigger();
        QCOMPARE(checked(), QStringList{"5 MB/s"});
        QCOMPARE(settings()->getDownloadLimit(), 5.0);
        control.setLimit(7.5); // as from the settings or the page
        QCOMPARE(checked(), QStringList{"7.5 MB/s"});
        control.setLimit(0);
        QCOMPARE(checked(), QStringList{"None"});
    }

    void existingFilesMustBeElsewhere()
    {
        const QTemporaryDir folder;
        QDir(folder.path()).mkpath("cache/ResFiles");
        QDir(folder.path()).mkpath("old");
        QFile::link(folder.filePath("cache"), folder.filePath("link"));
        AdoptDialog dialog({}, folder.filePath("cache"));
        auto* field = dialog.findChild<QLineEdit*>();
        auto* use = button(dialog, "Use these files");
        QVERIFY(!use->isEnabled());
        for (const auto& bad :
             {folder.filePath("nowhere"), folder.path(), folder.filePath("cache/ResFiles"),
              folder.filePath("link"), QStringLiteral("old"), QStringLiteral("/etc/passwd")}) {
            field->setText(bad);
            QVERIFY2(!use->isEnabled(), qPrintable(bad));
        }
        field->setText(folder.filePath("cache/../old/"));
        QVERIFY(use->isEnabled());
        QCOMPARE(dialog.folder(), folder.filePath("old"));
    }

    void launchOptionsAreCheckedBeforeTheyAreKept()
    {
        LaunchOptionsDialog dialog(settings());
        auto* command = dialog.findChild<QLineEdit*>();
        auto* variables = dialog.findChild<QPlainTextEdit*>();
        auto* server = dialog.findChild<QComboBox*>();
        command->setText("no-such-command");
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        command->setText("env");
        variables->setPlainText("A=1\n\nB=2");
        server->setCurrentIndex(1);
        variables->setPlainText("nonsense");
        server->setCurrentIndex(0);
        QCOMPARE(variables->toPlainText(), QStringLiteral("A=1\nB=2"));
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(server->currentIndex(), 1); // where the mistake is
        QVERIFY(settings()->getLaunchWrapper().isEmpty());
        variables->clear();
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(settings()->getLaunchWrapper(), QStringLiteral("env"));
        QCOMPARE(settings()->getClientEnvironment("ks"), (QStringList{"A=1", "B=2"}));
        settings()->setFromJson({{"LauncherLaunchWrapper", "evil"}}); // from a page
        settings()->save();
        QCOMPARE(settings()->store().value("LauncherLaunchWrapper").toString(), QStringLiteral("env"));
    }

    void longDownloadsNeedNoAnswer_data()
    {
        QTest::addColumn<qint64>("roomLeft");
        QTest::addColumn<QString>("answer"); // a button; empty for none
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<bool>("postponed");
        const qint64 plenty = qint64(1) << 50;
        QTest::newRow("room, no answer") << plenty << "" << true << false;
        QTest::newRow("room, later") << plenty << "Not now" << false << true;
        QTest::newRow("room, now") << plenty << "Download" << true << false;
        QTest::newRow("room, window closed") << plenty << "close" << false << false;
        QTest::newRow("no room, no answer") << qint64(5) << "" << false << false;
        QTest::newRow("no room, continue") << qint64(5) << "Continue anyway" << true << false;
        QTest::newRow("no room, give up") << qint64(5) << "Cancel" << false << false;
    }
    void longDownloadsNeedNoAnswer()
    {
        QFETCH(qint64, roomLeft);
        QFETCH(QString, answer);
        DownloadPlan plan;
        plan.checkedBytes = qint64(5) << 30;
        plan.bytesToFetch = plan.missingBytes = plan.roomNeeded = qint64(3) << 30;
        plan.roomLeft = roomLeft;
        DownloadPlanDialog dialog("Kestrel", plan, "/cache", answer.isEmpty() ? 60ms : 1h);
        QStringList texts;
        for (const auto* label : dialog.findChildren<QLabel*>())
            texts << label->text();
        QVERIFY(texts.contains("2.00 GB") && texts.contains("3.00 GB") && texts.contains("/cache"));
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        QSignalSpy postponed(&dialog, &DownloadPlanDialog::postponed);
        dialog.show();
        if (answer == "close")
            dialog.close();
        else if (!answer.isEmpty())
            button(dialog, answer)->click();
        QTRY_COMPARE(accepted.size() + rejected.size(), 1);
        QTEST(accepted.size() == 1, "accepted");
        QTEST(postponed.size() == 1, "postponed");
    }

    void logIsFollowedFilteredAndCopied()
    {
        const QTemporaryDir folder;
        const auto path = folder.filePath("log.txt");
        const auto line = [](const char* type, const char* text) {
            return QByteArray("2026-01-31T12:00:00.500Z\tdefault\t") + type + '\t' + text + '\n';
        };
        writeSample(path, line("debug", "starts") + line("warning", "careful\nwith more\tto say") +
                              line("error", "broken") + "2026-01-31T12:00:01.000Z\tdefault\tdeb");
        LogDialog dialog(path);
        auto* table = dialog.findChild<QTableView*>();
        const auto messages = [table] {
            QStringList texts;
            for (int row = 0; row < table->model()->rowCount(); ++row)
                texts << table->model()->index(row, LogModel::Message).data().toString();
            return texts;
        };
        QCOMPARE(messages(),
                 (QStringList{"starts", QString::fromUtf8("careful\u23cewith more\tto say"), "broken"}));
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        file.write("ug\tends\n");
        file.close();
        QTRY_COMPARE(messages().size(), 4);
        QCOMPARE(messages().last(), QStringLiteral("ends"));
        dialog.findChild<QComboBox*>()->setCurrentIndex(2);
        QCOMPARE(messages().size(), 2);
        dialog.findChild<QLineEdit*>()->setText("BROKEN");
        QCOMPARE(messages(), QStringList{"broken"});
        button(dialog, "Copy")->click();
        QVERIFY(QGuiApplication::clipboard()->text().endsWith("broken\n"));

        LogDialog empty(folder.filePath("lost.txt"));
        const auto labels = empty.findChildren<QLabel*>();
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->text().startsWith("The log file cannot be read: No such file");
        }));
    }

    void watchdogNamesWhatIsAwaited()
    {
        QString activity = "Downloader: 1 byte";
        UpdateWatchdog watchdog([&] { return activity; }, 600ms);
        QSignalSpy stuck(&watchdog, &UpdateWatchdog::stuck);
        for (int i = 0; i < 8; ++i) { // it moves
            activity = QStringLiteral("Downloader: %1 bytes").arg(i);
            QTest::qWait(100);
        }
        QCOMPARE(stuck.size(), 0);
        QVERIFY(stuck.wait(5000));
        QCOMPARE(stuck.first().first().toString(), QStringLiteral("Downloader: 7 bytes"));
        QVERIFY(watchdog.isStuck());
        QVERIFY(stuck.wait(5000)); // it stays so
        activity.clear();          // done
        QTRY_VERIFY(!watchdog.isStuck());
        const auto lines = stuck.size();
        QTest::qWait(400);
        QCOMPARE(stuck.size(), lines);
    }
};

VELKOR_TEST_MAIN(TestTools)
#include "tst_tools.moc"
