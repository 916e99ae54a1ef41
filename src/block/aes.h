// AES (FIPS 197): key expansion and the one-block transforms, table-driven.
// Not constant-time: the table lookups depend on key and data. The core keeps
// no state of its own; modes live in the engine (mode_engine.h).
#pragma once
#include <cstddef>
#include <cstdint>

struct AesContext {
    uint32_t direction;       // as the caller gave it: non-zero encrypts
    uint32_t mode;            // engine mode 0..4
    uint32_t keyBits;         // 128, 192 or 256
    uint32_t roundKeys[60];   // room for the AES-256 schedule
    uint32_t rounds;          // 10, 12 or 14
    uint8_t iv[16];           // CBC chaining value, CFB/OFB register or CTR counter
    uint8_t initialIv[16];    // the IV as given; written, never read
};

// Round-key words hold key bytes big-endian. Both return the round count, or
// 0 when keyBits is not 128, 192 or 256. keyBits/8 key bytes are read.
int AesSetEncryptKey(uint32_t* schedule, const uint8_t* key, int keyBits);
// The equivalent inverse cipher's schedule: reversed, with InvMixColumns
// applied to all round keys but the first and the last.
int AesSetDecryptKey(uint32_t* schedule, const uint8_t* key, int keyBits);
// input and output may be the same 16 bytes; any alignment.
void AesEncryptBlock(const uint32_t* schedule, int rounds, const uint8_t* input, uint8_t* output);
void AesDecryptBlock(const uint32_t* schedule, int rounds, const uint8_t* input, uint8_t* output);

// Set-up for an engine mode: 0, BAD_IV_ERROR, BAD_MODE_ERROR,
// BAD_KEY_LEN_ERROR (keyLength other than 16, 24, 32) or BAD_KEY_ERROR (null
// key). iv may be null in ECB; otherwise 16 bytes are read.
int AesSetupMode(AesContext* context, int32_t mode, const uint8_t* key, size_t keyLength,
                 int32_t direction, const uint8_t* iv);
// 0, BAD_LENGTH_ERROR (ECB/CBC and not whole blocks), BAD_MODE_ERROR, or
// NULL_ERROR for a null buffer with data. output and input are the same
// buffer or do not overlap. The register carries over to the next call.
int AesProcess(AesContext* context, uint8_t* output, const uint8_t* input, size_t length);
// Zeroes the whole record; null is ignored.
void AesWipeContext(AesContext* context);

// Tables in aes_tables.cpp.
extern const uint32_t kTe0[256], kTe1[256], kTe2[256], kTe3[256], kTe4[256];
extern const uint32_t kTd0[256], kTd1[256], kTd2[256], kTd3[256], kTd4[256];
extern const uint32_t kAesRoundConstants[10];
