#include "servers/copier.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QSignalSpy>

#include <sys/stat.h>

class TestCopier : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    IndexPtr m_index;
    bool m_clientsRunning = false;

    QString cache() const { return m_folder->filePath("cache"); }
    QString staged(const QString& name) const { return m_folder->filePath("staging/" + name); }
    void add(const QString& name, const QByteArray& content, int mode = 33188)
    {
        const auto cachedName = SampleTree::pathOf(content).mid(1);
        writeSample(cache() + "/ResFiles/" + cachedName, content);
        IndexEntryPtr entry(new IndexEntry(name, cachedName, md5Of(content), content.size()));
        entry->flags = mode;
        m_index->append(entry);
    }
    void addLink(const QString& path, const QString& target)
    {
        m_index->append(IndexEntryPtr(new IndexEntry("sym:" + path, "sym:app:" + target, md5Of({}), 0)));
    }
    std::unique_ptr<Copier> newCopier()
    {
        return std::make_unique<Copier>(m_index, cache(), m_folder->filePath("staging"),
                                        [this] { return m_clientsRunning; });
    }
    int copy() { return newCopier()->copyFiles(); }
    int runAsTask(QStringList* texts = nullptr)
    {
        const auto copier = newCopier();
        QSignalSpy finished(copier.get(), &Task::finished);
        QSignalSpy progress(copier.get(), &Copier::progressUpdate);
        copier->go();
        if (finished.isEmpty() && !finished.wait())
            return -1;
        for (const auto& report : progress) {
            if (texts)
                *texts << report.at(1).toString();
        }
        return copier->getErrorCode();
    }
    static qint64 changeTime(const QString& path)
    {
        struct stat status;
        return ::stat(QFile::encodeName(path).constData(), &status) == 0
                   ? status.st_ctim.tv_sec * 1000000000 + status.st_ctim.tv_nsec
                   : 0;
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_index = IndexPtr::create();
        m_clientsRunning = false;
    }

    void placesFilesWithTheirModesAndLinks()
    {
        add("app:/bin/run.exe", "program", 33261);
        add("app:/read me.txt", "text", 33188);
        add("app:/default", "no mode", 0);
        add("res:/not/for/staging", "resource");
        addLink("/links/run", "/bin/run.exe");
        QCOMPARE(copy(), 0);
        QCOMPARE(readFolder(m_folder->filePath("staging")), (SampleFiles{{"bin/run.exe", "program"},
                                                                         {"read me.txt", "text"},
                                                                         {"default", "no mode"},
                                                                         {"links/run", "program"}}));
        QVERIFY(QFileInfo(staged("bin/run.exe")).isExecutable());
        QVERIFY(!QFileInfo(staged("read me.txt")).permission(QFile::ExeOwner));
        QCOMPARE(QFile::symLinkTarget(staged("links/run")), staged("bin/run.exe"));
    }

    void touchesNothingThatIsRight()
    {
        add("app:/a", "content");
        addLink("/l", "/a");
        QCOMPARE(copy(), 0);
        const auto before = changeTime(staged("a"));
        QFile::setPermissions(staged("a"), QFile::ReadOwner | QFile::ExeOwner);
        const auto withPermissions = changeTime(staged("a"));
        QVERIFY(withPermissions != before);
        QCOMPARE(copy(), 0);
        QCOMPARE(runAsTask(), 0);
        QCOMPARE(changeTime(staged("a")), withPermissions);
    }

    void replacesWhatIsWrong()
    {
        add("app:/a", "new content");
        add("app:/through", "a file again");
        addLink("/l", "/a");
        addLink("/folder", "/a");
        writeSample(staged("a"), "old");
        writeSample(staged("l"), "a file where a link should be");
        writeSample(staged("folder/inside"), "x");
        const QTemporaryDir outside;
        writeSample(outside.filePath("precious"), "precious");
        QFile::link(outside.filePath("precious"), staged("through"));
        QCOMPARE(copy(), 0);
        QCOMPARE(readSample(staged("a")), QByteArray("new content"));
        QVERIFY(QFileInfo(staged("l")).isSymLink() && QFileInfo(staged("folder")).isSymLink());
        QCOMPARE(readSample(outside.filePath("precious")), QByteArray("precious"));
        QVERIFY(!QFileInfo(staged("through")).isSymLink());
    }

    void leavesEverythingWhileClientsRun()
    {
        add("app:/a", "new");
        writeSample(staged("a"), "old");
        m_clientsRunning = true;
        QCOMPARE(copy(), 4);
        QCOMPARE(runAsTask(), 4);
        QCOMPARE(readSample(staged("a")), QByteArray("old"));
        m_index = IndexPtr::create();
        QCOMPARE(copy(), 0); // nothing to copy
        QCOMPARE(runAsTask(), 0);
    }

    void namesWhatCouldNotBeCopied()
    {
        add("app:/good", "good");
        add("app:/lost", "lost");
        QFile::remove(cache() + "/ResFiles/" + SampleTree::pathOf("lost").mid(1));
        const auto copier = newCopier();
        QCOMPARE(copier->copyFiles(), 5);
        QCOMPARE(copier->getFailedFiles(), QStringList{staged("lost")});
        QVERIFY(QFile::exists(staged("good")));
        QDir().mkpath(staged("folder in place/x"));
        m_index = IndexPtr::create();
        add("app:/folder in place", "content");
        QCOMPARE(copy(), 6);
        QCOMPARE(runAsTask(), 6);
    }

    void stopsAtItsFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("cachedName");
        QTest::newRow("parent") << "app:/../escaped"
                                << "ab/x";
        QTest::newRow("through a link") << "app:/out/escaped"
                                        << "ab/x";
        QTest::newRow("source outside") << "app:/stolen"
                                        << "../../secret";
        QTest::newRow("link outside") << "sym:/../escaped"
                                      << "sym:app:/good";
        QTest::newRow("link to outside") << "sym:/link"
                                         << "sym:app:/../escaped";
        QTest::newRow("link through a link") << "sym:/link"
                                             << "sym:app:/out/escaped";
    }
    void stopsAtItsFolder()
    {
        QFETCH(QString, name);
        QFETCH(QString, cachedName);
        const QTemporaryDir outside;
        QDir().mkpath(m_folder->filePath("staging"));
        QFile::link(outside.path(), staged("out"));
        writeSample(m_folder->filePath("secret"), "secret");
        writeSample(cache() + "/ResFiles/ab/x", "x");
        add("app:/good", "good");
        m_index->append(IndexEntryPtr(new IndexEntry(name, cachedName, md5Of("x"), 1)));
        QCOMPARE(copy(), 2);
        QVERIFY(QDir(outside.path()).isEmpty());
        QVERIFY(!QFile::exists(m_folder->filePath("escaped")));
        QCOMPARE(QDir(m_folder->filePath("staging")).entryList(QDir::Files), QStringList{"good"});
    }

    void reportsItsProgress()
    {
        for (int i = 0; i < 300; ++i)
            add(QStringLiteral("app:/%1").arg(i), sampleBytes(i, 3000));
        QStringList texts;
        QCOMPARE(runAsTask(&texts), 0);
        QVERIFY(texts.contains("Copying files"));
        texts.clear();
        QCOMPARE(runAsTask(&texts), 0);
        QCOMPARE(QSet<QString>(texts.begin(), texts.end()), QSet<QString>{"Verifying files"});
    }
};

VELKOR_TEST_MAIN(TestCopier)
#include "tst_copier.moc"
