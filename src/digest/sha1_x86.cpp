// SHA-1 blocks with the SHA extensions. The round instruction keeps A..D in
// one vector (A in the top lane) and takes E folded into the top lane of the
// message vector; message words run top lane first as well.
#include <immintrin.h>

#include "digest/digest_x86.h"

#define SHA1_TARGET __attribute__((target("sha,sse4.1,ssse3")))

namespace {
// Four rounds of group g (W[4g..4g+3] in m); the round function changes
// every fifth group. prev keeps A..D from before the group: the next
// group's E is A of four rounds back, turned by 30.
template <int Function>
SHA1_TARGET inline void Rounds4(__m128i& abcd, __m128i& prev, __m128i wWithE) {
    prev = abcd;
    abcd = _mm_sha1rnds4_epu32(abcd, wWithE, Function);
}
}  // namespace

// a = W[4g..4g+3] from the four groups before it (a held group g-4).
#define SCHEDULE(a, b, c, d) a = _mm_sha1msg2_epu32(_mm_xor_si128(_mm_sha1msg1_epu32(a, b), c), d)
#define GROUP(m, f) Rounds4<f>(abcd, prev, _mm_sha1nexte_epu32(prev, m))

SHA1_TARGET void Sha1BlocksShaNi(uint32_t h[5], const uint8_t* data, size_t blocks) {
    const __m128i byteSwap = _mm_set_epi64x(0x0001020304050607ll, 0x08090a0b0c0d0e0fll);
    __m128i abcd = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(h)), 0x1B);
    __m128i e = _mm_set_epi32(int(h[4]), 0, 0, 0);

    for (; blocks != 0; --blocks, data += 64) {
        const __m128i abcdStart = abcd;
        __m128i prev;
        __m128i m0 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data)), byteSwap);
        __m128i m1 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16)), byteSwap);
        __m128i m2 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 32)), byteSwap);
        __m128i m3 = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 48)), byteSwap);
        Rounds4<0>(abcd, prev, _mm_add_epi32(e, m0));
        GROUP(m1, 0);
        GROUP(m2, 0);
        GROUP(m3, 0);
        SCHEDULE(m0, m1, m2, m3); GROUP(m0, 0);
        SCHEDULE(m1, m2, m3, m0); GROUP(m1, 1);
        SCHEDULE(m2, m3, m0, m1); GROUP(m2, 1);
        SCHEDULE(m3, m0, m1, m2); GROUP(m3, 1);
        SCHEDULE(m0, m1, m2, m3); GROUP(m0, 1);
        SCHEDULE(m1, m2, m3, m0); GROUP(m1, 1);
        SCHEDULE(m2, m3, m0, m1); GROUP(m2, 2);
        SCHEDULE(m3, m0, m1, m2); GROUP(m3, 2);
        SCHEDULE(m0, m1, m2, m3); GROUP(m0, 2);
        SCHEDULE(m1, m2, m3, m0); GROUP(m1, 2);
        SCHEDULE(m2, m3, m0, m1); GROUP(m2, 2);
        SCHEDULE(m3, m0, m1, m2); GROUP(m3, 3);
        SCHEDULE(m0, m1, m2, m3); GROUP(m0, 3);
        SCHEDULE(m1, m2, m3, m0); GROUP(m1, 3);
        SCHEDULE(m2, m3, m0, m1); GROUP(m2, 3);
        SCHEDULE(m3, m0, m1, m2); GROUP(m3, 3);
        // E after the last group is A from before it, turned, plus the old E.
        e = _mm_sha1nexte_epu32(prev, e);
        abcd = _mm_add_epi32(abcd, abcdStart);
    }

    _mm_storeu_si128(reinterpret_cast<__m128i*>(h), _mm_shuffle_epi32(abcd, 0x1B));
    h[4] = uint32_t(_mm_extract_epi32(e, 3));
}

#undef SCHEDULE
#undef GROUP
