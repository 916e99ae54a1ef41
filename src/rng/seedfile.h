// Seed files: 128 bytes of raw generator output carried from one run to the
// next, rewritten in place under a byte-range lock at each use.
#pragma once
#include <cstdint>

#include "rng/drbg_state.h"

constexpr uint32_t kSeedFileSize = 128;

// The lock is tried this many times, delayMs apart, before -PRNG_ERR_FILE_LOCK.
struct SeedLockRetry {
    int tries;
    int delayMs;
};
extern SeedLockRetry g_seedLockRetry;  // {10, 1000}; tests shorten the delay

// Writes 128 fresh bytes (generated with the additional input) to a new or
// truncated file. 0, -202 (create), -205 (lock) or -204 (short write).
int32_t SeedFileCreate(DrbgState* state, const char* fileName, const uint8_t* additional, uint32_t additionalLength);
// Reseeds from the file's first 128 bytes (missing bytes read as zeros) and
// writes 128 fresh bytes over them; bytes beyond 128 stay. A missing or
// unopenable file gives -201, or with createIfMissing the result of
// SeedFileCreate. -205 when the lock is not had, -204 on a short write.
int32_t SeedFileUpdate(DrbgState* state, const char* fileName, bool createIfMissing);
