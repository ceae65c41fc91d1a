#include "bench/contest.h"
#include "maintenance/verifier.h"
#include "tests/testkit/sample.h"

#include <QEventLoop>
#include <QTemporaryDir>
#include <QThread>

QVector<ContestResult> benchVerify()
{
    constexpr int files = 50000;
    const QTemporaryDir folder;
    auto index = IndexPtr::create();
    for (int i = 0; i < files; ++i) {
        // Sizes as in a cache: many small files, few large ones.
        const auto content = sampleBytes(i, i % 500 == 0 ? 5000000 : 500 + i % 60 * 2000);
        const auto md5 = md5Of(content);
        const auto name = QStringLiteral("%1/%2_%3").arg(md5.left(2), md5.left(16), md5);
        writeSample(folder.filePath(QStringLiteral("ResFiles/") + name), content);
        index->append(
            IndexEntryPtr(new IndexEntry(QStringLiteral("res:/%1").arg(i), name, md5, content.size())));
    }
    const auto threads = QString::number(QThread::idealThreadCount());
    const auto md5sum =
        QStringLiteral("find ResFiles -type f -print0 | xargs -0 -n 500 -P %1 md5sum").arg(threads);
    const auto ratio = contest(
        [&] {
            return timed([&] {
                Verifier verifier;
                QEventLoop loop;
                QObject::connect(&verifier, &Verifier::finished, &loop, [&](const VerifyReport& report) {
                    if (report.checkedFiles != files || !report.damaged.isEmpty())
                        qFatal("The cache is not as it should be");
                    loop.quit();
                });
                verifier.start(
                    folder.path(),
                    [&] {
                        return CombinedIndex{0, index};
                    },
                    Verifier::Mode::Verify);
                loop.exec();
            });
        },
        [&] {
            return timedProgram(QStringLiteral("sh"), {QStringLiteral("-c"), md5sum}, folder.path());
        });
    return {{QStringLiteral("verify a cache of 50,000 files"),
             QStringLiteral("md5sum, %1 processes").arg(threads), ratio, QStringLiteral("2.5")}};
}
