#include "cache/safepath.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

class TestSafePath : public QObject
{
    Q_OBJECT

private slots:
    void judgesTexts_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("safe");
        QTest::newRow("plain") << "ab/cd_ef" << true;
        QTest::newRow("dots in a name") << "a..b/...x/.hidden" << true;
        QTest::newRow("other scripts") << QStringLiteral("папка/ファイル") << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("absolute") << "/etc/passwd" << false;
        QTest::newRow("parent") << "../x" << false;
        QTest::newRow("parent inside") << "a/../../x" << false;
        QTest::newRow("parent at end") << "a/.." << false;
        QTest::newRow("self") << "a/./b" << false;
        QTest::newRow("double slash") << "a//b" << false;
        QTest::newRow("folder") << "a/" << false;
        QTest::newRow("backslash") << "a\\..\\b" << false;
        QTest::newRow("NUL") << QString(QLatin1String("a\0b", 3)) << false;
    }
    void judgesTexts()
    {
        QFETCH(QString, path);
        QFETCH(bool, safe);
        QCOMPARE(SafePath::isSafeText(path), safe);
        SafePath paths(QStringLiteral("/nowhere/at all"));
        QCOMPARE(paths.resolve(path), safe ? QStringLiteral("/nowhere/at all/") + path : QString());
    }

    void followsLinksOnlyInside()
    {
        const QTemporaryDir outside;
        const QTemporaryDir root;
        QDir(root.path()).mkpath("real/deep");
        QFile::link(outside.path(), root.filePath("out"));
        QFile::link(root.filePath("real"), root.filePath("in"));
        QFile::link(root.filePath("no such place"), root.filePath("dangling"));
        QFile::link("/etc/passwd", root.filePath("last"));
        SafePath paths(root.path() + "/");
        QCOMPARE(paths.resolve("in/deep/x"), root.filePath("in/deep/x"));
        QCOMPARE(paths.resolve("new/folders/x"), root.filePath("new/folders/x"));
        QCOMPARE(paths.resolve("last"),
                 root.filePath("last")); // the last component is replaced, not followed
        for (const auto* path : {"out/x", "out/new/x", "dangling/x"})
            QCOMPARE(paths.resolve(path), QString());
    }

    void acceptsARootBehindALink()
    {
        const QTemporaryDir disk;
        const QTemporaryDir home;
        QDir(disk.path()).mkpath("cache/ab");
        QFile::link(disk.filePath("cache"), home.filePath("cache"));
        SafePath paths(home.filePath("cache"));
        QCOMPARE(paths.resolve("ab/x"), home.filePath("cache/ab/x"));
    }
};

VELKOR_TEST_MAIN(TestSafePath)
#include "tst_safepath.moc"
