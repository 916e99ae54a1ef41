// SHA-512 blocks with a vector message schedule. Two blocks share each
// 256-bit register, one per 128-bit lane, so the schedule of a pair costs as
// much as that of one block. Its words, with the round constants added, go
// to a table on the stack, from which the rounds read them in general
// registers (RORX turns them). The vector work of a pair is woven into the
// rounds of the block before it, where it runs beside them.
//
// Every function below is compiled for AVX2 and BMI2; they run only when
// the processor has both.
#include "digest/digest_x86.h"
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2,bmi2"))), apply_to = function)
#else
#pragma GCC target("avx2,bmi2")
#endif

namespace {
alignas(64) constexpr uint64_t kK[80] = {
    0x428a2f98d728ae22, 0x7137449123ef65cd, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc, 0x3956c25bf348b538,
    0x59f111f1b605d019, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118, 0xd807aa98a3030242, 0x12835b0145706fbe,
    0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2, 0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x9bdc06a725c71235,
    0xc19bf174cf692694, 0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65,
    0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5, 0x983e5152ee66dfab,
    0xa831c66d2db43210, 0xb00327c898fb213f, 0xbf597fc7beef0ee4, 0xc6e00bf33da88fc2, 0xd5a79147930aa725,
    0x06ca6351e003826f, 0x142929670a0e6e70, 0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x4d2c6dfc5ac42aed,
    0x53380d139d95b3df, 0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x81c2c92e47edaee6, 0x92722c851482353b,
    0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xc24b8b70d0f89791, 0xc76c51a30654be30, 0xd192e819d6ef5218,
    0xd69906245565a910, 0xf40e35855771202a, 0x106aa07032bbd1b8, 0x19a4c116b8d2d0c8, 0x1e376c085141ab53,
    0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8, 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x5b9cca4f7763e373,
    0x682e6ff3d6b2b8a3, 0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x84c87814a1f0ab72, 0x8cc702081a6439ec,
    0x90befffa23631e28, 0xa4506cebde82bde9, 0xbef9a3f7b2c67915, 0xc67178f2e372532b, 0xca273eceea26619c,
    0xd186b8c721c0c207, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178, 0x06f067aa72176fba, 0x0a637dc5a2c898a6,
    0x113f9804bef90dae, 0x1b710b35131c471b, 0x28db77f523047d84, 0x32caab7b40c72493, 0x3c9ebe0a15c9bebc,
    0x431d67c49c100d4c, 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817,
};

#define SHA512_INLINE __attribute__((always_inline)) inline

// ---- Rounds -------------------------------------------------------------------

// With BMI2 in the target this becomes one RORX, which leaves its source.
SHA512_INLINE uint64_t Ror(uint64_t x, int n) { return (x >> n) | (x << (64 - n)); }

// One round: h takes T1 and then T1 + T2; d takes d + T1. The names rotate
// from round to round instead of the values.
#define ROUND(a, b, c, d, e, f, g, h, wk)                                                 \
    do {                                                                                  \
        h += (wk) + (Ror(e, 14) ^ Ror(e, 18) ^ Ror(e, 41)) + (((f ^ g) & e) ^ g);          \
        d += h;                                                                           \
        h += (Ror(a, 28) ^ Ror(a, 34) ^ Ror(a, 39)) + (((a ^ b) & (b ^ c)) ^ b);           \
    } while (0)

// Eight rounds from t. A table row holds words t and t+1 of every block of
// the group, so the words of one block lie Stride apart, two by two.
#define EIGHT_ROUNDS(t, Stride)                                     \
    do {                                                            \
        const uint64_t* w = wk + (Stride) * ((t) / 2);              \
        ROUND(a, b, c, d, e, f, g, h, w[0]);                        \
        ROUND(h, a, b, c, d, e, f, g, w[1]);                        \
        ROUND(g, h, a, b, c, d, e, f, w[(Stride)]);                 \
        ROUND(f, g, h, a, b, c, d, e, w[(Stride) + 1]);             \
        ROUND(e, f, g, h, a, b, c, d, w[2 * (Stride)]);             \
        ROUND(d, e, f, g, h, a, b, c, w[2 * (Stride) + 1]);         \
        ROUND(c, d, e, f, g, h, a, b, w[3 * (Stride)]);             \
        ROUND(b, c, d, e, f, g, h, a, w[3 * (Stride) + 1]);         \
    } while (0)

#define LOAD_STATE                                                   \
    uint64_t a = state[0], b = state[1], c = state[2], d = state[3]; \
    uint64_t e = state[4], f = state[5], g = state[6], h = state[7]
#define ADD_STATE \
    state[0] += a, state[1] += b, state[2] += c, state[3] += d, state[4] += e, state[5] += f, state[6] += g, state[7] += h

template <int Stride>
void Rounds(uint64_t state[8], const uint64_t* wk) {
    LOAD_STATE;
    for (int t = 0; t < 80; t += 8) EIGHT_ROUNDS(t, Stride);
    ADD_STATE;
}

// ---- Schedule of a pair, two blocks a 256-bit register --------------------------

SHA512_INLINE __m256i Rotr(__m256i x, int n) {
    return _mm256_or_si256(_mm256_srli_epi64(x, n), _mm256_slli_epi64(x, 64 - n));
}
SHA512_INLINE __m256i SmallSigma0(__m256i x) {
    return _mm256_xor_si256(_mm256_xor_si256(Rotr(x, 1), Rotr(x, 8)), _mm256_srli_epi64(x, 7));
}
SHA512_INLINE __m256i SmallSigma1(__m256i x) {
    return _mm256_xor_si256(_mm256_xor_si256(Rotr(x, 19), Rotr(x, 61)), _mm256_srli_epi64(x, 6));
}

// Step J of the schedule of a pair: words 2J and 2J+1 of both blocks, with x
// the window of the last sixteen. first and second may be the same block.
template <int J>
SHA512_INLINE void PairStep(__m256i* table, __m256i (&x)[8], const uint8_t* first, const uint8_t* second) {
    const __m256i k = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(kK + 2 * J)));
    if constexpr (J < 8) {
        const __m256i byteSwap = _mm256_set_epi64x(0x08090a0b0c0d0e0fll, 0x0001020304050607ll,
                                                   0x08090a0b0c0d0e0fll, 0x0001020304050607ll);
        __m256i both = _mm256_inserti128_si256(
            _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(first + 16 * J))),
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(second + 16 * J)), 1);
        x[J] = _mm256_shuffle_epi8(both, byteSwap);
    } else {
        // W[t] = s1(W[t-2]) + W[t-7] + s0(W[t-15]) + W[t-16], for t = 2J, 2J+1.
        __m256i w15 = _mm256_alignr_epi8(x[(J - 7) & 7], x[J & 7], 8);
        __m256i w7 = _mm256_alignr_epi8(x[(J - 3) & 7], x[(J - 4) & 7], 8);
        x[J & 7] = _mm256_add_epi64(_mm256_add_epi64(x[J & 7], SmallSigma0(w15)),
                                    _mm256_add_epi64(w7, SmallSigma1(x[(J - 1) & 7])));
    }
    _mm256_store_si256(table + J, _mm256_add_epi64(x[J & 7], k));
}

template <int J0>
SHA512_INLINE void PairSteps(__m256i* table, __m256i (&x)[8], const uint8_t* first, const uint8_t* second) {
    PairStep<J0>(table, x, first, second);
    PairStep<J0 + 1>(table, x, first, second);
    PairStep<J0 + 2>(table, x, first, second);
    PairStep<J0 + 3>(table, x, first, second);
}

// The rounds of one block with the schedule of the next pair woven in.
void RoundsAheadPair(uint64_t state[8], const uint64_t* wk, __m256i* next, const uint8_t* first,
                     const uint8_t* second) {
    LOAD_STATE;
    __m256i x[8];
    EIGHT_ROUNDS(0, 4);
    PairSteps<0>(next, x, first, second);
    EIGHT_ROUNDS(8, 4);
    PairSteps<4>(next, x, first, second);
    EIGHT_ROUNDS(16, 4);
    PairSteps<8>(next, x, first, second);
    EIGHT_ROUNDS(24, 4);
    PairSteps<12>(next, x, first, second);
    EIGHT_ROUNDS(32, 4);
    PairSteps<16>(next, x, first, second);
    EIGHT_ROUNDS(40, 4);
    PairSteps<20>(next, x, first, second);
    EIGHT_ROUNDS(48, 4);
    PairSteps<24>(next, x, first, second);
    EIGHT_ROUNDS(56, 4);
    PairSteps<28>(next, x, first, second);
    EIGHT_ROUNDS(64, 4);
    PairSteps<32>(next, x, first, second);
    EIGHT_ROUNDS(72, 4);
    PairSteps<36>(next, x, first, second);
    ADD_STATE;
}

// The rounds of first with the schedule of first and second woven in, each
// step eight rounds ahead of its use; second's words stay in the table.
// second may be first.
void RoundsSchedulingPair(uint64_t state[8], __m256i* table, const uint8_t* first, const uint8_t* second) {
    const uint64_t* wk = reinterpret_cast<const uint64_t*>(table);
    LOAD_STATE;
    __m256i x[8];
    PairSteps<0>(table, x, first, second);
    PairSteps<4>(table, x, first, second);
    EIGHT_ROUNDS(0, 4);
    PairSteps<8>(table, x, first, second);
    EIGHT_ROUNDS(8, 4);
    PairSteps<12>(table, x, first, second);
    EIGHT_ROUNDS(16, 4);
    PairSteps<16>(table, x, first, second);
    EIGHT_ROUNDS(24, 4);
    PairSteps<20>(table, x, first, second);
    EIGHT_ROUNDS(32, 4);
    PairSteps<24>(table, x, first, second);
    EIGHT_ROUNDS(40, 4);
    PairSteps<28>(table, x, first, second);
    EIGHT_ROUNDS(48, 4);
    PairSteps<32>(table, x, first, second);
    EIGHT_ROUNDS(56, 4);
    PairSteps<36>(table, x, first, second);
    EIGHT_ROUNDS(64, 4);
    EIGHT_ROUNDS(72, 4);
    ADD_STATE;
}

// Any number of blocks by pairs. The first pair's schedule is woven into its
// first block; after that the second block of each pair carries the schedule
// of the next pair, a whole pair ahead. A last odd block schedules itself.
void PairBlocks(uint64_t h[8], const uint8_t* data, size_t blocks) {
    alignas(32) __m256i tables[2][40];
    if (blocks < 2) {
        if (blocks != 0) RoundsSchedulingPair(h, tables[0], data, data);
        return;
    }
    int current = 0;
    RoundsSchedulingPair(h, tables[0], data, data + 128);
    for (;;) {
        const uint64_t* words = reinterpret_cast<const uint64_t*>(tables[current]);
        const uint8_t* next = data + 256;
        blocks -= 2;
        if (blocks < 2) {
            Rounds<4>(h, words + 2);
            if (blocks != 0) RoundsSchedulingPair(h, tables[current], next, next);
            return;
        }
        RoundsAheadPair(h, words + 2, tables[current ^ 1], next, next + 128);
        current ^= 1;
        data = next;
        Rounds<4>(h, reinterpret_cast<const uint64_t*>(tables[current]));
    }
}

#undef LOAD_STATE
#undef ADD_STATE
#undef EIGHT_ROUNDS
#undef ROUND
#undef SHA512_INLINE
}  // namespace

void Sha512BlocksAvx2(uint64_t h[8], const uint8_t* data, size_t blocks) {
    // The tables are left as the portable core leaves its schedule: the
    // owner of the data wipes what is secret.
    PairBlocks(h, data, blocks);
}

#if defined(__clang__)
#pragma clang attribute pop
#endif
