// MGF1 (PKCS #1 v2.2, appendix B.2.1) over SHA-1 and the SHA-2 digests.
#pragma once
#include <cstddef>
#include <cstdint>

// True for the digest nibbles MGF1 runs over: 0, 3, 4, 5, 6.
bool Mgf1Accepts(int32_t nibble);
// outputLength bytes of mask from seed; the nibble must be one Mgf1Accepts.
// Returns 0.
int32_t Mgf1(uint8_t* output, size_t outputLength, const uint8_t* seed, size_t seedLength, int32_t nibble);
