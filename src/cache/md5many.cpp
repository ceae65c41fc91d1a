#include "cache/md5many.h"

#include <QCryptographicHash>
#include <QFile>

#include <array>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace
{
constexpr size_t blockSize = 64;

bool isStopped(const std::atomic<bool>* stop) { return stop && stop->load(std::memory_order_relaxed); }

#ifdef __x86_64__
constexpr int lanes = 8;
constexpr int maxLanesAlone = 2;
constexpr size_t readSize = size_t(32) * 1024;

constexpr std::array<uint32_t, 64> sines = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr std::array<uint32_t, 4> initialState = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};

/** Which word of a block a step takes, and by how many bits it turns the sum. */
constexpr int wordOf(int step)
{
    const int i = step % 16;
    switch (step / 16) {
    case 0:
        return i;
    case 1:
        return (5 * i + 1) % 16;
    case 2:
        return (3 * i + 5) % 16;
    default:
        return 7 * i % 16;
    }
}

constexpr int shiftOf(int step)
{
    constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    return shifts[step / 16][step % 4];
}

/** The four words of the state, each for all lanes. */
struct States {
    alignas(32) uint32_t words[4][lanes];
};

/** Turns eight words of each of eight lanes into eight vectors of one word of all lanes. */
__attribute__((target("avx2"), always_inline)) inline void
transpose(const std::array<const char*, lanes>& from, size_t offset, __m256i* to)
{
    __m256i r[8];
    for (size_t lane = 0; lane < 8; ++lane)
        r[lane] = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from[lane] + offset));
    __m256i p[8];
    for (size_t i = 0; i < 8; i += 2) {
        p[i] = _mm256_unpacklo_epi32(r[i], r[i + 1]);
        p[i + 1] = _mm256_unpackhi_epi32(r[i], r[i + 1]);
    }
    __m256i q[8];
    for (size_t i = 0; i < 8; i += 4) {
        q[i] = _mm256_unpacklo_epi64(p[i], p[i + 2]);
        q[i + 1] = _mm256_unpackhi_epi64(p[i], p[i + 2]);
        q[i + 2] = _mm256_unpacklo_epi64(p[i + 1], p[i + 3]);
        q[i + 3] = _mm256_unpackhi_epi64(p[i + 1], p[i + 3]);
    }
    for (size_t i = 0; i < 4; ++i) {
        to[i] = _mm256_permute2x128_si256(q[i], q[i + 4], 0x20);
        to[i + 4] = _mm256_permute2x128_si256(q[i], q[i + 4], 0x31);
    }
}

template <int round>
__attribute__((target("avx2"), always_inline)) inline __m256i mixWords(__m256i b, __m256i c, __m256i d)
{
    if constexpr (round == 0)
        return _mm256_xor_si256(d, _mm256_and_si256(b, _mm256_xor_si256(c, d)));
    else if constexpr (round == 1)
        return _mm256_xor_si256(c, _mm256_and_si256(d, _mm256_xor_si256(b, c)));
    else if constexpr (round == 2)
        return _mm256_xor_si256(_mm256_xor_si256(b, c), d);
    else
        return _mm256_xor_si256(c, _mm256_or_si256(b, _mm256_xor_si256(d, _mm256_set1_epi32(-1))));
}

template <int step>
__attribute__((target("avx2"), always_inline)) inline void doStep(__m256i& a, __m256i& b, __m256i& c,
                                                                  __m256i& d, const __m256i* words)
{
    constexpr int round = step / 16;
    constexpr int word = wordOf(step);
    constexpr int shift = shiftOf(step);
    const auto constant = _mm256_set1_epi32(static_cast<int>(sines[static_cast<size_t>(step)]));
    auto sum = _mm256_add_epi32(_mm256_add_epi32(a, _mm256_add_epi32(words[word], constant)),
                                mixWords<round>(b, c, d));
    sum = _mm256_or_si256(_mm256_slli_epi32(sum, shift), _mm256_srli_epi32(sum, 32 - shift));
    a = d;
    d = c;
    c = b;
    b = _mm256_add_epi32(b, sum);
}

template <int... steps>
__attribute__((target("avx2"), always_inline)) inline void
doSteps(__m256i& a, __m256i& b, __m256i& c, __m256i& d, const __m256i* words,
        std::integer_sequence<int, steps...> /*order*/)
{
    (doStep<steps>(a, b, c, d, words), ...);
}

/** Takes count blocks of every lane into the states. A lane that has nothing to do has advance 0 and any
 * block. */
__attribute__((target("avx2"))) void hashBlocks(States* states, std::array<const char*, lanes> data,
                                                const std::array<size_t, lanes>& advance, size_t count)
{
    auto* const words = reinterpret_cast<__m256i*>(states->words);
    auto a = _mm256_load_si256(words);
    auto b = _mm256_load_si256(words + 1);
    auto c = _mm256_load_si256(words + 2);
    auto d = _mm256_load_si256(words + 3);
    for (size_t block = 0; block < count; ++block) {
        __m256i message[16];
        transpose(data, 0, message);
        transpose(data, 32, message + 8);
        const auto a0 = a;
        const auto b0 = b;
        const auto c0 = c;
        const auto d0 = d;
        doSteps(a, b, c, d, message, std::make_integer_sequence<int, 64>());
        a = _mm256_add_epi32(a, a0);
        b = _mm256_add_epi32(b, b0);
        c = _mm256_add_epi32(c, c0);
        d = _mm256_add_epi32(d, d0);
        for (size_t lane = 0; lane < lanes; ++lane)
            data[lane] += advance[lane];
    }
    _mm256_store_si256(words, a);
    _mm256_store_si256(words + 1, b);
    _mm256_store_si256(words + 2, c);
    _mm256_store_si256(words + 3, d);
}

/** The same steps for one lane alone: with few lanes busy that is faster than the vectors. */
template <int step>
inline void doStepAlone(uint32_t& a, uint32_t& b, uint32_t& c, uint32_t& d, const uint32_t* words)
{
    uint32_t mixed;
    if constexpr (step < 16)
        mixed = d ^ (b & (c ^ d));
    else if constexpr (step < 32)
        mixed = c ^ (d & (b ^ c));
    else if constexpr (step < 48)
        mixed = b ^ c ^ d;
    else
        mixed = c ^ (b | ~d);
    const uint32_t sum = a + mixed + words[wordOf(step)] + sines[static_cast<size_t>(step)];
    a = d;
    d = c;
    c = b;
    b += (sum << shiftOf(step)) | (sum >> (32 - shiftOf(step)));
}

template <int... steps>
inline void doStepsAlone(std::array<uint32_t, 4>& s, const uint32_t* words,
                         std::integer_sequence<int, steps...> /*order*/)
{
    (doStepAlone<steps>(s[0], s[1], s[2], s[3], words), ...);
}

void hashBlocksAlone(States* states, size_t lane, const char* data, size_t count)
{
    std::array<uint32_t, 4> state;
    for (size_t word = 0; word < 4; ++word)
        state[word] = states->words[word][lane];
    for (size_t block = 0; block < count; ++block, data += blockSize) {
        std::array<uint32_t, 16> words;
        std::memcpy(words.data(), data, blockSize);
        auto next = state;
        doStepsAlone(next, words.data(), std::make_integer_sequence<int, 64>());
        for (size_t word = 0; word < 4; ++word)
            state[word] += next[word];
    }
    for (size_t word = 0; word < 4; ++word)
        states->words[word][lane] = state[word];
}

/** One file on its way through a lane: read piece by piece, padded at its end. */
class Lane
{
public:
    Lane() : m_buffer(new char[readSize + 2 * blockSize]) {}
    ~Lane() { close(); }
    Q_DISABLE_COPY_MOVE(Lane)

    bool isActive() const { return m_descriptor >= 0; }
    int file() const { return m_file; }
    const char* data() const { return m_buffer.get() + m_position; }
    size_t blocks() const { return (m_filled - m_position) / blockSize; }
    bool isAtEnd() const { return m_padded && blocks() == 0; }
    void skipBlocks(size_t count) { m_position += count * blockSize; }

    bool open(int file, const QString& path)
    {
        m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        m_file = file;
        m_total = 0;
        m_position = 0;
        m_filled = 0;
        m_padded = false;
        return m_descriptor >= 0;
    }

    void close()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = -1;
    }

    /** Reads on when no whole block is left. Returns false when the file cannot be read. */
    bool refill()
    {
        if (m_padded || blocks() > 0)
            return true;
        std::memmove(m_buffer.get(), m_buffer.get() + m_position, m_filled - m_position);
        m_filled -= m_position;
        m_position = 0;
        while (m_filled < readSize) {
            const auto got = ::read(m_descriptor, m_buffer.get() + m_filled, readSize - m_filled);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return false;
            if (got == 0) {
                pad();
                return true;
            }
            m_filled += static_cast<size_t>(got);
            m_total += static_cast<uint64_t>(got);
        }
        return true;
    }

private:
    void pad()
    {
        m_buffer[m_filled++] = static_cast<char>(0x80);
        while (m_filled % blockSize != blockSize - 8)
            m_buffer[m_filled++] = 0;
        const uint64_t bits = m_total * 8;
        std::memcpy(m_buffer.get() + m_filled, &bits, sizeof bits);
        m_filled += sizeof bits;
        m_padded = true;
    }

    const std::unique_ptr<char[]> m_buffer;
    int m_descriptor = -1;
    int m_file = -1;
    uint64_t m_total = 0;
    size_t m_position = 0;
    size_t m_filled = 0;
    bool m_padded = false;
};

class LaneHasher
{
public:
    LaneHasher(const QVector<QString>& paths, const std::atomic<bool>* stop)
        : m_paths(paths), m_stop(stop), m_results(paths.size())
    {
    }

    QVector<QByteArray> run()
    {
        for (size_t lane = 0; lane < lanes; ++lane)
            startNextFile(lane);
        while (!isStopped(m_stop) && hashWhatIsThere())
            settleLanes();
        return m_results;
    }

private:
    void startNextFile(size_t lane)
    {
        while (m_next < m_paths.size()) {
            const int file = m_next++;
            if (m_lanes[lane].open(file, m_paths[file]) && m_lanes[lane].refill()) {
                for (size_t word = 0; word < 4; ++word)
                    m_states.words[word][lane] = initialState[word];
                return;
            }
            m_lanes[lane].close();
        }
    }

    /** Hashes as many blocks as all busy lanes have. Returns false when no lane is busy. */
    bool hashWhatIsThere()
    {
        static constexpr std::array<char, blockSize> idleBlock{};
        std::array<const char*, lanes> data;
        std::array<size_t, lanes> advance;
        size_t count = SIZE_MAX;
        int busy = 0;
        for (size_t lane = 0; lane < lanes; ++lane) {
            const bool active = m_lanes[lane].isActive();
            data[lane] = active ? m_lanes[lane].data() : idleBlock.data();
            advance[lane] = active ? blockSize : 0;
            if (active) {
                count = qMin(count, m_lanes[lane].blocks());
                ++busy;
            }
        }
        if (busy == 0)
            return false;
        if (busy <= maxLanesAlone) {
            hashLanesAlone();
            return true;
        }
        hashBlocks(&m_states, data, advance, count);
        for (auto& lane : m_lanes) {
            if (lane.isActive())
                lane.skipBlocks(count);
        }
        return true;
    }

    void hashLanesAlone()
    {
        for (size_t lane = 0; lane < lanes; ++lane) {
            auto& current = m_lanes[lane];
            if (!current.isActive())
                continue;
            const size_t blocks = current.blocks();
            hashBlocksAlone(&m_states, lane, current.data(), blocks);
            current.skipBlocks(blocks);
        }
    }

    void settleLanes()
    {
        for (size_t lane = 0; lane < lanes; ++lane) {
            auto& current = m_lanes[lane];
            if (!current.isActive())
                continue;
            const bool readable = current.refill();
            if (readable && !current.isAtEnd())
                continue;
            if (readable)
                m_results[current.file()] = digest(lane);
            current.close();
            startNextFile(lane);
        }
    }

    QByteArray digest(size_t lane) const
    {
        std::array<uint32_t, 4> words;
        for (size_t word = 0; word < 4; ++word)
            words[word] = m_states.words[word][lane];
        return QByteArray(reinterpret_cast<const char*>(words.data()), sizeof words).toHex();
    }

    const QVector<QString>& m_paths;
    const std::atomic<bool>* const m_stop;
    QVector<QByteArray> m_results;
    States m_states{};
    std::array<Lane, lanes> m_lanes;
    int m_next = 0;
};
#endif
} // namespace

QVector<QByteArray> md5OfFilesPlain(const QVector<QString>& paths, const std::atomic<bool>* stop)
{
    QVector<QByteArray> results(paths.size());
    for (int i = 0; i < paths.size() && !isStopped(stop); ++i) {
        QFile file(paths[i]);
        QCryptographicHash hash(QCryptographicHash::Md5);
        if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && hash.addData(&file))
            results[i] = hash.result().toHex();
    }
    return results;
}

QVector<QByteArray> md5OfFiles(const QVector<QString>& paths, const std::atomic<bool>* stop)
{
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2"))
        return LaneHasher(paths, stop).run();
#endif
    return md5OfFilesPlain(paths, stop);
}
