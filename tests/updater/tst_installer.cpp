#include "index/indexparser.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"
#include "tools/publisher/indexwriter.h"
#include "tools/updater/installer.h"
#include "tools/updater/waitforprocess.h"

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>

class TestInstaller : public QObject
{
    Q_OBJECT

private:
    using Outcome = Installer::Outcome;
    std::unique_ptr<QTemporaryDir> m_home;
    QString m_folder;
    QString m_resources;
    QString m_error;

    static SampleFiles oldVersion()
    {
        return {{"velkorlauncher", "old launcher"},
                {"updater", "old updater"},
                {"texts/fr", "vieux"},
                {"stays", "here"}};
    }
    static SampleFiles newVersion()
    {
        return {{"velkorlauncher", "new launcher"},
                {"updater", "new updater"},
                {"texts/fr", "neuf"},
                {"texts/de", "neu"},
                {"deep/er/file", "new"}};
    }
    static SampleFiles merged()
    {
        auto files = newVersion();
        files.insert("stays", "here");
        return files;
    }
    /** An index of these files, whose content is in the resources folder. */
    IndexPtr publish(const SampleFiles& files)
    {
        ContentStore store(m_resources);
        IndexWriter writer(&store);
        for (auto file = files.begin(); file != files.end(); ++file) {
            const bool added = writer.addBytes("app:/" + file.key(), file.value(), &m_error);
            if (!added)
                qFatal("%s", qPrintable(m_error));
        }
        IndexParser parser;
        const auto text = writer.text();
        parser.parse(text.constData(), static_cast<size_t>(text.size()));
        return parser.getIndex();
    }
    Outcome install(const IndexPtr& index)
    {
        return Installer(m_folder).install(index, m_resources, &m_error);
    }
    bool hasLeftovers() const { return QFileInfo::exists(m_folder + "/.update"); }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_folder = m_home->filePath("install");
        m_resources = m_home->filePath("ResFiles");
        m_error.clear();
        const auto files = oldVersion();
        for (auto file = files.begin(); file != files.end(); ++file)
            writeSample(m_folder + '/' + file.key(), file.value());
    }

    void replacesAllFiles()
    {
        QFile oldLauncher(m_folder + "/velkorlauncher"); // as it is while it runs
        QVERIFY(oldLauncher.open(QIODevice::ReadOnly));
        QCOMPARE(install(publish(newVersion())), Outcome::Installed);
        QCOMPARE(readFolder(m_folder), merged());
        QCOMPARE(oldLauncher.readAll(), QByteArray("old launcher"));
        QVERIFY(!hasLeftovers());
    }

    void setsModes()
    {
        const IndexEntry row;
        IndexParser parser;
        const auto index = publish(newVersion());
        auto rows = QByteArray();
        for (const auto& entry : index->entries())
            rows += QStringLiteral("%1,%2,%3,%4,0,%5\n")
                        .arg(entry->name, entry->cachedName, entry->checksum)
                        .arg(entry->size)
                        .arg(entry->name.contains("texts") ? 33188 : 33261)
                        .toUtf8();
        parser.parse(rows.constData(), static_cast<size_t>(rows.size()));
        QCOMPARE(install(parser.getIndex()), Outcome::Installed);
        QVERIFY(QFileInfo(m_folder + "/velkorlauncher").isExecutable());
        QVERIFY(!QFileInfo(m_folder + "/texts/fr").isExecutable());
    }

    void leavesTheOldOneWhereSomethingIsWrong_data()
    {
        QTest::addColumn<QString>("fault");
        for (const auto* fault :
             {"damaged content", "missing content", "no launcher", "null", "path outside", "absolute path",
              "its own folder", "twice the same", "a link", "a folder in the way"})
            QTest::newRow(fault) << fault;
    }
    void leavesTheOldOneWhereSomethingIsWrong()
    {
        QFETCH(QString, fault);
        auto files = newVersion();
        if (fault == "no launcher")
            files.remove("velkorlauncher");
        auto index = publish(files);
        const auto content = m_resources + SampleTree::pathOf("neu");
        const auto add = [&](const QString& name) {
            index->append(
                IndexEntryPtr(new IndexEntry(name, SampleTree::pathOf("neu").mid(1), md5Of("neu"), 3)));
        };
        if (fault == "damaged content")
            writeSample(content, "bad");
        else if (fault == "missing content")
            QFile::remove(content);
        else if (fault == "null")
            index.reset();
        else if (fault == "path outside")
            add("app:/../escaped");
        else if (fault == "absolute path")
            add("app://etc/escaped");
        else if (fault == "its own folder")
            add("app:/texts/../.update/journal");
        else if (fault == "twice the same")
            add("app:/texts/./de");
        else if (fault == "a link")
            add("sym:/texts/link");
        else if (fault == "a folder in the way")
            writeSample(m_folder + "/texts/de/file", "x");
        const auto before = readFolder(m_folder);
        QCOMPARE(install(index), Outcome::Unchanged);
        QVERIFY(!m_error.isEmpty());
        QCOMPARE(readFolder(m_folder), before);
        QVERIFY(!hasLeftovers());
        QVERIFY(!QFileInfo::exists(m_home->filePath("escaped")));
    }

    void rollsBackWhatCannotBeFinished()
    {
        // "stays" is a file, so that a file below it cannot come into place; others have come before it.
        auto files = newVersion();
        files.insert("stays/below", "x");
        QCOMPARE(install(publish(files)), Outcome::Unchanged);
        QVERIFY2(m_error.contains("stays"), qPrintable(m_error));
        auto expected = oldVersion();
        QCOMPARE(readFolder(m_folder), expected);
        QVERIFY(!hasLeftovers());
    }

    void finishesOrUndoesWhateverAKillHasLeft()
    {
        // Processes that die after so many milliseconds of the work, in each of its parts.
        SampleFiles many = newVersion();
        SampleFiles old = oldVersion();
        for (int i = 0; i < 60; ++i) {
            many.insert(QStringLiteral("files/%1").arg(i), sampleBytes(i, 20000));
            old.insert(QStringLiteral("files/%1").arg(i), sampleBytes(1000 + i, 20000));
        }
        const auto index = publish(many);
        auto whole = many;
        whole.insert("stays", "here");
        int finished = 0;
        int undone = 0;
        for (int kill = 0; kill < 40; ++kill) {
            QDir(m_folder).removeRecursively();
            for (auto file = old.begin(); file != old.end(); ++file)
                writeSample(m_folder + '/' + file.key(), file.value());
            const pid_t child = ::fork();
            if (child == 0) {
                QString error;
                Installer(m_folder).install(index, m_resources, &error);
                ::_exit(0);
            }
            QTest::qSleep(1 + kill * 2);
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
            const auto outcome = Installer(m_folder).finish(&m_error);
            QVERIFY(outcome == Outcome::Installed || outcome == Outcome::Unchanged);
            const auto files = readFolder(m_folder);
            QVERIFY2(files == whole || files == old, qPrintable(QString::number(kill)));
            QVERIFY(!hasLeftovers());
            ++(files == whole ? finished : undone);
        }
        QVERIFY(undone > 0);
        qDebug() << finished << "finished," << undone << "undone";
    }

    void goesOnWithARollBackThatWasInterrupted()
    {
        // The state after two of three files have been put back.
        const auto work = m_folder + "/.update";
        writeSample(work + "/journal", "1 velkorlauncher\n1 updater\n0 texts/de\n1 texts/fr\n");
        writeSample(work + "/rollback", {});
        writeSample(m_folder + "/texts/de", "neu");
        writeSample(m_folder + "/texts/fr", "neuf");
        writeSample(work + "/old/3", "vieux");
        QCOMPARE(Installer(m_folder).finish(&m_error), Outcome::Unchanged);
        QCOMPARE(readFolder(m_folder), oldVersion());
        QVERIFY(!hasLeftovers());
    }

    void letsOnlyOneWork()
    {
        const int other = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY);
        QCOMPARE(::flock(other, LOCK_EX | LOCK_NB), 0);
        QCOMPARE(install(publish(newVersion())), Outcome::Busy);
        ::close(other);
        QCOMPARE(readFolder(m_folder), oldVersion());
    }

    void waitsForAProcess()
    {
        QProcess process;
        process.start("cat", QStringList());
        QVERIFY(process.waitForStarted());
        const auto id = static_cast<pid_t>(process.processId());
        QVERIFY(!waitForProcess(id, std::chrono::milliseconds(50)));
        process.closeWriteChannel();
        QVERIFY(waitForProcess(id, std::chrono::seconds(20)));
        process.waitForFinished();
        QVERIFY(waitForProcess(id, std::chrono::seconds(20))); // is not there any more
    }
};

VELKOR_TEST_MAIN(TestInstaller)
#include "tst_installer.moc"
