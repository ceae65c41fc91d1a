#include "index/indexparser.h"

#include "index/stringtable.h"

#include <QDebug>

#include <array>
#include <cstring>

namespace
{
constexpr int textFields = 3;
constexpr int batchRows = 64;

using Field = StringTable::Session::Field;

/** A line cut into its fields, which still lie in the buffer. */
struct Row {
    std::array<Field, textFields> texts;
    std::array<qint32, 3> numbers;
};

/** The decimal number between begin and end; 0 when it is none or does not fit. */
qint32 toNumber(const char* begin, const char* end)
{
    const auto digits = end - begin;
    qint32 number = 0;
    if (digits >= 1 && digits <= 9) { // always fits
        const char* at = begin;
        for (; at != end && *at >= '0' && *at <= '9'; ++at)
            number = number * 10 + (*at - '0');
        if (at == end)
            return number;
    }
    return QByteArray::fromRawData(begin, static_cast<int>(digits)).toInt();
}

bool cut(const char* line, const char* end, Row* row)
{
    const char* at = line;
    for (int field = 0; field < 5; ++field) {
        const auto* comma = static_cast<const char*>(std::memchr(at, ',', static_cast<size_t>(end - at)));
        if (!comma)
            return false;
        if (field < textFields) {
            const auto length = static_cast<size_t>(comma - at);
            row->texts[static_cast<size_t>(field)] = {at, length, StringTable::Session::hash(at, length)};
        } else {
            row->numbers[static_cast<size_t>(field - textFields)] = toNumber(at, comma);
        }
        at = comma + 1;
    }
    row->numbers[2] = toNumber(at, end);
    return true;
}

/** Interns the texts of many rows at once: the table's memory is fetched for all of them before it is needed.
 */
void appendRows(const Row* rows, int count, Index* index)
{
    StringTable::Session strings;
    for (int i = 0; i < count; ++i) {
        for (const auto& text : rows[i].texts)
            strings.prefetch(text);
    }
    for (int i = 0; i < count; ++i) {
        const auto& row = rows[i];
        auto* entry = new IndexEntry;
        entry->name = strings.intern(row.texts[0]);
        entry->cachedName = strings.intern(row.texts[1]);
        entry->checksum = strings.intern(row.texts[2]);
        entry->size = row.numbers[0];
        entry->compressedSize = row.numbers[1];
        entry->flags = row.numbers[2];
        index->append(IndexEntryPtr(entry));
    }
}
} // namespace

IndexParser::IndexParser(QObject* parent) : QObject(parent), m_index(IndexPtr::create()) {}

void IndexParser::parse(const char* data, size_t length)
{
    const char* const end = data + length;
    while (data < end) {
        const auto* nul = static_cast<const char*>(std::memchr(data, '\0', static_cast<size_t>(end - data)));
        parseSegment(data, nul ? nul : end);
        data = nul ? nul + 1 : end;
    }
}

void IndexParser::parseSegment(const char* data, const char* end)
{
    std::array<Row, batchRows> rows;
    int count = 0;
    while (data < end) {
        const auto* feed = static_cast<const char*>(std::memchr(data, '\n', static_cast<size_t>(end - data)));
        const char* const lineEnd = feed ? feed : end;
        if (lineEnd != data) {
            if (cut(data, lineEnd, &rows[static_cast<size_t>(count)]))
                ++count;
            else
                ++m_malformedLines;
        }
        if (count == batchRows) {
            appendRows(rows.data(), count, m_index.data());
            count = 0;
        }
        data = lineEnd + 1;
    }
    appendRows(rows.data(), count, m_index.data());
}

IndexEntryPtr IndexParser::parseSingleLine(const QString& line) const
{
    const auto field = [&line](int number) { return line.section(QLatin1Char(','), number, number); };
    IndexEntryPtr entry(new IndexEntry);
    entry->name = MakeSharedString(field(0));
    entry->cachedName = MakeSharedString(field(1));
    entry->checksum = MakeSharedString(field(2));
    entry->size = field(3).toInt();
    entry->compressedSize = field(4).toInt();
    entry->flags = line.section(QLatin1Char(','), 5).toInt();
    return entry;
}

IndexPtr parseIndex(const QByteArray& data, const QString& source)
{
    IndexParser parser;
    parser.parse(data.constData(), static_cast<size_t>(data.size()));
    if (parser.malformedLines() > 0)
        qWarning().noquote() << "Skipped" << parser.malformedLines() << "malformed lines of" << source;
    return parser.getIndex();
}
