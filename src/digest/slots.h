// Per-thread context slots of this subsystem, held by value in ThreadState.
// handle is 0 while no stream is open.
#pragma once
#include <cstdint>

#include "digest/digest.h"

struct Sha1Slot {
    Sha1Context context;
    uint32_t handle;
};

struct Sha2Slot {
    Sha256Context context;  // SHA-256 only
    uint32_t handle;
};

struct Md5Slot {
    Md5Context context;
    uint32_t handle;
};

struct Sha3Slot {
    Sha3Context context;
    uint32_t handle;
};

// The HASH_ stream: only nibbles 0, 3, 4, 5, 6 and 10 to 13 are ever opened
// here, but the context is the common one of the dispatcher.
struct HashSlot {
    uint32_t algorithm;  // the option's low four bits
    DigestAnyContext context;
    uint32_t handle;
};
