#pragma once

#include "index/index.h"

#include <QObject>

/**
 * Parses index files: one row a line, six fields between commas (name, cached name, checksum, size,
 * compressed size, flags). Lines end at a line feed or a NUL byte; empty lines are skipped, lines with fewer
 * than five commas are counted and skipped. A number that is none, or does not fit 32 bits, is 0.
 */
class IndexParser : public QObject, public LiveCount<IndexParser>
{
    Q_OBJECT

public:
    explicit IndexParser(QObject* parent = nullptr);

    /** Appends every row of the buffer to the index. */
    void parse(const char* data, size_t length);

    /** The row in one line; fields that are missing are empty or 0. */
    IndexEntryPtr parseSingleLine(const QString& line) const;

    /** The index that is being filled. */
    IndexPtr getIndex() const { return m_index; }

    /** Lines that were skipped because they have fewer than five commas. */
    int malformedLines() const { return m_malformedLines; }

private:
    void parseSegment(const char* data, const char* end);

    IndexPtr m_index;
    int m_malformedLines = 0;
};

/** Parses an index and logs the number of lines that had to be skipped. source names it in that line. */
IndexPtr parseIndex(const QByteArray& data, const QString& source);
