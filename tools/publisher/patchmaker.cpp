#include "tools/publisher/patchmaker.h"

#include "tools/publisher/compressor.h"

#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <divsufsort.h>
#include <vector>

namespace
{
constexpr int minMatch = 16;
/** By how many bytes a match has to be better than where the file already is. */
constexpr int minGain = 8;
/** Comparing more at each step of a search only costs time; a match is extended afterwards. */
constexpr int searchDepth = 512;
/** So many equal bytes of so many: the new file still follows the old one here. */
constexpr int followWindow = 32;
constexpr int followEqual = 24;
constexpr int bestCompression = 9;
/** Sums of two positions stay within their type. */
constexpr int maxSize = (1 << 30) - 1;

struct Bytes {
    const unsigned char* data;
    int size;
};

int equalRun(const unsigned char* a, const unsigned char* b, int limit)
{
    int length = 0;
    while (length < limit && a[length] == b[length])
        ++length;
    return length;
}

/** The old file's suffixes in order: finds where it holds what the new file has. */
class SuffixIndex
{
public:
    explicit SuffixIndex(Bytes old) : m_old(old), m_order(static_cast<size_t>(old.size))
    {
        if (old.size > 0 && divsufsort(old.data, m_order.data(), old.size) != 0)
            throw std::bad_alloc();
    }

    struct Match {
        int position = 0;
        int length = 0;
    };

    /** The longest match, as far as it is looked for; extended to its end. */
    Match find(const unsigned char* wanted, int size) const
    {
        const int depth = qMin(size, searchDepth);
        Match best;
        size_t low = 0;
        size_t high = m_order.size();
        while (low < high) {
            const size_t middle = low + (high - low) / 2;
            const int position = m_order[middle];
            const int limit = qMin(depth, m_old.size - position);
            const int length = equalRun(m_old.data + position, wanted, limit);
            if (length > best.length)
                best = {position, length};
            if (length == depth)
                break;
            if (length == limit || m_old.data[position + length] < wanted[length])
                low = middle + 1;
            else
                high = middle;
        }
        best.length += equalRun(m_old.data + best.position + best.length, wanted + best.length,
                                qMin(m_old.size - best.position, size) - best.length);
        return best;
    }

private:
    const Bytes m_old;
    std::vector<saidx_t> m_order;
};

/** A part of the new file that is made from a part of the old one of the same length. */
struct Segment {
    int newBegin = 0;
    int newEnd = 0;
    int oldBegin = 0;

    int oldEnd() const { return oldBegin + newEnd - newBegin; }
};

/** Splits the new file into segments and what is between them. */
class Aligner
{
public:
    Aligner(Bytes old, Bytes fresh) : m_old(old), m_new(fresh), m_index(old) {}

    std::vector<Segment> run()
    {
        m_segments.emplace_back();
        int position = 0;
        int misses = 0;
        while (position < m_new.size) {
            if (const int followed = follow(position); followed > 0) {
                position += followed;
                misses = 0;
                continue;
            }
            const auto match = m_index.find(m_new.data + position, m_new.size - position);
            if (match.length >= minMatch && match.length - equalHere(position, match.length) >= minGain) {
                begin({position, position + match.length, match.position});
                position += match.length;
                misses = 0;
            } else {
                // What has no counterpart for long is passed over in growing steps; a match that is met in
                // its middle grows backwards.
                position += 1 + qMin(misses++ / 64, minMatch - 1);
            }
        }
        extendForwards(&m_segments.back(), m_new.size);
        return m_segments;
    }

private:
    int shift() const { return m_segments.back().oldBegin - m_segments.back().newBegin; }

    /** Equal bytes where the current segment would go on. */
    int equalHere(int position, int length) const
    {
        const int from = qMax(position, -shift());
        const int to = qMin(position + length, m_old.size - shift());
        int equal = 0;
        for (int i = from; i < to; ++i)
            equal += m_new.data[i] == m_old.data[i + shift()] ? 1 : 0;
        return equal;
    }

    /** How far the new file goes on as the current segment does; 0 when it does not. */
    int follow(int position) const
    {
        const int length = qMin(followWindow, m_new.size - position);
        return equalHere(position, length) * followWindow >= length * followEqual ? length : 0;
    }

    void begin(Segment next)
    {
        auto& current = m_segments.back();
        extendForwards(&current, next.newBegin);
        extendBackwards(&next, current.newBegin);
        if (next.newBegin < current.newEnd)
            divide(&current, &next);
        if (current.newEnd - current.newBegin < minGain && m_segments.size() > 1)
            m_segments.pop_back();
        m_segments.push_back(next);
    }

    /** To where equal bytes outweigh the others the most. */
    void extendForwards(Segment* segment, int limit) const
    {
        limit = qMin(limit, m_old.size - (segment->oldBegin - segment->newBegin));
        int score = 0;
        int best = 0;
        int end = segment->newBegin;
        for (int i = segment->newBegin; i < limit; ++i) {
            score += m_new.data[i] == m_old.data[i - segment->newBegin + segment->oldBegin] ? 1 : -1;
            if (score > best) {
                best = score;
                end = i + 1;
            }
        }
        segment->newEnd = end;
    }

    void extendBackwards(Segment* segment, int limit) const
    {
        int score = 0;
        int best = 0;
        int length = 0;
        const int room = qMin(segment->newBegin - limit, segment->oldBegin);
        for (int i = 1; i <= room; ++i) {
            score += m_new.data[segment->newBegin - i] == m_old.data[segment->oldBegin - i] ? 1 : -1;
            if (score > best) {
                best = score;
                length = i;
            }
        }
        segment->newBegin -= length;
        segment->oldBegin -= length;
    }

    /** Gives every byte that both claim to the one that suits it better, with one border between them. */
    void divide(Segment* left, Segment* right) const
    {
        int gain = 0;
        int best = 0;
        int border = right->newBegin;
        for (int i = right->newBegin; i < left->newEnd; ++i) {
            gain += m_new.data[i] == m_old.data[i - left->newBegin + left->oldBegin] ? 1 : 0;
            gain -= m_new.data[i] == m_old.data[i - right->newBegin + right->oldBegin] ? 1 : 0;
            if (gain > best) {
                best = gain;
                border = i + 1;
            }
        }
        left->newEnd = border;
        right->oldBegin += border - right->newBegin;
        right->newBegin = border;
    }

    const Bytes m_old;
    const Bytes m_new;
    const SuffixIndex m_index;
    std::vector<Segment> m_segments;
};

void appendNumber(QByteArray* to, qint64 number)
{
    char bytes[sizeof number];
    qToLittleEndian(number, bytes);
    to->append(bytes, sizeof bytes);
}

QByteArray makeRecords(Bytes old, Bytes fresh, const std::vector<Segment>& segments)
{
    QByteArray records;
    records.reserve(fresh.size + static_cast<int>(segments.size()) * 24);
    for (size_t i = 0; i < segments.size(); ++i) {
        const auto& segment = segments[i];
        const bool isLast = i + 1 == segments.size();
        const int nextNew = isLast ? fresh.size : segments[i + 1].newBegin;
        appendNumber(&records, segment.newEnd - segment.newBegin);
        appendNumber(&records, nextNew - segment.newEnd);
        appendNumber(&records, isLast ? 0 : qint64(segments[i + 1].oldBegin) - segment.oldEnd());
        for (int k = segment.newBegin; k < segment.newEnd; ++k)
            records.append(
                static_cast<char>(fresh.data[k] - old.data[k - segment.newBegin + segment.oldBegin]));
        records.append(reinterpret_cast<const char*>(fresh.data) + segment.newEnd, nextNew - segment.newEnd);
    }
    return records;
}
} // namespace

QByteArray makePatch(const QByteArray& oldContent, const QByteArray& newContent)
{
    if (oldContent.size() > maxSize || newContent.size() > maxSize)
        return {};
    const Bytes old{reinterpret_cast<const unsigned char*>(oldContent.constData()), oldContent.size()};
    const Bytes fresh{reinterpret_cast<const unsigned char*>(newContent.constData()), newContent.size()};
    QByteArray patch("QZMPATCH");
    patch.append("\x01\0\0\0", 4);
    try {
        const auto segments = Aligner(old, fresh).run();
        return patch + compressed(makeRecords(old, fresh, segments), bestCompression);
    } catch (const std::bad_alloc&) {
        return {};
    }
}
