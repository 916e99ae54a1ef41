// Key wrap: AES Key Wrap (RFC 3394, default initial value) and the Triple-DES
// Key Wrap (RFC 3217), chosen by the cipher field (0xF0) of an option word;
// the other bits play no part. Results are style B: the length written, or
// minus a code, or -1 for a wrapped key that fails its integrity check (the
// output is then zeroed over its whole given length).
#pragma once
#include <cstdint>

// Cipher field outside the four: -BAD_FLAG_ERROR; kekLength not the cipher's
// key length: -BAD_KEY_LEN_ERROR; then the data length (-BAD_LENGTH_ERROR),
// the query (a null output or outputLength 0 asks for the size), null data or
// KEK (-NULL_ERROR), a short output (-SHORT_BUF_ERROR). AES wraps 16 bytes or
// more in steps of 8 into dataLength + 8; Triple DES wraps exactly 24 bytes
// into 40, behind 8 bytes that differ from call to call. output may overlap
// data.
int32_t KeyWrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength, const uint8_t* kek,
                int32_t kekLength, int32_t options);
// As KeyWrap, the other way; here an outputLength below 1 asks for the size.
int32_t KeyUnwrap(uint8_t* output, int32_t outputLength, const uint8_t* data, int32_t dataLength,
                  const uint8_t* kek, int32_t kekLength, int32_t options);

// The Triple DES wrap with its 8 leading bytes given: 40 bytes to output.
// The key's parity bits are kept as they are.
void TdeaWrapWithPrefix(uint8_t* output, const uint8_t* key, const uint8_t* kek, const uint8_t* prefix);
// The 32-bit mix of the 24 KEK bytes that, with a fresh handle value, seeds
// the generator of the 8 leading bytes.
uint32_t KekSeedMix(const uint8_t* kek);
