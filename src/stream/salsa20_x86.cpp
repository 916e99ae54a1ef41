// Salsa20/20 for many blocks at once, laid out as the ChaCha20 kernels are
// (register k holds word k of 16 or 8 blocks; lanes_x86.h). Block i of a
// call runs with the 64-bit counter of words 8 and 9 plus i.
#include "stream/lanes_x86.h"
#include "stream/stream_x86.h"

// GCC 12 takes the undefined pass-through operand inside _mm512_rol_epi32
// for an uninitialised read.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

using namespace stream_lanes;

#define STEP512(t, a, b, n) t = _mm512_xor_si512(t, _mm512_rol_epi32(_mm512_add_epi32(a, b), n))
#define STEP256(t, a, b, n) t = _mm256_xor_si256(t, Rotl8x32(_mm256_add_epi32(a, b), n))

// The column round, then the row round, of the published algorithm.
#define DOUBLE_ROUND(STEP)                                                                \
    do {                                                                                  \
        STEP(x[4], x[0], x[12], 7);  STEP(x[8], x[4], x[0], 9);                           \
        STEP(x[12], x[8], x[4], 13); STEP(x[0], x[12], x[8], 18);                         \
        STEP(x[9], x[5], x[1], 7);   STEP(x[13], x[9], x[5], 9);                          \
        STEP(x[1], x[13], x[9], 13); STEP(x[5], x[1], x[13], 18);                         \
        STEP(x[14], x[10], x[6], 7); STEP(x[2], x[14], x[10], 9);                         \
        STEP(x[6], x[2], x[14], 13); STEP(x[10], x[6], x[2], 18);                         \
        STEP(x[3], x[15], x[11], 7); STEP(x[7], x[3], x[15], 9);                          \
        STEP(x[11], x[7], x[3], 13); STEP(x[15], x[11], x[7], 18);                        \
        STEP(x[1], x[0], x[3], 7);   STEP(x[2], x[1], x[0], 9);                           \
        STEP(x[3], x[2], x[1], 13);  STEP(x[0], x[3], x[2], 18);                          \
        STEP(x[6], x[5], x[4], 7);   STEP(x[7], x[6], x[5], 9);                           \
        STEP(x[4], x[7], x[6], 13);  STEP(x[5], x[4], x[7], 18);                          \
        STEP(x[11], x[10], x[9], 7); STEP(x[8], x[11], x[10], 9);                         \
        STEP(x[9], x[8], x[11], 13); STEP(x[10], x[9], x[8], 18);                         \
        STEP(x[12], x[15], x[14], 7); STEP(x[13], x[12], x[15], 9);                       \
        STEP(x[14], x[13], x[12], 13); STEP(x[15], x[14], x[13], 18);                     \
    } while (0)

STREAM_AVX512_TARGET void Salsa20XorAvx512(const uint32_t words[16], const uint8_t* in, uint8_t* out,
                                           size_t groups) {
    __m512i low, high;
    StartCounters16(words[8], words[9], &low, &high);
    for (; groups != 0; --groups, in += 1024, out += 1024) {
        __m512i x[16];
#pragma GCC unroll 16
        for (int k = 0; k < 16; ++k) x[k] = _mm512_set1_epi32(int(words[k]));
        x[8] = low;
        x[9] = high;
#pragma GCC unroll 10
        for (int round = 0; round < 10; ++round) DOUBLE_ROUND(STEP512);
#pragma GCC unroll 16
        for (int k = 0; k < 16; ++k) {
            __m512i start = k == 8 ? low : k == 9 ? high : _mm512_set1_epi32(int(words[k]));
            x[k] = _mm512_add_epi32(x[k], start);
        }
        Store16(x, in, out);
        StepCounters16(&low, &high);
    }
}

STREAM_AVX2_TARGET void Salsa20XorAvx2(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups) {
    __m256i low, high;
    StartCounters8(words[8], words[9], &low, &high);
    for (; groups != 0; --groups, in += 512, out += 512) {
        __m256i x[16];
        for (int k = 0; k < 16; ++k) x[k] = _mm256_set1_epi32(int(words[k]));
        x[8] = low;
        x[9] = high;
        for (int round = 0; round < 10; ++round) DOUBLE_ROUND(STEP256);
        for (int k = 0; k < 16; ++k) {
            __m256i start = k == 8 ? low : k == 9 ? high : _mm256_set1_epi32(int(words[k]));
            x[k] = _mm256_add_epi32(x[k], start);
        }
        Store8(x, in, out);
        StepCounters8(&low, &high);
    }
}

#undef STEP512
#undef STEP256
#undef DOUBLE_ROUND
