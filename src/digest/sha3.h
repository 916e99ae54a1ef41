// The Keccak-f[1600] sponge: SHA3-224/256/384/512 (FIPS 202), SHAKE128/256
// and the KMAC front end all run on this one record.
#pragma once
#include <cstddef>
#include <cstdint>

struct Sha3Context {
    uint64_t state[25];    // lane (x, y) at x + 5y, little-endian lanes
    uint8_t block[200];    // partial input block, sized for the widest rate
    uint32_t buffered;     // bytes in block; below rate between calls
    uint32_t digestLength; // output bytes; 0 for SHAKE
    uint32_t rate;         // bytes
    uint32_t laneCount;    // rate / 8
    uint32_t marker;       // 0xDEADBEEF once started; nothing reads it
};

constexpr uint32_t kSha3Marker = 0xDEADBEEFu;

// Both zero the whole record first. 224, 256, 384 or 512 for the digests;
// 128 or 256 for SHAKE. Any other value leaves rate and digestLength at 0
// and returns -1; 0 on success.
int Sha3Start(Sha3Context* ctx, uint32_t bits);
int ShakeStart(Sha3Context* ctx, uint32_t bits);
// Any length, 0 included; returns the new buffered count.
uint32_t Sha3Absorb(Sha3Context* ctx, const uint8_t* data, uint32_t length);
// Pads with 0x06, writes min(digestLength, capacity) bytes, returns that
// count and wipes the record.
uint32_t Sha3Finish(uint8_t* output, uint32_t capacity, Sha3Context* ctx);
// A whole sponge in one call, on the stack: the message, padded with
// domainByte (as SpongeFinish), then outputLength bytes, at least 1.
void SpongeOneShot(uint8_t* output, uint32_t outputLength, uint32_t rate, uint8_t domainByte,
                   const uint8_t* message, size_t length);
// SHA3-224/256/384/512 in one call: writes bits / 8 bytes and returns that
// count (0 for any other bits).
uint32_t Sha3Digest(uint8_t out[64], uint32_t bits, const uint8_t* message, size_t length);
// Pads with domainByte (0x1F SHAKE, 0x04 KMAC), squeezes outputLength bytes,
// wipes the record, returns outputLength.
uint32_t SpongeFinish(uint8_t* output, uint32_t outputLength, Sha3Context* ctx, uint8_t domainByte);

// The pieces of the finals, for the bit-oriented final: XOR the rate's lanes
// of block into the state and permute; copy out min(rate, wanted) per
// permutation.
void Sha3AbsorbBlock(Sha3Context* ctx);
void Sha3Squeeze(uint8_t* output, uint32_t outputLength, Sha3Context* ctx);
// The permutation, on the fastest path the processor offers.
void KeccakF1600(uint64_t state[25]);
// The portable form, always available; the reference for the fast path.
void KeccakF1600Reference(uint64_t state[25]);
