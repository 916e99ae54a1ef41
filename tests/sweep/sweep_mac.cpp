// Sweep rows: MAC_, XOF_Bytes, PRF_Bytes and PBE_.
#include <string>

#include "sweep.h"

namespace sweep {

Table MacAndDerivationRows() {
    const char* k32hex = "000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f";
    Table rows = {
        ROW(Is(-BAD_PARAM_ERROR), MAC_Bytes(o, 32, in, 3, nullptr, 0, 3)),
        ROW(Is(64), MAC_Bytes(o, kMax, in, 3, k, 3, 5)),
        ROW(Is(32), MAC_Bytes(nullptr, 0, in, 3, k, 3, OPT_KMAC_128)),
        ROW(Is(-SHORT_BUF_ERROR), MAC_Bytes(o, 16, in, 3, k, 3, OPT_KMAC_128)),
        ROW(Is(-BAD_KEY_LEN_ERROR), MAC_Bytes(o, 16, in, 3, k, 24, OPT_CMAC_AES128)),
        ROW(Is(-BAD_FLAG_ERROR), MAC_Bytes(o, 16, in, 3, k, 16, 0x104)),
        ROW(Is(-BAD_KEY_LEN_ERROR), MAC_Bytes(o, 16, in, 3, k, 31, OPT_MAC_POLY1305)),
        ROW(Is(-BAD_FLAG_ERROR), MAC_Bytes(o, 16, in, 3, k, 32, 0x2FF)),
        ROW(Is(32), MAC_Bytes(o, 32, nullptr, 0, k, 0, 3)),
        ROW(Is(-BAD_BLK_LEN_ERROR), MAC_HexFromBytes(nullptr, 0, in, 3, k, 3, 2)),
        ROW(Is(-SHORT_BUF_ERROR), MAC_HexFromBytes(t, 63, in, 3, k, 3, OPT_KMAC_128)),
        ROW(Is(4), MAC_HexFromBytes(t, 5, in, 3, k, 24, OPT_CMAC_TDEA)),
        ROW(Is(128), MAC_HexFromHex(t, 128, "", "", OPT_KMAC_256)),
        ROW(Is(-BAD_FORMAT_ERROR), MAC_HexFromHex(t, 64, "zz", k32hex, OPT_MAC_POLY1305)),
        ROW(Is(-BAD_FLAG_ERROR), MAC_HexFromHex(t, 64, "zz", "zz", 0x2FF)),
        ROW(Is(10), MAC_HexFromHex(t, 10, "00", "00", 9)),
        ROW(Is(0), MAC_Init(k, 32, OPT_MAC_POLY1305)),
        ROW(AHandle(), MAC_Init(k, 16, int32_t(0xFFFFF003u))),
        ROW(Is(-INVALID_HANDLE_ERROR), MAC_Final(o, 32, 0)),
        ROW(Is(64), MAC_Final(o, kMax, MAC_Init(k, 16, 13))),
        ROW(Is(-INVALID_HANDLE_ERROR), MAC_CodeLength(0)),
        ROW(Is(28), MAC_CodeLength(MAC_Init(k, 16, 6))),

        ROW(Is(-BAD_PARAM_ERROR), XOF_Bytes(o, 32, nullptr, 3, OPT_XOF_ASCON_XOF)),
        ROW(Is(-BAD_PARAM_ERROR), XOF_Bytes(o, 32, in, kMin, OPT_XOF_SHAKE256)),
        ROW(Is(0), XOF_Bytes(o, 0, nullptr, 0, OPT_XOF_SHAKE128)),
        ROW(Is(-BAD_PARAM_ERROR), XOF_Bytes(o, 0, in, 3, OPT_XOF_MGF1_SHA256)),
        ROW(Is(33), XOF_Bytes(o, 33, in, 3, OPT_XOF_ASCON_XOFA)),
        ROW(Is(-BAD_PARAM_ERROR), PRF_Bytes(o, 32, nullptr, 0, k, 3, "", OPT_KMAC_128)),
        ROW(Is(-BAD_PARAM_ERROR), PRF_Bytes(o, 32, in, -1, k, 3, "", OPT_KMAC_256)),
        ROW(Is(-BAD_PARAM_ERROR), PRF_Bytes(o, 32, in, 3, nullptr, kMax, "", OPT_KMAC_128)),
        ROW(Is(32), PRF_Bytes(o, 32, in, 3, nullptr, 0, "", OPT_XOF_SHAKE256)),

        ROW(Is(SHORT_BUF_ERROR), PBE_Kdf2Hex(t, kMax, kMax, "pw", "00", 1, 0)),
        ROW(Is(0), PBE_Kdf2Hex(t, 64, 16, "", "", 1, 3)),
        ROW(Is(-NULL_ERROR), PBE_Scrypt(o, 16, in, 3, nullptr, kMax, 16, 1, 1, 0)),
        ROW(Is(0), PBE_Scrypt(o, 16, nullptr, 0, nullptr, 0, 16, 1, 1, 0)),
        ROW(Is(-SHORT_BUF_ERROR), PBE_ScryptHex(t, kMax, kMax, "pw", "00", 16, 1, 1, 0)),
        // N * r too large.
        ROW(Is(-OUT_OF_RANGE_ERROR), PBE_Scrypt(o, 16, in, 3, in, 3, 1024, 0x10000, 1, 0)),
    };
    VARY(MAC_Bytes, {o, 32, in, 3, k, 3, 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {1, -1}, {3, kMin}, {5, kMin}}}, {-BAD_FLAG_ERROR, {{6, 2}}}});
    VARY(MAC_HexFromBytes, {t, 64, in, 1, k, 3, 3}, {{-BAD_PARAM_ERROR, {{2, nullptr}, {4, nullptr}}}});
    VARY(MAC_HexFromHex, {t, 64, "00", "00", 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, nullptr}}}, {-BAD_KEY_LEN_ERROR, {{4, 0x101}}},
          {-BAD_FORMAT_ERROR, {{2, "0g"}}}});
    VARY(MAC_Init, {k, 16, 3}, {{0, {{0, nullptr}, {1, 0}, {1, kMin}, {2, OPT_HMAC_MD5}, {2, 0x13}}}});
    VARY(XOF_Bytes, {o, 32, in, 3, OPT_XOF_SHAKE128},
         {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, -1}}}, {-BAD_FLAG_ERROR, {{4, 0x211}, {4, kMin}}}});
    VARY(PRF_Bytes, {o, 32, in, 3, k, 3, "", OPT_KMAC_128},
         {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, kMin}, {5, -1}, {6, nullptr}}}, {-BAD_FLAG_ERROR, {{7, 0x205}}},
          {0, {{1, 0}}}});
    VARY(PBE_Kdf2, {o, 16, in, 3, in, 3, 1, 0},
         {{NULL_ERROR, {{0, nullptr}, {2, nullptr}, {4, nullptr}}},
          {BAD_PARAM_ERROR, {{1, 0}, {3, kMin}, {5, -1}, {6, 0}, {6, kMin}, {7, 1}, {7, 10}}}});
    VARY(PBE_Kdf2Hex, {t, 64, 16, "pw", "00", 1, 0},
         {{NULL_ERROR, {{0, nullptr}, {3, nullptr}, {4, nullptr}}}, {BAD_PARAM_ERROR, {{1, 0}, {2, kMin}}},
          {SHORT_BUF_ERROR, {{1, 31}}}, {BAD_FORMAT_ERROR, {{4, "0"}, {4, "00:11"}}}});
    // Costs out of range: N not a power of two above 1, r or p out of range.
    VARY(PBE_Scrypt, {o, 16, in, 3, in, 3, 16, 1, 1, 0},
         {{-NULL_ERROR, {{0, nullptr}, {2, nullptr}}},
          {-BAD_PARAM_ERROR, {{1, 0}, {1, -16}, {3, kMin}, {5, -1}, {6, 0}}},
          {-OUT_OF_RANGE_ERROR, {{6, 1}, {6, 3}, {6, kMin}, {7, kMax}, {7, -1}, {8, kMax}, {8, kMin}}}});
    VARY(PBE_ScryptHex, {t, 64, 16, "pw", "00", 16, 1, 1, 0},
         {{-NULL_ERROR, {{0, nullptr}, {3, nullptr}}}, {-BAD_PARAM_ERROR, {{1, 0}, {1, kMin}, {2, -1}}},
          {-SHORT_BUF_ERROR, {{1, 31}}}, {-BAD_FORMAT_ERROR, {{4, "000"}}}, {-OUT_OF_RANGE_ERROR, {{5, 3}}}});
    VARY(MAC_HexFromBytes, {t, 64, in, 3, k, 3, 3}, {{64, {{1, -1}}}, {-BAD_KEY_LEN_ERROR, {{6, OPT_MAC_POLY1305}}}});
    VARY(MAC_HexFromHex, {t, 64, "", "", 3}, {{-BAD_KEY_LEN_ERROR, {{4, 3}}}, {-BAD_FORMAT_ERROR, {{3, "0"}}}});
    const auto mac = [] { return MAC_Init(k, 16, 3); };
    VARY(MAC_AddBytes, {0, in, 0}, {{-BAD_PARAM_ERROR, {{1, nullptr}, {2, kMin}}}}, {0, mac});
    VARY(MAC_Final, {o, 32, 0}, {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, kMin}}}}, {2, mac});
    AddHandleRows(rows, {"MAC_AddBytes", "MAC_Reset", [] { return MAC_Init(k, 16, 3); },
                         [](int32_t h) { return MAC_AddBytes(h, in, 3); }, MAC_Reset,
                         [] { return HASH_Init(3); }, -INVALID_HANDLE_ERROR});
    return rows;
}

}  // namespace sweep
