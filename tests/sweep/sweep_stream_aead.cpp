// Sweep rows: CIPHER_Stream..., PC1_, AEAD_ and GCM_.
#include <string>

#include "sweep.h"

namespace sweep {

Table StreamRows() {
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* iv = b.iv;
    const char* ex = Fs().existing.c_str();
    const char* out = Fs().out.c_str();
    const std::string k32(64, '1');
    constexpr int32_t kArc = OPT_STREAM_ARCFOUR, kSalsa = OPT_STREAM_SALSA20, kChacha = OPT_STREAM_CHACHA20;
    return {
        {"CIPHER_StreamBytes unknown cipher", [=] { return CIPHER_StreamBytes(o, in, 16, k, 32, iv, 12, 0, 4); },
         Is(-BAD_FLAG_ERROR)},
        {"CIPHER_StreamBytes ARCFOUR negative length", [=] { return CIPHER_StreamBytes(o, in, -1, k, 5, nullptr, 0, 0, kArc); },
         Is(BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ARCFOUR key of 0", [=] { return CIPHER_StreamBytes(o, in, 16, k, 0, nullptr, 0, 0, kArc); },
         Is(BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ARCFOUR null key", [=] { return CIPHER_StreamBytes(o, in, 16, nullptr, 5, nullptr, 0, 0, kArc); },
         Is(BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ARCFOUR null output", [=] { return CIPHER_StreamBytes(nullptr, in, 16, k, 5, nullptr, 0, 0, kArc); },
         Is(BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ARCFOUR empty, null buffers", [=] {
             return CIPHER_StreamBytes(nullptr, nullptr, 0, k, 1, nullptr, 0, 0, kArc);
         }, Is(0)},
        {"CIPHER_StreamBytes Salsa20 12-byte IV", [=] { return CIPHER_StreamBytes(o, in, 16, k, 32, iv, 12, 0, kSalsa); },
         Is(-51)},
        {"CIPHER_StreamBytes Salsa20 null IV", [=] { return CIPHER_StreamBytes(o, in, 16, k, 32, nullptr, 8, 0, kSalsa); },
         Is(-51)},
        {"CIPHER_StreamBytes Salsa20 null key", [=] { return CIPHER_StreamBytes(o, in, 16, nullptr, 32, iv, 8, 0, kSalsa); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"CIPHER_StreamBytes Salsa20 INT32_MIN", [=] { return CIPHER_StreamBytes(o, in, kMin, k, 16, iv, 8, 0, kSalsa); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 key of 24", [=] { return CIPHER_StreamBytes(o, in, 16, k, 24, iv, 12, 0, kChacha); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 IV of 7", [=] { return CIPHER_StreamBytes(o, in, 16, k, 32, iv, 7, 0, kChacha); },
         Is(-BAD_IV_LEN_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 null IV", [=] { return CIPHER_StreamBytes(o, in, 16, k, 32, nullptr, 12, 0, kChacha); },
         Is(-BAD_IV_LEN_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 null output", [=] {
             return CIPHER_StreamBytes(nullptr, in, 16, k, 32, iv, 12, 0, kChacha);
         }, Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 negative length", [=] { return CIPHER_StreamBytes(o, in, -1, k, 32, iv, 16, 0, kChacha); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamBytes ChaCha20 counter wraps", [=] {
             return CIPHER_StreamBytes(o, in, 200, k, 32, iv, 12, 0xFFFFFFFFu, kChacha);
         }, Is(0)},
        {"CIPHER_StreamHex null output", [] { return CIPHER_StreamHex(nullptr, 10, "00", "00", nullptr, 0, kArc); },
         Is(-NULL_ERROR)},
        {"CIPHER_StreamHex empty input", [=] { return CIPHER_StreamHex(t, 10, "", "00", nullptr, 0, kArc); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamHex negative length", [=] { return CIPHER_StreamHex(t, kMin, "00", "00", nullptr, 0, kArc); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamHex odd input", [=] { return CIPHER_StreamHex(t, 10, "000", "00", nullptr, 0, kArc); },
         Is(-BAD_FORMAT_ERROR)},
        {"CIPHER_StreamHex key with separators", [=] { return CIPHER_StreamHex(t, 10, "00", "00:11", nullptr, 0, kArc); },
         Is(-BAD_FORMAT_ERROR)},
        {"CIPHER_StreamHex ChaCha20 without IV", [=] { return CIPHER_StreamHex(t, 10, "00", k32.c_str(), "", 0, kChacha); },
         Is(-BAD_IV_ERROR)},
        {"CIPHER_StreamHex ChaCha20 odd IV", [=] {
             return CIPHER_StreamHex(t, 10, "00", k32.c_str(), "00000000000000000000000", 0, kChacha);
         }, Is(-BAD_FORMAT_ERROR)},
        {"CIPHER_StreamHex unknown cipher", [=] { return CIPHER_StreamHex(t, 10, "00", "00", nullptr, 0, 0); },
         Is(-BAD_FLAG_ERROR)},
        {"CIPHER_StreamHex output length 0", [=] { return CIPHER_StreamHex(t, 0, "0011", "00", nullptr, 0, kArc); }, Is(0)},
        {"CIPHER_StreamFile null names", [=] { return CIPHER_StreamFile(nullptr, ex, k, 5, nullptr, 0, 0, kArc); },
         Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamFile one name twice", [=] { return CIPHER_StreamFile(ex, ex, k, 5, nullptr, 0, 0, kArc); },
         Is(-DUP_ERROR)},
        {"CIPHER_StreamFile missing input", [=] {
             return CIPHER_StreamFile(out, Fs().missing.c_str(), k, 5, nullptr, 0, 0, kArc);
         }, Is(-OPEN_ERROR)},
        {"CIPHER_StreamFile missing directory", [=] {
             return CIPHER_StreamFile(Fs().noDir.c_str(), ex, k, 5, nullptr, 0, 0, kArc);
         }, Is(-CREATE_ERROR)},
        {"CIPHER_StreamFile null key", [=] { return CIPHER_StreamFile(out, ex, nullptr, 5, nullptr, 0, 0, kArc); },
         Is(-BAD_KEY_ERROR)},
        {"CIPHER_StreamFile unknown cipher", [=] { return CIPHER_StreamFile(out, ex, k, 5, nullptr, 0, 0, 7); },
         Is(-BAD_FLAG_ERROR)},
        {"CIPHER_StreamFile a directory", [=] { return CIPHER_StreamFile(out, Fs().dir.c_str(), k, 5, nullptr, 0, 0, kArc); },
         Is(-READ_ERROR)},
        {"CIPHER_StreamInit null key", [=] {
             CIPHER_StreamInit(nullptr, 16, iv, 8, 0, kSalsa);
             return API_ErrorCode();
         }, Is(BAD_KEY_ERROR)},
        {"CIPHER_StreamInit key length INT32_MIN", [=] { return CIPHER_StreamInit(k, kMin, nullptr, 0, 0, kArc); }, Is(0)},
        {"CIPHER_StreamInit Salsa20 IV of 12", [=] {
             CIPHER_StreamInit(k, 32, iv, 12, 0, kSalsa);
             return API_ErrorCode();
         }, Is(51)},
        {"CIPHER_StreamInit unknown cipher", [=] {
             CIPHER_StreamInit(k, 32, iv, 12, 0, 0);
             return API_ErrorCode();
         }, Is(BAD_FLAG_ERROR)},
        {"CIPHER_StreamInit ARCFOUR without IV", [=] { return CIPHER_StreamInit(k, 1, nullptr, kMin, 0, kArc); }, AHandle()},
        {"CIPHER_StreamUpdate null output, dead handle", [=] { return CIPHER_StreamUpdate(0, nullptr, in, 3); },
         Is(-NULL_ERROR)},
        {"CIPHER_StreamUpdate negative length", [=] {
             return CIPHER_StreamUpdate(CIPHER_StreamInit(k, 5, nullptr, 0, 0, kArc), o, in, -1);
         }, Is(-BAD_PARAM_ERROR)},
        {"CIPHER_StreamUpdate handle 0", [=] { return CIPHER_StreamUpdate(0, o, in, 3); }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_StreamUpdate after a failed Init", [=] {
             int32_t h = CIPHER_StreamInit(k, 32, iv, 12, 0, kChacha);
             CIPHER_StreamInit(k, 32, iv, 9, 0, kChacha);
             return CIPHER_StreamUpdate(h, o, in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_StreamUpdate handle of another thread", [=] {
             int32_t own = CIPHER_StreamInit(k, 5, nullptr, 0, 0, kArc);
             int32_t other = FromOtherThread([k] { return CIPHER_StreamInit(k, 5, nullptr, 0, 0, OPT_STREAM_ARCFOUR); });
             return other == own ? -INVALID_HANDLE_ERROR : CIPHER_StreamUpdate(other, o, in, 3);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_StreamFinal handle 0", [] { return CIPHER_StreamFinal(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_StreamFinal twice", [=] {
             int32_t h = CIPHER_StreamInit(k, 16, iv, 8, 0, kSalsa);
             CIPHER_StreamFinal(h);
             return CIPHER_StreamFinal(h);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"CIPHER_StreamFinal GCM handle", [=] {
             CIPHER_StreamFinal(CIPHER_StreamInit(k, 16, iv, 8, 0, kSalsa));
             return CIPHER_StreamFinal(GCM_InitKey(k, 16, 0));
         }, Is(-INVALID_HANDLE_ERROR)},

        {"PC1_Bytes negative length", [=] { return PC1_Bytes(o, in, -1, k, 5); }, Is(BAD_PARAM_ERROR)},
        {"PC1_Bytes negative key length", [=] { return PC1_Bytes(o, in, 5, k, kMin); }, Is(BAD_PARAM_ERROR)},
        {"PC1_Bytes key of 0", [=] { return PC1_Bytes(o, in, 5, k, 0); }, Is(BAD_PARAM_ERROR)},
        {"PC1_Bytes null input", [=] { return PC1_Bytes(o, nullptr, 5, k, 5); }, Is(BAD_PARAM_ERROR)},
        {"PC1_File negative key length", [=] { return PC1_File(out, ex, k, -1); }, Is(BAD_PARAM_ERROR)},
        {"PC1_File key of 0", [=] { return PC1_File(out, ex, k, 0); }, Is(BAD_PARAM_ERROR)},
        {"PC1_File null key", [=] { return PC1_File(out, ex, nullptr, 5); }, Is(BAD_PARAM_ERROR)},
        {"PC1_File null names", [=] { return PC1_File(nullptr, nullptr, k, 5); }, Is(BAD_PARAM_ERROR)},
        {"PC1_File missing input", [=] { return PC1_File(out, Fs().missing.c_str(), k, 5); }, Is(OPEN_ERROR)},
        {"PC1_File missing directory", [=] { return PC1_File(Fs().noDir.c_str(), ex, k, 5); }, Is(CREATE_ERROR)},
        {"PC1_File one name twice", [=] { return PC1_File(ex, ex, k, 5); }, Is(DUP_ERROR)},
        {"PC1_Hex null output", [] { return PC1_Hex(nullptr, 10, "00", "00"); }, Is(NULL_ERROR)},
        {"PC1_Hex empty key", [=] { return PC1_Hex(t, 10, "00", ""); }, Is(BAD_PARAM_ERROR)},
        {"PC1_Hex key without digits", [=] { return PC1_Hex(t, 10, "00", "zz"); }, Is(BAD_FORMAT_ERROR)},
        {"PC1_Hex odd input", [=] { return PC1_Hex(t, 10, "0", "00"); }, Is(BAD_FORMAT_ERROR)},
        {"PC1_Hex negative length", [=] { return PC1_Hex(t, kMin, "00", "00"); }, Is(BAD_PARAM_ERROR)},
    };
}

Table AeadRows() {
    Buffers& b = Buf();
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const uint8_t* k = b.key;
    const uint8_t* n = b.iv;
    constexpr int32_t kGcm = OPT_AEAD_AES_128_GCM, kGcm256 = OPT_AEAD_AES_256_GCM;
    constexpr int32_t kCcp = OPT_AEAD_CHACHA20_POLY1305, kAscon = OPT_AEAD_ASCON_128;
    // A live incremental context in the given state.
    auto keyed = [k](int32_t alg) { return AEAD_InitKey(k, alg == kGcm ? 16 : 32, alg); };
    auto nonced = [keyed, n](int32_t alg) {
        int32_t h = keyed(alg);
        AEAD_SetNonce(h, n, 12);
        return h;
    };
    auto encrypting = [nonced](int32_t alg) {
        int32_t h = nonced(alg);
        AEAD_StartEncrypt(h);
        return h;
    };
    auto decrypting = [nonced, in](int32_t alg) {
        int32_t h = nonced(alg);
        AEAD_StartDecrypt(h, in, 16);
        return h;
    };
    return {
        {"AEAD_Encrypt no out and no tag", [=] { return AEAD_Encrypt(nullptr, 0, nullptr, 16, in, 0, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt both lengths 0", [=] { return AEAD_Encrypt(o, 0, o, 0, in, 0, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt null out with input", [=] { return AEAD_Encrypt(nullptr, 0, o, 16, in, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-NULL_ERROR)},
        {"AEAD_Encrypt short out", [=] { return AEAD_Encrypt(o + 64, 15, o, 16, in, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-SHORT_BUF_ERROR)},
        {"AEAD_Encrypt null key", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, nullptr, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_KEY_ERROR)},
        {"AEAD_Encrypt null nonce", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 16, nullptr, 12, nullptr, 0, kGcm); },
         Is(-BAD_IV_ERROR)},
        {"AEAD_Encrypt negative input length", [=] {
             return AEAD_Encrypt(o + 64, 16, o, 16, in, kMin, k, 16, n, 12, nullptr, 0, kGcm);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt negative AAD length, good key", [=] {
             return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 32, n, 12, in, -1, kCcp);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt null AAD with a length", [=] {
             return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 32, n, 12, nullptr, 5, kCcp);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt algorithm 0", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 16, n, 12, nullptr, 0, 0); },
         Is(-BAD_FLAG_ERROR)},
        {"AEAD_Encrypt algorithm 30", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 16, n, 12, nullptr, 0, 30); },
         Is(-BAD_FLAG_ERROR)},
        {"AEAD_Encrypt Ascon", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 3, n, 3, nullptr, 0, kAscon); },
         Is(-NOT_SUPPORTED_ERROR)},
        {"AEAD_Encrypt tag room 12", [=] { return AEAD_Encrypt(o + 64, 16, o, 12, in, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-SHORT_BUF_ERROR)},
        {"AEAD_Encrypt nonce of 16", [=] { return AEAD_Encrypt(o + 64, 16, o, 16, in, 16, k, 32, n, 16, nullptr, 0, kGcm256); },
         Is(-BAD_IV_LEN_ERROR)},
        {"AEAD_Encrypt null tag with room", [=] { return AEAD_Encrypt(o + 64, 16, nullptr, 16, in, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Encrypt AAD only", [=] { return AEAD_Encrypt(nullptr, 0, o, 16, nullptr, 0, k, 32, n, 12, in, 20, kCcp); }, Is(0)},
        {"AEAD_Decrypt null tag", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, nullptr, 16, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Decrypt tag of 3", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 3, kGcm); },
         Is(-BAD_LENGTH_ERROR)},
        {"AEAD_Decrypt tag of 17", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 17, kCcp); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"AEAD_Decrypt tag INT32_MIN", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, kMin, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Decrypt short out", [=] { return AEAD_Decrypt(o, 15, in, 16, k, 16, n, 12, nullptr, 0, in, 16, kGcm); },
         Is(-SHORT_BUF_ERROR)},
        {"AEAD_Decrypt negative input length", [=] { return AEAD_Decrypt(o, 64, in, -16, k, 16, n, 12, nullptr, 0, in, 16, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Decrypt null input with a length", [=] {
             return AEAD_Decrypt(o, 64, nullptr, 16, k, 32, n, 12, nullptr, 0, in, 16, kCcp);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Decrypt ChaCha20 out with length 0", [=] {
             return AEAD_Decrypt(o, 0, in, 16, k, 32, n, 12, nullptr, 0, in, 16, kCcp);
         }, Is(-SHORT_BUF_ERROR)},
        {"AEAD_Decrypt forged", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 32, n, 12, in, 3, in, 16, kCcp); },
         Is(-AUTH_FAIL_ERROR)},
        {"AEAD_Decrypt Ascon", [=] { return AEAD_Decrypt(o, 64, in, 16, k, 16, n, 16, nullptr, 0, in, 16, kAscon); },
         Is(-NOT_SUPPORTED_ERROR)},
        {"AEAD_EncryptWithTag null key", [=] { return AEAD_EncryptWithTag(o, 64, in, 16, nullptr, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_KEY_ERROR)},
        {"AEAD_EncryptWithTag negative out length", [=] { return AEAD_EncryptWithTag(o, -1, in, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_EncryptWithTag null input", [=] { return AEAD_EncryptWithTag(o, 64, nullptr, 16, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-NULL_ERROR)},
        {"AEAD_EncryptWithTag negative input length", [=] {
             return AEAD_EncryptWithTag(o, 64, in, kMin, k, 16, n, 12, nullptr, 0, kGcm);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_EncryptWithTag negative AAD length", [=] {
             return AEAD_EncryptWithTag(o, 64, in, 16, k, 16, n, 16, in, -1, kAscon);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_EncryptWithTag query of INT32_MAX bytes", [=] {
             return AEAD_EncryptWithTag(nullptr, 0, in, kMax, k, 16, n, 12, nullptr, 0, kGcm);
         }, Is(-BAD_LENGTH_ERROR)},
        {"AEAD_EncryptWithTag query", [=] {
             return AEAD_EncryptWithTag(nullptr, 0, in, 100, k, 16, n, 16, nullptr, 0, kAscon | OPT_PREFIX_IV);
         }, Is(132)},
        {"AEAD_EncryptWithTag query with a bad key", [=] {
             return AEAD_EncryptWithTag(nullptr, 0, in, 100, k, 24, n, 12, nullptr, 0, kGcm);
         }, Is(-BAD_KEY_LEN_ERROR)},
        {"AEAD_EncryptWithTag Ascon 12-byte nonce", [=] {
             return AEAD_EncryptWithTag(o, 64, in, 16, k, 16, n, 12, nullptr, 0, kAscon);
         }, Is(-BAD_IV_LEN_ERROR)},
        {"AEAD_EncryptWithTag short", [=] { return AEAD_EncryptWithTag(o, 31, in, 16, k, 32, n, 12, nullptr, 0, kCcp); },
         Is(-SHORT_BUF_ERROR)},
        {"AEAD_DecryptWithTag null key", [=] { return AEAD_DecryptWithTag(o, 64, in, 32, nullptr, 0, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_KEY_ERROR)},
        {"AEAD_DecryptWithTag negative out length", [=] {
             return AEAD_DecryptWithTag(o, kMin, in, 32, k, 16, n, 12, nullptr, 0, kGcm);
         }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_DecryptWithTag null input with a length", [=] {
             return AEAD_DecryptWithTag(o, 64, nullptr, 32, k, 16, n, 12, nullptr, 0, kGcm);
         }, Is(-NULL_ERROR)},
        {"AEAD_DecryptWithTag empty input", [=] { return AEAD_DecryptWithTag(o, 64, in, 0, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_LENGTH_ERROR)},
        {"AEAD_DecryptWithTag negative input length", [=] {
             return AEAD_DecryptWithTag(o, 64, in, -5, k, 32, n, 12, nullptr, 0, kCcp);
         }, Is(-BAD_LENGTH_ERROR)},
        {"AEAD_DecryptWithTag null empty input", [=] {
             return AEAD_DecryptWithTag(nullptr, 0, nullptr, 0, k, 16, n, 16, nullptr, 0, kAscon);
         }, Is(-BAD_LENGTH_ERROR)},
        {"AEAD_DecryptWithTag 15 bytes", [=] { return AEAD_DecryptWithTag(o, 64, in, 15, k, 16, n, 12, nullptr, 0, kGcm); },
         Is(-BAD_LENGTH_ERROR)},
        {"AEAD_DecryptWithTag prefix, 27 bytes", [=] {
             return AEAD_DecryptWithTag(o, 64, in, 27, k, 16, nullptr, 0, nullptr, 0, kGcm | OPT_PREFIX_IV);
         }, Is(-BAD_LENGTH_ERROR)},
        {"AEAD_DecryptWithTag unknown algorithm", [=] { return AEAD_DecryptWithTag(o, 64, in, 32, k, 16, n, 12, nullptr, 0, 3); },
         Is(-BAD_FLAG_ERROR)},
        {"AEAD_DecryptWithTag nonce length", [=] { return AEAD_DecryptWithTag(o, 64, in, 32, k, 16, n, 11, nullptr, 0, kGcm); },
         Is(-BAD_IV_LEN_ERROR)},
        {"AEAD_DecryptWithTag null nonce", [=] { return AEAD_DecryptWithTag(o, 64, in, 32, k, 16, nullptr, 12, nullptr, 0, kGcm); },
         Is(-BAD_IV_ERROR)},
        {"AEAD_DecryptWithTag query", [=] { return AEAD_DecryptWithTag(nullptr, 0, in, 40, k, 16, n, 16, nullptr, 0, kAscon); },
         Is(24)},
        {"AEAD_DecryptWithTag short", [=] { return AEAD_DecryptWithTag(o, 23, in, 40, k, 32, n, 12, nullptr, 0, kCcp); },
         Is(-SHORT_BUF_ERROR)},
        {"AEAD_DecryptWithTag forged", [=] { return AEAD_DecryptWithTag(o, 64, in, 40, k, 16, n, 16, nullptr, 0, kAscon); },
         Is(-AUTH_FAIL_ERROR)},
        {"AEAD_InitKey null key", [] {
             AEAD_InitKey(nullptr, 16, OPT_AEAD_AES_128_GCM);
             return API_ErrorCode();
         }, Is(BAD_KEY_ERROR)},
        {"AEAD_InitKey key length", [=] { return AEAD_InitKey(k, 24, kGcm); }, Is(-BAD_KEY_LEN_ERROR)},
        {"AEAD_InitKey Ascon", [=] {
             AEAD_InitKey(k, 16, kAscon);
             return API_ErrorCode();
         }, Is(BAD_FLAG_ERROR)},
        {"AEAD_InitKey key length INT32_MIN", [=] { return AEAD_InitKey(k, kMin, kCcp); }, Is(0)},
        {"AEAD_InitKey", [=] { return AEAD_InitKey(k, 32, kGcm256); }, AHandle()},
        {"AEAD_SetNonce handle 0", [=] { return AEAD_SetNonce(0, n, 12); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_SetNonce null nonce", [=] { return AEAD_SetNonce(keyed(kGcm), nullptr, 12); }, Is(-BAD_IV_ERROR)},
        {"AEAD_SetNonce nonce of 16", [=] { return AEAD_SetNonce(keyed(kCcp), n, 16); }, Is(-BAD_IV_LEN_ERROR)},
        {"AEAD_SetNonce twice", [=] { return AEAD_SetNonce(nonced(kGcm), n, 12); }, Is(-MISUSE_ERROR)},
        {"AEAD_SetNonce handle of another thread", [=] {
             int32_t own = keyed(kGcm);
             int32_t other = FromOtherThread([keyed] { return keyed(OPT_AEAD_AES_128_GCM); });
             return other == own ? -INVALID_HANDLE_ERROR : AEAD_SetNonce(other, n, 12);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_AddAAD handle 0", [=] { return AEAD_AddAAD(0, in, 3); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_AddAAD before the nonce", [=] { return AEAD_AddAAD(keyed(kGcm), in, 3); }, Is(-MISUSE_ERROR)},
        {"AEAD_AddAAD null", [=] { return AEAD_AddAAD(nonced(kCcp), nullptr, 3); }, Is(0)},
        {"AEAD_AddAAD negative length", [=] { return AEAD_AddAAD(nonced(kGcm), in, -1); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_AddAAD INT32_MIN", [=] { return AEAD_AddAAD(nonced(kCcp), in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_StartEncrypt handle 0", [] { return AEAD_StartEncrypt(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_StartEncrypt without nonce", [=] { return AEAD_StartEncrypt(keyed(kCcp)); }, Is(-MISUSE_ERROR)},
        {"AEAD_StartDecrypt null tag", [=] { return AEAD_StartDecrypt(nonced(kGcm), nullptr, 16); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_StartDecrypt tag of 3", [=] { return AEAD_StartDecrypt(nonced(kGcm), in, 3); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_StartDecrypt tag INT32_MIN", [=] { return AEAD_StartDecrypt(nonced(kCcp), in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_StartDecrypt tag INT32_MAX", [=] { return AEAD_StartDecrypt(nonced(kCcp), in, kMax); }, Is(0)},
        {"AEAD_StartDecrypt handle 0", [=] { return AEAD_StartDecrypt(0, in, 16); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_Update handle 0", [=] { return AEAD_Update(0, o, 16, in, 16); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_Update short", [=] { return AEAD_Update(encrypting(kGcm), o, 15, in, 16); }, Is(-SHORT_BUF_ERROR)},
        {"AEAD_Update null out while encrypting", [=] { return AEAD_Update(encrypting(kCcp), nullptr, 0, in, 16); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Update null out while decrypting", [=] { return AEAD_Update(decrypting(kGcm), nullptr, 0, in, 16); }, Is(0)},
        {"AEAD_Update negative length", [=] { return AEAD_Update(encrypting(kGcm), o, 16, in, -1); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Update INT32_MIN", [=] { return AEAD_Update(decrypting(kCcp), o, kMin, in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_Update null input with a length", [=] { return AEAD_Update(encrypting(kCcp), o, 64, nullptr, 16); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_Update not started", [=] { return AEAD_Update(nonced(kGcm), o, 16, in, 16); }, Is(-MISUSE_ERROR)},
        {"AEAD_FinishEncrypt null tag", [=] { return AEAD_FinishEncrypt(encrypting(kGcm), nullptr, 16); }, Is(-BAD_PARAM_ERROR)},
        {"AEAD_FinishEncrypt tag of 15", [=] { return AEAD_FinishEncrypt(encrypting(kGcm), o, 15); }, Is(-SHORT_BUF_ERROR)},
        {"AEAD_FinishEncrypt tag INT32_MIN", [=] { return AEAD_FinishEncrypt(encrypting(kGcm), o, kMin); },
         Is(-BAD_PARAM_ERROR)},
        {"AEAD_FinishEncrypt while decrypting", [=] { return AEAD_FinishEncrypt(decrypting(kCcp), o, 16); }, Is(-MISUSE_ERROR)},
        {"AEAD_FinishEncrypt handle 0", [=] { return AEAD_FinishEncrypt(0, o, 16); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_FinishDecrypt forged", [=] { return AEAD_FinishDecrypt(decrypting(kGcm)); }, Is(-AUTH_FAIL_ERROR)},
        {"AEAD_FinishDecrypt while encrypting", [=] { return AEAD_FinishDecrypt(encrypting(kGcm)); }, Is(-MISUSE_ERROR)},
        {"AEAD_FinishDecrypt handle 0", [] { return AEAD_FinishDecrypt(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_Destroy handle 0", [] { return AEAD_Destroy(0); }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_Destroy twice", [=] {
             int32_t h = keyed(kCcp);
             AEAD_Destroy(h);
             return AEAD_Destroy(h);
         }, Is(-INVALID_HANDLE_ERROR)},
        {"AEAD_Destroy GCM_ handle", [=] {
             AEAD_Destroy(keyed(kGcm));
             return AEAD_Destroy(GCM_InitKey(k, 16, 0));
         }, Is(-INVALID_HANDLE_ERROR)},

        {"GCM_Encrypt null key", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, nullptr, 16, n, 12, nullptr, 0, 0); },
         Is(-BAD_KEY_ERROR)},
        {"GCM_Encrypt key length 0", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 0, n, 12, nullptr, 0, 0); },
         Is(-BAD_KEY_ERROR)},
        {"GCM_Encrypt null IV", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 16, nullptr, 12, nullptr, 0, 0); },
         Is(-BAD_IV_ERROR)},
        {"GCM_Encrypt no out and no tag", [=] { return GCM_Encrypt(nullptr, 64, nullptr, 16, in, 16, k, 16, n, 12, nullptr, 0, 0); },
         Is(-BAD_PARAM_ERROR)},
        {"GCM_Encrypt null input with a length", [=] {
             return GCM_Encrypt(o, 64, o + 64, 16, nullptr, 16, k, 16, n, 12, nullptr, 0, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_Encrypt tag of 3", [=] { return GCM_Encrypt(o, 64, o + 64, 3, in, 16, k, 16, n, 12, nullptr, 0, 0); },
         Is(-SHORT_BUF_ERROR)},
        {"GCM_Encrypt key of 20", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 20, n, 12, nullptr, 0, 0); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"GCM_Encrypt short out", [=] { return GCM_Encrypt(o, 15, o + 64, 16, in, 16, k, 24, n, 12, nullptr, 0, 0); },
         Is(-SHORT_BUF_ERROR)},
        {"GCM_Encrypt input without out", [=] { return GCM_Encrypt(nullptr, 0, o + 64, 16, in, 16, k, 24, n, 12, nullptr, 0, 0); },
         Is(-NULL_ERROR)},
        {"GCM_Encrypt negative input length", [=] {
             return GCM_Encrypt(o, 64, o + 64, 16, in, -16, k, 32, n, 12, nullptr, 0, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_Encrypt negative AAD length", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 32, n, 12, in, kMin, 0); },
         Is(-BAD_PARAM_ERROR)},
        {"GCM_Encrypt negative IV length", [=] { return GCM_Encrypt(o, 64, o + 64, 16, in, 16, k, 32, n, -12, nullptr, 0, 0); },
         Is(-BAD_IV_ERROR)},
        {"GCM_Encrypt tag INT32_MAX", [=] { return GCM_Encrypt(o, 64, o + 64, kMax, in, 16, k, 16, n, 1, nullptr, 0, kMin); },
         Is(0)},
        {"GCM_Decrypt null key", [=] { return GCM_Decrypt(o, 64, in, 16, nullptr, 16, n, 12, nullptr, 0, in, 16, 0); },
         Is(-BAD_KEY_ERROR)},
        {"GCM_Decrypt null IV", [=] { return GCM_Decrypt(o, 64, in, 16, k, 16, nullptr, 12, nullptr, 0, in, 16, 0); },
         Is(-BAD_IV_ERROR)},
        {"GCM_Decrypt short out, even absent", [=] { return GCM_Decrypt(nullptr, 15, in, 16, k, 16, n, 12, nullptr, 0, in, 16, 0); },
         Is(-SHORT_BUF_ERROR)},
        {"GCM_Decrypt null input with a length", [=] {
             return GCM_Decrypt(o, 64, nullptr, 16, k, 16, n, 12, nullptr, 0, in, 16, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_Decrypt key of 8", [=] { return GCM_Decrypt(o, 64, in, 16, k, 8, n, 12, nullptr, 0, in, 16, 0); },
         Is(-BAD_KEY_LEN_ERROR)},
        {"GCM_Decrypt forged", [=] { return GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 16, 0); },
         Is(-AUTH_FAIL_ERROR)},
        {"GCM_Decrypt tag of 0 compares nothing", [=] { return GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, 0, 0); },
         Is(0)},
        {"GCM_Decrypt null tag with a length", [=] {
             return GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, nullptr, 16, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_Decrypt negative tag length", [=] { return GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, nullptr, 0, in, -1, 0); },
         Is(-AUTH_FAIL_ERROR)},
        {"GCM_Decrypt negative input length", [=] { return GCM_Decrypt(o, 64, in, kMin, k, 16, n, 12, nullptr, 0, in, 16, 0); },
         Is(-BAD_PARAM_ERROR)},
        {"GCM_Decrypt negative AAD length", [=] { return GCM_Decrypt(o, 64, in, 16, k, 16, n, 12, in, -3, in, 16, 0); },
         Is(-BAD_PARAM_ERROR)},
        {"GCM_InitKey null key", [] {
             GCM_InitKey(nullptr, 16, 0);
             return API_ErrorCode();
         }, Is(BAD_KEY_ERROR)},
        {"GCM_InitKey key length INT32_MIN", [=] {
             GCM_InitKey(k, kMin, 0);
             return API_ErrorCode();
         }, Is(BAD_KEY_LEN_ERROR)},
        {"GCM_InitKey", [=] { return GCM_InitKey(k, 24, kMax); }, AHandle()},
        {"GCM_NextEncrypt handle 0", [=] { return GCM_NextEncrypt(0, o, 64, o + 64, 16, in, 16, n, 12, nullptr, 0); },
         Is(INVALID_HANDLE_ERROR)},
        {"GCM_NextEncrypt null IV", [=] {
             return GCM_NextEncrypt(GCM_InitKey(k, 16, 0), o, 64, o + 64, 16, in, 16, nullptr, 12, nullptr, 0);
         }, Is(-BAD_IV_ERROR)},
        {"GCM_NextEncrypt negative input length", [=] {
             return GCM_NextEncrypt(GCM_InitKey(k, 16, 0), o, 64, o + 64, 16, in, -1, n, 12, nullptr, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_NextEncrypt input without out", [=] {
             return GCM_NextEncrypt(GCM_InitKey(k, 16, 0), nullptr, 0, o + 64, 16, in, 5, n, 12, nullptr, 0);
         }, Is(-NULL_ERROR)},
        {"GCM_NextEncrypt ended key", [=] {
             int32_t h = GCM_InitKey(k, 16, 0);
             GCM_FinishKey(h);
             return GCM_NextEncrypt(h, o, 64, o + 64, 16, in, 16, n, 12, nullptr, 0);
         }, Is(INVALID_HANDLE_ERROR)},
        {"GCM_NextEncrypt handle of another thread", [=] {
             int32_t own = GCM_InitKey(k, 16, 0);
             int32_t other = FromOtherThread([k] { return GCM_InitKey(k, 16, 0); });
             return other == own ? INVALID_HANDLE_ERROR : GCM_NextEncrypt(other, o, 64, o + 64, 16, in, 16, n, 12, nullptr, 0);
         }, Is(INVALID_HANDLE_ERROR)},
        {"GCM_NextDecrypt handle 0", [=] { return GCM_NextDecrypt(0, o, 64, in, 16, n, 12, nullptr, 0, in, 16); },
         Is(INVALID_HANDLE_ERROR)},
        {"GCM_NextDecrypt null out", [=] {
             return GCM_NextDecrypt(GCM_InitKey(k, 16, 0), nullptr, 64, in, 16, n, 12, nullptr, 0, in, 16);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_NextDecrypt forged", [=] {
             return GCM_NextDecrypt(GCM_InitKey(k, 32, 0), o, 64, in, 16, n, 12, in, 7, in, 16);
         }, Is(-AUTH_FAIL_ERROR)},
        {"GCM_NextDecrypt negative AAD length", [=] {
             return GCM_NextDecrypt(GCM_InitKey(k, 32, 0), o, 64, in, 16, n, 12, in, kMin, in, 16);
         }, Is(-BAD_PARAM_ERROR)},
        {"GCM_NextDecrypt AEAD handle", [=] {
             GCM_FinishKey(GCM_InitKey(k, 32, 0));
             return GCM_NextDecrypt(keyed(kGcm), o, 64, in, 16, n, 12, nullptr, 0, in, 16);
         }, Is(INVALID_HANDLE_ERROR)},
        {"GCM_FinishKey handle 0", [] { return GCM_FinishKey(0); }, Is(INVALID_HANDLE_ERROR)},
        {"GCM_FinishKey twice", [=] {
             int32_t h = GCM_InitKey(k, 16, 0);
             GCM_FinishKey(h);
             return GCM_FinishKey(h);
         }, Is(INVALID_HANDLE_ERROR)},
    };
}

}  // namespace sweep
