// The per-cipher families (AES128_ ... BLF_) behind one switch, so that a test
// can run a vector or a property through every cipher and every spelling.
#pragma once
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

#include "test_support.h"

enum class Cipher { Aes128, Aes192, Aes256, Des, Tdea, Blf };

inline int BlockSize(Cipher c) { return c == Cipher::Aes128 || c == Cipher::Aes192 || c == Cipher::Aes256 ? 16 : 8; }

inline Cipher CipherFromName(const std::string& name) {
    if (name == "AES128") return Cipher::Aes128;
    if (name == "AES192") return Cipher::Aes192;
    if (name == "AES256") return Cipher::Aes256;
    if (name == "DES") return Cipher::Des;
    if (name == "BLF") return Cipher::Blf;
    return Cipher::Tdea;
}

// Upper-case hex, as the cipher families write it.
inline std::string UpperHex(const ByteVec& v) {
    std::string s = ToHex(v);
    for (auto& ch : s) ch = char(std::toupper(static_cast<unsigned char>(ch)));
    return s;
}

// The call NAME of the cipher's family; Blowfish also takes the key length,
// which BLF_ARGS passes where it belongs.
#define VERIMOND_FAMILY_CALL(c, NAME, ARGS, BLF_ARGS) \
    switch (c) {                                       \
    case Cipher::Aes128: return AES128_##NAME ARGS;    \
    case Cipher::Aes192: return AES192_##NAME ARGS;    \
    case Cipher::Aes256: return AES256_##NAME ARGS;    \
    case Cipher::Des: return DES_##NAME ARGS;          \
    case Cipher::Tdea: return TDEA_##NAME ARGS;        \
    case Cipher::Blf: return BLF_##NAME BLF_ARGS;      \
    }                                                  \
    return -1

inline int32_t BytesModeCall(Cipher c, uint8_t* out, const uint8_t* in, int32_t n, const ByteVec& key, int32_t dir,
                             const char* mode, const uint8_t* iv) {
    VERIMOND_FAMILY_CALL(c, BytesMode, (out, in, n, key.data(), dir, mode, iv),
                         (out, in, n, key.data(), int32_t(key.size()), dir, mode, iv));
}

inline int32_t HexModeCall(Cipher c, char* out, const char* in, const char* key, int32_t dir, const char* mode,
                           const char* iv) {
    VERIMOND_FAMILY_CALL(c, HexMode, (out, in, key, dir, mode, iv), (out, in, key, dir, mode, iv));
}

inline int32_t InitCall(Cipher c, const ByteVec& key, int32_t dir, const char* mode, const uint8_t* iv) {
    VERIMOND_FAMILY_CALL(c, Init, (key.data(), dir, mode, iv), (key.data(), int32_t(key.size()), dir, mode, iv));
}

// Each AES name is called by its own name, although the three share a slot.
inline int32_t UpdateCall(Cipher c, int32_t handle, uint8_t* data, int32_t n) {
    VERIMOND_FAMILY_CALL(c, Update, (handle, data, n), (handle, data, n));
}

inline int32_t FinalCall(Cipher c, int32_t handle) { VERIMOND_FAMILY_CALL(c, Final, (handle), (handle)); }

// The ECB-only bytes and hex calls.
inline int32_t BytesCall(Cipher c, uint8_t* out, const uint8_t* in, int32_t n, const ByteVec& key, int32_t dir) {
    VERIMOND_FAMILY_CALL(c, Bytes, (out, in, n, key.data(), dir), (out, in, n, key.data(), int32_t(key.size()), dir));
}

inline int32_t HexCall(Cipher c, char* out, const char* in, const char* key, int32_t dir) {
    VERIMOND_FAMILY_CALL(c, Hex, (out, in, key, dir), (out, in, key, dir));
}

inline int32_t FileExtCall(Cipher c, const char* out, const char* in, const ByteVec& key, int32_t dir,
                           const char* mode, const uint8_t* iv, int32_t options) {
    VERIMOND_FAMILY_CALL(c, FileExt, (out, in, key.data(), dir, mode, iv, options),
                         (out, in, key.data(), int32_t(key.size()), dir, mode, iv, options));
}

inline int32_t FileCall(Cipher c, const char* out, const char* in, const ByteVec& key, int32_t dir, const char* mode,
                        const uint8_t* iv) {
    VERIMOND_FAMILY_CALL(c, File, (out, in, key.data(), dir, mode, iv),
                         (out, in, key.data(), int32_t(key.size()), dir, mode, iv));
}

inline int32_t FileHexCall(Cipher c, const char* out, const char* in, const char* key, int32_t dir, const char* mode,
                           const char* iv) {
    VERIMOND_FAMILY_CALL(c, FileHex, (out, in, key, dir, mode, iv), (out, in, key, dir, mode, iv));
}

// One-shot bytes call; the result as upper-case hex, or "error N".
inline std::string Crypt(Cipher c, const ByteVec& data, const ByteVec& key, int32_t dir, const char* mode,
                         const ByteVec& iv) {
    ByteVec out(data.size() + 1), in = data;
    in.push_back(0);  // never a null pointer, also for no data
    const int32_t rc = BytesModeCall(c, out.data(), in.data(), int32_t(data.size()), key, dir, mode,
                                     iv.empty() ? nullptr : iv.data());
    if (rc != 0) return "error " + std::to_string(rc);
    out.resize(data.size());
    return UpperHex(out);
}
