// What other subsystems call for block ciphers: the cores and the mode
// engine (aes.h, des.h, blowfish.h), one-shot runs over a buffer, the file
// routines, padding and key wrap. All results here are positive codes (0
// success), except the padding and key-wrap calls, which are style B.
//
// For a single block, set up a context in ECB and process 16 (AES) or
// 8 bytes (Triple DES):
//   AesContext c; AesSetupMode(&c, 0, key, keyLength, 1, nullptr);
//   AesProcess(&c, out, in, 16); AesWipeContext(&c);
// or use AesEncryptBlockOnce below. A context may live on the stack and be
// processed any number of times; it must be wiped after use.
#pragma once
#include <cstddef>
#include <cstdint>

#include "block/aes.h"
#include "block/blowfish.h"
#include "block/des.h"
#include "block/file_crypt.h"
#include "block/keywrap.h"
#include "block/padding.h"

// Engine mode numbers (not the option bits of the CIPHER_ calls).
enum BlockMode : int32_t { kModeEcb = 0, kModeCbc = 1, kModeCfb = 2, kModeOfb = 3, kModeCtr = 4 };

// A whole buffer through a context on the stack, wiped afterwards. Order of
// failures: NULL_ERROR (null output, input or key), then the set-up's
// (BAD_IV_ERROR, BAD_MODE_ERROR, BAD_KEY_LEN_ERROR), then BAD_LENGTH_ERROR
// for a negative length or, in ECB and CBC, a length not a whole number of
// blocks. output may equal input. keyBits is 128, 192 or 256; iv may be null
// in ECB.
int AesOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, int keyBits,
               const uint8_t* iv, int32_t direction, int32_t mode);
// Triple DES with a 24-byte key K1 K2 K3 (an 8-byte IV outside ECB).
int TdeaOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, const uint8_t* iv,
                int32_t direction, int32_t mode);
int DesOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, const uint8_t* iv,
               int32_t direction, int32_t mode);
int BlfOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, size_t keyLength,
               const uint8_t* iv, int32_t direction, int32_t mode);

// One block with a key of 16, 24 or 32 bytes (AES) or 24 bytes (Triple DES);
// the schedule is made and wiped on each call. in may equal out. 0 or
// BAD_KEY_LEN_ERROR.
int AesEncryptBlockOnce(const uint8_t* key, size_t keyLength, const uint8_t* in, uint8_t* out);
int AesDecryptBlockOnce(const uint8_t* key, size_t keyLength, const uint8_t* in, uint8_t* out);
int TdeaEncryptBlockOnce(const uint8_t* key, const uint8_t* in, uint8_t* out);
int TdeaDecryptBlockOnce(const uint8_t* key, const uint8_t* in, uint8_t* out);
