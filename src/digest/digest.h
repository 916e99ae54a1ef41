// The digest dispatcher: what other subsystems call to digest by option.
#pragma once
#include <cstdint>

// Digest-option fields.
constexpr int32_t kDigestNibbleMask = 0xF;
constexpr int32_t kDigestAsconNibble = 0xF;

// Output and input-block lengths of the digest a low nibble names; 0 for the
// unassigned nibbles 9 and 14 (and 15, which the low byte decides).
int32_t DigestOutputLength(int32_t nibble);
int32_t DigestBlockLength(int32_t nibble);

// The digest of a byte string into out (64 bytes of room) by option: returns
// the digest length, or -BAD_FLAG_ERROR for nibbles 9 and 14. For nibble 15
// with a low byte other than the two Ascon digests it returns 0 and writes
// nothing. OPT_HASH_DOUBLE is not applied here.
int32_t DigestRaw(uint8_t out[64], const uint8_t* message, uint32_t length, int32_t options);

// HASH_Bytes without the frame: checks, digest, OPT_HASH_DOUBLE, the cut.
int32_t DigestBytes(uint8_t* output, int32_t outputLength, const uint8_t* message,
                    int32_t messageLength, int32_t options);
// The digest-length table by option, without HASH_Length's range check.
int32_t DigestLength(int32_t options);
