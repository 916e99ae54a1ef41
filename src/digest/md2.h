// MD2 (RFC 1319). Only for reading old data; slow and weak by design.
#pragma once
#include <cstdint>

struct Md2Context {
    uint8_t state[16];
    uint8_t checksum[16];
    uint32_t count;  // bytes now in block
    uint8_t block[16];
};

void Md2Start(Md2Context* ctx);
void Md2Update(Md2Context* ctx, const uint8_t* data, uint32_t length);
// Writes 16 bytes, then zeroes the whole record.
void Md2Final(uint8_t* output, Md2Context* ctx);
