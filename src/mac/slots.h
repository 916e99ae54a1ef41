// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

#include "mac/hmac.h"

// The MAC_ stream: HMAC over one of the nine digests that stream. handle is
// 0 while no stream is open.
struct MacSlot {
    uint32_t algorithm;  // the option's low twelve bits
    HmacContext context;
    uint32_t handle;
};
