// AES-GCM bulk on 256-bit registers (VAES, VPCLMULQDQ): sixteen blocks a
// turn, two to a register, one reduction per turn.
#include "aead/ghash_x86_inline.h"

using namespace aesx86;
using namespace ghashx86;

namespace {

// Sixteen counter blocks after ctr, as the cipher takes them; ctr advances.
// The counter is the low 32-bit word and wraps on its own.
VERIMOND_VAES_INLINE void CounterBlocks16(__m128i& ctr, __m256i b[8]) {
    const __m256i reverse = ByteReverse2();
    const __m256i base = _mm256_broadcastsi128_si256(ctr);
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) {
        b[j] = _mm256_shuffle_epi8(_mm256_add_epi32(base, _mm256_set_epi32(0, 0, 0, 2 * j + 2, 0, 0, 0, 2 * j + 1)),
                                   reverse);
    }
    ctr = _mm_add_epi32(ctr, _mm_set_epi32(0, 0, 0, 16));
}

}  // namespace

VERIMOND_VAES size_t GcmWideHash(const uint8_t* powers, __m128i& y, const uint8_t* data, size_t blocks) {
    size_t done = 0;
    for (; blocks - done >= 16; done += 16) y = Hash16Wide(y, data + 16 * done, powers);
    return done;
}

VERIMOND_VAES size_t GcmWideCtr(const uint32_t* rk, int rounds, __m128i& ctr, const uint8_t* in, uint8_t* out,
                                size_t blocks) {
    const __m256i swap = WordSwap2();
    size_t done = 0;
    for (; blocks - done >= 16; done += 16, in += 256, out += 256) {
        __m256i b[8];
        CounterBlocks16(ctr, b);
        EncryptN2<8>(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store2(out + 32 * j, _mm256_xor_si256(b[j], Load2(in + 32 * j)));
    }
    return done;
}

// Each turn hashes the ciphertext the turn before wrote while its own blocks
// go through the cipher; the last turn's ciphertext is hashed at the end.
VERIMOND_VAES size_t GcmWideSeal(const uint32_t* rk, int rounds, const uint8_t* powers, __m128i& ctr, __m128i& y,
                                 const uint8_t* in, uint8_t* out, size_t blocks) {
    const size_t groups = blocks / 16;
    if (groups == 0) return 0;
    const __m256i swap = WordSwap2();
    for (size_t g = 0; g < groups; ++g, in += 256, out += 256) {
        __m256i b[8];
        CounterBlocks16(ctr, b);
        if (g != 0) y = Hash16Wide(y, out - 256, powers);
        EncryptN2<8>(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store2(out + 32 * j, _mm256_xor_si256(b[j], Load2(in + 32 * j)));
    }
    y = Hash16Wide(y, out - 256, powers);
    return groups * 16;
}
