#include "index/indexfile.h"
#include "index/indexparser.h"
#include "index/stringtable.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QtConcurrent>

class TestIndex : public QObject
{
    Q_OBJECT

private:
    static IndexPtr parse(const QByteArray& bytes, int* malformed = nullptr)
    {
        // A copy without a NUL behind it, so that a read past the end is noticed.
        const std::vector<char> exact(bytes.begin(), bytes.end());
        IndexParser parser;
        parser.parse(exact.data(), exact.size());
        if (malformed)
            *malformed = parser.malformedLines();
        return parser.getIndex();
    }
    static QString toText(const IndexEntryPtr& entry)
    {
        return QStringLiteral("%1|%2|%3|%4|%5|%6")
            .arg(entry->name, entry->cachedName, entry->checksum)
            .arg(entry->size)
            .arg(entry->compressedSize)
            .arg(entry->flags);
    }

private slots:
    void initTestCase() { Settings::useDeployment(sampleDeployment()); }

    void parsesLines_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("fields") << QByteArray("a,b,c,12,7,0\n") << QStringList{"a|b|c|12|7|0"};
        QTest::newRow("no last feed")
            << QByteArray("a,b,c,1,2,3\nd,e,f,4,5,6") << QStringList{"a|b|c|1|2|3", "d|e|f|4|5|6"};
        QTest::newRow("empty lines") << QByteArray("\n\n\na,b,c,1,2,3\n\n") << QStringList{"a|b|c|1|2|3"};
        QTest::newRow("NUL ends a line")
            << QByteArray("a,b,c,1,2,3\0d,e,f,4,5,6\0\0", 25) << QStringList{"a|b|c|1|2|3", "d|e|f|4|5|6"};
        QTest::newRow("carriage return")
            << QByteArray("a,b,c,1,2,33188\r\n") << QStringList{"a|b|c|1|2|33188"};
        QTest::newRow("largest size")
            << QByteArray("a,b,c,2147483647,-2147483648,0") << QStringList{"a|b|c|2147483647|-2147483648|0"};
        QTest::newRow("too large") << QByteArray("a,b,c,3000000000,2147483648,99999999999999999999")
                                   << QStringList{"a|b|c|0|0|0"};
        QTest::newRow("no numbers") << QByteArray("a,b,c,x,,1x") << QStringList{"a|b|c|0|0|0"};
        QTest::newRow("seven fields") << QByteArray("a,b,c,1,2,3,4") << QStringList{"a|b|c|1|2|0"};
        QTest::newRow("empty texts") << QByteArray(",,,1,2,3") << QStringList{"|||1|2|3"};
        QTest::newRow("other scripts") << QByteArray("app:/données/ф,b,c,1,2,3")
                                       << QStringList{QStringLiteral("app:/données/ф|b|c|1|2|3")};
        QTest::newRow("nothing") << QByteArray() << QStringList();
    }
    void parsesLines()
    {
        QFETCH(QByteArray, text);
        QStringList rows;
        const auto index = parse(text);
        for (const auto& entry : index->entries())
            rows << toText(entry);
        QTEST(rows, "rows");
    }

    void skipsMalformedLines()
    {
        int malformed = 0;
        const auto index = parse("a,b,c,1,2,3\nnonsense\na,b,c,1,2\n,,,,\nd,e,f,4,5,6\n", &malformed);
        QCOMPARE(index->entries().size(), 2);
        QCOMPARE(malformed, 3);
    }

    // Line by line, the two parsers have to agree; lines of many lengths cross every boundary of the fast
    // one.
    void agreesWithTheSlowParser()
    {
        QByteArray text;
        QStringList expected;
        const IndexParser slow;
        for (int i = 0; i < 3000; ++i) {
            const auto line =
                QStringLiteral("app:/%1,%2/%3,%4,%5,%6,%7")
                    .arg(QString(i % 67, QLatin1Char(char('a' + i % 26))), QString::number(i % 256, 16))
                    .arg(QString(i % 41, QChar(i % 5 == 0 ? 0xe9 : 'x')), md5Of(QByteArray::number(i % 700)))
                    .arg(i * 977)
                    .arg(-i)
                    .arg(i % 2 ? 33188 : 33261);
            text += line.toLocal8Bit() + '\n';
            expected << toText(slow.parseSingleLine(line));
        }
        QStringList rows;
        const auto index = parse(text);
        for (const auto& entry : index->entries())
            rows << toText(entry);
        QCOMPARE(rows, expected);
    }

    void sharesEqualTexts()
    {
        const auto first = parse("app:/shared name,ab/cd,0123,1,2,3\napp:/ä,ab/ce,0124,1,2,3");
        const auto size = StringTable::size();
        const auto second = parse("app:/shared name,ab/cd,0123,9,9,9\napp:/ä,ab/ce,0124,1,2,3");
        QCOMPARE(StringTable::size(), size);
        for (int row = 0; row < 2; ++row)
            QCOMPARE(first->entries()[row]->name.constData(), second->entries()[row]->name.constData());
        QCOMPARE(MakeSharedString("app:/shared name").constData(), first->entries()[0]->name.constData());
        QCOMPARE(MakeSharedString(QStringLiteral("app:/ä")).constData(),
                 first->entries()[1]->name.constData());
        auto changed = first->entries()[0]->name;
        changed += QLatin1Char('!'); // a stored text is never written to
        QCOMPARE(first->entries()[0]->name, QStringLiteral("app:/shared name"));
        QVERIFY(MakeSharedString(QString()).isEmpty());
    }

    void parsesOnManyThreads()
    {
        QByteArray text;
        for (int i = 0; i < 20000; ++i)
            text += "app:/file" + QByteArray::number(i) + ",ab/" + QByteArray::number(i) + ",md5,1,1,0\n";
        std::vector<IndexPtr> indexes(4);
        QtConcurrent::blockingMap(indexes, [&](IndexPtr& index) { index = parse(text); });
        for (const auto& index : indexes) {
            QCOMPARE(index->entries().size(), 20000);
            QCOMPARE(index->entries().last()->name, QStringLiteral("app:/file19999"));
            QCOMPARE(index->entries().last()->name.constData(),
                     indexes.front()->entries().last()->name.constData());
        }
    }

    void combines()
    {
        const auto a = parse("x,1,,0,0,0\ny,2,,0,0,0\n");
        const auto b = parse("z,9,,0,0,0\nx,8,,0,0,0\nw,7,,0,0,0\n");
        a->combine(b);
        a->combine(IndexPtr());
        QStringList names;
        for (const auto& entry : a->entries())
            names << entry->name + entry->cachedName;
        QCOMPARE(names, (QStringList{"x1", "y2", "z9", "w7"}));
        QCOMPARE(a->getCachedName("x"), QStringLiteral("1"));
        QCOMPARE(a->getCachedName("absent"), QString());
        const IndexMap map(parse("x,1,,0,0,0\nx,2,,0,0,0\n"));
        QCOMPARE(map.value("x")->cachedName, QStringLiteral("2"));
        QVERIFY(IndexMap(IndexPtr()).isEmpty());
    }

    void readsFiles()
    {
        const QTemporaryDir folder;
        writeSample(folder.filePath("index.txt"), "a,b,c,1,2,3\n");
        QCOMPARE(getIndexFromFile(folder.filePath("index.txt"))->entries().size(), 1);
        QVERIFY(!getIndexFromFile(QString()));
        QVERIFY(!getIndexFromFile(folder.filePath("missing.txt")));
    }

    void countsLivingObjects()
    {
        QThreadPool::globalInstance()->waitForDone(); // with the objects of earlier tests
        const int before = LiveCount<IndexEntry>::count();
        auto index = parse("a,b,c,1,2,3\nd,e,f,1,2,3\n");
        const auto kept = index->entries().first();
        QCOMPARE(LiveCount<IndexEntry>::count(), before + 2);
        index.reset();
        QCOMPARE(LiveCount<IndexEntry>::count(), before + 1);
    }
};

VELKOR_TEST_MAIN(TestIndex)
#include "tst_index.moc"
