#include "digest/digest.h"

#include <cstring>

#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha512.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
struct DigestRow {
    int8_t outputLength;
    uint8_t blockLength;
};
// Indexed by the low nibble; 9 and 14 are unassigned, 15 is decided by the low byte.
constexpr DigestRow kDigestRows[16] = {
    {20, 64}, {16, 64}, {16, 16}, {32, 64},  {48, 128}, {64, 128}, {28, 64}, {20, 64},
    {20, 64}, {0, 0},   {28, 144}, {32, 136}, {48, 104}, {64, 72},  {0, 0},   {32, 8},
};

bool IsAsconOption(int32_t options) {
    int32_t low = options & 0xFF;
    return low == OPT_HASH_ASCON_HASH || low == OPT_HASH_ASCON_HASHA;
}
}  // namespace

int32_t DigestOutputLength(int32_t nibble) { return kDigestRows[nibble & 15].outputLength; }
int32_t DigestBlockLength(int32_t nibble) { return kDigestRows[nibble & 15].blockLength; }

int32_t DigestRaw(uint8_t out[64], const uint8_t* message, uint32_t length, int32_t options) {
    switch (options & kDigestNibbleMask) {
        case OPT_HASH_SHA1: {
            Sha1Context ctx;
            Sha1Start(&ctx);
            Sha1Update(&ctx, message, length);
            Sha1Final(out, &ctx);
            return 20;
        }
        case OPT_HASH_SHA256: {
            Sha256Context ctx;
            Sha256Start(&ctx);
            Sha256Update(&ctx, message, length);
            Sha256Final(out, &ctx);
            return 32;
        }
        case OPT_HASH_SHA224: {
            Sha256Context ctx;
            Sha224Start(&ctx);
            Sha256Update(&ctx, message, length);
            Sha224Final(out, &ctx);
            return 28;
        }
        case OPT_HASH_SHA384: {
            Sha512Context ctx;
            Sha384Start(&ctx);
            Sha512Update(&ctx, message, length);
            return Sha384Final(out, &ctx);
        }
        case OPT_HASH_SHA512: {
            Sha512Context ctx;
            Sha512Start(&ctx);
            Sha512Update(&ctx, message, length);
            return Sha512Final(out, &ctx);
        }
        case kDigestAsconNibble:
            if (!IsAsconOption(options)) return 0;
            return -NOT_SUPPORTED_ERROR;
        case 9:
        case 14:
            return -BAD_FLAG_ERROR;
        default:
            return -NOT_SUPPORTED_ERROR;
    }
}

int32_t DigestBytes(uint8_t* output, int32_t outputLength, const uint8_t* message,
                    int32_t messageLength, int32_t options) {
    if (messageLength < 0 || (messageLength > 0 && message == nullptr)) return -BAD_PARAM_ERROR;
    uint8_t scratch[64] = {};
    int32_t length = DigestRaw(scratch, message, uint32_t(messageLength), options);
    if (length < 0) return length;
    int32_t nibble = options & kDigestNibbleMask;
    if (nibble == kDigestAsconNibble && length == 0) {
        // An unknown low byte under nibble 15 is no failure: the caller's
        // length stands for the digest length and the (zero) scratch is handed
        // on, never more than its 64 bytes.
        length = outputLength;
        if (output != nullptr && outputLength > 0) {
            std::memset(output, 0, size_t(outputLength));
        }
        return length;
    }
    if ((options & OPT_HASH_DOUBLE) != 0 && nibble <= 7) {
        uint8_t first[64];
        std::memcpy(first, scratch, size_t(length));
        DigestRaw(scratch, first, uint32_t(length), options);
        SecureWipe(first, sizeof first);
    }
    int32_t result = length;
    if (output != nullptr && outputLength > 0) {
        result = outputLength < length ? outputLength : length;
        std::memcpy(output, scratch, size_t(result));
    }
    SecureWipe(scratch, sizeof scratch);
    return result;
}

int32_t DigestLength(int32_t options) {
    int32_t nibble = options & kDigestNibbleMask;
    if (nibble == kDigestAsconNibble) return IsAsconOption(options) ? 32 : options;
    int32_t length = kDigestRows[nibble].outputLength;
    return length == 0 ? -BAD_FLAG_ERROR : length;
}
