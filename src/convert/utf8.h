// UTF-8 (RFC 3629) from 16-bit text. Surrogates are not joined: a text with
// any unit in 0xD800..0xDFFF is refused, so only the Basic Multilingual
// Plane converts. That limit is by decision.
#pragma once
#include <cstddef>
#include <cstdint>

// Bytes the zero-ended text needs without the NUL, or -1 when it holds a
// surrogate unit. Texts needing more than 2^31-1 bytes count as -1 too: no
// result could carry their length.
int64_t Utf8LengthOfWide(const uint16_t* text);

// Writes the UTF-8 of a text whose length Utf8LengthOfWide gave, and a NUL;
// the output holds at least that length plus one.
void Utf8EncodeWide(char* output, const uint16_t* text);

// The conversion with the output-buffer rule, for outputs that hold
// capacity bytes in all (NUL included): the byte count; the measured length
// for a null output or a capacity of 1 or less; 0 (with an empty text written
// where there is room) for a null or empty input; -ENCODING_ERROR for a
// surrogate, even in a query; -SHORT_BUF_ERROR, nothing written, when the
// text and its NUL do not fit.
int32_t Utf8FromWideBounded(char* output, int64_t capacity, const uint16_t* text);
