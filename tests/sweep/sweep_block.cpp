// Sweep rows: the per-cipher families AES128_, AES192_, AES256_, DES_, TDEA_
// and BLF_, with their file calls and DES_CheckKey.
#include <string>
#include <vector>

#include "sweep.h"

namespace sweep {

namespace {

// The families whose calls share one argument list.
struct FixedKeyFamily {
    const char* prefix;
    int block;  // bytes
    int keyBytes;
    // Where the families differ on purpose.
    int negativeLengthCode;  // Bytes calls
    int b64MissingCode;
    int (*initHexErrorSlot)();  // which InitError shows a missing argument of InitHex
    bool fileHexChecksIvItself;
    int32_t (*bytes)(unsigned char*, const unsigned char*, int32_t, const unsigned char*, int32_t);
    int32_t (*bytesMode)(unsigned char*, const unsigned char*, int32_t, const unsigned char*, int32_t, const char*,
                         const unsigned char*);
    int32_t (*hex)(char*, const char*, const char*, int32_t);
    int32_t (*hexMode)(char*, const char*, const char*, int32_t, const char*, const char*);
    int32_t (*b64Mode)(char*, const char*, const char*, int32_t, const char*, const char*);
    int32_t (*file)(const char*, const char*, const unsigned char*, int32_t, const char*, const unsigned char*);
    int32_t (*fileExt)(const char*, const char*, const unsigned char*, int32_t, const char*, const unsigned char*,
                       int32_t);
    int32_t (*fileHex)(const char*, const char*, const char*, int32_t, const char*, const char*);
    int32_t (*init)(const unsigned char*, int32_t, const char*, const unsigned char*);
    int32_t (*initHex)(const char*, int32_t, const char*, const char*);
    int32_t (*update)(int32_t, unsigned char*, int32_t);
    int32_t (*updateHex)(int32_t, char*);
    int32_t (*final)(int32_t);
    int32_t (*initError)();
};

#define FAMILY(P, ...)                                                                                         \
    {#P "_", __VA_ARGS__, P##_Bytes, P##_BytesMode, P##_Hex, P##_HexMode, P##_B64Mode, P##_File, P##_FileExt, \
     P##_FileHex, P##_Init, P##_InitHex, P##_Update, P##_UpdateHex, P##_Final, P##_InitError}
const FixedKeyFamily kFamilies[] = {
    FAMILY(AES128, 16, 16, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES128_InitError, false),
    FAMILY(AES192, 16, 24, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES192_InitError, false),
    FAMILY(AES256, 16, 32, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES256_InitError, false),
    FAMILY(DES, 8, 8, BAD_PARAM_ERROR, NULL_ERROR, TDEA_InitError, false),
    FAMILY(TDEA, 8, 24, BAD_LENGTH_ERROR, NULL_ERROR, TDEA_InitError, true),
};
#undef FAMILY

std::string HexOf(int bytes, char digit = '1') { return std::string(size_t(bytes) * 2, digit); }

void AddFixedKeyRows(Table& rows, const FixedKeyFamily& f) {
    const int B = f.block;
    const std::string key = HexOf(f.keyBytes), ivHex = HexOf(B, '2'), data = HexOf(2 * B, '3');
    const std::string p = f.prefix;
    Vary(rows, p + "Bytes", f.bytes, {o, in, B, k, 1},
         {{NULL_ERROR, {{0, nullptr}, {1, nullptr}}}, {BAD_LENGTH_ERROR, {{2, B + 1}}}, {0, {{2, 0}}}});
    Vary(rows, p + "BytesMode", f.bytesMode, {o, in, B, k, 1, "cbc", iv},
         {{NULL_ERROR, {{5, nullptr}}}, {BAD_MODE_ERROR, {{5, ""}}}, {BAD_IV_ERROR, {{6, nullptr}}}});
    Vary(rows, p + "Hex", f.hex, {t, Keep(data), Keep(key), 1},
         {{BAD_PARAM_ERROR, {{0, nullptr}, {1, nullptr}, {2, ""}}}, {BAD_LENGTH_ERROR, {{1, "1"}}},
          {BAD_FORMAT_ERROR, {{1, "123"}, {1, Keep(HexOf(B, 'z'))}}},
          {BAD_KEY_LEN_ERROR, {{2, Keep(HexOf(f.keyBytes - 1))}, {2, Keep(HexOf(64))}}}});
    Vary(rows, p + "B64Mode", f.b64Mode, {t, "AAAA", "AAAA", 1, "ECB", nullptr},
         {{f.b64MissingCode, {{0, nullptr}, {4, nullptr}, {1, ""}}}, {BAD_MODE_ERROR, {{4, "EC"}}},
          {BAD_FORMAT_ERROR, {{1, "!!!!"}}}, {BAD_KEY_LEN_ERROR, {{1, "AAAAAAAAAAAA"}}}});
    Vary(rows, p + "File", f.file, {out, ex, k, 1, "ECB", nullptr},
         {{BAD_PARAM_ERROR, {{0, nullptr}, {1, ""}}}, {DUP_ERROR, {{0, ex}}}, {OPEN_ERROR, {{1, Fs().missing.c_str()}}},
          {CREATE_ERROR, {{0, Fs().noDir.c_str()}}}, {BAD_MODE_ERROR, {{4, nullptr}}}, {BAD_KEY_ERROR, {{2, nullptr}}},
          {BAD_IV_ERROR, {{4, "CBC"}}}});
    Vary(rows, p + "FileHex", f.fileHex, {out, ex, Keep(key), 1, "ECB", nullptr},
         {{BAD_PARAM_ERROR, {{2, nullptr}}}, {BAD_KEY_ERROR, {{2, "zz"}}}, {BAD_KEY_LEN_ERROR, {{2, "0011"}}}});

    FROW(Is(NULL_ERROR), "Bytes", f.bytes(o, in, B, nullptr, 0));
    FROW(Is(f.negativeLengthCode), "Bytes", f.bytes(o, in, kMin, k, 0));
    FROW(Is(0), "BytesMode", f.bytesMode(o, in, 5, k, 0, "CTR-x", iv));
    FROW(Is(f.negativeLengthCode), "BytesMode", f.bytesMode(o, in, kMin, k, 0, "CFB", iv));
    FROW(Is(BAD_LENGTH_ERROR), "Hex", f.hex(t, HexOf(B + 1).c_str(), key.c_str(), 0));
    Vary(rows, p + "HexMode", f.hexMode, {t, Keep(data), Keep(key), 1, "CBC", nullptr},
         {{BAD_PARAM_ERROR, {{4, nullptr}}}, {BAD_MODE_ERROR, {{4, "xyz"}}}, {BAD_IV_ERROR, {{5, nullptr}}}});
    FROW(Is(BAD_IV_ERROR), "HexMode", f.hexMode(t, data.c_str(), key.c_str(), 1, "OFB", "00"));
    FROW(Is(0), "HexMode", f.hexMode(t, HexOf(B + 3).c_str(), key.c_str(), 1, "ctr", ivHex.c_str()));
    FROW(Is(BAD_IV_ERROR), "B64Mode", f.b64Mode(t, "AAAA", "AAAA", 1, "CBC", ""));
    FROW(Is(BAD_LENGTH_ERROR), "File", f.file(out, ex, k, 0, "CBC", iv));
    FROW(Is(0), "FileExt", f.fileExt(out, ex, k, 1, "ECB", nullptr, kMin));
    FROW(Is(READ_ERROR), "FileExt", f.fileExt(out, Fs().empty.c_str(), k, 0, "CBC", nullptr, OPT_PREFIX_IV));
    FROW(Is(BAD_PARAM_ERROR), "FileExt", f.fileExt(nullptr, nullptr, k, 1, "ECB", nullptr, 0));
    FROW(Is(BAD_IV_ERROR), "FileHex", f.fileHex(out, ex, key.c_str(), 1, "CBC", "zz"));
    FROW(Is(f.fileHexChecksIvItself ? BAD_PARAM_ERROR : BAD_IV_ERROR), "FileHex",
         f.fileHex(out, ex, key.c_str(), 1, "CBC", nullptr));
    FROW(Is(BAD_MODE_ERROR), "FileHex", f.fileHex(out, ex, key.c_str(), 1, nullptr, ivHex.c_str()));
    Vary(rows, p + "Init", f.init, {k, 1, "ECB", nullptr},
         {{BAD_KEY_ERROR, {{0, nullptr}}}, {BAD_MODE_ERROR, {{2, nullptr}}}, {BAD_IV_ERROR, {{2, "CFB"}}}},
         {.latch = f.initError});
    Vary(rows, p + "InitHex", f.initHex, {Keep(key), 1, "ECB", nullptr},
         {{BAD_KEY_ERROR, {{0, "zzzz"}}}, {BAD_KEY_LEN_ERROR, {{0, Keep(HexOf(60))}}}}, {.latch = f.initError});
    Vary(rows, p + "UpdateHex", f.updateHex, {0, nullptr},
         {{BAD_PARAM_ERROR, {{1, nullptr}, {1, ""}}}, {BAD_FORMAT_ERROR, {{1, Keep(HexOf(B, 'q'))}}}},
         {0, [f] { return f.init(k, 1, "ECB", nullptr); }});
    FROW(AHandle(), "Init", f.init(k, kMin, "ECB", nullptr));
    FROW(Is(BAD_PARAM_ERROR), "InitHex", Latched(f.initHex(nullptr, 1, "ECB", nullptr), f.initHexErrorSlot));
    FROW(Is(BAD_IV_ERROR), "InitHex", Latched(f.initHex(key.c_str(), 1, "CBC", "001"), f.initError));
    FROW(AHandle(), "InitHex", f.initHex(key.c_str(), 0, "OFB", ivHex.c_str()));
    FROW(Is(NULL_ERROR), "Update", f.update(f.init(k, 1, "ECB", nullptr), nullptr, B));
    FROW(Is(BAD_PARAM_ERROR), "Update", f.update(f.init(k, 1, "CTR", iv), o, kMin));
    FROW(Is(BAD_LENGTH_ERROR), "Update", f.update(f.init(k, 1, "CBC", iv), o, B - 1));
    AddHandleRows(rows, {(p + "Update").c_str(), (p + "Final").c_str(), [f] { return f.init(k, 1, "ECB", nullptr); },
                         [f, B](int32_t h) { return f.update(h, o, B); }, f.final,
                         [] { return CIPHER_Init(1, "aes128", k, 16, nullptr, 0, 0); }, INVALID_HANDLE_ERROR});
    FROW(Is(INVALID_HANDLE_ERROR), "UpdateHex", f.updateHex(0, Mut(data)));
    FROW(Is(BAD_FORMAT_ERROR), "UpdateHex", f.updateHex(f.init(k, 1, "CTR", iv), Mut("123")));
    FROW(Is(0), "InitError", (f.init(k, 1, "ECB", nullptr), f.initError()));
}

}  // namespace

Table BlockFamilyRows() {
    Table rows;
    for (const FixedKeyFamily& f : kFamilies) AddFixedKeyRows(rows, f);
    const char *kHex32 = "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", *kHex16 = "bbbbbbbbbbbbbbbb";
    const char *kKeyHex32 = "11111111111111111111111111111111", *kB64Block = "AAAAAAAAAAAAAAAAAAAAAA==";
    const Table more = {
        ROW(Is(WEAK_KEY_ERROR), DES_CheckKey(std::vector<uint8_t>(8).data(), 8)),
        ROW(Is(BAD_KEY_LEN_ERROR), DES_CheckKeyHex(nullptr)),
        ROW(Is(BAD_KEY_LEN_ERROR), DES_CheckKeyHex("zzzzzzzzzzzzzzzz")),
        ROW(Is(BAD_KEY_LEN_ERROR), DES_CheckKeyHex(std::string(50, '1').c_str())),

        ROW(Is(NULL_ERROR), BLF_Bytes(o, in, 8, nullptr, 0, 1)),
        ROW(Is(BAD_LENGTH_ERROR), BLF_Bytes(o, in, 9, k, 8, 0)),
        ROW(Is(BAD_IV_ERROR), BLF_BytesMode(o, in, 8, k, 8, 1, "x", nullptr)),
        ROW(Is(BAD_KEY_ERROR), BLF_Hex(t, "0011223344556677", "zz", 1)),
        ROW(Is(BAD_KEY_LEN_ERROR), BLF_Hex(t, "0011223344556677", std::string(114, '1').c_str(), 1)),
        ROW(Is(BAD_IV_ERROR), BLF_HexMode(t, "0011223344556677", "00", 1, "CFB", "")),
        ROW(Is(NULL_ERROR), BLF_B64Mode(t, "AAAAAAAAAAA=", nullptr, 1, "ECB", nullptr)),
        ROW(Is(BAD_KEY_ERROR), BLF_B64Mode(t, "AAAAAAAAAAA=", "====", 1, "ECB", nullptr)),
        ROW(Is(BAD_PARAM_ERROR), BLF_File(nullptr, nullptr, k, 8, 1, "ECB", nullptr)),
        ROW(Is(BAD_KEY_LEN_ERROR), BLF_File(out, ex, k, -1, 1, "ECB", nullptr)),
        ROW(Is(BAD_KEY_ERROR), BLF_File(out, ex, nullptr, 8, 1, "ECB", nullptr)),
        ROW(Is(DUP_ERROR), BLF_FileExt(ex, ex, k, 8, 1, "ECB", nullptr, 0)),
        ROW(Is(BAD_KEY_LEN_ERROR), BLF_FileHex(out, ex, std::string(114, '1').c_str(), 1, "ECB", nullptr)),
        ROW(Is(BAD_PARAM_ERROR), BLF_FileHex(out, ex, nullptr, 1, "ECB", nullptr)),
        ROW(AHandle(), BLF_Init(k, 0, 1, "ecb", nullptr)),
        // A missing key text is reported in TDEA_'s slot.
        ROW(Is(BAD_PARAM_ERROR), Latched(BLF_InitHex(nullptr, 1, "ECB", nullptr), TDEA_InitError)),
        ROW(Is(BAD_FORMAT_ERROR), BLF_UpdateHex(BLF_Init(k, 8, 1, "ECB", nullptr), Mut("abc"))),
        {"BLF_InitError after a good Init", [] { return BLF_Init(k, 8, 1, "ECB", nullptr), BLF_InitError(); }, Is(0)},
        ROW(Is(BAD_LENGTH_ERROR), BLF_Ecb(BLF_Init(k, 8, 1, "CBC", iv), o, 7, 0)),
        ROW(Is(BAD_PARAM_ERROR), BLF_EcbHex(0, Mut(""), 1)),
        ROW(Is(BAD_FORMAT_ERROR), BLF_EcbHex(0, Mut("0g"), 1)),  // decoded before the handle is looked at
        ROW(Is(INVALID_HANDLE_ERROR), BLF_EcbHex(0, Mut("0011223344556677"), 1)),
        // Which of several faults each family reports first.
        ROW(Is(BAD_MODE_ERROR), AES256_BytesMode(o, in, 16, k, 1, "XYZ", nullptr)),
        ROW(Is(BAD_IV_ERROR), DES_BytesMode(o, in, 8, k, 1, "XYZ", nullptr)),
        ROW(Is(BAD_MODE_ERROR), TDEA_BytesMode(o, in, 8, k, 1, "XYZ", nullptr)),
        ROW(Is(NULL_ERROR), DES_BytesMode(nullptr, in, -8, k, 1, "ECB", iv)),
        ROW(Is(BAD_LENGTH_ERROR), AES128_BytesMode(o, in, 15, k, 0, "CBC", iv)),
        ROW(Is(BAD_MODE_ERROR), AES128_HexMode(nullptr, "", "", 1, "QQQ", nullptr)),
        ROW(Is(BAD_PARAM_ERROR), AES128_HexMode(nullptr, "aa", "11", 1, "CBC", nullptr)),
        ROW(Is(BAD_IV_ERROR), AES128_HexMode(t, "a", "11", 1, "CBC", "00")),
        ROW(Is(BAD_PARAM_ERROR), AES128_UpdateHex(0, Mut(""))),
        ROW(Is(BAD_KEY_ERROR), Latched(AES128_Init(nullptr, 1, "CBC", nullptr), AES128_InitError)),
        ROW(Is(BAD_IV_ERROR), Latched(AES192_Init(k, 1, "CBC", nullptr), AES128_InitError)),
    };
    VARY(BLF_Bytes, {o, in, 8, k, 8, 1},
         {{0, {{4, 56}, {4, 0}}}, {BAD_KEY_LEN_ERROR, {{4, 57}}}, {BAD_PARAM_ERROR, {{4, kMin}, {2, -8}}}});
    VARY(BLF_Ecb, {0, o, 8, 1}, {{NULL_ERROR, {{1, nullptr}}}, {BAD_PARAM_ERROR, {{2, kMin}}}});
    VARY(BLF_Init, {k, 8, 1, "ECB", nullptr}, {{BAD_PARAM_ERROR, {{1, -1}}}, {BAD_KEY_LEN_ERROR, {{1, 57}}}},
         {.latch = BLF_InitError});
    // Mode and IV are screened before the key text is read.
    VARY(AES128_InitHex, {"00", 1, "CBC", nullptr},
         {{BAD_PARAM_ERROR, {{2, ""}}}, {BAD_MODE_ERROR, {{2, "ABC"}}}, {BAD_IV_ERROR, {{3, kHex16}}}},
         {.latch = AES128_InitError});
    VARY(DES_CheckKey, {k, 8}, {{NULL_ERROR, {{0, nullptr}}}, {BAD_KEY_LEN_ERROR, {{1, -8}, {1, kMax}}}});
    VARY(BLF_BytesMode, {o, in, 8, k, 8, 1, "ECB", iv}, {{NULL_ERROR, {{6, nullptr}}}, {BAD_MODE_ERROR, {{6, "xyz"}}}});
    VARY(AES128_Hex, {t, kHex32, kKeyHex32, 1}, {{BAD_FORMAT_ERROR, {{1, "zz"}}}, {BAD_KEY_LEN_ERROR, {{2, "xy"}}}});
    VARY(AES128_Update, {1, o, 16}, {{NULL_ERROR, {{1, nullptr}}}, {BAD_PARAM_ERROR, {{2, -1}}}});
    rows.insert(rows.end(), more.begin(), more.end());
    const auto blf = [] { return BLF_Init(k, 8, 1, "ECB", nullptr); };
    AddHandleRows(rows, {"BLF_Update", "BLF_Final", blf, [](int32_t h) { return BLF_Update(h, o, 8); }, BLF_Final,
                         [] { return DES_Init(k, 1, "ECB", nullptr); }, INVALID_HANDLE_ERROR});
    AddHandleRows(rows, {"BLF_Ecb", "BLF_Final", blf, [](int32_t h) { return BLF_Ecb(h, o, 8, 1); }, BLF_Final,
                         [] { return HASH_Init(3); }, INVALID_HANDLE_ERROR});
    return rows;
}

}  // namespace sweep
