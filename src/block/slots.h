// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

struct AesSlot {
    uint32_t handle;
    int32_t lastInitResult;
};

struct DesSlot {
    uint32_t handle;
    int32_t lastInitResult;
};

struct TdeaSlot {
    uint32_t handle;
    int32_t lastInitResult;
};

struct BlfSlot {
    uint32_t handle;
    int32_t lastInitResult;
};

