#include "cache/md5many.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QRandomGenerator>
#include <openssl/evp.h>

class TestMd5Many : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    static QByteArray expected(const QByteArray& bytes)
    {
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int size = 0;
        EVP_Digest(bytes.constData(), static_cast<size_t>(bytes.size()), digest, &size, EVP_md5(), nullptr);
        return QByteArray(reinterpret_cast<const char*>(digest), static_cast<int>(size)).toHex();
    }
    void compare(const QVector<QByteArray>& contents)
    {
        QVector<QString> paths;
        QVector<QByteArray> checksums;
        for (const auto& content : contents) {
            paths << m_folder.filePath(QString::number(paths.size()));
            writeSample(paths.last(), content);
            checksums << expected(content);
        }
        QCOMPARE(md5OfFiles(paths), checksums);
        QCOMPARE(md5OfFilesPlain(paths), checksums);
        QCOMPARE(md5OfMany(contents), checksums);
    }

private slots:
    void agreesForEveryLength()
    {
        const auto bytes = sampleBytes(7, 4200);
        QVector<QByteArray> contents;
        for (int length = 0; length <= bytes.size(); ++length)
            contents << bytes.left(length);
        compare(contents);
    }

    void agreesForMixedLengths()
    {
        QRandomGenerator random(3);
        for (int round = 0; round < 20; ++round) {
            QVector<QByteArray> contents;
            const int files = random.bounded(1, 30);
            for (int i = 0; i < files; ++i)
                contents << sampleBytes(i, random.bounded(round % 2 == 0 ? 300 : 300000));
            compare(contents);
        }
        compare({sampleBytes(1, 32 * 1024), sampleBytes(2, 64 * 1024), sampleBytes(3, 32 * 1024 - 9),
                 sampleBytes(4, 32 * 1024 + 1)});
    }

    void leavesUnreadableFilesEmpty()
    {
        writeSample(m_folder.filePath("good"), "x");
        const auto result =
            md5OfFiles({m_folder.filePath("missing"), m_folder.filePath("good"), m_folder.path()});
        QCOMPARE(result, (QVector<QByteArray>{QByteArray(), expected("x"), QByteArray()}));
        QVERIFY(md5OfFiles({}).isEmpty());
    }

    void stops()
    {
        writeSample(m_folder.filePath("good"), "x");
        const std::atomic<bool> stop{true};
        QCOMPARE(md5OfFiles({m_folder.filePath("good")}, &stop), QVector<QByteArray>{QByteArray()});
    }
};

VELKOR_TEST_MAIN(TestMd5Many)
#include "tst_md5many.moc"
