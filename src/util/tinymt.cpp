#include "util/tinymt.h"

namespace {
constexpr uint32_t kMat1 = 0x8f7011eeu;
constexpr uint32_t kMat2 = 0xfc78ff1fu;
constexpr uint32_t kTmat = 0x3793fdffu;
constexpr uint32_t kMask = 0x7fffffffu;

void NextState(TinyMt32State* s) {
    uint32_t y = s->status[3];
    uint32_t x = (s->status[0] & kMask) ^ s->status[1] ^ s->status[2];
    x ^= (x << 1);
    y ^= (y >> 1) ^ x;
    s->status[0] = s->status[1];
    s->status[1] = s->status[2];
    s->status[2] = x ^ (y << 10);
    s->status[3] = y;
    uint32_t m = 0u - (y & 1u);
    s->status[1] ^= m & kMat1;
    s->status[2] ^= m & kMat2;
}

uint32_t Temper(const TinyMt32State* s) {
    uint32_t t0 = s->status[3];
    uint32_t t1 = s->status[0] + (s->status[2] >> 8);
    t0 ^= t1;
    t0 ^= (0u - (t1 & 1u)) & kTmat;
    return t0;
}
}  // namespace

void TinyMt32Init(TinyMt32State* s, uint32_t seed) {
    s->status[0] = seed;
    s->status[1] = kMat1;
    s->status[2] = kMat2;
    s->status[3] = kTmat;
    for (uint32_t i = 1; i < 8; ++i) {
        uint32_t prev = s->status[(i - 1) & 3];
        s->status[i & 3] ^= i + 1812433253u * (prev ^ (prev >> 30));
    }
    if ((s->status[0] & kMask) == 0 && s->status[1] == 0 && s->status[2] == 0 && s->status[3] == 0) {
        s->status[0] = 'T';
        s->status[1] = 'I';
        s->status[2] = 'N';
        s->status[3] = 'Y';
    }
    for (int i = 0; i < 8; ++i) NextState(s);
}

uint32_t TinyMt32Next(TinyMt32State* s) {
    NextState(s);
    return Temper(s);
}
