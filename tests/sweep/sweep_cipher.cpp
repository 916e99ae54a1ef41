// Sweep rows: the CIPHER_ one-shot, file, stateful and key-wrap calls, and
// PAD_.
#include <string>
#include <vector>

#include "sweep.h"

namespace sweep {

namespace {

using CryptBytes = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                               const unsigned char*, int32_t, const char*, int32_t);

// The rows that the byte calls and their aliases share.
#define BYTES_ROW(want, ...) \
    rows.push_back({std::string(name) + " " #__VA_ARGS__, [=]() -> int32_t { return __VA_ARGS__; }, want})
void AddByteRows(Table& rows, const char* name, CryptBytes f, bool encrypt) {
    Vary(rows, name, f, {o, 64, in, 32, k, 16, iv, 16, "aes128/cbc", 0},
         {{-BAD_FLAG_ERROR, {{8, nullptr}, {9, OPT_CIPHER_AES128}}},
          {-BAD_PARAM_ERROR, {{8, "des/cbc"}, {8, "aes128\xff\xfe"}}}, {-BAD_KEY_LEN_ERROR, {{5, 15}}},
          {-NULL_ERROR, {{2, nullptr}, {4, nullptr}}}});
    BYTES_ROW(Is(-BAD_MODE_ERROR), f(o, 64, in, 32, k, 16, iv, 16, nullptr, 0x520));
    BYTES_ROW(Is(-INTERNAL_ERROR), f(o, 64, in, 32, k, 16, iv, 16, nullptr, 0x50));
    BYTES_ROW(Is(-BAD_KEY_LEN_ERROR), f(o, 64, in, 32, k, kMin, iv, 16, "tdea/cbc", 0));
    BYTES_ROW(Is(-BAD_IV_LEN_ERROR), f(o, 64, in, 32, k, 24, iv, -16, "tdea/cfb", 0));
    BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(o, 64, in, -1, k, 16, iv, 16, "aes128/ctr", 0));
    BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(o, 64, in, kMin, k, 16, nullptr, 0, "aes128/ecb", 0));
    BYTES_ROW(Is(-SHORT_BUF_ERROR), f(o, 15, in, 32, k, 16, iv, 16, "aes128/cbc/nopad", 0));
    if (encrypt) {
        BYTES_ROW(Is(32), f(nullptr, 0, in, 16, k, 16, iv, 16, "aes128/cbc", 0));
        BYTES_ROW(Is(16), f(o, kMin, in, 5, k, 24, iv, 8, "3des-cbc", OPT_PREFIX_IV));
        BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(nullptr, 0, in, kMax, k, 16, iv, 16, "aes128/cbc", 0));
        BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(nullptr, 0, in, kMax - 10, k, 16, iv, 16, "aes128/ctr", OPT_PREFIX_IV));
        BYTES_ROW(Is(-NULL_ERROR), f(o, 64, in, 16, k, 16, nullptr, 0, "aes128", OPT_PREFIX_IV));
        BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(o, 64, in, 17, k, 16, iv, 16, "aes128/cbc/nopad", 0));
        BYTES_ROW(Is(-NULL_ERROR), f(o, 64, nullptr, 0, k, 16, iv, 16, "aes128/ctr", 0));
        BYTES_ROW(Is(16), f(o, 64, nullptr, 0, k, 16, iv, 16, "aes128/cbc", 0));
    } else {
        BYTES_ROW(Is(-BAD_PARAM_ERROR), f(nullptr, kMin, in, 32, k, 16, iv, 16, "aes128/cbc", 0));
        Vary(rows, name, f, {o, 64, in, 32, k, 16, iv, 16, "aes128/cbc", 0},
             {{-BAD_PARAM_ERROR, {{1, -1}}}, {-BAD_LENGTH_ERROR, {{3, 20}, {3, 0}}}});
        BYTES_ROW(Is(-BAD_LENGTH_ERROR), f(o, 64, in, 8, k, 16, nullptr, 0, "aes128/cbc", OPT_PREFIX_IV));
        BYTES_ROW(Is(21), f(nullptr, 0, in, 21, k, 16, iv, 16, "aes128/ofb", 0));
        rows.push_back({std::string(name) + " bad padding in a query", [f] {
            // A block that decrypts to a last byte of 0 fails in any padding.
            uint8_t ct[16];
            uint8_t zero[16] = {};
            if (CIPHER_EncryptBytes(ct, 16, zero, 16, k, 16, nullptr, 0, "aes128/ecb/nopad", 0) != 16) return -1;
            return f(nullptr, 0, ct, 16, k, 16, nullptr, 0, "aes128/ecb", 0);
        }, Is(-DECRYPT_ERROR)});
    }
}

}  // namespace

Table CipherRows() {
    Table rows;
    AddByteRows(rows, "CIPHER_EncryptBytes", CIPHER_EncryptBytes, true);
    AddByteRows(rows, "CIPHER_DecryptBytes", CIPHER_DecryptBytes, false);
    static const std::string k16(32, 'a'), iv16(32, 'b'), data(64, 'c');
    const Table more = {
        // The second names are the same entries.
        ROW(Is(32), CIPHER_EncryptBytes2(nullptr, 0, in, 16, k, 16, iv, 16, "aes128/cbc", 0)),
        ROW(Is(21), CIPHER_DecryptBytes2(nullptr, 0, in, 21, k, 16, iv, 16, "aes128/ofb", 0)),
        ROW(Is(-INVALID_DATA_ERROR), CIPHER_EncryptHex(t, 100, data.c_str(), k16.c_str(), "0x", "aes128/cbc", 0)),
        ROW(Is(-2 * BAD_KEY_LEN_ERROR), CIPHER_EncryptHex(nullptr, 0, data.c_str(), "0011", nullptr, "aes128", 0)),
        ROW(Is(96), CIPHER_EncryptHex(nullptr, 0, data.c_str(), k16.c_str(), nullptr, "aes128", 0)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_DecryptHex(t, 100, data.c_str(), nullptr, nullptr, "aes128", 0)),
        ROW(Is(-INVALID_DATA_ERROR),
            CIPHER_DecryptHex(t, 100, std::string(32, 'x').c_str(), k16.c_str(), nullptr, "aes128", 0)),
        ROW(Is(-BAD_FLAG_ERROR), CIPHER_DecryptHex(t, 100, data.c_str(), k16.c_str(), nullptr, "", 0)),
        ROW(Is(BAD_PARAM_ERROR), CIPHER_FileEncrypt(nullptr, nullptr, k, 16, iv, 16, "aes128/cbc", 0)),
        ROW(Is(-BAD_KEY_LEN_ERROR), CIPHER_FileEncrypt(out, ex, k, -16, iv, 16, "aes256/cbc", 0)),
        ROW(Is(BAD_LENGTH_ERROR), CIPHER_FileDecrypt(out, ex, k, 24, iv, 8, "tdea/cbc", 0)),
        ROW(Is(READ_ERROR),
            CIPHER_FileDecrypt(out, Fs().empty.c_str(), k, 16, nullptr, 0, "aes128/cbc", OPT_PREFIX_IV)),
        ROW(Is(-BAD_IV_LEN_ERROR), CIPHER_FileDecrypt(out, ex, k, 16, iv, 0, "aes128/cbc", 0)),
        ROW(Is(BAD_PARAM_ERROR), CIPHER_FileDecrypt(nullptr, ex, k, 16, iv, 16, "aes128/ctr", 0)),

        ROW(Is(BAD_FLAG_ERROR), Latched(CIPHER_Init(1, nullptr, k, 16, iv, 16, 0))),
        ROW(Is(0), CIPHER_Init(1, "aes128/cbc", k, kMax, iv, 16, 0)),
        ROW(AHandle(), CIPHER_Init(1, "aes128/cbc", nullptr, 16, iv, 16, 0)),
        ROW(AHandle(), CIPHER_Init(0, "tdea/cbc", k, 24, nullptr, 8, 0)),
        ROW(Is(BAD_IV_LEN_ERROR), Latched(CIPHER_Init(0, "tdea/cbc", k, 24, iv, kMin, 0))),
        ROW(AHandle(), CIPHER_InitHex(1, "aes128/cbc", k16.c_str(), iv16.c_str(), 0)),
        ROW(Is(-NULL_ERROR), CIPHER_Update(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), nullptr, 16, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_Update(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), o, kMin, in, kMin)),
        ROW(Is(BAD_LENGTH_ERROR), CIPHER_Update(CIPHER_Init(1, "aes128/cbc", k, 16, iv, 16, 0), o, 16, in, 15)),
        ROW(AnyOf(0, -BAD_KEY_ERROR, -INTERNAL_ERROR),
            CIPHER_Update(CIPHER_Init(1, "aes128/cbc", nullptr, 16, iv, 16, 0), o, 16, in, 16)),
        ROW(AnyOf(0, -BAD_IV_ERROR, -INTERNAL_ERROR),
            CIPHER_Update(CIPHER_Init(1, "tdea/cbc", k, 24, nullptr, 8, 0), o, 16, in, 16)),
        ROW(Is(-NULL_ERROR), CIPHER_UpdateHex(0, nullptr, 10, "00")),
        ROW(Is(0), CIPHER_UpdateHex(kMin, t, 10, "")),
        ROW(Is(0), CIPHER_UpdateHex(0, t, 0, nullptr)),
        ROW(Is(-INVALID_DATA_ERROR),
            CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), t, 100, "zz")),
        ROW(Is(-INVALID_HANDLE_ERROR), CIPHER_UpdateHex(0, t, 100, data.c_str())),
        ROW(Is(BAD_LENGTH_ERROR), CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0), t, 100, "0011")),
        // An odd number of digits reaches the allocator as a size of -1.
        ROW(EndsProcess(), CIPHER_UpdateHex(CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0), t, 100, "000")),

        ROW(Is(-BAD_LENGTH_ERROR), CIPHER_KeyWrap(nullptr, 0, in, 8, k, 16, 0x20)),
        ROW(Is(-BAD_LENGTH_ERROR), CIPHER_KeyWrap(nullptr, 0, in, kMax - 7, k, 24, 0x30)),
        ROW(Is(40), CIPHER_KeyWrap(nullptr, 0, nullptr, 32, nullptr, 32, 0x40)),
        ROW(Is(-NULL_ERROR), CIPHER_KeyWrap(o, 64, in, 24, nullptr, 24, 0x10)),
        ROW(Is(-BAD_LENGTH_ERROR), CIPHER_KeyWrap(o, 64, in, 16, k, 24, 0x10)),
        ROW(Is(-NULL_ERROR), CIPHER_KeyUnwrap(o, 64, in, 40, nullptr, 24, 0x10)),
        ROW(Is(-1), CIPHER_KeyUnwrap(o, 24, in, 40, k, 24, 0x10)),
        ROW(Is(-BAD_LENGTH_ERROR), CIPHER_KeyUnwrap(o, 24, in, 41, k, 24, 0x10)),

        ROW(Is(8), PAD_BytesBlock(nullptr, 0, nullptr, 0, 8, 0)),
        ROW(Is(-BAD_PARAM_ERROR), PAD_BytesBlock(nullptr, 0, in, kMin, 16, 0)),
        // The padded length would pass 2^31 - 1.
        ROW(Is(-BAD_PARAM_ERROR), PAD_BytesBlock(nullptr, 0, in, kMax, 8, 0)),
        ROW(Is(-SHORT_BUF_ERROR), PAD_BytesBlock(o, 15, in, 8, 8, 0)),
        ROW(Is(16), PAD_BytesBlock(o, kMin, in, 8, 8, 0)),
        ROW(Is(-BAD_LENGTH_ERROR), PAD_UnpadBytes(o, 64, in, kMin, 16, 0)),
        ROW(Is(-SHORT_BUF_ERROR), PAD_UnpadBytes(o, -1, std::vector<uint8_t>{1, 2, 3, 4, 5, 6, 7, 1}.data(), 8, 8, 0)),
        ROW(Is(0), PAD_UnpadBytes(o, 0, std::vector<uint8_t>(8, 8).data(), 8, 8, 0)),
        ROW(Is(16), PAD_HexBlock(nullptr, 0, "ab", 8, 0)),
        ROW(Is(32), PAD_HexBlock(t, kMin, "", 16, 0x30000)),
        ROW(Is(-BAD_BLK_LEN_ERROR), PAD_UnpadHex(t, 64, "08", 7, 0)),
    };
    rows.insert(rows.end(), more.begin(), more.end());
    const auto ctr = [] { return CIPHER_Init(1, "aes128/ctr", k, 16, iv, 16, 0); };
    VARY(CIPHER_Update, {0, o, 16, in, 16},
         {{-SHORT_BUF_ERROR, {{2, 15}}}, {-BAD_PARAM_ERROR, {{4, -1}}}, {-NULL_ERROR, {{3, nullptr}}}}, {0, ctr});
    VARY(CIPHER_UpdateHex, {0, t, 100, "0000"}, {{-SHORT_BUF_ERROR, {{2, 3}, {2, kMin}}}}, {0, ctr});
    VARY(CIPHER_InitHex, {1, "aes128/cbc", k16.c_str(), iv16.c_str(), 0},
         {{BAD_PARAM_ERROR, {{2, nullptr}}}, {INVALID_DATA_ERROR, {{2, "zz"}}}, {BAD_KEY_LEN_ERROR, {{2, "abc"}}},
          {BAD_IV_LEN_ERROR, {{3, "abc"}}}}, {.latch = API_ErrorCode});
    VARY(CIPHER_EncryptHex, {t, 100, data.c_str(), k16.c_str(), nullptr, "aes128", 0},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, ""}, {1, kMin}}}, {-INVALID_DATA_ERROR, {{2, "abc"}, {2, "00:11"}}},
          {-SHORT_BUF_ERROR, {{1, 63}}}});
    VARY(CIPHER_FileEncrypt, {out, ex, k, 16, iv, 16, "aes128/cbc", 0},
         {{DUP_ERROR, {{0, ex}}}, {OPEN_ERROR, {{1, Fs().missing.c_str()}}}, {-BAD_FLAG_ERROR, {{6, nullptr}}},
          {BAD_KEY_ERROR, {{2, nullptr}}}, {BAD_IV_ERROR, {{4, nullptr}}}});
    VARY(CIPHER_KeyWrap, {o, 64, in, 16, k, 16, 0x20},
         {{-BAD_FLAG_ERROR, {{6, 0x50}, {6, kMin}}}, {-BAD_KEY_LEN_ERROR, {{5, -16}}}, {-BAD_LENGTH_ERROR, {{3, -16}}},
          {-NULL_ERROR, {{2, nullptr}}}, {-SHORT_BUF_ERROR, {{1, 23}, {1, -1}}}});
    VARY(CIPHER_KeyUnwrap, {o, 64, in, 24, k, 16, 0x20},
         {{-BAD_LENGTH_ERROR, {{3, 16}, {3, kMin}}}, {16, {{1, kMin}}}, {-NULL_ERROR, {{2, nullptr}}},
          {-SHORT_BUF_ERROR, {{1, 15}}}, {-1, {{1, 16}}}});
    VARY(PAD_BytesBlock, {o, 64, in, 5, 8, 0},
         {{-BAD_BLK_LEN_ERROR, {{4, 12}, {4, kMin}}}, {-NULL_ERROR, {{2, nullptr}}}});
    VARY(PAD_UnpadBytes, {o, 64, in, 8, 8, 0},
         {{-NULL_ERROR, {{2, nullptr}, {0, nullptr}}}, {-BAD_BLK_LEN_ERROR, {{4, 0}}},
          {-BAD_LENGTH_ERROR, {{3, 0}, {3, 9}}}, {-DECRYPT_ERROR, {{5, 0x40000}}}});
    VARY(PAD_HexBlock, {t, 64, "ab", 8, 0},
         {{-NULL_ERROR, {{2, nullptr}}}, {-BAD_FORMAT_ERROR, {{2, "abc"}}}, {-BAD_BLK_LEN_ERROR, {{3, 32}}},
          {-SHORT_BUF_ERROR, {{1, 15}}}});
    VARY(PAD_UnpadHex, {t, 64, "1122334455660202", 8, 0},
         {{-BAD_FORMAT_ERROR, {{2, ""}}}, {-NULL_ERROR, {{0, nullptr}, {2, nullptr}}},
          {-BAD_LENGTH_ERROR, {{2, "0808"}}}, {-DECRYPT_ERROR, {{2, "zzzzzzzzzzzzzzzz"}}}, {12, {{1, kMin}}},
          {-SHORT_BUF_ERROR, {{1, 11}}}});
    AddHandleRows(rows, {"CIPHER_Update", "CIPHER_Final",
                         [] { return CIPHER_Init(1, "aes128/ecb", k, 16, nullptr, 0, 0); },
                         [](int32_t h) { return CIPHER_Update(h, o, 16, in, 16); }, CIPHER_Final,
                         [] { return AES128_Init(k, 1, "ECB", nullptr); }, -INVALID_HANDLE_ERROR});
    return rows;
}

}  // namespace sweep
