#include "bench/contest.h"
#include "servers/copier.h"
#include "tests/testkit/sample.h"

#include <QTemporaryDir>
#include <QThreadPool>

QVector<ContestResult> benchStaging()
{
    constexpr int files = 10000;
    const QTemporaryDir folder;
    auto index = IndexPtr::create();
    for (int i = 0; i < files; ++i) {
        // Sizes as in a game's folder: many small files, few large ones.
        const auto content = sampleBytes(i, i % 100 == 0 ? 2000000 : 2000 + i % 50 * 2000);
        const auto name = QStringLiteral("data/%1/%2.dat").arg(i % 100).arg(i);
        writeSample(folder.filePath(QStringLiteral("staging/") + name), content);
        index->append(IndexEntryPtr(new IndexEntry(
            QStringLiteral("app:/") + name, QStringLiteral("aa/%1").arg(i), md5Of(content), content.size())));
    }
    const auto threads = QString::number(QThreadPool::globalInstance()->maxThreadCount());
    const auto md5sum =
        QStringLiteral("find staging -type f -print0 | xargs -0 -n 200 -P %1 md5sum").arg(threads);
    const auto ratio = contest(
        [&] {
            return timed([&] {
                if (Copier(index, folder.path(), folder.filePath(QStringLiteral("staging")), {})
                        .copyFiles() != 0)
                    qFatal("The folder is not as it should be");
            });
        },
        [&] {
            return timedProgram(QStringLiteral("sh"), {QStringLiteral("-c"), md5sum}, folder.path());
        });
    return {{QStringLiteral("check an unchanged staging folder of 10,000 files"),
             QStringLiteral("md5sum, %1 processes").arg(threads), ratio, QStringLiteral("2")}};
}
