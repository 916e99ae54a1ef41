// Sweep rows: the CIPHER_ one-shot, file, stateful and key-wrap calls, and
// PAD_.
#include <string>

#include "sweep.h"

namespace sweep {

namespace {

using CryptBytes = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                               const unsigned char*, int32_t, const char*, int32_t);

// The rows that the byte calls and their aliases share.
void AddByteRows(Table& rows, const char* name, CryptBytes f, bool encrypt) {
    Buffers& b = Buf();
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* iv = b.iv;
    auto row = [&](const char* what, std::function<int32_t()> fn, Expect e) {
        rows.push_back({std::string(name) + " " + what, std::move(fn), std::move(e)});
    };
    row("no cipher", [=] { return f(o, 64, in, 32, k, 16, iv, 16, nullptr, 0); }, Is(-BAD_FLAG_ERROR));
    row("cipher twice", [=] { return f(o, 64, in, 32, k, 16, iv, 16, "aes128/cbc", OPT_CIPHER_AES128); },
        Is(-BAD_FLAG_ERROR));
    row("unknown text", [=] { return f(o, 64, in, 32, k, 16, iv, 16, "des/cbc", 0); }, Is(-BAD_PARAM_ERROR));
    row("text of high bytes", [=] { return f(o, 64, in, 32, k, 16, iv, 16, "aes128\xff\xfe", 0); }, Is(-BAD_PARAM_ERROR));
    row("mode bits 0x500", [=] { return f(o, 64, in, 32, k, 16, iv, 16, nullptr, 0x520); }, Is(-BAD_MODE_ERROR));
    row("cipher bits 0x50", [=] { return f(o, 64, in, 32, k, 16, iv, 16, nullptr, 0x50); }, Is(-INTERNAL_ERROR));
    row("key length 15", [=] { return f(o, 64, in, 32, k, 15, iv, 16, "aes128/cbc", 0); }, Is(-BAD_KEY_LEN_ERROR));
    row("key length INT32_MIN", [=] { return f(o, 64, in, 32, k, kMin, iv, 16, "tdea/cbc", 0); },
        Is(-BAD_KEY_LEN_ERROR));
    row("IV length -16", [=] { return f(o, 64, in, 32, k, 24, iv, -16, "tdea/cfb", 0); },
        Is(-BAD_IV_LEN_ERROR));
    row("input length -1", [=] { return f(o, 64, in, -1, k, 16, iv, 16, "aes128/ctr", 0); }, Is(-BAD_LENGTH_ERROR));
    row("input length INT32_MIN", [=] { return f(o, 64, in, kMin, k, 16, nullptr, 0, "aes128/ecb", 0); },
        Is(-BAD_LENGTH_ERROR));
    row("null input with a length", [=] { return f(o, 64, nullptr, 16, k, 16, iv, 16, "aes128/cbc", 0); },
        Is(-NULL_ERROR));
    row("null key", [=] { return f(o, 64, in, 16, nullptr, 16, iv, 16, "aes128/cbc", 0); }, Is(-NULL_ERROR));
    row("short output", [=] { return f(o, 15, in, 32, k, 16, iv, 16, "aes128/cbc/nopad", 0); }, Is(-SHORT_BUF_ERROR));
    if (encrypt) {
        row("query", [=] { return f(nullptr, 0, in, 16, k, 16, iv, 16, "aes128/cbc", 0); }, Is(32));
        row("query with output length INT32_MIN", [=] { return f(o, kMin, in, 5, k, 24, iv, 8, "3des-cbc", OPT_PREFIX_IV); },
            Is(16));
        row("query of INT32_MAX bytes", [=] { return f(nullptr, 0, in, kMax, k, 16, iv, 16, "aes128/cbc", 0); },
            Is(-BAD_LENGTH_ERROR));
        row("query of INT32_MAX bytes, prefix", [=] {
            return f(nullptr, 0, in, kMax - 10, k, 16, iv, 16, "aes128/ctr", OPT_PREFIX_IV);
        }, Is(-BAD_LENGTH_ERROR));
        row("ECB with prefix and no IV", [=] { return f(o, 64, in, 16, k, 16, nullptr, 0, "aes128", OPT_PREFIX_IV); },
            Is(-NULL_ERROR));
        row("no padding, part block", [=] { return f(o, 64, in, 17, k, 16, iv, 16, "aes128/cbc/nopad", 0); },
            Is(-BAD_LENGTH_ERROR));
        row("no padding, empty, null input", [=] { return f(o, 64, nullptr, 0, k, 16, iv, 16, "aes128/ctr", 0); },
            Is(-NULL_ERROR));
        row("padding, empty, null input", [=] { return f(o, 64, nullptr, 0, k, 16, iv, 16, "aes128/cbc", 0); }, Is(16));
    } else {
        row("output length -1", [=] { return f(o, -1, in, 32, k, 16, iv, 16, "aes128/cbc", 0); }, Is(-BAD_PARAM_ERROR));
        row("output length INT32_MIN", [=] { return f(nullptr, kMin, in, 32, k, 16, iv, 16, "aes128/cbc", 0); },
            Is(-BAD_PARAM_ERROR));
        row("prefix, input below a block", [=] { return f(o, 64, in, 8, k, 16, nullptr, 0, "aes128/cbc", OPT_PREFIX_IV); },
            Is(-BAD_LENGTH_ERROR));
        row("padded, part block", [=] { return f(o, 64, in, 20, k, 16, iv, 16, "aes128/cbc", 0); }, Is(-BAD_LENGTH_ERROR));
        row("padded, empty", [=] { return f(o, 64, in, 0, k, 16, iv, 16, "aes128/cbc", 0); }, Is(-BAD_LENGTH_ERROR));
        row("unpadded query", [=] { return f(nullptr, 0, in, 21, k, 16, iv, 16, "aes128/ofb", 0); }, Is(21));
        row("bad padding in a query", [=] {
            // A block that decrypts to a last byte of 0 fails in any padding.
            uint8_t ct[16];
            uint8_t zero[16] = {};
            if (CIPHER_EncryptBytes(ct, 16, zero, 16, Buf().key, 16, nullptr, 0, "aes128/ecb/nopad", 0) != 16) return -1;
            return f(nullptr, 0, ct, 16, Buf().key, 16, nullptr, 0, "aes128/ecb", 0);
        }, Is(-DECRYPT_ERROR));
    }
}

}  // namespace

Table CipherRows() {
    Table rows;
    AddByteRows(rows, "CIPHER_EncryptBytes", CIPHER_EncryptBytes, true);
    AddByteRows(rows, "CIPHER_EncryptBytes2", CIPHER_EncryptBytes2, true);
    AddByteRows(rows, "CIPHER_DecryptBytes", CIPHER_DecryptBytes, false);
    AddByteRows(rows, "CIPHER_DecryptBytes2", CIPHER_DecryptBytes2, false);
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* iv = b.iv;
    const char* ex = Fs().existing.c_str();
    const char* out = Fs().out.c_str();
    const std::string k16(32, 'a'), iv16(32, 'b'), data(64, 'c');
    const Table more = {
        {"CIPHER_EncryptHex null input", [=] { return CIPHER_EncryptHex(t, 100, nullptr, k16.c_str(), nullptr, "aes128", 0); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_EncryptHex empty key", [=] { return CIPHER_EncryptHex(t, 100, data.c_str(), "", nullptr, "aes128", 0); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_EncryptHex negative length", [=] {
             return CIPHER_EncryptHex(t, kMin, data.c_str(), k16.c_str(), nullptr, "aes128", 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"CIPHER_EncryptHex odd input", [=] { return CIPHER_EncryptHex(t, 100, "abc", k16.c_str(), nullptr, "aes128", 0); },
         Is(-INVALID_DATA_ERROR)},
        {"CIPHER_EncryptHex separators", [=] {
             return CIPHER_EncryptHex(t, 100, "00:11", k16.c_str(), nullptr, "aes128", 0);
         }, Is(-INVALID_DATA_ERROR)},
        {"CIPHER_EncryptHex bad IV", [=] {
             return CIPHER_EncryptHex(t, 100, data.c_str(), k16.c_str(), "0x", "aes128/cbc", 0);
         }, Is(-INVALID_DATA_ERROR)},
        {"CIPHER_EncryptHex query with a bad key length", [=] {
             return CIPHER_EncryptHex(nullptr, 0, data.c_str(), "0011", nullptr, "aes128", 0);
         }, Is(-2 * BAD_KEY_LEN_ERROR)},
        {"CIPHER_EncryptHex short", [=] { return CIPHER_EncryptHex(t, 63, data.c_str(), k16.c_str(), nullptr, "aes128", 0); },
         Is(-SHORT_BUF_ERROR)},
        {"CIPHER_EncryptHex query", [=] { return CIPHER_EncryptHex(nullptr, 0, data.c_str(), k16.c_str(), nullptr, "aes128", 0); },
         Is(96)},
        {"CIPHER_DecryptHex null key", [=] { return CIPHER_DecryptHex(t, 100, data.c_str(), nullptr, nullptr, "aes128", 0); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_DecryptHex not hex", [=] {
             return CIPHER_DecryptHex(t, 100, std::string(32, 'x').c_str(), k16.c_str(), nullptr, "aes128", 0);
         }, Is(-INVALID_DATA_ERROR)},
        {"CIPHER_DecryptHex no cipher", [=] { return CIPHER_DecryptHex(t, 100, data.c_str(), k16.c_str(), nullptr, "", 0); },
         Is(-BAD_FLAG_ERROR)},
        {"CIPHER_FileEncrypt null names", [=] { return CIPHER_FileEncrypt(nullptr, nullptr, k, 16, iv, 16, "aes128/cbc", 0); },
         Is(BAD_PARAM_ERROR)},
        {"CIPHER_FileEncrypt one name twice", [=] { return CIPHER_FileEncrypt(ex, ex, k, 16, iv, 16, "aes128/cbc", 0); },
         Is(DUP_ERROR)},
        {"CIPHER_FileEncrypt missing input", [=] {
             return CIPHER_FileEncrypt(out, Fs().missing.c_str(), k, 16, iv, 16, "aes128/cbc", 0);
         }, Is(OPEN_ERROR)},
        {"CIPHER_FileEncrypt no cipher", [=] { return CIPHER_FileEncrypt(out, ex, k, 16, iv, 16, nullptr, 0); },
         Is(-BAD_FLAG_ERROR)},
        {"CIPHER_FileEncrypt key length", [=] { return CIPHER_FileEncrypt(out, ex, k, -16, iv, 16, "aes256/cbc", 0); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"CIPHER_FileEncrypt null key", [=] { return CIPHER_FileEncrypt(out, ex, nullptr, 16, iv, 16, "aes128/cbc", 0); },
         Is(BAD_KEY_ERROR)},
        {"CIPHER_FileEncrypt CBC without IV", [=] { return CIPHER_FileEncrypt(out, ex, k, 16, nullptr, 16, "aes128/cbc", 0); },
         Is(BAD_IV_ERROR)},
        {"CIPHER_FileDecrypt part block", [=] { return CIPHER_FileDecrypt(out, ex, k, 24, iv, 8, "tdea/cbc", 0); },
         Is(BAD_LENGTH_ERROR)},
        {"CIPHER_FileDecrypt prefix, empty file", [=] {
             return CIPHER_FileDecrypt(out, Fs().empty.c_str(), k, 16, nullptr, 0, "aes128/cbc", OPT_PREFIX_IV);
         }, Is(READ_ERROR)},
        {"CIPHER_FileDecrypt IV length", [=] { return CIPHER_FileDecrypt(out, ex, k, 16, iv, 0, "aes128/cbc", 0); },
         Is(-BAD_IV_LEN_ERROR)},
        {"CIPHER_FileDecrypt null output name", [=] {
             return CIPHER_FileDecrypt(nullptr, ex, k, 16, iv, 16, "aes128/ctr", 0);
         }, Is(BAD_PARAM_ERROR)},

        {"CIPHER_Init no cipher", [=] {
             CIPHER_Init(1, nullptr, k, 16, iv, 16, 0);
             return API_ErrorCode();
         }, Is(BAD_FLAG_ERROR)},
        {"CIPHER_Init bad key length", [=] { return CIPHER_Init(1, "aes128/cbc", k, kMax, iv, 16, 0); }, Is(0)},
        {"CIPHER_Init null key", [=] { return CIPHER_Init(1, "aes128/cbc", nullptr, 16, iv, 16, 0); }, AHandle()},
        {"CIPHER_Init null IV", [=] { return CIPHER_Init(0, "tdea/cbc", k, 24, nullptr, 8, 0); }, AHandle()},
        {"CIPHER_Init IV length INT32_MIN", [=] {
             CIPHER_Init(0, "tdea/cbc", k, 24, iv, kMin, 0);
             return API_ErrorCode();
         }, Is(BAD_IV_LEN_ERROR)},
        {"CIPHER_InitHex null key", [=] {
             CIPHER_InitHex(1, "aes128/cbc", nullptr, iv16.c_str(), 0);
             return API_ErrorCode();
         }, Is(BAD_PARAM_ERROR)},
        {"CIPHER_InitHex not hex", [=] {
             CIPHER_InitHex(1, "aes128/cbc", "zz", iv16.c_str(), 0);
             return API_ErrorCode();
         }, Is(INVALID_DATA_ERROR)},
        {"CIPHER_InitHex odd key", [=] {
             CIPHER_InitHex(1, "aes128/cbc", "abc", iv16.c_str(), 0);
             return API_ErrorCode();
         }, Is(BAD_KEY_LEN_ERROR)},
        {"CIPHER_InitHex odd IV", [=] {
             CIPHER_InitHex(1, "aes128/cbc", k16.c_str(), "abc", 0);
             return API_ErrorCode();
         }, Is(BAD_IV_LEN_ERROR)},
        {"CIPHER_InitHex valid", [=] { return CIPHER_InitHex(1, "aes128/cbc", k16.c_str(), iv16.c_str(), 0); }, AHandle()},
        {"CIPHER_Update handle 0", [=] { return CIPHER_Update(0, o, 16, in, 16); }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_Update null output", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), nullptr, 16, in, 16);
         }, Is(-NULL_ERROR)},
        {"CIPHER_Update short output", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), o, 15, in, 16);
         }, Is(-SHORT_BUF_ERROR)},
        {"CIPHER_Update negative input length", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), o, 16, in, -1);
         }, Is(-BAD_PARAM_ERROR)},
        {"CIPHER_Update INT32_MIN", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), o, kMin, in, kMin);
         }, Is(-BAD_PARAM_ERROR)},
        {"CIPHER_Update null input with a length", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), o, 16, nullptr, 16);
         }, Is(-NULL_ERROR)},
        {"CIPHER_Update part block in CBC", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/cbc", k, 16, iv, 16, 0), o, 16, in, 15);
         }, Is(BAD_LENGTH_ERROR)},
        {"CIPHER_Update context set up without key", [=] {
             return CIPHER_Update(CIPHER_Init(1, "aes128/cbc", nullptr, 16, iv, 16, 0), o, 16, in, 16);
         }, AnyOf({0, -BAD_KEY_ERROR, -INTERNAL_ERROR})},
        {"CIPHER_Update context set up without IV", [=] {
             return CIPHER_Update(CIPHER_Init(1, "tdea/cbc", k, 24, nullptr, 8, 0), o, 16, in, 16);
         }, AnyOf({0, -BAD_IV_ERROR, -INTERNAL_ERROR})},
        {"CIPHER_Update ended handle", [=] {
             int32_t h = CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0);
             CIPHER_Final(h);
             return CIPHER_Update(h, o, 16, in, 16);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_Update handle of another thread", [=] {
             int32_t own = CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0);
             int32_t other = FromOtherThread([k] { return CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0); });
             return other == own ? -INVALID_HANDLE_ERROR : CIPHER_Update(other, o, 16, in, 16);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_Update AES128_ handle", [=] {
             CIPHER_Final(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0));
             return CIPHER_Update(AES128_Init(k, 1, "ECB", nullptr), o, 16, in, 16);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_UpdateHex null output", [] { return CIPHER_UpdateHex(0, nullptr, 10, "00"); }, Is(-NULL_ERROR)},
        {"CIPHER_UpdateHex empty input, any handle", [=] { return CIPHER_UpdateHex(kMin, t, 10, ""); }, Is(0)},
        {"CIPHER_UpdateHex null input, length 0", [=] { return CIPHER_UpdateHex(0, t, 0, nullptr); }, Is(0)},
        {"CIPHER_UpdateHex not hex", [=] {
             return CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), t, 100, "zz");
         }, Is(-INVALID_DATA_ERROR)},
        {"CIPHER_UpdateHex short", [=] {
             return CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), t, 3, "0000");
         }, Is(-SHORT_BUF_ERROR)},
        {"CIPHER_UpdateHex negative length", [=] {
             return CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), t, kMin, "0000");
         }, Is(-SHORT_BUF_ERROR)},
        {"CIPHER_UpdateHex handle 0", [=] { return CIPHER_UpdateHex(0, t, 100, data.c_str()); }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_UpdateHex part block in ECB", [=] {
             return CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), t, 100, "0011");
         }, Is(BAD_LENGTH_ERROR)},
        // An odd number of digits reaches the allocator as a size of -1.
        {"CIPHER_UpdateHex odd digits", [=] {
             return CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), t, 100, "000");
         }, EndsProcess()},
        {"CIPHER_Final handle 0", [] { return CIPHER_Final(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_Final twice", [=] {
             int32_t h = CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0);
             CIPHER_Final(h);
             return CIPHER_Final(h);
         }, Is(-INVALID_HANDLE_ERROR)},

        {"CIPHER_KeyWrap cipher 0x50", [=] { return CIPHER_KeyWrap(o, 64, in, 16, k, 16, 0x50); }, Is(-BAD_FLAG_ERROR)},
        {"CIPHER_KeyWrap no cipher", [=] { return CIPHER_KeyWrap(o, 64, in, 16, k, 16, kMin); }, Is(-BAD_FLAG_ERROR)},
        {"CIPHER_KeyWrap KEK length", [=] { return CIPHER_KeyWrap(o, 64, in, 16, k, -16, 0x20); }, Is(-BAD_KEY_LEN_ERROR)},
        {"CIPHER_KeyWrap 8 bytes", [=] { return CIPHER_KeyWrap(nullptr, 0, in, 8, k, 16, 0x20); }, Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyWrap negative length", [=] { return CIPHER_KeyWrap(o, 64, in, -16, k, 16, 0x20); }, Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyWrap query of INT32_MAX - 7", [=] { return CIPHER_KeyWrap(nullptr, 0, in, kMax - 7, k, 24, 0x30); },
         Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyWrap query", [=] { return CIPHER_KeyWrap(nullptr, 0, nullptr, 32, nullptr, 32, 0x40); }, Is(40)},
        {"CIPHER_KeyWrap null data", [=] { return CIPHER_KeyWrap(o, 64, nullptr, 16, k, 16, 0x20); }, Is(-NULL_ERROR)},
        {"CIPHER_KeyWrap null KEK", [=] { return CIPHER_KeyWrap(o, 64, in, 24, nullptr, 24, 0x10); }, Is(-NULL_ERROR)},
        {"CIPHER_KeyWrap short", [=] { return CIPHER_KeyWrap(o, 23, in, 16, k, 16, 0x20); }, Is(-SHORT_BUF_ERROR)},
        {"CIPHER_KeyWrap negative output length", [=] { return CIPHER_KeyWrap(o, -1, in, 16, k, 16, 0x20); },
         Is(-SHORT_BUF_ERROR)},
        {"CIPHER_KeyWrap TDEA length", [=] { return CIPHER_KeyWrap(o, 64, in, 16, k, 24, 0x10); }, Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyUnwrap 16 bytes", [=] { return CIPHER_KeyUnwrap(o, 64, in, 16, k, 16, 0x20); }, Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyUnwrap INT32_MIN", [=] { return CIPHER_KeyUnwrap(o, 64, in, kMin, k, 16, 0x20); }, Is(-BAD_LENGTH_ERROR)},
        {"CIPHER_KeyUnwrap query", [=] { return CIPHER_KeyUnwrap(o, kMin, in, 24, k, 16, 0x20); }, Is(16)},
        {"CIPHER_KeyUnwrap null data", [=] { return CIPHER_KeyUnwrap(o, 64, nullptr, 24, k, 16, 0x20); }, Is(-NULL_ERROR)},
        {"CIPHER_KeyUnwrap null KEK", [=] { return CIPHER_KeyUnwrap(o, 64, in, 40, nullptr, 24, 0x10); }, Is(-NULL_ERROR)},
        {"CIPHER_KeyUnwrap short", [=] { return CIPHER_KeyUnwrap(o, 15, in, 24, k, 16, 0x20); }, Is(-SHORT_BUF_ERROR)},
        {"CIPHER_KeyUnwrap integrity", [=] { return CIPHER_KeyUnwrap(o, 16, in, 24, k, 16, 0x20); }, Is(-1)},
        {"CIPHER_KeyUnwrap TDEA integrity", [=] { return CIPHER_KeyUnwrap(o, 24, in, 40, k, 24, 0x10); }, Is(-1)},
        {"CIPHER_KeyUnwrap TDEA length", [=] { return CIPHER_KeyUnwrap(o, 24, in, 41, k, 24, 0x10); }, Is(-BAD_LENGTH_ERROR)},

        {"PAD_BytesBlock block 12", [=] { return PAD_BytesBlock(o, 64, in, 5, 12, 0); }, Is(-BAD_BLK_LEN_ERROR)},
        {"PAD_BytesBlock block INT32_MIN", [=] { return PAD_BytesBlock(o, 64, in, 5, kMin, 0); }, Is(-BAD_BLK_LEN_ERROR)},
        {"PAD_BytesBlock query, null input", [] { return PAD_BytesBlock(nullptr, 0, nullptr, 0, 8, 0); }, Is(8)},
        {"PAD_BytesBlock null input with a length", [=] { return PAD_BytesBlock(o, 64, nullptr, 5, 8, 0); },
         Is(-NULL_ERROR)},
        {"PAD_BytesBlock negative length", [=] { return PAD_BytesBlock(o, 64, in, -1, 8, 0); }, Is(-BAD_PARAM_ERROR)},
        {"PAD_BytesBlock INT32_MIN", [=] { return PAD_BytesBlock(nullptr, 0, in, kMin, 16, 0); }, Is(-BAD_PARAM_ERROR)},
        // The padded length would pass 2^31 - 1.
        {"PAD_BytesBlock query of INT32_MAX bytes", [=] { return PAD_BytesBlock(nullptr, 0, in, kMax, 8, 0); },
         Is(-BAD_PARAM_ERROR)},
        {"PAD_BytesBlock short", [=] { return PAD_BytesBlock(o, 15, in, 8, 8, 0); }, Is(-SHORT_BUF_ERROR)},
        {"PAD_BytesBlock output length INT32_MIN", [=] { return PAD_BytesBlock(o, kMin, in, 8, 8, 0); }, Is(16)},
        {"PAD_UnpadBytes null input", [=] { return PAD_UnpadBytes(o, 64, nullptr, 8, 8, 0); }, Is(-NULL_ERROR)},
        {"PAD_UnpadBytes null output", [=] { return PAD_UnpadBytes(nullptr, 64, in, 8, 8, 0); }, Is(-NULL_ERROR)},
        {"PAD_UnpadBytes block 0", [=] { return PAD_UnpadBytes(o, 64, in, 8, 0, 0); }, Is(-BAD_BLK_LEN_ERROR)},
        {"PAD_UnpadBytes empty", [=] { return PAD_UnpadBytes(o, 64, in, 0, 8, 0); }, Is(-BAD_LENGTH_ERROR)},
        {"PAD_UnpadBytes negative", [=] { return PAD_UnpadBytes(o, 64, in, -8, 8, 0); }, Is(-BAD_LENGTH_ERROR)},
        {"PAD_UnpadBytes INT32_MIN", [=] { return PAD_UnpadBytes(o, 64, in, kMin, 16, 0); }, Is(-BAD_LENGTH_ERROR)},
        {"PAD_UnpadBytes part block", [=] { return PAD_UnpadBytes(o, 64, in, 9, 8, 0); }, Is(-BAD_LENGTH_ERROR)},
        {"PAD_UnpadBytes bad padding", [=] { return PAD_UnpadBytes(o, 64, in, 8, 8, 0x40000); }, Is(-DECRYPT_ERROR)},
        {"PAD_UnpadBytes negative output length", [] {
             const uint8_t pad[8] = {1, 2, 3, 4, 5, 6, 7, 1};
             uint8_t target[8];
             return PAD_UnpadBytes(target, -1, pad, 8, 8, 0);
         }, Is(-SHORT_BUF_ERROR)},
        {"PAD_UnpadBytes a whole block of padding", [] {
             const uint8_t pad[8] = {8, 8, 8, 8, 8, 8, 8, 8};
             uint8_t target[1];
             return PAD_UnpadBytes(target, 0, pad, 8, 8, 0);
         }, Is(0)},
        {"PAD_HexBlock null input", [=] { return PAD_HexBlock(t, 64, nullptr, 8, 0); }, Is(-NULL_ERROR)},
        {"PAD_HexBlock odd", [=] { return PAD_HexBlock(t, 64, "abc", 8, 0); }, Is(-BAD_FORMAT_ERROR)},
        {"PAD_HexBlock block 32", [=] { return PAD_HexBlock(t, 64, "ab", 32, 0); }, Is(-BAD_BLK_LEN_ERROR)},
        {"PAD_HexBlock query", [=] { return PAD_HexBlock(nullptr, 0, "ab", 8, 0); }, Is(16)},
        {"PAD_HexBlock short", [=] { return PAD_HexBlock(t, 15, "ab", 8, 0); }, Is(-SHORT_BUF_ERROR)},
        {"PAD_HexBlock length INT32_MIN", [=] { return PAD_HexBlock(t, kMin, "", 16, 0x30000); }, Is(32)},
        {"PAD_UnpadHex empty", [=] { return PAD_UnpadHex(t, 64, "", 8, 0); }, Is(-BAD_FORMAT_ERROR)},
        {"PAD_UnpadHex null output", [] { return PAD_UnpadHex(nullptr, 64, "0808080808080808", 8, 0); }, Is(-NULL_ERROR)},
        {"PAD_UnpadHex null input", [=] { return PAD_UnpadHex(t, 64, nullptr, 8, 0); }, Is(-NULL_ERROR)},
        {"PAD_UnpadHex block 7", [=] { return PAD_UnpadHex(t, 64, "08", 7, 0); }, Is(-BAD_BLK_LEN_ERROR)},
        {"PAD_UnpadHex short text", [=] { return PAD_UnpadHex(t, 64, "0808", 8, 0); }, Is(-BAD_LENGTH_ERROR)},
        {"PAD_UnpadHex not hex", [=] { return PAD_UnpadHex(t, 64, "zzzzzzzzzzzzzzzz", 8, 0); }, Is(-DECRYPT_ERROR)},
        {"PAD_UnpadHex query", [=] { return PAD_UnpadHex(t, kMin, "1122334455660202", 8, 0); }, Is(12)},
        {"PAD_UnpadHex short output", [=] { return PAD_UnpadHex(t, 11, "1122334455660202", 8, 0); }, Is(-SHORT_BUF_ERROR)},
    };
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

}  // namespace sweep
