// Sweep rows: the per-cipher families AES128_, AES192_, AES256_, DES_, TDEA_
// and BLF_, with their file calls and DES_CheckKey.
#include <string>

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

const FixedKeyFamily kFamilies[] = {
    {"AES128_", 16, 16, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES128_InitError, false, AES128_Bytes, AES128_BytesMode,
     AES128_Hex, AES128_HexMode, AES128_B64Mode, AES128_File, AES128_FileExt, AES128_FileHex, AES128_Init,
     AES128_InitHex, AES128_Update, AES128_UpdateHex, AES128_Final, AES128_InitError},
    {"AES192_", 16, 24, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES192_InitError, false, AES192_Bytes, AES192_BytesMode,
     AES192_Hex, AES192_HexMode, AES192_B64Mode, AES192_File, AES192_FileExt, AES192_FileHex, AES192_Init,
     AES192_InitHex, AES192_Update, AES192_UpdateHex, AES192_Final, AES192_InitError},
    {"AES256_", 16, 32, BAD_LENGTH_ERROR, BAD_PARAM_ERROR, AES256_InitError, false, AES256_Bytes, AES256_BytesMode,
     AES256_Hex, AES256_HexMode, AES256_B64Mode, AES256_File, AES256_FileExt, AES256_FileHex, AES256_Init,
     AES256_InitHex, AES256_Update, AES256_UpdateHex, AES256_Final, AES256_InitError},
    {"DES_", 8, 8, BAD_PARAM_ERROR, NULL_ERROR, TDEA_InitError, false, DES_Bytes, DES_BytesMode, DES_Hex,
     DES_HexMode, DES_B64Mode, DES_File, DES_FileExt, DES_FileHex, DES_Init, DES_InitHex, DES_Update,
     DES_UpdateHex, DES_Final, DES_InitError},
    {"TDEA_", 8, 24, BAD_LENGTH_ERROR, NULL_ERROR, TDEA_InitError, true, TDEA_Bytes, TDEA_BytesMode, TDEA_Hex,
     TDEA_HexMode, TDEA_B64Mode, TDEA_File, TDEA_FileExt, TDEA_FileHex, TDEA_Init, TDEA_InitHex, TDEA_Update,
     TDEA_UpdateHex, TDEA_Final, TDEA_InitError},
};

std::string HexOf(int bytes, char digit = '1') { return std::string(size_t(bytes) * 2, digit); }

void AddFixedKeyRows(Table& rows, const FixedKeyFamily& f) {
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* iv = b.iv;
    const int B = f.block;
    const std::string key = HexOf(f.keyBytes), ivHex = HexOf(B, '2'), data = HexOf(2 * B, '3');
    auto row = [&](const char* call, const char* what, std::function<int32_t()> fn, Expect e) {
        rows.push_back({std::string(f.prefix) + call + " " + what, std::move(fn), std::move(e)});
    };
    const char* ex = Fs().existing.c_str();
    const char* out = Fs().out.c_str();

    row("Bytes", "null output", [=] { return f.bytes(nullptr, in, B, k, 1); }, Is(NULL_ERROR));
    row("Bytes", "null input", [=] { return f.bytes(o, nullptr, B, k, 1); }, Is(NULL_ERROR));
    row("Bytes", "null key", [=] { return f.bytes(o, in, B, nullptr, 0); }, Is(NULL_ERROR));
    row("Bytes", "part block", [=] { return f.bytes(o, in, B + 1, k, 1); }, Is(BAD_LENGTH_ERROR));
    row("Bytes", "negative length", [=] { return f.bytes(o, in, -B, k, 1); }, Is(f.negativeLengthCode));
    row("Bytes", "INT32_MIN", [=] { return f.bytes(o, in, kMin, k, 0); }, Is(f.negativeLengthCode));
    row("Bytes", "empty", [=] { return f.bytes(o, in, 0, k, 1); }, Is(0));
    row("BytesMode", "null mode", [=] { return f.bytesMode(o, in, B, k, 1, nullptr, iv); }, Is(NULL_ERROR));
    row("BytesMode", "empty mode", [=] { return f.bytesMode(o, in, B, k, 1, "", iv); }, Is(BAD_MODE_ERROR));
    row("BytesMode", "CBC without IV", [=] { return f.bytesMode(o, in, B, k, 1, "cbc", nullptr); }, Is(BAD_IV_ERROR));
    row("BytesMode", "CTR part block", [=] { return f.bytesMode(o, in, 5, k, 0, "CTR-x", iv); }, Is(0));
    row("BytesMode", "CFB INT32_MIN", [=] { return f.bytesMode(o, in, kMin, k, 0, "CFB", iv); },
        Is(f.negativeLengthCode));
    row("Hex", "null output", [=] { return f.hex(nullptr, data.c_str(), key.c_str(), 1); }, Is(BAD_PARAM_ERROR));
    row("Hex", "null input", [=] { return f.hex(t, nullptr, key.c_str(), 1); }, Is(BAD_PARAM_ERROR));
    row("Hex", "empty key", [=] { return f.hex(t, data.c_str(), "", 1); }, Is(BAD_PARAM_ERROR));
    row("Hex", "one digit", [=] { return f.hex(t, "1", key.c_str(), 1); }, Is(BAD_LENGTH_ERROR));
    row("Hex", "odd input", [=] { return f.hex(t, "123", key.c_str(), 1); }, Is(BAD_FORMAT_ERROR));
    row("Hex", "not hex", [=] { return f.hex(t, HexOf(B, 'z').c_str(), key.c_str(), 1); }, Is(BAD_FORMAT_ERROR));
    row("Hex", "key one byte short", [=] { return f.hex(t, data.c_str(), HexOf(f.keyBytes - 1).c_str(), 1); },
        Is(BAD_KEY_LEN_ERROR));
    row("Hex", "key too long", [=] { return f.hex(t, data.c_str(), HexOf(64).c_str(), 1); }, Is(BAD_KEY_LEN_ERROR));
    row("Hex", "part block", [=] { return f.hex(t, HexOf(B + 1).c_str(), key.c_str(), 0); }, Is(BAD_LENGTH_ERROR));
    row("HexMode", "null mode", [=] { return f.hexMode(t, data.c_str(), key.c_str(), 1, nullptr, nullptr); },
        Is(BAD_PARAM_ERROR));
    row("HexMode", "unknown mode", [=] { return f.hexMode(t, data.c_str(), key.c_str(), 1, "xyz", nullptr); },
        Is(BAD_MODE_ERROR));
    row("HexMode", "CBC without IV", [=] { return f.hexMode(t, data.c_str(), key.c_str(), 1, "CBC", nullptr); },
        Is(BAD_IV_ERROR));
    row("HexMode", "IV too short", [=] { return f.hexMode(t, data.c_str(), key.c_str(), 1, "OFB", "00"); },
        Is(BAD_IV_ERROR));
    row("HexMode", "CTR odd byte count", [=] {
        return f.hexMode(t, HexOf(B + 3).c_str(), key.c_str(), 1, "ctr", ivHex.c_str());
    }, Is(0));
    row("B64Mode", "null output", [=] { return f.b64Mode(nullptr, "AAAA", "AAAA", 1, "ECB", nullptr); },
        Is(f.b64MissingCode));
    row("B64Mode", "null mode", [=] { return f.b64Mode(t, "AAAA", "AAAA", 1, nullptr, nullptr); }, Is(f.b64MissingCode));
    row("B64Mode", "empty input", [=] { return f.b64Mode(t, "", "AAAA", 1, "ECB", nullptr); }, Is(f.b64MissingCode));
    row("B64Mode", "unknown mode", [=] { return f.b64Mode(t, "AAAA", "AAAA", 1, "EC", nullptr); }, Is(BAD_MODE_ERROR));
    row("B64Mode", "CBC without IV", [=] { return f.b64Mode(t, "AAAA", "AAAA", 1, "CBC", ""); }, Is(BAD_IV_ERROR));
    row("B64Mode", "no Base64 in the input", [=] { return f.b64Mode(t, "!!!!", "AAAA", 1, "ECB", nullptr); },
        Is(BAD_FORMAT_ERROR));
    row("B64Mode", "wrong key length", [=] { return f.b64Mode(t, "AAAAAAAAAAAA", "AAAA", 1, "ECB", nullptr); },
        Is(BAD_KEY_LEN_ERROR));
    row("File", "null output name", [=] { return f.file(nullptr, ex, k, 1, "ECB", nullptr); }, Is(BAD_PARAM_ERROR));
    row("File", "empty input name", [=] { return f.file(out, "", k, 1, "ECB", nullptr); }, Is(BAD_PARAM_ERROR));
    row("File", "one name twice", [=] { return f.file(ex, ex, k, 1, "ECB", nullptr); }, Is(DUP_ERROR));
    row("File", "missing input", [=] { return f.file(out, Fs().missing.c_str(), k, 1, "ECB", nullptr); },
        Is(OPEN_ERROR));
    row("File", "output in a missing directory", [=] { return f.file(Fs().noDir.c_str(), ex, k, 1, "ECB", nullptr); },
        Is(CREATE_ERROR));
    row("File", "null mode", [=] { return f.file(out, ex, k, 1, nullptr, nullptr); }, Is(BAD_MODE_ERROR));
    row("File", "null key", [=] { return f.file(out, ex, nullptr, 1, "ECB", nullptr); }, Is(BAD_KEY_ERROR));
    row("File", "CBC without IV", [=] { return f.file(out, ex, k, 1, "CBC", nullptr); }, Is(BAD_IV_ERROR));
    row("File", "decrypt a part block", [=] { return f.file(out, ex, k, 0, "CBC", iv); }, Is(BAD_LENGTH_ERROR));
    row("FileExt", "options INT32_MIN", [=] { return f.fileExt(out, ex, k, 1, "ECB", nullptr, kMin); }, Is(0));
    row("FileExt", "IV prefix from a short file", [=] {
        return f.fileExt(out, Fs().empty.c_str(), k, 0, "CBC", nullptr, OPT_PREFIX_IV);
    }, Is(READ_ERROR));
    row("FileExt", "null names", [=] { return f.fileExt(nullptr, nullptr, k, 1, "ECB", nullptr, 0); },
        Is(BAD_PARAM_ERROR));
    row("FileHex", "null key text", [=] { return f.fileHex(out, ex, nullptr, 1, "ECB", nullptr); }, Is(BAD_PARAM_ERROR));
    row("FileHex", "key without digits", [=] { return f.fileHex(out, ex, "zz", 1, "ECB", nullptr); }, Is(BAD_KEY_ERROR));
    row("FileHex", "key too short", [=] { return f.fileHex(out, ex, "0011", 1, "ECB", nullptr); }, Is(BAD_KEY_LEN_ERROR));
    row("FileHex", "IV not hex", [=] { return f.fileHex(out, ex, key.c_str(), 1, "CBC", "zz"); }, Is(BAD_IV_ERROR));
    row("FileHex", "CBC without IV", [=] { return f.fileHex(out, ex, key.c_str(), 1, "CBC", nullptr); },
        Is(f.fileHexChecksIvItself ? BAD_PARAM_ERROR : BAD_IV_ERROR));
    row("FileHex", "null mode", [=] { return f.fileHex(out, ex, key.c_str(), 1, nullptr, ivHex.c_str()); },
        Is(BAD_MODE_ERROR));
    row("Init", "null key", [=] {
        f.init(nullptr, 1, "ECB", nullptr);
        return f.initError();
    }, Is(BAD_KEY_ERROR));
    row("Init", "null mode", [=] {
        int32_t h = f.init(k, 1, nullptr, nullptr);
        return h == 0 ? f.initError() : -1;
    }, Is(BAD_MODE_ERROR));
    row("Init", "CBC without IV", [=] { return f.init(k, 1, "CBC", nullptr); }, Is(0));
    row("Init", "direction INT32_MIN", [=] { return f.init(k, kMin, "ECB", nullptr); }, AHandle());
    row("InitHex", "null key text", [=] {
        f.initHex(nullptr, 1, "ECB", nullptr);
        return f.initHexErrorSlot();
    }, Is(BAD_PARAM_ERROR));
    row("InitHex", "key without digits", [=] {
        f.initHex("zzzz", 1, "ECB", nullptr);
        return f.initError();
    }, Is(BAD_KEY_ERROR));
    row("InitHex", "key too long", [=] {
        f.initHex(HexOf(60).c_str(), 1, "ECB", nullptr);
        return f.initError();
    }, Is(BAD_KEY_LEN_ERROR));
    row("InitHex", "bad IV", [=] {
        f.initHex(key.c_str(), 1, "CBC", "001");
        return f.initError();
    }, Is(BAD_IV_ERROR));
    row("InitHex", "valid", [=] { return f.initHex(key.c_str(), 0, "OFB", ivHex.c_str()); }, AHandle());
    row("Update", "null data", [=] { return f.update(f.init(k, 1, "ECB", nullptr), nullptr, B); }, Is(NULL_ERROR));
    row("Update", "negative length", [=] { return f.update(f.init(k, 1, "ECB", nullptr), o, -1); }, Is(BAD_PARAM_ERROR));
    row("Update", "INT32_MIN", [=] { return f.update(f.init(k, 1, "CTR", iv), o, kMin); }, Is(BAD_PARAM_ERROR));
    row("Update", "handle 0", [=] { return f.update(0, o, B); }, Is(INVALID_HANDLE_ERROR));
    row("Update", "part block in CBC", [=] { return f.update(f.init(k, 1, "CBC", iv), o, B - 1); },
        Is(BAD_LENGTH_ERROR));
    row("Update", "ended handle", [=] {
        int32_t h = f.init(k, 1, "ECB", nullptr);
        f.final(h);
        return f.update(h, o, B);
    }, Is(INVALID_HANDLE_ERROR));
    row("Update", "handle of another thread", [=] {
        int32_t own = f.init(k, 1, "ECB", nullptr);
        int32_t other = FromOtherThread([f, k] { return f.init(k, 1, "ECB", nullptr); });
        return other == own ? INVALID_HANDLE_ERROR : f.update(other, o, B);
    }, Is(INVALID_HANDLE_ERROR));
    row("Update", "handle of another family", [=] {
        f.final(f.init(k, 1, "ECB", nullptr));
        return f.update(CIPHER_Init(1, "aes128", k, 16, nullptr, 0, 0), o, B);
    }, Is(INVALID_HANDLE_ERROR));
    row("UpdateHex", "null text", [=] { return f.updateHex(f.init(k, 1, "ECB", nullptr), nullptr); }, Is(BAD_PARAM_ERROR));
    row("UpdateHex", "empty text", [=] {
        static char empty[1] = "";
        return f.updateHex(f.init(k, 1, "ECB", nullptr), empty);
    }, Is(BAD_PARAM_ERROR));
    row("UpdateHex", "handle 0", [=] {
        std::string text = data;
        return f.updateHex(0, text.data());
    }, Is(INVALID_HANDLE_ERROR));
    row("UpdateHex", "odd text", [=] {
        std::string text = "123";
        return f.updateHex(f.init(k, 1, "CTR", iv), text.data());
    }, Is(BAD_FORMAT_ERROR));
    row("UpdateHex", "not hex", [=] {
        std::string text = HexOf(B, 'q');
        return f.updateHex(f.init(k, 1, "ECB", nullptr), text.data());
    }, Is(BAD_FORMAT_ERROR));
    row("Final", "handle 0", [=] { return f.final(0); }, Is(INVALID_HANDLE_ERROR));
    row("Final", "twice", [=] {
        int32_t h = f.init(k, 1, "ECB", nullptr);
        f.final(h);
        return f.final(h);
    }, Is(INVALID_HANDLE_ERROR));
    row("InitError", "after a good Init", [=] {
        f.init(k, 1, "ECB", nullptr);
        return f.initError();
    }, Is(0));
}

}  // namespace

Table BlockFamilyRows() {
    Table rows;
    for (const FixedKeyFamily& f : kFamilies) AddFixedKeyRows(rows, f);
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* iv = b.iv;
    const char* ex = Fs().existing.c_str();
    const char* out = Fs().out.c_str();
    const Table more = {
        {"DES_CheckKey null key", [] { return DES_CheckKey(nullptr, 8); }, Is(NULL_ERROR)},
        {"DES_CheckKey negative length", [=] { return DES_CheckKey(k, -8); }, Is(BAD_KEY_LEN_ERROR)},
        {"DES_CheckKey INT32_MAX", [=] { return DES_CheckKey(k, kMax); }, Is(BAD_KEY_LEN_ERROR)},
        {"DES_CheckKey zero key is weak", [] {
             const uint8_t zero[8] = {};
             return DES_CheckKey(zero, 8);
         }, Is(WEAK_KEY_ERROR)},
        {"DES_CheckKeyHex null", [] { return DES_CheckKeyHex(nullptr); }, Is(BAD_KEY_LEN_ERROR)},
        {"DES_CheckKeyHex not hex", [] { return DES_CheckKeyHex("zzzzzzzzzzzzzzzz"); }, Is(BAD_KEY_LEN_ERROR)},
        {"DES_CheckKeyHex 50 digits", [] { return DES_CheckKeyHex(std::string(50, '1').c_str()); }, Is(BAD_KEY_LEN_ERROR)},

        {"BLF_Bytes key of 57", [=] { return BLF_Bytes(o, in, 8, k, 57, 1); }, Is(BAD_KEY_LEN_ERROR)},
        {"BLF_Bytes key of 0", [=] { return BLF_Bytes(o, in, 8, k, 0, 1); }, Is(0)},
        {"BLF_Bytes negative key length", [=] { return BLF_Bytes(o, in, 8, k, kMin, 1); }, Is(BAD_PARAM_ERROR)},
        {"BLF_Bytes negative length", [=] { return BLF_Bytes(o, in, -8, k, 8, 1); }, Is(BAD_PARAM_ERROR)},
        {"BLF_Bytes null key", [=] { return BLF_Bytes(o, in, 8, nullptr, 0, 1); }, Is(NULL_ERROR)},
        {"BLF_Bytes part block", [=] { return BLF_Bytes(o, in, 9, k, 8, 0); }, Is(BAD_LENGTH_ERROR)},
        {"BLF_BytesMode null mode", [=] { return BLF_BytesMode(o, in, 8, k, 8, 1, nullptr, iv); }, Is(NULL_ERROR)},
        {"BLF_BytesMode unknown mode, no IV", [=] { return BLF_BytesMode(o, in, 8, k, 8, 1, "x", nullptr); },
         Is(BAD_IV_ERROR)},
        {"BLF_BytesMode unknown mode", [=] { return BLF_BytesMode(o, in, 8, k, 8, 1, "xyz", iv); }, Is(BAD_MODE_ERROR)},
        {"BLF_Hex key without digits", [=] { return BLF_Hex(t, "0011223344556677", "zz", 1); }, Is(BAD_KEY_ERROR)},
        {"BLF_Hex key of 57", [=] { return BLF_Hex(t, "0011223344556677", std::string(114, '1').c_str(), 1); },
         Is(BAD_KEY_LEN_ERROR)},
        {"BLF_Hex null output", [] { return BLF_Hex(nullptr, "0011223344556677", "00", 1); }, Is(BAD_PARAM_ERROR)},
        {"BLF_HexMode empty mode", [=] { return BLF_HexMode(t, "0011223344556677", "00", 1, "", "00"); },
         Is(BAD_PARAM_ERROR)},
        {"BLF_HexMode CFB without IV", [=] { return BLF_HexMode(t, "0011223344556677", "00", 1, "CFB", ""); },
         Is(BAD_IV_ERROR)},
        {"BLF_B64Mode null key", [=] { return BLF_B64Mode(t, "AAAAAAAAAAA=", nullptr, 1, "ECB", nullptr); }, Is(NULL_ERROR)},
        {"BLF_B64Mode empty key", [=] { return BLF_B64Mode(t, "AAAAAAAAAAA=", "====", 1, "ECB", nullptr); },
         Is(BAD_KEY_ERROR)},
        {"BLF_File null names", [=] { return BLF_File(nullptr, nullptr, k, 8, 1, "ECB", nullptr); }, Is(BAD_PARAM_ERROR)},
        {"BLF_File negative key length", [=] { return BLF_File(out, ex, k, -1, 1, "ECB", nullptr); },
         Is(BAD_KEY_LEN_ERROR)},
        {"BLF_File null key", [=] { return BLF_File(out, ex, nullptr, 8, 1, "ECB", nullptr); }, Is(BAD_KEY_ERROR)},
        {"BLF_FileExt one name twice", [=] { return BLF_FileExt(ex, ex, k, 8, 1, "ECB", nullptr, 0); }, Is(DUP_ERROR)},
        {"BLF_FileExt null mode", [=] { return BLF_FileExt(out, ex, k, 8, 1, nullptr, nullptr, 0); }, Is(BAD_MODE_ERROR)},
        {"BLF_FileHex key of 57", [=] { return BLF_FileHex(out, ex, std::string(114, '1').c_str(), 1, "ECB", nullptr); },
         Is(BAD_KEY_LEN_ERROR)},
        {"BLF_FileHex null key", [=] { return BLF_FileHex(out, ex, nullptr, 1, "ECB", nullptr); }, Is(BAD_PARAM_ERROR)},
        {"BLF_Init negative key length", [=] {
             BLF_Init(k, -1, 1, "ECB", nullptr);
             return BLF_InitError();
         }, Is(BAD_PARAM_ERROR)},
        {"BLF_Init key of 57", [=] {
             BLF_Init(k, 57, 1, "ECB", nullptr);
             return BLF_InitError();
         }, Is(BAD_KEY_LEN_ERROR)},
        {"BLF_Init null mode", [=] { return BLF_Init(k, 8, 1, nullptr, nullptr); }, Is(0)},
        {"BLF_Init valid", [=] { return BLF_Init(k, 0, 1, "ecb", nullptr); }, AHandle()},
        {"BLF_InitHex null key", [] {
             BLF_InitHex(nullptr, 1, "ECB", nullptr);
             return TDEA_InitError();
         }, Is(BAD_PARAM_ERROR)},
        {"BLF_InitHex bad key", [] {
             BLF_InitHex("zz", 1, "ECB", nullptr);
             return BLF_InitError();
         }, Is(BAD_KEY_ERROR)},
        {"BLF_Update handle 0", [=] { return BLF_Update(0, o, 8); }, Is(INVALID_HANDLE_ERROR)},
        {"BLF_Update null data", [=] { return BLF_Update(BLF_Init(k, 8, 1, "ECB", nullptr), nullptr, 8); }, Is(NULL_ERROR)},
        {"BLF_Update INT32_MIN", [=] { return BLF_Update(BLF_Init(k, 8, 1, "ECB", nullptr), o, kMin); },
         Is(BAD_PARAM_ERROR)},
        {"BLF_UpdateHex odd", [=] {
             std::string text = "abc";
             return BLF_UpdateHex(BLF_Init(k, 8, 1, "ECB", nullptr), text.data());
         }, Is(BAD_FORMAT_ERROR)},
        {"BLF_UpdateHex null", [] { return BLF_UpdateHex(1, nullptr); }, Is(BAD_PARAM_ERROR)},
        {"BLF_Final twice", [=] {
             int32_t h = BLF_Init(k, 8, 1, "ECB", nullptr);
             BLF_Final(h);
             return BLF_Final(h);
         }, Is(INVALID_HANDLE_ERROR)},
        {"BLF_InitError after a good Init", [=] {
             BLF_Init(k, 8, 1, "ECB", nullptr);
             return BLF_InitError();
         }, Is(0)},
        {"BLF_Ecb null data", [] { return BLF_Ecb(0, nullptr, 8, 1); }, Is(NULL_ERROR)},
        {"BLF_Ecb INT32_MIN", [=] { return BLF_Ecb(0, o, kMin, 1); }, Is(BAD_PARAM_ERROR)},
        {"BLF_Ecb handle 0", [=] { return BLF_Ecb(0, o, 8, 1); }, Is(INVALID_HANDLE_ERROR)},
        {"BLF_Ecb part block", [=] { return BLF_Ecb(BLF_Init(k, 8, 1, "CBC", iv), o, 7, 0); }, Is(BAD_LENGTH_ERROR)},
        {"BLF_Ecb handle of another thread", [=] {
             int32_t own = BLF_Init(k, 8, 1, "ECB", nullptr);
             int32_t other = FromOtherThread([k] { return BLF_Init(k, 8, 1, "ECB", nullptr); });
             return other == own ? INVALID_HANDLE_ERROR : BLF_Ecb(other, o, 8, 1);
         }, Is(INVALID_HANDLE_ERROR)},
        {"BLF_EcbHex empty", [] {
             static char empty[1] = "";
             return BLF_EcbHex(0, empty, 1);
         }, Is(BAD_PARAM_ERROR)},
        {"BLF_EcbHex decoded before the handle", [] {
             std::string text = "0g";
             return BLF_EcbHex(0, text.data(), 1);
         }, Is(BAD_FORMAT_ERROR)},
        {"BLF_EcbHex handle 0", [] {
             std::string text = "0011223344556677";
             return BLF_EcbHex(0, text.data(), 1);
         }, Is(INVALID_HANDLE_ERROR)},
    };
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

}  // namespace sweep
