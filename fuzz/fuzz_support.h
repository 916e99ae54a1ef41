// Helpers for the fuzz targets: reading choices from the input, buffers of an
// exact size (so that the address checker sees a single byte too many), and
// property checks that stop the run with a message.
#pragma once
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "verimond.h"

#define FUZZ_CHECK(cond)                                                              \
    do {                                                                              \
        if (!(cond)) {                                                                \
            std::fprintf(stderr, "%s:%d: property failed: %s\n", __FILE__, __LINE__, #cond); \
            std::abort();                                                             \
        }                                                                             \
    } while (0)

// Takes choices from the front of the input; what is left is the payload.
class Reader {
public:
    Reader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    uint8_t Byte() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }
    // A length from 0 to limit, from two bytes.
    size_t Length(size_t limit) {
        size_t v = size_t(Byte()) << 8 | Byte();
        return limit == 0 ? 0 : v % (limit + 1);
    }
    std::vector<uint8_t> Bytes(size_t n) {
        n = n < size_ ? n : size_;
        std::vector<uint8_t> out(data_, data_ + n);
        data_ += n;
        size_ -= n;
        return out;
    }
    std::vector<uint8_t> Rest() { return Bytes(size_); }
    // The rest as text, cut at the first NUL as a C caller would see it.
    std::string Text() {
        std::vector<uint8_t> rest = Rest();
        std::string s(rest.begin(), rest.end());
        return s.substr(0, s.find('\0'));
    }
    size_t Left() const { return size_; }

private:
    const uint8_t* data_;
    size_t size_;
};

// Heap bytes of exactly n (at least one allocation, so a pointer exists even
// for n 0); writing past n is caught by the address checker.
class Exact {
public:
    explicit Exact(size_t n) : n_(n), p_(static_cast<uint8_t*>(std::malloc(n == 0 ? 1 : n))) {
        std::memset(p_, 0xA5, n == 0 ? 1 : n);
    }
    ~Exact() { std::free(p_); }
    Exact(const Exact&) = delete;
    Exact& operator=(const Exact&) = delete;
    uint8_t* data() { return p_; }
    char* text() { return reinterpret_cast<char*>(p_); }
    size_t size() const { return n_; }

private:
    size_t n_;
    uint8_t* p_;
};

// A pointer for a byte string that stays readable when the string is empty:
// the calls refuse a null pointer with a length, and the checks here mean the
// case of an empty string that the caller does hold.
inline const uint8_t* Ptr(const std::vector<uint8_t>& v) {
    static const uint8_t none = 0;
    return v.empty() ? &none : v.data();
}

inline bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Even-length text of hex digits only (the empty text included).
inline bool IsStrictHex(const std::string& s) {
    if (s.size() % 2 != 0) return false;
    for (char c : s)
        if (!IsHexDigit(c)) return false;
    return true;
}

inline std::vector<uint8_t> DecodeStrictHex(const std::string& s) {
    std::vector<uint8_t> out(s.size() / 2);
    for (size_t i = 0; i < out.size(); ++i) out[i] = uint8_t(std::stoul(s.substr(2 * i, 2), nullptr, 16));
    return out;
}
