#include "digest/hash_stream.h"

#include <cstring>

#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
bool Streams(int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1:
        case OPT_HASH_SHA256:
        case OPT_HASH_SHA384:
        case OPT_HASH_SHA512:
        case OPT_HASH_SHA224:
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: return true;
        default: return false;
    }
}
}  // namespace

int32_t HashStreamInit(HashSlot* slot, int32_t options) {
    slot->handle = 0;
    int32_t nibble = options & kDigestNibbleMask;
    if (!Streams(nibble)) return -NOT_SUPPORTED_ERROR;
    DigestStart(&slot->context, nibble);
    slot->algorithm = uint32_t(nibble);
    slot->handle = NewHandle();
    return int32_t(slot->handle);
}

int32_t HashStreamAdd(HashSlot* slot, int32_t handle, const uint8_t* data, int32_t dataLength) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    if (data == nullptr || dataLength < 0) return -BAD_PARAM_ERROR;
    if (!Streams(int32_t(slot->algorithm))) return -NOT_SUPPORTED_ERROR;
    DigestUpdate(&slot->context, int32_t(slot->algorithm), data, uint32_t(dataLength));
    return 0;
}

int32_t HashStreamFinal(HashSlot* slot, uint8_t* output, int32_t outputLength, int32_t handle) {
    if (output == nullptr || outputLength < 1) return -BAD_PARAM_ERROR;
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    uint8_t digest[64];
    int32_t length = DigestFinish(digest, &slot->context, int32_t(slot->algorithm));
    int32_t count = outputLength < length ? outputLength : length;
    std::memcpy(output, digest, size_t(count));
    SecureWipe(digest, sizeof digest);
    // What is cut off is gone: the whole record goes, handle and algorithm too.
    WipeObject(*slot);
    return count;
}

int32_t HashStreamDigestLength(const HashSlot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    return DigestOutputLength(int32_t(slot->algorithm));
}

int32_t HashStreamReset(HashSlot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    WipeObject(*slot);
    return 0;
}
