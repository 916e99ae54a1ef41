// Block padding: fill and check, by the padding field (0xF0000) of an option
// word. One and zeroes (0x30000), ANSI X9.23 (0x40000), W3C (0x50000, filled
// as PKCS#5, only the last byte checked); any other value is PKCS#5.
#pragma once
#include <cstddef>
#include <cstdint>

// Writes count padding bytes (count is the padding length, 1..block size).
void PadFill(uint8_t* target, size_t count, int32_t options);
// The padding count found in the last blockLength bytes of data, or
// -DECRYPT_ERROR, or -BAD_LENGTH_ERROR when length < blockLength. Reads all
// blockLength bytes and decides by masks, whatever the bytes hold.
int32_t PadCheck(const uint8_t* data, size_t length, size_t blockLength, int32_t options);

// Style B, the rules of PAD_BytesBlock: the padded length, which a null output
// or outputLength < 1 only asks for; -BAD_BLK_LEN_ERROR, -SHORT_BUF_ERROR,
// -BAD_PARAM_ERROR for a negative inputLength, -NULL_ERROR for a null input
// with data. input and output may overlap.
int32_t PadBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                 int32_t blockLength, int32_t options);
// Style B, the rules of PAD_UnpadBytes: the unpadded length (may be 0).
int32_t UnpadBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                   int32_t blockLength, int32_t options);
// The hex forms of PAD_HexBlock and PAD_UnpadHex; lengths count characters
// without the NUL.
int32_t PadHex(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength, int32_t options);
int32_t UnpadHex(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength,
                 int32_t options);
