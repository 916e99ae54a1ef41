// The CIPHER_ block ciphers and modes, and the per-cipher family call that
// serves as the reference for each.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "test_support.h"

using ByteVec = std::vector<uint8_t>;

struct CipherKind {
    const char* name;
    int32_t bits;
    int block, keyLength;
};
inline const CipherKind kCiphers[] = {
    {"tdea", OPT_CIPHER_TDEA, 8, 24}, {"aes128", OPT_CIPHER_AES128, 16, 16},
    {"aes192", OPT_CIPHER_AES192, 16, 24}, {"aes256", OPT_CIPHER_AES256, 16, 32}};
// The option bits run OFB 0x200, CFB 0x300.
inline const std::pair<const char*, int32_t> kModes[] = {
    {"ECB", OPT_MODE_ECB}, {"CBC", OPT_MODE_CBC}, {"CFB", OPT_MODE_CFB}, {"OFB", OPT_MODE_OFB}, {"CTR", OPT_MODE_CTR}};

inline ByteVec Pattern(size_t n, uint8_t seed = 0) {
    ByteVec v(n);
    for (size_t i = 0; i < n; ++i) v[i] = uint8_t(seed + i * 29 + i / 7);
    return v;
}

// The per-cipher family in the same mode; it does no padding.
inline int32_t FamilyCrypt(const CipherKind& c, uint8_t* out, ByteVec in, const ByteVec& key, const char* mode,
                           const uint8_t* iv) {
    const int32_t n = int32_t(in.size());
    in.push_back(0);  // never a null pointer
    switch (c.bits) {
    case OPT_CIPHER_TDEA: return TDEA_BytesMode(out, in.data(), n, key.data(), 1, mode, iv);
    case OPT_CIPHER_AES128: return AES128_BytesMode(out, in.data(), n, key.data(), 1, mode, iv);
    case OPT_CIPHER_AES192: return AES192_BytesMode(out, in.data(), n, key.data(), 1, mode, iv);
    default: return AES256_BytesMode(out, in.data(), n, key.data(), 1, mode, iv);
    }
}

inline std::string UpperHexOf(const ByteVec& v) {
    std::string s = ToHex(v);
    for (auto& ch : s) ch = char(ch >= 'a' ? ch - 32 : ch);
    return s;
}
