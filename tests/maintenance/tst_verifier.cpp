#include "cache/updatemarker.h"
#include "maintenance/verifier.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QDateTime>
#include <QSignalSpy>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

class TestVerifier : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_cache;
    IndexPtr m_index;
    int m_failures = 0;

    QString path(const QString& cachedName) const { return m_cache->filePath("ResFiles/" + cachedName); }
    static void makeOld(const QString& path)
    {
        const timeval old{QDateTime::currentSecsSinceEpoch() - 2 * 24 * 3600, 0};
        const timeval times[2] = {old, old};
        QVERIFY(::lutimes(QFile::encodeName(path).constData(), times) == 0);
    }
    /** A file of the index; returns its cached name. */
    QString add(int number, const QByteArray& content, bool present = true)
    {
        const auto md5 = md5Of(content);
        const auto name = QStringLiteral("%1/%2_%3").arg(md5.left(2), md5.left(16), md5);
        m_index->append(
            IndexEntryPtr(new IndexEntry(QStringLiteral("res:/%1").arg(number), name, md5, content.size())));
        if (present)
            writeOld(name, content);
        return name;
    }
    void writeOld(const QString& cachedName, const QByteArray& content)
    {
        writeSample(path(cachedName), content);
        makeOld(path(cachedName));
    }
    VerifyReport verify(Verifier::Mode mode = Verifier::Mode::VerifyAndPurge)
    {
        Verifier verifier;
        VerifyReport report;
        bool done = false;
        connect(&verifier, &Verifier::finished, this, [&](const VerifyReport& result) {
            report = result;
            done = true;
        });
        verifier.start(
            m_cache->path(),
            [this] {
                return CombinedIndex{m_failures, m_index};
            },
            mode);
        [&] { QTRY_VERIFY_WITH_TIMEOUT(done, 60000); }();
        return report;
    }
    static QMap<QString, QString> problems(const VerifyReport& report)
    {
        QMap<QString, QString> found;
        for (const auto& finding : report.damaged)
            found.insert(finding.path, finding.problem);
        return found;
    }

private slots:
    void init()
    {
        m_cache = std::make_unique<QTemporaryDir>();
        m_index = IndexPtr::create();
        m_failures = 0;
    }

    // Twenty of each of ten kinds among many good files.
    void findsExactlyWhatWasPlanted()
    {
        const int files = VELKOR_VERIFIED_FILES;
        const QTemporaryDir outside;
        writeSample(outside.filePath("kept"), "mine");
        QMap<QString, QString> expected;
        QStringList extra;
        int missing = 0;
        for (int i = 0; i < files; ++i) {
            const auto content = sampleBytes(i, i % 97 == 0 ? 0 : 20 + i % 3000);
            const bool planted = i % (files / 200) == 1 && content.size() > 1;
            const int kind = i / (files / 200) % 10;
            const auto name = add(i, content, !planted || kind > 3);
            if (!planted)
                continue;
            switch (kind) {
            case 0:
                ++missing;
                break;
            case 1: // wrong case
                ++missing;
                extra << name.toUpper();
                writeOld(extra.last(), content);
                break;
            case 2: {
                auto flipped = content;
                flipped[content.size() / 2] = char(flipped[content.size() / 2] ^ 4);
                writeOld(name, flipped);
                expected.insert(name, "has the wrong content");
                break;
            }
            case 3:
                QVERIFY(QDir().mkpath(path(name)));
                writeOld(name + "/inside", "x");
                expected.insert(name, "is a folder");
                break;
            case 4:
                writeOld(name, content.chopped(1));
                expected.insert(name, "is too short");
                break;
            case 5:
                writeOld(name, content + 'x');
                expected.insert(name, "is too long");
                break;
            case 6:
                writeOld(name, {});
                expected.insert(name, "is empty");
                break;
            case 7:
                extra << "ff/" + QString::number(i);
                writeOld(extra.last(), "nobody knows me");
                break;
            case 8:
                QVERIFY(QFile::remove(path(name)) && QFile::link(outside.filePath("kept"), path(name)));
                makeOld(path(name));
                expected.insert(name, "is a link");
                break;
            default: // what cannot be read as a file
                QVERIFY(QFile::remove(path(name)) &&
                        ::mkfifo(QFile::encodeName(path(name)).constData(), 0600) == 0);
                makeOld(path(name));
                expected.insert(name, "is no regular file");
            }
        }
        const auto report = verify();
        QCOMPARE(problems(report), expected);
        QCOMPARE(report.missingFiles, missing);
        QCOMPARE(QSet<QString>(report.extra.begin(), report.extra.end()),
                 QSet<QString>(extra.begin(), extra.end()));
        QCOMPARE(report.extra.size(), extra.size());
        QCOMPARE(report.purgedFiles, extra.size());
        QVERIFY(report.purgeRefusal.isEmpty());
        QVERIFY(expected.size() + extra.size() + missing >= 190);
        QCOMPARE(readSample(outside.filePath("kept")), QByteArray("mine"));
        for (const auto& finding : report.damaged)
            QVERIFY2(finding.removed, qPrintable(finding.path));

        // Nothing is left to find, and nothing that was good is gone.
        const auto again = verify();
        QVERIFY(again.damaged.isEmpty() && again.extra.isEmpty());
        QCOMPARE(again.missingFiles, missing + expected.size());
        QCOMPARE(again.checkedFiles, again.knownFiles - again.missingFiles);
    }

    void cannotReadAFile()
    {
        const auto name = add(1, "content");
        if (::geteuid() == 0)
            QSKIP("Whoever may do everything can read everything");
        QVERIFY(QFile::setPermissions(path(name), QFile::Permissions()));
        QCOMPARE(problems(verify()).value(name), QStringLiteral("cannot be read"));
    }

    void keepsWhatMayBeNeeded_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("old");
        QTest::addColumn<bool>("kept");
        QTest::newRow("unknown") << "ab/cd" << true << false;
        QTest::newRow("unknown and new") << "ab/cd" << false << true;
        QTest::newRow("temporary") << "ab/cd.tmp" << true << false;
        QTest::newRow("temporary and new") << "ab/cd.tmp" << false << true;
        QTest::newRow("chunk") << "bundles/1/x.bundle.0" << true << false;
        QTest::newRow("new chunk") << "bundles/1/x.bundle.0" << false << true;
        QTest::newRow("the cache's own") << ".updating-1" << true << true;
    }
    void keepsWhatMayBeNeeded()
    {
        QFETCH(QString, file);
        QFETCH(bool, old);
        QFETCH(bool, kept);
        add(1, "content");
        writeSample(path(file), "x");
        if (old)
            makeOld(path(file));
        verify();
        QCOMPARE(QFile::exists(path(file)), kept);
        if (!kept)
            QVERIFY(!QFile::exists(QFileInfo(path(file)).path())); // empty folders go as well
    }

    void purgesNothingWithoutAllIndexes()
    {
        add(1, "content");
        writeOld("ab/cd", "x");
        m_failures = 1;
        auto report = verify();
        QVERIFY(QFile::exists(path("ab/cd")));
        QCOMPARE(report.purgeRefusal, QStringLiteral("not every index could be obtained"));
        m_failures = 0;
        QString error;
        auto marker = UpdateMarker::acquire(m_cache->path(), &error);
        QVERIFY2(marker, qPrintable(error));
        QCOMPARE(verify().purgeRefusal, QStringLiteral("an update is running"));
        UpdateMarker::release(std::move(marker));
        QVERIFY(verify(Verifier::Mode::Verify).extra.contains("ab/cd"));
        QVERIFY(QFile::exists(path("ab/cd")));
        QCOMPARE(verify().purgedFiles, 1);
        QVERIFY(!QFile::exists(path("ab/cd")));
    }

    void neverLeavesTheCache()
    {
        const QTemporaryDir outside;
        writeSample(outside.filePath("kept"), "mine");
        m_index->append(IndexEntryPtr(new IndexEntry("app:/x", "../kept", md5Of("other"), 5)));
        writeSample(m_cache->filePath("kept"), "mine");
        QVERIFY(QDir().mkpath(path("ab")));
        QVERIFY(QFile::link(outside.path(), path("ab/cd")));
        makeOld(path("ab/cd"));
        verify();
        QVERIFY(QFile::exists(outside.filePath("kept")) && QFile::exists(m_cache->filePath("kept")));
        QVERIFY(!QFileInfo(path("ab/cd")).isSymLink());

        QVERIFY(QDir(m_cache->filePath("ResFiles")).removeRecursively());
        QVERIFY(QFile::link(outside.path(), m_cache->filePath("ResFiles")));
        QCOMPARE(verify().extra.size(), 0);
        QVERIFY(QFile::exists(outside.filePath("kept")));
    }

    void isCancelledAtOnce()
    {
        for (int i = 0; i < 6; ++i)
            add(i, sampleBytes(i, 60000000));
        Verifier verifier;
        QSignalSpy finished(&verifier, &Verifier::finished);
        VerifyReport report;
        connect(&verifier, &Verifier::finished, this, [&](const VerifyReport& result) { report = result; });
        QSignalSpy progress(&verifier, &Verifier::progressUpdate);
        verifier.start(
            m_cache->path(),
            [this] {
                return CombinedIndex{0, m_index};
            },
            Verifier::Mode::Verify);
        QTest::qWait(20);
        verifier.cancel();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(finished.size() == 1 || finished.wait());
        qInfo() << "cancelled within" << timer.elapsed() << "ms";
        QVERIFY(report.cancelled || report.checkedFiles == 6);
        QVERIFY(report.damaged.isEmpty()); // what was not read to its end is not called damaged
    }
};

VELKOR_TEST_MAIN(TestVerifier)
#include "tst_verifier.moc"
