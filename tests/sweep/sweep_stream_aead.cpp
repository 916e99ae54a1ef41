// Sweep rows: CIPHER_Stream..., PC1_, AEAD_ and GCM_.
#include <string>

#include "sweep.h"

namespace sweep {

Table StreamRows() {
    const std::string k32(64, '1');
    const char *kHexKey16 = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA", *kHexIv8 = "0000000000000000";
    const char* kHexIv12 = "000000000000000000000000";
    constexpr int32_t kArc = OPT_STREAM_ARCFOUR, kSalsa = OPT_STREAM_SALSA20, kChacha = OPT_STREAM_CHACHA20;
    Table rows = {
        ROW(Is(0), CIPHER_StreamBytes(nullptr, nullptr, 0, k, 1, nullptr, 0, 0, kArc)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_StreamBytes(o, in, kMin, k, 16, iv, 8, 0, kSalsa)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_StreamBytes(o, in, -1, k, 32, iv, 16, 0, kChacha)),
        ROW(Is(0), CIPHER_StreamBytes(o, in, 200, k, 32, iv, 12, 0xFFFFFFFFu, kChacha)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_StreamHex(t, kMin, "00", "00", nullptr, 0, kArc)),
        ROW(Is(-BAD_IV_ERROR), CIPHER_StreamHex(t, 10, "00", k32.c_str(), "", 0, kChacha)),
        ROW(Is(0), CIPHER_StreamHex(t, 0, "0011", "00", nullptr, 0, kArc)),
        ROW(Is(BAD_KEY_ERROR), Latched(CIPHER_StreamInit(nullptr, 16, iv, 8, 0, kSalsa))),
        ROW(Is(0), CIPHER_StreamInit(k, kMin, nullptr, 0, 0, kArc)),
        ROW(Is(51), Latched(CIPHER_StreamInit(k, 32, iv, 12, 0, kSalsa))),
        ROW(Is(BAD_FLAG_ERROR), Latched(CIPHER_StreamInit(k, 32, iv, 12, 0, 0))),
        ROW(AHandle(), CIPHER_StreamInit(k, 1, nullptr, kMin, 0, kArc)),
        ROW(Is(-NULL_ERROR), CIPHER_StreamUpdate(0, nullptr, in, 3)),
        ROW(Is(-BAD_PARAM_ERROR), CIPHER_StreamUpdate(CIPHER_StreamInit(k, 5, nullptr, 0, 0, kArc), o, in, -1)),
        {"CIPHER_StreamUpdate after a failed Init", [=] {
             int32_t h = CIPHER_StreamInit(k, 32, iv, 12, 0, kChacha);
             CIPHER_StreamInit(k, 32, iv, 9, 0, kChacha);
             return CIPHER_StreamUpdate(h, o, in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},

        ROW(Is(BAD_PARAM_ERROR), PC1_File(nullptr, nullptr, k, 5)),
        // Which of several faults the hex call reports first.
        ROW(Is(-NULL_ERROR), CIPHER_StreamHex(nullptr, 63, "", nullptr, nullptr, 0, 3)),
        ROW(Is(-BAD_FLAG_ERROR), CIPHER_StreamHex(t, 63, "00", kHexKey16, nullptr, 0, 9)),
        ROW(Is(-BAD_FORMAT_ERROR), CIPHER_StreamHex(t, 63, "0", kHexKey16, nullptr, 0, 9)),
        ROW(Is(0), CIPHER_StreamHex(t, 63, "00", kHexKey16, nullptr, 0, 1)),
        ROW(Is(0), CIPHER_StreamHex(t, 63, "00", kHexKey16, kHexIv8, 0, 2)),
    };
    VARY(CIPHER_StreamBytes, {o, in, 16, k, 5, nullptr, 0, 0, kArc},
         {{BAD_PARAM_ERROR, {{2, -1}, {4, 0}, {3, nullptr}, {0, nullptr}}}});
    VARY(CIPHER_StreamBytes, {o, in, 16, k, 32, iv, 8, 0, kSalsa},
         {{-51, {{6, 12}, {5, nullptr}}}, {-BAD_KEY_LEN_ERROR, {{3, nullptr}}}});
    VARY(CIPHER_StreamBytes, {o, in, 16, k, 32, iv, 12, 0, kChacha},
         {{-BAD_FLAG_ERROR, {{8, 4}}}, {-BAD_KEY_LEN_ERROR, {{4, 24}}}, {-BAD_IV_LEN_ERROR, {{6, 7}, {5, nullptr}}},
          {-BAD_PARAM_ERROR, {{0, nullptr}}}});
    VARY(PC1_Bytes, {o, in, 5, k, 5}, {{BAD_PARAM_ERROR, {{2, -1}, {4, kMin}, {4, 0}, {1, nullptr}}}});
    VARY(PC1_File, {out, ex, k, 5},
         {{BAD_PARAM_ERROR, {{3, -1}, {3, 0}, {2, nullptr}}}, {OPEN_ERROR, {{1, Fs().missing.c_str()}}},
          {CREATE_ERROR, {{0, Fs().noDir.c_str()}}}, {DUP_ERROR, {{0, ex}}}});
    VARY(PC1_Hex, {t, 10, "00", "00"},
         {{NULL_ERROR, {{0, nullptr}}}, {BAD_PARAM_ERROR, {{3, ""}, {1, kMin}}},
          {BAD_FORMAT_ERROR, {{3, "zz"}, {2, "0"}}}});
    VARY(CIPHER_StreamHex, {t, 63, "00", kHexKey16, kHexIv12, 0, 3},
         {{-BAD_PARAM_ERROR, {{2, ""}, {3, nullptr}}},
          {-BAD_FORMAT_ERROR, {{2, "ABC"}, {2, "AB:CD"}, {3, "zz"}, {4, "000"}}}, {-BAD_IV_ERROR, {{4, nullptr}}},
          {-51, {{6, 2}}}, {-BAD_KEY_LEN_ERROR, {{3, "000000"}}}});
    VARY(CIPHER_StreamFile, {out, ex, k, 5, nullptr, 0, 0, kArc},
         {{-BAD_PARAM_ERROR, {{0, nullptr}}}, {-DUP_ERROR, {{0, ex}}}, {-OPEN_ERROR, {{1, Fs().missing.c_str()}}},
          {-CREATE_ERROR, {{0, Fs().noDir.c_str()}}}, {-BAD_KEY_ERROR, {{2, nullptr}}}, {-BAD_FLAG_ERROR, {{7, 7}}},
          {-READ_ERROR, {{1, Fs().dir.c_str()}}}});
    AddHandleRows(rows, {"CIPHER_StreamUpdate", "CIPHER_StreamFinal",
                         [] { return CIPHER_StreamInit(k, 16, iv, 8, 0, OPT_STREAM_SALSA20); },
                         [](int32_t h) { return CIPHER_StreamUpdate(h, o, in, 3); }, CIPHER_StreamFinal,
                         [] { return GCM_InitKey(k, 16, 0); }, -INVALID_HANDLE_ERROR});
    return rows;
}

Table AeadRows() {
    constexpr int32_t kGcm = OPT_AEAD_AES_128_GCM, kGcm256 = OPT_AEAD_AES_256_GCM;
    constexpr int32_t kCcp = OPT_AEAD_CHACHA20_POLY1305, kAscon = OPT_AEAD_ASCON_128;
    // A live incremental context in the given state.
    static const auto keyed = [](int32_t alg) { return AEAD_InitKey(k, alg == kGcm ? 16 : 32, alg); };
    static const auto nonced = [](int32_t alg) { int32_t h = keyed(alg); return AEAD_SetNonce(h, iv, 12), h; };
    static const auto encrypting = [](int32_t alg) { int32_t h = nonced(alg); return AEAD_StartEncrypt(h), h; };
    static const auto decrypting = [](int32_t alg) { int32_t h = nonced(alg); return AEAD_StartDecrypt(h, in, 16), h; };
    const uint8_t* n = iv;
    Table rows = {
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Encrypt(o + 64, 16, o, 16, in, kMin, k, 16, n, 12, nullptr, 0, kGcm)),
        ROW(Is(0), AEAD_Encrypt(nullptr, 0, o, 16, nullptr, 0, k, 32, n, 12, in, 20, kCcp)),
        ROW(Is(-BAD_KEY_LEN_ERROR), AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 17, kCcp)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, kMin, kGcm)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Decrypt(o, 64, in, -16, k, 16, n, 12, nullptr, 0, in, 16, kGcm)),
        ROW(Is(-AUTH_FAIL_ERROR), AEAD_Decrypt(o, 64, in, 16, k, 32, n, 12, in, 3, in, 16, kCcp)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_EncryptWithTag(o, 64, in, kMin, k, 16, n, 12, nullptr, 0, kGcm)),
        ROW(Is(-BAD_LENGTH_ERROR), AEAD_EncryptWithTag(nullptr, 0, in, kMax, k, 16, n, 12, nullptr, 0, kGcm)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_DecryptWithTag(o, kMin, in, 32, k, 16, n, 12, nullptr, 0, kGcm)),
        ROW(Is(24), AEAD_DecryptWithTag(nullptr, 0, in, 40, k, 16, n, 16, nullptr, 0, kAscon)),
        ROW(Is(-AUTH_FAIL_ERROR), AEAD_DecryptWithTag(o, 64, in, 40, k, 16, n, 16, nullptr, 0, kAscon)),
        ROW(Is(BAD_KEY_ERROR), Latched(AEAD_InitKey(nullptr, 16, OPT_AEAD_AES_128_GCM))),
        ROW(Is(-BAD_KEY_LEN_ERROR), AEAD_InitKey(k, 24, kGcm)),
        ROW(Is(BAD_FLAG_ERROR), Latched(AEAD_InitKey(k, 16, kAscon))),
        ROW(Is(0), AEAD_InitKey(k, kMin, kCcp)),
        ROW(AHandle(), AEAD_InitKey(k, 32, kGcm256)),
        ROW(Is(-BAD_IV_ERROR), AEAD_SetNonce(keyed(kGcm), nullptr, 12)),
        ROW(Is(-BAD_IV_LEN_ERROR), AEAD_SetNonce(keyed(kCcp), n, 16)),
        ROW(Is(-MISUSE_ERROR), AEAD_SetNonce(nonced(kGcm), n, 12)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_AddAAD(0, in, 3)),
        ROW(Is(-MISUSE_ERROR), AEAD_AddAAD(keyed(kGcm), in, 3)),
        ROW(Is(0), AEAD_AddAAD(nonced(kCcp), nullptr, 3)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_AddAAD(nonced(kCcp), in, kMin)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_StartEncrypt(0)),
        ROW(Is(-MISUSE_ERROR), AEAD_StartEncrypt(keyed(kCcp))),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_StartDecrypt(nonced(kGcm), nullptr, 16)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_StartDecrypt(nonced(kGcm), in, 3)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_StartDecrypt(nonced(kCcp), in, kMin)),
        ROW(Is(0), AEAD_StartDecrypt(nonced(kCcp), in, kMax)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_StartDecrypt(0, in, 16)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_Update(0, o, 16, in, 16)),
        ROW(Is(-SHORT_BUF_ERROR), AEAD_Update(encrypting(kGcm), o, 15, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Update(encrypting(kCcp), nullptr, 0, in, 16)),
        ROW(Is(0), AEAD_Update(decrypting(kGcm), nullptr, 0, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Update(decrypting(kCcp), o, kMin, in, kMin)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Update(encrypting(kCcp), o, 64, nullptr, 16)),
        ROW(Is(-MISUSE_ERROR), AEAD_Update(nonced(kGcm), o, 16, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_FinishEncrypt(encrypting(kGcm), nullptr, 16)),
        ROW(Is(-SHORT_BUF_ERROR), AEAD_FinishEncrypt(encrypting(kGcm), o, 15)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_FinishEncrypt(encrypting(kGcm), o, kMin)),
        ROW(Is(-MISUSE_ERROR), AEAD_FinishEncrypt(decrypting(kCcp), o, 16)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_FinishEncrypt(0, o, 16)),
        ROW(Is(-AUTH_FAIL_ERROR), AEAD_FinishDecrypt(decrypting(kGcm))),
        ROW(Is(-MISUSE_ERROR), AEAD_FinishDecrypt(encrypting(kGcm))),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_FinishDecrypt(0)),
        ROW(Is(-INVALID_HANDLE_ERROR), AEAD_Destroy(0)),

        ROW(Is(-BAD_PARAM_ERROR), GCM_Encrypt(o, 64, o + 64, 16, in, -16, k, 32, n, 12, nullptr, 0, 0)),
        ROW(Is(-BAD_IV_ERROR), GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 32, n, -12, nullptr, 0, 0)),
        ROW(Is(0), GCM_Encrypt(o, 64, o + 64, kMax, in, 16, k, 16, n, 1, nullptr, 0, kMin)),
        ROW(Is(0), GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 0, 0)),
        ROW(Is(-AUTH_FAIL_ERROR), GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, -1, 0)),
        ROW(Is(-BAD_PARAM_ERROR), GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, in, -3, in, 16, 0)),
        ROW(AHandle(), GCM_InitKey(k, 24, kMax)),
        ROW(Is(-NULL_ERROR), GCM_NextEncrypt(GCM_InitKey(k, 16, 0), nullptr, 0, o + 64, 16, in, 5, n, 12, nullptr, 0)),
        ROW(Is(INVALID_HANDLE_ERROR), GCM_NextDecrypt(0, o, 64, in, 16, n, 12, nullptr, 0, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR),
            GCM_NextDecrypt(GCM_InitKey(k, 16, 0), nullptr, 64, in, 16, n, 12, nullptr, 0, in, 16)),
        ROW(Is(-AUTH_FAIL_ERROR), GCM_NextDecrypt(GCM_InitKey(k, 32, 0), o, 64, in, 16, n, 12, in, 7, in, 16)),
        ROW(Is(-BAD_PARAM_ERROR), GCM_NextDecrypt(GCM_InitKey(k, 32, 0), o, 64, in, 16, n, 12, in, kMin, in, 16)),
        {"GCM_NextDecrypt AEAD handle", [=] {
             GCM_FinishKey(GCM_InitKey(k, 32, 0));
             return GCM_NextDecrypt(keyed(kGcm), o, 64, in, 16, n, 12, nullptr, 0, in, 16);
         }, Is(INVALID_HANDLE_ERROR)},
        // Several faults at once: the first check wins.
        ROW(Is(-BAD_PARAM_ERROR),
            AEAD_Encrypt(nullptr, 32, nullptr, 16, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Encrypt(o, 0, o + 256, 0, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-NULL_ERROR), AEAD_Encrypt(nullptr, 0, o + 256, 16, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-SHORT_BUF_ERROR), AEAD_Encrypt(o, 31, o + 256, 16, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-BAD_KEY_ERROR), AEAD_Encrypt(o, 32, o + 256, 16, in, 32, nullptr, 16, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_Encrypt(o, 32, o + 256, 16, in, 32, k, 16, iv, 12, in, -3, 0)),
        ROW(Is(-NOT_SUPPORTED_ERROR), AEAD_Encrypt(o, 32, o + 256, 2, in, 32, k, 5, iv, 3, nullptr, 0, 26)),
        ROW(Is(0), AEAD_Encrypt(o, 32, o + 256, 16, in, 32, k, 32, iv, 12, nullptr, 0, 0x7700 | 29)),
        ROW(Is(-BAD_PARAM_ERROR),
            AEAD_Decrypt(nullptr, 0, nullptr, 9, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 16, 0)),
        ROW(Is(-SHORT_BUF_ERROR), AEAD_Decrypt(o, 31, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, o + 256, 16, 0)),
        ROW(Is(-BAD_KEY_ERROR), AEAD_Decrypt(o, 32, in, 32, nullptr, 0, nullptr, 0, nullptr, 0, o + 256, 16, 0)),
        ROW(Is(-BAD_IV_ERROR), AEAD_Decrypt(o, 32, in, 32, k, 16, nullptr, 0, nullptr, 0, o + 256, 16, 0)),
        ROW(Is(-NOT_SUPPORTED_ERROR), AEAD_Decrypt(o, 32, in, 32, k, 16, iv, 16, nullptr, 0, o + 256, 16, 27)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_EncryptWithTag(o, 64, in, 8, k, 16, iv, 12, in, -8, 1)),
        ROW(Is(-BAD_KEY_LEN_ERROR), AEAD_EncryptWithTag(o, 64, in, 8, k, 32, iv, 12, nullptr, 0, 26)),
        ROW(Is(-BAD_IV_LEN_ERROR), AEAD_EncryptWithTag(nullptr, 0, in, 8, k, 16, iv, 12, nullptr, 0, 26)),
        ROW(Is(116), AEAD_EncryptWithTag(nullptr, 0, in, 100, k, 16, iv, 12, nullptr, 0, 1)),
        ROW(Is(128), AEAD_EncryptWithTag(o, 0, in, 100, k, 16, iv, 12, nullptr, 0, 1 | OPT_PREFIX_IV)),
        ROW(Is(132), AEAD_EncryptWithTag(nullptr, 0, in, 100, k, 16, iv, 16, nullptr, 0, 26 | OPT_PREFIX_IV)),
        ROW(Is(-BAD_LENGTH_ERROR), AEAD_DecryptWithTag(o, 64, nullptr, 0, k, 16, iv, 12, nullptr, 0, 1)),
        ROW(Is(-BAD_PARAM_ERROR), AEAD_DecryptWithTag(o, 64, in, 24, k, 16, iv, 12, in, -1, 1)),
        ROW(Is(-BAD_LENGTH_ERROR), AEAD_DecryptWithTag(o, 64, in, 27, k, 16, iv, 12, nullptr, 0, 1 | OPT_PREFIX_IV)),
        ROW(Is(8), AEAD_DecryptWithTag(nullptr, 0, in, 24, k, 16, iv, 12, nullptr, 0, 1)),
        ROW(Is(12), AEAD_DecryptWithTag(o, 0, in, 40, k, 16, nullptr, 0, nullptr, 0, 1 | OPT_PREFIX_IV)),
        ROW(Is(-BAD_KEY_ERROR),
            GCM_Encrypt(nullptr, 0, nullptr, 0, nullptr, 5, nullptr, 16, nullptr, 0, nullptr, 0, 0)),
        ROW(Is(-BAD_PARAM_ERROR), GCM_Encrypt(nullptr, 32, nullptr, 16, in, 32, k, 20, iv, 12, nullptr, 0, 0)),
        ROW(Is(-BAD_PARAM_ERROR), GCM_Encrypt(o, 0, o + 256, 0, in, 32, k, 20, iv, 12, nullptr, 0, 0)),
        ROW(Is(-BAD_PARAM_ERROR), GCM_Encrypt(o, 32, o + 256, 16, in, 32, k, 20, iv, 12, in, -4, 0)),
        ROW(Is(-NULL_ERROR), GCM_Encrypt(nullptr, 0, o + 256, 16, in, 32, k, 24, iv, 12, nullptr, 0, 0)),
        ROW(Is(0), GCM_Encrypt(nullptr, 0, o + 256, 16, nullptr, 0, k, 32, iv, 12, in, 32, 0)),
        ROW(Is(0), GCM_Encrypt(o, 32, nullptr, 0, in, 32, k, 16, iv, 1, nullptr, 0, 0)),
        ROW(Is(-SHORT_BUF_ERROR), GCM_Decrypt(nullptr, 31, in, 32, k, 20, iv, 12, nullptr, 0, o + 256, 16, 0)),
    };
    VARY(AEAD_Encrypt, {o, 32, o + 256, 16, in, 32, k, 16, iv, 12, nullptr, 0, 0},
         {{-BAD_IV_ERROR, {{8, nullptr}}}, {-BAD_PARAM_ERROR, {{4, nullptr}, {11, 3}}},
          {-BAD_FLAG_ERROR, {{12, 0}, {12, 30}, {12, 3}}}, {-BAD_KEY_LEN_ERROR, {{12, 29}}}});
    VARY(AEAD_Encrypt, {o, 32, o + 256, 16, in, 32, k, 16, iv, 12, nullptr, 0, 1},
         {{-BAD_KEY_LEN_ERROR, {{7, 32}}}, {-BAD_IV_LEN_ERROR, {{9, 8}}}, {-SHORT_BUF_ERROR, {{3, 15}}},
          {-BAD_PARAM_ERROR, {{2, nullptr}}}});
    VARY(AEAD_Decrypt, {o, 32, in, 32, k, 16, iv, 12, nullptr, 0, o + 256, 16, 0},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {9, 1}}}, {-BAD_FLAG_ERROR, {{12, 0}}}});
    VARY(AEAD_Decrypt, {o, 32, in, 32, k, 32, iv, 12, nullptr, 0, o + 256, 16, 2},
         {{-BAD_KEY_LEN_ERROR, {{5, 24}}}, {-BAD_IV_LEN_ERROR, {{7, 16}}}, {-BAD_LENGTH_ERROR, {{11, 3}}},
          {-AUTH_FAIL_ERROR, {{1, 0}}}});
    VARY(AEAD_Decrypt, {o, 32, in, 32, k, 32, iv, 12, nullptr, 0, o + 256, 16, 29},
         {{-BAD_LENGTH_ERROR, {{11, 17}}}, {-SHORT_BUF_ERROR, {{1, 0}}}});
    VARY(AEAD_EncryptWithTag, {o, 64, in, 8, k, 16, iv, 12, nullptr, 0, 1},
         {{-BAD_KEY_ERROR, {{4, nullptr}}}, {-BAD_IV_ERROR, {{6, nullptr}}}, {-BAD_PARAM_ERROR, {{1, -1}}},
          {-NULL_ERROR, {{2, nullptr}, {9, 8}}}, {-BAD_FLAG_ERROR, {{10, 28}}}, {-SHORT_BUF_ERROR, {{1, 23}}},
          {24, {{1, 24}}}});
    VARY(AEAD_DecryptWithTag, {o, 64, in, 24, k, 16, iv, 12, nullptr, 0, 1},
         {{-BAD_KEY_ERROR, {{4, nullptr}}}, {-NULL_ERROR, {{2, nullptr}}}, {-BAD_FLAG_ERROR, {{10, 3}}},
          {-BAD_KEY_LEN_ERROR, {{10, 29}}}, {-BAD_LENGTH_ERROR, {{3, 15}, {3, -20}}}, {-BAD_IV_LEN_ERROR, {{7, 16}}},
          {-BAD_IV_ERROR, {{6, nullptr}}}, {-SHORT_BUF_ERROR, {{1, 7}}}, {-AUTH_FAIL_ERROR, {{10, 1}}}});
    VARY(GCM_Encrypt, {o, 32, o + 256, 16, in, 32, k, 20, iv, 12, nullptr, 0, 0},
         {{-BAD_KEY_ERROR, {{7, 0}}}, {-BAD_IV_ERROR, {{8, nullptr}, {9, 0}}},
          {-BAD_PARAM_ERROR, {{4, nullptr}, {11, 4}}}, {-SHORT_BUF_ERROR, {{3, 3}}}, {-BAD_KEY_LEN_ERROR, {{12, 0}}}});
    VARY(GCM_Encrypt, {o, 32, o + 256, 16, in, 32, k, 24, iv, 12, nullptr, 0, 0},
         {{-SHORT_BUF_ERROR, {{1, 31}, {1, 0}}}});
    VARY(GCM_Decrypt, {o, 32, in, 32, k, 20, iv, 12, nullptr, 0, o + 256, 16, 0},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {9, 1}, {3, -1}}}, {-BAD_KEY_LEN_ERROR, {{12, 0}}},
          {-AUTH_FAIL_ERROR, {{5, 16}}}});
    VARY(GCM_Decrypt, {o, 32, in, 32, k, 16, iv, 12, nullptr, 0, o + 256, 16, 0},
         {{-BAD_KEY_ERROR, {{4, nullptr}}}, {-BAD_IV_ERROR, {{6, nullptr}}}, {-BAD_PARAM_ERROR, {{10, nullptr}}}});
    VARY(GCM_InitKey, {k, 16, 0}, {{BAD_KEY_ERROR, {{0, nullptr}}}, {BAD_KEY_LEN_ERROR, {{1, kMin}}}},
         {.latch = API_ErrorCode});
    VARY(GCM_NextEncrypt, {0, o, 64, o + 64, 16, in, 16, iv, 12, nullptr, 0},
         {{-BAD_IV_ERROR, {{7, nullptr}}}, {-BAD_PARAM_ERROR, {{6, -1}}}}, {0, [] { return GCM_InitKey(k, 16, 0); }});
    AddHandleRows(rows, {"AEAD_SetNonce", "AEAD_Destroy", [] { return keyed(kCcp); },
                         [](int32_t h) { return AEAD_SetNonce(h, iv, 12); }, AEAD_Destroy,
                         [] { return GCM_InitKey(k, 16, 0); }, -INVALID_HANDLE_ERROR});
    AddHandleRows(rows, {"GCM_NextEncrypt", "GCM_FinishKey", [] { return GCM_InitKey(k, 16, 0); },
                         [](int32_t h) { return GCM_NextEncrypt(h, o, 64, o + 64, 16, in, 16, iv, 12, nullptr, 0); },
                         GCM_FinishKey, [] { return keyed(kGcm); }, INVALID_HANDLE_ERROR});
    return rows;
}

}  // namespace sweep
