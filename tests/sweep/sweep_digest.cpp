// Sweep rows: HASH_, SHA3_ and the SHA1_, SHA2_, MD5_ families.
#include "digest_family_support.h"
#include "sweep.h"

namespace sweep {

namespace {

void AddNamedRows(Table& rows, const DigestFamily& f) {
    FROW(Is(BAD_PARAM_ERROR), "StringHexHash", f.stringHexHash(t, nullptr));
    FROW(Is(0), "StringHexHash", f.stringHexHash(nullptr, "abc"));
    FROW(Is(BAD_PARAM_ERROR), "FileHexHash", f.fileHexHash(t, nullptr, "b"));
    FROW(Is(OPEN_ERROR), "FileHexHash", f.fileHexHash(t, "", "b"));
    FROW(Is(OPEN_ERROR), "FileHexHash", f.fileHexHash(t, Fs().missing.c_str(), "t"));
    FROW(Is(BAD_PARAM_ERROR), "FileHexHash", f.fileHexHash(t, ex, nullptr));
    FROW(Is(READ_ERROR), "FileHexHash", f.fileHexHash(t, Fs().dir.c_str(), ""));
    FROW(Is(0), "FileHexHash", f.fileHexHash(t, Fs().empty.c_str(), "b"));
    FROW(Is(BAD_PARAM_ERROR), "BytesHexHash", f.bytesHexHash(t, in, kMin));
    FROW(Is(0), "BytesHexHash", f.bytesHexHash(t, nullptr, 0));
    FROW(Is(BAD_PARAM_ERROR), "BytesHexHash", f.bytesHexHash(t, nullptr, 5));
    FROW(Is(BAD_PARAM_ERROR), "BytesHash", f.bytesHash(nullptr, in, 3));
    FROW(Is(BAD_PARAM_ERROR), "BytesHash", f.bytesHash(o, in, -1));
    FROW(Is(BAD_PARAM_ERROR), "BytesHash", f.bytesHash(o, nullptr, kMax));
    FROW(AHandle(), "Init", f.init());
    FROW(Is(INVALID_HANDLE_ERROR), "AddString", f.addString(0, "abc"));
    FROW(Is(BAD_PARAM_ERROR), "AddString", f.addString(f.init(), nullptr));
    FROW(Is(BAD_PARAM_ERROR), "AddBytes", f.addBytes(f.init(), in, kMin));
    FROW(Is(BAD_PARAM_ERROR), "AddBytes", f.addBytes(f.init(), nullptr, 4));
    FROW(Is(0), "AddBytes", f.addBytes(f.init(), nullptr, 0));
    FROW(Is(0), "HexDigest", f.hexDigest(nullptr, f.init()));
    FROW(Is(INVALID_HANDLE_ERROR), "HexDigest", f.hexDigest(t, 0));
    rows.push_back({std::string(f.prefix) + "HexDigest second call", [f] {
        int32_t h = f.init();
        f.hexDigest(t, h);
        return f.hexDigest(t, h);
    }, Is(INVALID_HANDLE_ERROR)});
    FROW(Is(INVALID_HANDLE_ERROR), "Reset", f.reset(kMin));
    const std::string use = std::string(f.prefix) + "AddBytes", end = std::string(f.prefix) + "Reset";
    AddHandleRows(rows, {use.c_str(), end.c_str(), f.init, [f](int32_t h) { return f.addBytes(h, in, 3); }, f.reset,
                         [] { return HASH_Init(OPT_HASH_SHA256); }, INVALID_HANDLE_ERROR});
    FROW(Is(BAD_PARAM_ERROR), "Hmac", f.hmac(t, in, -1, k, 3));
    FROW(Is(BAD_PARAM_ERROR), "Hmac", f.hmac(t, in, 3, k, kMin));
    FROW(Is(BAD_PARAM_ERROR), "Hmac", f.hmac(t, nullptr, 3, k, 3));
    FROW(Is(BAD_PARAM_ERROR), "Hmac", f.hmac(t, in, 3, nullptr, kMax));
    FROW(Is(0), "Hmac", f.hmac(t, nullptr, 0, nullptr, 0));
    FROW(Is(0), "Hmac", f.hmac(nullptr, in, 3, k, 3));
    FROW(Is(BAD_PARAM_ERROR), "HmacHex", f.hmacHex(t, nullptr, "00"));
    FROW(Is(BAD_PARAM_ERROR), "HmacHex", f.hmacHex(t, "00", nullptr));
    FROW(Is(0), "HmacHex", f.hmacHex(t, "zz-", "?"));
}

}  // namespace

Table DigestRows() {
    Table rows = {
        ROW(Is(-BAD_PARAM_ERROR), HASH_Bytes(o, 20, nullptr, 5, 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Bytes(o, 20, in, kMin, 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Bytes(o, 20, nullptr, kMax, 3)),
        ROW(Is(32), HASH_Bytes(o, kMin, in, 3, 3)),
        ROW(Is(64), HASH_Bytes(o, kMax, in, 3, 5)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_Bytes(o, 20, in, 3, 9)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_Bytes(nullptr, 0, nullptr, 0, 14)),
        // The caller's room stands for the digest length.
        ROW(Is(100), HASH_Bytes(o, 100, in, 3, 0x1F)),
        ROW(Is(0), HASH_Bytes(nullptr, 0, in, 3, 0x7F)),
        ROW(Is(32), HASH_Bytes(o, 64, in, 3, int32_t(0xFFFFFFF3u))),
        ROW(Is(-BAD_FLAG_ERROR), HASH_Length(kMin)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_Length(0x10003)),
        ROW(Is(0x1F), HASH_Length(0x1F)),
        ROW(Is(32), HASH_Length(0xBF)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromBytes(t, 64, nullptr, 3, 3)),
        ROW(Is(64), HASH_HexFromBytes(nullptr, 64, in, 3, 0xAF)),
        ROW(Is(0), HASH_HexFromBytes(t, 1, in, 3, 3)),
        ROW(Is(128), HASH_HexFromBytes(t, -1, in, 3, 5)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromBytes(t, 64, in, kMin, 3)),
        ROW(Is(128), HASH_HexFromBytes(nullptr, 0, nullptr, 0, 0x1F)),
        ROW(Is(128), HASH_HexFromBytes(t, 200, in, 3, 0x1F)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromHex(t, 64, nullptr, 3)),
        ROW(Is(-INVALID_DATA_ERROR), HASH_HexFromHex(t, 64, "abc", 3)),
        ROW(Is(64), HASH_HexFromHex(t, 64, "zz", 3)),
        ROW(Is(40), HASH_HexFromHex(nullptr, 0, "", 0)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_HexFromHex(t, 64, "00", 9)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromBits(t, 64, nullptr, 0, 3)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromBits(t, 64, in, kMin, 3)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_HexFromBits(t, 64, in, 8, 1)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_HexFromBits(t, 64, in, 8, 0xAF)),
        ROW(Is(128), HASH_HexFromBits(nullptr, 0, in, 13, 13)),
        ROW(Is(40), HASH_HexFromBits(t, kMin, in, 7, 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_File(o, 32, nullptr, 3)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_File(o, 32, "", 3)),
        ROW(Is(-OPEN_ERROR), HASH_File(o, 32, Fs().missing.c_str(), 9)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_File(o, 32, ex, 9)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_File(o, 32, ex, 0xAF)),
        ROW(Is(32), HASH_File(o, 32, Fs().dir.c_str(), 3)),
        ROW(Is(48), HASH_File(nullptr, kMax, ex, 4)),
        ROW(Is(20), HASH_File(o, kMin, Fs().empty.c_str(), 0x10000)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromFile(t, 64, nullptr, 3)),
        ROW(Is(-OPEN_ERROR), HASH_HexFromFile(t, 64, Fs().missing.c_str(), 3)),
        ROW(Is(64), HASH_HexFromFile(nullptr, 0, ex, 3)),
        ROW(Is(2), HASH_HexFromFile(t, 3, ex, 3)),
        ROW(Is(64), HASH_HexFromFile(t, kMin, ex, 3)),
        ROW(Is(0), HASH_Init(OPT_HASH_MD5)),
        ROW(Is(0), HASH_Init(0xAF)),
        ROW(AHandle(), HASH_Init(kMin)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_AddBytes(HASH_Init(3), nullptr, 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_AddBytes(HASH_Init(3), in, kMin)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Final(nullptr, 32, 12345)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Final(o, 0, HASH_Init(3))),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Final(o, kMin, HASH_Init(3))),
        ROW(Is(-INVALID_HANDLE_ERROR), HASH_Final(o, 32, 0)),
        ROW(Is(64), HASH_Final(o, kMax, HASH_Init(13))),
        ROW(Is(5), HASH_Final(o, 5, HASH_Init(3))),
        ROW(Is(-INVALID_HANDLE_ERROR), HASH_DigestLength(0)),
        ROW(Is(48), HASH_DigestLength(HASH_Init(4))),

        ROW(Is(0), SHA3_Init(128)),
        ROW(Is(0), SHA3_Init(kMin)),
        ROW(AHandle(), SHA3_Init(512)),
        ROW(Is(BAD_PARAM_ERROR), SHA3_AddBytes(SHA3_Init(256), in, kMin)),
        ROW(Is(0), SHA3_AddBytes(SHA3_Init(256), nullptr, 0)),
        ROW(Is(BAD_PARAM_ERROR), SHA3_AddBytes(SHA3_Init(256), nullptr, 9)),
        ROW(Is(BAD_PARAM_ERROR), SHA3_AddString(SHA3_Init(224), nullptr)),
        ROW(Is(INVALID_HANDLE_ERROR), SHA3_AddString(0, "abc")),
        ROW(Is(64), SHA3_HexDigest(nullptr, 0, SHA3_Init(256))),
        ROW(Is(96), SHA3_HexDigest(t, kMin, SHA3_Init(384))),
        ROW(Is(4), SHA3_HexDigest(t, 5, SHA3_Init(256))),
        ROW(Is(-INVALID_HANDLE_ERROR), SHA3_HexDigest(t, 64, 0)),
        {"SHA3_HexDigest second call", [=] {
             int32_t h = SHA3_Init(256);
             SHA3_HexDigest(nullptr, 0, h);
             return SHA3_HexDigest(t, 64, h);
         }, Is(-INVALID_HANDLE_ERROR)},
        ROW(Is(-INVALID_HANDLE_ERROR), SHA3_LengthInBytes(0)),
        ROW(Is(48), SHA3_LengthInBytes(SHA3_Init(384))),
        ROW(Is(INVALID_HANDLE_ERROR), SHA3_Reset(0)),
    };
    AddHandleRows(rows, {"HASH_AddBytes", "HASH_Reset", [] { return HASH_Init(3); },
                         [](int32_t h) { return HASH_AddBytes(h, in, 3); }, HASH_Reset,
                         [] { return MAC_Init(k, 16, 3); }, -INVALID_HANDLE_ERROR});
    AddHandleRows(rows, {"SHA3_AddBytes", "SHA3_Reset", [] { return SHA3_Init(256); },
                         [](int32_t h) { return SHA3_AddBytes(h, in, 3); }, SHA3_Reset,
                         [] { return HASH_Init(3); }, INVALID_HANDLE_ERROR});
    for (const DigestFamily& f : kDigestFamilies) AddNamedRows(rows, f);
    return rows;
}

}  // namespace sweep
