// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

#include "block/aes.h"
#include "block/des.h"

// The CIPHER_Init context: which cipher, its record, and the handle that
// names it (0: no context). There is no lastInitResult: a failed Init
// reports through the latch only.
struct CipherSlot {
    int32_t algorithm;  // OPT_CIPHER_TDEA or one of the AES values; 0 when empty
    union {
        AesContext aes;
        TdeaContext tdea;
    } context;
    uint32_t handle;
};
