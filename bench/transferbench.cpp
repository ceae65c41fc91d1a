#include "bench/contest.h"
#include "cache/md5many.h"
#include "download/bundle.h"
#include "download/bundleunpacker.h"
#include "download/patchmanager.h"
#include "tests/testkit/sample.h"
#include "tools/publisher/bundlewriter.h"
#include "tools/publisher/patchmaker.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>
#include <QtEndian>

namespace
{
/** Content that can be compressed about as well as programs and data are: words out of a vocabulary. */
QByteArray wordyContent(int seed, int size)
{
    static const auto vocabulary = sampleBytes(1, 65536);
    QRandomGenerator random(static_cast<quint32>(seed));
    QByteArray content;
    content.reserve(size + 64);
    while (content.size() < size)
        content.append(vocabulary.constData() + random.bounded(65000), random.bounded(4, 24));
    content.truncate(size);
    return content;
}

/** A build's change: pieces of 4 KB, a twentieth of the bytes. */
QByteArray changedContent(QByteArray content)
{
    QRandomGenerator random(5);
    for (int i = 0; i < content.size() / 20 / 4096; ++i)
        content.replace(random.bounded(content.size() - 4096), 4096, wordyContent(i, 4096));
    return content;
}

/** A bundle of up to 1 GB: this machine's programs and libraries, from small to large. */
struct BundleSample {
    QTemporaryDir folder;
    IndexPtr index = IndexPtr::create();
    QString base = folder.filePath(QStringLiteral("tree/bundles/1/index"));
    QJsonArray chunks;
    qint64 bytes = 0;

    BundleSample()
    {
        const auto tree = folder.filePath(QStringLiteral("tree"));
        ContentStore store(tree);
        index->setName(QStringLiteral("index"));
        index->setBuild(QStringLiteral("1"));
        QString error;
        QDirIterator files(QStringLiteral("/usr/lib"), QDir::Files | QDir::NoSymLinks | QDir::Readable,
                           QDirIterator::Subdirectories);
        while (bytes < (qint64(1) << 30) && files.hasNext()) {
            const auto content = store.addFile(files.next(), &error);
            if (!content)
                qFatal("%s", qPrintable(error));
            index->append(
                IndexEntryPtr(new IndexEntry(QString(), content->cachedName, content->md5, content->size)));
            bytes += content->size;
        }
        if (!BundleWriter(store, *index, 64 << 20).write(&error))
            qFatal("%s", qPrintable(error));
        Bundle bundle(index, tree);
        if (!bundle.readList(readSample(base + QStringLiteral(".bundle.chunks"))).isEmpty())
            qFatal("The bundle is not as it should be");
        chunks = bundle.chunks();
    }
    qint64 streamSize() const
    {
        qint64 size = 0;
        for (int i = 0; i < chunks.size(); ++i)
            size += QFile(ChunkReader::chunkFile(base, i)).size();
        return size;
    }
};

double unpackOurs(const BundleSample& sample)
{
    const QTemporaryDir target;
    ChunkReader reader(sample.base, sample.streamSize());
    return timed([&] {
        if (BundleUnpacker().unpack(*sample.index, target.path(), &reader))
            qFatal("Unpacking failed");
    });
}

/** The same work as one writes it down first: read a record, qUncompress, MD5 and write, in a loop. */
double unpackInALoop(const BundleSample& sample)
{
    const QTemporaryDir target;
    for (int i = 0; i < 256; ++i)
        QDir(target.path()).mkdir(QStringLiteral("%1").arg(i, 2, 16, QLatin1Char('0')));
    ChunkReader reader(sample.base, sample.streamSize());
    return timed([&] {
        for (const auto& row : sample.index->entries()) {
            QByteArray head(4, Qt::Uninitialized);
            reader.read(head.data(), head.size());
            QByteArray block(static_cast<int>(qFromLittleEndian<quint32>(head.constData())) + 4,
                             Qt::Uninitialized);
            reader.read(block.data(), block.size());
            const auto content = qUncompress(block);
            const auto md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
            QFile file(target.filePath(row->cachedName));
            if (QString::fromLatin1(md5) != row->checksum || !file.open(QIODevice::WriteOnly) ||
                file.write(content) != content.size())
                qFatal("Unpacking in a loop failed");
        }
    });
}

void makeFilesOfManySizes(const QString& folder, QVector<QString>* paths)
{
    QRandomGenerator random(3);
    for (qint64 bytes = 0; bytes < (qint64(600) << 20);) {
        const int size = random.bounded(20) == 0 ? random.bounded(8000000) : random.bounded(300000);
        *paths << QStringLiteral("%1/%2").arg(folder).arg(paths->size());
        writeSample(paths->last(), sampleBytes(paths->size(), size));
        bytes += size;
    }
}

QVector<ContestResult> benchVerification()
{
    const QTemporaryDir folder;
    QVector<QString> paths;
    makeFilesOfManySizes(folder.path(), &paths);
    const auto lanes = [&] { return timed([&] { md5OfFiles(paths); }); };
    return {
        {QStringLiteral("MD5 of 600 MB in files of many sizes, one thread"),
         QStringLiteral("OpenSSL's (openssl md5)"),
         contest(lanes,
                 [&] {
                     const QStringList command{QStringLiteral("-c"),
                                               QStringLiteral("ls | xargs -n 5000 openssl md5 -r")};
                     return timedProgram(QStringLiteral("sh"), command, folder.path());
                 }),
         QStringLiteral("2.5")},
        {QStringLiteral("MD5 of 600 MB in files of many sizes, one thread"), QStringLiteral("md5sum"),
         contest(
             lanes,
             [&] {
                 const QStringList command{QStringLiteral("-c"), QStringLiteral("ls | xargs -n 5000 md5sum")};
                 return timedProgram(QStringLiteral("sh"), command, folder.path());
             }),
         QStringLiteral("2.5")}};
}

QVector<ContestResult> benchPatch()
{
    const QTemporaryDir folder;
    const auto path = [&](const char* name) { return folder.filePath(QLatin1String(name)); };
    const auto oldContent = wordyContent(1, 50000000);
    const auto newContent = changedContent(oldContent);
    const auto patch = makePatch(oldContent, newContent);
    writeSample(path("old"), oldContent);
    writeSample(path("new"), newContent);
    writeSample(path("patch"), patch);
    timedProgram(QStringLiteral("bsdiff"), {path("old"), path("new"), path("bspatch")});
    const auto ours = [&] {
        return timed([&] {
            QFile file(path("patch"));
            if (!file.open(QIODevice::ReadOnly) ||
                !PatchManager::applyPatch(path("old"), path("ours"), static_cast<size_t>(newContent.size()),
                                          md5Of(newContent), &file))
                qFatal("The patch failed");
        });
    };
    const auto theirs = [&] {
        return timedProgram(QStringLiteral("bspatch"), {path("old"), path("theirs"), path("bspatch")});
    };
    return {{QStringLiteral("apply a patch to 50 MB, checked"), QStringLiteral("bspatch, not checked"),
             contest(ours, theirs), QStringLiteral("1")},
            {QStringLiteral("bytes of an update that changes 5 % of 50 MB"), QStringLiteral("the whole file"),
             static_cast<double>(newContent.size()) / patch.size(), QStringLiteral("10")},
            {QStringLiteral("bytes of an update that changes 5 % of 50 MB"), QStringLiteral("bsdiff's patch"),
             static_cast<double>(QFileInfo(path("bspatch")).size()) / patch.size(), QStringLiteral("-")}};
}
} // namespace

QVector<ContestResult> benchTransfer()
{
    auto results = benchPatch() + benchVerification();
    const BundleSample bundle;
    results << ContestResult{
        QStringLiteral("unpack a bundle of 1 GB, one thread"),
        QStringLiteral("qUncompress, MD5 and write in a loop"),
        contest([&] { return unpackOurs(bundle); }, [&] { return unpackInALoop(bundle); }),
        QStringLiteral("2")};
    return results;
}
