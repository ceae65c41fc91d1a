#include "logging/logmodel.h"

#include "logging/logmessage.h"

#include <QColor>
#include <QDateTime>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

namespace
{
QString levelText(int type) { return loggingGetTypeStringFromType(type); }

/** Colours that can be read on the palette's light or dark ground. */
QVariant levelColour(int type)
{
    const bool dark = QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
    switch (type) {
    case 1:
        return QColor(dark ? "#f0b050" : "#8a5a00");
    case 2:
    case 3:
        return QColor(dark ? "#ff7a70" : "#b3261e");
    case 4:
        return QColor(dark ? "#7ab8ff" : "#0b57b0");
    default:
        return {};
    }
}
} // namespace

bool LogFilter::accepts(const LogRecord& record) const
{
    if ((types & (1U << static_cast<unsigned>(record.type))) == 0)
        return false;
    return text.isEmpty() || record.message.contains(text, Qt::CaseInsensitive) ||
           record.category.contains(text, Qt::CaseInsensitive);
}

void LogModel::append(const QVector<LogRecord>& records)
{
    std::vector<quint64> fresh;
    for (const auto& record : records) {
        if (m_filter.accepts(record))
            fresh.push_back(m_dropped + m_records.size());
        m_records.push_back(record);
    }
    if (!fresh.empty()) {
        const int first = static_cast<int>(m_shown.size());
        beginInsertRows({}, first, first + static_cast<int>(fresh.size()) - 1);
        m_shown.insert(m_shown.end(), fresh.begin(), fresh.end());
        endInsertRows();
    }
    if (m_records.size() > maxRecords)
        dropOldest(m_records.size() - maxRecords);
}

void LogModel::dropOldest(size_t count)
{
    const quint64 firstKept = m_dropped + count;
    const auto end = std::lower_bound(m_shown.begin(), m_shown.end(), firstKept);
    const auto rows = static_cast<int>(end - m_shown.begin());
    if (rows > 0)
        beginRemoveRows({}, 0, rows - 1);
    m_shown.erase(m_shown.begin(), end);
    m_records.erase(m_records.begin(), m_records.begin() + static_cast<std::ptrdiff_t>(count));
    m_dropped = firstKept;
    if (rows > 0)
        endRemoveRows();
}

void LogModel::clear()
{
    beginResetModel();
    m_dropped += m_records.size();
    m_records.clear();
    m_shown.clear();
    endResetModel();
}

void LogModel::setFilter(const LogFilter& filter)
{
    beginResetModel();
    m_filter = filter;
    m_shown.clear();
    for (size_t i = 0; i < m_records.size(); ++i) {
        if (m_filter.accepts(m_records[i]))
            m_shown.push_back(m_dropped + i);
    }
    endResetModel();
}

const LogRecord& LogModel::shownRecord(int row) const
{
    return m_records[static_cast<size_t>(m_shown[static_cast<size_t>(row)] - m_dropped)];
}

QString LogModel::cellText(const LogRecord& record, int column)
{
    switch (column) {
    case Time:
        return QDateTime::fromMSecsSinceEpoch(record.msSinceEpoch).toString(QStringLiteral("HH:mm:ss.zzz"));
    case Level:
        return levelText(record.type);
    case Category:
        return record.category;
    case Process:
        return QString::number(record.processId);
    default:
        return record.repeatCount == 0
                   ? record.message
                   : tr("%1 (Repeated %2 times)").arg(record.message).arg(record.repeatCount);
    }
}

QString LogModel::lineText(int row) const
{
    QStringList cells;
    const auto& record = shownRecord(row);
    for (int column = 0; column < ColumnCount; ++column) {
        if (column != Process || record.processId != 0)
            cells << cellText(record, column);
    }
    return cells.join(QLatin1Char('\t'));
}

QString LogModel::toText() const
{
    QString text;
    for (int row = 0; row < rowCount(); ++row)
        text += lineText(row) + QLatin1Char('\n');
    return text;
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int LogModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    const auto& record = shownRecord(index.row());
    switch (role) {
    case Qt::DisplayRole:
        // A cell is one line; the tooltip has them all.
        return cellText(record, index.column()).left(2000).replace(QLatin1Char('\n'), QChar(0x23ce));
    case Qt::ToolTipRole:
        return index.column() == Message ? cellText(record, Message).left(5000) : QVariant();
    case Qt::ForegroundRole:
        return levelColour(record.type);
    case Qt::FontRole:
        return index.column() == Category ? QVariant()
                                          : QVariant(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    default:
        return {};
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString titles[] = {tr("Time"), tr("Level"), tr("Category"), tr("Message"), tr("Process")};
    return titles[section];
}
