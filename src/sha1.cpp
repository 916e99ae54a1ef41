// SHA1_: SHA-1 by name, with text output and a stream of its own per thread.
#include "digest/family.h"
#include "frame/frame.h"
#include "verimond.h"

namespace {
using Family = DigestFamily<Sha1FamilyKind>;
}  // namespace

extern "C" {

int32_t SHA1_StringHexHash(char* digestHex, const char* text) {
    EnterCall();
    return LeaveCall(Family::StringHexHash(digestHex, text));
}

int32_t SHA1_FileHexHash(char* digestHex, const char* fileName, const char* mode) {
    EnterCall();
    return LeaveCall(Family::FileHexHash(digestHex, fileName, mode));
}

int32_t SHA1_BytesHexHash(char* digestHex, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHexHash(digestHex, data, dataLength));
}

int32_t SHA1_BytesHash(unsigned char* digest, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHash(digest, data, dataLength));
}

// No frame: enters nothing and latches nothing.
int32_t SHA1_Init(void) { return int32_t(Family::Init(&GetContextArea()->sha1)); }

int32_t SHA1_AddString(int32_t handle, const char* text) {
    EnterCall();
    return LeaveCall(Family::AddString(&GetContextArea()->sha1, handle, text));
}

int32_t SHA1_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::AddBytes(&GetContextArea()->sha1, handle, data, dataLength));
}

int32_t SHA1_HexDigest(char* digestHex, int32_t handle) {
    EnterCall();
    return LeaveCall(Family::HexDigest(&GetContextArea()->sha1, digestHex, handle));
}

int32_t SHA1_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(Family::Reset(&GetContextArea()->sha1, handle));
}

int32_t SHA1_Hmac(char* digestHex, const unsigned char* data, int32_t dataLength, const unsigned char* key,
                 int32_t keyLength) {
    EnterCall();
    return LeaveCall(Family::Hmac(digestHex, data, dataLength, key, keyLength));
}

int32_t SHA1_HmacHex(char* digestHex, const char* dataHex, const char* keyHex) {
    EnterCall();
    return LeaveCall(Family::HmacHex(digestHex, dataHex, keyHex));
}

}  // extern "C"
