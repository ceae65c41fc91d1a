#include "maintenance/cachelisting.h"
#include "maintenance/cachemover.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/temporaryhome.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <sys/stat.h>

namespace
{
/** The cache of a player: content, a runtime with links, a prefix, and things that are not ours. */
SampleFiles fillCache(const QString& folder, int files, int size)
{
    for (int i = 0; i < files; ++i)
        writeSample(QStringLiteral("%1/ResFiles/%2/f%3").arg(folder).arg(i % 16).arg(i),
                    sampleBytes(i, size));
    writeSample(folder + "/index_ks.txt", "index");
    writeSample(folder + "/wine/bin/wine64", "program");
    QFile::setPermissions(folder + "/wine/bin/wine64",
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser);
    QFile::link(folder + "/wine/bin/wine64", folder + "/wine/bin/wine");
    writeSample(folder + "/wineenv/drive_c/ks/start.ini", "[main]");
    QDir().mkpath(folder + "/wineenv/dosdevices");
    QFile::link("/", folder + "/wineenv/dosdevices/z:");
    auto content = readFolder(folder);
    content.remove("holiday.jpg");
    writeSample(folder + "/holiday.jpg", "not ours");
    return content;
}

QString moveTo(const QString& folder, CacheMover::Outcome* outcome, int cancelAfterMs = -1)
{
    CacheMover mover(Settings::instance());
    const auto objection = mover.objection(folder);
    if (!objection.isEmpty())
        return objection;
    QString failure = "it never ends";
    QObject::connect(&mover, &CacheMover::finished, &mover,
                     [&](CacheMover::Outcome result, const QString& error) {
                         *outcome = result;
                         failure = error;
                     });
    QSignalSpy finished(&mover, &CacheMover::finished);
    mover.start(folder);
    if (cancelAfterMs >= 0)
        QTimer::singleShot(cancelAfterMs, &mover, &CacheMover::cancel);
    if (finished.isEmpty())
        finished.wait(60000);
    return failure;
}
} // namespace

class TestCacheMover : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_here;
    std::unique_ptr<QTemporaryDir> m_there; // on another volume
    SampleFiles m_content;
    QString m_from;

    static Settings* settings() { return Settings::instance(); }
    static bool isOnOtherVolume(const QString& folder)
    {
        struct stat a;
        struct stat b;
        return ::stat(QFile::encodeName(QDir::tempPath()).constData(), &a) == 0 &&
               ::stat(QFile::encodeName(folder).constData(), &b) == 0 && a.st_dev != b.st_dev;
    }
    static QString cache() { return QDir::cleanPath(settings()->getCacheFolder()); }
    /** The folder of the settings has all of the cache; anything that others have put beside is no matter. */
    void verifyWhole()
    {
        auto found = readFolder(cache());
        found.remove("holiday.jpg");
        QCOMPARE(found.keys(), m_content.keys());
        QVERIFY(found == m_content);
        QCOMPARE(QFile::symLinkTarget(cache() + "/wine/bin/wine"), cache() + "/wine/bin/wine64");
        QCOMPARE(QFile::symLinkTarget(cache() + "/wineenv/dosdevices/z:"), QString("/"));
        QVERIFY(QFileInfo(cache() + "/wine/bin/wine64").isExecutable());
    }
    /** Runs this program's own move in a process that can be killed. */
    void moveInChild(const QString& to, int killAfterMs)
    {
        settings()->store().sync();
        QProcess child;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VELKOR_MOVE_TO", to);
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), QStringList());
        QVERIFY(child.waitForStarted());
        if (!child.waitForReadyRead(20000)) // says when it starts
            QFAIL("The child never started");
        QThread::msleep(static_cast<unsigned long>(killAfterMs));
        child.kill();
        child.waitForFinished();
    }
    void restart()
    {
        settings()->store().sync();
        settings()->setCacheFolder(settings()->store().value("SharedCacheFolder").toString());
        CacheMover::recover(settings());
        QTRY_VERIFY_WITH_TIMEOUT(!settings()->store().contains("SharedCacheMove/from"), 20000);
    }

private slots:
    void init()
    {
        m_here = std::make_unique<QTemporaryDir>();
        m_there = std::make_unique<QTemporaryDir>("/dev/shm/velkor-XXXXXX");
        m_from = m_here->filePath("cache");
        m_content = fillCache(m_from, 40, 3000);
        settings()->setCacheFolder(m_from);
        settings()->save();
    }

    void moves_data()
    {
        QTest::addColumn<bool>("otherVolume");
        QTest::newRow("same volume") << false;
        QTest::newRow("other volume") << true;
    }
    void moves()
    {
        QFETCH(bool, otherVolume);
        if (otherVolume && !isOnOtherVolume(m_there->path()))
            QSKIP("There is only one volume here");
        const auto to = (otherVolume ? m_there : m_here)->filePath("new place");
        auto outcome = CacheMover::Outcome::Failed;
        QCOMPARE(moveTo(to, &outcome), QString());
        QCOMPARE(outcome, CacheMover::Outcome::Moved);
        QCOMPARE(cache(), to);
        verifyWhole();
        QCOMPARE(readFolder(m_from), (SampleFiles{{"holiday.jpg", "not ours"}}));
        settings()->store().sync();
        QCOMPARE(QDir::cleanPath(settings()->store().value("SharedCacheFolder").toString()), to);
    }

    void refuses()
    {
        auto outcome = CacheMover::Outcome::Failed;
        writeSample(m_here->filePath("full/file"), "x");
        QVERIFY(moveTo(m_here->filePath("full"), &outcome).contains("is not empty"));
        QVERIFY(moveTo(m_from + "/inside", &outcome).contains("must not lie"));
        QVERIFY(moveTo(m_here->path(), &outcome).contains("must not lie"));
        QVERIFY(moveTo("/proc/nothing", &outcome).contains("cannot be written to"));
        QCOMPARE(cache(), m_from);
        verifyWhole();
    }

    void needsRoom()
    {
        const QTemporaryDir mountPoint;
        QProcess child;
        settings()->store().sync();
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("VELKOR_MOVE_TO", mountPoint.path());
        child.setProcessEnvironment(environment);
        child.start("unshare", {"-rm", "sh", "-c", "mount -t tmpfs -o size=1m tmpfs \"$0\" && exec \"$1\"",
                                mountPoint.path(), QCoreApplication::applicationFilePath()});
        QVERIFY(child.waitForFinished(30000));
        const auto said = child.readAllStandardOutput() + child.readAllStandardError();
        if (said.contains("unshare failed") || said.contains("mount:"))
            QSKIP("No volume can be mounted here");
        QVERIFY2(said.contains("are needed, but only"), said);
        restart();
        QCOMPARE(cache(), m_from);
        verifyWhole();
    }

    void isCancelledAtAnyMoment()
    {
        if (!isOnOtherVolume(m_there->path()))
            QSKIP("There is only one volume here");
        QRandomGenerator random(3);
        m_content = fillCache(m_from, 400, 30000);
        int cancelled = 0;
        for (int round = 0; round < 10; ++round) {
            const auto to = m_there->filePath(QStringLiteral("new%1").arg(round));
            auto outcome = CacheMover::Outcome::Failed;
            QCOMPARE(moveTo(to, &outcome, random.bounded(30)), QString());
            verifyWhole();
            if (outcome == CacheMover::Outcome::Moved) {
                QCOMPARE(cache(), to);
                QCOMPARE(moveTo(m_here->filePath(QStringLiteral("back%1").arg(round)), &outcome), QString());
                verifyWhole();
            } else {
                ++cancelled;
                QVERIFY(!QFile::exists(to)); // nothing is left of the copy
            }
        }
        QVERIFY(cancelled > 0);
    }

    void findsOneWholeCacheAfterBeingKilled_data() { moves_data(); }
    void findsOneWholeCacheAfterBeingKilled()
    {
        QFETCH(bool, otherVolume);
        if (otherVolume && !isOnOtherVolume(m_there->path()))
            QSKIP("There is only one volume here");
        QRandomGenerator random(4);
        m_content = fillCache(m_from, 400, 30000);
        for (int round = 0; round < 8; ++round) {
            auto& volume = otherVolume == (round % 2 == 0) ? m_there : m_here;
            const auto before = cache();
            const auto to = volume->filePath(QStringLiteral("new%1").arg(round));
            moveInChild(to, random.bounded(40));
            restart();
            QVERIFY2(cache() == before || cache() == to, qPrintable(cache()));
            verifyWhole();
            // Nothing of ours is left in the other place.
            const auto other = cache() == to ? before : to;
            for (const auto& left : readFolder(other).keys())
                QVERIFY2(left == "holiday.jpg", qPrintable(left));
        }
    }
};

int main(int argc, char** argv)
{
    const auto to = qEnvironmentVariable("VELKOR_MOVE_TO");
    std::unique_ptr<TemporaryHome> home;
    if (to.isEmpty())
        home = std::make_unique<TemporaryHome>();
    const QApplication app(argc, argv);
    Settings::useDeployment(sampleDeployment());
    if (to.isEmpty()) {
        TestCacheMover test;
        return QTest::qExec(&test, argc, argv);
    }
    std::puts("moving");
    std::fflush(stdout);
    auto outcome = CacheMover::Outcome::Failed;
    std::puts(qPrintable(moveTo(to, &outcome)));
    return 0;
}
#include "tst_cachemover.moc"
