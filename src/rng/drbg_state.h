// The per-thread HMAC_DRBG (SHA-512) record; the last field of ThreadState.
#pragma once
#include <cstdint>

struct SharedRngState;

struct DrbgState {
    uint8_t key[64];         // HMAC key K
    uint8_t value[64];       // V
    uint32_t reseedCounter;  // 0: not instantiated
    uint8_t shadowOutput[8]; // head of the hidden block of the continuous test
    SharedRngState* shared;  // linked on first use
};
