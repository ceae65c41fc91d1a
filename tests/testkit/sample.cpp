#include "tests/testkit/sample.h"

#include "tools/publisher/buildpublisher.h"
#include "tools/publisher/winepublisher.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

void writeSample(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(path));
}

QByteArray readSample(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SampleFiles readFolder(const QString& folder)
{
    SampleFiles files;
    QDirIterator iterator(folder, QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const auto path = iterator.next();
        files.insert(QDir(folder).relativeFilePath(path), readSample(path));
    }
    return files;
}

QByteArray sampleBytes(int seed, int size)
{
    QRandomGenerator generator(static_cast<quint32>(seed));
    QByteArray bytes((size + 3) / 4 * 4, Qt::Uninitialized);
    generator.generate(reinterpret_cast<quint32*>(bytes.begin()), reinterpret_cast<quint32*>(bytes.end()));
    bytes.truncate(size);
    return bytes;
}

QString md5Of(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

void SampleTree::publish(const QString& server, const QString& build, const SampleFiles& client,
                         const SampleFiles& resources, const SampleExtras& extras)
{
    const auto source = m_folder.filePath(QStringLiteral("source%1").arg(m_published++));
    QDir().mkpath(source + QStringLiteral("/client"));
    for (auto file = client.begin(); file != client.end(); ++file) {
        const auto path = source + QStringLiteral("/client/") + file.key();
        writeSample(path, file.value());
        if (file.key().endsWith(QLatin1String(".exe")))
            QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    }
    for (auto file = resources.begin(); file != resources.end(); ++file)
        writeSample(source + QStringLiteral("/resources/") + file.key(), file.value());

    BuildOptions options;
    options.server = server;
    options.build = build;
    options.from = source + QStringLiteral("/client");
    options.tree = path();
    options.isProtected = extras.isProtected;
    options.previous = extras.previous;
    options.bundle = extras.chunkSize > 0;
    options.chunkSize = extras.chunkSize;
    if (!resources.isEmpty()) {
        options.resources = source + QStringLiteral("/resources");
        options.prefetch = QStringList{QStringLiteral("first/*")};
    }
    QString error;
    if (!BuildPublisher(options).publish(&error))
        qFatal("Cannot publish: %s", qPrintable(error));
}

void SampleTree::publishWine(const QString& version, const SampleFiles& files, bool isDevelopment)
{
    const auto source = m_folder.filePath(QStringLiteral("source%1").arg(m_published++));
    for (auto file = files.begin(); file != files.end(); ++file) {
        const auto path = source + QLatin1Char('/') + file.key();
        writeSample(path, file.value());
        if (file.key().startsWith(QLatin1String("bin/")))
            QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    }
    QString error;
    if (!WinePublisher({version, source, path(), isDevelopment}).publish(&error))
        qFatal("Cannot publish: %s", qPrintable(error));
}

void SampleTree::announce(const QString& server, const QString& build) const
{
    writeSample(QStringLiteral("%1/velkorclient_%2.json").arg(path(), server.toUpper()),
                "{\"build\": \"" + build.toUtf8() + "\"}");
}

IndexEntryPtr SampleTree::addContent(const QString& name, const QByteArray& bytes)
{
    QString error;
    const auto content = ContentStore(path()).addBytes(bytes, &error);
    if (!content)
        qFatal("Cannot publish: %s", qPrintable(error));
    return IndexEntryPtr(new IndexEntry(name, content->cachedName, content->md5, content->size));
}

QString SampleTree::pathOf(const QByteArray& bytes)
{
    return QLatin1Char('/') + ContentStore::cachedNameFor(md5Of(bytes));
}
