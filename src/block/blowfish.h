// Blowfish: 16 rounds, keys of 0 to 56 bytes. Not constant-time (S-box
// lookups on data). One schedule serves both directions.
#pragma once
#include <cstddef>
#include <cstdint>

struct BlfContext {
    uint32_t direction;        // as the caller gave it: non-zero encrypts
    uint32_t mode;             // engine mode 0..4
    uint32_t sBoxes[4][256];   // S0..S3, keyed
    uint32_t pArray[18];       // P1..P18, keyed
    uint32_t iv[2];            // running register, IV bytes as big-endian words
    uint32_t initialIv[2];     // the IV as given; written, never read
};

constexpr size_t kBlfMaxKeyLength = 56;

// Keys the record from the constants; key bytes cycle, and a length of 0
// uses the one byte at key. Always 0.
int BlfSetKey(BlfContext* context, const uint8_t* key, size_t keyLength);
void BlfEncryptBlock(const BlfContext* context, uint32_t* left, uint32_t* right);
void BlfDecryptBlock(const BlfContext* context, uint32_t* left, uint32_t* right);

// Set-up: 0, BAD_IV_ERROR, BAD_MODE_ERROR, BAD_KEY_LEN_ERROR (above 56) or
// BAD_KEY_ERROR (null key). All modes use the same schedule.
int BlfSetupMode(BlfContext* context, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                 const uint8_t* iv);
// 0, BAD_LENGTH_ERROR or BAD_MODE_ERROR; as AesProcess.
int BlfProcess(BlfContext* context, uint8_t* output, const uint8_t* input, size_t length);
// ECB with a direction of its own, whatever the record's mode; the register
// is untouched. 0 or BAD_LENGTH_ERROR.
int BlfEcbProcess(const BlfContext* context, uint8_t* output, const uint8_t* input, size_t length,
                  int32_t direction);
void BlfWipeContext(BlfContext* context);

// The hexadecimal digits of pi, in blowfish_tables.cpp.
extern const uint32_t kBlfInitialP[18];
extern const uint32_t kBlfInitialS[4][256];
