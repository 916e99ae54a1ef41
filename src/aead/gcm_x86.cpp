// AES-GCM on AES-NI and PCLMULQDQ: key set-up with the powers of H, whole
// messages (seal interleaves counter mode with the hash of the ciphertext
// it has just written; open verifies in a first pass and decrypts in a
// second), and the pieces the incremental record needs. The 256-bit
// routines of gcm_vaes_x86.cpp take the bulk when the processor has them.
#include "aead/gcm_x86.h"

#include <cstring>

#include "aead/ghash_x86_inline.h"
#include "util/ct.h"
#include "util/wipe.h"

using namespace aesx86;
using namespace ghashx86;

namespace {

int Rounds(const GcmKeyTables* t) { return int(t->keyBits / 32) + 6; }
const uint8_t* Powers(const GcmKeyTables* t) { return &t->hPowers[0][0]; }

// The record's hash value is four big-endian words, the first the most
// significant: as a reflected value the words just run the other way.
VERIMOND_AESNI_INLINE __m128i FromWords(const uint32_t y[4]) {
    return _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y)), 0x1b);
}
VERIMOND_AESNI_INLINE void ToWords(uint32_t y[4], __m128i v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y), _mm_shuffle_epi32(v, 0x1b));
}

// Whole blocks, then a tail padded with zeros.
VERIMOND_AESNI_INLINE __m128i HashPadded(__m128i y, const uint8_t* data, size_t length, const uint8_t* powers,
                                         bool wide) {
    size_t blocks = length / 16;
    if (wide && blocks >= 16) {
        const size_t done = GcmWideHash(powers, y, data, blocks);
        data += 16 * done;
        blocks -= done;
    }
    y = HashBlocks(y, data, blocks, powers);
    data += 16 * blocks;
    if (length % 16 != 0) {
        uint8_t last[16] = {};
        std::memcpy(last, data, length % 16);
        y = HashK(y, last, 1, powers);
    }
    return y;
}

// J0, reflected: a 12-byte IV with counter 1, or the hash of the IV and a
// block holding its 64-bit bit length.
VERIMOND_AESNI_INLINE __m128i MakeJ0(const uint8_t* iv, size_t ivLength, const uint8_t* powers, bool wide) {
    if (ivLength == 12) {
        uint8_t block[16] = {};
        std::memcpy(block, iv, 12);
        block[15] = 1;
        return _mm_shuffle_epi8(Load(block), ByteReverse());
    }
    const __m128i y = HashPadded(_mm_setzero_si128(), iv, ivLength, powers, wide);
    return Mul(_mm_xor_si128(y, _mm_set_epi64x(0, int64_t(uint64_t(ivLength) * 8))), Power(powers, 1));
}

// The counter block after ctr, as the cipher takes it; ctr advances by one.
VERIMOND_AESNI_INLINE __m128i NextCounter(__m128i& ctr, __m128i reverse) {
    ctr = _mm_add_epi32(ctr, _mm_set_epi32(0, 0, 0, 1));
    return _mm_shuffle_epi8(ctr, reverse);
}

// Counter mode over whole blocks, eight at a time.
VERIMOND_AESNI_INLINE void CtrBlocks(const uint32_t* rk, int rounds, __m128i& ctr, const uint8_t* in, uint8_t* out,
                                     size_t blocks) {
    const __m128i swap = WordSwap(), reverse = ByteReverse();
    for (; blocks >= 8; blocks -= 8, in += 128, out += 128) {
        __m128i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = NextCounter(ctr, reverse);
        Encrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store(out + 16 * j, _mm_xor_si128(b[j], Load(in + 16 * j)));
    }
    for (; blocks != 0; --blocks, in += 16, out += 16) {
        Store(out, _mm_xor_si128(Encrypt1(rk, rounds, NextCounter(ctr, reverse), swap), Load(in)));
    }
}

// A last part block of n bytes (1 to 15) through a stack block; returns the
// ciphertext zero-padded for the hash when wanted.
VERIMOND_AESNI_INLINE __m128i CtrTail(const uint32_t* rk, int rounds, __m128i& ctr, const uint8_t* in, uint8_t* out,
                                      size_t n) {
    uint8_t part[16] = {};
    std::memcpy(part, in, n);
    const __m128i ks = Encrypt1(rk, rounds, NextCounter(ctr, ByteReverse()), WordSwap());
    Store(part, _mm_xor_si128(Load(part), ks));
    std::memcpy(out, part, n);
    std::memset(part + n, 0, 16 - n);
    const __m128i padded = Load(part);
    SecureWipe(part, sizeof part);
    return padded;
}

// Seal's bulk on 128-bit registers: each turn encrypts eight counter blocks
// while hashing the eight ciphertext blocks of the turn before.
VERIMOND_AESNI_INLINE size_t SealBlocks(const uint32_t* rk, int rounds, const uint8_t* powers, __m128i& ctr,
                                        __m128i& y, const uint8_t* in, uint8_t* out, size_t blocks) {
    const size_t groups = blocks / 8;
    if (groups == 0) return 0;
    const __m128i swap = WordSwap(), reverse = ByteReverse();
    for (size_t g = 0; g < groups; ++g, in += 128, out += 128) {
        __m128i b[8];
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) b[j] = NextCounter(ctr, reverse);
        if (g != 0) y = HashK(y, out - 128, 8, powers);
        Encrypt8(rk, rounds, b, swap);
#pragma GCC unroll 8
        for (int j = 0; j < 8; ++j) Store(out + 16 * j, _mm_xor_si128(b[j], Load(in + 16 * j)));
    }
    y = HashK(y, out - 128, 8, powers);
    return groups * 8;
}

VERIMOND_AESNI_INLINE void PutPower(uint8_t* powers, int k, __m128i v) { Store(powers + 16 * (kPowers - k), v); }

// The closing block with both bit lengths cut to 32 bits, as the portable
// routines make it: words 1 and 3 of the big-endian block.
VERIMOND_AESNI_INLINE __m128i HashLengths(__m128i y, size_t aadLength, size_t textLength, const uint8_t* powers) {
    const __m128i lengths = _mm_set_epi32(0, int(uint32_t(aadLength * 8)), 0, int(uint32_t(textLength * 8)));
    return Mul(_mm_xor_si128(y, lengths), Power(powers, 1));
}

}  // namespace

VERIMOND_AESNI void GcmClmulExpandKey(GcmKeyTables* t, const uint8_t* key, uint32_t keyBits) {
    uint32_t* w = t->schedule;
    AesNiSetEncryptKey(w, key, int(keyBits));
    for (int i = 4 * (int(keyBits / 32) + 7); i < 60; ++i) w[i] = 0;
    t->keyBits = keyBits;
    const int rounds = Rounds(t);
    const __m128i reverse = ByteReverse();
    const __m128i h = _mm_shuffle_epi8(Encrypt1(w, rounds, _mm_setzero_si128(), WordSwap()), reverse);
    // H times x^-1: a left shift of the reflected value; a bit shifted out
    // brings in x^-1 = x^127 + x^6 + x + 1, reflected 0xC2...01.
    const __m128i carry = _mm_shuffle_epi32(_mm_srai_epi32(h, 31), 0xff);
    const __m128i shifted = _mm_or_si128(_mm_slli_epi64(h, 1), _mm_srli_epi64(_mm_slli_si128(h, 8), 63));
    const __m128i poly = _mm_set_epi64x(int64_t(0xC200000000000000ull), 1);
    uint8_t* p = &t->hPowers[0][0];
    __m128i h1 = _mm_xor_si128(shifted, _mm_and_si128(carry, poly));
    // Products of these forms stay in the form: H^a x^-1 * H^b x^-1 * x
    // (the reduction's factor) = H^(a+b) x^-1. Built in rounds, so that the
    // multiplies of a round are independent.
    __m128i h2 = Mul(h1, h1);
    __m128i h3 = Mul(h2, h1), h4 = Mul(h2, h2);
    __m128i h5 = Mul(h4, h1), h6 = Mul(h4, h2), h7 = Mul(h4, h3), h8 = Mul(h4, h4);
    const __m128i low[8] = {h1, h2, h3, h4, h5, h6, h7, h8};
#pragma GCC unroll 8
    for (int k = 1; k <= 8; ++k) {
        PutPower(p, k, low[k - 1]);
        PutPower(p, k + 8, Mul(h8, low[k - 1]));
    }
    t->clmul = 1;
}

VERIMOND_AESNI void GcmClmulSeal(const GcmKeyTables* t, const uint8_t* iv, size_t ivLength, const uint8_t* input,
                                 size_t inputLength, const uint8_t* aad, size_t aadLength, uint8_t* output,
                                 uint8_t tag[16]) {
    const uint32_t* rk = t->schedule;
    const int rounds = Rounds(t);
    const uint8_t* powers = Powers(t);
    const bool wide = GcmWideUsable();
    const __m128i reverse = ByteReverse();
    __m128i ctr = MakeJ0(iv, ivLength, powers, wide);
    const __m128i encJ0 = Encrypt1(rk, rounds, _mm_shuffle_epi8(ctr, reverse), WordSwap());
    __m128i y = HashPadded(_mm_setzero_si128(), aad, aadLength, powers, wide);
    if (output == nullptr) inputLength = 0;
    const size_t blocks = inputLength / 16;
    size_t done = wide ? GcmWideSeal(rk, rounds, powers, ctr, y, input, output, blocks) : 0;
    done += SealBlocks(rk, rounds, powers, ctr, y, input + 16 * done, output + 16 * done, blocks - done);
    CtrBlocks(rk, rounds, ctr, input + 16 * done, output + 16 * done, blocks - done);
    y = HashBlocks(y, output + 16 * done, blocks - done, powers);
    if (inputLength % 16 != 0) {
        const __m128i last = CtrTail(rk, rounds, ctr, input + 16 * blocks, output + 16 * blocks, inputLength % 16);
        y = Mul(_mm_xor_si128(y, _mm_shuffle_epi8(last, reverse)), Power(powers, 1));
    }
    y = HashLengths(y, aadLength, inputLength, powers);
    Store(tag, _mm_xor_si128(encJ0, _mm_shuffle_epi8(y, reverse)));
}

VERIMOND_AESNI int GcmClmulOpen(const GcmKeyTables* t, const uint8_t* iv, size_t ivLength, const uint8_t* input,
                                size_t inputLength, const uint8_t* tag, int32_t tagLength, const uint8_t* aad,
                                size_t aadLength, uint8_t* output) {
    const uint32_t* rk = t->schedule;
    const int rounds = Rounds(t);
    const uint8_t* powers = Powers(t);
    const bool wide = GcmWideUsable();
    const __m128i reverse = ByteReverse();
    __m128i ctr = MakeJ0(iv, ivLength, powers, wide);
    const __m128i encJ0 = Encrypt1(rk, rounds, _mm_shuffle_epi8(ctr, reverse), WordSwap());
    const size_t n = (tagLength < 0 || tagLength > 16) ? 16 : size_t(tagLength);
    uint8_t given[16] = {};
    if (n != 0) std::memcpy(given, tag, n);
    // First pass: the tag alone; no key stream is made and nothing written.
    __m128i y = HashPadded(_mm_setzero_si128(), aad, aadLength, powers, wide);
    y = HashPadded(y, input, inputLength, powers, wide);
    y = HashLengths(y, aadLength, inputLength, powers);
    const __m128i compared = _mm_cmpgt_epi8(_mm_set1_epi8(char(n)), _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10,
                                                                                  11, 12, 13, 14, 15));
    const __m128i diff =
        _mm_and_si128(_mm_xor_si128(_mm_xor_si128(encJ0, Load(given)), _mm_shuffle_epi8(y, reverse)), compared);
    if (CtPublic(_mm_testz_si128(diff, diff)) == 0) return 0;  // accept or reject is the answer
    if (output == nullptr) return 1;
    const size_t blocks = inputLength / 16;
    const size_t done = wide ? GcmWideCtr(rk, rounds, ctr, input, output, blocks) : 0;
    CtrBlocks(rk, rounds, ctr, input + 16 * done, output + 16 * done, blocks - done);
    if (inputLength % 16 != 0) CtrTail(rk, rounds, ctr, input + 16 * blocks, output + 16 * blocks, inputLength % 16);
    return 1;
}

VERIMOND_AESNI void GcmClmulHash(const GcmKeyTables* t, uint32_t y[4], const uint8_t* data, size_t blocks) {
    __m128i v = FromWords(y);
    if (blocks >= 16 && GcmWideUsable()) {
        const size_t done = GcmWideHash(Powers(t), v, data, blocks);
        data += 16 * done;
        blocks -= done;
    }
    ToWords(y, HashBlocks(v, data, blocks, Powers(t)));
}

VERIMOND_AESNI void GcmClmulCounterBlock(const GcmKeyTables* t, const uint8_t nonce[12], uint32_t counter,
                                         uint8_t out[16]) {
    uint8_t block[16];
    std::memcpy(block, nonce, 12);
    Store32Be(block + 12, counter);
    Store(out, Encrypt1(t->schedule, Rounds(t), Load(block), WordSwap()));
}

VERIMOND_AESNI void GcmClmulCtr(const GcmKeyTables* t, const uint8_t nonce[12], uint32_t* counter, const uint8_t* in,
                                uint8_t* out, size_t blocks) {
    uint8_t block[16];
    std::memcpy(block, nonce, 12);
    Store32Be(block + 12, *counter);
    __m128i ctr = _mm_shuffle_epi8(Load(block), ByteReverse());
    const size_t done = (blocks >= 16 && GcmWideUsable()) ? GcmWideCtr(t->schedule, Rounds(t), ctr, in, out, blocks) : 0;
    CtrBlocks(t->schedule, Rounds(t), ctr, in + 16 * done, out + 16 * done, blocks - done);
    *counter = uint32_t(_mm_cvtsi128_si32(ctr));
}
