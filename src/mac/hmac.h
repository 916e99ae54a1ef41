// HMAC (FIPS 198-1, RFC 2104) over the library's digests, without the frame.
#pragma once
#include <cstdint>

#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha512.h"

// Pads are sized for the widest block (the SHA3-224 rate, 144 bytes).
constexpr uint32_t kHmacMaxBlock = 144;

union HmacDigestContext {
    Sha1Context sha1;
    Sha256Context sha256;
    Sha512Context sha512;
};

struct HmacContext {
    uint8_t innerPad[kHmacMaxBlock];
    uint8_t outerPad[kHmacMaxBlock];
    HmacDigestContext digest;
};

// One-shot codes; output must hold the whole code.
void HmacSha1(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
              uint32_t keyLength);
void HmacSha224(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength);
void HmacSha256(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength);
void HmacSha384(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength);
void HmacSha512(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength);

// Streaming pairs: Start builds both pads and feeds the inner one to the
// running digest; the caller then feeds the message with the digest's own
// update (e.g. Sha512Update(&ctx->digest.sha512, ...)); Finish writes the
// code and wipes the context.
void HmacSha1Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength);
void HmacSha1Finish(uint8_t* output, HmacContext* ctx);
void HmacSha224Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength);
void HmacSha224Finish(uint8_t* output, HmacContext* ctx);
void HmacSha256Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength);
void HmacSha256Finish(uint8_t* output, HmacContext* ctx);
void HmacSha384Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength);
void HmacSha384Finish(uint8_t* output, HmacContext* ctx);
void HmacSha512Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength);
void HmacSha512Finish(uint8_t* output, HmacContext* ctx);
