// SHA-512 and SHA-384 (FIPS 180-4): one core, two start routines.
#pragma once
#include <cstddef>
#include <cstdint>

struct Sha512Context {
    uint64_t h[8];
    uint64_t countLow;   // bit count, low 64 bits
    uint64_t countHigh;  // bit count, high 64 bits
    uint8_t block[128];
    uint32_t isSha384;  // 1 for SHA-384, 0 for SHA-512; no step reads it
};

void Sha512Start(Sha512Context* ctx);
void Sha384Start(Sha512Context* ctx);
void Sha512Update(Sha512Context* ctx, const uint8_t* data, uint32_t length);
// 64 bytes; returns 64. Clears only the first four bytes of the record.
int Sha512Final(uint8_t* output, Sha512Context* ctx);
// 48 bytes through a wiped stack buffer; returns 48.
int Sha384Final(uint8_t* output, Sha512Context* ctx);
// One 128-byte block into the chaining words, on the fastest path the
// processor offers.
void Sha512Compress(uint64_t h[8], const uint8_t* block);
// Whole blocks straight from data, likewise.
void Sha512CompressBlocks(uint64_t h[8], const uint8_t* data, size_t blocks);
// The portable form, always available; the reference for the fast paths.
void Sha512BlocksPortable(uint64_t h[8], const uint8_t* data, size_t blocks);
