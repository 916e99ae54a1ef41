// Small register helpers shared by the AES-NI and VAES code (AES modes and
// GCM). Each carries the target it needs, so no file needs special flags.
#pragma once
#include <immintrin.h>

#include <cstdint>

#include "util/bytes.h"

#define VERIMOND_AESNI __attribute__((target("aes,pclmul,ssse3,sse4.1")))
#define VERIMOND_AESNI_INLINE static inline __attribute__((always_inline, target("aes,pclmul,ssse3,sse4.1")))
#define VERIMOND_VAES __attribute__((target("aes,pclmul,vaes,vpclmulqdq,avx2,ssse3,sse4.1")))
#define VERIMOND_VAES_INLINE \
    static inline __attribute__((always_inline, target("aes,pclmul,vaes,vpclmulqdq,avx2,ssse3,sse4.1")))

namespace aesx86 {

// Swaps the bytes of each 32-bit word: schedule words to instruction order.
VERIMOND_AESNI_INLINE __m128i WordSwap() { return _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12); }
// Reverses all sixteen bytes: a big-endian block to a little-endian integer.
VERIMOND_AESNI_INLINE __m128i ByteReverse() {
    return _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
}

VERIMOND_AESNI_INLINE __m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
VERIMOND_AESNI_INLINE void Store(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// Round key r of a core-layout schedule, in instruction byte order.
VERIMOND_AESNI_INLINE __m128i RoundKey(const uint32_t* schedule, int r, __m128i swap) {
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(schedule + 4 * r)), swap);
}

VERIMOND_AESNI_INLINE __m128i Encrypt1(const uint32_t* schedule, int rounds, __m128i b, __m128i swap) {
    b = _mm_xor_si128(b, RoundKey(schedule, 0, swap));
    for (int r = 1; r < rounds; ++r) b = _mm_aesenc_si128(b, RoundKey(schedule, r, swap));
    return _mm_aesenclast_si128(b, RoundKey(schedule, rounds, swap));
}

VERIMOND_AESNI_INLINE __m128i Decrypt1(const uint32_t* schedule, int rounds, __m128i b, __m128i swap) {
    b = _mm_xor_si128(b, RoundKey(schedule, 0, swap));
    for (int r = 1; r < rounds; ++r) b = _mm_aesdec_si128(b, RoundKey(schedule, r, swap));
    return _mm_aesdeclast_si128(b, RoundKey(schedule, rounds, swap));
}

// Eight blocks side by side: each round key is loaded once for all eight.
VERIMOND_AESNI_INLINE void Encrypt8(const uint32_t* schedule, int rounds, __m128i b[8], __m128i swap) {
    __m128i k = RoundKey(schedule, 0, swap);
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) b[j] = _mm_xor_si128(b[j], k);
    for (int r = 1; r < rounds; ++r) {
        k = RoundKey(schedule, r, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = _mm_aesenc_si128(b[j], k);
    }
    k = RoundKey(schedule, rounds, swap);
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) b[j] = _mm_aesenclast_si128(b[j], k);
}

VERIMOND_AESNI_INLINE void Decrypt8(const uint32_t* schedule, int rounds, __m128i b[8], __m128i swap) {
    __m128i k = RoundKey(schedule, 0, swap);
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) b[j] = _mm_xor_si128(b[j], k);
    for (int r = 1; r < rounds; ++r) {
        k = RoundKey(schedule, r, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = _mm_aesdec_si128(b[j], k);
    }
    k = RoundKey(schedule, rounds, swap);
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) b[j] = _mm_aesdeclast_si128(b[j], k);
}

// ---- the big-endian 128-bit counter of CTR ----

struct Counter {
    uint64_t hi, lo;
};

static inline Counter LoadCounter(const uint8_t* p) { return Counter{Load64Be(p), Load64Be(p + 8)}; }
static inline void StoreCounter(uint8_t* p, Counter c) {
    Store64Be(p, c.hi);
    Store64Be(p + 8, c.lo);
}
static inline void Advance(Counter& c, uint64_t n) {
    const uint64_t old = c.lo;
    c.lo += n;
    c.hi += c.lo < old ? 1 : 0;
}

VERIMOND_AESNI_INLINE __m128i CounterBlock(Counter c, __m128i reverse) {
    return _mm_shuffle_epi8(_mm_set_epi64x(int64_t(c.hi), int64_t(c.lo)), reverse);
}

// Eight counter blocks from c onward; c advances by eight.
VERIMOND_AESNI_INLINE void CounterBlocks8(Counter& c, __m128i b[8], __m128i reverse) {
    if (c.lo <= UINT64_MAX - 7) {
        // No carry into the high half inside these eight: one add per block.
        const __m128i base = _mm_set_epi64x(int64_t(c.hi), int64_t(c.lo));
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = _mm_shuffle_epi8(_mm_add_epi64(base, _mm_set_epi64x(0, j)), reverse);
        Advance(c, 8);
        return;
    }
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) {
        b[j] = CounterBlock(c, reverse);
        Advance(c, 1);
    }
}

// ---- 256-bit registers: two blocks each ----

VERIMOND_VAES_INLINE __m256i Load2(const uint8_t* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
VERIMOND_VAES_INLINE void Store2(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

// Round key r in both halves.
VERIMOND_VAES_INLINE __m256i RoundKey2(const uint32_t* schedule, int r, __m256i swap) {
    return _mm256_shuffle_epi8(
        _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(schedule + 4 * r))), swap);
}
VERIMOND_VAES_INLINE __m256i WordSwap2() { return _mm256_broadcastsi128_si256(WordSwap()); }
VERIMOND_VAES_INLINE __m256i ByteReverse2() { return _mm256_broadcastsi128_si256(ByteReverse()); }

// n registers (up to eight, a constant after inlining) of two blocks each.
template <int N>
VERIMOND_VAES_INLINE void EncryptN2(const uint32_t* schedule, int rounds, __m256i* b, __m256i swap) {
    __m256i k = RoundKey2(schedule, 0, swap);
#pragma GCC unroll 8
    for (int j = 0; j < N; ++j) b[j] = _mm256_xor_si256(b[j], k);
    for (int r = 1; r < rounds; ++r) {
        k = RoundKey2(schedule, r, swap);
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) b[j] = _mm256_aesenc_epi128(b[j], k);
    }
    k = RoundKey2(schedule, rounds, swap);
#pragma GCC unroll 8
    for (int j = 0; j < N; ++j) b[j] = _mm256_aesenclast_epi128(b[j], k);
}

template <int N>
VERIMOND_VAES_INLINE void DecryptN2(const uint32_t* schedule, int rounds, __m256i* b, __m256i swap) {
    __m256i k = RoundKey2(schedule, 0, swap);
#pragma GCC unroll 8
    for (int j = 0; j < N; ++j) b[j] = _mm256_xor_si256(b[j], k);
    for (int r = 1; r < rounds; ++r) {
        k = RoundKey2(schedule, r, swap);
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) b[j] = _mm256_aesdec_epi128(b[j], k);
    }
    k = RoundKey2(schedule, rounds, swap);
#pragma GCC unroll 8
    for (int j = 0; j < N; ++j) b[j] = _mm256_aesdeclast_epi128(b[j], k);
}

}  // namespace aesx86
