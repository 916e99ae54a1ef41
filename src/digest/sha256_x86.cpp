// SHA-256 blocks with the SHA extensions. The chaining words travel as two
// vectors in the order the round instruction wants them, {A B E F} and
// {C D G H} (A in the top lane), and go back to h[0..7] after the last block.
#include <immintrin.h>

#include "digest/digest_x86.h"

namespace {
alignas(16) constexpr uint32_t kK[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};
}  // namespace

#define SHA256_TARGET __attribute__((target("sha,sse4.1,ssse3")))

// Four rounds with message words m (W[4g..4g+3], W[4g] in the low lane).
#define ROUNDS4(m, g)                                                                           \
    do {                                                                                        \
        __m128i wk = _mm_add_epi32(m, _mm_load_si128(reinterpret_cast<const __m128i*>(kK + 4 * (g)))); \
        cdgh = _mm_sha256rnds2_epu32(cdgh, abef, wk);                                           \
        abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(wk, 0x0E));                  \
    } while (0)

// a = W[4g..4g+3] from the four vectors before it: a held W[4g-16..], b the
// next four, c and d the two after.
#define SCHEDULE(a, b, c, d) \
    a = _mm_sha256msg2_epu32(_mm_add_epi32(_mm_sha256msg1_epu32(a, b), _mm_alignr_epi8(d, c, 4)), d)

SHA256_TARGET void Sha256BlocksShaNi(uint32_t h[8], const uint8_t* data, size_t blocks) {
    const __m128i byteSwap = _mm_set_epi64x(0x0c0d0e0f08090a0bll, 0x0405060700010203ll);
    __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(h));      // A B C D
    __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i*>(h + 4));  // E F G H
    __m128i badc = _mm_shuffle_epi32(lo, 0xB1);
    __m128i hgfe = _mm_shuffle_epi32(hi, 0x1B);
    // Lanes low to high: abef = F E B A, cdgh = H G D C.
    __m128i abef = _mm_alignr_epi8(badc, hgfe, 8);
    __m128i cdgh = _mm_blend_epi16(hgfe, badc, 0xF0);

    for (; blocks != 0; --blocks, data += 64) {
        const __m128i abefStart = abef, cdghStart = cdgh;
        __m128i m0 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data)), byteSwap);
        __m128i m1 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16)), byteSwap);
        __m128i m2 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 32)), byteSwap);
        __m128i m3 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 48)), byteSwap);
        ROUNDS4(m0, 0);
        ROUNDS4(m1, 1);
        ROUNDS4(m2, 2);
        ROUNDS4(m3, 3);
        SCHEDULE(m0, m1, m2, m3); ROUNDS4(m0, 4);
        SCHEDULE(m1, m2, m3, m0); ROUNDS4(m1, 5);
        SCHEDULE(m2, m3, m0, m1); ROUNDS4(m2, 6);
        SCHEDULE(m3, m0, m1, m2); ROUNDS4(m3, 7);
        SCHEDULE(m0, m1, m2, m3); ROUNDS4(m0, 8);
        SCHEDULE(m1, m2, m3, m0); ROUNDS4(m1, 9);
        SCHEDULE(m2, m3, m0, m1); ROUNDS4(m2, 10);
        SCHEDULE(m3, m0, m1, m2); ROUNDS4(m3, 11);
        SCHEDULE(m0, m1, m2, m3); ROUNDS4(m0, 12);
        SCHEDULE(m1, m2, m3, m0); ROUNDS4(m1, 13);
        SCHEDULE(m2, m3, m0, m1); ROUNDS4(m2, 14);
        SCHEDULE(m3, m0, m1, m2); ROUNDS4(m3, 15);
        abef = _mm_add_epi32(abef, abefStart);
        cdgh = _mm_add_epi32(cdgh, cdghStart);
    }

    __m128i abef2 = _mm_shuffle_epi32(abef, 0x1B);  // A B E F
    __m128i ghcd = _mm_shuffle_epi32(cdgh, 0xB1);   // G H C D
    _mm_storeu_si128(reinterpret_cast<__m128i*>(h), _mm_blend_epi16(abef2, ghcd, 0xF0));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(h + 4), _mm_alignr_epi8(ghcd, abef2, 8));
}

#undef ROUNDS4
#undef SCHEDULE
