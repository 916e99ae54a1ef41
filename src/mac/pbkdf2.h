// PBKDF2 (RFC 8018 section 5.2) with HMAC over SHA-1 or a SHA-2 digest.
#pragma once
#include <cstddef>
#include <cstdint>

// True for the digest nibbles PBKDF2 offers: 0, 3, 4, 5, 6.
bool Pbkdf2Accepts(int32_t nibble);

// The derivation alone: outputLength bytes, iterations at least 1, any
// password and salt (empty ones too). 0, or BAD_PARAM_ERROR for a nibble
// Pbkdf2Accepts refuses (nothing written then).
int32_t Pbkdf2Derive(uint8_t* output, size_t outputLength, const uint8_t* password, size_t passwordLength,
                     const uint8_t* salt, size_t saltLength, uint32_t iterations, int32_t nibble);

// PBE_Kdf2 and PBE_Kdf2Hex without the frame. Style A: 0 or a positive code.
// The bytes form zeroes the whole output once the arguments pass.
int32_t Pbkdf2Bytes(uint8_t* derivedKey, int32_t derivedKeyLength, const uint8_t* password,
                    int32_t passwordLength, const uint8_t* salt, int32_t saltLength, int32_t iterations,
                    int32_t options);
// Upper-case hex into hexLength characters, never cut (SHORT_BUF_ERROR).
// The salt text is decoded loosely and must give exactly (length + 1) / 2
// bytes; the password is the text without its zero. Both may be empty.
int32_t Pbkdf2Hex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                  const char* saltHex, int32_t iterations, int32_t options);

// Decodes a salt text for the hex forms of PBKDF2 and scrypt into a fresh
// block (release with SafeWipeFree over *capacity): true when every pair
// was decoded, i.e. the text holds an even run of hex digits and nothing else.
bool Pbkdf2DecodeSalt(const char* saltHex, uint8_t** salt, size_t* capacity);
