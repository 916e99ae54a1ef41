// Key wrap over the mode engine: AES in ECB for RFC 3394, Triple DES in CBC
// for RFC 3217. Integrity values are compared in constant time.
#include "block/keywrap.h"

#include <algorithm>
#include <cstring>

#include "block/block.h"
#include "cipher/select.h"
#include "digest/sha1.h"
#include "frame/memory.h"
#include "util/ct.h"
#include "util/tinymt.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

constexpr uint8_t kAesWrapIv[8] = {0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6};
constexpr uint8_t kTdeaWrapIv[8] = {0x4A, 0xDD, 0xA2, 0x2C, 0x79, 0xE8, 0x21, 0x05};
constexpr int32_t kTdeaKeyLength = 24;
constexpr int32_t kTdeaWrappedLength = 40;

// The step counter goes big-endian into the last four bytes of A.
inline void XorCounter(uint8_t* a, uint32_t t) {
    a[4] ^= uint8_t(t >> 24);
    a[5] ^= uint8_t(t >> 16);
    a[6] ^= uint8_t(t >> 8);
    a[7] ^= uint8_t(t);
}

int32_t AesWrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength, const uint8_t* kek,
                int32_t kekLength) {
    if (dataLength < 16 || dataLength % 8 != 0 || dataLength > INT32_MAX - 8) return -BAD_LENGTH_ERROR;
    if (output == nullptr || outputLength == 0) return dataLength + 8;
    if (data == nullptr || kek == nullptr) return -NULL_ERROR;
    if (outputLength < dataLength + 8) return -SHORT_BUF_ERROR;

    AesContext ctx;
    AesSetupMode(&ctx, kModeEcb, kek, size_t(kekLength), 1, nullptr);
    // The registers R[1..n] live in the output, behind A's place.
    std::memmove(output + 8, data, size_t(dataLength));
    const uint32_t n = uint32_t(dataLength / 8);
    uint8_t a[8], block[16];
    std::memcpy(a, kAesWrapIv, 8);
    for (uint32_t j = 0; j < 6; ++j) {
        for (uint32_t i = 1; i <= n; ++i) {
            uint8_t* r = output + 8 * i;
            std::memcpy(block, a, 8);
            std::memcpy(block + 8, r, 8);
            AesProcess(&ctx, block, block, 16);
            std::memcpy(a, block, 8);
            XorCounter(a, n * j + i);
            std::memcpy(r, block + 8, 8);
        }
    }
    std::memcpy(output, a, 8);
    AesWipeContext(&ctx);
    SecureWipe(block, sizeof block);
    return dataLength + 8;
}

int32_t AesUnwrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength,
                  const uint8_t* kek, int32_t kekLength) {
    if (dataLength < 24 || dataLength % 8 != 0) return -BAD_LENGTH_ERROR;
    if (output == nullptr || outputLength < 1) return dataLength - 8;
    if (data == nullptr || kek == nullptr) return -NULL_ERROR;
    if (int64_t(outputLength) + 8 < dataLength) return -SHORT_BUF_ERROR;

    AesContext ctx;
    AesSetupMode(&ctx, kModeEcb, kek, size_t(kekLength), 0, nullptr);
    const uint32_t n = uint32_t(dataLength / 8 - 1);
    uint8_t a[8], block[16];
    std::memcpy(a, data, 8);
    std::memmove(output, data + 8, size_t(dataLength - 8));
    for (uint32_t j = 6; j-- > 0;) {
        for (uint32_t i = n; i >= 1; --i) {
            uint8_t* r = output + 8 * (i - 1);
            XorCounter(a, n * j + i);
            std::memcpy(block, a, 8);
            std::memcpy(block + 8, r, 8);
            AesProcess(&ctx, block, block, 16);
            std::memcpy(a, block, 8);
            std::memcpy(r, block + 8, 8);
        }
    }
    AesWipeContext(&ctx);
    SecureWipe(block, sizeof block);
    if (CtEqual(a, kAesWrapIv, 8)) return dataLength - 8;
    // Kept: a plain -1, not a code; callers test the sign.
    SecureWipe(output, size_t(outputLength));
    return -1;
}

void Sha1Of(uint8_t* digest, const uint8_t* data, uint32_t length) {
    Sha1Context sha;
    Sha1Start(&sha);
    Sha1Update(&sha, data, length);
    Sha1Final(digest, &sha);
    WipeObject(sha);
}

// CBC over Triple DES with the KEK, in place; the context is wiped after use.
void TdeaCbc(uint8_t* data, size_t length, const uint8_t* kek, int32_t direction, const uint8_t* iv) {
    TdeaContext ctx;
    TdeaSetupMode(&ctx, kModeCbc, kek, direction, iv);
    TdeaProcess(&ctx, data, data, length);
    TdeaWipeContext(&ctx);
}

// Not a secret generator: TinyMT32 from the KEK's mix and a handle value,
// one low byte of each of eight outputs.
void TdeaWrapPrefix(uint8_t* prefix, const uint8_t* kek) {
    TinyMt32State state;
    TinyMt32Init(&state, KekSeedMix(kek) ^ MakeHandleValue());
    for (int i = 0; i < 8; ++i) prefix[i] = uint8_t(TinyMt32Next(&state));
    WipeObject(state);
}

int32_t TdeaWrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength,
                 const uint8_t* kek) {
    if (dataLength != kTdeaKeyLength) return -BAD_LENGTH_ERROR;
    if (output == nullptr || outputLength == 0) return kTdeaWrappedLength;
    if (data == nullptr || kek == nullptr) return -NULL_ERROR;
    if (outputLength < kTdeaWrappedLength) return -SHORT_BUF_ERROR;
    uint8_t key[kTdeaKeyLength], prefix[8];
    std::memcpy(key, data, sizeof key);  // data may overlap output
    TdeaWrapPrefix(prefix, kek);
    TdeaWrapWithPrefix(output, key, kek, prefix);
    SecureWipe(key, sizeof key);
    return kTdeaWrappedLength;
}

int32_t TdeaUnwrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength,
                   const uint8_t* kek) {
    if (dataLength != kTdeaWrappedLength) return -BAD_LENGTH_ERROR;
    if (output == nullptr || outputLength < 1) return kTdeaKeyLength;
    if (data == nullptr || kek == nullptr) return -NULL_ERROR;
    if (outputLength < kTdeaKeyLength) return -SHORT_BUF_ERROR;
    uint8_t buffer[kTdeaWrappedLength], digest[20];
    std::memcpy(buffer, data, sizeof buffer);
    TdeaCbc(buffer, sizeof buffer, kek, 0, kTdeaWrapIv);
    std::reverse(buffer, buffer + sizeof buffer);
    // The first 8 bytes are the IV of the inner layer; the set-up copies them.
    TdeaCbc(buffer + 8, 32, kek, 0, buffer);
    Sha1Of(digest, buffer + 8, kTdeaKeyLength);
    const int good = CtEqual(digest, buffer + 8 + kTdeaKeyLength, 8);
    int32_t result;
    if (good) {
        std::memcpy(output, buffer + 8, kTdeaKeyLength);
        result = kTdeaKeyLength;
    } else {
        SecureWipe(output, size_t(outputLength));
        result = -1;
    }
    SecureWipe(buffer, sizeof buffer);
    SecureWipe(digest, sizeof digest);
    return result;
}

// The cipher and the KEK length come first, in that order.
int32_t ScreenKek(int32_t options, int32_t kekLength) {
    const int32_t cipher = options & kCipherMask;
    const int32_t needed = CipherKeyLength(cipher);
    if (needed < 0) return -BAD_FLAG_ERROR;
    return kekLength == needed ? cipher : -BAD_KEY_LEN_ERROR;
}

}  // namespace

uint32_t KekSeedMix(const uint8_t* kek) {
    uint16_t w[12];
    for (int i = 0; i < 12; ++i) w[i] = uint16_t(kek[2 * i] | (kek[2 * i + 1] << 8));
    auto rotl1 = [](uint16_t v) { return uint16_t((v << 1) | (v >> 15)); };
    auto rotr1 = [](uint16_t v) { return uint16_t((v >> 1) | (v << 15)); };
    uint16_t h = 0x243F, l = 0x6A88, p = 0;
    for (int i = 0; i < 11; ++i) {
        const uint16_t x = uint16_t(l ^ (uint16_t(~w[i + 1]) ^ w[i]));
        h = uint16_t(rotl1(uint16_t(uint16_t(~w[i]) ^ h ^ p)) ^ x);
        l = uint16_t(rotr1(x) ^ h);
        p = w[i];
    }
    SecureWipe(w, sizeof w);
    return (uint32_t(h) << 16) | l;
}

void TdeaWrapWithPrefix(uint8_t* output, const uint8_t* key, const uint8_t* kek, const uint8_t* prefix) {
    // prefix | key | first 8 bytes of SHA-1(key); the parity bits stay as given.
    uint8_t buffer[kTdeaWrappedLength], digest[20];
    Sha1Of(digest, key, kTdeaKeyLength);
    std::memcpy(buffer, prefix, 8);
    std::memcpy(buffer + 8, key, kTdeaKeyLength);
    std::memcpy(buffer + 8 + kTdeaKeyLength, digest, 8);
    TdeaCbc(buffer + 8, 32, kek, 1, prefix);
    std::reverse(buffer, buffer + sizeof buffer);
    TdeaCbc(buffer, sizeof buffer, kek, 1, kTdeaWrapIv);
    std::memcpy(output, buffer, sizeof buffer);
    SecureWipe(buffer, sizeof buffer);
    SecureWipe(digest, sizeof digest);
}

int32_t KeyWrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength, const uint8_t* kek,
                int32_t kekLength, int32_t options) {
    const int32_t cipher = ScreenKek(options, kekLength);
    if (cipher < 0) return cipher;
    if (cipher == OPT_CIPHER_TDEA) return TdeaWrap(output, outputLength, data, dataLength, kek);
    return AesWrap(output, outputLength, data, dataLength, kek, kekLength);
}

int32_t KeyUnwrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength,
                  const uint8_t* kek, int32_t kekLength, int32_t options) {
    const int32_t cipher = ScreenKek(options, kekLength);
    if (cipher < 0) return cipher;
    if (cipher == OPT_CIPHER_TDEA) return TdeaUnwrap(output, outputLength, data, dataLength, kek);
    return AesUnwrap(output, outputLength, data, dataLength, kek, kekLength);
}
