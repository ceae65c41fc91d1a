#include "download/bundle.h"
#include "download/bundleunpacker.h"
#include "download/patchmanager.h"
#include "index/indexparser.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"
#include "tools/publisher/buildpublisher.h"
#include "tools/publisher/launcherpublisher.h"
#include "tools/publisher/patchmaker.h"
#include "tools/publisher/treeverifier.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

class TestPublisher : public QObject
{
    Q_OBJECT

private:
    static QByteArray randomContent(QRandomGenerator* random)
    {
        const int size = random->bounded(10) == 0 ? random->bounded(3) : random->bounded(3000);
        auto content = sampleBytes(int(random->generate() >> 1), size);
        // Few different bytes make many short matches.
        const auto mask = char(random->bounded(4) == 0 ? 0x01 : random->bounded(2) == 0 ? 0x07 : 0xff);
        for (auto& byte : content)
            byte = char(byte & mask);
        return content;
    }
    static QByteArray changed(QByteArray content, QRandomGenerator* random)
    {
        for (int edits = random->bounded(6); edits > 0; --edits) {
            const int at = random->bounded(content.size() + 1);
            const int length = random->bounded(200);
            switch (random->bounded(4)) {
            case 0:
                content.insert(at, sampleBytes(at, length));
                break;
            case 1:
                content.remove(at, length);
                break;
            case 2:
                content += content.mid(at, length * 5);
                break;
            default:
                for (int i = at; i < qMin(at + length, content.size()); ++i)
                    content[i] = char(content[i] + 1);
            }
        }
        return content;
    }
    static QStringList rows(const QString& path)
    {
        return QString::fromUtf8(readSample(path)).split('\n', Qt::SkipEmptyParts);
    }
    static QString row(const QString& name, const QByteArray& bytes, int mode)
    {
        return QStringLiteral("%1,%2,%3,%4,%4,%5")
            .arg(name, SampleTree::pathOf(bytes).mid(1), md5Of(bytes))
            .arg(bytes.size())
            .arg(mode);
    }
    static BuildOptions options(const QTemporaryDir& folder)
    {
        BuildOptions options;
        options.server = "ks";
        options.build = "1";
        options.from = folder.filePath("client");
        options.tree = folder.filePath("tree");
        QDir().mkpath(options.from);
        return options;
    }

private slots:
    void publishesABuild()
    {
        SampleTree tree;
        tree.publish("pl", "1000",
                     {{"bin/exefile.exe", "program"}, {"data.txt", "text"}, {"copy.txt", "text"}},
                     {{"first/a", "now"}, {"later/b", "afterwards"}});
        const QByteArray ini = "[main]\nbuild=1000\n";
        const auto resourceIndex =
            readSample(tree.path() + SampleTree::pathOf((row("res:/first/a", "now", 33188) + "\n" +
                                                         row("res:/later/b", "afterwards", 33188) + "\n")
                                                            .toUtf8()));
        QVERIFY(!resourceIndex.isEmpty());
        const auto prefetch = (row("res:/first/a", "now", 33188) + "\n").toUtf8();
        QCOMPARE(
            rows(tree.path() + "/velkor_1000.txt"),
            (QStringList{row("app:/bin/exefile.exe", "program", 33261), row("app:/copy.txt", "text", 33188),
                         row("app:/data.txt", "text", 33188), row("app:/start.ini", ini, 33188),
                         row("app:/resfileindex.txt", resourceIndex, 33188),
                         row("app:/resfileindex_prefetch.txt", prefetch, 33188)}));
        const auto announced =
            QJsonDocument::fromJson(readSample(tree.path() + "/velkorclient_PL.json")).object();
        QCOMPARE(announced, (QJsonObject{{"build", "1000"}, {"protected", false}}));
        QCOMPARE(readFolder(tree.path()).size(), 2 + 7); // the same text is one file
        QVERIFY(TreeVerifier(tree.path()).verify().isEmpty());
    }

    void setsTheBuildInStartIni()
    {
        SampleTree tree;
        tree.publish("ks", "7", {{"start.ini", "[other]\nbuild=5\n[main]\n build = 3\ncodename=x\n"}});
        const auto index = parseIndex(readSample(tree.path() + "/velkor_7.txt"), "test");
        const QTemporaryDir folder;
        writeSample(folder.filePath("start.ini"),
                    readSample(tree.path() + "/" + index->getCachedName("app:/start.ini")));
        const QSettings ini(folder.filePath("start.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("main/build").toString(), QStringLiteral("7"));
        QCOMPARE(ini.value("main/codename").toString(), QStringLiteral("x"));
        QCOMPARE(ini.value("other/build").toString(), QStringLiteral("5"));
    }

    void putsProtectedIndexesBehindTheGateway()
    {
        SampleTree tree;
        tree.publish("ks", "7", {{"a", "b"}}, {}, {true, {}, 0});
        QVERIFY(QFile::exists(tree.path() + "/prod/velkor_7"));
        QVERIFY(!QFile::exists(tree.path() + "/velkor_7.txt"));
        QVERIFY(TreeVerifier(tree.path()).verify().isEmpty());
    }

    void publishesLinks()
    {
        const QTemporaryDir folder;
        auto build = options(folder);
        writeSample(build.from + "/lib/real.so", "code");
        QFile::link("real.so", build.from + "/lib/link.so");
        QString error;
        QVERIFY2(BuildPublisher(build).publish(&error), qPrintable(error));
        QVERIFY(rows(build.tree + "/velkor_1.txt")
                    .contains(
                        QStringLiteral("sym:/lib/link.so,sym:app:/lib/real.so,%1,0,0,41471").arg(md5Of({}))));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("linkTarget");
        QTest::addColumn<QStringList>("prefetch");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("comma") << "a,b"
                               << "" << QStringList() << "cannot hold this name";
        QTest::newRow("feed") << "a\nb"
                              << "" << QStringList() << "cannot hold this name";
        QTest::newRow("backslash") << "a\\b"
                                   << "" << QStringList() << "cannot hold this name";
        QTest::newRow("link out") << "l"
                                  << "../outside" << QStringList() << "leads out of the folder";
        QTest::newRow("absolute link") << "l"
                                       << "/etc/passwd" << QStringList() << "leads out of the folder";
        QTest::newRow("glob without resources") << "a"
                                                << "" << QStringList{"x"} << "needs --resources";
    }
    void refuses()
    {
        QFETCH(QString, file);
        QFETCH(QString, linkTarget);
        QFETCH(QStringList, prefetch);
        QFETCH(QString, complaint);
        const QTemporaryDir folder;
        auto build = options(folder);
        build.prefetch = prefetch;
        if (linkTarget.isEmpty())
            writeSample(build.from + "/" + file, "x");
        else
            QFile::link(linkTarget, build.from + "/" + file);
        QString error;
        QVERIFY(!BuildPublisher(build).publish(&error));
        QVERIFY2(error.contains(complaint), qPrintable(error));
        QVERIFY(!QFile::exists(build.tree + "/velkorclient_KS.json")); // never announced
    }

    void namesWhatIsWrongWithATree()
    {
        SampleTree tree;
        tree.publish("ks", "1",
                     {{"gone", "gone"}, {"short", "shortened"}, {"bad", "bytes"}, {"good", "good"}});
        tree.publish("pl", "2", {{"x", "y"}});
        QFile::remove(tree.path() + SampleTree::pathOf("gone"));
        writeSample(tree.path() + SampleTree::pathOf("shortened"), "short");
        writeSample(tree.path() + SampleTree::pathOf("bytes"), "BYTES");
        QFile::remove(tree.path() + "/velkor_2.txt");
        writeSample(tree.path() + "/velkorclient_OSPREY.json", "{}");
        const auto problems = TreeVerifier(tree.path()).verify();
        QCOMPARE(problems.size(), 5);
        const auto all = problems.join('\n');
        for (const auto* part :
             {"(app:/gone) is missing", "(app:/short) has the wrong size", "(app:/bad) has the wrong content",
              "velkorclient_PL.json needs velkor_2.txt", "velkorclient_OSPREY.json names no build"})
            QVERIFY2(all.contains(part), part);
        QCOMPARE(TreeVerifier(tree.path() + "/nothing").verify().size(), 1);
    }

    // Whatever the two contents are, applying the patch to the one gives the other.
    void patchesLeadToTheNewContent()
    {
        QRandomGenerator random(11);
        for (int round = 0; round < 4000; ++round) {
            const auto from = randomContent(&random);
            const auto to = round % 7 == 0 ? randomContent(&random) : changed(from, &random);
            const auto patch = makePatch(from, to);
            const auto rebuilt = PatchManager::rebuild(from, patch, size_t(to.size()), md5Of(to));
            QVERIFY2(!rebuilt.isNull() && rebuilt == to, qPrintable(QString::number(round)));
        }
    }

    void patchesAreSmall()
    {
        const auto from = sampleBytes(1, 400000);
        auto moved = from.mid(200000) + "inserted" + from.left(200000);
        QVERIFY(makePatch(from, moved).size() < 1000);
        for (int i = 0; i < moved.size(); i += 1000)
            moved[i] = char(moved[i] + 1);
        QVERIFY(makePatch(from, moved).size() < 4000);
        QVERIFY(makePatch(QByteArray(300000, 'a'), QByteArray(300001, 'a')).size() < 1000);
    }

    void publishesPatchesThatAreWorthIt()
    {
        SampleTree tree;
        const auto large = sampleBytes(1, 100000);
        tree.publish("ks", "1", {{"large", large}, {"new content", sampleBytes(2, 5000)}, {"same", "same"}});
        const auto changedLarge = large.left(50000) + "!" + large.mid(50000);
        tree.publish("ks", "2",
                     {{"large", changedLarge},
                      {"new content", sampleBytes(3, 5000)},
                      {"same", "same"},
                      {"added", "x"}},
                     {}, {false, {"1"}, 0});
        const auto patches = readFolder(tree.path() + "/patches");
        const auto name =
            QStringLiteral("%1_%2.patch").arg(SampleTree::pathOf(large).mid(1), md5Of(changedLarge));
        QVERIFY2(patches.contains(name), qPrintable(patches.keys().join(' ')));
        QVERIFY(patches.value(name).size() < 500);
        for (const auto& patch : patches.keys())
            QVERIFY(patch == name || patch.startsWith(SampleTree::pathOf("[main]\nbuild=1\n").mid(1)));
        QVERIFY(TreeVerifier(tree.path()).verify().isEmpty());
        writeSample(tree.path() + "/patches/" + name, patches.value(name).chopped(1));
        QCOMPARE(TreeVerifier(tree.path()).verify().size(), 1);

        BuildOptions unknown;
        unknown.server = "ks";
        unknown.build = "3";
        unknown.from = tree.path() + "/patches";
        unknown.tree = tree.path();
        unknown.previous = QStringList{"77"};
        QString error;
        QVERIFY(!BuildPublisher(unknown).publish(&error) && error.contains("77"));
        QVERIFY(!readSample(tree.path() + "/velkorclient_KS.json").contains("\"3\""));
    }

    void publishesBundlesThatUnpack()
    {
        SampleTree tree;
        SampleFiles client{{"a", sampleBytes(1, 70000)}, {"b", QByteArray(90000, 'b')}, {"empty", {}}};
        tree.publish("ks", "5", client, {{"first/r", "resource"}, {"later", "later"}}, {false, {}, 10000});
        QVERIFY(TreeVerifier(tree.path()).verify().isEmpty());
        const auto index = parseIndex(readSample(tree.path() + "/velkor_5.txt"), "test");
        index->setName("velkor_5.txt");
        index->setBuild("5");
        const auto folder = tree.path() + "/bundles/5/";
        Bundle bundle(index, "/nowhere");
        QCOMPARE(bundle.readList(readSample(folder + "velkor_5.txt.bundle.chunks")), QString());
        QCOMPARE(bundle.chunks().size(), 8);
        const QTemporaryDir target;
        QVERIFY(BundleUnpacker().start(index, target.path(), bundle.chunks(), folder + "velkor_5.txt"));
        for (const auto& content : client)
            QCOMPARE(readSample(target.path() + SampleTree::pathOf(content)), content);
        QVERIFY(QFile::exists(folder + "resfileindex_prefetch_5.txt.bundle.0"));
        writeSample(folder + "velkor_5.txt.bundle.3", "broken");
        QCOMPARE(TreeVerifier(tree.path()).verify().size(), 1);
    }

    void publishesLaunchers()
    {
        const QTemporaryDir folder;
        const auto from = folder.filePath("launcher");
        const auto tree = folder.filePath("tree");
        writeSample(from + "/velkorlauncher", "program");
        writeSample(from + "/texts/fr", "textes");
        const auto publish = [&](const QString& version, const QString& channel) {
            QString error;
            return LauncherPublisher({version, from, tree, channel}).publish(&error) ? QString() : error;
        };
        QVERIFY(publish("7", "release").contains("updater"));
        writeSample(from + "/updater", "updater");
        for (const auto* program : {"/updater", "/velkorlauncher"})
            QFile::setPermissions(from + program, QFileDevice::Permissions(0x7755));
        QVERIFY(publish("7/8", "release").contains("--version"));
        QVERIFY(publish("7", "stable").contains("--channel"));
        QVERIFY(!QFile::exists(tree));
        QCOMPARE(publish("7", "beta"), QString());
        QCOMPARE(rows(tree + "/velkorlauncher_linux_7.txt"),
                 (QStringList{row("app:/texts/fr", "textes", 33188), row("app:/updater", "updater", 33261),
                              row("app:/velkorlauncher", "program", 33261)}));
        QCOMPARE(QJsonDocument::fromJson(readSample(tree + "/velkorlauncher_linux_beta.json"))
                     .object()
                     .value("version")
                     .toString(),
                 QString("7"));
        QVERIFY(TreeVerifier(tree).verify().isEmpty());
        QFile::remove(tree + SampleTree::pathOf("updater"));
        QCOMPARE(TreeVerifier(tree).verify().size(), 1);

        QVERIFY(QFile::link("updater", from + "/link"));
        QVERIFY(publish("8", "beta").contains("link"));
        QVERIFY(!QFile::exists(tree + "/velkorlauncher_linux_8.txt"));
    }
};

VELKOR_TEST_MAIN(TestPublisher)
#include "tst_publisher.moc"
