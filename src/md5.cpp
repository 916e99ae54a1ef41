// MD5_: MD5 by name, with text output and a stream of its own per thread.
#include "digest/family.h"
#include "frame/frame.h"
#include "verimond.h"

namespace {
using Family = DigestFamily<Md5FamilyKind>;
}  // namespace

extern "C" {

int32_t MD5_StringHexHash(char* digestHex, const char* text) {
    EnterCall();
    return LeaveCall(Family::StringHexHash(digestHex, text));
}

int32_t MD5_FileHexHash(char* digestHex, const char* fileName, const char* mode) {
    EnterCall();
    return LeaveCall(Family::FileHexHash(digestHex, fileName, mode));
}

int32_t MD5_BytesHexHash(char* digestHex, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHexHash(digestHex, data, dataLength));
}

int32_t MD5_BytesHash(unsigned char* digest, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::BytesHash(digest, data, dataLength));
}

// No frame: enters nothing and latches nothing.
int32_t MD5_Init(void) { return int32_t(Family::Init(&GetContextArea()->md5)); }

int32_t MD5_AddString(int32_t handle, const char* text) {
    EnterCall();
    return LeaveCall(Family::AddString(&GetContextArea()->md5, handle, text));
}

int32_t MD5_AddBytes(int32_t handle, const unsigned char* data, int32_t dataLength) {
    EnterCall();
    return LeaveCall(Family::AddBytes(&GetContextArea()->md5, handle, data, dataLength));
}

int32_t MD5_HexDigest(char* digestHex, int32_t handle) {
    EnterCall();
    return LeaveCall(Family::HexDigest(&GetContextArea()->md5, digestHex, handle));
}

int32_t MD5_Reset(int32_t handle) {
    EnterCall();
    return LeaveCall(Family::Reset(&GetContextArea()->md5, handle));
}

int32_t MD5_Hmac(char* digestHex, const unsigned char* data, int32_t dataLength, const unsigned char* key,
                 int32_t keyLength) {
    EnterCall();
    return LeaveCall(Family::Hmac(digestHex, data, dataLength, key, keyLength));
}

int32_t MD5_HmacHex(char* digestHex, const char* dataHex, const char* keyHex) {
    EnterCall();
    return LeaveCall(Family::HmacHex(digestHex, dataHex, keyHex));
}

}  // extern "C"
