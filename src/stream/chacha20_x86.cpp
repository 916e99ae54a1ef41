// ChaCha20 for many blocks at once. Register k holds state word k of 16
// blocks (AVX-512) or 8 blocks (AVX2), one block per 32-bit lane, so the
// rounds are the portable ones on whole vectors (lanes_x86.h turns the lanes
// back into blocks). Block i of a call runs with the 64-bit counter of words
// 12 and 13 plus i.
#include "stream/lanes_x86.h"
#include "stream/stream_x86.h"

// GCC 12 takes the undefined pass-through operand inside _mm512_rol_epi32
// for an uninitialised read.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

using namespace stream_lanes;

// The turns by 16 and 8 move whole bytes: byte shuffles, which also run
// beside the rotates.
#define QR512(a, b, c, d)                                                                   \
    do {                                                                                    \
        a = _mm512_add_epi32(a, b); d = _mm512_shuffle_epi8(_mm512_xor_si512(d, a), rot16);  \
        c = _mm512_add_epi32(c, d); b = _mm512_rol_epi32(_mm512_xor_si512(b, c), 12);        \
        a = _mm512_add_epi32(a, b); d = _mm512_shuffle_epi8(_mm512_xor_si512(d, a), rot8);   \
        c = _mm512_add_epi32(c, d); b = _mm512_rol_epi32(_mm512_xor_si512(b, c), 7);         \
    } while (0)

#define QR256(a, b, c, d)                                                                  \
    do {                                                                                   \
        a = _mm256_add_epi32(a, b); d = _mm256_shuffle_epi8(_mm256_xor_si256(d, a), rot16); \
        c = _mm256_add_epi32(c, d); b = Rotl8x32(_mm256_xor_si256(b, c), 12);              \
        a = _mm256_add_epi32(a, b); d = _mm256_shuffle_epi8(_mm256_xor_si256(d, a), rot8);  \
        c = _mm256_add_epi32(c, d); b = Rotl8x32(_mm256_xor_si256(b, c), 7);               \
    } while (0)

// Column rounds, then diagonal rounds.
#define DOUBLE_ROUND(QR)                  \
    do {                                  \
        QR(x[0], x[4], x[8], x[12]);      \
        QR(x[1], x[5], x[9], x[13]);      \
        QR(x[2], x[6], x[10], x[14]);     \
        QR(x[3], x[7], x[11], x[15]);     \
        QR(x[0], x[5], x[10], x[15]);     \
        QR(x[1], x[6], x[11], x[12]);     \
        QR(x[2], x[7], x[8], x[13]);      \
        QR(x[3], x[4], x[9], x[14]);      \
    } while (0)

STREAM_AVX512_TARGET void Chacha20XorAvx512(const uint32_t words[16], const uint8_t* in, uint8_t* out,
                                            size_t groups) {
    // Byte orders (2 3 0 1) and (3 0 1 2) in every word.
    const __m512i rot16 = _mm512_set_epi64(0x0d0c0f0e09080b0all, 0x0504070601000302ll, 0x0d0c0f0e09080b0all,
                                           0x0504070601000302ll, 0x0d0c0f0e09080b0all, 0x0504070601000302ll,
                                           0x0d0c0f0e09080b0all, 0x0504070601000302ll);
    const __m512i rot8 = _mm512_set_epi64(0x0e0d0c0f0a09080bll, 0x0605040702010003ll, 0x0e0d0c0f0a09080bll,
                                          0x0605040702010003ll, 0x0e0d0c0f0a09080bll, 0x0605040702010003ll,
                                          0x0e0d0c0f0a09080bll, 0x0605040702010003ll);
    __m512i low, high;
    StartCounters16(words[12], words[13], &low, &high);
    for (; groups != 0; --groups, in += 1024, out += 1024) {
        __m512i x[16];
#pragma GCC unroll 16
        for (int k = 0; k < 16; ++k) x[k] = _mm512_set1_epi32(int(words[k]));
        x[12] = low;
        x[13] = high;
#pragma GCC unroll 10
        for (int round = 0; round < 10; ++round) DOUBLE_ROUND(QR512);
#pragma GCC unroll 16
        for (int k = 0; k < 16; ++k) {
            __m512i start = k == 12 ? low : k == 13 ? high : _mm512_set1_epi32(int(words[k]));
            x[k] = _mm512_add_epi32(x[k], start);
        }
        Store16(x, in, out);
        StepCounters16(&low, &high);
    }
}

STREAM_AVX2_TARGET void Chacha20XorAvx2(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups) {
    const __m256i rot16 = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13));
    const __m256i rot8 = _mm256_broadcastsi128_si256(
        _mm_setr_epi8(3, 0, 1, 2, 7, 4, 5, 6, 11, 8, 9, 10, 15, 12, 13, 14));
    __m256i low, high;
    StartCounters8(words[12], words[13], &low, &high);
    for (; groups != 0; --groups, in += 512, out += 512) {
        __m256i x[16];
        for (int k = 0; k < 16; ++k) x[k] = _mm256_set1_epi32(int(words[k]));
        x[12] = low;
        x[13] = high;
        for (int round = 0; round < 10; ++round) DOUBLE_ROUND(QR256);
        for (int k = 0; k < 16; ++k) {
            __m256i start = k == 12 ? low : k == 13 ? high : _mm256_set1_epi32(int(words[k]));
            x[k] = _mm256_add_epi32(x[k], start);
        }
        Store8(x, in, out);
        StepCounters8(&low, &high);
    }
}

#undef QR512
#undef QR256
#undef DOUBLE_ROUND
