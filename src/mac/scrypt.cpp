// scrypt. The mixing works on 32-bit words as they stand in memory (the
// algorithm's little-endian form; every target is little-endian). BlockMix
// writes into a second buffer with the even sub-blocks first, so ROMix
// alternates between X and the scratch and no step allocates.
// V and the scratch are not secret beyond B's contents, and are wiped anyway
// before they are freed.
#include "mac/scrypt.h"

#include <cstdlib>
#include <cstring>

#include "convert/codec.h"
#include "frame/memory.h"
#include "mac/pbkdf2.h"
#include "mac/scrypt_x86.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// B = B + Salsa20/8(B) over 16 words.
inline void Salsa20x8(uint32_t b[16]) {
    uint32_t x0 = b[0], x1 = b[1], x2 = b[2], x3 = b[3], x4 = b[4], x5 = b[5], x6 = b[6], x7 = b[7];
    uint32_t x8 = b[8], x9 = b[9], x10 = b[10], x11 = b[11], x12 = b[12], x13 = b[13], x14 = b[14], x15 = b[15];
    for (int i = 0; i < 8; i += 2) {
        // Columns.
        x4 ^= Rotl32(x0 + x12, 7);   x8 ^= Rotl32(x4 + x0, 9);
        x12 ^= Rotl32(x8 + x4, 13);  x0 ^= Rotl32(x12 + x8, 18);
        x9 ^= Rotl32(x5 + x1, 7);    x13 ^= Rotl32(x9 + x5, 9);
        x1 ^= Rotl32(x13 + x9, 13);  x5 ^= Rotl32(x1 + x13, 18);
        x14 ^= Rotl32(x10 + x6, 7);  x2 ^= Rotl32(x14 + x10, 9);
        x6 ^= Rotl32(x2 + x14, 13);  x10 ^= Rotl32(x6 + x2, 18);
        x3 ^= Rotl32(x15 + x11, 7);  x7 ^= Rotl32(x3 + x15, 9);
        x11 ^= Rotl32(x7 + x3, 13);  x15 ^= Rotl32(x11 + x7, 18);
        // Rows.
        x1 ^= Rotl32(x0 + x3, 7);    x2 ^= Rotl32(x1 + x0, 9);
        x3 ^= Rotl32(x2 + x1, 13);   x0 ^= Rotl32(x3 + x2, 18);
        x6 ^= Rotl32(x5 + x4, 7);    x7 ^= Rotl32(x6 + x5, 9);
        x4 ^= Rotl32(x7 + x6, 13);   x5 ^= Rotl32(x4 + x7, 18);
        x11 ^= Rotl32(x10 + x9, 7);  x8 ^= Rotl32(x11 + x10, 9);
        x9 ^= Rotl32(x8 + x11, 13);  x10 ^= Rotl32(x9 + x8, 18);
        x12 ^= Rotl32(x15 + x14, 7); x13 ^= Rotl32(x12 + x15, 9);
        x14 ^= Rotl32(x13 + x12, 13); x15 ^= Rotl32(x14 + x13, 18);
    }
    b[0] += x0; b[1] += x1; b[2] += x2; b[3] += x3; b[4] += x4; b[5] += x5; b[6] += x6; b[7] += x7;
    b[8] += x8; b[9] += x9; b[10] += x10; b[11] += x11; b[12] += x12; b[13] += x13; b[14] += x14; b[15] += x15;
}

// out = BlockMix(in) over 2r sub-blocks of 16 words; out and in are apart.
void BlockMix(uint32_t* out, const uint32_t* in, uint32_t r) {
    uint32_t x[16];
    std::memcpy(x, in + (2 * size_t(r) - 1) * 16, sizeof x);
    for (size_t i = 0; i < 2 * size_t(r); ++i) {
        const uint32_t* b = in + i * 16;
        for (int k = 0; k < 16; ++k) x[k] ^= b[k];
        Salsa20x8(x);
        // Even sub-blocks to the first half, odd ones to the second.
        std::memcpy(out + ((i & 1) * r + i / 2) * 16, x, sizeof x);
    }
}

// ROMix on one block of B (128 r bytes, in place), with V of N blocks and a
// scratch of one block.
void RoMix(uint8_t* block, uint32_t* v, uint32_t* x, uint32_t* y, uint32_t r, uint32_t n) {
    if (g_cpu.avx512f && g_cpu.avx512vl) {
        ScryptRoMixAvx512(block, v, x, y, r, n);
        return;
    }
    if (g_cpu.sse2) {
        ScryptRoMixSse2(block, v, x, y, r, n);
        return;
    }
    const size_t words = 32 * size_t(r);
    for (size_t k = 0; k < words; ++k) x[k] = Load32Le(block + 4 * k);
    for (uint32_t i = 0; i < n; ++i) {
        std::memcpy(v + i * words, x, words * 4);
        BlockMix(y, x, r);
        uint32_t* t = x; x = y; y = t;
    }
    const size_t last = (2 * size_t(r) - 1) * 16;
    for (uint32_t i = 0; i < n; ++i) {
        const uint32_t j = x[last] & (n - 1);
        const uint32_t* vj = v + j * words;
        for (size_t k = 0; k < words; ++k) x[k] ^= vj[k];
        BlockMix(y, x, r);
        uint32_t* t = x; x = y; y = t;
    }
    for (size_t k = 0; k < words; ++k) Store32Le(block + 4 * k, x[k]);
}

void WipeFree(void* p, size_t n) {
    if (p == nullptr) return;
    SecureWipe(p, n);
    std::free(p);
}
}  // namespace

int32_t ScryptDerive(uint8_t* output, size_t outputLength, const uint8_t* password, size_t passwordLength,
                     const uint8_t* salt, size_t saltLength, uint32_t costN, uint32_t blockSizeR,
                     uint32_t parallelP) {
    const uint32_t r = blockSizeR, p = parallelP, n = costN;
    if (r == 0 || p == 0 || outputLength == 0) return -BAD_PARAM_ERROR;
    // These bounds keep N x r x 128 and r x 128 within 32 bits.
    if (r > 0x1FFFFFFu || p >= 0x40000000u / r || n < 2 || (n & (n - 1)) != 0 || n > 0x1FFFFFFu / r)
        return -OUT_OF_RANGE_ERROR;
    const size_t blockBytes = 128 * size_t(r);
    const size_t vBytes = size_t(n) * blockBytes, bBytes = size_t(p) * blockBytes;
    // The plain allocator: a refusal is a result here, not the fatal path.
    // The scratch holds X and the BlockMix output side by side.
    uint32_t* v = static_cast<uint32_t*>(std::malloc(vBytes));
    uint8_t* b = v != nullptr ? static_cast<uint8_t*>(std::malloc(bBytes)) : nullptr;
    uint32_t* scratch = b != nullptr ? static_cast<uint32_t*>(std::malloc(2 * blockBytes)) : nullptr;
    if (scratch == nullptr) {
        std::free(b);
        std::free(v);
        return -MEMORY_ERROR;
    }
    int32_t result = Pbkdf2Derive(b, bBytes, password, passwordLength, salt, saltLength, 1, OPT_HASH_SHA256);
    if (result == 0) {
        for (uint32_t i = 0; i < p; ++i) RoMix(b + i * blockBytes, v, scratch, scratch + blockBytes / 4, r, n);
        result = Pbkdf2Derive(output, outputLength, password, passwordLength, b, bBytes, 1, OPT_HASH_SHA256);
    }
    if (result != 0) result = -INTERNAL_ERROR;
    WipeFree(scratch, 2 * blockBytes);
    WipeFree(b, bBytes);
    WipeFree(v, vBytes);
    return result;
}

int32_t ScryptBytes(uint8_t* derivedKey, int32_t derivedKeyLength, const uint8_t* password, int32_t passwordLength,
                    const uint8_t* salt, int32_t saltLength, int32_t costN, int32_t blockSizeR, int32_t parallelP) {
    if (derivedKey == nullptr || (passwordLength != 0 && password == nullptr) || (saltLength != 0 && salt == nullptr))
        return -NULL_ERROR;
    if (derivedKeyLength == 0 || costN == 0 || blockSizeR == 0 || parallelP == 0) return -BAD_PARAM_ERROR;
    // Negative byte counts would be read as huge ones.
    if (derivedKeyLength < 0 || passwordLength < 0 || saltLength < 0) return -BAD_PARAM_ERROR;
    return ScryptDerive(derivedKey, size_t(derivedKeyLength), password, size_t(passwordLength), salt,
                        size_t(saltLength), uint32_t(costN), uint32_t(blockSizeR), uint32_t(parallelP));
}

int32_t ScryptHex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                  const char* saltHex, int32_t costN, int32_t blockSizeR, int32_t parallelP) {
    if (derivedKeyHex == nullptr || password == nullptr || saltHex == nullptr) return -NULL_ERROR;
    if (hexLength == 0 || derivedKeyLength == 0 || costN == 0 || blockSizeR == 0 || parallelP == 0)
        return -BAD_PARAM_ERROR;
    if (hexLength < 0 || derivedKeyLength < 0) return -BAD_PARAM_ERROR;
    if (int64_t(hexLength) < 2 * int64_t(derivedKeyLength)) return -SHORT_BUF_ERROR;
    uint8_t* salt;
    size_t saltLength;
    if (!Pbkdf2DecodeSalt(saltHex, &salt, &saltLength)) {
        SafeWipeFree(salt, saltLength);
        return -BAD_FORMAT_ERROR;
    }
    uint8_t* derived = static_cast<uint8_t*>(SafeAlloc(size_t(derivedKeyLength)));
    int32_t result = ScryptDerive(derived, size_t(derivedKeyLength), reinterpret_cast<const uint8_t*>(password),
                                  std::strlen(password), salt, saltLength, uint32_t(costN), uint32_t(blockSizeR),
                                  uint32_t(parallelP));
    if (result == 0) HexEncodeBounded(derivedKeyHex, size_t(hexLength) + 1, derived, size_t(derivedKeyLength));
    SafeWipeFree(derived, size_t(derivedKeyLength));
    SafeWipeFree(salt, saltLength);
    return result;
}
