// AES-GCM (NIST SP 800-38D) with its own forward AES and 8-bit GHASH tables
// (256 multiples of H, 4 KB per key). The table lookups depend on H and on
// the data, so GHASH here is not constant-time; the tag comparison is.
#pragma once
#include <cstddef>
#include <cstdint>

// What one key expands to. roundCache holds the first-round sums of the
// three fixed columns of the current counter block, so that the nonce needs
// no other copy: a change of nonce must go through GcmAesCounterStart.
struct GcmKeyTables {
    uint32_t table[256][4];  // entry 128 is H; entry i + j = entry i ^ entry j
    uint32_t schedule[60];   // round keys, big-endian words
    uint32_t roundCache[4];
    uint32_t keyBits;        // 128, 192 or 256
    // The carry-less multiply path (gcm_x86.h), chosen once by GcmExpandKey.
    // When it is in use, table and roundCache are left unwritten: the path
    // multiplies by powers of H and keeps no first-round sums.
    uint32_t clmul;             // 1 when the path below is in use, else 0
    uint8_t hPowers[16][16];    // H^16 ... H^1, bit-reflected, each times x^-1
};

// The record behind the incremental AEAD calls. The raw key is kept because
// every nonce expands it again.
struct GcmStream {
    uint8_t key[32];
    uint32_t keyBits;
    uint8_t expectedTag[16];
    uint32_t expectedTagLen;  // 4 to 16
    GcmKeyTables tables;
    uint32_t counter;       // last block counter used
    uint8_t pending[16];    // partial GHASH input block
    uint32_t pendingLen;
    uint32_t ghash[4];
    uint32_t encJ0[4];
    uint8_t keystream[16];
    uint32_t keystreamPos;  // bytes used; 0 means no block is open
    uint64_t aadLen;
    uint64_t textLen;
    uint32_t state;  // 0 empty, 1 key set, 2 nonce set, 3 encrypting, 4 decrypting
    // The nonce, for the carry-less multiply path only: the portable path
    // keeps it in tables.roundCache.
    uint8_t nonce[12];
};

// --- forward AES with the first-round cache (gcm_aes.cpp) ---
void GcmAesSetKey(GcmKeyTables* tables, const uint8_t* key, uint32_t keyBits);
void GcmAesEncryptBlock(const GcmKeyTables* tables, const uint8_t in[16], uint8_t out[16]);
// Encrypts fixed || counter and fills roundCache for that fixed part.
void GcmAesCounterStart(GcmKeyTables* tables, const uint32_t fixed[3], uint32_t counter, uint8_t out[16]);
// Increments *counter (32 bits, wrapping) and encrypts the block it names
// under the cached fixed part.
void GcmAesCounterNext(const GcmKeyTables* tables, uint32_t* counter, uint8_t out[16]);

// --- whole messages (gcm.cpp) ---
// AES key schedule, H and the multiples table (or, on the carry-less
// multiply path, the powers of H). keyBits 128, 192 or 256.
void GcmExpandKey(GcmKeyTables* tables, const uint8_t* key, uint32_t keyBits);
// Zeroes what GcmExpandKey and the message routines wrote: the whole record
// on the portable path, all but the untouched 4 KB table on the other.
void GcmWipeKeyTables(GcmKeyTables* tables);
// Output may be null only for an empty input. The AAD and text bit lengths
// of the closing block are 32-bit values: 2^29 bytes or more give a tag of
// this library alone (kept: existing tags depend on it).
void GcmSeal(GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input, size_t inputLength,
             const uint8_t* aad, size_t aadLength, uint8_t* output, uint8_t tag[16]);
// Verifies first and writes output (when present) only if the tag holds.
// Compares min(tagLength, 16) bytes, 16 for a negative tagLength; a length of
// 0 compares nothing and holds. Returns 1 if the tag holds, else 0.
int GcmOpen(GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input, size_t inputLength,
            const uint8_t* tag, int32_t tagLength, const uint8_t* aad, size_t aadLength, uint8_t* output);

// Cores of AEAD_Encrypt and AEAD_Decrypt, arguments screened there; key bits
// are keyLength * 8. Encrypt writes 16 tag bytes and returns 0. Decrypt
// writes output only when present with outputLength >= 1 and the tag holds;
// returns 0 or -AUTH_FAIL_ERROR.
int32_t GcmAeadEncrypt(uint8_t* out, uint8_t* tag, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength);
int32_t GcmAeadDecrypt(uint8_t* out, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength, const uint8_t* tag, int32_t tagLength);

// --- incremental record (gcm_stream.cpp) ---
// Init and SetNonce, results 0 or minus a code; the other calls are those of
// aead/aead_stream.h over the operations below.
int32_t GcmStreamInit(GcmStream* s, const uint8_t* key, int32_t keyLength);
int32_t AeadSetNonce(GcmStream* s, const uint8_t* nonce, int32_t nonceLength);
void AeadAuthenticate(GcmStream* s, const uint8_t* data, size_t length);
void AeadPadTo16(GcmStream* s, uint64_t count);
void AeadXor(GcmStream* s, const uint8_t* input, uint8_t* out, size_t length);
void AeadFinish(GcmStream* s, uint8_t tag[16]);
