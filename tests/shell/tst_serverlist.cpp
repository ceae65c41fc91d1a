#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "shell/serverline.h"
#include "shell/simplegui.h"
#include "shell/theme.h"
#include "tests/testkit/testmain.h"

#include "settings/settings.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>

class TestServerList : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::vector<std::unique_ptr<ServerManager>> m_servers;

    static Settings* settings() { return Settings::instance(); }
    static QStringList rows(const SimpleGui& list)
    {
        QStringList keys;
        for (const auto* line : list.findChildren<ServerLine*>())
            keys << line->key();
        return keys;
    }
    static QString status(const ServerLine& line)
    {
        // The status is the label that is neither the name nor the build.
        for (const auto* label : line.findChildren<QLabel*>()) {
            if (label->objectName().isEmpty())
                return label->text();
        }
        return {};
    }

private slots:
    void initTestCase()
    {
        Settings::useDeployment(sampleDeployment());
        settings()->setCacheFolder(m_cache.path());
        m_wine = std::make_unique<WineManager>();
        settings()->registerWineManager(m_wine.get());
        connect(settings(), &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers.push_back(std::make_unique<ServerManager>(key, entry));
                    settings()->registerServer(key, m_servers.back().get());
                });
        settings()->initializeServers();
        settings()->setEnabledTestServers({"pl"});
    }

    void listsServedServersAndFollowsTheList()
    {
        SimpleGui list;
        QCOMPARE(list.windowTitle(), QStringLiteral("Server list - Velkor Launcher"));
        QCOMPARE(rows(list), (QStringList{"ks", "pl"}));
        settings()->setEnabledTestServers({"pl", "heron"});
        QCOMPARE(rows(list), (QStringList{"ks", "pl", "heron"}));
        CommandLine commandLine;
        commandLine.skipTestServers = true;
        settings()->setCommandLine(commandLine);
        emit settings()->serverListChanged();
        QCOMPARE(rows(list), QStringList{"ks"});
        settings()->setCommandLine({});
        settings()->setEnabledTestServers({"pl"});
    }

    void showsTheMenuAndMessages()
    {
        QMenu menu;
        menu.addAction("Something");
        SimpleGui list;
        list.setMenu(&menu);
        auto* bar = list.findChild<QMenuBar*>();
        QCOMPARE(bar->actions().size(), 1);
        QCOMPARE(bar->actions().first()->menu(), &menu);
        emit settings()->serverListChanged();
        QCOMPARE(bar->actions().size(), 1);
        list.setMessage("<b>plain</b>");
        QCOMPARE(list.findChild<QLabel*>("message")->text(), QStringLiteral("<b>plain</b>"));
        QCOMPARE(list.findChild<QLabel*>("message")->textFormat(), Qt::PlainText);
    }

    void remembersItsGeometry()
    {
        {
            SimpleGui list;
            list.resize(812, 456);
            list.show();
            list.close();
        }
        QCOMPARE(SimpleGui().size(), QSize(812, 456));
    }

    void followsAServer()
    {
        auto* server = settings()->getServer("pl");
        ServerLine line(server);
        auto* bar = line.findChild<QProgressBar*>();
        auto* play = line.findChild<QPushButton*>();
        QCOMPARE(status(line), QStringLiteral("Status not verified"));
        QCOMPARE(bar->value(), 0);
        QCOMPARE(play->text(), QStringLiteral("Play on Plover"));
        QVERIFY(!play->isEnabled());
        emit server->versionUpdate(server, "4711");
        QCOMPARE(line.findChild<QLabel*>("serverBuild")->text(), QStringLiteral("4711"));
        emit server->startUpdate(server);
        QCOMPARE(status(line), QStringLiteral("Checking..."));
        emit server->progressUpdate(server, 0.999F, "3 of 9 files (5.00 MB)");
        QCOMPARE(bar->value(), 99);
        QCOMPARE(status(line), QStringLiteral("3 of 9 files (5.00 MB)"));
        emit server->progressUpdate(server, 1.0F, "Ready");
        QCOMPARE(bar->value(), 100);
        QVERIFY(!play->isEnabled()); // words do not make it ready
    }

    void fitsItsTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("copy") << "Cannot copy files for Kestrel while clients are running";
        QTest::newRow("index") << "Unknown error while trying to get Kestrel client file-index";
        QTest::newRow("progress") << "12345 of 123456 files (1023.99 MB)";
    }
    void fitsItsTexts()
    {
        QFETCH(QString, text);
        auto* server = settings()->getServer("ks");
        ServerLine line(server);
        emit server->progressUpdate(server, 0, text);
        line.show();
        line.adjustSize();
        for (const auto* label : line.findChildren<QLabel*>()) {
            if (label->text() == text)
                QVERIFY(label->heightForWidth(label->width()) <= label->height());
        }
    }

    void hasReadableColours()
    {
        Theme theme(qApp);
        const auto luminance = [](const QColor& colour) {
            const auto linear = [](double part) {
                return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
                   0.0722 * linear(colour.blueF());
        };
        const auto contrast = [&](QPalette::ColorRole a, QPalette::ColorRole b) {
            const auto palette = QApplication::palette();
            const double x = luminance(palette.color(a));
            const double y = luminance(palette.color(b));
            return (qMax(x, y) + 0.05) / (qMin(x, y) + 0.05);
        };
        for (const auto scheme : {Theme::Scheme::Light, Theme::Scheme::Dark}) {
            theme.apply(scheme);
            QVERIFY(!qApp->styleSheet().contains('@'));
            QVERIFY(contrast(QPalette::WindowText, QPalette::Window) >= 4.5);
            QVERIFY(contrast(QPalette::Text, QPalette::Base) >= 4.5);
            QVERIFY(contrast(QPalette::HighlightedText, QPalette::Highlight) >= 4.5);
        }
        qApp->setStyleSheet({});
    }
};

VELKOR_TEST_MAIN(TestServerList)
#include "tst_serverlist.moc"
