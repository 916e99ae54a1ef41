// GHASH by carry-less multiplication, shared by the 128-bit and 256-bit GCM
// code. Values are bit-reflected (gcm_x86.h); the powers table holds
// H^16 ... H^1, each times x^-1, so entry 16 - k is H^k.
#pragma once
#include <cstddef>
#include <cstdint>

#include "block/aes_x86_inline.h"

namespace ghashx86 {

using namespace aesx86;

constexpr int kPowers = 16;

// Adds the unreduced 256-bit product a * h to (hi, mid, lo); mid straddles
// the two halves.
VERIMOND_AESNI_INLINE void MulAdd(__m128i a, __m128i h, __m128i& lo, __m128i& mid, __m128i& hi) {
    lo = _mm_xor_si128(lo, _mm_clmulepi64_si128(a, h, 0x00));
    hi = _mm_xor_si128(hi, _mm_clmulepi64_si128(a, h, 0x11));
    mid = _mm_xor_si128(mid, _mm_xor_si128(_mm_clmulepi64_si128(a, h, 0x01), _mm_clmulepi64_si128(a, h, 0x10)));
}

// The 256-bit sum to 128 bits: Montgomery reduction by the reflected
// polynomial x^128 + x^127 + x^126 + x^121 + 1, 64 bits at a time. Each step
// clears the low word w by adding w times the polynomial: w itself lands
// two words up, and w * (x^63 + x^62 + x^57) one word up.
VERIMOND_AESNI_INLINE __m128i Reduce(__m128i lo, __m128i mid, __m128i hi) {
    lo = _mm_xor_si128(lo, _mm_slli_si128(mid, 8));
    hi = _mm_xor_si128(hi, _mm_srli_si128(mid, 8));
    const __m128i poly = _mm_set_epi64x(int64_t(0xC200000000000000ull), 0);
    lo = _mm_xor_si128(_mm_shuffle_epi32(lo, 0x4e), _mm_clmulepi64_si128(lo, poly, 0x10));
    lo = _mm_xor_si128(_mm_shuffle_epi32(lo, 0x4e), _mm_clmulepi64_si128(lo, poly, 0x10));
    return _mm_xor_si128(hi, lo);
}

VERIMOND_AESNI_INLINE __m128i Mul(__m128i a, __m128i h) {
    __m128i lo = _mm_setzero_si128(), mid = lo, hi = lo;
    MulAdd(a, h, lo, mid, hi);
    return Reduce(lo, mid, hi);
}

VERIMOND_AESNI_INLINE __m128i Power(const uint8_t* powers, int k) { return Load(powers + 16 * (kPowers - k)); }

// As MulAdd, but the middle term by Karatsuba: (a0 + a1)(h0 + h1), three
// multiplies instead of four; the sum needs KaratsubaFix before reducing.
VERIMOND_AESNI_INLINE void MulAddKaratsuba(__m128i a, __m128i h, __m128i& lo, __m128i& mid, __m128i& hi) {
    lo = _mm_xor_si128(lo, _mm_clmulepi64_si128(a, h, 0x00));
    hi = _mm_xor_si128(hi, _mm_clmulepi64_si128(a, h, 0x11));
    const __m128i as = _mm_xor_si128(a, _mm_shuffle_epi32(a, 0x4e));
    const __m128i hs = _mm_xor_si128(h, _mm_shuffle_epi32(h, 0x4e));
    mid = _mm_xor_si128(mid, _mm_clmulepi64_si128(as, hs, 0x00));
}
VERIMOND_AESNI_INLINE __m128i KaratsubaFix(__m128i lo, __m128i mid, __m128i hi) {
    return _mm_xor_si128(mid, _mm_xor_si128(lo, hi));
}

// y = (y + X1) H^k + X2 H^(k-1) + ... + Xk H for k from 1 to 16 blocks,
// with a single reduction.
VERIMOND_AESNI_INLINE __m128i HashK(__m128i y, const uint8_t* data, size_t k, const uint8_t* powers) {
    const __m128i reverse = ByteReverse();
    const uint8_t* h = powers + 16 * (kPowers - k);
    __m128i lo = _mm_setzero_si128(), mid = lo, hi = lo;
    MulAddKaratsuba(_mm_xor_si128(y, _mm_shuffle_epi8(Load(data), reverse)), Load(h), lo, mid, hi);
    for (size_t i = 1; i < k; ++i) {
        MulAddKaratsuba(_mm_shuffle_epi8(Load(data + 16 * i), reverse), Load(h + 16 * i), lo, mid, hi);
    }
    return Reduce(lo, KaratsubaFix(lo, mid, hi), hi);
}

// Any number of whole blocks, sixteen to a reduction.
VERIMOND_AESNI_INLINE __m128i HashBlocks(__m128i y, const uint8_t* data, size_t blocks, const uint8_t* powers) {
    while (blocks != 0) {
        const size_t k = blocks < size_t(kPowers) ? blocks : size_t(kPowers);
        y = HashK(y, data, k, powers);
        data += 16 * k;
        blocks -= k;
    }
    return y;
}

// Sixteen blocks on 256-bit registers: register j holds blocks 2j and 2j+1,
// which take H^(16-2j) and H^(15-2j), two neighbouring table entries. The
// middle terms go by Karatsuba, (a0 + a1)(b0 + b1) - a0 b0 - a1 b1, three
// multiplies a block instead of four; the correction is made once on the sums.
VERIMOND_VAES_INLINE __m128i Hash16Wide(__m128i y, const uint8_t* data, const uint8_t* powers) {
    const __m256i reverse = ByteReverse2();
    __m256i lo = _mm256_setzero_si256(), mid = lo, hi = lo;
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) {
        __m256i x = _mm256_shuffle_epi8(Load2(data + 32 * j), reverse);
        if (j == 0) x = _mm256_xor_si256(x, _mm256_zextsi128_si256(y));
        const __m256i h = Load2(powers + 32 * j);
        const __m256i xs = _mm256_xor_si256(x, _mm256_shuffle_epi32(x, 0x4e));
        const __m256i hs = _mm256_xor_si256(h, _mm256_shuffle_epi32(h, 0x4e));
        lo = _mm256_xor_si256(lo, _mm256_clmulepi64_epi128(x, h, 0x00));
        hi = _mm256_xor_si256(hi, _mm256_clmulepi64_epi128(x, h, 0x11));
        mid = _mm256_xor_si256(mid, _mm256_clmulepi64_epi128(xs, hs, 0x00));
        // Keeps the sums in running order: regrouped, they would need more
        // registers than there are and spill products to the stack.
        __asm__("" : "+x"(lo), "+x"(mid), "+x"(hi));
    }
    const __m128i lo1 = _mm_xor_si128(_mm256_castsi256_si128(lo), _mm256_extracti128_si256(lo, 1));
    const __m128i mid1 = _mm_xor_si128(_mm256_castsi256_si128(mid), _mm256_extracti128_si256(mid, 1));
    const __m128i hi1 = _mm_xor_si128(_mm256_castsi256_si128(hi), _mm256_extracti128_si256(hi, 1));
    return Reduce(lo1, KaratsubaFix(lo1, mid1, hi1), hi1);
}

}  // namespace ghashx86

// The 256-bit bulk routines (gcm_vaes_x86.cpp). ctr is the reflected counter
// block whose low word is the last counter used; y the reflected hash value.
// Each returns the blocks it did, a multiple of sixteen.
size_t GcmWideHash(const uint8_t* powers, __m128i& y, const uint8_t* data, size_t blocks);
size_t GcmWideCtr(const uint32_t* schedule, int rounds, __m128i& ctr, const uint8_t* in, uint8_t* out, size_t blocks);
// Counter mode and the hash of the ciphertext written, sixteen blocks a turn.
size_t GcmWideSeal(const uint32_t* schedule, int rounds, const uint8_t* powers, __m128i& ctr, __m128i& y,
                   const uint8_t* in, uint8_t* out, size_t blocks);
