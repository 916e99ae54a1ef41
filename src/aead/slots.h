// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

#include "aead/gcm.h"

// The GCM_ key of a thread: its expanded tables, reused for every message.
struct GcmSlot {
    GcmKeyTables tables;
    uint32_t handle;
};

struct AeadSlot {
    uint32_t handle;
};
