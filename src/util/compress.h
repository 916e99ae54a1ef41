// One-shot compression in memory through zlib (RFC 1950 streams) and zstd
// (Zstandard frames). Every function gives a byte count or minus a code; a
// null output or an output length of 0 asks for the size, which costs the
// whole work. Compressed data is not secret: nothing here is wiped.
#pragma once
#include <cstdint>

// Size of the scratch block that the zlib size queries run through.
constexpr int32_t kZlibScratchSize = 16384;

// zlib's status codes as results: Z_OK 0, Z_BUF_ERROR -SHORT_BUF_ERROR,
// Z_MEM_ERROR -MEMORY_ERROR, Z_DATA_ERROR -INVALID_DATA_ERROR, any other
// -ZLIB_COMPR_ERROR.
int32_t ZlibStatusToResult(int status);

// zlib stream at zlib's default level, window and memory level.
int32_t ZlibCompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength);
// A stream that does not reach its end is -INVALID_DATA_ERROR. A query whose
// count would pass 2^31-1 bytes stops there with -SHORT_BUF_ERROR, since no
// output buffer could hold it.
int32_t ZlibUncompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength);

// Zstandard frame at the default level with the content size stored.
int32_t ZstdCompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength);
// Only frames that store their content size are taken: a bad header is
// -BAD_FORMAT_ERROR, an unknown size -INVALID_DATA_ERROR, a decoding failure
// -ZLIB_COMPR_ERROR.
int32_t ZstdUncompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength);

// The most that a valid frame of inputLength bytes can expand to: every
// block carries at least 4 bytes for at most 128 KiB of content.
uint64_t ZstdContentCeiling(int32_t inputLength);
