// ARCFOUR: the published key schedule and generator, any key length from 1
// byte, no bytes dropped from the start. Not constant-time (its tables are
// indexed by secret bytes); kept for compatibility only.
#pragma once
#include <cstddef>
#include <cstdint>

struct ArcfourState {
    uint8_t perm[256];
    uint32_t i;  // both held below 256
    uint32_t j;
};

// keyLength must be at least 1; callers screen it.
void ArcfourSetup(ArcfourState* state, const uint8_t* key, size_t keyLength);
// One byte at a time; i and j carry the stream across calls.
void ArcfourXor(ArcfourState* state, uint8_t* output, const uint8_t* input, size_t count);
// Set-up, XOR, wipe. Returns the positive BAD_PARAM_ERROR (6), whatever the
// caller's result style, for a negative count, a key length below 1, an
// absent key, or absent data with a non-zero count; else 0.
int32_t ArcfourOneShot(uint8_t* output, const uint8_t* input, int32_t count, const uint8_t* key,
                       int32_t keyLength);
