#include "index/stringtable.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <sys/mman.h>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace
{
/**
 * Memory for strings that are never freed. Each string is laid out like one of the toolkit's string literals,
 * header and characters in one piece, so that a QString of it is a pointer and copying it touches no counter.
 * A position counts units of eight bytes from the first block and fits into 32 bits.
 */
class Arena
{
public:
    uint32_t allocate(int characters)
    {
        const size_t bytes = sizeof(QStringData) + (static_cast<size_t>(characters) + 1) * sizeof(ushort);
        const size_t units = (bytes + unit - 1) / unit;
        if (units > unitsPerBlock)
            throw std::bad_alloc();
        if (m_used + units > unitsPerBlock || m_blocks.empty())
            addBlock();
        const auto position = static_cast<uint32_t>((m_blocks.size() - 1) * unitsPerBlock + m_used);
        m_used += units;
        auto* data = at(position);
        new (data) QStringData{{Q_REFCOUNT_INITIALIZE_STATIC, characters, 0, 0, sizeof(QStringData)}};
        data->data()[characters] = 0;
        return position;
    }

    QStringData* at(uint32_t position) const
    {
        return reinterpret_cast<QStringData*>(m_blocks[position / unitsPerBlock] +
                                              position % unitsPerBlock * unit);
    }

private:
    static constexpr size_t unit = 8;
    static constexpr size_t blockBytes = size_t(4) << 20;
    static constexpr size_t unitsPerBlock = blockBytes / unit;

    void addBlock()
    {
        auto* block = static_cast<char*>(std::aligned_alloc(size_t(2) << 20, blockBytes));
        if (!block)
            throw std::bad_alloc();
        ::madvise(block, blockBytes, MADV_HUGEPAGE);
        m_blocks.push_back(block);
        m_used = 0;
    }

    std::vector<char*> m_blocks;
    size_t m_used = 0;
};

void widen(ushort* to, const char* from, size_t length)
{
    size_t i = 0;
#ifdef __SSE2__
    const auto zero = _mm_setzero_si128();
    for (; i + 16 <= length; i += 16) {
        const auto bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i + 8), _mm_unpackhi_epi8(bytes, zero));
    }
#endif
    for (; i < length; ++i)
        to[i] = static_cast<uchar>(from[i]);
}

bool equalsWidened(const ushort* wide, const char* bytes, size_t length)
{
    size_t i = 0;
#ifdef __SSE2__
    const auto zero = _mm_setzero_si128();
    for (; i + 16 <= length; i += 16) {
        const auto narrow = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
        const auto low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(wide + i));
        const auto high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(wide + i + 8));
        const auto equal = _mm_and_si128(_mm_cmpeq_epi16(low, _mm_unpacklo_epi8(narrow, zero)),
                                         _mm_cmpeq_epi16(high, _mm_unpackhi_epi8(narrow, zero)));
        if (_mm_movemask_epi8(equal) != 0xffff)
            return false;
    }
#endif
    for (; i < length; ++i) {
        if (wide[i] != static_cast<uchar>(bytes[i]))
            return false;
    }
    return true;
}

/** Open addressing; a slot is the upper half of the hash and the position of the string plus one. */
class Table
{
public:
    std::mutex mutex;

    size_t size() const { return m_count; }

    void prefetch(size_t hash) const { __builtin_prefetch(&m_slots[slotOf(tagOf(hash))]); }

    /** equals(data) compares with a stored string, fill(characters) writes a new one of the given length. */
    template <typename Equals, typename Fill>
    QString intern(size_t hash, int length, const Equals& equals, const Fill& fill)
    {
        const uint32_t tag = tagOf(hash);
        size_t slot = slotOf(tag);
        while (m_slots[slot] != 0) {
            if (static_cast<uint32_t>(m_slots[slot] >> 32) == tag) {
                auto* data = m_arena.at(static_cast<uint32_t>(m_slots[slot]) - 1);
                if (data->size == length && equals(data->data()))
                    return toString(data);
            }
            slot = (slot + 1) & (m_slots.size() - 1);
        }
        const auto position = m_arena.allocate(length);
        auto* data = m_arena.at(position);
        fill(data->data());
        m_slots[slot] = uint64_t(tag) << 32 | (position + 1);
        if (++m_count * 5 > m_slots.size() * 3)
            grow();
        return toString(data);
    }

private:
    static uint32_t tagOf(size_t hash) { return static_cast<uint32_t>(uint64_t(hash) >> 32); }
    size_t slotOf(uint32_t tag) const { return tag >> (32 - m_bits); }
    static QString toString(QStringData* data) { return QString(QStringDataPtr{data}); }

    void grow()
    {
        ++m_bits;
        const auto old = std::move(m_slots);
        m_slots = std::vector<uint64_t>(size_t(1) << m_bits);
        for (const auto entry : old) {
            if (entry == 0)
                continue;
            size_t slot = slotOf(static_cast<uint32_t>(entry >> 32));
            while (m_slots[slot] != 0)
                slot = (slot + 1) & (m_slots.size() - 1);
            m_slots[slot] = entry;
        }
    }

    unsigned m_bits = 16;
    std::vector<uint64_t> m_slots = std::vector<uint64_t>(size_t(1) << m_bits);
    size_t m_count = 0;
    Arena m_arena;
};

Table& table()
{
    static auto* instance = new Table; // its strings outlive every static object
    return *instance;
}

bool isAscii(const char* data, size_t length)
{
    uint64_t bits = 0;
    size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        uint64_t word;
        std::memcpy(&word, data + i, 8);
        bits |= word;
    }
    for (; i < length; ++i)
        bits |= static_cast<uchar>(data[i]);
    return (bits & 0x8080808080808080U) == 0;
}

QString internAscii(Table& strings, const char* data, size_t length, size_t hash)
{
    return strings.intern(
        hash, static_cast<int>(length),
        [=](const ushort* stored) { return equalsWidened(stored, data, length); },
        [=](ushort* stored) { widen(stored, data, length); });
}

QString internDecoded(Table& strings, const QString& text)
{
    const auto utf8 = text.toUtf8();
    const size_t bytes = static_cast<size_t>(text.size()) * sizeof(ushort);
    return strings.intern(
        StringTable::Session::hash(utf8.constData(), static_cast<size_t>(utf8.size())), text.size(),
        [&](const ushort* stored) { return std::memcmp(stored, text.utf16(), bytes) == 0; },
        [&](ushort* stored) { std::memcpy(stored, text.utf16(), bytes); });
}
} // namespace

StringTable::Session::Session() { table().mutex.lock(); }

StringTable::Session::~Session() { table().mutex.unlock(); }

// Eight bytes a step; the upper half of the result is the part that counts.
size_t StringTable::Session::hash(const char* data, size_t length)
{
    constexpr uint64_t factor = 0x9e3779b97f4a7c15U;
    uint64_t hash = length * factor;
    const auto mix = [&hash](uint64_t word) {
        hash = (hash ^ word) * factor;
        hash ^= hash >> 29;
    };
    size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        uint64_t word;
        std::memcpy(&word, data + i, 8);
        mix(word);
    }
    if (i < length) {
        uint64_t word = 0;
        std::memcpy(&word, data + i, length - i);
        mix(word);
    }
    return hash * factor;
}

void StringTable::Session::prefetch(const Field& field) const { table().prefetch(field.hash); }

QString StringTable::Session::intern(const Field& field)
{
    if (field.length == 0)
        return {};
    if (isAscii(field.data, field.length))
        return internAscii(table(), field.data, field.length, field.hash);
    return internDecoded(table(), QString::fromLocal8Bit(field.data, static_cast<int>(field.length)));
}

QString StringTable::intern(const QString& text)
{
    if (text.isEmpty())
        return {};
    const std::lock_guard lock(table().mutex);
    return internDecoded(table(), text);
}

size_t StringTable::size()
{
    const std::lock_guard lock(table().mutex);
    return table().size();
}
