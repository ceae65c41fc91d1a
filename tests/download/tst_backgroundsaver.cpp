#include "download/backgroundsaver.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

class TestBackgroundSaver : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_cache;
    const QString m_url = QStringLiteral("https://host/ab/x");
    const QByteArray m_content = "some content";

    QString target() const { return m_cache->filePath("ResFiles/ab/x"); }
    static void write(BackgroundSaver* saver, const QString& url, const QByteArray& bytes)
    {
        QVERIFY(saver->addData(url, bytes.left(5)));
        QVERIFY(saver->addData(url, bytes.mid(5)));
    }

private slots:
    void initTestCase() { Settings::useDeployment(sampleDeployment()); }
    void init() { m_cache = std::make_unique<QTemporaryDir>(); }

    void savesWhatIsRight()
    {
        BackgroundSaver saver;
        QSignalSpy succeeded(&saver, &BackgroundSaver::fileSucceeded);
        QVERIFY(saver.createTempFile(m_url, target(), md5Of(m_content)));
        write(&saver, m_url, m_content);
        QVERIFY(!QFile::exists(target()));
        QCOMPARE(readSample(target() + ".tmp"), m_content);
        saver.finalize(m_url);
        QCOMPARE(succeeded.count(), 1);
        QCOMPARE(succeeded.first().first().toString(), m_url);
        QCOMPARE(readSample(target()), m_content);
        QVERIFY(!QFile::exists(target() + ".tmp"));
    }

    void keepsWhatIsWrongFromItsPlace()
    {
        BackgroundSaver saver;
        QSignalSpy corrupt(&saver, &BackgroundSaver::fileCorrupt);
        QSignalSpy succeeded(&saver, &BackgroundSaver::fileSucceeded);
        QVERIFY(saver.createTempFile(m_url, target(), md5Of("something else")));
        write(&saver, m_url, m_content);
        saver.finalize(m_url);
        QCOMPARE(corrupt.count(), 1);
        QVERIFY(!QFile::exists(target()));
        // The next attempt replaces the record.
        QVERIFY(saver.createTempFile(m_url, target(), md5Of(m_content)));
        write(&saver, m_url, m_content);
        saver.finalize(m_url);
        QCOMPARE(succeeded.count(), 1);
    }

    void dropsDataOfUnknownDownloads()
    {
        BackgroundSaver saver;
        QSignalSpy failed(&saver, &BackgroundSaver::fileFailed);
        QVERIFY(!saver.addData(m_url, m_content));
        saver.finalize(m_url);
        QCOMPARE(failed.count(), 1);
        saver.cancel(m_url);
    }

    void cannotWorkBelowAFile()
    {
        writeSample(m_cache->filePath("ResFiles"), "a file where a folder should be");
        BackgroundSaver saver;
        QSignalSpy failed(&saver, &BackgroundSaver::fileFailed);
        QVERIFY(!saver.createTempFile(m_url, target(), md5Of(m_content)));
        QCOMPARE(failed.count(), 1);
    }

    void acceptsAFileThatIsThereAlready()
    {
        BackgroundSaver saver;
        QSignalSpy succeeded(&saver, &BackgroundSaver::fileSucceeded);
        QVERIFY(saver.createTempFile(m_url, target(), md5Of(m_content)));
        write(&saver, m_url, m_content);
        writeSample(target(), m_content);
        saver.finalize(m_url);
        QCOMPARE(succeeded.count(), 1);
        QCOMPARE(readSample(target()), m_content);
    }

    void givesUpWhenTheFileCannotBeMoved()
    {
        QDir().mkpath(target() + "/a folder in its place");
        BackgroundSaver saver;
        QSignalSpy failed(&saver, &BackgroundSaver::fileFailed);
        QVERIFY(saver.createTempFile(m_url, target(), md5Of(m_content)));
        write(&saver, m_url, m_content);
        QElapsedTimer timer;
        timer.start();
        saver.finalize(m_url);
        QCOMPARE(failed.count(), 1);
        QVERIFY(timer.elapsed() >= 4 * 300);
    }

    void doesNotDisturbAnotherLauncher()
    {
        BackgroundSaver mine;
        BackgroundSaver theirs;
        QSignalSpy mineSucceeded(&mine, &BackgroundSaver::fileSucceeded);
        QSignalSpy theirsSucceeded(&theirs, &BackgroundSaver::fileSucceeded);
        QVERIFY(mine.createTempFile(m_url, target(), md5Of(m_content)));
        QVERIFY(mine.addData(m_url, m_content.left(5)));
        QVERIFY(theirs.createTempFile(m_url, target(), md5Of(m_content)));
        QVERIFY(theirs.addData(m_url, m_content.left(3)));
        QVERIFY(mine.addData(m_url, m_content.mid(5)));
        mine.finalize(m_url);
        QCOMPARE(mineSucceeded.count(), 1);
        QCOMPARE(readSample(target()), m_content); // not the half of the other
        QVERIFY(theirs.addData(m_url, m_content.mid(3)));
        theirs.finalize(m_url);
        QCOMPARE(theirsSucceeded.count(), 1);
        QCOMPARE(readSample(target()), m_content);
        QCOMPARE(QDir(m_cache->filePath("ResFiles/ab")).entryList(QDir::Files), QStringList{"x"});
    }

    void doesNotFollowALinkInTheWay()
    {
        const QTemporaryDir outside;
        writeSample(outside.filePath("precious"), "precious");
        QDir().mkpath(m_cache->filePath("ResFiles/ab"));
        QFile::link(outside.filePath("precious"), target() + ".tmp");
        BackgroundSaver saver;
        QVERIFY(saver.createTempFile(m_url, target(), md5Of(m_content)));
        write(&saver, m_url, m_content);
        saver.finalize(m_url);
        QCOMPARE(readSample(outside.filePath("precious")), QByteArray("precious"));
        QVERIFY(!QFileInfo(target()).isSymLink());
    }
};

VELKOR_TEST_MAIN(TestBackgroundSaver)
#include "tst_backgroundsaver.moc"
