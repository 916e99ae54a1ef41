// CIPHER_Stream...: ARCFOUR, Salsa20 and ChaCha20 by option, style B.
#include "frame/frame.h"
#include "frame/memory.h"
#include "stream/stream_calls.h"
#include "verimond.h"

extern "C" {

int32_t CIPHER_StreamBytes(unsigned char* out, const unsigned char* input, int32_t inlen,
                           const unsigned char* key, int32_t keylen, const unsigned char* iv, int32_t ivlen,
                           uint32_t counter, int32_t options) {
    EnterCall();
    return LeaveCall(StreamBytes(out, input, inlen, key, keylen, iv, ivlen, counter, options));
}

int32_t CIPHER_StreamHex(char* outHex, int32_t outHexLen, const char* inputHex, const char* keyHex,
                         const char* ivHex, uint32_t counter, int32_t options) {
    EnterCall();
    return LeaveCall(StreamHex(outHex, outHexLen, inputHex, keyHex, ivHex, counter, options));
}

int32_t CIPHER_StreamFile(const char* outFile, const char* inFile, const unsigned char* key, int32_t keylen,
                          const unsigned char* iv, int32_t ivlen, uint32_t counter, int32_t options) {
    EnterCall();
    return LeaveCall(StreamFile(outFile, inFile, key, keylen, iv, ivlen, counter, options));
}

int32_t CIPHER_StreamInit(const unsigned char* key, int32_t keylen, const unsigned char* iv, int32_t ivlen,
                          uint32_t counter, int32_t options) {
    EnterCall();
    StirEntropy(0);
    // The internal call enters again and latches its own failure.
    return StreamInitSlot(&GetContextArea()->stream, key, keylen, iv, ivlen, counter, options);
}

int32_t CIPHER_StreamUpdate(int32_t handle, unsigned char* out, const unsigned char* input, int32_t inlen) {
    EnterCall();
    // Absent buffers are reported before a dead handle.
    if (out == nullptr || input == nullptr) return LeaveCall(-NULL_ERROR);
    if (inlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    StreamSlot* slot = &GetContextArea()->stream;
    if (!HandleMatches(slot->handle, handle)) return LeaveCall(-INVALID_HANDLE_ERROR);
    return LeaveCall(StreamUpdateSlot(slot, out, input, inlen));
}

int32_t CIPHER_StreamFinal(int32_t handle) {
    EnterCall();
    StirEntropy(0);
    StreamSlot* slot = &GetContextArea()->stream;
    if (!HandleMatches(slot->handle, handle)) return LeaveCall(-INVALID_HANDLE_ERROR);
    StreamFinalSlot(slot);
    return LeaveCall(0);
}

}  // extern "C"
