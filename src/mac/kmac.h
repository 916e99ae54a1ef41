// KMAC128 and KMAC256 (NIST SP 800-185) on the Keccak sponge, and the SHAKE
// front end. All state lives on the caller's stack and is wiped.
#pragma once
#include <cstddef>
#include <cstdint>

// outputLength bytes of KMAC with strength 128 or 256 (the cSHAKE rate 168 or
// 136). customString is zero-terminated; null is taken as empty. The output
// length is bound into the result: KMAC, not KMACXOF. Encoded lengths are held
// in 32 bits, as the interface's lengths are. Returns outputLength, or -1 for
// another strength.
int32_t Kmac(uint8_t* output, uint32_t outputLength, const uint8_t* message, size_t messageLength,
             const uint8_t* key, size_t keyLength, const char* customString, uint32_t strength);

// outputLength bytes of SHAKE128 or SHAKE256 (bits 128 or 256); -1 for
// another value, else outputLength.
int32_t Shake(uint8_t* output, uint32_t outputLength, const uint8_t* message, size_t messageLength,
              uint32_t bits);

// The fixed-length codes of the MAC_ calls (empty custom string): 32 bytes
// for 0x201, 64 for 0x202; 0 for any other option.
int32_t KmacCodeLength(int32_t low12);
