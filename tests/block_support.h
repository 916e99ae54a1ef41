// The per-cipher families (AES128_ ... BLF_) behind one switch, so that a test
// can run a vector or a property through every cipher and every spelling.
#pragma once
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

#include "test_support.h"

enum class Cipher { Aes128, Aes192, Aes256, Des, Tdea, Blf };
using ByteVec = std::vector<uint8_t>;

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

inline int32_t BytesModeCall(Cipher c, uint8_t* out, const uint8_t* in, int32_t n, const ByteVec& key, int32_t dir,
                             const char* mode, const uint8_t* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_BytesMode(out, in, n, key.data(), dir, mode, iv);
    case Cipher::Aes192: return AES192_BytesMode(out, in, n, key.data(), dir, mode, iv);
    case Cipher::Aes256: return AES256_BytesMode(out, in, n, key.data(), dir, mode, iv);
    case Cipher::Des: return DES_BytesMode(out, in, n, key.data(), dir, mode, iv);
    case Cipher::Tdea: return TDEA_BytesMode(out, in, n, key.data(), dir, mode, iv);
    case Cipher::Blf: return BLF_BytesMode(out, in, n, key.data(), int32_t(key.size()), dir, mode, iv);
    }
    return -1;
}

inline int32_t HexModeCall(Cipher c, char* out, const char* in, const char* key, int32_t dir, const char* mode,
                           const char* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_HexMode(out, in, key, dir, mode, iv);
    case Cipher::Aes192: return AES192_HexMode(out, in, key, dir, mode, iv);
    case Cipher::Aes256: return AES256_HexMode(out, in, key, dir, mode, iv);
    case Cipher::Des: return DES_HexMode(out, in, key, dir, mode, iv);
    case Cipher::Tdea: return TDEA_HexMode(out, in, key, dir, mode, iv);
    case Cipher::Blf: return BLF_HexMode(out, in, key, dir, mode, iv);
    }
    return -1;
}

inline int32_t B64ModeCall(Cipher c, char* out, const char* in, const char* key, int32_t dir, const char* mode,
                           const char* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_B64Mode(out, in, key, dir, mode, iv);
    case Cipher::Aes192: return AES192_B64Mode(out, in, key, dir, mode, iv);
    case Cipher::Aes256: return AES256_B64Mode(out, in, key, dir, mode, iv);
    case Cipher::Des: return DES_B64Mode(out, in, key, dir, mode, iv);
    case Cipher::Tdea: return TDEA_B64Mode(out, in, key, dir, mode, iv);
    case Cipher::Blf: return BLF_B64Mode(out, in, key, dir, mode, iv);
    }
    return -1;
}

inline int32_t InitCall(Cipher c, const ByteVec& key, int32_t dir, const char* mode, const uint8_t* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_Init(key.data(), dir, mode, iv);
    case Cipher::Aes192: return AES192_Init(key.data(), dir, mode, iv);
    case Cipher::Aes256: return AES256_Init(key.data(), dir, mode, iv);
    case Cipher::Des: return DES_Init(key.data(), dir, mode, iv);
    case Cipher::Tdea: return TDEA_Init(key.data(), dir, mode, iv);
    case Cipher::Blf: return BLF_Init(key.data(), int32_t(key.size()), dir, mode, iv);
    }
    return -1;
}

// The three AES names are one entry for Update and Final; each is called by
// its own name all the same.
inline int32_t UpdateCall(Cipher c, int32_t handle, uint8_t* data, int32_t n) {
    switch (c) {
    case Cipher::Des: return DES_Update(handle, data, n);
    case Cipher::Tdea: return TDEA_Update(handle, data, n);
    case Cipher::Blf: return BLF_Update(handle, data, n);
    case Cipher::Aes192: return AES192_Update(handle, data, n);
    case Cipher::Aes256: return AES256_Update(handle, data, n);
    default: return AES128_Update(handle, data, n);
    }
}

inline int32_t FinalCall(Cipher c, int32_t handle) {
    switch (c) {
    case Cipher::Des: return DES_Final(handle);
    case Cipher::Tdea: return TDEA_Final(handle);
    case Cipher::Blf: return BLF_Final(handle);
    case Cipher::Aes192: return AES192_Final(handle);
    case Cipher::Aes256: return AES256_Final(handle);
    default: return AES128_Final(handle);
    }
}

// The ECB-only bytes and hex calls.
inline int32_t BytesCall(Cipher c, uint8_t* out, const uint8_t* in, int32_t n, const ByteVec& key, int32_t dir) {
    switch (c) {
    case Cipher::Aes128: return AES128_Bytes(out, in, n, key.data(), dir);
    case Cipher::Aes192: return AES192_Bytes(out, in, n, key.data(), dir);
    case Cipher::Aes256: return AES256_Bytes(out, in, n, key.data(), dir);
    case Cipher::Des: return DES_Bytes(out, in, n, key.data(), dir);
    case Cipher::Tdea: return TDEA_Bytes(out, in, n, key.data(), dir);
    case Cipher::Blf: return BLF_Bytes(out, in, n, key.data(), int32_t(key.size()), dir);
    }
    return -1;
}

inline int32_t HexCall(Cipher c, char* out, const char* in, const char* key, int32_t dir) {
    switch (c) {
    case Cipher::Aes128: return AES128_Hex(out, in, key, dir);
    case Cipher::Aes192: return AES192_Hex(out, in, key, dir);
    case Cipher::Aes256: return AES256_Hex(out, in, key, dir);
    case Cipher::Des: return DES_Hex(out, in, key, dir);
    case Cipher::Tdea: return TDEA_Hex(out, in, key, dir);
    case Cipher::Blf: return BLF_Hex(out, in, key, dir);
    }
    return -1;
}

inline int32_t FileExtCall(Cipher c, const char* out, const char* in, const ByteVec& key, int32_t dir,
                           const char* mode, const uint8_t* iv, int32_t options) {
    switch (c) {
    case Cipher::Aes128: return AES128_FileExt(out, in, key.data(), dir, mode, iv, options);
    case Cipher::Aes192: return AES192_FileExt(out, in, key.data(), dir, mode, iv, options);
    case Cipher::Aes256: return AES256_FileExt(out, in, key.data(), dir, mode, iv, options);
    case Cipher::Des: return DES_FileExt(out, in, key.data(), dir, mode, iv, options);
    case Cipher::Tdea: return TDEA_FileExt(out, in, key.data(), dir, mode, iv, options);
    case Cipher::Blf: return BLF_FileExt(out, in, key.data(), int32_t(key.size()), dir, mode, iv, options);
    }
    return -1;
}

inline int32_t FileCall(Cipher c, const char* out, const char* in, const ByteVec& key, int32_t dir, const char* mode,
                        const uint8_t* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_File(out, in, key.data(), dir, mode, iv);
    case Cipher::Aes192: return AES192_File(out, in, key.data(), dir, mode, iv);
    case Cipher::Aes256: return AES256_File(out, in, key.data(), dir, mode, iv);
    case Cipher::Des: return DES_File(out, in, key.data(), dir, mode, iv);
    case Cipher::Tdea: return TDEA_File(out, in, key.data(), dir, mode, iv);
    case Cipher::Blf: return BLF_File(out, in, key.data(), int32_t(key.size()), dir, mode, iv);
    }
    return -1;
}

inline int32_t FileHexCall(Cipher c, const char* out, const char* in, const char* key, int32_t dir, const char* mode,
                           const char* iv) {
    switch (c) {
    case Cipher::Aes128: return AES128_FileHex(out, in, key, dir, mode, iv);
    case Cipher::Aes192: return AES192_FileHex(out, in, key, dir, mode, iv);
    case Cipher::Aes256: return AES256_FileHex(out, in, key, dir, mode, iv);
    case Cipher::Des: return DES_FileHex(out, in, key, dir, mode, iv);
    case Cipher::Tdea: return TDEA_FileHex(out, in, key, dir, mode, iv);
    case Cipher::Blf: return BLF_FileHex(out, in, key, dir, mode, iv);
    }
    return -1;
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
