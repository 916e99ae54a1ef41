// CMAC (NIST SP 800-38B) over AES-128/192/256 and three-key Triple DES,
// through the block-mode engine in ECB one block at a time. One-shot only.
#pragma once
#include <cstddef>
#include <cstdint>

// The 16-byte tag into output; 16, or -BAD_KEY_LEN_ERROR unless keyBytes is
// 16, 24 or 32.
int32_t CmacAes(uint8_t* output, const uint8_t* key, int32_t keyBytes, const uint8_t* message,
                size_t messageLength);
// The 8-byte tag with a 24-byte key K1 K2 K3 (no weak-key or parity test);
// 8, or -BAD_KEY_ERROR for a null key.
int32_t CmacTdea(uint8_t* output, const uint8_t* key, const uint8_t* message, size_t messageLength);

// The CMAC branch of the MAC_ calls (options 0x100 to 0x103 in the low
// twelve bits, else -BAD_FLAG_ERROR; an exact key length, else
// -BAD_KEY_LEN_ERROR). The tag is cut to outputLength as HMAC codes are.
int32_t CmacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                  const uint8_t* key, int32_t keyLength, int32_t options);
int32_t CmacHexFromBytes(char* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                         const uint8_t* key, int32_t keyLength, int32_t options);
int32_t CmacHexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex,
                       int32_t options);
