#include "util/compress.h"

#include <zlib.h>
// The frame-header reader is in the part of the interface that zstd marks
// as experimental; the shared library exports it all the same.
#define ZSTD_STATIC_LINKING_ONLY
#include <zstd.h>

#include <climits>
#include <cstring>

#include "frame/memory.h"
#include "verimond.h"

namespace {
constexpr uint64_t kZstdBlockMax = 131072;

// The size query of the compress direction: one full deflate into a scratch
// block that is overwritten again and again, counting what comes out.
int32_t ZlibCompressedSize(const uint8_t* input, int32_t inputLength) {
    z_stream stream;
    std::memset(&stream, 0, sizeof stream);
    int status = deflateInit(&stream, Z_DEFAULT_COMPRESSION);
    if (status != Z_OK) return ZlibStatusToResult(status);
    uint8_t* scratch = static_cast<uint8_t*>(SafeAlloc(kZlibScratchSize));
    stream.next_in = const_cast<Bytef*>(input);
    stream.avail_in = uInt(inputLength);
    int64_t total = 0;
    do {
        stream.next_out = scratch;
        stream.avail_out = uInt(kZlibScratchSize);
        status = deflate(&stream, Z_FINISH);
        total += kZlibScratchSize - int64_t(stream.avail_out);
    } while (status == Z_OK);
    deflateEnd(&stream);
    SafeFree(scratch);
    if (status != Z_STREAM_END) return ZlibStatusToResult(status);
    // deflate's expansion of stored blocks is tiny, but a count past the
    // range of a result still has to be refused rather than wrapped.
    if (total > INT32_MAX) return -SHORT_BUF_ERROR;
    return int32_t(total);
}

// The size query of the uncompress direction: the stream runs to its end
// through a scratch block. The count is capped, so a stream that expands
// without limit costs at most 2 GiB of inflating and no memory.
int32_t ZlibUncompressedSize(const uint8_t* input, int32_t inputLength) {
    z_stream stream;
    std::memset(&stream, 0, sizeof stream);
    stream.next_in = const_cast<Bytef*>(input);
    stream.avail_in = uInt(inputLength);
    int status = inflateInit(&stream);
    if (status != Z_OK) return ZlibStatusToResult(status);
    uint8_t* scratch = static_cast<uint8_t*>(SafeAlloc(kZlibScratchSize));
    int64_t total = 0;
    int32_t result = 0;
    for (;;) {
        stream.next_out = scratch;
        stream.avail_out = uInt(kZlibScratchSize);
        status = inflate(&stream, Z_NO_FLUSH);
        total += kZlibScratchSize - int64_t(stream.avail_out);
        if (total > INT32_MAX) {
            result = -SHORT_BUF_ERROR;
            break;
        }
        if (status == Z_STREAM_END) {
            result = int32_t(total);
            break;
        }
        if (status == Z_OK) continue;
        // Z_BUF_ERROR with room left in the scratch block means the input
        // ran out before the end of the stream: a truncated stream. A
        // preset dictionary is something these calls cannot supply.
        if (status == Z_BUF_ERROR || status == Z_NEED_DICT) status = Z_DATA_ERROR;
        result = ZlibStatusToResult(status);
        break;
    }
    inflateEnd(&stream);
    SafeFree(scratch);
    return result;
}

// Step 4 of both zstd directions: the work is done in a block of our own,
// and the caller's buffer, if any, receives a copy.
int32_t CopyOut(uint8_t* output, int32_t outputLength, const uint8_t* block, size_t size) {
    if (output != nullptr && outputLength >= 1) {
        if (size_t(outputLength) < size) return -SHORT_BUF_ERROR;
        std::memcpy(output, block, size);
    }
    return int32_t(size);
}
}  // namespace

int32_t ZlibStatusToResult(int status) {
    switch (status) {
        case Z_OK: return 0;
        case Z_BUF_ERROR: return -SHORT_BUF_ERROR;
        case Z_MEM_ERROR: return -MEMORY_ERROR;
        case Z_DATA_ERROR: return -INVALID_DATA_ERROR;
        default: return -ZLIB_COMPR_ERROR;
    }
}

int32_t ZlibCompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength) {
    if (input == nullptr || inputLength < 0 || outputLength < 0) return -BAD_PARAM_ERROR;
    if (output == nullptr || outputLength == 0) return ZlibCompressedSize(input, inputLength);
    uLongf written = uLongf(outputLength);
    int status = compress(output, &written, input, uLong(inputLength));
    if (status != Z_OK) return ZlibStatusToResult(status);
    return int32_t(written);
}

int32_t ZlibUncompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength) {
    if (input == nullptr || inputLength < 0 || outputLength < 0) return -BAD_PARAM_ERROR;
    if (output == nullptr || outputLength == 0) return ZlibUncompressedSize(input, inputLength);
    // uncompress writes at most outputLength bytes, so no input can make it
    // run past the caller's buffer; a truncated stream is Z_DATA_ERROR and
    // a full buffer Z_BUF_ERROR.
    uLongf written = uLongf(outputLength);
    int status = uncompress(output, &written, input, uLong(inputLength));
    if (status != Z_OK) return ZlibStatusToResult(status);
    return int32_t(written);
}

uint64_t ZstdContentCeiling(int32_t inputLength) {
    return inputLength <= 0 ? 0 : uint64_t(inputLength / 4) * kZstdBlockMax;
}

int32_t ZstdCompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength) {
    if (input == nullptr || inputLength < 0 || outputLength < 0) return -BAD_PARAM_ERROR;
    // The bound is allocated whatever the caller's buffer: a bound over the
    // allocator's limit ends the process there.
    size_t bound = ZSTD_compressBound(size_t(inputLength));
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(bound));
    ZSTD_CCtx* context = ZSTD_createCCtx();
    if (context == nullptr) {
        SafeFree(block);
        return -MEMORY_ERROR;
    }
    size_t size = ZSTD_compressCCtx(context, block, bound, input, size_t(inputLength), ZSTD_CLEVEL_DEFAULT);
    ZSTD_freeCCtx(context);
    int32_t result = ZSTD_isError(size) ? -ZLIB_COMPR_ERROR : CopyOut(output, outputLength, block, size);
    SafeFree(block);
    return result;
}

int32_t ZstdUncompress(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength) {
    if (input == nullptr || inputLength < 0 || outputLength < 0) return -BAD_PARAM_ERROR;
    ZSTD_frameHeader header;
    if (ZSTD_getFrameHeader(&header, input, size_t(inputLength)) != 0) return -BAD_FORMAT_ERROR;
    unsigned long long contentSize = header.frameContentSize;
    if (header.frameType == ZSTD_skippableFrame) {
        contentSize = 0;
    } else if (contentSize == ZSTD_CONTENTSIZE_ERROR) {
        return -BAD_FORMAT_ERROR;
    } else if (contentSize == ZSTD_CONTENTSIZE_UNKNOWN) {
        return -INVALID_DATA_ERROR;
    }
    // A size that these few bytes cannot possibly decode to is refused
    // before anything is allocated: decoding would fail on it all the same,
    // and a header must not be able to claim gigabytes. A plausible size
    // over the allocator's limit still ends the process there.
    if (contentSize > ZstdContentCeiling(inputLength)) return -ZLIB_COMPR_ERROR;
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(size_t(contentSize)));
    size_t size = ZSTD_decompress(block, size_t(contentSize), input, size_t(inputLength));
    int32_t result;
    if (ZSTD_isError(size)) {
        result = -ZLIB_COMPR_ERROR;
    } else if (size != contentSize) {
        result = -INTERNAL_ERROR;
    } else {
        result = CopyOut(output, outputLength, block, size);
    }
    SafeFree(block);
    return result;
}
