// XOF_Bytes and PRF_Bytes: variable-length output chosen by the caller.
#include "frame/frame.h"
#include "mac/xof.h"
#include "verimond.h"

extern "C" {

int32_t XOF_Bytes(unsigned char* output, int32_t outputLength, const unsigned char* message,
                  int32_t messageLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(XofBytes(output, outputLength, message, messageLength, options));
}

int32_t PRF_Bytes(unsigned char* output, int32_t outputLength, const unsigned char* message,
                  int32_t messageLength, const unsigned char* key, int32_t keyLength, const char* customString,
                  int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(PrfBytes(output, outputLength, message, messageLength, key, keyLength, customString, options));
}

}  // extern "C"
