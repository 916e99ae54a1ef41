// Sweep rows: HASH_, SHA3_ and the SHA1_, SHA2_, MD5_ families.
#include "digest_family_support.h"
#include "sweep.h"

namespace sweep {

namespace {

void AddNamedRows(Table& rows, const DigestFamily& f) {
    const std::string p = f.prefix;
    FROW(Is(BAD_PARAM_ERROR), "StringHexHash", f.stringHexHash(t, nullptr));
    FROW(Is(0), "StringHexHash", f.stringHexHash(nullptr, "abc"));
    FROW(Is(BAD_PARAM_ERROR), "FileHexHash", f.fileHexHash(t, nullptr, "b"));
    FROW(Is(OPEN_ERROR), "FileHexHash", f.fileHexHash(t, "", "b"));
    FROW(Is(OPEN_ERROR), "FileHexHash", f.fileHexHash(t, Fs().missing.c_str(), "t"));
    FROW(Is(BAD_PARAM_ERROR), "FileHexHash", f.fileHexHash(t, ex, nullptr));
    FROW(Is(READ_ERROR), "FileHexHash", f.fileHexHash(t, Fs().dir.c_str(), ""));
    FROW(Is(0), "FileHexHash", f.fileHexHash(t, Fs().empty.c_str(), "b"));
    FROW(Is(0), "BytesHexHash", f.bytesHexHash(t, nullptr, 0));
    FROW(Is(BAD_PARAM_ERROR), "BytesHash", f.bytesHash(o, nullptr, kMax));
    FROW(AHandle(), "Init", f.init());
    FROW(Is(INVALID_HANDLE_ERROR), "AddString", f.addString(0, "abc"));
    FROW(Is(BAD_PARAM_ERROR), "AddString", f.addString(f.init(), nullptr));
    FROW(Is(0), "AddBytes", f.addBytes(f.init(), nullptr, 0));
    FROW(Is(0), "HexDigest", f.hexDigest(nullptr, f.init()));
    FROW(Is(INVALID_HANDLE_ERROR), "HexDigest", f.hexDigest(t, 0));
    rows.push_back({p + "HexDigest second call", [f] {
        int32_t h = f.init();
        f.hexDigest(t, h);
        return f.hexDigest(t, h);
    }, Is(INVALID_HANDLE_ERROR)});
    FROW(Is(INVALID_HANDLE_ERROR), "Reset", f.reset(kMin));
    AddHandleRows(rows, {(p + "AddBytes").c_str(), (p + "Reset").c_str(), f.init,
                         [f](int32_t h) { return f.addBytes(h, in, 3); }, f.reset,
                         [] { return HASH_Init(OPT_HASH_SHA256); }, INVALID_HANDLE_ERROR});
    Vary(rows, p + "AddBytes", f.addBytes, {0, in, 4}, {{BAD_PARAM_ERROR, {{2, kMin}, {1, nullptr}}}}, {0, f.init});
    Vary(rows, p + "BytesHexHash", f.bytesHexHash, {t, in, 5}, {{BAD_PARAM_ERROR, {{2, kMin}, {1, nullptr}}}});
    Vary(rows, p + "BytesHash", f.bytesHash, {o, in, 3}, {{BAD_PARAM_ERROR, {{0, nullptr}, {2, -1}}}});
    Vary(rows, p + "Hmac", f.hmac, {t, in, 3, k, 3},
         {{BAD_PARAM_ERROR, {{2, -1}, {4, kMin}, {1, nullptr}}}, {0, {{0, nullptr}}}});
    Vary(rows, p + "HmacHex", f.hmacHex, {t, "00", "00"}, {{BAD_PARAM_ERROR, {{1, nullptr}, {2, nullptr}}}});
    FROW(Is(BAD_PARAM_ERROR), "Hmac", f.hmac(t, in, 3, nullptr, kMax));
    FROW(Is(0), "Hmac", f.hmac(t, nullptr, 0, nullptr, 0));
    FROW(Is(0), "HmacHex", f.hmacHex(t, "zz-", "?"));
}

}  // namespace

Table DigestRows() {
    Table rows = {
        ROW(Is(-BAD_PARAM_ERROR), HASH_Bytes(o, 20, nullptr, 5, 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Bytes(o, 20, nullptr, kMax, 3)),
        ROW(Is(64), HASH_Bytes(o, kMax, in, 3, 5)),
        ROW(Is(-BAD_FLAG_ERROR), HASH_Bytes(nullptr, 0, nullptr, 0, 14)),
        // The caller's room stands for the digest length.
        ROW(Is(100), HASH_Bytes(o, 100, in, 3, 0x1F)),
        ROW(Is(0), HASH_Bytes(nullptr, 0, in, 3, 0x7F)),
        ROW(Is(64), HASH_HexFromBytes(nullptr, 64, in, 3, 0xAF)),
        ROW(Is(128), HASH_HexFromBytes(t, -1, in, 3, 5)),
        ROW(Is(128), HASH_HexFromBytes(nullptr, 0, nullptr, 0, 0x1F)),
        ROW(Is(128), HASH_HexFromBytes(t, 200, in, 3, 0x1F)),
        ROW(Is(40), HASH_HexFromHex(nullptr, 0, "", 0)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_HexFromBits(t, 64, nullptr, 0, 3)),
        ROW(Is(128), HASH_HexFromBits(nullptr, 0, in, 13, 13)),
        ROW(Is(40), HASH_HexFromBits(t, kMin, in, 7, 0)),
        ROW(Is(-OPEN_ERROR), HASH_File(o, 32, Fs().missing.c_str(), 9)),
        ROW(Is(48), HASH_File(nullptr, kMax, ex, 4)),
        ROW(Is(20), HASH_File(o, kMin, Fs().empty.c_str(), 0x10000)),
        ROW(Is(64), HASH_HexFromFile(nullptr, 0, ex, 3)),
        ROW(AHandle(), HASH_Init(kMin)),
        ROW(Is(-BAD_PARAM_ERROR), HASH_Final(nullptr, 32, 12345)),
        ROW(Is(-INVALID_HANDLE_ERROR), HASH_Final(o, 32, 0)),
        ROW(Is(64), HASH_Final(o, kMax, HASH_Init(13))),
        ROW(Is(-INVALID_HANDLE_ERROR), HASH_DigestLength(0)),
        ROW(Is(48), HASH_DigestLength(HASH_Init(4))),

        ROW(AHandle(), SHA3_Init(512)),
        ROW(Is(0), SHA3_AddBytes(SHA3_Init(256), nullptr, 0)),
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
    VARY(HASH_Bytes, {o, 20, in, 3, 0}, {{-BAD_PARAM_ERROR, {{3, kMin}}}, {-BAD_FLAG_ERROR, {{4, 9}}}});
    VARY(HASH_HexFromBytes, {t, 64, in, 3, 3}, {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, kMin}}}, {0, {{1, 1}}}});
    VARY(HASH_HexFromHex, {t, 64, "00", 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}}}, {-INVALID_DATA_ERROR, {{2, "abc"}}}, {64, {{2, "zz"}}},
          {-BAD_FLAG_ERROR, {{3, 9}}}});
    VARY(HASH_HexFromBits, {t, 64, in, 8, 3},
         {{-BAD_PARAM_ERROR, {{3, kMin}}}, {-BAD_FLAG_ERROR, {{4, 1}, {4, 0xAF}}}});
    VARY(HASH_File, {o, 32, ex, 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {2, ""}}}, {-BAD_FLAG_ERROR, {{3, 9}, {3, 0xAF}}},
          {32, {{2, Fs().dir.c_str()}}}});
    VARY(HASH_HexFromFile, {t, 64, ex, 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}}}, {-OPEN_ERROR, {{2, Fs().missing.c_str()}}}, {2, {{1, 3}}},
          {64, {{1, kMin}}}});
    VARY(HASH_Init, {3}, {{0, {{0, OPT_HASH_MD5}, {0, 0xAF}}}});
    VARY(SHA3_Init, {256}, {{0, {{0, 128}, {0, kMin}}}});
    VARY(HASH_Length, {3}, {{-BAD_FLAG_ERROR, {{0, kMin}, {0, 0x10003}}}, {0x1F, {{0, 0x1F}}}, {32, {{0, 0xBF}}}});
    VARY(HASH_Bytes, {o, 64, in, 3, 3}, {{32, {{1, kMin}, {4, int32_t(0xFFFFFFF3u)}}}});
    const auto hash = [] { return HASH_Init(3); };
    VARY(HASH_AddBytes, {0, in, 0}, {{-BAD_PARAM_ERROR, {{1, nullptr}, {2, kMin}}}}, {0, hash});
    VARY(HASH_Final, {o, 32, 0}, {{-BAD_PARAM_ERROR, {{1, 0}, {1, kMin}}}, {5, {{1, 5}}}}, {2, hash});
    VARY(SHA3_AddBytes, {0, in, 9}, {{BAD_PARAM_ERROR, {{2, kMin}, {1, nullptr}}}}, {0, [] { return SHA3_Init(256); }});
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
