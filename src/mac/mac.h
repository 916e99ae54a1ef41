// The MAC_ dispatcher without the frame: HMAC, CMAC, Poly1305 and KMAC by
// option number, one-shot in bytes and hex, and the per-thread HMAC stream.
// Results are style B: a length, 0, or minus a code.
//
// The option: bit 0x100 selects CMAC, else bit 0x200 Poly1305 (0x200) and
// KMAC (0x201, 0x202), else HMAC, where only the low nibble (a digest
// number) counts.
#pragma once
#include <cstddef>
#include <cstdint>

#include "mac/slots.h"

// The HMAC branch of MacBytes; checks only the option (-BAD_FLAG_ERROR for
// nibbles 2, 8, 9, 14, 15). Copies min(outputLength, code length) bytes when
// output is present and outputLength above 0 and returns that count; else
// returns the code length. PBKDF2 and others may pass the digest length.
int32_t HmacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                  const uint8_t* key, int32_t keyLength, int32_t options);

// MAC_Bytes: codes are cut to outputLength, except KMAC, which wants the
// whole 32 or 64 bytes (-SHORT_BUF_ERROR).
int32_t MacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 const uint8_t* key, int32_t keyLength, int32_t options);
// MAC_HexFromBytes and MAC_HexFromHex: lower-case hex cut to whole bytes.
// A bad HMAC nibble is taken for a code length of -17: with no output the
// result is -34, with one outputLength/2 zero bytes are written as hex and
// the digit count returned.
int32_t MacHexFromBytes(char* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                        const uint8_t* key, int32_t keyLength, int32_t options);
int32_t MacHexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex,
                      int32_t options);

// A hex text decoded to a heap block of its own; Release wipes and frees it.
struct MacHexBuffer {
    uint8_t* data;
    size_t capacity;
    size_t length;
};
// Decodes keyHex and messageHex strictly, the key first. An empty keyHex
// gives -BAD_KEY_LEN_ERROR unless emptyKeyAllowed; a text that is not an
// even run of hex digits gives -BAD_FORMAT_ERROR; an empty messageHex is the
// empty message. On failure nothing is left to release.
int32_t MacDecodeHexPair(MacHexBuffer* key, MacHexBuffer* message, const char* keyHex, const char* messageHex,
                         bool emptyKeyAllowed);
void MacReleaseHex(MacHexBuffer* buffer);
// Lower-case hex of the first min(count, cut) bytes, where cut is
// outputLength / 2 when outputLength is below 2 x count; writes only when
// output is present and outputLength is at least 1. Returns twice the bytes
// written, or 2 x count with no output.
int32_t MacHexCut(char* output, int32_t outputLength, const uint8_t* code, int32_t count);

// The stream: HMAC over digests 0, 3, 4, 5, 6, 10 to 13 only.
// Init returns a handle, or -BAD_PARAM_ERROR (null key or keyLength below
// 1; the slot is left as it was) or -NOT_SUPPORTED_ERROR (the slot is closed).
int32_t MacStreamInit(MacSlot* slot, const uint8_t* key, int32_t keyLength, int32_t options);
int32_t MacStreamAdd(MacSlot* slot, int32_t handle, const uint8_t* data, int32_t dataLength);
// Copies min(outputLength, code length) bytes and closes the stream.
int32_t MacStreamFinal(MacSlot* slot, uint8_t* output, int32_t outputLength, int32_t handle);
int32_t MacStreamCodeLength(const MacSlot* slot, int32_t handle);
// Closes the stream; it does not restart it.
int32_t MacStreamReset(MacSlot* slot, int32_t handle);
