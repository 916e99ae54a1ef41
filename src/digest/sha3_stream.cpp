#include "digest/sha3_stream.h"

#include "convert/codec.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

uint32_t Sha3StreamInit(Sha3Slot* slot, int32_t hashBitLength) {
    slot->handle = 0;
    // Any other value zeroes the record as well (a negative one included).
    if (Sha3Start(&slot->context, uint32_t(hashBitLength)) != 0) return 0;
    slot->handle = NewHandle();
    return slot->handle;
}

int32_t Sha3StreamAdd(Sha3Slot* slot, int32_t handle, const uint8_t* data, int32_t dataLength) {
    if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
    if (dataLength < 0 || (dataLength > 0 && data == nullptr)) return BAD_PARAM_ERROR;
    Sha3Absorb(&slot->context, data, uint32_t(dataLength));
    return 0;
}

int32_t Sha3StreamHexDigest(Sha3Slot* slot, char* output, int32_t outputLength, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    uint8_t digest[64];
    int32_t length = int32_t(Sha3Finish(digest, sizeof digest, &slot->context));
    slot->handle = 0;
    int32_t result = 2 * length;
    if (output != nullptr && outputLength >= 1) {
        result = int32_t(HexEncodeBoundedLower(output, size_t(outputLength) + 1, digest, size_t(length)));
    }
    SecureWipe(digest, sizeof digest);
    return result;
}

int32_t Sha3StreamLength(const Sha3Slot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    return int32_t(slot->context.digestLength);
}

int32_t Sha3StreamReset(Sha3Slot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
    WipeObject(slot->context);
    slot->handle = 0;
    return 0;
}
