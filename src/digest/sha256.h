// SHA-256 and SHA-224 (FIPS 180-4): one core, two start routines.
#pragma once
#include <cstddef>
#include <cstdint>

struct Sha256Context {
    uint32_t h[8];
    uint32_t countLow;
    uint32_t countHigh;
    uint8_t block[64];
    uint32_t isSha224;  // set by the SHA-224 start; no step reads it
};

void Sha256Start(Sha256Context* ctx);
void Sha224Start(Sha256Context* ctx);
void Sha256Update(Sha256Context* ctx, const uint8_t* data, uint32_t length);
// 32 bytes; clears only the first four bytes of the record.
void Sha256Final(uint8_t* output, Sha256Context* ctx);
// 28 bytes, through a wiped 32-byte stack buffer.
void Sha224Final(uint8_t* output, Sha256Context* ctx);
// One 64-byte block into the chaining words, on the fastest path the
// processor offers.
void Sha256Compress(uint32_t h[8], const uint8_t* block);
// Whole blocks straight from data, likewise.
void Sha256CompressBlocks(uint32_t h[8], const uint8_t* data, size_t blocks);
// The portable form, always available; the reference for the fast paths.
void Sha256BlocksPortable(uint32_t h[8], const uint8_t* data, size_t blocks);
