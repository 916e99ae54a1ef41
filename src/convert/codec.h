// Hex and Base64 codecs for the CNV_ exports and for every family that takes
// or gives text. Hex output is upper case unless a Lower form is used; no
// output ever carries separators.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

extern const std::array<int8_t, 256> kHexTable;     // 0..15 for hex digits, else -1
extern const std::array<int8_t, 256> kBase64Table;  // 0..63, 64 for '=', else -1

// Even length and hex digits only, else -1; pairs beyond the capacity are
// checked and counted but not stored, so a result above the capacity shows a
// text that is too long. An empty text gives 0.
int64_t HexDecodeStrict(uint8_t* output, size_t capacity, const char* text);
// As HexDecodeStrict, but 0 (OrZero) or -1 (OrMinus) on a null argument or
// a failure, else the pair count.
int64_t HexDecodeOrZero(uint8_t* output, const char* text, size_t capacity);
int64_t HexDecodeOrMinus(uint8_t* output, const char* text, size_t capacity);
// Skips every character that is not a hex digit (also inside a pair); stops
// when the capacity is used; a trailing odd digit is dropped.
size_t HexDecodeLoose(uint8_t* output, size_t capacity, const char* text);

// One pair per byte while room for a pair and the NUL remains, then the NUL.
// Returns the characters written. capacity counts the NUL.
size_t HexEncodeBounded(char* output, size_t capacity, const uint8_t* bytes, size_t count);
size_t HexEncodeBoundedLower(char* output, size_t capacity, const uint8_t* bytes, size_t count);
// (min(2*count+1, capacity)-1)/2 pairs and a NUL; with room below 2 characters
// an empty text (when capacity allows the NUL).
void HexEncodeCase(char* output, size_t capacity, const uint8_t* bytes, size_t count, bool lower);
// Whole encodings with capacity 2*count+1; nothing is done for a null pointer.
char* HexEncodeUpper(char* output, const uint8_t* bytes, size_t count);
char* HexEncodeLower(char* output, const uint8_t* bytes, size_t count);

// Groups of four while room for a group and the NUL remains; returns the
// characters written.
size_t Base64Encode(char* output, size_t capacity, const uint8_t* bytes, size_t count);
// Skips characters outside the alphabet; ends at the NUL or the first '='.
size_t Base64DecodeLoose(uint8_t* output, size_t capacity, const char* text);

// True when every character is a hex digit; true for the empty text.
bool IsHexText(const char* text);
// Letters, digits, '+', '/', '=', space and white space only.
bool IsBase64Text(const char* text);
