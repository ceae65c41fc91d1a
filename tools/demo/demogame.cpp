#include "tools/demo/demogame.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSaveFile>

namespace
{
constexpr int changedEvery = 20;

bool writeFile(const QString& path, const QByteArray& bytes, QString* error)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
    return false;
}

QByteArray randomBytes(quint32 seed, int size)
{
    QRandomGenerator generator(seed);
    QByteArray bytes((size + 3) / 4 * 4, Qt::Uninitialized);
    generator.generate(reinterpret_cast<quint32*>(bytes.begin()), reinterpret_cast<quint32*>(bytes.end()));
    bytes.truncate(size);
    return bytes;
}

bool writeClient(const DemoGame& game, const QString& folder, QString* error)
{
    for (const auto* name : {"bin/exefile.exe", "bin64/exefile.exe"}) {
        const auto path = folder + QLatin1Char('/') + QLatin1String(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile::remove(path);
        if (!QFile::copy(game.client, path)) {
            *error = QStringLiteral("Cannot copy %1 to %2").arg(game.client, path);
            return false;
        }
        QFile::setPermissions(path,
                              QFile::permissions(path) | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    }
    const auto notes = QStringLiteral("Velkor demo game\nBuild %1\n").arg(game.build);
    if (!writeFile(folder + QStringLiteral("/docs/release notes.txt"), notes.toUtf8(), error))
        return false;
    QFile::remove(folder + QStringLiteral("/readme.txt"));
    return QFile::link(QStringLiteral("docs/release notes.txt"), folder + QStringLiteral("/readme.txt"));
}
} // namespace

bool generateDemoGame(const DemoGame& game, const QString& folder, QString* error)
{
    for (int i = 0; i < game.resources; ++i) {
        const int build = i % changedEvery == 0 ? game.build : 1;
        const auto seed = static_cast<quint32>(i * 1000 + build);
        const int size =
            game.averageBytes / 2 + static_cast<int>(QRandomGenerator(seed).bounded(game.averageBytes));
        const auto group = i % 8 == 7 ? QStringLiteral("later") : QStringLiteral("first");
        const auto path = QStringLiteral("%1/resources/%2/%3/asset_%4.bin")
                              .arg(folder, group, QString::number(i % 16, 16))
                              .arg(i, 5, 10, QLatin1Char('0'));
        if (!writeFile(path, randomBytes(seed, size), error))
            return false;
    }
    return writeClient(game, folder + QStringLiteral("/client"), error);
}
