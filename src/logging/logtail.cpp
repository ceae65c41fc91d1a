#include "logging/logtail.h"

#include "logging/logmessage.h"

#include <QDateTime>

namespace
{
constexpr qint64 longestStart = 4 << 20;
constexpr int typeCount = 5;

/** "2026-01-31T12:00:00.000Z<tab>category<tab>type<tab>message" */
bool readLine(const QString& line, LogRecord* record)
{
    const auto parts = line.split(QLatin1Char('\t'));
    // As the toolkit would read it, but many times as fast.
    const auto number = [&](int first, int count) { return parts.first().midRef(first, count).toInt(); };
    const QDateTime time(QDate(number(0, 4), number(5, 2), number(8, 2)),
                         QTime(number(11, 2), number(14, 2), number(17, 2), number(20, 3)));
    if (parts.size() < 4 || !time.isValid())
        return false;
    record->msSinceEpoch = time.toMSecsSinceEpoch();
    record->category = parts.at(1);
    for (int type = 0; type < typeCount; ++type) {
        if (parts.at(2) == loggingGetTypeStringFromType(type))
            record->type = type;
    }
    record->message = QStringList(parts.mid(3)).join(QLatin1Char('\t'));
    return true;
}
} // namespace

LogTail::LogTail(const QString& path) : m_file(path)
{
    if (!m_file.open(QIODevice::ReadOnly) || m_file.size() <= longestStart)
        return;
    m_file.seek(m_file.size() - longestStart);
    m_file.readLine(); // the first one is not whole
}

QVector<LogRecord> LogTail::read()
{
    QVector<LogRecord> records;
    if (!m_file.isOpen())
        return records;
    m_rest += m_file.readAll();
    const int end = m_rest.lastIndexOf('\n') + 1;
    const auto lines = QString::fromUtf8(m_rest.left(end)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    m_rest.remove(0, end);
    for (const auto& line : lines) {
        LogRecord record;
        if (readLine(line, &record))
            records.append(record);
        else if (!records.isEmpty())
            records.last().message += QLatin1Char('\n') + line;
    }
    return records;
}
