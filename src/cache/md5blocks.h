#pragma once

#ifdef __x86_64__

#include <array>
#include <cstddef>
#include <cstdint>

/** The inner loop of MD5 for eight messages at a time, in the lanes of AVX2 vectors. */
namespace md5
{
constexpr size_t blockSize = 64;
constexpr size_t lanes = 8;

constexpr std::array<uint32_t, 4> initialState = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};

/** The four words of the state, each for all lanes. */
struct States {
    alignas(32) uint32_t words[4][lanes];
};

/** Takes count blocks of every lane into the states. A lane that has nothing to do has advance 0 and any
 * block. Only for processors with AVX2. */
void hashBlocks(States* states, std::array<const char*, lanes> data, const std::array<size_t, lanes>& advance,
                size_t count);

/** The same for one lane alone: with few lanes busy that is faster than the vectors. Any processor. */
void hashBlocksAlone(States* states, size_t lane, const char* data, size_t count);
} // namespace md5

#endif
