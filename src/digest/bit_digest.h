// Digests of messages whose length is a count of bits (SHA-1, SHA-2, SHA-3).
#pragma once
#include <cstdint>

// message holds messageBits bits: whole bytes, then the last messageBits % 8
// bits at the high-order end of one more byte (the lower bits of that byte
// must be zero for SHA-1 and SHA-2; SHA-3 drops them). Writes the digest
// into out (64 bytes of room) and returns its length; -BAD_PARAM_ERROR for a
// null message or a negative count, -BAD_FLAG_ERROR for a digest without bit
// input. The working context is wiped.
int32_t DigestBits(uint8_t out[64], const uint8_t* message, int32_t messageBits, int32_t options);
