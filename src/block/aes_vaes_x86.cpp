// The parallel AES modes on 256-bit registers (VAES): two blocks a register,
// sixteen blocks a turn, then pairs, then a last single block on 128 bits.
#include "block/aes_x86.h"
#include "block/aes_x86_inline.h"

using namespace aesx86;

namespace {

// (a's high block, b's low block): the blocks one place before b's.
VERIMOND_VAES_INLINE __m256i ShiftIn(__m128i before, __m256i b) {
    return _mm256_permute2x128_si256(_mm256_castsi128_si256(before), b, 0x20);
}

// Sixteen counter blocks from c onward, in eight registers; c advances.
VERIMOND_VAES_INLINE void CounterBlocks16(Counter& c, __m256i b[8], __m128i reverse) {
    const __m256i reverse2 = _mm256_broadcastsi128_si256(reverse);
    if (c.lo <= UINT64_MAX - 15) {
        // No carry into the high half inside these sixteen.
        const __m256i base = _mm256_broadcastsi128_si256(_mm_set_epi64x(int64_t(c.hi), int64_t(c.lo)));
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) {
            b[j] = _mm256_shuffle_epi8(_mm256_add_epi64(base, _mm256_set_epi64x(0, 2 * j + 1, 0, 2 * j)), reverse2);
        }
        Advance(c, 16);
        return;
    }
#pragma GCC unroll 8
    for (int j = 0; j < 8; ++j) {
        const __m128i lo = CounterBlock(c, reverse);
        Advance(c, 1);
        b[j] = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), CounterBlock(c, reverse), 1);
        Advance(c, 1);
    }
}

template <bool Encrypt>
VERIMOND_VAES_INLINE void EcbBlocks(const uint32_t* rk, int rounds, const uint8_t* in, uint8_t* out, size_t blocks) {
    const __m256i swap2 = WordSwap2();
    for (; blocks >= 16; blocks -= 16, in += 256, out += 256) {
        __m256i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = Load2(in + 32 * j);
        if (Encrypt) {
            EncryptN2<8>(rk, rounds, b, swap2);
        } else {
            DecryptN2<8>(rk, rounds, b, swap2);
        }
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store2(out + 32 * j, b[j]);
    }
    for (; blocks >= 2; blocks -= 2, in += 32, out += 32) {
        __m256i b = Load2(in);
        if (Encrypt) {
            EncryptN2<1>(rk, rounds, &b, swap2);
        } else {
            DecryptN2<1>(rk, rounds, &b, swap2);
        }
        Store2(out, b);
    }
    if (blocks != 0) {
        const __m128i swap = WordSwap();
        Store(out, Encrypt ? Encrypt1(rk, rounds, Load(in), swap) : Decrypt1(rk, rounds, Load(in), swap));
    }
}

}  // namespace

VERIMOND_VAES void VaesEcbEncrypt(const uint32_t* rk, int rounds, const uint8_t* in, uint8_t* out, size_t blocks) {
    EcbBlocks<true>(rk, rounds, in, out, blocks);
}

VERIMOND_VAES void VaesEcbDecrypt(const uint32_t* rk, int rounds, const uint8_t* in, uint8_t* out, size_t blocks) {
    EcbBlocks<false>(rk, rounds, in, out, blocks);
}

// In place: the group's last ciphertext block is kept before anything is
// written, and outputs go from the last register down, so no block is
// overwritten before it has been read.
VERIMOND_VAES void VaesCbcDecrypt(const uint32_t* rk, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                                  size_t blocks) {
    const __m256i swap2 = WordSwap2();
    __m128i prev = Load(reg);
    for (; blocks >= 16; blocks -= 16, in += 256, out += 256) {
        __m256i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = Load2(in + 32 * j);
        DecryptN2<8>(rk, rounds, b, swap2);
        const __m128i last = Load(in + 240);
#pragma GCC unroll 8
        for (int j = 7; j > 0; --j) Store2(out + 32 * j, _mm256_xor_si256(b[j], Load2(in + 32 * j - 16)));
        Store2(out, _mm256_xor_si256(b[0], ShiftIn(prev, Load2(in))));
        prev = last;
    }
    for (; blocks >= 2; blocks -= 2, in += 32, out += 32) {
        const __m256i c = Load2(in);
        __m256i b = c;
        DecryptN2<1>(rk, rounds, &b, swap2);
        const __m128i last = _mm256_extracti128_si256(c, 1);
        Store2(out, _mm256_xor_si256(b, ShiftIn(prev, c)));
        prev = last;
    }
    if (blocks != 0) {
        const __m128i c = Load(in);
        Store(out, _mm_xor_si128(Decrypt1(rk, rounds, c, WordSwap()), prev));
        prev = c;
    }
    Store(reg, prev);
}

// The cipher inputs of a group are read first; each output then overwrites
// only the ciphertext it has just read.
VERIMOND_VAES void VaesCfbDecrypt(const uint32_t* rk, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                                  size_t blocks) {
    const __m256i swap2 = WordSwap2();
    __m128i prev = Load(reg);
    for (; blocks >= 16; blocks -= 16, in += 256, out += 256) {
        __m256i b[8];
        b[0] = ShiftIn(prev, Load2(in));
#pragma GCC unroll 8
        for (int j = 1; j < 8; ++j) b[j] = Load2(in + 32 * j - 16);
        EncryptN2<8>(rk, rounds, b, swap2);
        prev = Load(in + 240);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store2(out + 32 * j, _mm256_xor_si256(b[j], Load2(in + 32 * j)));
    }
    for (; blocks >= 2; blocks -= 2, in += 32, out += 32) {
        const __m256i c = Load2(in);
        __m256i b = ShiftIn(prev, c);
        EncryptN2<1>(rk, rounds, &b, swap2);
        prev = _mm256_extracti128_si256(c, 1);
        Store2(out, _mm256_xor_si256(b, c));
    }
    if (blocks != 0) {
        const __m128i c = Load(in);
        Store(out, _mm_xor_si128(Encrypt1(rk, rounds, prev, WordSwap()), c));
        prev = c;
    }
    Store(reg, prev);
}

VERIMOND_VAES void VaesCtr(const uint32_t* rk, int rounds, uint8_t counter[16], const uint8_t* in, uint8_t* out,
                           size_t blocks) {
    const __m256i swap2 = WordSwap2();
    const __m128i reverse = ByteReverse();
    Counter c = LoadCounter(counter);
    for (; blocks >= 16; blocks -= 16, in += 256, out += 256) {
        __m256i b[8];
        CounterBlocks16(c, b, reverse);
        EncryptN2<8>(rk, rounds, b, swap2);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store2(out + 32 * j, _mm256_xor_si256(b[j], Load2(in + 32 * j)));
    }
    for (; blocks >= 2; blocks -= 2, in += 32, out += 32) {
        const __m128i lo = CounterBlock(c, reverse);
        Advance(c, 1);
        __m256i b = _mm256_inserti128_si256(_mm256_castsi128_si256(lo), CounterBlock(c, reverse), 1);
        Advance(c, 1);
        EncryptN2<1>(rk, rounds, &b, swap2);
        Store2(out, _mm256_xor_si256(b, Load2(in)));
    }
    if (blocks != 0) {
        Store(out, _mm_xor_si128(Encrypt1(rk, rounds, CounterBlock(c, reverse), WordSwap()), Load(in)));
        Advance(c, 1);
    }
    StoreCounter(counter, c);
}
