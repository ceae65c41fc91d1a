#include "tests/testkit/backendtest.h"
#include "tests/testkit/launcherprocess.h"
#include "tests/testkit/testmain.h"
#include "tools/publisher/buildpublisher.h"
#include "tools/publisher/patchmaker.h"

#include <QDirIterator>
#include <QRandomGenerator>

/** How the real launcher gets its bytes: by patches, by bundles, and without them where they fail. */
class TestTransfer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BackendFixture> m_service;

    QString treePath(const QString& path) { return m_service->tree().path() + path; }
    /** Bytes of the files that were served since the last reset. */
    qint64 transferred(const QString& prefix = "/")
    {
        qint64 bytes = 0;
        for (const auto& logged : m_service->content().requests()) {
            if (logged.status == 200 && logged.request.path.startsWith(prefix))
                bytes += QFileInfo(treePath(logged.request.path)).size();
        }
        return bytes;
    }
    int requestsBelow(const QString& prefix)
    {
        int count = 0;
        for (const auto& logged : m_service->content().requests())
            count += logged.request.path.startsWith(prefix) ? 1 : 0;
        return count;
    }
    static bool isCached(const LauncherProcess& launcher, const SampleFiles& client)
    {
        return std::all_of(client.cbegin(), client.cend(), [&](const QByteArray& content) {
            return readSample(launcher.resFile(content)) == content;
        });
    }
    static bool isInstalled(const LauncherProcess& launcher, const SampleFiles& client)
    {
        auto staged = readFolder(launcher.stagingFolder("ks"));
        for (const auto* generated : {"start.ini", "resfileindex.txt", "resfileindex_prefetch.txt"})
            staged.remove(generated);
        return staged == client;
    }
    /** Whether the cache holds nothing but whole files. */
    static bool isClean(const LauncherProcess& launcher)
    {
        const auto files = readFolder(launcher.cache() + "/ResFiles");
        for (auto file = files.begin(); file != files.end(); ++file) {
            if (!file.key().endsWith("_" + md5Of(file.value())))
                return false;
        }
        return QDir(launcher.cache() + "/ResFiles")
            .entryList({".updating*"}, QDir::Hidden | QDir::Files)
            .isEmpty();
    }
    static SampleFiles manyFiles(int count, int bytes)
    {
        SampleFiles files;
        for (int i = 0; i < count; ++i)
            files.insert(QStringLiteral("data/%1.dat").arg(i), sampleBytes(i, bytes + i));
        return files;
    }
    /** The content with a share of its bytes changed, in pieces of 4 KB. */
    static QByteArray changed(QByteArray content, double share)
    {
        constexpr int piece = 4096;
        QRandomGenerator random(5);
        const int pieces = int(content.size() * share / piece);
        for (int i = 0; i < pieces; ++i)
            content.replace(random.bounded(content.size() - piece), piece, sampleBytes(i, piece));
        return content;
    }

private slots:
    void init() { m_service = std::make_unique<BackendFixture>(); }
    void cleanup() { m_service.reset(); }

    void transfersWhatHasChanged()
    {
        const SampleFiles first{{"data/large.dat", sampleBytes(1, 50000000)}};
        const SampleFiles second{{"data/large.dat", changed(first.first(), 0.05)}};
        m_service->tree().publish("ks", "100", first);
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        m_service->tree().publish("ks", "101", second, {}, {false, {"100"}, 0});
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, second));
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(second.first())), 0);
        QVERIFY2(transferred() < 5000000, qPrintable(QString::number(transferred())));
        QVERIFY(launcher.log().contains(QRegularExpression("Patched 1 files out of 2 requested")));
        QVERIFY(launcher.log().contains(QRegularExpression("took [\\d.]+ s, .*/s on average")));
        QVERIFY(isClean(launcher));
    }

    void fallsBackFromAPatch_data()
    {
        QTest::addColumn<QString>("damage");
        for (const auto* damage : {"magic", "version", "cut", "result", "base"})
            QTest::newRow(damage) << damage;
    }
    void fallsBackFromAPatch()
    {
        QFETCH(QString, damage);
        const SampleFiles first{{"data/a.dat", sampleBytes(1, 300000)}};
        const SampleFiles second{{"data/a.dat", changed(first.first(), 0.1)}};
        m_service->tree().publish("ks", "100", first);
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        m_service->tree().publish("ks", "101", second, {}, {false, {"100"}, 0});
        const auto path = QStringLiteral("/patches%1_%2.patch")
                              .arg(SampleTree::pathOf(first.first()), md5Of(second.first()));
        auto patch = readSample(treePath(path));
        QVERIFY(patch.size() > 1000);
        if (damage == "magic")
            patch[3] = 'X';
        else if (damage == "version")
            patch[8] = 2;
        else if (damage == "cut")
            patch.chop(100);
        else if (damage == "result")
            patch = makePatch(first.first(), second.first() + "?");
        else
            QVERIFY(QFile::remove(launcher.resFile(first.first())));
        writeSample(treePath(path), patch);
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, second));
        QCOMPARE(m_service->requestsFor(path), damage == "base" ? 0 : 1);
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(second.first())), 1);
        QVERIFY(!launcher.log().contains("retries:"));
        QVERIFY(isClean(launcher));
    }

    void installsFromBundlesOnly()
    {
        const auto client = manyFiles(300, 5000);
        m_service->tree().publish("ks", "100", client, {{"first/a", "now"}, {"first/b", "now too"}},
                                  {false, {}, 200000});
        const auto chunksOfBuild = readFolder(treePath("/bundles/100")).size();
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, client));
        QCOMPARE(requestsBelow("/bundles/"), chunksOfBuild);
        QCOMPARE(int(m_service->content().requests().size()), chunksOfBuild + 3); // two versions and an index
        QVERIFY(!QFile::exists(launcher.cache() + "/ResFiles/bundles"));
        QVERIFY(isClean(launcher));
    }

    void installsLinksFromABundle()
    {
        // The published folder has a link.
        const QTemporaryDir folder;
        writeSample(folder.filePath("client/lib/real.dll"), "library");
        for (int i = 0; i < 20; ++i)
            writeSample(folder.filePath(QStringLiteral("client/%1").arg(i)), sampleBytes(i, 100));
        QVERIFY(QFile::link("lib/real.dll", folder.filePath("client/alias.dll")));
        BuildOptions options;
        options.server = "ks";
        options.build = "100";
        options.from = folder.filePath("client");
        options.tree = m_service->tree().path();
        options.bundle = true;
        QString error;
        QVERIFY2(BuildPublisher(options).publish(&error), qPrintable(error));
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QCOMPARE(requestsBelow("/bundles/"), int(m_service->content().requests().size()) - 3);
        const QFileInfo alias(launcher.stagingFolder("ks") + "/alias.dll");
        QVERIFY(alias.isSymLink());
        QCOMPARE(readSample(alias.filePath()), QByteArray("library"));
    }

    void goesOnWithoutABundle_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status"); // 0: wrong bytes
        QTest::newRow("no chunk list") << ".chunks" << 404;
        QTest::newRow("broken chunk") << ".2" << 0;
        QTest::newRow("failed download") << ".3" << 403;
    }
    void goesOnWithoutABundle()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        const auto client = manyFiles(100, 5000);
        m_service->tree().publish("ks", "100", client, {}, {false, {}, 100000});
        m_service->content().faults().set("/bundles/100/velkor_100.txt.bundle" + path,
                                          status == 0 ? Fault::wrongBytes() : Fault::answerWith(status));
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, client));
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(client.first())), 1);
        QVERIFY(!launcher.log().contains("Update failed"));
        QVERIFY(!QFile::exists(launcher.cache() + "/ResFiles/bundles"));
        QVERIFY(isClean(launcher));
    }

    void completesAfterBeingKilledWhileUnpacking()
    {
        const auto client = manyFiles(2000, 20000);
        m_service->tree().publish("ks", "100", client, {}, {false, {}, 8 << 20});
        for (const int filesBefore : {1, 700, 1600}) {
            LauncherProcess launcher(m_service->backend());
            launcher.start({"-d", "-k", "-e"});
            const auto resFiles = launcher.cache() + "/ResFiles";
            const auto files = [&] {
                int count = 0;
                for (QDirIterator file(resFiles, {"*_????????????????????????????????"}, QDir::Files,
                                       QDirIterator::Subdirectories);
                     file.hasNext(); file.next())
                    ++count;
                return count;
            };
            QTRY_VERIFY_WITH_TIMEOUT(files() >= filesBefore, 60000);
            launcher.process().kill();
            QVERIFY(launcher.process().waitForFinished());
            QCOMPARE(launcher.refreshOnce(), 0);
            QVERIFY(isCached(launcher, client)); // the next launch completes a copy that was cut off
            QVERIFY(!QFile::exists(resFiles + "/bundles"));
        }
    }

    void completesAfterBeingKilledWhilePatching()
    {
        auto first = manyFiles(120, 100000);
        SampleFiles second;
        for (auto file = first.begin(); file != first.end(); ++file)
            second.insert(file.key(), changed(file.value(), 0.05));
        m_service->tree().publish("ks", "100", first);
        m_service->tree().publish("ks", "101", second, {}, {false, {"100"}, 0});
        m_service->tree().announce("ks", "100");
        LauncherProcess launcher(m_service->backend());
        QCOMPARE(launcher.refreshOnce(), 0);
        m_service->tree().announce("ks", "101");
        for (const int requests : {3, 10, 20}) {
            m_service->reset();
            m_service->content().faults().set("/patches/*", Fault::slow(20000)); // or all are there at once
            launcher.start({"-d", "-k", "-e"});
            QTRY_VERIFY_WITH_TIMEOUT(requestsBelow("/patches/") >= requests, 60000);
            launcher.process().kill();
            QVERIFY(launcher.process().waitForFinished());
        }
        m_service->reset();
        QCOMPARE(launcher.refreshOnce(), 0);
        QVERIFY(isInstalled(launcher, second));
        QCOMPARE(m_service->requestsFor(SampleTree::pathOf(second.first())), 0);
    }
};

VELKOR_TEST_MAIN(TestTransfer)
#include "tst_e2e_transfer.moc"
