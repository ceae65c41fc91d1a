#include "download/bspatch.h"
#include "download/patchmanager.h"
#include "index/serverindexlookup.h"
#include "settings/settings.h"
#include "tests/testkit/backendtest.h"
#include "tests/testkit/testmain.h"

#include <cstring>
#include <limits>

namespace
{
struct Record {
    qint64 add = 0;
    qint64 extra = 0;
    qint64 seek = 0;
    QByteArray bytes; // both blocks
};

QByteArray number(qint64 value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray body(const QVector<Record>& records)
{
    QByteArray all;
    for (const auto& record : records)
        all += number(record.add) + number(record.extra) + number(record.seek) + record.bytes;
    return all;
}

QByteArray patchOf(const QByteArray& body, char version = 1)
{
    return QByteArray("QZMPATCH") + version + QByteArray(3, '\0') + qCompress(body);
}

constexpr auto big = std::numeric_limits<qint64>::max();
} // namespace

class TestPatchManager : public QObject
{
    Q_OBJECT

private:
    const QByteArray m_old = "0123456789";

    /** Runs the records over exact copies of the buffers, so that a sanitizer sees every step outside. */
    static int apply(const QByteArray& oldContent, const QByteArray& body, QByteArray* result)
    {
        const std::unique_ptr<char[]> oldBytes(new char[size_t(oldContent.size())]);
        std::copy(oldContent.begin(), oldContent.end(), oldBytes.get());
        const std::unique_ptr<char[]> newBytes(new char[size_t(result->size())]);
        int position = 0;
        const PatchStream stream{[&](char* to, int length) {
            if (length < 0 || length > body.size() - position)
                return false;
            std::memcpy(to, body.constData() + position, size_t(length));
            position += length;
            return true;
        }};
        const int code = bspatch(oldBytes.get(), oldContent.size(), newBytes.get(), result->size(), stream);
        if (code == 0)
            std::copy_n(newBytes.get(), result->size(), result->begin());
        return code;
    }

private slots:
    void initTestCase() { Settings::useDeployment(sampleDeployment()); }

    void followsTheRecords_data()
    {
        QTest::addColumn<QByteArray>("records");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray same(4, '\0');
        QTest::newRow("unchanged part") << body({{4, 0, 0, same}}) << QByteArray("0123");
        QTest::newRow("changed bytes, modulo 256")
            << body({{4, 0, 0, QByteArray("\1\0\0\xff", 4)}}) << QByteArray("1122");
        QTest::newRow("new bytes") << body({{0, 3, 0, "new"}}) << QByteArray("new");
        QTest::newRow("seek forwards")
            << body({{1, 0, 5, QByteArray(1, 0)}, {2, 0, 0, QByteArray(2, 0)}}) << QByteArray("067");
        QTest::newRow("seek backwards")
            << body({{4, 1, -3, same + "-"}, {2, 0, 0, QByteArray(2, 0)}}) << QByteArray("0123-12");
        QTest::newRow("before the old file: as they stand")
            << body({{0, 0, -2, {}}, {4, 0, 0, QByteArray("ab\0\0", 4)}}) << QByteArray("ab01");
        QTest::newRow("behind the old file: as they stand")
            << body({{0, 0, 8, {}}, {4, 0, 0, QByteArray("\0\0yz", 4)}}) << QByteArray("89yz");
        QTest::newRow("far outside") << body({{0, 0, -(1LL << 62), {}},
                                              {2, 0, 1LL << 62, "ab"},
                                              {1, 0, 0, "\1"}})
                                     << QByteArray("ab3");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
    }
    void followsTheRecords()
    {
        QFETCH(QByteArray, records);
        QFETCH(QByteArray, expected);
        QByteArray result(expected.size(), '?');
        QCOMPARE(apply(m_old, records, &result), 0);
        QCOMPARE(result, expected);
    }

    void refusesHostileRecords_data()
    {
        QTest::addColumn<QByteArray>("records");
        const QByteArray bytes(100, 'x');
        QTest::newRow("add too long") << body({{9, 0, 0, bytes}});
        QTest::newRow("extra too long") << body({{0, 9, 0, bytes}});
        QTest::newRow("both too long together") << body({{5, 4, 0, bytes}});
        QTest::newRow("negative add") << body({{-1, 0, 0, bytes}});
        QTest::newRow("negative extra") << body({{4, -4, 0, bytes}});
        QTest::newRow("negative, as many as an int holds") << body({{-(1LL << 31), 0, 0, bytes}});
        QTest::newRow("negative, a positive int when cut") << body({{-(1LL << 32) + 4, 0, 0, bytes}});
        QTest::newRow("positive, a small int when cut") << body({{(1LL << 32) + 4, 0, 0, bytes}});
        QTest::newRow("largest add") << body({{big, 0, 0, bytes}});
        QTest::newRow("smallest add") << body({{-big - 1, 0, 0, bytes}});
        QTest::newRow("largest extra") << body({{4, big, 0, bytes}});
        QTest::newRow("seek beyond all numbers") << body({{0, 0, big, {}}, {4, 0, big, bytes}});
        QTest::newRow("add beyond all numbers") << body({{0, 0, big, {}}, {4, 4, 0, bytes}});
        QTest::newRow("cut in a number") << body({{8, 0, 0, {}}}).left(23);
        QTest::newRow("cut in a block") << body({{8, 0, 0, "1234567"}});
        QTest::newRow("ends early") << body({{4, 0, 0, "1234"}});
        QTest::newRow("empty") << QByteArray();
    }
    void refusesHostileRecords()
    {
        QFETCH(QByteArray, records);
        QByteArray result(8, '?');
        QCOMPARE(apply(m_old, records, &result), -1);
        QVERIFY(PatchManager::rebuild(m_old, patchOf(records), 8, md5Of("whatever")).isNull());
    }

    void refusesUnusablePatches_data()
    {
        QTest::addColumn<QByteArray>("patch");
        QTest::addColumn<QString>("complaint");
        const auto records = body({{0, 3, 0, "new"}});
        const auto whole = patchOf(records);
        auto lying = whole;
        lying[12] = '\x7f'; // announces 2 GB
        auto understating = whole;
        understating[15] = 26;
        QTest::newRow("empty") << QByteArray() << "Not a valid patch file";
        QTest::newRow("other magic") << "qzmpatch" + whole.mid(8) << "Not a valid patch file";
        QTest::newRow("magic only") << whole.left(8) << "Unrecognized version of patch file";
        QTest::newRow("version 2") << patchOf(records, 2) << "Unrecognized version of patch file";
        QTest::newRow("no body") << whole.left(12) << "Failed applying patch";
        QTest::newRow("body cut in its length") << whole.left(14) << "Failed applying patch";
        QTest::newRow("body cut") << whole.chopped(3) << "Failed applying patch";
        QTest::newRow("announces too much") << lying << "Failed applying patch";
        QTest::newRow("announces too little") << understating << "Failed applying patch";
        QTest::newRow("bomb") << patchOf(QByteArray(50000000, '\0')) << "Failed applying patch";
        QTest::newRow("wrong result")
            << patchOf(body({{0, 3, 0, "old"}})) << "Checksum does not match after applying patch";
    }
    void refusesUnusablePatches()
    {
        QFETCH(QByteArray, patch);
        QFETCH(QString, complaint);
        QTest::ignoreMessage(QtWarningMsg, qPrintable(complaint));
        QVERIFY(PatchManager::rebuild(m_old, patch, 3, md5Of("new")).isNull());
        QCOMPARE(PatchManager::rebuild(m_old, patchOf(body({{0, 3, 0, "new"}})), 3, md5Of("new")),
                 QByteArray("new"));
    }

    void writesNothingUnlessItIsRight()
    {
        const QTemporaryDir folder;
        const auto base = folder.filePath("base");
        const auto target = folder.filePath("target");
        const auto apply = [&](const QByteArray& patch) {
            writeSample(folder.filePath("patch"), patch);
            QFile file(folder.filePath("patch"));
            return file.open(QIODevice::ReadOnly) &&
                   PatchManager::applyPatch(base, target, 3, md5Of("new"), &file);
        };
        const auto good = patchOf(body({{0, 3, 0, "new"}}));
        QVERIFY(!apply(good)); // no base
        writeSample(base, m_old);
        QVERIFY(!apply(patchOf(body({{0, 3, 0, "old"}}))));
        QCOMPARE(readFolder(folder.path()).keys(), (QStringList{"base", "patch"}));
        QVERIFY(apply(good));
        QCOMPARE(readSample(target), QByteArray("new"));
        QCOMPARE(readFolder(folder.path()).size(), 3);
        QVERIFY(QFile::remove(target) && QDir().mkpath(target + "/in the way"));
        QVERIFY(!apply(good));
        QCOMPARE(readFolder(folder.path()).keys(), (QStringList{"base", "patch"}));
    }

    void knowsTheOldBuild()
    {
        class Lookup : public ServerIndexLookup
        {
        public:
            IndexPtr index = IndexPtr::create();
            IndexPtr installedIndex(const QString& key) const override
            {
                return key == Settings::instance()->getMainServerName() ? index : IndexPtr();
            }
        } lookup;
        const auto row = [](const char* name, const char* content) {
            return IndexEntryPtr(new IndexEntry(name, QString("aa/") + content, md5Of(content), 1));
        };
        lookup.index->append(row("app:/a", "old a"));
        auto* manager = PatchManager::instance();
        manager->setBaseIndex(); // nobody to ask
        QVERIFY(!manager->getPatchBase(row("app:/a", "new a")));
        manager->setIndexLookup(&lookup);
        manager->setBaseIndex();
        manager->setIndexLookup(nullptr);
        QCOMPARE(manager->getPatchBase(row("app:/a", "new a"))->cachedName, QString("aa/old a"));
        QVERIFY(!manager->getPatchBase(row("app:/a", "old a"))); // the file itself is what is missing
        QVERIFY(!manager->getPatchBase(row("app:/b", "new")));
        manager->setBaseIndex();
        QVERIFY(!manager->getPatchBase(row("app:/a", "new a")));
    }
};

VELKOR_TEST_MAIN(TestPatchManager)
#include "tst_patchmanager.moc"
