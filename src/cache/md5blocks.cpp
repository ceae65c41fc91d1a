#include "cache/md5blocks.h"

#ifdef __x86_64__

#include <cstring>
#include <immintrin.h>
#include <utility>

namespace md5
{
namespace
{

constexpr std::array<uint32_t, 64> sines = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

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
} // namespace

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
} // namespace md5

#endif
