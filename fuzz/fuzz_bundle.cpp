// A bundle's stream is unpacked into what its index says, or refused; nothing else is ever written.

#include "download/bundleunpacker.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace
{
const QByteArrayList contents{"one", "", "three three three three three three"};

struct Fixture {
    QTemporaryDir folder{QStringLiteral("/dev/shm/fuzz-XXXXXX")};
    Index index;

    Fixture()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        for (const auto& content : contents) {
            const auto md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
            index.append(IndexEntryPtr(new IndexEntry(QStringLiteral("app:/x"),
                                                      QStringLiteral("ab/") + QString::fromLatin1(md5),
                                                      QString::fromLatin1(md5), content.size())));
        }
    }
};

void writeChunk(const QString& path, const char* data, int size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data, size) != size)
        std::abort();
}
} // namespace

// Input: where the stream is cut into two chunks, then the stream.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Fixture fixture;
    if (size < 1)
        return 0;
    const auto* stream = reinterpret_cast<const char*>(data + 1);
    const int length = static_cast<int>(size - 1);
    const int cut = qMin(int(data[0]), length);
    const auto base = fixture.folder.filePath(QStringLiteral("chunks"));
    writeChunk(ChunkReader::chunkFile(base, 0), stream, cut);
    writeChunk(ChunkReader::chunkFile(base, 1), stream + cut, length - cut);

    const auto target = fixture.folder.filePath(QStringLiteral("target"));
    ChunkReader reader(base, length);
    const auto failure = BundleUnpacker().unpack(fixture.index, target, &reader);
    int files = 0;
    QDirIterator written(target, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    for (; written.hasNext(); ++files) {
        QFile file(written.next());
        if (!file.open(QIODevice::ReadOnly) || !contents.contains(file.readAll()))
            std::abort();
    }
    if (!failure && files != contents.size())
        std::abort();
    QDir(target).removeRecursively();
    return 0;
}
