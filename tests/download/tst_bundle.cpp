#include "download/bundle.h"
#include "download/bundleunpacker.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <QJsonDocument>
#include <QJsonObject>

/** Chunk lists and the unpacking of bundles, made by hand so that they can be wrong. */
class TestBundle : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    IndexPtr m_index;
    QByteArray m_stream;

    QString target() const { return m_folder->filePath("ResFiles"); }
    QString base() const { return m_folder->filePath("chunks/x"); }

    static QByteArray record(const QByteArray& block, qint64 length = -1)
    {
        QByteArray bytes(4, '\0');
        qToLittleEndian(quint32(length < 0 ? block.size() - 4 : length), bytes.data());
        return bytes + block;
    }
    IndexEntryPtr row(const QByteArray& content, QString cachedName = {}) const
    {
        if (cachedName.isEmpty())
            cachedName = SampleTree::pathOf(content).mid(1);
        return IndexEntryPtr(new IndexEntry("app:/x", cachedName, md5Of(content), content.size()));
    }
    void add(const QByteArray& content, const QString& cachedName = {})
    {
        m_index->append(row(content, cachedName));
        m_stream += record(qCompress(content));
    }
    /** Cuts the stream into chunk files; returns their list. */
    QJsonArray writeChunks(int size)
    {
        QJsonArray list;
        for (int at = 0; at < m_stream.size(); at += size) {
            const auto chunk = m_stream.mid(at, size);
            writeSample(ChunkReader::chunkFile(base(), list.size()), chunk);
            list.append(QJsonObject{{"name", ChunkReader::chunkFile(m_index->getName(), list.size())},
                                    {"size", chunk.size()},
                                    {"checksum", md5Of(chunk)}});
        }
        return list;
    }
    /** The failure's message, or an empty string. */
    QString unpack(const QJsonArray& chunks)
    {
        BundleUnpacker unpacker;
        QString failure;
        connect(&unpacker, &BundleUnpacker::failed, this, [&](const QString& text) { failure = text; });
        const bool done = unpacker.start(m_index, target(), chunks, base());
        return done == failure.isEmpty() ? failure : "result and signal differ";
    }
    QString problem(const QJsonValue& list) const
    {
        const auto json = list.isArray() ? QJsonDocument(list.toArray()) : QJsonDocument(list.toObject());
        return Bundle(m_index, m_folder->path()).readList(json.toJson());
    }

private slots:
    void initTestCase() { Settings::useDeployment(sampleDeployment()); }
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_index = IndexPtr::create();
        m_index->setName("velkor_1.txt");
        m_index->setBuild("1");
        m_stream.clear();
    }

    void unpacksAcrossChunks_data()
    {
        QTest::addColumn<int>("chunkSize");
        for (const int size : {1, 3, 7, 100, 1000, 1000000})
            QTest::newRow(qPrintable(QString::number(size))) << size;
    }
    void unpacksAcrossChunks()
    {
        QFETCH(int, chunkSize);
        const QByteArrayList contents{"first", "", QByteArray(5000, 'x'), sampleBytes(1, 700), "last"};
        for (const auto& content : contents)
            add(content);
        add("", "sym:app:/target");
        add("the end");
        const auto chunks = writeChunks(chunkSize);
        QCOMPARE(problem(chunks), QString());
        QCOMPARE(unpack(chunks), QString());
        const auto files = readFolder(target());
        QCOMPARE(files.size(), contents.size() + 1);
        for (const auto& content : contents)
            QCOMPARE(files.value(SampleTree::pathOf(content).mid(1)), content);
    }

    void unpacksMoreThanABatch()
    {
        QSet<QByteArray> contents;
        for (int i = 0; i < 1500; ++i) {
            const auto content = sampleBytes(i, i % 50 == 0 ? 700000 : 3000);
            contents.insert(content);
            add(content);
        }
        QCOMPARE(unpack(writeChunks(5000000)), QString());
        QCOMPARE(readFolder(target()).size(), contents.size());
    }

    void staysInsideItsFolder()
    {
        writeSample(m_folder->filePath("precious"), "precious");
        QDir().mkpath(target());
        QFile::link(m_folder->path(), target() + "/link");
        add("evil", "../precious");
        add("evil", m_folder->filePath("absolute"));
        add("evil", "link/escaped");
        add("good", "ab/good");
        QCOMPARE(unpack(writeChunks(1000)), QString());
        QCOMPARE(readSample(m_folder->filePath("precious")), QByteArray("precious"));
        QVERIFY(!QFile::exists(m_folder->filePath("absolute")) &&
                !QFile::exists(m_folder->filePath("escaped")));
        QCOMPARE(readSample(target() + "/ab/good"), QByteArray("good"));
    }

    void leavesWhatIsThere()
    {
        add("content");
        writeSample(target() + SampleTree::pathOf("content"), "trusted, as everywhere");
        QCOMPARE(unpack(writeChunks(1000)), QString());
        QCOMPARE(readSample(target() + SampleTree::pathOf("content")), QByteArray("trusted, as everywhere"));
    }

    void refusesWrongChunks_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("message");
        QTest::newRow("no checksum") << "checksum" << QJsonValue(QJsonValue::Undefined)
                                     << "Chunk info is missing checksum";
        QTest::newRow("no size") << "size" << QJsonValue(QJsonValue::Undefined)
                                 << "Chunk info is missing size";
        QTest::newRow("other size") << "size" << QJsonValue(1e18) << "Chunk size is incorrect";
        QTest::newRow("other checksum")
            << "checksum" << QJsonValue(md5Of("other")) << "Chunk failed verification";
    }
    void refusesWrongChunks()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(QString, message);
        add("first");
        add("second");
        auto chunks = writeChunks(m_stream.size() / 2);
        auto last = chunks.last().toObject();
        last.insert(key, value);
        if (value.isUndefined())
            last.remove(key);
        chunks.replace(chunks.size() - 1, last);
        QCOMPARE(unpack(chunks), message);
        QVERIFY(readFolder(target()).isEmpty()); // not even what was right before it
    }

    void refusesWrongRecords_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const auto good = qCompress("content");
        auto announcing = [&](quint32 length) {
            auto block = good;
            qToBigEndian(length, block.data());
            return block;
        };
        const QString size = "Uncompressed buffer is not of the right size";
        const QString end = "The bundle ends inside a record";
        QTest::newRow("other size") << record(qCompress("contents")) << size;
        QTest::newRow("other content")
            << record(qCompress("CONTENT")) << "Uncompressed buffer does not have the correct MD5 checksum";
        QTest::newRow("announces less") << record(announcing(3)) << size;
        QTest::newRow("announces 4 GB") << record(announcing(0xffffffff)) << size;
        QTest::newRow("bomb") << record(qCompress(QByteArray(50000000, 'x')).replace(0, 4, good.left(4)))
                              << size;
        QTest::newRow("no zlib data") << record(good.left(4) + "nonsense") << size;
        QTest::newRow("longer than the bundle") << record(good, 1000) << end;
        QTest::newRow("4 GB long") << record(good, 0xffffffff) << end;
        QTest::newRow("shorter than its data") << record(good, 2) << size;
        QTest::newRow("cut in its length") << record(good).left(3) << end;
        QTest::newRow("cut in its head") << record(good).left(7) << end;
        QTest::newRow("not there") << QByteArray() << end;
    }
    void refusesWrongRecords()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        add("what comes before");
        m_index->append(row("content"));
        m_stream += bytes;
        QCOMPARE(unpack(writeChunks(17)), message);
        QVERIFY(!QFile::exists(target() + SampleTree::pathOf("content")));
    }

    void doesNotTakeMemoryForALie()
    {
        m_index->append(IndexEntryPtr(new IndexEntry("app:/x", "ab/x", md5Of("x"), 2000000000)));
        auto block = qCompress("x");
        qToBigEndian(quint32(2000000000), block.data());
        m_stream = record(block);
        QCOMPARE(unpack(writeChunks(1000)), QString("Uncompressed buffer is not of the right size"));
    }

    void saysWhenNothingCanBeWritten()
    {
        add("content");
        writeSample(target(), "a file where the folder should be");
        QVERIFY(unpack(writeChunks(1000)).startsWith("Couldn't write"));
    }

    void refusesUnbelievableLists_data()
    {
        QTest::addColumn<QByteArray>("json");
        const auto chunk = [](const QByteArray& name, const QByteArray& size, const QByteArray& md5) {
            return "{\"name\":" + name + ",\"size\":" + size + ",\"checksum\":" + md5 + "}";
        };
        const QByteArray name = "\"velkor_1.txt.bundle.0\"";
        const QByteArray md5 = "\"" + md5Of("x").toUtf8() + "\"";
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("<html>");
        QTest::newRow("object") << QByteArray("{}");
        QTest::newRow("no chunks") << QByteArray("[]");
        QTest::newRow("numbers") << QByteArray("[1, 2]");
        QTest::newRow("path for a name") << "[" + chunk("\"../../velkor_1.txt.bundle.0\"", "1", md5) + "]";
        QTest::newRow("name of another") << "[" + chunk("\"velkor_1.txt.bundle.1\"", "1", md5) + "]";
        QTest::newRow("number for a name") << "[" + chunk("7", "1", md5) + "]";
        QTest::newRow("negative size") << "[" + chunk(name, "-1", md5) + "]";
        QTest::newRow("no size") << "[" + chunk(name, "0", md5) + "]";
        QTest::newRow("broken size") << "[" + chunk(name, "1.5", md5) + "]";
        QTest::newRow("text for a size") << "[" + chunk(name, "\"1\"", md5) + "]";
        QTest::newRow("absurd size") << "[" + chunk(name, "1e300", md5) + "]";
        QTest::newRow("more than the files can be") << "[" + chunk(name, "10000", md5) + "]";
        QTest::newRow("no checksum") << "[" + chunk(name, "1", "\"\"") + "]";
        QTest::newRow("path for a checksum")
            << "[" + chunk(name, "1", "\"../../../../../../../../../../..\"") + "]";
    }
    void refusesUnbelievableLists()
    {
        QFETCH(QByteArray, json);
        add("content");
        QVERIFY(!Bundle(m_index, m_folder->path()).readList(json).isEmpty());
    }

    void needsNamesThatAreNoPaths()
    {
        QVERIFY(Bundle(m_index, "/cache").isPossible());
        for (const auto* name : {"", "..", ".", "a/b", "/", "a\\b"}) {
            auto index = IndexPtr::create();
            index->setName("velkor_1.txt");
            index->setBuild(name);
            QVERIFY2(!Bundle(index, "/cache").isPossible(), name);
            index->setName(name);
            index->setBuild("1");
            QVERIFY2(!Bundle(index, "/cache").isPossible(), name);
        }
    }

    void removesNothingBehindALink()
    {
        const QTemporaryDir outside;
        writeSample(outside.filePath("1/velkor_1.txt.bundle.0"), "somebody else's");
        QDir().mkpath(m_folder->filePath("ResFiles"));
        QVERIFY(QFile::link(outside.path(), m_folder->filePath("ResFiles/bundles")));
        Bundle(m_index, m_folder->path()).removeChunks();
        QCOMPARE(readFolder(outside.path()).size(), 1);
    }

    void removesItsChunksAndOldOnes()
    {
        const auto folder = m_folder->filePath("ResFiles/bundles/");
        for (const auto* name :
             {"1/velkor_1.txt.bundle.0", "1/velkor_1.txt.bundle.1.tmp", "2/other.bundle.0"})
            writeSample(folder + name, "x");
        writeSample(folder + "0/old.bundle.0", "x");
        QFile old(folder + "0/old.bundle.0");
        QVERIFY(old.open(QIODevice::ReadWrite));
        QVERIFY(old.setFileTime(QDateTime::currentDateTime().addDays(-3), QFileDevice::FileModificationTime));
        Bundle(m_index, m_folder->path()).removeChunks();
        QCOMPARE(readFolder(m_folder->filePath("ResFiles")).keys(), QStringList{"bundles/2/other.bundle.0"});
        QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"2"});
    }
};

VELKOR_TEST_MAIN(TestBundle)
#include "tst_bundle.moc"
