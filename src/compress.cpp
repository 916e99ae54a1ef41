// ZLIB_ and COMPR_: compression in memory through zlib and zstd.
#include "frame/frame.h"
#include "util/compress.h"
#include "verimond.h"

namespace {
// The format is the low four bits; the rest of the word is not looked at.
constexpr int32_t kComprFormatMask = 0xF;

int32_t ComprDispatch(unsigned char* output, int32_t outputLength, const unsigned char* input,
                      int32_t inputLength, int32_t options, bool compressing) {
    int32_t format = options & kComprFormatMask;
    if (format != OPT_COMPR_ZLIB && format != OPT_COMPR_ZSTD) return -BAD_FLAG_ERROR;
    if (input == nullptr) return -BAD_PARAM_ERROR;
    if (format == OPT_COMPR_ZLIB) {
        return compressing ? ZlibCompress(output, outputLength, input, inputLength)
                           : ZlibUncompress(output, outputLength, input, inputLength);
    }
    return compressing ? ZstdCompress(output, outputLength, input, inputLength)
                       : ZstdUncompress(output, outputLength, input, inputLength);
}
}  // namespace

extern "C" {

int32_t ZLIB_Deflate(unsigned char* output, int32_t outputLength, const unsigned char* input,
                     int32_t inputLength) {
    EnterCall();
    return LeaveOnFailure(ZlibCompress(output, outputLength, input, inputLength));
}

int32_t ZLIB_Inflate(unsigned char* output, int32_t outputLength, const unsigned char* input,
                     int32_t inputLength) {
    EnterCall();
    return LeaveOnFailure(ZlibUncompress(output, outputLength, input, inputLength));
}

// Unlike ZLIB_, these latch every result, a length too.
int32_t COMPR_Compress(unsigned char* output, int32_t outputLength, const unsigned char* input,
                       int32_t inputLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(ComprDispatch(output, outputLength, input, inputLength, options, true));
}

int32_t COMPR_Uncompress(unsigned char* output, int32_t outputLength, const unsigned char* input,
                         int32_t inputLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(ComprDispatch(output, outputLength, input, inputLength, options, false));
}

}  // extern "C"
