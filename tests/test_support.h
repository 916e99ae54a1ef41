// Small helpers shared by the black-box tests.
#pragma once
#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "verimond.h"

// Hex digits of either case; what is not a digit reads as 0.
inline std::vector<uint8_t> FromHex(const std::string& hex) {
    auto nibble = [](char c) -> uint8_t {
        if (c >= '0' && c <= '9') return uint8_t(c - '0');
        if (c >= 'a' && c <= 'f') return uint8_t(c - 'a' + 10);
        if (c >= 'A' && c <= 'F') return uint8_t(c - 'A' + 10);
        return 0;
    };
    std::vector<uint8_t> out(hex.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = uint8_t(nibble(hex[2 * i]) << 4 | nibble(hex[2 * i + 1]));
    return out;
}

inline std::string ToHex(const uint8_t* data, size_t n) {
    static const char* digits = "0123456789abcdef";
    std::string s;
    for (size_t i = 0; i < n; ++i) {
        s += digits[data[i] >> 4];
        s += digits[data[i] & 15];
    }
    return s;
}
inline std::string ToHex(const std::vector<uint8_t>& v) { return ToHex(v.data(), v.size()); }

inline const uint8_t* Bytes(const std::string& s) { return reinterpret_cast<const uint8_t*>(s.data()); }
// A literal outlives the statement, unlike a temporary string.
inline const uint8_t* Bytes(const char* s) { return reinterpret_cast<const uint8_t*>(s); }
inline int32_t Len(const std::string& s) { return int32_t(s.size()); }

using ByteVec = std::vector<uint8_t>;

// Bytes that differ along their length, for data whose value does not matter.
inline ByteVec Pattern(size_t n, uint8_t seed = 0) {
    ByteVec v(n);
    for (size_t i = 0; i < n; ++i) v[i] = uint8_t(seed + i * 29 + i / 7);
    return v;
}

inline ByteVec ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return ByteVec(std::istreambuf_iterator<char>(in), {});
}

// A fresh directory, removed with what it holds at the end.
struct TempDir {
    std::string path;
    TempDir() {
        char pattern[] = "/tmp/verimond_XXXXXX";
        path = mkdtemp(pattern);
    }
    ~TempDir() { std::filesystem::remove_all(path); }
    std::string File(const std::string& name) const { return path + "/" + name; }
    // Writes the file and returns its path.
    std::string Write(const std::string& name, const ByteVec& data) const {
        std::ofstream(File(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(data.data()), std::streamsize(data.size()));
        return File(name);
    }
    std::string Write(const std::string& name, const std::string& text) const {
        return Write(name, ByteVec(text.begin(), text.end()));
    }
};
