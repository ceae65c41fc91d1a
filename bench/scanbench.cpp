#include "bench/contest.h"
#include "download/cachescan.h"
#include "tests/testkit/sample.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

QVector<ContestResult> benchScan()
{
    constexpr int files = 300000;
    const QTemporaryDir folder;
    const auto root = folder.filePath(QStringLiteral("ResFiles"));
    for (int i = 0; i < 256; ++i)
        QDir().mkpath(QStringLiteral("%1/%2").arg(root).arg(i, 2, 16, QLatin1Char('0')));
    Index index;
    for (int i = 0; i < files; ++i) {
        const auto md5 = md5Of(QByteArray::number(i));
        const auto cachedName = QStringLiteral("%1/%2_%3").arg(md5.left(2), md5.left(16), md5);
        ::close(::open(qPrintable(root + QLatin1Char('/') + cachedName), O_CREAT | O_WRONLY, 0644));
        index.append(IndexEntryPtr(new IndexEntry(QStringLiteral("res:/%1").arg(i), cachedName, md5, 1)));
    }
    const auto scan = [&] {
        if (!scanCache(index, folder.path()).missing.isEmpty())
            qFatal("The scan has missed files");
    };
    const auto ratio =
        contest([&] { return timed(scan); }, [&] { return timedProgram(QStringLiteral("find"), {root}); });
    return {{QStringLiteral("scan a cache of 300,000 files against its index"), QStringLiteral("find"), ratio,
             QStringLiteral("0.77")}};
}
