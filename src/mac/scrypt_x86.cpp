// scrypt's ROMix with Salsa20/8 in 128-bit vectors. Each 64-byte sub-block
// is kept with its words in the order
//   x0 x5 x10 x15 | x4 x9 x14 x3 | x8 x13 x2 x7 | x12 x1 x6 x11,
// so that the four quarter-rounds of a column round are four vector steps,
// and a lane rotation of three of the vectors lines the rows up. The XORs of
// BlockMix and ROMix work lane by lane, so X and V stay in that order from
// the first step to the last; word 0 of a sub-block, which Integerify reads,
// does not move. The SSE2 form turns words by two shifts; the AVX-512 form
// (AVX-512VL on 128-bit vectors) by one rotate.
#include <immintrin.h>

#include <cstring>

#include "mac/scrypt_x86.h"

// GCC 12 takes the undefined pass-through operand inside the AVX-512
// rotate intrinsic for an uninitialised read.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

namespace {
constexpr int kOrder[16] = {0, 5, 10, 15, 4, 9, 14, 3, 8, 13, 2, 7, 12, 1, 6, 11};

// Little-endian words of a block of 2r sub-blocks into the vector order, and
// back.
void ToLanes(uint32_t* out, const uint8_t* block, size_t subBlocks) {
    for (size_t s = 0; s < subBlocks; ++s) {
        for (int k = 0; k < 16; ++k) std::memcpy(&out[16 * s + k], block + 64 * s + 4 * kOrder[k], 4);
    }
}

void FromLanes(uint8_t* block, const uint32_t* in, size_t subBlocks) {
    for (size_t s = 0; s < subBlocks; ++s) {
        for (int k = 0; k < 16; ++k) std::memcpy(block + 64 * s + 4 * kOrder[k], &in[16 * s + k], 4);
    }
}
}  // namespace

#define ROL_SSE2(v, n) _mm_or_si128(_mm_slli_epi32(v, n), _mm_srli_epi32(v, 32 - (n)))
#define ROL_AVX512(v, n) _mm_rol_epi32(v, n)

// One quarter step on four lanes: t ^= (a + b) <<< n.
#define STEP(ROL, t, a, b, n) t = _mm_xor_si128(t, ROL(_mm_add_epi32(a, b), n))

// x = Salsa20/8(x ^ b), over the vector order; x0..x3 hold x.
#define SALSA_XOR(ROL, b)                                                                   \
    do {                                                                                    \
        x0 = _mm_xor_si128(x0, _mm_loadu_si128(reinterpret_cast<const __m128i*>(b)));       \
        x1 = _mm_xor_si128(x1, _mm_loadu_si128(reinterpret_cast<const __m128i*>(b) + 1));   \
        x2 = _mm_xor_si128(x2, _mm_loadu_si128(reinterpret_cast<const __m128i*>(b) + 2));   \
        x3 = _mm_xor_si128(x3, _mm_loadu_si128(reinterpret_cast<const __m128i*>(b) + 3));   \
        const __m128i s0 = x0, s1 = x1, s2 = x2, s3 = x3;                                   \
        for (int round = 0; round < 8; round += 2) {                                        \
            /* Columns. */                                                                  \
            STEP(ROL, x1, x0, x3, 7);                                                       \
            STEP(ROL, x2, x1, x0, 9);                                                       \
            STEP(ROL, x3, x2, x1, 13);                                                      \
            STEP(ROL, x0, x3, x2, 18);                                                      \
            /* Rows: x3 4 9 14 | x2 7 8 13 | x1 6 11 12 in lane order. */                    \
            x1 = _mm_shuffle_epi32(x1, 0x93);                                               \
            x2 = _mm_shuffle_epi32(x2, 0x4E);                                               \
            x3 = _mm_shuffle_epi32(x3, 0x39);                                               \
            STEP(ROL, x3, x0, x1, 7);                                                       \
            STEP(ROL, x2, x3, x0, 9);                                                       \
            STEP(ROL, x1, x2, x3, 13);                                                      \
            STEP(ROL, x0, x1, x2, 18);                                                      \
            x1 = _mm_shuffle_epi32(x1, 0x39);                                               \
            x2 = _mm_shuffle_epi32(x2, 0x4E);                                               \
            x3 = _mm_shuffle_epi32(x3, 0x93);                                               \
        }                                                                                   \
        x0 = _mm_add_epi32(x0, s0);                                                         \
        x1 = _mm_add_epi32(x1, s1);                                                         \
        x2 = _mm_add_epi32(x2, s2);                                                         \
        x3 = _mm_add_epi32(x3, s3);                                                         \
    } while (0)

// out = BlockMix(in): the running sub-block starts as the last one of in;
// outputs go even-indexed first.
#define BLOCK_MIX(ROL, out, in, r)                                                         \
    do {                                                                                    \
        const __m128i* tail = reinterpret_cast<const __m128i*>(in + (2 * size_t(r) - 1) * 16); \
        __m128i x0 = _mm_loadu_si128(tail), x1 = _mm_loadu_si128(tail + 1);                \
        __m128i x2 = _mm_loadu_si128(tail + 2), x3 = _mm_loadu_si128(tail + 3);            \
        for (size_t sub = 0; sub < 2 * size_t(r); ++sub) {                                  \
            SALSA_XOR(ROL, in + 16 * sub);                                                  \
            __m128i* to = reinterpret_cast<__m128i*>(out + ((sub & 1) * r + sub / 2) * 16); \
            _mm_storeu_si128(to, x0);                                                       \
            _mm_storeu_si128(to + 1, x1);                                                   \
            _mm_storeu_si128(to + 2, x2);                                                   \
            _mm_storeu_si128(to + 3, x3);                                                   \
        }                                                                                   \
    } while (0)

// ROMix as the portable form runs it, in the vector order throughout.
#define ROMIX_BODY(ROL)                                                                     \
    {                                                                                       \
        const size_t words = 32 * size_t(r);                                                \
        ToLanes(x, block, 2 * size_t(r));                                                   \
        for (uint32_t i = 0; i < n; ++i) {                                                  \
            std::memcpy(v + i * words, x, words * 4);                                       \
            BLOCK_MIX(ROL, y, x, r);                                                        \
            uint32_t* t = x;                                                                \
            x = y;                                                                          \
            y = t;                                                                          \
        }                                                                                   \
        const size_t last = (2 * size_t(r) - 1) * 16;                                       \
        for (uint32_t i = 0; i < n; ++i) {                                                  \
            const uint32_t j = x[last] & (n - 1);                                           \
            const __m128i* vj = reinterpret_cast<const __m128i*>(v + j * words);            \
            __m128i* xv = reinterpret_cast<__m128i*>(x);                                    \
            for (size_t k = 0; k < words / 4; ++k)                                          \
                _mm_storeu_si128(xv + k, _mm_xor_si128(_mm_loadu_si128(xv + k), _mm_loadu_si128(vj + k))); \
            BLOCK_MIX(ROL, y, x, r);                                                        \
            uint32_t* t = x;                                                                \
            x = y;                                                                          \
            y = t;                                                                          \
        }                                                                                   \
        FromLanes(block, x, 2 * size_t(r));                                                 \
    }

void ScryptRoMixSse2(uint8_t* block, uint32_t* v, uint32_t* x, uint32_t* y, uint32_t r, uint32_t n)
    ROMIX_BODY(ROL_SSE2)

__attribute__((target("avx512f,avx512vl"))) void ScryptRoMixAvx512(uint8_t* block, uint32_t* v, uint32_t* x,
                                                                   uint32_t* y, uint32_t r, uint32_t n)
    ROMIX_BODY(ROL_AVX512)

#undef ROL_SSE2
#undef ROL_AVX512
#undef STEP
#undef SALSA_XOR
#undef BLOCK_MIX
#undef ROMIX_BODY
