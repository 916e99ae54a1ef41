// HASH_: digests by option number.
#include "digest/bit_digest.h"
#include "digest/digest.h"
#include "digest/digest_text.h"
#include "digest/hash_stream.h"
#include "frame/frame.h"
#include "verimond.h"

extern "C" {

int32_t HASH_Bytes(unsigned char* output, int32_t outputLength, const unsigned char* message,
                   int32_t messageLength, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestBytes(output, outputLength, message, messageLength, options));
}

int32_t HASH_Length(int32_t options) {
    EnterCall();
    // This call alone refuses the flag bits.
    if (options < 0 || (options & ~0xFF) != 0) return LeaveCall(-BAD_FLAG_ERROR);
    return LeaveOnFailure(DigestLength(options));
}

int32_t HASH_HexFromBytes(char* output, int32_t outputLength, const unsigned char* message,
                          int32_t messageLength, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestHexFromBytes(output, outputLength, message, messageLength, options));
}

int32_t HASH_HexFromHex(char* output, int32_t outputLength, const char* messageHex, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestHexFromHex(output, outputLength, messageHex, options));
}

int32_t HASH_HexFromBits(char* output, int32_t outputLength, const unsigned char* message,
                         int32_t messageBits, int32_t options) {
    EnterCall();
    if (messageBits < 0 || (messageBits > 0 && message == nullptr)) return LeaveCall(-BAD_PARAM_ERROR);
    return LeaveOnFailure(DigestHexFromBits(output, outputLength, message, messageBits, options));
}

int32_t HASH_File(unsigned char* output, int32_t outputLength, const char* fileName, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestFile(output, outputLength, fileName, options));
}

int32_t HASH_HexFromFile(char* output, int32_t outputLength, const char* fileName, int32_t options) {
    EnterCall();
    return LeaveOnFailure(DigestHexFromFile(output, outputLength, fileName, options));
}

int32_t HASH_Init(int32_t options) {
    EnterCall();
    int32_t result = HashStreamInit(&GetContextArea()->hash, options);
    if (result < 0) {
        LeaveCall(result);
        return 0;
    }
    return result;
}

int32_t HASH_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(HashStreamAdd(&GetContextArea()->hash, handle, data, dataLength));
}

int32_t HASH_Final(unsigned char* output, int32_t outputLength, int32_t handle) {
    EnterCall();
    return LeaveOnFailure(HashStreamFinal(&GetContextArea()->hash, output, outputLength, handle));
}

int32_t HASH_DigestLength(int32_t handle) {
    EnterCall();
    return LeaveCall(HashStreamDigestLength(&GetContextArea()->hash, handle));
}

int32_t HASH_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(HashStreamReset(&GetContextArea()->hash, handle));
}

}  // extern "C"
