// Poly1305 in 64-bit limbs, and eight blocks at a time with the 52-bit
// multiply-add of AVX-512 IFMA. No branch and no memory index depends on the
// key or the message.
#include "mac/poly1305_x86.h"

#include <immintrin.h>

#include "mac/poly1305.h"
#include "util/bytes.h"

// GCC 12 takes the undefined pass-through operand inside the AVX-512 shift
// intrinsics for an uninitialised read.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

namespace {
using u128 = unsigned __int128;

constexpr uint64_t kMask26 = 0x3ffffff;
constexpr uint64_t kMask44 = 0xfffffffffffull;
constexpr uint64_t kMask42 = 0x3ffffffffffull;

#define SCALAR_TARGET __attribute__((target("bmi2")))
#define IFMA_TARGET __attribute__((target("avx512f,avx512ifma")))

// h * r modulo 2^130 - 5, partly reduced: h2 ends at most 4.
inline void MulMod(uint64_t& h0, uint64_t& h1, uint64_t& h2, uint64_t r0, uint64_t r1, uint64_t s1) {
    // 2^128 = 5/4 modulo p on multiples of 4: h1 r1 2^128 = h1 s1, and
    // h2 r1 2^192 = h2 s1 2^64. h2 is small, so h2 s1 and h2 r0 fit 64 bits.
    u128 d0 = u128(h0) * r0 + u128(h1) * s1;
    u128 d1 = u128(h0) * r1 + u128(h1) * r0 + u128(h2 * s1);
    uint64_t d2 = h2 * r0;
    h0 = uint64_t(d0);
    d1 += uint64_t(d0 >> 64);
    h1 = uint64_t(d1);
    h2 = d2 + uint64_t(d1 >> 64);
    // What lies at 2^130 and above comes back times 5.
    uint64_t c = (h2 & ~uint64_t(3)) + (h2 >> 2);
    h2 &= 3;
    u128 t = u128(h0) + c;
    h0 = uint64_t(t);
    t = (t >> 64) + h1;
    h1 = uint64_t(t);
    h2 += uint64_t(t >> 64);
}
}  // namespace

void Poly1305WideLoad(Poly1305Wide* wide, const Poly1305Context* ctx) {
    // Sums rather than ORs: the limbs of h may run a little over 26 bits.
    u128 acc = u128(ctx->h[0]) + (u128(ctx->h[1]) << 26) + (u128(ctx->h[2]) << 52);
    wide->h0 = uint64_t(acc);
    acc = (acc >> 64) + (u128(ctx->h[3]) << 14) + (u128(ctx->h[4]) << 40);
    wide->h1 = uint64_t(acc);
    wide->h2 = uint64_t(acc >> 64);
    const uint32_t* r = ctx->r;
    wide->r0 = uint64_t(r[0]) | (uint64_t(r[1]) << 26) | (uint64_t(r[2]) << 52);
    wide->r1 = (uint64_t(r[2]) >> 12) | (uint64_t(r[3]) << 14) | (uint64_t(r[4]) << 40);
    wide->s1 = wide->r1 + (wide->r1 >> 2);
}

void Poly1305WideStore(Poly1305Context* ctx, const Poly1305Wide* wide) {
    uint64_t h0 = wide->h0, h1 = wide->h1, h2 = wide->h2;
    uint64_t c = (h2 & ~uint64_t(3)) + (h2 >> 2);
    h2 &= 3;
    u128 t = u128(h0) + c;
    h0 = uint64_t(t);
    t = (t >> 64) + h1;
    h1 = uint64_t(t);
    h2 += uint64_t(t >> 64);
    ctx->h[0] = uint32_t(h0 & kMask26);
    ctx->h[1] = uint32_t((h0 >> 26) & kMask26);
    ctx->h[2] = uint32_t(((h0 >> 52) | (h1 << 12)) & kMask26);
    ctx->h[3] = uint32_t((h1 >> 14) & kMask26);
    ctx->h[4] = uint32_t((h1 >> 40) | (h2 << 24));
}

SCALAR_TARGET void Poly1305BlocksScalar64(Poly1305Wide* wide, const uint8_t* m, size_t blocks, uint64_t hibit) {
    uint64_t h0 = wide->h0, h1 = wide->h1, h2 = wide->h2;
    const uint64_t r0 = wide->r0, r1 = wide->r1, s1 = wide->s1;
    for (; blocks != 0; --blocks, m += 16) {
        u128 t = u128(h0) + Load64Le(m);
        h0 = uint64_t(t);
        t = (t >> 64) + h1 + Load64Le(m + 8);
        h1 = uint64_t(t);
        h2 += uint64_t(t >> 64) + hibit;
        MulMod(h0, h1, h2, r0, r1, s1);
    }
    wide->h0 = h0;
    wide->h1 = h1;
    wide->h2 = h2;
}

namespace {
// A number below 2^131 or so in three limbs of 44, 44 and 42 bits (the
// top limb takes what is left).
struct Limbs44 {
    uint64_t l0, l1, l2;
};

inline Limbs44 To44(uint64_t h0, uint64_t h1, uint64_t h2) {
    return {h0 & kMask44, ((h0 >> 44) | (h1 << 20)) & kMask44, (h1 >> 24) | (h2 << 40)};
}

// Eight lanes of h times r modulo 2^130 - 5, limbs in and out below 2^46.
// 2^132 = 20 modulo p, so the products that land there take 20 r. The
// multiply-add splits each product at bit 52: the high halves weigh 2^8
// of the next limb. One round of carries, all three at once, is enough to
// keep the limbs small for the next product.
struct Vec44 {
    __m512i l0, l1, l2;
};

IFMA_TARGET inline Vec44 MulMod44(const Vec44& a, const Vec44& r, __m512i s1, __m512i s2) {
    const __m512i zero = _mm512_setzero_si512();
    __m512i d0lo = _mm512_madd52lo_epu64(zero, a.l0, r.l0);
    __m512i d0hi = _mm512_madd52hi_epu64(zero, a.l0, r.l0);
    __m512i d1lo = _mm512_madd52lo_epu64(zero, a.l0, r.l1);
    __m512i d1hi = _mm512_madd52hi_epu64(zero, a.l0, r.l1);
    __m512i d2lo = _mm512_madd52lo_epu64(zero, a.l0, r.l2);
    __m512i d2hi = _mm512_madd52hi_epu64(zero, a.l0, r.l2);
    d0lo = _mm512_madd52lo_epu64(d0lo, a.l1, s2);
    d0hi = _mm512_madd52hi_epu64(d0hi, a.l1, s2);
    d1lo = _mm512_madd52lo_epu64(d1lo, a.l1, r.l0);
    d1hi = _mm512_madd52hi_epu64(d1hi, a.l1, r.l0);
    d2lo = _mm512_madd52lo_epu64(d2lo, a.l1, r.l1);
    d2hi = _mm512_madd52hi_epu64(d2hi, a.l1, r.l1);
    d0lo = _mm512_madd52lo_epu64(d0lo, a.l2, s1);
    d0hi = _mm512_madd52hi_epu64(d0hi, a.l2, s1);
    d1lo = _mm512_madd52lo_epu64(d1lo, a.l2, s2);
    d1hi = _mm512_madd52hi_epu64(d1hi, a.l2, s2);
    d2lo = _mm512_madd52lo_epu64(d2lo, a.l2, r.l0);
    d2hi = _mm512_madd52hi_epu64(d2hi, a.l2, r.l0);

    // d2hi weighs 2^140 = 2^10 * 5 modulo p.
    __m512i t0 = _mm512_add_epi64(d0lo, _mm512_add_epi64(_mm512_slli_epi64(d2hi, 12), _mm512_slli_epi64(d2hi, 10)));
    __m512i t1 = _mm512_add_epi64(d1lo, _mm512_slli_epi64(d0hi, 8));
    __m512i t2 = _mm512_add_epi64(d2lo, _mm512_slli_epi64(d1hi, 8));
    const __m512i mask44 = _mm512_set1_epi64(int64_t(kMask44));
    __m512i c0 = _mm512_srli_epi64(t0, 44);
    __m512i c1 = _mm512_srli_epi64(t1, 44);
    __m512i c2 = _mm512_srli_epi64(t2, 42);
    Vec44 out;
    out.l0 = _mm512_add_epi64(_mm512_and_si512(t0, mask44), _mm512_add_epi64(c2, _mm512_slli_epi64(c2, 2)));
    out.l1 = _mm512_add_epi64(_mm512_and_si512(t1, mask44), c0);
    out.l2 = _mm512_add_epi64(_mm512_and_si512(t2, _mm512_set1_epi64(int64_t(kMask42))), c1);
    return out;
}

// Eight message blocks as limbs, with the 2^128 bit. The unpacks leave
// lane e holding block kLaneBlock[e].
constexpr int kLaneBlock[8] = {0, 4, 1, 5, 2, 6, 3, 7};

IFMA_TARGET inline Vec44 LoadGroup(const uint8_t* m) {
    __m512i first = _mm512_loadu_si512(m), second = _mm512_loadu_si512(m + 64);
    __m512i lo = _mm512_unpacklo_epi64(first, second);
    __m512i hi = _mm512_unpackhi_epi64(first, second);
    const __m512i mask44 = _mm512_set1_epi64(int64_t(kMask44));
    Vec44 v;
    v.l0 = _mm512_and_si512(lo, mask44);
    v.l1 = _mm512_and_si512(_mm512_or_si512(_mm512_srli_epi64(lo, 44), _mm512_slli_epi64(hi, 20)), mask44);
    v.l2 = _mm512_or_si512(_mm512_srli_epi64(hi, 24), _mm512_set1_epi64(int64_t(1) << 40));
    return v;
}

IFMA_TARGET inline Vec44 Add(const Vec44& a, const Vec44& b) {
    return {_mm512_add_epi64(a.l0, b.l0), _mm512_add_epi64(a.l1, b.l1), _mm512_add_epi64(a.l2, b.l2)};
}

IFMA_TARGET inline __m512i Times20(__m512i x) { return _mm512_add_epi64(_mm512_slli_epi64(x, 4), _mm512_slli_epi64(x, 2)); }
}  // namespace

// Lane j of the accumulator gathers blocks j, j+8, j+16, ... by Horner's
// rule in r^8; the old h joins block 0. After the last group each lane is
// multiplied by r^(8-j) and the lanes are summed: block i of 8K then carries
// r^(8K-i), as in the one-block-at-a-time rule.
IFMA_TARGET void Poly1305BlocksIfma(Poly1305Wide* wide, const uint8_t* m, size_t groups) {
    if (groups == 0) return;
    // Powers r^1 .. r^8, from the 64-bit form.
    uint64_t power[9][3];
    power[1][0] = wide->r0, power[1][1] = wide->r1, power[1][2] = 0;
    for (int k = 2; k <= 8; ++k) {
        uint64_t h0 = power[k - 1][0], h1 = power[k - 1][1], h2 = power[k - 1][2];
        MulMod(h0, h1, h2, wide->r0, wide->r1, wide->s1);
        power[k][0] = h0, power[k][1] = h1, power[k][2] = h2;
    }
    Limbs44 r8 = To44(power[8][0], power[8][1], power[8][2]);
    const Vec44 rStep = {_mm512_set1_epi64(int64_t(r8.l0)), _mm512_set1_epi64(int64_t(r8.l1)),
                         _mm512_set1_epi64(int64_t(r8.l2))};
    const __m512i s1Step = Times20(rStep.l1), s2Step = Times20(rStep.l2);

    Limbs44 h = To44(wide->h0, wide->h1, wide->h2);
    Vec44 acc = LoadGroup(m);
    acc.l0 = _mm512_add_epi64(acc.l0, _mm512_maskz_set1_epi64(1, int64_t(h.l0)));
    acc.l1 = _mm512_add_epi64(acc.l1, _mm512_maskz_set1_epi64(1, int64_t(h.l1)));
    acc.l2 = _mm512_add_epi64(acc.l2, _mm512_maskz_set1_epi64(1, int64_t(h.l2)));
    for (size_t g = 1; g < groups; ++g) {
        acc = Add(MulMod44(acc, rStep, s1Step, s2Step), LoadGroup(m + 128 * g));
    }

    alignas(64) uint64_t last[3][8];
    for (int e = 0; e < 8; ++e) {
        Limbs44 p = To44(power[8 - kLaneBlock[e]][0], power[8 - kLaneBlock[e]][1], power[8 - kLaneBlock[e]][2]);
        last[0][e] = p.l0, last[1][e] = p.l1, last[2][e] = p.l2;
    }
    const Vec44 rLast = {_mm512_load_si512(last[0]), _mm512_load_si512(last[1]), _mm512_load_si512(last[2])};
    acc = MulMod44(acc, rLast, Times20(rLast.l1), Times20(rLast.l2));

    // Sum the lanes (each limb below 2^46, so the sums stay below 2^49) and
    // fold back into 64-bit limbs.
    uint64_t s0 = uint64_t(_mm512_reduce_add_epi64(acc.l0));
    uint64_t s1 = uint64_t(_mm512_reduce_add_epi64(acc.l1));
    uint64_t s2 = uint64_t(_mm512_reduce_add_epi64(acc.l2));
    u128 t = u128(s0) + (u128(s1) << 44);
    uint64_t h0 = uint64_t(t);
    t = (t >> 64) + (u128(s2) << 24);
    uint64_t h1 = uint64_t(t);
    uint64_t h2 = uint64_t(t >> 64);
    uint64_t c = (h2 & ~uint64_t(3)) + (h2 >> 2);
    h2 &= 3;
    t = u128(h0) + c;
    wide->h0 = uint64_t(t);
    t = (t >> 64) + h1;
    wide->h1 = uint64_t(t);
    wide->h2 = h2 + uint64_t(t >> 64);
}

#undef SCALAR_TARGET
#undef IFMA_TARGET
