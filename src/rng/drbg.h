// The per-thread HMAC_DRBG with SHA-512.
#pragma once
#include <cstdint>

#include "rng/drbg_state.h"

// Wipes the state; 0 or -PRNG_ERR_UNINST.
int32_t DrbgUninstantiate(DrbgState* state);
// Known-answer health check at depth 0, 1 or 2; 0 or -PRNG_ERR_CATASTROPHIC.
int32_t DrbgHealthCheck(int depth);
