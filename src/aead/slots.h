// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

struct GcmSlot {
    uint32_t handle;
};

struct AeadSlot {
    uint32_t handle;
};

