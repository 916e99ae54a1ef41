// Small helpers shared by the black-box tests.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "verimond.h"

inline std::vector<uint8_t> FromHex(const std::string& hex) {
    std::vector<uint8_t> out(hex.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = uint8_t(std::stoul(hex.substr(2 * i, 2), nullptr, 16));
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
inline int32_t Len(const std::string& s) { return int32_t(s.size()); }
