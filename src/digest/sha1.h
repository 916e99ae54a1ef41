// SHA-1 (FIPS 180-4). Also the start routine of RIPEMD-160, which shares the
// record and the five start words.
#pragma once
#include <cstddef>
#include <cstdint>

struct Sha1Context {
    uint32_t h[5];
    uint32_t countLow;   // bit count, low half
    uint32_t countHigh;  // bit count, high half
    uint8_t block[64];
};

void Sha1Start(Sha1Context* ctx);
void Sha1Update(Sha1Context* ctx, const uint8_t* data, uint32_t length);
// Writes 20 bytes. Clears only the first four bytes of the record: the owner
// of the context decides on any further wiping.
void Sha1Final(uint8_t* output, Sha1Context* ctx);
// One 64-byte block into the chaining words, on the fastest path the
// processor offers.
void Sha1Compress(uint32_t h[5], const uint8_t* block);
// Whole blocks straight from data, likewise.
void Sha1CompressBlocks(uint32_t h[5], const uint8_t* data, size_t blocks);
// The portable form, always available; the reference for the fast paths.
void Sha1BlocksPortable(uint32_t h[5], const uint8_t* data, size_t blocks);
