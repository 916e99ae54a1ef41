// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

#include "aead/chachapoly.h"
#include "aead/gcm.h"

// The GCM_ key of a thread: its expanded tables, reused for every message.
struct GcmSlot {
    GcmKeyTables tables;
    uint32_t handle;
};

// The incremental AEAD_ context of a thread.
struct AeadSlot {
    int32_t alg;  // 0 empty; 1, 2 or 29 when live; -1 after a failed AEAD_InitKey
    union {
        GcmStream gcm;
        ChaChaPolyStream chacha;
    } record;
    uint32_t handle;
};
