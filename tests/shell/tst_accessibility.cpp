#include "maintenance/diagnosticsdialog.h"
#include "maintenance/migratesettingsgui.h"
#include "maintenance/reportdialog.h"
#include "maintenance/verifiergui.h"
#include "servers/servermanager.h"
#include "servers/winemanager.h"
#include "settings/settings.h"
#include "shell/adoptdialog.h"
#include "shell/downloadplandialog.h"
#include "shell/launchoptionsdialog.h"
#include "shell/logdialog.h"
#include "shell/mainwindow.h"
#include "shell/settingsdialog.h"
#include "shell/theme.h"
#include "shell/updatedialog.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QTranslator>

#include <cmath>

/** Every window as somebody meets it who hears the screen, or has no mouse. */
class TestAccessibility : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    QTemporaryDir m_cache;
    std::unique_ptr<WineManager> m_wine;
    std::vector<std::unique_ptr<ServerManager>> m_servers;

    static bool isControl(QAccessible::Role role)
    {
        static const QSet<QAccessible::Role> roles{
            QAccessible::Button,       QAccessible::CheckBox,    QAccessible::ComboBox,
            QAccessible::EditableText, QAccessible::ProgressBar, QAccessible::ButtonMenu,
            QAccessible::List,         QAccessible::Tree,        QAccessible::Table,
            QAccessible::RadioButton,  QAccessible::SpinBox,     QAccessible::Slider};
        return roles.contains(role);
    }
    /** Walks the tree below; parts of a control belong to it. */
    static void collect(QAccessibleInterface* root, QVector<QAccessibleInterface*>* controls)
    {
        for (int i = 0; i < root->childCount(); ++i) {
            auto* child = root->child(i);
            if (!child || child->state().invisible)
                continue;
            if (isControl(child->role()))
                controls->append(child);
            else
                collect(child, controls);
        }
    }
    static DownloadPlan longPlan(bool isShortOfRoom)
    {
        DownloadPlan plan;
        plan.checkedBytes = plan.roomNeeded = plan.bytesToFetch = plan.missingBytes = 123456789012;
        plan.roomLeft = isShortOfRoom ? 5 : 234567890123;
        return plan;
    }
    std::unique_ptr<QWidget> makeWindow(const QString& name) const
    {
        if (name == "main window")
            return std::make_unique<MainWindow>();
        if (name == "settings")
            return std::make_unique<SettingsDialog>(Settings::instance());
        if (name == "cache")
            return std::make_unique<VerifierGui>();
        if (name == "profiles")
            return std::make_unique<MigrateSettingsGui>();
        if (name == "update")
            return std::make_unique<UpdateDialog>("7");
        if (name == "existing files")
            return std::make_unique<AdoptDialog>("/nowhere", m_cache.path());
        if (name == "launch options")
            return std::make_unique<LaunchOptionsDialog>(Settings::instance());
        if (name == "log")
            return std::make_unique<LogDialog>(m_cache.filePath("log"));
        if (name.startsWith("long download"))
            return std::make_unique<DownloadPlanDialog>("Kestrel", longPlan(name.endsWith("room")),
                                                        m_cache.path(), std::chrono::hours(1));
        Diagnostics::Plan plan;
        plan.cacheFolder = m_cache.path();
        if (name == "report")
            return std::make_unique<ReportDialog>(plan);
        return std::make_unique<DiagnosticsDialog>(plan);
    }
    /** The texts that do not have the room they need. */
    static QStringList cutTexts(const QWidget& window)
    {
        QStringList texts;
        for (const auto* button : window.findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->width() < button->minimumSizeHint().width())
                texts << button->text();
        }
        for (const auto* label : window.findChildren<QLabel*>()) {
            if (!label->isVisible() || label->text().isEmpty())
                continue;
            const int height =
                label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
            const bool isNarrow = !label->wordWrap() && label->width() < label->sizeHint().width();
            if (isNarrow || label->height() < height)
                texts << label->text();
        }
        return texts;
    }
    static double luminance(const QColor& colour)
    {
        const auto part = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    }
    static double contrast(const QColor& a, const QColor& b)
    {
        const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
        return (lighter + 0.05) / (darker + 0.05);
    }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        auto* settings = Settings::instance();
        settings->setCacheFolder(m_cache.path());
        CommandLine commandLine;
        commandLine.disableWebGui = true;
        settings->setCommandLine(commandLine);
        m_wine = std::make_unique<WineManager>();
        settings->registerWineManager(m_wine.get());
        connect(settings, &Settings::serverDeclared, this,
                [this](const QString& key, const QJsonObject& entry) {
                    m_servers.push_back(std::make_unique<ServerManager>(key, entry));
                    Settings::instance()->registerServer(key, m_servers.back().get());
                });
        settings->initializeServers();
    }
    void cleanupTestCase() { m_service.reset(); }

    void controlsHaveNamesAndAreReached_data()
    {
        QTest::addColumn<int>("fewest");
        QTest::newRow("main window") << 6;
        QTest::newRow("settings") << 20;
        QTest::newRow("cache") << 6;
        QTest::newRow("profiles") << 6;
        QTest::newRow("diagnostics") << 5;
        QTest::newRow("update") << 2;
        QTest::newRow("existing files") << 4;
        QTest::newRow("launch options") << 5;
        QTest::newRow("log") << 5;
        QTest::newRow("long download") << 2;
        QTest::newRow("report") << 4;
    }
    void controlsHaveNamesAndAreReached()
    {
        QFETCH(int, fewest);
        const auto window = makeWindow(QTest::currentDataTag());
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QVector<QAccessibleInterface*> controls;
        collect(QAccessible::queryAccessibleInterface(window.get()), &controls);
        QVERIFY2(controls.size() >= fewest, qPrintable(QString::number(controls.size())));

        // Everything that can be operated is met by somebody who presses Tab again and again.
        QSet<const QObject*> met;
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(),
                            Qt::Key_Tab);
            met.insert(QApplication::focusWidget());
        }
        QStringList problems;
        for (auto* control : controls) {
            const auto what = QStringLiteral("%1 \"%2\"")
                                  .arg(QLatin1String(control->object()->metaObject()->className()),
                                       control->text(QAccessible::Name));
            if (control->text(QAccessible::Name).isEmpty())
                problems << what + " has no name";
            const bool isOperated = control->role() != QAccessible::ProgressBar && !control->state().disabled;
            if (isOperated && !met.contains(control->object()))
                problems << what + " is not reached";
        }
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    void textsFitInAllLanguages_data()
    {
        QTest::addColumn<QString>("language");
        for (const auto* language : {"", "de", "fr", "ja", "ru"})
            QTest::newRow(language) << QString(language);
    }
    void textsFitInAllLanguages()
    {
        QFETCH(QString, language);
        QTranslator translator;
        if (!language.isEmpty()) {
            QVERIFY(translator.load("velkorlauncher_" + language, VELKOR_BIN));
            QVERIFY(QCoreApplication::installTranslator(&translator));
        }
        for (const auto* name :
             {"main window", "settings", "cache", "profiles", "diagnostics", "update", "existing files",
              "launch options", "log", "long download", "long download without room", "report"}) {
            const auto window = makeWindow(name);
            window->show();
            QVERIFY(QTest::qWaitForWindowExposed(window.get()));
            // Layouts come to rest after a moment.
            const bool fits = QTest::qWaitFor([&] { return cutTexts(*window).isEmpty(); }, 3000);
            const auto pictures = qEnvironmentVariable("VELKOR_PICTURES");
            if (!pictures.isEmpty())
                window->grab().save(QStringLiteral("%1/%2-%3.png").arg(pictures, name, language));
            QVERIFY2(fits, qPrintable(QStringLiteral("%1: %2").arg(name, cutTexts(*window).join('\n'))));
        }
    }

    void coloursCanBeToldApart_data()
    {
        QTest::addColumn<QString>("front");
        QTest::addColumn<QString>("back");
        QTest::addColumn<double>("least");
        for (const auto* ground : {"window", "surface"}) {
            QTest::addRow("text on %s", ground) << "text" << QString(ground) << 4.5;
            QTest::addRow("quiet text on %s", ground) << "muted" << QString(ground) << 4.5;
            QTest::addRow("focus on %s", ground) << "focus" << QString(ground) << 3.0;
            QTest::addRow("edges of fields on %s", ground) << "outline" << QString(ground) << 3.0;
        }
        QTest::newRow("button") << "onAccent"
                                << "accent" << 4.5;
        QTest::newRow("button under the pointer") << "onAccent"
                                                  << "hover" << 4.5;
        QTest::newRow("text on progress") << "text"
                                          << "progress" << 4.5;
        QTest::newRow("text on its track") << "text"
                                           << "track" << 4.5;
    }
    void coloursCanBeToldApart()
    {
        QFETCH(QString, front);
        QFETCH(QString, back);
        QFETCH(double, least);
        for (const auto scheme : {Theme::Scheme::Light, Theme::Scheme::Dark}) {
            const auto ratio = contrast(Theme::colour(front, scheme), Theme::colour(back, scheme));
            QVERIFY2(ratio >= least, qPrintable(QStringLiteral("%1 : 1").arg(ratio)));
        }
    }
};

VELKOR_TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
