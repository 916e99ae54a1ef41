// HMAC (FIPS 198-1, RFC 2104) over the library's digests, without the frame.
#pragma once
#include <cstdint>

#include "digest/md5.h"
#include "digest/ripemd160.h"
#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha3.h"
#include "digest/sha512.h"

// Pads are sized for the widest block (the SHA3-224 rate, 144 bytes).
constexpr uint32_t kHmacMaxBlock = 144;

union HmacDigestContext {
    Sha1Context sha1;  // also RIPEMD-160
    Sha256Context sha256;
    Sha512Context sha512;
    Md5Context md5;
    Sha3Context sha3;
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
void HmacMd5(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
             uint32_t keyLength);
void HmacRmd160(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength);
// bits is the digest length: 224, 256, 384 or 512. Returns the code length,
// or 0 (nothing written) for any other value.
int32_t HmacSha3(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                 uint32_t keyLength, uint32_t bits);

// The code for a digest option's low nibble into out (64 bytes of room):
// returns the code length, or -BAD_FLAG_ERROR for nibbles without HMAC (2, 8,
// 9 and above 13). Bits above the low nibble are ignored.
int32_t HmacByOption(uint8_t out[64], const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                     uint32_t keyLength, int32_t options);

// Streaming pairs: Start builds both pads and feeds the inner one to the
// running digest; the caller then feeds the message with the digest's own
// update (e.g. Sha512Update(&ctx->digest.sha512, ...), Sha3Absorb for
// SHA-3); Finish writes the code and wipes the context.
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
// SHA3-224/256/384/512 by bit length; Start returns false (and does nothing)
// for any other value. Finish reads the variant from the running digest and
// returns the code length.
bool HmacSha3Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength, uint32_t bits);
int32_t HmacSha3Finish(uint8_t* output, HmacContext* ctx);

// The same three steps chosen by a digest option's low nibble, for the nine
// digests that stream (0, 3, 4, 5, 6, 10 to 13). Start returns false for any
// other nibble and leaves the context alone; Finish returns the code length
// (out needs 64 bytes of room) and wipes the context.
bool HmacStartByOption(HmacContext* ctx, int32_t nibble, const uint8_t* key, uint32_t keyLength);
void HmacUpdateByOption(HmacContext* ctx, int32_t nibble, const uint8_t* data, uint32_t length);
int32_t HmacFinishByOption(uint8_t out[64], HmacContext* ctx, int32_t nibble);
