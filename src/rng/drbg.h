// The per-thread HMAC_DRBG with SHA-512 (SP 800-90A, no prediction
// resistance). It instantiates itself on first use, reseeds itself from the
// shared pools whenever they are ready, and carries a hidden continuous test.
// Results are 0 or a negative PRNG_ERR_ code unless stated.
#pragma once
#include <cstdint>

#include "rng/drbg_state.h"

constexpr uint32_t kDrbgMaxRequest = 65536;
constexpr uint32_t kDrbgReseedBound = 0x40000000;
constexpr uint32_t kDrbgMaxAdditional = 64;  // used by one generate; the rest is ignored there
constexpr int32_t kDrbgFailed = -299;         // -PRNG_ERR_CATASTROPHIC
constexpr int32_t kDrbgTooBig = -211;         // -PRNG_ERR_TOOBIG
constexpr int32_t kDrbgUninstFailed = -210;   // -PRNG_ERR_UNINST

// One piece of provided data; pieces are hashed in order as if joined, so no
// joint buffer exists and no length can overflow one.
struct DrbgInput {
    const uint8_t* data;
    uint32_t length;
};

// K = HMAC(K, V || 0x00 || provided), V = HMAC(K, V), and with provided data
// a second round with 0x01.
void DrbgUpdate(const uint8_t* provided, uint32_t providedLength, uint8_t key[64], uint8_t value[64]);
void DrbgUpdateParts(const DrbgInput* parts, int count, uint8_t key[64], uint8_t value[64]);

// K = 0x00.., V = 0x01.., update with entropy || nonce || personalisation,
// counter 1. The shadow output is left as it is.
void DrbgRawInstantiate(DrbgState* state, const uint8_t* entropy, uint32_t entropyLength, const uint8_t* nonce,
                        uint32_t nonceLength, const uint8_t* personalisation, uint32_t personalisationLength);
// Update with entropy || additional (all of it), counter 1.
void DrbgReseed(DrbgState* state, const uint8_t* entropy, uint32_t entropyLength, const uint8_t* additional,
                uint32_t additionalLength);
// The plain generate: additional input cut to 64 bytes, blocks of V, the
// closing update, counter + 1. No limit is applied here. Returns 0.
int32_t DrbgRawGenerate(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                        uint32_t additionalLength);
// Compares the head of output (8 bytes, zero-padded) with the hidden block
// of the previous request, then makes the next hidden block. 1 passes, 0
// fails. A null output only makes the hidden block.
int DrbgContinuousCheck(DrbgState* state, const uint8_t* output, uint32_t length);

// First use: shared link, hardware detection, health check at depth 0, a
// forced draw from the pools, fingerprint and time nonce, instantiate, and
// the hardware words when the machine has them.
int32_t DrbgInstantiate(DrbgState* state);
// DrbgInstantiate followed by a first hidden block, as every request path
// does, so the first request's continuous test compares against a real one.
int32_t DrbgInstantiatePrimed(DrbgState* state);
// The full request: limit, stirs, instantiation on first use, a reseed from
// the pools when they are ready (forced at the counter bound), generate, the
// continuous test (-299 on failure, the output already written), the
// additional input into the pools.
int32_t DrbgGenerate(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                     uint32_t additionalLength);
// Eight hardware words into an update; counter 1; the words go to the pools.
// -1 for a hardware word below 1.
int32_t HardwareEntropyMix(DrbgState* state, int32_t hardware);

// Wipes the state; 0 or -PRNG_ERR_UNINST.
int32_t DrbgUninstantiate(DrbgState* state);

// Known answers of the published HMAC_DRBG SHA-512 sets (256-bit entropy,
// 128-bit nonce, 256-bit personalisation and additional input, 2048 bits).
struct DrbgKnownAnswer {
    uint8_t entropy[32], nonce[16], personalisation[32];
    uint8_t instantiateKey[64], instantiateValue[64];
    uint8_t reseedEntropy[32], reseedAdditional[32];
    uint8_t reseedKey[64], reseedValue[64];
    uint8_t additional1[32];
    uint8_t generate1Key[64], generate1Value[64];
    uint8_t additional2[32];
    uint8_t returned[256];
    uint8_t generate2Key[64], generate2Value[64];
};
extern const DrbgKnownAnswer kDrbgHealthVector;

// Known-answer health check at depth 0, 1 or 2; 0 or -PRNG_ERR_CATASTROPHIC.
int32_t DrbgHealthCheck(int depth);
// The same against a given vector (tests use damaged copies).
int32_t DrbgHealthCheckWith(const DrbgKnownAnswer& vector, int depth);
