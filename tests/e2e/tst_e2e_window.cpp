#include "tests/e2e/virtualdisplay.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"

/** The real launcher's window on a real display, with and without a place for tray icons. */
class TestWindow : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;
    const QString m_title = QStringLiteral("Velkor Launcher - version");

    std::unique_ptr<LauncherProcess> newLauncher(const VirtualDisplay& display)
    {
        auto launcher = std::make_unique<LauncherProcess>(m_service->backend());
        launcher->setEnvironment("QT_QPA_PLATFORM", "xcb");
        launcher->setEnvironment("DISPLAY", display.name());
        // Libraries of the display that are gone at exit cannot be told apart from ours; other tests look for
        // leaks.
        launcher->setEnvironment("ASAN_OPTIONS", "detect_leaks=0");
        return launcher;
    }
    static QPoint closeButton(const QRect& window) { return window.topRight() + QPoint(-24, 23); }

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<BackendFixture>();
        m_service->tree().publish("ks", "100", {{"a", "b"}});
    }
    void cleanupTestCase() { m_service.reset(); }

    void hidesToTheTrayAndComesBack()
    {
        VirtualDisplay display;
        QVERIFY(!display.name().isEmpty());
        display.run(
            {"trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request", "--height", "32"});
        const auto launcher = newLauncher(display);
        launcher->set("LauncherShouldMinimizeToTray", true);
        launcher->start({"-d", "-k"});
        QVERIFY(display.waitForWindow(m_title));
        QVERIFY(launcher->waitForLog("Scheduling refresh after 15 minutes"));
        // The icon docks a moment after the tray has come up.
        const auto panel = display.xdotool({"search", "--onlyvisible", "--class", "trayer"})
                               .section('\n', 0, 0)
                               .toLongLong();
        QVERIFY(panel != 0);
        QTRY_VERIFY_WITH_TIMEOUT(display.geometryOf(panel).width() >= 24, 20000);

        display.click(closeButton(display.geometryOf(display.waitForWindow(m_title))));
        QVERIFY(launcher->waitForLog("Minimizing to tray rather than closing fully"));
        QTRY_VERIFY_WITH_TIMEOUT(!display.isVisible(m_title), 20000);
        QCOMPARE(launcher->process().state(), QProcess::Running);

        display.click(display.geometryOf(panel).center());
        QVERIFY(display.waitForWindow(m_title));
    }

    void quitsWithoutATray()
    {
        VirtualDisplay display;
        QVERIFY(!display.name().isEmpty());
        const auto launcher = newLauncher(display);
        launcher->set("LauncherShouldMinimizeToTray", true);
        launcher->start({"-d", "-k"});
        const auto window = display.waitForWindow(m_title);
        QVERIFY(window);
        QVERIFY(launcher->waitForLog("Scheduling refresh after 15 minutes"));
        const auto geometry = display.geometryOf(window);
        QCOMPARE(geometry.size(), QSize(1184, 580));
        QVERIFY(qAbs(geometry.center().x() - 700) < 3 && qAbs(geometry.center().y() - 400) < 3);
        display.click(closeButton(geometry));
        QVERIFY(launcher->process().waitForFinished(20000));
        QCOMPARE(launcher->process().exitCode(), 0);
        QVERIFY(launcher->log().contains("Velkor Launcher closing, 0 client(s) still running"));
        QVERIFY(!launcher->setting("LauncherWindowGeometry").toByteArray().isEmpty());
    }
};

VELKOR_TEST_MAIN(TestWindow)
#include "tst_e2e_window.moc"
