// PC1_: ARCFOUR under its own name, no IV and no options, style A.
#include "frame/frame.h"
#include "stream/arcfour.h"
#include "stream/stream_calls.h"
#include "verimond.h"

extern "C" {

int32_t PC1_Bytes(unsigned char* out, const unsigned char* input, int32_t inlen, const unsigned char* key,
                  int32_t keylen) {
    EnterCall();
    return LeaveCall(ArcfourOneShot(out, input, inlen, key, keylen));
}

int32_t PC1_File(const char* outFile, const char* inFile, const unsigned char* key, int32_t keylen) {
    EnterCall();
    return LeaveCall(Pc1File(outFile, inFile, key, keylen));
}

int32_t PC1_Hex(char* outHex, int32_t outHexLen, const char* inputHex, const char* keyHex) {
    EnterCall();
    return LeaveCall(Pc1Hex(outHex, outHexLen, inputHex, keyHex));
}

}  // extern "C"
