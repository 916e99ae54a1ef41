// The per-thread record: error latch, one context slot per stateful family,
// and the thread's random generator.
#pragma once
#include <cstdint>

#include "aead/slots.h"
#include "block/slots.h"
#include "cipher/slots.h"
#include "digest/slots.h"
#include "mac/slots.h"
#include "rng/drbg_state.h"
#include "stream/slots.h"

// One slot per family; the three AES families share one.
struct ContextArea {
    AesSlot aes;
    DesSlot des;
    TdeaSlot tdea;
    BlfSlot blf;
    Sha1Slot sha1;
    Sha2Slot sha2;
    Md5Slot md5;
    Sha3Slot sha3;
    GcmSlot gcm;
    StreamSlot stream;
    AeadSlot aead;
    HashSlot hash;
    MacSlot mac;
    CipherSlot cipher;
};

struct ThreadState {
    char errorDetail[512];  // reserved for a detail message; only ever cleared
    int32_t lastError;      // the latch: 0 or a positive value
    ContextArea contexts;
    DrbgState rng;          // the only field wiped when the thread ends
};
