// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

struct CipherSlot {
    uint32_t handle;
};

