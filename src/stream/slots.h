// Per-thread context slots of this subsystem, held by value in ThreadState.
#pragma once
#include <cstdint>

#include "stream/arcfour.h"
#include "stream/chacha20.h"
#include "stream/salsa20.h"

// The one incremental stream of a thread (CIPHER_StreamInit ... Final).
struct StreamSlot {
    int32_t alg;  // 1 ARCFOUR, 2 Salsa20, 3 ChaCha20; 0 empty; -1 after a failed init
    union {
        ArcfourState arcfour;
        Salsa20State salsa20;
        Chacha20State chacha20;
    } cipher;
    uint8_t keystream[64];  // the open key stream block of Salsa20 or ChaCha20
    uint32_t keystreamPos;  // bytes of it used; 0 means no block is open
    uint32_t handle;
};
