// SHA3_: a SHA-3 digest stream per thread, apart from the HASH_ stream.
#include <cstring>

#include "digest/sha3_stream.h"
#include "frame/frame.h"
#include "verimond.h"

extern "C" {

int32_t SHA3_Init(int32_t hashBitLength) {
    EnterCall();
    // A bad bit length latches nothing: the latch reads 0 after the failure.
    return int32_t(Sha3StreamInit(&GetContextArea()->sha3, hashBitLength));
}

int32_t SHA3_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Sha3StreamAdd(&GetContextArea()->sha3, handle, data, dataLength));
}

int32_t SHA3_AddString(int32_t handle, const char* text) {
    EnterCall();
    if (text == nullptr) return LeaveCall(BAD_PARAM_ERROR);
    size_t length = std::strlen(text);
    return LeaveCall(Sha3StreamAdd(&GetContextArea()->sha3, handle, reinterpret_cast<const uint8_t*>(text),
                                   int32_t(length)));
}

int32_t SHA3_HexDigest(char* output, int32_t outputLength, int32_t handle) {
    EnterCall();
    return LeaveCall(Sha3StreamHexDigest(&GetContextArea()->sha3, output, outputLength, handle));
}

int32_t SHA3_LengthInBytes(int32_t handle) {
    EnterCall();
    return LeaveCall(Sha3StreamLength(&GetContextArea()->sha3, handle));
}

int32_t SHA3_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(Sha3StreamReset(&GetContextArea()->sha3, handle));
}

}  // extern "C"
