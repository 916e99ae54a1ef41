// ChaCha20-Poly1305 (RFC 8439 2.8): 32-byte key, 12-byte nonce, 16-byte tag.
// Whole-message seal and open for AEAD_Encrypt/Decrypt, and an incremental
// record for the AEAD_ stream calls. Argument screening is the caller's.
#pragma once
#include <cstddef>
#include <cstdint>

#include "mac/poly1305.h"
#include "stream/chacha20.h"

struct ChaChaPolyStream {
    uint8_t key[32];  // kept for the next nonce
    uint8_t expectedTag[16];
    uint32_t expectedTagLen;  // 4 to 16
    Poly1305Context poly;
    Chacha20State chacha;  // the nonce lives on here, counter included
    uint8_t keystream[64];
    uint32_t keystreamPos;  // bytes used; 0 means no block is open
    uint64_t aadLen;
    uint64_t textLen;
    uint32_t state;  // 0 empty, 1 key set, 2 nonce set, 3 encrypting, 4 decrypting
};

// The Poly1305 key: the first 32 bytes of the ChaCha20 block with counter 0.
void ChachaPolyKey(uint8_t otk[32], const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                   int32_t nonceLength);
// Writes inputLength bytes to out (when out is present) and min(tagLength, 16)
// tag bytes. Lengths in the closing block are 32-bit values. Returns 0.
int32_t ChachaPolySeal(uint8_t* out, uint8_t* tag, int32_t tagLength, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength);
// Decrypts into out (when present) before the tag is known, and leaves it
// there whatever the outcome: callers decide what a failed caller sees.
// Compares min(tagLength, 16) bytes. 0 or -AUTH_FAIL_ERROR.
int32_t ChachaPolyOpen(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                       int32_t keyLength, const uint8_t* nonce, int32_t nonceLength, const uint8_t* aad,
                       int32_t aadLength, const uint8_t* tag, int32_t tagLength);

// Incremental record: Init and SetNonce, results 0 or minus a code; the
// other calls are those of aead/aead_stream.h over the operations below.
int32_t ChachaPolyStreamInit(ChaChaPolyStream* s, const uint8_t* key, int32_t keyLength);
int32_t AeadSetNonce(ChaChaPolyStream* s, const uint8_t* nonce, int32_t nonceLength);
void AeadAuthenticate(ChaChaPolyStream* s, const uint8_t* data, size_t length);
void AeadPadTo16(ChaChaPolyStream* s, uint64_t count);
void AeadXor(ChaChaPolyStream* s, const uint8_t* input, uint8_t* out, size_t length);
void AeadFinish(ChaChaPolyStream* s, uint8_t tag[16]);
