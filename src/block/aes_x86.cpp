// AES-NI: key schedules by AESKEYGENASSIST and AESIMC, single blocks, and the
// five engine modes on 128-bit registers. ECB, CTR and the decrypt sides of
// CBC and CFB run eight blocks side by side (or go to the 256-bit code);
// the encrypt sides of CBC and CFB, and OFB, chain one block to the next.
#include "block/aes_x86.h"

#include <cstring>

#include "block/aes_x86_inline.h"
#include "util/bytes.h"
#include "util/wipe.h"

using namespace aesx86;

namespace {

// w[i] ^= w[i-1] ^ ... ^ w[0] across the four words of k, in two steps
// (neighbours, then pairs) to keep the schedule's chain short.
VERIMOND_AESNI_INLINE __m128i PrefixXor(__m128i k) {
    k = _mm_xor_si128(k, _mm_slli_si128(k, 4));
    return _mm_xor_si128(k, _mm_slli_si128(k, 8));
}

// Next four words from the last four: AESKEYGENASSIST gives
// RotWord(SubWord(w3)) ^ rcon in its top word; shuffle 0xff spreads it.
#define VERIMOND_NEXT128(prev, rcon) \
    _mm_xor_si128(PrefixXor(prev), _mm_shuffle_epi32(_mm_aeskeygenassist_si128(prev, rcon), 0xff))

VERIMOND_AESNI_INLINE void PutKey(uint32_t* schedule, int r, __m128i k, __m128i swap) {
    Store(reinterpret_cast<uint8_t*>(schedule + 4 * r), _mm_shuffle_epi8(k, swap));
}

VERIMOND_AESNI void Expand128(uint32_t* w, const uint8_t* key) {
    const __m128i swap = WordSwap();
    __m128i k = Load(key);
    PutKey(w, 0, k, swap);
    k = VERIMOND_NEXT128(k, 0x01); PutKey(w, 1, k, swap);
    k = VERIMOND_NEXT128(k, 0x02); PutKey(w, 2, k, swap);
    k = VERIMOND_NEXT128(k, 0x04); PutKey(w, 3, k, swap);
    k = VERIMOND_NEXT128(k, 0x08); PutKey(w, 4, k, swap);
    k = VERIMOND_NEXT128(k, 0x10); PutKey(w, 5, k, swap);
    k = VERIMOND_NEXT128(k, 0x20); PutKey(w, 6, k, swap);
    k = VERIMOND_NEXT128(k, 0x40); PutKey(w, 7, k, swap);
    k = VERIMOND_NEXT128(k, 0x80); PutKey(w, 8, k, swap);
    k = VERIMOND_NEXT128(k, 0x1b); PutKey(w, 9, k, swap);
    k = VERIMOND_NEXT128(k, 0x36); PutKey(w, 10, k, swap);
}

// A 192-bit key grows six words at a time: four from the low register, two
// from the high one. The new words land at word offsets, not round keys.
template <int Rcon>
VERIMOND_AESNI_INLINE void Step192(uint32_t* w, int at, __m128i& lo, __m128i& hi, bool last, __m128i swap) {
    // Word 1 of hi is w[at-1]; AESKEYGENASSIST puts RotWord(SubWord()) ^ rcon
    // of it in word 1 of the result.
    lo = _mm_xor_si128(PrefixXor(lo), _mm_shuffle_epi32(_mm_aeskeygenassist_si128(hi, Rcon), 0x55));
    Store(reinterpret_cast<uint8_t*>(w + at), _mm_shuffle_epi8(lo, swap));
    if (last) return;
    hi = _mm_xor_si128(hi, _mm_slli_si128(hi, 4));
    hi = _mm_xor_si128(hi, _mm_shuffle_epi32(lo, 0xff));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(w + at + 4), _mm_shuffle_epi8(hi, swap));
}

VERIMOND_AESNI void Expand192(uint32_t* w, const uint8_t* key) {
    const __m128i swap = WordSwap();
    __m128i lo = Load(key);
    __m128i hi = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(key + 16));
    Store(reinterpret_cast<uint8_t*>(w), _mm_shuffle_epi8(lo, swap));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(w + 4), _mm_shuffle_epi8(hi, swap));
    Step192<0x01>(w, 6, lo, hi, false, swap);
    Step192<0x02>(w, 12, lo, hi, false, swap);
    Step192<0x04>(w, 18, lo, hi, false, swap);
    Step192<0x08>(w, 24, lo, hi, false, swap);
    Step192<0x10>(w, 30, lo, hi, false, swap);
    Step192<0x20>(w, 36, lo, hi, false, swap);
    Step192<0x40>(w, 42, lo, hi, false, swap);
    Step192<0x80>(w, 48, lo, hi, true, swap);
}

// A 256-bit key: even round keys as for 128 bits from the odd one before;
// odd round keys take SubWord of the last word, without rotation or rcon,
// which AESKEYGENASSIST gives in word 2.
template <int Rcon>
VERIMOND_AESNI_INLINE void Step256(uint32_t* w, int r, __m128i& a, __m128i& b, bool last, __m128i swap) {
    a = _mm_xor_si128(PrefixXor(a), _mm_shuffle_epi32(_mm_aeskeygenassist_si128(b, Rcon), 0xff));
    PutKey(w, r, a, swap);
    if (last) return;
    b = _mm_xor_si128(PrefixXor(b), _mm_shuffle_epi32(_mm_aeskeygenassist_si128(a, 0), 0xaa));
    PutKey(w, r + 1, b, swap);
}

VERIMOND_AESNI void Expand256(uint32_t* w, const uint8_t* key) {
    const __m128i swap = WordSwap();
    __m128i a = Load(key), b = Load(key + 16);
    PutKey(w, 0, a, swap);
    PutKey(w, 1, b, swap);
    Step256<0x01>(w, 2, a, b, false, swap);
    Step256<0x02>(w, 4, a, b, false, swap);
    Step256<0x04>(w, 6, a, b, false, swap);
    Step256<0x08>(w, 8, a, b, false, swap);
    Step256<0x10>(w, 10, a, b, false, swap);
    Step256<0x20>(w, 12, a, b, false, swap);
    Step256<0x40>(w, 14, a, b, true, swap);
}

// ---- whole blocks on 128-bit registers ----

VERIMOND_AESNI void EcbEncrypt(const uint32_t* rk, int rounds, const uint8_t* in, uint8_t* out, size_t blocks) {
    const __m128i swap = WordSwap();
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = Load(in + 16 * j);
        Encrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store(out + 16 * j, b[j]);
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) Store(out, Encrypt1(rk, rounds, Load(in), swap));
}

VERIMOND_AESNI void EcbDecrypt(const uint32_t* rk, int rounds, const uint8_t* in, uint8_t* out, size_t blocks) {
    const __m128i swap = WordSwap();
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = Load(in + 16 * j);
        Decrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store(out + 16 * j, b[j]);
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) Store(out, Decrypt1(rk, rounds, Load(in), swap));
}

// In place: a group's last ciphertext block is kept before anything is
// written, and the outputs go from the last block down, so every block is
// read before the output overwrites it.
VERIMOND_AESNI void CbcDecrypt(const uint32_t* rk, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                               size_t blocks) {
    const __m128i swap = WordSwap();
    __m128i prev = Load(reg);
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = Load(in + 16 * j);
        Decrypt8(rk, rounds, b, swap);
        const __m128i last = Load(in + 112);
#pragma GCC unroll 8
        for (int j = 7; j > 0; --j) Store(out + 16 * j, _mm_xor_si128(b[j], Load(in + 16 * j - 16)));
        Store(out, _mm_xor_si128(b[0], prev));
        prev = last;
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) {
        const __m128i c = Load(in);
        Store(out, _mm_xor_si128(Decrypt1(rk, rounds, c, swap), prev));
        prev = c;
    }
    Store(reg, prev);
}

// The cipher inputs are all read first; each output then overwrites only the
// ciphertext block it has just read.
VERIMOND_AESNI void CfbDecrypt(const uint32_t* rk, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                               size_t blocks) {
    const __m128i swap = WordSwap();
    __m128i prev = Load(reg);
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
        b[0] = prev;
#pragma GCC unroll 8
        for (int j = 1; j < 8; ++j) b[j] = Load(in + 16 * j - 16);
        Encrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) {
            const __m128i c = Load(in + 16 * j);
            Store(out + 16 * j, _mm_xor_si128(b[j], c));
            prev = c;
        }
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) {
        const __m128i c = Load(in);
        Store(out, _mm_xor_si128(Encrypt1(rk, rounds, prev, swap), c));
        prev = c;
    }
    Store(reg, prev);
}

VERIMOND_AESNI void CtrBlocks(const uint32_t* rk, int rounds, uint8_t counter[16], const uint8_t* in, uint8_t* out,
                              size_t blocks) {
    const __m128i swap = WordSwap(), reverse = ByteReverse();
    Counter c = LoadCounter(counter);
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
        CounterBlocks8(c, b, reverse);
        Encrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store(out + 16 * j, _mm_xor_si128(b[j], Load(in + 16 * j)));
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) {
        Store(out, _mm_xor_si128(Encrypt1(rk, rounds, CounterBlock(c, reverse), swap), Load(in)));
        Advance(c, 1);
    }
    StoreCounter(counter, c);
}

// The n bytes of a last part block; the keystream block is the caller's to wipe.
void XorPart(uint8_t* out, const uint8_t* in, const uint8_t* keystream, size_t n) {
    for (size_t i = 0; i < n; ++i) out[i] = uint8_t(in[i] ^ keystream[i]);
}

}  // namespace

VERIMOND_AESNI int AesNiSetEncryptKey(uint32_t* schedule, const uint8_t* key, int keyBits) {
    switch (keyBits) {
    case 128: Expand128(schedule, key); return 10;
    case 192: Expand192(schedule, key); return 12;
    case 256: Expand256(schedule, key); return 14;
    default: return 0;
    }
}

// The equivalent inverse cipher's schedule: the round keys in reverse order,
// InvMixColumns (AESIMC) on all but the first and the last.
VERIMOND_AESNI int AesNiSetDecryptKey(uint32_t* schedule, const uint8_t* key, int keyBits) {
    const int rounds = AesNiSetEncryptKey(schedule, key, keyBits);
    if (rounds == 0) return 0;
    const __m128i swap = WordSwap();
    int i = 0, j = rounds;
    for (; i < j; ++i, --j) {
        const __m128i a = RoundKey(schedule, i, swap), b = RoundKey(schedule, j, swap);
        PutKey(schedule, i, i == 0 ? b : _mm_aesimc_si128(b), swap);
        PutKey(schedule, j, j == rounds ? a : _mm_aesimc_si128(a), swap);
    }
    if (i == j) PutKey(schedule, i, _mm_aesimc_si128(RoundKey(schedule, i, swap)), swap);
    return rounds;
}

VERIMOND_AESNI void AesNiEncryptBlock(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out) {
    Store(out, Encrypt1(schedule, rounds, Load(in), WordSwap()));
}

VERIMOND_AESNI void AesNiDecryptBlock(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out) {
    Store(out, Decrypt1(schedule, rounds, Load(in), WordSwap()));
}

VERIMOND_AESNI void AesNiProcess(AesContext* ctx, uint8_t* out, const uint8_t* in, size_t length) {
    const uint32_t* rk = ctx->roundKeys;
    const int rounds = int(ctx->rounds);
    const bool encrypt = ctx->direction != 0;
    const bool wide = VaesUsable();
    const size_t blocks = length / 16, whole = blocks * 16, tail = length % 16;
    const __m128i swap = WordSwap();
    uint8_t part[16];

    switch (ctx->mode) {
    case 0:  // ECB: whole blocks, checked by the caller
        if (encrypt) {
            wide ? VaesEcbEncrypt(rk, rounds, in, out, blocks) : EcbEncrypt(rk, rounds, in, out, blocks);
        } else {
            wide ? VaesEcbDecrypt(rk, rounds, in, out, blocks) : EcbDecrypt(rk, rounds, in, out, blocks);
        }
        return;
    case 1:  // CBC
        if (encrypt) {
            __m128i reg = Load(ctx->iv);
            for (size_t off = 0; off < whole; off += 16) {
                reg = Encrypt1(rk, rounds, _mm_xor_si128(Load(in + off), reg), swap);
                Store(out + off, reg);
            }
            Store(ctx->iv, reg);
        } else {
            wide ? VaesCbcDecrypt(rk, rounds, ctx->iv, in, out, blocks)
                 : CbcDecrypt(rk, rounds, ctx->iv, in, out, blocks);
        }
        return;
    case 2: {  // CFB, whole-block feedback
        if (encrypt) {
            __m128i reg = Load(ctx->iv);
            for (size_t off = 0; off < whole; off += 16) {
                reg = _mm_xor_si128(Encrypt1(rk, rounds, reg, swap), Load(in + off));
                Store(out + off, reg);
            }
            Store(ctx->iv, reg);
        } else {
            wide ? VaesCfbDecrypt(rk, rounds, ctx->iv, in, out, blocks)
                 : CfbDecrypt(rk, rounds, ctx->iv, in, out, blocks);
        }
        if (tail != 0) {
            // The register takes the whole zero-extended block: keystream in
            // its unused bytes when encrypting, zeros when decrypting.
            std::memset(part, 0, 16);
            std::memcpy(part, in + whole, tail);
            const __m128i keep = Load(part);
            const __m128i work = _mm_xor_si128(Encrypt1(rk, rounds, Load(ctx->iv), swap), keep);
            Store(ctx->iv, encrypt ? work : keep);
            Store(part, work);
            std::memcpy(out + whole, part, tail);
            SecureWipe(part, sizeof part);
        }
        return;
    }
    case 3: {  // OFB
        __m128i reg = Load(ctx->iv);
        for (size_t off = 0; off < whole; off += 16) {
            reg = Encrypt1(rk, rounds, reg, swap);
            Store(out + off, _mm_xor_si128(reg, Load(in + off)));
        }
        if (tail != 0) {
            reg = Encrypt1(rk, rounds, reg, swap);
            Store(part, reg);
            XorPart(out + whole, in + whole, part, tail);
            SecureWipe(part, sizeof part);
        }
        Store(ctx->iv, reg);
        return;
    }
    case 4:  // CTR; a part block still uses up a counter value
        wide ? VaesCtr(rk, rounds, ctx->iv, in, out, blocks) : CtrBlocks(rk, rounds, ctx->iv, in, out, blocks);
        if (tail != 0) {
            Counter c = LoadCounter(ctx->iv);
            Store(part, Encrypt1(rk, rounds, CounterBlock(c, ByteReverse()), swap));
            Advance(c, 1);
            StoreCounter(ctx->iv, c);
            XorPart(out + whole, in + whole, part, tail);
            SecureWipe(part, sizeof part);
        }
        return;
    default: return;
    }
}
