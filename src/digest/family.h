// The eleven calls shared by the fixed-digest families SHA1_, SHA2_ (SHA-256
// only) and MD5_, without the frame. Results are style A: 0 or a positive
// code. Text outputs are lower-case hex of the whole digest and a NUL into a
// buffer the caller sizes (2 x digest + 1); a null text output drops the
// digest and succeeds.
#pragma once
#include <cstdint>
#include <cstring>

#include "convert/codec.h"
#include "digest/file_reader.h"
#include "digest/slots.h"
#include "frame/memory.h"
#include "mac/hmac.h"
#include "util/wipe.h"
#include "verimond.h"

struct Sha1FamilyKind {
    using Context = Sha1Context;
    using Slot = Sha1Slot;
    static constexpr uint32_t kDigest = 20;
    static void Start(Context* c) { Sha1Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha1Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha1Final(o, c); }
    static void Hmac(uint8_t* o, const uint8_t* m, uint32_t n, const uint8_t* k, uint32_t kn) { HmacSha1(o, m, n, k, kn); }
};

struct Sha2FamilyKind {
    using Context = Sha256Context;
    using Slot = Sha2Slot;
    static constexpr uint32_t kDigest = 32;
    static void Start(Context* c) { Sha256Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha256Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha256Final(o, c); }
    static void Hmac(uint8_t* o, const uint8_t* m, uint32_t n, const uint8_t* k, uint32_t kn) { HmacSha256(o, m, n, k, kn); }
};

struct Md5FamilyKind {
    using Context = Md5Context;
    using Slot = Md5Slot;
    static constexpr uint32_t kDigest = 16;
    static void Start(Context* c) { Md5Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Md5Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Md5Final(o, c); }
    static void Hmac(uint8_t* o, const uint8_t* m, uint32_t n, const uint8_t* k, uint32_t kn) { HmacMd5(o, m, n, k, kn); }
};

template <typename Kind>
struct DigestFamily {
    using Context = typename Kind::Context;
    using Slot = typename Kind::Slot;
    static constexpr uint32_t kDigest = Kind::kDigest;

    static void WriteHex(char* digestHex, const uint8_t* digest) {
        if (digestHex != nullptr) HexEncodeCase(digestHex, 2 * kDigest + 1, digest, kDigest, true);
    }

    // One context on the stack, not wiped afterwards: it holds only what the
    // digest itself gives away.
    static void Digest(uint8_t* digest, const uint8_t* data, uint32_t length) {
        Context ctx;
        Kind::Start(&ctx);
        Kind::Update(&ctx, data, length);
        Kind::Final(digest, &ctx);
    }

    static bool BadData(const void* data, int32_t length) {
        return length < 0 || (length > 0 && data == nullptr);
    }

    static int32_t StringHexHash(char* digestHex, const char* text) {
        if (text == nullptr) return BAD_PARAM_ERROR;
        uint8_t digest[kDigest];
        Digest(digest, reinterpret_cast<const uint8_t*>(text), uint32_t(std::strlen(text)));
        WriteHex(digestHex, digest);
        return 0;
    }

    static int32_t BytesHexHash(char* digestHex, const uint8_t* data, int32_t dataLength) {
        if (BadData(data, dataLength)) return BAD_PARAM_ERROR;
        uint8_t digest[kDigest];
        Digest(digest, data, uint32_t(dataLength));
        WriteHex(digestHex, digest);
        return 0;
    }

    static int32_t BytesHash(uint8_t* digest, const uint8_t* data, int32_t dataLength) {
        if (BadData(data, dataLength) || digest == nullptr) return BAD_PARAM_ERROR;
        Digest(digest, data, uint32_t(dataLength));
        return 0;
    }

    // A mode that starts with 't' or 'T' reads in text mode, any other
    // (the empty one too) in binary. Unlike the HASH_ file calls a read
    // error is reported.
    static int32_t FileHexHash(char* digestHex, const char* fileName, const char* mode) {
        if (fileName == nullptr || mode == nullptr) return BAD_PARAM_ERROR;
        FileReader reader;
        if (!FileReaderOpen(&reader, fileName, mode[0] == 't' || mode[0] == 'T')) return OPEN_ERROR;
        Context ctx;
        Kind::Start(&ctx);
        uint8_t buffer[1024];
        for (size_t n; (n = FileReaderRead(&reader, buffer, sizeof buffer)) != 0;) {
            Kind::Update(&ctx, buffer, uint32_t(n));
        }
        SecureWipe(buffer, sizeof buffer);
        bool failed = FileReaderFailed(&reader);
        FileReaderClose(&reader);
        if (failed) {
            WipeObject(ctx);
            return READ_ERROR;
        }
        uint8_t digest[kDigest];
        Kind::Final(digest, &ctx);
        WriteHex(digestHex, digest);
        return 0;
    }

    // No frame and no check: whatever was open on the thread is gone. The
    // block buffer is left as it was.
    static uint32_t Init(Slot* slot) {
        Kind::Start(&slot->context);
        slot->handle = NewHandle();
        return slot->handle;
    }

    static int32_t AddBytes(Slot* slot, int32_t handle, const uint8_t* data, int32_t dataLength) {
        if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
        if (BadData(data, dataLength)) return BAD_PARAM_ERROR;
        Kind::Update(&slot->context, data, uint32_t(dataLength));
        return 0;
    }

    // The text is measured before the handle is looked at.
    static int32_t AddString(Slot* slot, int32_t handle, const char* text) {
        if (text == nullptr) return BAD_PARAM_ERROR;
        size_t length = std::strlen(text);
        if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
        Kind::Update(&slot->context, reinterpret_cast<const uint8_t*>(text), uint32_t(length));
        return 0;
    }

    // Closes the stream; the record keeps what the core's final leaves (all
    // of it zero for MD5, all but the first four bytes for SHA).
    static int32_t HexDigest(Slot* slot, char* digestHex, int32_t handle) {
        if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
        uint8_t digest[kDigest];
        Kind::Final(digest, &slot->context);
        slot->handle = 0;
        WriteHex(digestHex, digest);
        SecureWipe(digest, sizeof digest);
        return 0;
    }

    static int32_t Reset(Slot* slot, int32_t handle) {
        if (!HandleMatches(slot->handle, handle)) return INVALID_HANDLE_ERROR;
        WipeObject(slot->context);
        slot->handle = 0;
        return 0;
    }

    static int32_t Hmac(char* digestHex, const uint8_t* data, int32_t dataLength, const uint8_t* key,
                        int32_t keyLength) {
        if (BadData(data, dataLength) || BadData(key, keyLength)) return BAD_PARAM_ERROR;
        uint8_t code[kDigest];
        Kind::Hmac(code, data, uint32_t(dataLength), key, uint32_t(keyLength));
        WriteHex(digestHex, code);
        SecureWipe(code, sizeof code);
        return 0;
    }

    // Both texts are decoded loosely: what is not a hex digit is skipped and
    // an odd last digit dropped, so nothing fails and a text without digits
    // is the empty string (an empty key included).
    static int32_t HmacHex(char* digestHex, const char* dataHex, const char* keyHex) {
        if (dataHex == nullptr || keyHex == nullptr) return BAD_PARAM_ERROR;
        size_t dataCapacity = (std::strlen(dataHex) + 1) / 2;
        size_t keyCapacity = (std::strlen(keyHex) + 1) / 2;
        auto* data = static_cast<uint8_t*>(SafeAlloc(dataCapacity));
        auto* key = static_cast<uint8_t*>(SafeAlloc(keyCapacity));
        size_t dataLength = HexDecodeLoose(data, dataCapacity, dataHex);
        size_t keyLength = HexDecodeLoose(key, keyCapacity, keyHex);
        uint8_t code[kDigest];
        Kind::Hmac(code, data, uint32_t(dataLength), key, uint32_t(keyLength));
        SafeWipeFree(data, dataCapacity);
        SafeWipeFree(key, keyCapacity);
        WriteHex(digestHex, code);
        SecureWipe(code, sizeof code);
        return 0;
    }
};
