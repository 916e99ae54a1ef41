// Per-thread context slots of this subsystem, held by value in ThreadState.
// Each holds the cipher's record, the handle that names it (0: no context)
// and the status of the family's last Init on this thread.
#pragma once
#include <cstdint>

#include "block/aes.h"
#include "block/blowfish.h"
#include "block/des.h"

// Shared by AES128_, AES192_ and AES256_.
struct AesSlot {
    AesContext context;
    uint32_t handle;
    int32_t lastInitResult;
};

struct DesSlot {
    DesContext context;
    uint32_t handle;
    int32_t lastInitResult;
};

struct TdeaSlot {
    TdeaContext context;
    uint32_t handle;
    int32_t lastInitResult;
};

struct BlfSlot {
    BlfContext context;
    uint32_t handle;
    int32_t lastInitResult;
};
