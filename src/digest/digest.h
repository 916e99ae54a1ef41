// The digest dispatcher: what other subsystems call to digest by option.
#pragma once
#include <cstdint>

#include "digest/md2.h"
#include "digest/md5.h"
#include "digest/ripemd160.h"
#include "digest/sha1.h"
#include "digest/sha256.h"
#include "digest/sha3.h"
#include "digest/sha512.h"

// Digest-option fields.
constexpr int32_t kDigestNibbleMask = 0xF;
constexpr int32_t kDigestAsconNibble = 0xF;

// Output and input-block lengths of the digest a low nibble names; 0 for the
// unassigned nibbles 9 and 14 (and 15, which the low byte decides).
int32_t DigestOutputLength(int32_t nibble);
int32_t DigestBlockLength(int32_t nibble);

// One running digest of any core; Sha3Context is the largest member.
union DigestAnyContext {
    Sha1Context sha1;  // also RIPEMD-160
    Sha256Context sha256;
    Sha512Context sha512;
    Md5Context md5;
    Md2Context md2;
    Sha3Context sha3;
};

// Start, update and finish by low nibble: 0 to 8 and 10 to 13 (8 runs
// SHA-256 and takes the RIPEMD-160 of that digest at the finish).
// DigestStart returns false for any other nibble and touches nothing;
// DigestFinish writes the digest into out (64 bytes of room) and returns its
// length. What the finish leaves in the record is the core's own rule.
bool DigestStart(DigestAnyContext* ctx, int32_t nibble);
void DigestUpdate(DigestAnyContext* ctx, int32_t nibble, const uint8_t* data, uint32_t length);
int32_t DigestFinish(uint8_t out[64], DigestAnyContext* ctx, int32_t nibble);

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

// Applies OPT_HASH_DOUBLE to a finished digest in place (nibbles 0 to 7 only).
void DigestApplyDouble(uint8_t digest[64], int32_t length, int32_t options);
