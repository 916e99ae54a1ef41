// PAD_: block padding in bytes and in hex, style B. Only failures reach the
// latch.
#include "block/padding.h"
#include "frame/frame.h"
#include "verimond.h"

extern "C" {

int32_t PAD_BytesBlock(unsigned char* output, int32_t outputLength, const unsigned char* input,
                       int32_t inputLength, int32_t blockLength, int32_t options) {
    EnterCall();
    return LeaveOnFailure(PadBytes(output, outputLength, input, inputLength, blockLength, options));
}

int32_t PAD_UnpadBytes(unsigned char* output, int32_t outputLength, const unsigned char* input,
                       int32_t inputLength, int32_t blockLength, int32_t options) {
    EnterCall();
    return LeaveOnFailure(UnpadBytes(output, outputLength, input, inputLength, blockLength, options));
}

int32_t PAD_HexBlock(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength,
                     int32_t options) {
    EnterCall();
    return LeaveOnFailure(PadHex(output, outputLength, inputHex, blockLength, options));
}

int32_t PAD_UnpadHex(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength,
                     int32_t options) {
    EnterCall();
    return LeaveOnFailure(UnpadHex(output, outputLength, inputHex, blockLength, options));
}

}  // extern "C"
