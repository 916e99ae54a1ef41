// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

struct Sha1Slot {
    uint32_t handle;
};

struct Sha2Slot {
    uint32_t handle;
};

struct Md5Slot {
    uint32_t handle;
};

struct Sha3Slot {
    uint32_t handle;
};

struct HashSlot {
    uint32_t handle;
};

