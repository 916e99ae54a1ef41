// SHA2_: SHA-256 (the only SHA-2 digest reachable here) by name, with text output and a stream of its own per thread.
#include "digest/family.h"
#include "frame/frame.h"
#include "verimond.h"

namespace {
using Family = DigestFamily<Sha2FamilyKind>;
}  // namespace

extern "C" {

int32_t SHA2_StringHexHash(char* digestHex, const char* text) {
    EnterCall();
    return LeaveCall(Family::StringHexHash(digestHex, text));
}

int32_t SHA2_FileHexHash(char* digestHex, const char* fileName, const char* mode) {
    EnterCall();
    return LeaveCall(Family::FileHexHash(digestHex, fileName, mode));
}

int32_t SHA2_BytesHexHash(char* digestHex, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHexHash(digestHex, data, dataLength));
}

int32_t SHA2_BytesHash(unsigned char* digest, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHash(digest, data, dataLength));
}

// No frame: enters nothing and latches nothing.
int32_t SHA2_Init(void) { return int32_t(Family::Init(&GetContextArea()->sha2)); }

int32_t SHA2_AddString(int32_t handle, const char* text) {
    EnterCall();
    return LeaveCall(Family::AddString(&GetContextArea()->sha2, handle, text));
}

int32_t SHA2_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::AddBytes(&GetContextArea()->sha2, handle, data, dataLength));
}

int32_t SHA2_HexDigest(char* digestHex, int32_t handle) {
    EnterCall();
    return LeaveCall(Family::HexDigest(&GetContextArea()->sha2, digestHex, handle));
}

int32_t SHA2_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(Family::Reset(&GetContextArea()->sha2, handle));
}

int32_t SHA2_Hmac(char* digestHex, const unsigned char* data, int32_t dataLength, const unsigned char* key,
                 int32_t keyLength) {
    EnterCall();
    return LeaveCall(Family::Hmac(digestHex, data, dataLength, key, keyLength));
}

int32_t SHA2_HmacHex(char* digestHex, const char* dataHex, const char* keyHex) {
    EnterCall();
    return LeaveCall(Family::HmacHex(digestHex, dataHex, keyHex));
}

}  // extern "C"
