// Bit-oriented finals. SHA-1 and SHA-2 append the marker bit right after the
// message bits of the last byte and count the extra bits; SHA-3 moves the
// bits to the low end (its bit order) and joins the domain and padding bits.
#include "digest/bit_digest.h"

#include <cstring>

#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha3.h"
#include "digest/sha512.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
inline void StoreBe(uint8_t* p, uint32_t v) { Store32Be(p, v); }
inline void StoreBe(uint8_t* p, uint64_t v) { Store64Be(p, v); }

// Merkle-Damgard final with b (1..7) message bits in lastByte. Block is 64
// or 128 bytes, the count takes an eighth of it (8 or 16 bytes).
template <typename Context, typename Word, uint32_t Block, void (*Compress)(Word*, const uint8_t*)>
void MdBitFinal(uint8_t* out, uint32_t digestLength, Context* ctx, uint8_t lastByte, uint32_t b) {
    constexpr uint32_t kCountBytes = Block / 8;
    uint32_t at = uint32_t(ctx->countLow >> 3) % Block;
    // The lower bits are the caller's to keep zero: a one there stays in the
    // message, and a one at the marker's place cancels the marker.
    ctx->block[at++] = uint8_t(lastByte ^ (0x80u >> b));
    if (at == Block) {
        Compress(ctx->h, ctx->block);
        at = 0;
    }
    std::memset(ctx->block + at, 0, Block - at);
    if (Block - at < kCountBytes) {
        Compress(ctx->h, ctx->block);
        std::memset(ctx->block, 0, Block);
    }
    Word low = Word(ctx->countLow + b);
    if (low < ctx->countLow) ++ctx->countHigh;
    ctx->countLow = low;
    StoreBe(ctx->block + Block - kCountBytes, ctx->countHigh);
    StoreBe(ctx->block + Block - kCountBytes / 2, ctx->countLow);
    Compress(ctx->h, ctx->block);
    for (uint32_t i = 0; i < digestLength / sizeof(Word); ++i) StoreBe(out + sizeof(Word) * i, ctx->h[i]);
}

void Sha3BitFinal(uint8_t* out, Sha3Context* ctx, uint8_t lastByte, uint32_t b) {
    uint32_t rate = ctx->rate;
    uint32_t at = ctx->buffered;
    // Message bits at the bottom, then the domain bits 0 1 and the first pad bit.
    uint32_t bits = (uint32_t(lastByte) >> (8 - b)) ^ (3u << (b + 1));
    uint8_t tail = uint8_t(3u >> (7 - b));  // what spills into the next byte (b = 6, 7)
    ctx->block[at] = uint8_t(bits);
    if (at == rate - 1 && b > 4) {
        // The first pad bit fell on or past the rate's last bit: the closing
        // pad bit needs a block of its own.
        Sha3AbsorbBlock(ctx);
        std::memset(ctx->block, 0, rate);
        ctx->block[0] = tail;
    } else {
        std::memset(ctx->block + at + 1, 0, rate - at - 1);
        if (tail != 0) ctx->block[at + 1] = tail;
    }
    ctx->block[rate - 1] |= 0x80;
    Sha3AbsorbBlock(ctx);
    Sha3Squeeze(out, ctx->digestLength, ctx);
}

uint32_t Sha3BitsOf(int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA3_224: return 224;
        case OPT_HASH_SHA3_256: return 256;
        case OPT_HASH_SHA3_384: return 384;
        default: return 512;
    }
}
}  // namespace

int32_t DigestBits(uint8_t out[64], const uint8_t* message, int32_t messageBits, int32_t options) {
    if (messageBits < 0 || message == nullptr) return -BAD_PARAM_ERROR;
    int32_t nibble = options & 0xF;
    uint32_t whole = uint32_t(messageBits) / 8;
    uint32_t b = uint32_t(messageBits) % 8;
    uint8_t last = b != 0 ? message[whole] : 0;
    switch (nibble) {
        case OPT_HASH_SHA1: {
            Sha1Context ctx;
            Sha1Start(&ctx);
            Sha1Update(&ctx, message, whole);
            if (b == 0) {
                Sha1Final(out, &ctx);
            } else {
                MdBitFinal<Sha1Context, uint32_t, 64, Sha1Compress>(out, 20, &ctx, last, b);
            }
            WipeObject(ctx);
            return 20;
        }
        case OPT_HASH_SHA224:
        case OPT_HASH_SHA256: {
            Sha256Context ctx;
            uint32_t length = nibble == OPT_HASH_SHA224 ? 28 : 32;
            if (length == 28) {
                Sha224Start(&ctx);
            } else {
                Sha256Start(&ctx);
            }
            Sha256Update(&ctx, message, whole);
            if (b != 0) {
                MdBitFinal<Sha256Context, uint32_t, 64, Sha256Compress>(out, length, &ctx, last, b);
            } else if (length == 28) {
                Sha224Final(out, &ctx);
            } else {
                Sha256Final(out, &ctx);
            }
            WipeObject(ctx);
            return int32_t(length);
        }
        case OPT_HASH_SHA384:
        case OPT_HASH_SHA512: {
            Sha512Context ctx;
            uint32_t length = nibble == OPT_HASH_SHA384 ? 48 : 64;
            if (length == 48) {
                Sha384Start(&ctx);
            } else {
                Sha512Start(&ctx);
            }
            Sha512Update(&ctx, message, whole);
            if (b != 0) {
                MdBitFinal<Sha512Context, uint64_t, 128, Sha512Compress>(out, length, &ctx, last, b);
            } else if (length == 48) {
                Sha384Final(out, &ctx);
            } else {
                Sha512Final(out, &ctx);
            }
            WipeObject(ctx);
            return int32_t(length);
        }
        case OPT_HASH_SHA3_224:
        case OPT_HASH_SHA3_256:
        case OPT_HASH_SHA3_384:
        case OPT_HASH_SHA3_512: {
            Sha3Context ctx;
            Sha3Start(&ctx, Sha3BitsOf(nibble));
            Sha3Absorb(&ctx, message, whole);
            int32_t length = int32_t(ctx.digestLength);
            if (b == 0) {
                Sha3Finish(out, 64, &ctx);
            } else {
                Sha3BitFinal(out, &ctx, last, b);
            }
            WipeObject(ctx);
            return length;
        }
        default:
            return -BAD_FLAG_ERROR;
    }
}
