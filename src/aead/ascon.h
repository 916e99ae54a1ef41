// Ascon v1.2 (the final-round submission to the NIST lightweight project,
// not the later SP 800-232 variants): one permutation and six modes on whole
// messages. Ascon-128 and Ascon-128a (flag 0, 1), Ascon-Hash and Ascon-HashA
// (flag 0, 1), Ascon-XOF and Ascon-XOFA (flag 0, 1). Constant-time; all state
// is local to a call. Lengths are 64-bit: callers screen and widen their own.
#pragma once
#include <cstddef>
#include <cstdint>

// The 32-byte digest. flag 0 Ascon-Hash, 1 Ascon-HashA. Returns 0.
int32_t AsconHash(uint8_t* output, const uint8_t* message, uint64_t length, int flag);
// outputLength bytes of Ascon-XOF (flag 0) or Ascon-XOFA (flag 1). Returns 0.
int32_t AsconXof(uint8_t* output, uint64_t outputLength, const uint8_t* message, uint64_t length, int flag);

// Ciphertext then the 16-byte tag to out; inputLength + 16 to *outLength.
// key and nonce are 16 bytes. flag 0 Ascon-128, 1 Ascon-128a. Returns 0.
int32_t AsconSeal(uint8_t* out, uint64_t* outLength, const uint8_t* input, uint64_t inputLength,
                  const uint8_t* aad, uint64_t aadLength, const uint8_t* nonce, const uint8_t* key, int flag);
// input is ciphertext then tag (inputLength >= 16). Writes the plaintext
// before the tag is checked; inputLength - 16 to *outLength. 0, or -1 for a
// bad tag.
int32_t AsconOpen(uint8_t* out, uint64_t* outLength, const uint8_t* input, uint64_t inputLength,
                  const uint8_t* aad, uint64_t aadLength, const uint8_t* nonce, const uint8_t* key, int flag);

// The AEAD front for algorithm numbers 26 (Ascon-128) and 27 (Ascon-128a),
// taken from the low byte of options. Seal: 0 or -BAD_FLAG_ERROR.
int32_t AsconAeadSeal(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                      const uint8_t* nonce, const uint8_t* aad, int32_t aadLength, int32_t options);
// Open: 0 or -AUTH_FAIL_ERROR for any failure (bad tag, input below 16
// bytes, unknown number); on failure the first outputLength bytes of out are
// zeroed, so no plaintext of a forged message survives.
int32_t AsconAeadOpen(uint8_t* out, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                      const uint8_t* key, const uint8_t* nonce, const uint8_t* aad, int32_t aadLength,
                      int32_t options);
