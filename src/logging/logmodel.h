#pragma once

#include "logging/logrecord.h"

#include <QAbstractTableModel>

#include <deque>

/** What is shown of the log. */
struct LogFilter {
    /** Types that are shown, a bit each. */
    unsigned types = 0x1f;
    /** Text that message or category has to contain, in any case. */
    QString text;

    bool accepts(const LogRecord& record) const;
};

/**
 * The log as a table: keeps the newest records, and shows those that a filter lets through. Made for
 * thousands of records a second: rows are added and removed in groups, and filtering looks at each record
 * once.
 */
class LogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Level, Category, Message, Process, ColumnCount };
    static constexpr size_t maxRecords = 200000;

    explicit LogModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    void append(const QVector<LogRecord>& records);
    void clear();
    void setFilter(const LogFilter& filter);
    /** A row that is shown, as a line of text. */
    QString lineText(int row) const;
    /** Everything that is shown, as lines of text. */
    QString toText() const;
    size_t recordCount() const { return m_records.size(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const LogRecord& shownRecord(int row) const;
    void dropOldest(size_t count);
    static QString cellText(const LogRecord& record, int column);

    std::deque<LogRecord> m_records;
    quint64 m_dropped = 0;       // records that have been dropped so far
    std::deque<quint64> m_shown; // numbers of the shown records, counted from the very first
    LogFilter m_filter;
};
