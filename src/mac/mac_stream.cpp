// The thread's HMAC stream: one open context in the MAC slot, named by a
// handle. Final and Reset wipe the whole slot, handle and algorithm too.
#include <cstring>

#include "digest/digest.h"
#include "frame/memory.h"
#include "mac/mac.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// The nine digests that stream; the option's low twelve bits must name one
// exactly, so 0x13 is refused here though the one-shot calls read it as 3.
bool Streams(uint32_t algorithm) {
    switch (algorithm) {
        case OPT_HMAC_SHA1:
        case OPT_HMAC_SHA256:
        case OPT_HMAC_SHA384:
        case OPT_HMAC_SHA512:
        case OPT_HMAC_SHA224:
        case OPT_HMAC_SHA3_224:
        case OPT_HMAC_SHA3_256:
        case OPT_HMAC_SHA3_384:
        case OPT_HMAC_SHA3_512: return true;
        default: return false;
    }
}
}  // namespace

int32_t MacStreamInit(MacSlot* slot, const uint8_t* key, int32_t keyLength, int32_t options) {
    // No empty key here, and a bad key leaves an open stream alive.
    if (key == nullptr || keyLength < 1) return -BAD_PARAM_ERROR;
    slot->handle = 0;
    const uint32_t algorithm = uint32_t(options) & 0xFFFu;
    if (!Streams(algorithm)) return -NOT_SUPPORTED_ERROR;
    HmacStartByOption(&slot->context, int32_t(algorithm), key, uint32_t(keyLength));
    slot->algorithm = algorithm;
    slot->handle = NewHandle();
    return int32_t(slot->handle);
}

int32_t MacStreamAdd(MacSlot* slot, int32_t handle, const uint8_t* data, int32_t dataLength) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    if (data == nullptr || dataLength < 0) return -BAD_PARAM_ERROR;
    if (!Streams(slot->algorithm)) return -INTERNAL_ERROR;
    HmacUpdateByOption(&slot->context, int32_t(slot->algorithm), data, uint32_t(dataLength));
    return 0;
}

int32_t MacStreamFinal(MacSlot* slot, uint8_t* output, int32_t outputLength, int32_t handle) {
    if (output == nullptr || outputLength < 1) return -BAD_PARAM_ERROR;
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    uint8_t code[64];
    const int32_t length = HmacFinishByOption(code, &slot->context, int32_t(slot->algorithm));
    const int32_t count = outputLength < length ? outputLength : length;
    std::memcpy(output, code, size_t(count));
    SecureWipe(code, sizeof code);
    WipeObject(*slot);
    return count;
}

int32_t MacStreamCodeLength(const MacSlot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    if (!Streams(slot->algorithm)) return -INTERNAL_ERROR;
    return DigestOutputLength(int32_t(slot->algorithm));
}

int32_t MacStreamReset(MacSlot* slot, int32_t handle) {
    if (!HandleMatches(slot->handle, handle)) return -INVALID_HANDLE_ERROR;
    WipeObject(*slot);
    return 0;
}
