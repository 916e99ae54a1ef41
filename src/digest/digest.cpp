#include "digest/digest.h"

#include <cstring>

#include "aead/ascon.h"
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

uint32_t Sha3Bits(int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA3_224: return 224;
        case OPT_HASH_SHA3_256: return 256;
        case OPT_HASH_SHA3_384: return 384;
        default: return 512;
    }
}
}  // namespace

int32_t DigestOutputLength(int32_t nibble) { return kDigestRows[nibble & 15].outputLength; }
int32_t DigestBlockLength(int32_t nibble) { return kDigestRows[nibble & 15].blockLength; }

bool DigestStart(DigestAnyContext* ctx, int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1:
        case OPT_HASH_RMD160: Sha1Start(&ctx->sha1); return true;
        case OPT_HASH_MD5: Md5Start(&ctx->md5); return true;
        case OPT_HASH_MD2: Md2Start(&ctx->md2); return true;
        case OPT_HASH_SHA256:
        case OPT_HASH_RMD160_SHA256: Sha256Start(&ctx->sha256); return true;
        case OPT_HASH_SHA224: Sha224Start(&ctx->sha256); return true;
        case OPT_HASH_SHA384: Sha384Start(&ctx->sha512); return true;
        case OPT_HASH_SHA512: Sha512Start(&ctx->sha512); return true;
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: Sha3Start(&ctx->sha3, Sha3Bits(nibble)); return true;
        default: return false;
    }
}

void DigestUpdate(DigestAnyContext* ctx, int32_t nibble, const uint8_t* data, uint32_t length) {
    switch (nibble) {
        case OPT_HASH_SHA1: Sha1Update(&ctx->sha1, data, length); break;
        case OPT_HASH_RMD160: Ripemd160Update(&ctx->sha1, data, length); break;
        case OPT_HASH_MD5: Md5Update(&ctx->md5, data, length); break;
        case OPT_HASH_MD2: Md2Update(&ctx->md2, data, length); break;
        case OPT_HASH_SHA256:
        case OPT_HASH_SHA224:
        case OPT_HASH_RMD160_SHA256: Sha256Update(&ctx->sha256, data, length); break;
        case OPT_HASH_SHA384:
        case OPT_HASH_SHA512: Sha512Update(&ctx->sha512, data, length); break;
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: Sha3Absorb(&ctx->sha3, data, length); break;
        default: break;
    }
}

int32_t DigestFinish(uint8_t out[64], DigestAnyContext* ctx, int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1: Sha1Final(out, &ctx->sha1); return 20;
        case OPT_HASH_RMD160: Ripemd160Final(out, &ctx->sha1); return 20;
        case OPT_HASH_MD5: Md5Final(out, &ctx->md5); return 16;
        case OPT_HASH_MD2: Md2Final(out, &ctx->md2); return 16;
        case OPT_HASH_SHA256: Sha256Final(out, &ctx->sha256); return 32;
        case OPT_HASH_SHA224: Sha224Final(out, &ctx->sha256); return 28;
        case OPT_HASH_SHA384: return Sha384Final(out, &ctx->sha512);
        case OPT_HASH_SHA512: return Sha512Final(out, &ctx->sha512);
        case OPT_HASH_RMD160_SHA256: {
            uint8_t inner[32];
            Sha256Final(inner, &ctx->sha256);
            Ripemd160Context outer;
            Ripemd160Start(&outer);
            Ripemd160Update(&outer, inner, 32);
            Ripemd160Final(out, &outer);
            SecureWipe(inner, sizeof inner);
            return 20;
        }
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: return int32_t(Sha3Finish(out, 64, &ctx->sha3));
        default: return 0;
    }
}

int32_t DigestRaw(uint8_t out[64], const uint8_t* message, uint32_t length, int32_t options) {
    int32_t nibble = options & kDigestNibbleMask;
    switch (nibble) {
        case kDigestAsconNibble:
            if (!IsAsconOption(options)) return 0;
            AsconHash(out, message, length, (options & 0xFF) == OPT_HASH_ASCON_HASHA);
            return 32;
        case 9:
        case 14:
            return -BAD_FLAG_ERROR;
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: return int32_t(Sha3Digest(out, Sha3Bits(nibble), message, length));
        default: {
            // On the stack and not wiped afterwards: the digest is the output.
            DigestAnyContext ctx;
            DigestStart(&ctx, nibble);
            DigestUpdate(&ctx, nibble, message, length);
            return DigestFinish(out, &ctx, nibble);
        }
    }
}

void DigestApplyDouble(uint8_t digest[64], int32_t length, int32_t options) {
    if ((options & OPT_HASH_DOUBLE) == 0 || (options & kDigestNibbleMask) > 7) return;
    uint8_t first[64];
    std::memcpy(first, digest, size_t(length));
    DigestRaw(digest, first, uint32_t(length), options);
    SecureWipe(first, sizeof first);
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
    DigestApplyDouble(scratch, length, options);
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
