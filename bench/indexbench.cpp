#include "bench/contest.h"
#include "index/indexparser.h"
#include "tests/testkit/sample.h"

namespace
{
constexpr int rows = 500000;

QByteArray makeIndex(int build, int changedEvery)
{
    QByteArray text;
    for (int i = 0; i < rows; ++i) {
        const int version = changedEvery > 0 && i % changedEvery == 0 ? build : 0;
        const auto md5 = md5Of(QByteArray::number(i) + '/' + QByteArray::number(version)).toLatin1();
        text += "res:/dx9/model/ship/faction" + QByteArray::number(i % 23) + "/class" + QByteArray::number(i % 311) +
                "/asset_" + QByteArray::number(i) + ".dat," + md5.left(2) + '/' + md5.left(16) + '_' + md5 + ',' + md5 +
                ',' + QByteArray::number(i * 7) + ',' + QByteArray::number(i * 3) + ",33188\n";
    }
    return text;
}

/** The parser that one would write first: everything is split into strings. */
struct PlainRow {
    QString name;
    QString cachedName;
    QString checksum;
    qint64 size;
    qint64 compressedSize;
    int flags;
};

QList<QSharedPointer<PlainRow>> parsePlainly(const QByteArray& text)
{
    QList<QSharedPointer<PlainRow>> index;
    const auto lines = QString::fromLocal8Bit(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const auto& line : lines) {
        const auto fields = line.split(QLatin1Char(','));
        index.append(QSharedPointer<PlainRow>(
            new PlainRow{fields[0], fields[1], fields[2], fields[3].toInt(), fields[4].toInt(), fields[5].toInt()}));
    }
    return index;
}

IndexPtr parseOurs(const QByteArray& text)
{
    IndexParser parser;
    parser.parse(text.constData(), static_cast<size_t>(text.size()));
    return parser.getIndex();
}

/** Time of parsing in a fresh process, so that nothing has been interned before. */
double timeInChild(const std::function<void()>& action)
{
    double seconds = 0;
    const auto measured = memoryOf([&] { seconds = timed(action); });
    Q_UNUSED(measured)
    return seconds;
}
} // namespace

QVector<ContestResult> benchIndex()
{
    const auto text = makeIndex(0, 0);
    QVector<QByteArray> four;
    for (int build = 1; build <= 4; ++build)
        four << makeIndex(build, 5);

    QVector<ContestResult> results;
    int run = 0;
    const auto fresh = [&] { return makeIndex(++run, 1); };
    QByteArray next;
    results << ContestResult{
        QStringLiteral("parse an index of 500,000 rows, all texts new"), QStringLiteral("splitting strings"),
        contest(
            [&] {
                next = fresh();
                return timed([&] { parseOurs(next); });
            },
            [&] { return timed([&] { parsePlainly(next); }); }),
        QStringLiteral("5")};
    parseOurs(text);
    results << ContestResult{QStringLiteral("parse it again, as the next refresh does"), QStringLiteral("splitting strings"),
                             contest([&] { return timed([&] { parseOurs(text); }); },
                                     [&] { return timed([&] { parsePlainly(text); }); }),
                             QStringLiteral("5")};

    QList<IndexPtr> ours;
    QList<QList<QSharedPointer<PlainRow>>> plain;
    results << ContestResult{QStringLiteral("memory of one index"), QStringLiteral("splitting strings"),
                             contest([&] { return memoryOf([&] { ours << parseOurs(fresh()); }); },
                                     [&] { return memoryOf([&] { plain << parsePlainly(fresh()); }); }),
                             QStringLiteral("2")};
    results << ContestResult{QStringLiteral("memory of four indexes that share 80 %"), QStringLiteral("splitting strings"),
                             contest(
                                 [&] {
                                     return memoryOf([&] {
                                         for (const auto& index : four)
                                             ours << parseOurs(index);
                                     });
                                 },
                                 [&] {
                                     return memoryOf([&] {
                                         for (const auto& index : four)
                                             plain << parsePlainly(index);
                                     });
                                 }),
                             QStringLiteral("2")};
    return results;
}
