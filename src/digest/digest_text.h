// The HASH_ calls over hex text, bit strings and files, without the frame.
// Hex output is lower case; a short output is cut to whole bytes.
#pragma once
#include <cstdint>

// Digits written, or twice the digest length for a null output or a length
// of 0. A negative outputLength counts as unbounded (the comparison is
// unsigned), so the whole digest is written.
int32_t DigestHexFromBytes(char* output, int32_t outputLength, const uint8_t* message,
                           int32_t messageLength, int32_t options);
// As above over hex text. An odd length is -INVALID_DATA_ERROR; an even text
// that is not hex digests as the empty message.
int32_t DigestHexFromHex(char* output, int32_t outputLength, const char* messageHex, int32_t options);
// As above over a bit string (see DigestBits); a length of 0 or less asks
// for the size.
int32_t DigestHexFromBits(char* output, int32_t outputLength, const uint8_t* message,
                          int32_t messageBits, int32_t options);
// The digest of a file, cut as DigestBytes; -OPEN_ERROR when it cannot be
// opened, then -BAD_FLAG_ERROR for nibbles 9, 14 and 15.
int32_t DigestFile(uint8_t* output, int32_t outputLength, const char* fileName, int32_t options);
int32_t DigestHexFromFile(char* output, int32_t outputLength, const char* fileName, int32_t options);
