// MAC_: HMAC, CMAC, Poly1305 and KMAC by option number; every result is
// latched, whatever its sign.
#include "frame/frame.h"
#include "mac/mac.h"
#include "verimond.h"

extern "C" {

int32_t MAC_Bytes(unsigned char* output, int32_t outputLength, const unsigned char* message,
                  int32_t messageLength, const unsigned char* key, int32_t keyLength, int32_t options) {
    EnterCall();
    return LeaveCall(MacBytes(output, outputLength, message, messageLength, key, keyLength, options));
}

int32_t MAC_HexFromBytes(char* output, int32_t outputLength, const unsigned char* message,
                         int32_t messageLength, const unsigned char* key, int32_t keyLength, int32_t options) {
    EnterCall();
    return LeaveCall(MacHexFromBytes(output, outputLength, message, messageLength, key, keyLength, options));
}

int32_t MAC_HexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex,
                       int32_t options) {
    EnterCall();
    return LeaveCall(MacHexFromHex(output, outputLength, messageHex, keyHex, options));
}

int32_t MAC_Init(const unsigned char* key, int32_t keyLength, int32_t options) {
    EnterCall();
    int32_t result = MacStreamInit(&GetContextArea()->mac, key, keyLength, options);
    if (result < 0) {
        LeaveCall(result);
        return 0;
    }
    return result;
}

int32_t MAC_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(MacStreamAdd(&GetContextArea()->mac, handle, data, dataLength));
}

int32_t MAC_Final(unsigned char* output, int32_t outputLength, int32_t handle) {
    EnterCall();
    return LeaveCall(MacStreamFinal(&GetContextArea()->mac, output, outputLength, handle));
}

int32_t MAC_CodeLength(int32_t handle) {
    EnterCall();
    return LeaveCall(MacStreamCodeLength(&GetContextArea()->mac, handle));
}

int32_t MAC_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(MacStreamReset(&GetContextArea()->mac, handle));
}

}  // extern "C"
