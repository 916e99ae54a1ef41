// XOF_Bytes and PRF_Bytes without the frame: screening, selection, output.
// Results are style B: the bytes written, or minus a code.
#pragma once
#include <cstdint>

// SHAKE128/256 (0x203, 0x204), Ascon-XOF/XOFA (0x20A, 0x20B) and MGF1 over
// SHA-1 and SHA-2 ((options & 0xFF0) == 0x210, digest in the low nibble).
int32_t XofBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 int32_t options);
// KMAC128/256 with a custom string (0x201, 0x202), or SHAKE as XofBytes
// (0x203, 0x204), where key and customString play no part.
int32_t PrfBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 const uint8_t* key, int32_t keyLength, const char* customString, int32_t options);
