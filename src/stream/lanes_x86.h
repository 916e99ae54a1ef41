// Shared by the wide stream kernels: the 32-bit lanes of k registers hold
// word k of 16 (AVX-512) or 8 (AVX2) key stream blocks, one block per lane;
// these turn the lanes back into blocks and XOR them into the data.
#pragma once
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#define STREAM_AVX512_TARGET __attribute__((target("avx512f,avx512bw")))
#define STREAM_AVX2_TARGET __attribute__((target("avx2")))

namespace stream_lanes {
// Blocks 4j..4j+3 of the 16 sit in 128-bit lane j of every register. After
// two unpack steps, lane j of a[g][r] holds words 4g..4g+3 of block 4j+r;
// a 4x4 exchange of 128-bit lanes then gathers each block's four groups.
STREAM_AVX512_TARGET inline void Store16(const __m512i x[16], const uint8_t* in, uint8_t* out) {
    __m512i a[4][4];
#pragma GCC unroll 4
    for (int g = 0; g < 4; ++g) {
        __m512i t0 = _mm512_unpacklo_epi32(x[4 * g], x[4 * g + 1]);
        __m512i t1 = _mm512_unpackhi_epi32(x[4 * g], x[4 * g + 1]);
        __m512i t2 = _mm512_unpacklo_epi32(x[4 * g + 2], x[4 * g + 3]);
        __m512i t3 = _mm512_unpackhi_epi32(x[4 * g + 2], x[4 * g + 3]);
        a[g][0] = _mm512_unpacklo_epi64(t0, t2);
        a[g][1] = _mm512_unpackhi_epi64(t0, t2);
        a[g][2] = _mm512_unpacklo_epi64(t1, t3);
        a[g][3] = _mm512_unpackhi_epi64(t1, t3);
    }
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
        __m512i b0 = _mm512_shuffle_i32x4(a[0][r], a[1][r], 0x44);
        __m512i b1 = _mm512_shuffle_i32x4(a[2][r], a[3][r], 0x44);
        __m512i b2 = _mm512_shuffle_i32x4(a[0][r], a[1][r], 0xEE);
        __m512i b3 = _mm512_shuffle_i32x4(a[2][r], a[3][r], 0xEE);
        const __m512i block[4] = {_mm512_shuffle_i32x4(b0, b1, 0x88), _mm512_shuffle_i32x4(b0, b1, 0xDD),
                                  _mm512_shuffle_i32x4(b2, b3, 0x88), _mm512_shuffle_i32x4(b2, b3, 0xDD)};
#pragma GCC unroll 4
        for (int j = 0; j < 4; ++j) {
            size_t at = 64 * size_t(4 * j + r);
            __m512i data = _mm512_loadu_si512(in + at);
            _mm512_storeu_si512(out + at, _mm512_xor_si512(data, block[j]));
        }
    }
}
// As Store16, with two 128-bit lanes: lane j of a[g][r] holds words
// 4g..4g+3 of block 4j+r, and each block is two lane pairs.
STREAM_AVX2_TARGET inline void Store8(const __m256i x[16], const uint8_t* in, uint8_t* out) {
    __m256i a[4][4];
    for (int g = 0; g < 4; ++g) {
        __m256i t0 = _mm256_unpacklo_epi32(x[4 * g], x[4 * g + 1]);
        __m256i t1 = _mm256_unpackhi_epi32(x[4 * g], x[4 * g + 1]);
        __m256i t2 = _mm256_unpacklo_epi32(x[4 * g + 2], x[4 * g + 3]);
        __m256i t3 = _mm256_unpackhi_epi32(x[4 * g + 2], x[4 * g + 3]);
        a[g][0] = _mm256_unpacklo_epi64(t0, t2);
        a[g][1] = _mm256_unpackhi_epi64(t0, t2);
        a[g][2] = _mm256_unpacklo_epi64(t1, t3);
        a[g][3] = _mm256_unpackhi_epi64(t1, t3);
    }
    for (int r = 0; r < 4; ++r) {
        const __m256i half[4] = {_mm256_permute2x128_si256(a[0][r], a[1][r], 0x20),
                                 _mm256_permute2x128_si256(a[2][r], a[3][r], 0x20),
                                 _mm256_permute2x128_si256(a[0][r], a[1][r], 0x31),
                                 _mm256_permute2x128_si256(a[2][r], a[3][r], 0x31)};
        for (int j = 0; j < 2; ++j) {
            size_t at = 64 * size_t(4 * j + r);
            for (int h = 0; h < 2; ++h) {
                __m256i data = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + at + 32 * h));
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + at + 32 * h),
                                    _mm256_xor_si256(data, half[2 * j + h]));
            }
        }
    }
}

// Lane i of the counter pair starts at the 64-bit counter (low, high) plus i.
STREAM_AVX512_TARGET inline void StartCounters16(uint32_t low, uint32_t high, __m512i* lowLanes, __m512i* highLanes) {
    __m512i base = _mm512_set1_epi32(int(low));
    __m512i l = _mm512_add_epi32(base, _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    __m512i h = _mm512_set1_epi32(int(high));
    // Lanes whose low word wrapped carry into the high word.
    *highLanes = _mm512_mask_add_epi32(h, _mm512_cmplt_epu32_mask(l, base), h, _mm512_set1_epi32(1));
    *lowLanes = l;
}

STREAM_AVX512_TARGET inline void StepCounters16(__m512i* lowLanes, __m512i* highLanes) {
    __m512i next = _mm512_add_epi32(*lowLanes, _mm512_set1_epi32(16));
    *highLanes = _mm512_mask_add_epi32(*highLanes, _mm512_cmplt_epu32_mask(next, *lowLanes), *highLanes,
                                       _mm512_set1_epi32(1));
    *lowLanes = next;
}

// Unsigned a > b, as -1 or 0 per lane, by a signed compare of biased values.
STREAM_AVX2_TARGET inline __m256i GreaterUnsigned(__m256i a, __m256i b) {
    const __m256i bias = _mm256_set1_epi32(int(0x80000000u));
    return _mm256_cmpgt_epi32(_mm256_xor_si256(a, bias), _mm256_xor_si256(b, bias));
}

STREAM_AVX2_TARGET inline void StartCounters8(uint32_t low, uint32_t high, __m256i* lowLanes, __m256i* highLanes) {
    __m256i base = _mm256_set1_epi32(int(low));
    __m256i l = _mm256_add_epi32(base, _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    *highLanes = _mm256_sub_epi32(_mm256_set1_epi32(int(high)), GreaterUnsigned(base, l));
    *lowLanes = l;
}

STREAM_AVX2_TARGET inline void StepCounters8(__m256i* lowLanes, __m256i* highLanes) {
    __m256i next = _mm256_add_epi32(*lowLanes, _mm256_set1_epi32(8));
    *highLanes = _mm256_sub_epi32(*highLanes, GreaterUnsigned(*lowLanes, next));
    *lowLanes = next;
}

STREAM_AVX2_TARGET inline __m256i Rotl8x32(__m256i v, int n) {
    return _mm256_or_si256(_mm256_slli_epi32(v, n), _mm256_srli_epi32(v, 32 - n));
}
}  // namespace stream_lanes
