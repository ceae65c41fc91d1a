#include "bench/contest.h"
#include "index/indexparser.h"
#include "tests/testkit/sample.h"

#include <malloc.h>

namespace
{
constexpr int rows = 500000;

QByteArray makeIndex(int build, int changedEvery)
{
    QByteArray text;
    for (int i = 0; i < rows; ++i) {
        const int version = changedEvery > 0 && i % changedEvery == 0 ? build : 0;
        const auto md5 = md5Of(QByteArray::number(i) + '/' + QByteArray::number(version)).toLatin1();
        text += "res:/dx9/model/ship/faction" + QByteArray::number(i % 23) + "/class" +
                QByteArray::number(i % 311) + "/asset_" + QByteArray::number(i) + ".dat," + md5.left(2) +
                '/' + md5.left(16) + '_' + md5 + ',' + md5 + ',' + QByteArray::number(i * 7) + ',' +
                QByteArray::number(i * 3) + ",33188\n";
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
        index.append(QSharedPointer<PlainRow>(new PlainRow{fields[0], fields[1], fields[2], fields[3].toInt(),
                                                           fields[4].toInt(), fields[5].toInt()}));
    }
    return index;
}

IndexPtr parseOurs(const QByteArray& text)
{
    IndexParser parser;
    parser.parse(text.constData(), static_cast<size_t>(text.size()));
    return parser.getIndex();
}
} // namespace

double parsingMemory(const QString& what)
{
    const int count = what.section(QLatin1Char(':'), 1).toInt();
    QVector<QByteArray> texts;
    for (int build = 1; build <= count; ++build)
        texts << makeIndex(build, 5);
    QList<IndexPtr> ours;
    QList<QList<QSharedPointer<PlainRow>>> plain;
    const double before = residentBytes();
    for (const auto& text : qAsConst(texts)) {
        if (what.startsWith(QLatin1String("ours")))
            ours << parseOurs(text);
        else
            plain << parsePlainly(text);
    }
    ::malloc_trim(0); // what has been freed does not count
    return residentBytes() - before;
}

QVector<ContestResult> benchIndex()
{
    const auto against = QStringLiteral("splitting strings");
    QVector<ContestResult> results;
    int run = 0;
    QByteArray text;
    const auto parseNew = [&] {
        text = makeIndex(++run, 1); // no text of it has been seen before
        return timed([&] { parseOurs(text); });
    };
    const auto parseKnown = [&] { return timed([&] { parseOurs(text); }); };
    const auto splitStrings = [&] { return timed([&] { parsePlainly(text); }); };
    results << ContestResult{QStringLiteral("parse an index of 500,000 rows, all texts new"), against,
                             contest(parseNew, splitStrings), QStringLiteral("5")};
    results << ContestResult{QStringLiteral("parse it again, as the next refresh does"), against,
                             contest(parseKnown, splitStrings), QStringLiteral("5")};
    for (const int count : {1, 4}) {
        const auto memory = [count](const char* side) {
            return [=] { return memoryOf(QStringLiteral("%1:%2").arg(QLatin1String(side)).arg(count)); };
        };
        results << ContestResult{count == 1 ? QStringLiteral("memory of one index")
                                            : QStringLiteral("memory of four indexes that share 80 %"),
                                 against, contest(memory("ours"), memory("plain")), QStringLiteral("2")};
    }
    return results;
}
