// Byte-order helpers shared by every core.
#pragma once
#include <cstdint>
#include <cstring>

inline uint32_t Load32Be(const uint8_t* p) {
    return (uint32_t(p[0]) << 24) | (uint32_t(p[1]) << 16) | (uint32_t(p[2]) << 8) | p[3];
}
inline uint32_t Load32Le(const uint8_t* p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;  // x86-64 and every supported target are little-endian
}
inline uint64_t Load64Be(const uint8_t* p) {
    return (uint64_t(Load32Be(p)) << 32) | Load32Be(p + 4);
}
inline uint64_t Load64Le(const uint8_t* p) {
    uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}
inline void Store32Be(uint8_t* p, uint32_t v) {
    p[0] = uint8_t(v >> 24);
    p[1] = uint8_t(v >> 16);
    p[2] = uint8_t(v >> 8);
    p[3] = uint8_t(v);
}
inline void Store32Le(uint8_t* p, uint32_t v) { std::memcpy(p, &v, 4); }
inline void Store64Be(uint8_t* p, uint64_t v) {
    Store32Be(p, uint32_t(v >> 32));
    Store32Be(p + 4, uint32_t(v));
}
inline void Store64Le(uint8_t* p, uint64_t v) { std::memcpy(p, &v, 8); }

inline uint32_t Rotl32(uint32_t x, int n) { return (x << n) | (x >> ((32 - n) & 31)); }
inline uint32_t Rotr32(uint32_t x, int n) { return (x >> n) | (x << ((32 - n) & 31)); }
inline uint64_t Rotl64(uint64_t x, int n) { return (x << n) | (x >> ((64 - n) & 63)); }
inline uint64_t Rotr64(uint64_t x, int n) { return (x >> n) | (x << ((64 - n) & 63)); }

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "little-endian targets only");
