// scrypt (RFC 7914): PBKDF2-HMAC-SHA-256 around ROMix over BlockMix with
// Salsa20/8. Style B: 0 or minus a code.
#pragma once
#include <cstddef>
#include <cstdint>

// The derivation after the export's screening. costN, blockSizeR and
// parallelP are read as unsigned: -OUT_OF_RANGE_ERROR unless r <= 0x1FFFFFF,
// p < 0x40000000 / r, N a power of two from 2 to 0x1FFFFFF / r. The work
// memory comes from the plain allocator: a refusal is -MEMORY_ERROR.
int32_t ScryptDerive(uint8_t* output, size_t outputLength, const uint8_t* password, size_t passwordLength,
                     const uint8_t* salt, size_t saltLength, uint32_t costN, uint32_t blockSizeR,
                     uint32_t parallelP);

// PBE_Scrypt and PBE_ScryptHex without the frame.
int32_t ScryptBytes(uint8_t* derivedKey, int32_t derivedKeyLength, const uint8_t* password, int32_t passwordLength,
                    const uint8_t* salt, int32_t saltLength, int32_t costN, int32_t blockSizeR, int32_t parallelP);
// Upper-case hex, never cut (-SHORT_BUF_ERROR); the salt text as PBKDF2's.
int32_t ScryptHex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                  const char* saltHex, int32_t costN, int32_t blockSizeR, int32_t parallelP);
