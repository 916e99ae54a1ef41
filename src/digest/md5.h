// MD5 (RFC 1321). Kept for the callers that still name it; not for new keys.
#pragma once
#include <cstdint>

struct Md5Context {
    uint32_t h[4];
    uint32_t countLow;   // bit count, low half
    uint32_t countHigh;  // bit count, high half
    uint8_t block[64];
};

void Md5Start(Md5Context* ctx);
void Md5Update(Md5Context* ctx, const uint8_t* data, uint32_t length);
// Writes 16 bytes, then zeroes the whole record.
void Md5Final(uint8_t* output, Md5Context* ctx);
void Md5Compress(uint32_t h[4], const uint8_t* block);
