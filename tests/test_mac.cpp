// MAC_, XOF_, PRF_ and PBE_.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"

namespace {
using Vec = std::vector<uint8_t>;

std::string MacHex(const Vec& msg, const Vec& key, int32_t options, int32_t outputLength = 64) {
    uint8_t out[64];
    const uint8_t* k = key.empty() ? out : key.data();  // an empty key still needs a pointer
    int32_t n = MAC_Bytes(out, outputLength, msg.data(), int32_t(msg.size()), k, int32_t(key.size()), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}

std::string HexFromHex(const std::string& msgHex, const std::string& keyHex, int32_t options) {
    char out[300] = {};
    MAC_HexFromHex(out, 256, msgHex.c_str(), keyHex.c_str(), options);
    return out;
}

const Vec kPolyKey = FromHex("85d6be7857556d337f4452fe42d506a80103808afb0db2fd4abff6af4149f51b");
const int32_t kStreaming[] = {0, 3, 4, 5, 6, 10, 11, 12, 13};
}  // namespace

TEST(MacBytes, OptionTable) {
    // With no output buffer: the code length, or the failure.
    struct Case { int32_t options, keyLength, result; } cases[] = {
        {1, 16, 16}, {2, 16, -17}, {8, 16, -17}, {15, 16, -17}, {0x13, 16, 32}, {0x10003, 16, 32}, {0xF0, 0, 20},
        {0x200, 32, 16}, {0x1200, 32, 16}, {0x201, 16, 32}, {0x202, 0, 64}, {0x203, 16, -17}, {0x100, 24, 8},
        {0x100, 16, -33}, {0x102, 24, 16}, {0x103, 32, 16}, {0x1FF, 16, -17}, {0x301, 16, -17}, {0x10101, 16, 16}};
    const Vec key(32, 0x42);
    for (const Case& c : cases) {
        EXPECT_EQ(MAC_Bytes(nullptr, 0, Bytes("abc"), 3, key.data(), c.keyLength, c.options), c.result) << std::hex << c.options;
        const bool hmacNibble = c.result == -17 && (c.options & 0x300) == 0;  // -17 taken for a length
        EXPECT_EQ(MAC_HexFromBytes(nullptr, 0, Bytes("abc"), 3, key.data(), c.keyLength, c.options),
                  hmacNibble ? -34 : c.result < 0 ? c.result : 2 * c.result) << std::hex << c.options;
    }
}

TEST(MacBytes, CutByCapacityExceptKmac) {
    const Vec msg = {1, 2, 3}, key = {9, 9, 9};
    const std::string full = MacHex(msg, key, OPT_HMAC_SHA256);
    for (int32_t cap : {1, 16, 31, 32}) EXPECT_EQ(MacHex(msg, key, OPT_HMAC_SHA256, cap), full.substr(0, 2 * size_t(cap)));
    EXPECT_EQ(MacHex(msg, kPolyKey, OPT_MAC_POLY1305, 8), MacHex(msg, kPolyKey, OPT_MAC_POLY1305).substr(0, 16));
    uint8_t out[64] = {0xEE};
    EXPECT_EQ(MAC_Bytes(out, 0, msg.data(), 3, key.data(), 3, OPT_HMAC_SHA512), 64);  // a query writes nothing
    EXPECT_EQ(out[0], 0xEE);
    EXPECT_EQ(MAC_Bytes(out, 63, msg.data(), 3, key.data(), 3, OPT_KMAC_256), -SHORT_BUF_ERROR);
    char text[200];
    EXPECT_EQ(MAC_HexFromBytes(text, 128, msg.data(), 3, key.data(), 3, OPT_KMAC_256), 128);
    EXPECT_EQ(API_ErrorCode(), 128);
}

TEST(MacBytes, ArgumentChecksComeFirst) {
    uint8_t out[64];
    const uint8_t *m = Bytes("abc"), *k = Bytes("key");
    struct Case { uint8_t* out; int32_t outLen; const uint8_t* msg; int32_t msgLen; const uint8_t* key; int32_t keyLen, options, result; };
    const Case cases[] = {  // before the option and the key length are looked at
        {out, 64, nullptr, 1, k, 3, 2, -6}, {out, 64, m, 3, nullptr, 0, 0x200, -6}, {out, 64, m, 3, nullptr, 0, 0x104, -6},
        {nullptr, -1, m, 3, k, 3, 0x201, -6}};
    for (const Case& c : cases) {
        EXPECT_EQ(MAC_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.key, c.keyLen, c.options), c.result) << &c - cases;
        if (c.outLen >= 0)  // the hex form does not range-check outputLength
            EXPECT_EQ(MAC_HexFromBytes(nullptr, 0, c.msg, c.msgLen, c.key, c.keyLen, c.options), c.result < 0 ? c.result : 2 * c.result);
    }
}

TEST(MacHex, CutsToWholeBytesAndKeepsTheBadNibbleQuirk) {
    const Vec msg = {1, 2, 3}, key = {4, 5};
    const std::string full = MacHex(msg, key, OPT_HMAC_SHA1);
    struct Case { int32_t options, outputLength, result; std::string text; } cases[] = {
        {0, 40, 40, full}, {0, 5, 4, full.substr(0, 4)}, {0, 1, 0, ""}, {0, 100, 40, full},
        {0, -1, 40, full},  // not range-checked: room for the whole code
        // The -17 of a bad nibble is taken for a length: a "success" with
        // outputLength / 2 bytes of the zeroed scratch, or -34.
        {9, 10, 10, "0000000000"}, {9, 11, 10, "0000000000"}, {2, 150, 150, std::string(150, '0')}, {9, -1, -34, "untouched"}};
    for (const Case& c : cases) {
        char out[200] = "untouched";
        EXPECT_EQ(MAC_HexFromBytes(out, c.outputLength, msg.data(), 3, key.data(), 2, c.options), c.result) << &c - cases;
        EXPECT_EQ(std::string(out), c.text) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result));
    }
    EXPECT_EQ(HexFromHex("010203", "0405", 9), std::string(256, '0'));
    EXPECT_EQ(MAC_HexFromHex(nullptr, 0, "010203", "0405", 9), -34);
}

TEST(MacHex, HexInputChecks) {
    const std::string poly = ToHex(kPolyKey);
    struct Case { const char* msgHex; const char* keyHex; int32_t options, result; } cases[] = {
        {"", "00 11", 0, -7}, {"abc", "0011", 0, -7}, {"", "0011", 0, 40},
        {"", "00112233445566778899aabbccddeeff00", 0x101, -33}, {"", "0011", 0x104, -17},
        // KMAC takes the empty key; other numbers beside 0x200 fail before decoding.
        {"", "", 0x201, 64}, {"xy", "", 0x201, -7}, {"xy", "q", 0x203, -17},
        // Poly1305: key length, then format, then the message.
        {"", "", 0x200, -33}, {"", "0g", 0x200, -7}, {"0", poly.c_str(), 0x200, -7}, {"", poly.c_str(), 0x200, 32}};
    for (const Case& c : cases) {
        char out[300];
        EXPECT_EQ(MAC_HexFromHex(out, 256, c.msgHex, c.keyHex, c.options), c.result) << &c - cases;
    }
    EXPECT_EQ(HexFromHex("ABCDEF", "0011", 3), MacHex({0xab, 0xcd, 0xef}, {0, 0x11}, 3));
    EXPECT_EQ(HexFromHex("", "", OPT_KMAC_256), MacHex({}, {}, OPT_KMAC_256));
}

// Split streams are compared with the reference elsewhere.
TEST(MacStream, InitTakesOnlyStreamingCodes) {
    const uint8_t key[5] = {1, 2, 3, 4, 5};
    for (int32_t option : kStreaming) {
        int32_t h = MAC_Init(key, 5, option | 0x7000);  // bits above twelve are ignored
        EXPECT_EQ(MAC_CodeLength(h), MAC_Bytes(nullptr, 0, key, 5, key, 5, option)) << option;
        EXPECT_EQ(MAC_Reset(h), 0);
    }
    for (int32_t option : {1, 2, 7, 8, 9, 14, 15, 0x13, 0x100, 0x101, 0x200, 0x201, 0x202}) {
        EXPECT_EQ(MAC_Init(key, 5, option), 0) << std::hex << option;
        EXPECT_EQ(API_ErrorCode(), NOT_SUPPORTED_ERROR);
    }
}

TEST(MacStream, StateRules) {
    const uint8_t key[3] = {1, 2, 3};
    uint8_t out[64];
    int32_t h = MAC_Init(key, 3, OPT_HMAC_SHA256);
    // Argument failures leave the stream open; data is checked after the handle.
    EXPECT_EQ(MAC_AddBytes(h, key, -1), -BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_AddBytes(h + 2, nullptr, 0), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_Final(nullptr, 32, 0), -BAD_PARAM_ERROR) << "the buffer is checked before the handle";
    EXPECT_EQ(MAC_CodeLength(h), 32);
    // A bad key leaves the open stream alive; a bad option closes it.
    EXPECT_EQ(MAC_Init(nullptr, 3, OPT_HMAC_SHA1), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_Init(key, 0, OPT_HMAC_SHA1), 0);
    EXPECT_EQ(MAC_CodeLength(h), 32);
    EXPECT_EQ(MAC_Init(key, 3, OPT_HMAC_MD5), 0);
    EXPECT_EQ(MAC_CodeLength(h), -INVALID_HANDLE_ERROR);
    // Final cuts and closes.
    h = MAC_Init(key, 3, OPT_HMAC_SHA512);
    EXPECT_EQ(MAC_AddBytes(h, Bytes("abc"), 3), 0);
    EXPECT_EQ(MAC_Final(out, 10, h), 10);
    EXPECT_EQ(ToHex(out, 10), MacHex({'a', 'b', 'c'}, {1, 2, 3}, OPT_HMAC_SHA512).substr(0, 20));
    EXPECT_EQ(MAC_Final(out, 64, h), -INVALID_HANDLE_ERROR);
}

TEST(XofPrf, XofChecksInOrder) {
    uint8_t out[8];
    const uint8_t* m = Bytes("abc");
    struct Case { uint8_t* out; int32_t outLen; const uint8_t* msg; int32_t msgLen, options, result; } cases[] = {
        {out, 8, nullptr, 1, 0x999, -6}, {out, 8, nullptr, 0, 0x204, 8}, {out, 0, m, 3, 0x20A, 0},
        // MGF1 refuses an empty output before it looks at the digest.
        {out, 0, m, 3, 0x211, -6}, {out, 8, m, 3, 0x217, -17}, {out, 8, m, 3, 0x21F, -17},
        {out, 8, nullptr, 0, 0x210, 8}, {out, 8, m, 3, 0x201, -17}, {out, 8, m, 3, 0x20C, -17},
        {out, 8, m, 3, 0x003, -17}, {out, 8, m, 3, 0x1203, 8}};
    for (const Case& c : cases) {
        EXPECT_EQ(XOF_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result)) << "every result is latched";
    }
}

TEST(XofPrf, PrfChecksInOrder) {
    uint8_t out[8];
    const uint8_t *m = Bytes("abc"), *k = Bytes("key");
    struct Case { uint8_t* out; int32_t outLen; const uint8_t* msg; int32_t msgLen; const uint8_t* key; int32_t keyLen; const char* custom; int32_t options, result; };
    const Case cases[] = {
        // Unlike XOF_Bytes, a null message is refused with length 0 too.
        {out, 8, nullptr, 0, k, 3, "", 0x203, -6}, {out, 8, nullptr, 0, k, 3, "", 0x200, -6},
        {out, 8, m, 3, k, 3, "", 0x200, -17}, {out, 8, m, 3, k, 3, "", 0x210, -17}, {out, 0, m, 3, k, 3, "", 0x204, 0},
        {out, 8, m, 0, nullptr, 0, "", 0x201, 8}, {out, 8, m, 3, nullptr, 0, nullptr, 0x203, 8}};
    for (const Case& c : cases) {
        EXPECT_EQ(PRF_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.key, c.keyLen, c.custom, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result));
    }
}

TEST(Pbe, Kdf2ResultCodesArePositive) {
    uint8_t out[20];
    const uint8_t *p = Bytes("pw"), *s = Bytes("salt");
    struct Case { uint8_t* key; int32_t keyLen; const uint8_t* pw; int32_t pwLen; const uint8_t* salt; int32_t saltLen, iterations, options, result; };
    const Case cases[] = {
        {out, 0, nullptr, 0, s, 4, 1, 0, 14},  // pointers before lengths
        {out, 20, p, 0, s, 4, 1, 0, 6}, {out, 20, p, 2, s, 0, 1, 0, 6},
        // SHA-1 and SHA-2 only; others are a bad parameter, not a bad flag.
        {out, 20, p, 2, s, 4, 1, 2, 6}, {out, 20, p, 2, s, 4, 1, 0x13, 0}};
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 0xEE);
        EXPECT_EQ(PBE_Kdf2(c.key, c.keyLen, c.pw, c.pwLen, c.salt, c.saltLen, c.iterations, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), c.result);
        if (c.result != 0) EXPECT_EQ(out[0], 0xEE) << "nothing written on a screening failure";
    }
    // 0x13 acts as SHA-256; a one-byte key is the first byte of a whole block.
    uint8_t full[32];
    ASSERT_EQ(PBE_Kdf2(out, 1, p, 1, s, 1, 3, OPT_HASH_SHA256), 0);
    ASSERT_EQ(PBE_Kdf2(full, 32, p, 1, s, 1, 3, 0x13), 0);
    EXPECT_EQ(out[0], full[0]);
}

TEST(Pbe, ScryptResultCodesAreNegative) {
    uint8_t out[16];
    const uint8_t *p = Bytes("pw"), *s = Bytes("salt");
    struct Case { uint8_t* key; int32_t keyLen; const uint8_t* pw; int32_t pwLen; const uint8_t* salt; int32_t saltLen, n, r, par, result; };
    const Case cases[] = {
        {out, 0, nullptr, 2, s, 4, 16, 1, 1, -14},  // pointers before lengths
        {out, 16, p, 2, s, 4, 16, 0, 1, -6}, {out, 16, p, 2, s, 4, 16, 1, 0, -6}, {out, 0, p, 2, s, 4, 3, 0, 1, -6},
        // Ranges, read unsigned.
        {out, 16, p, 2, s, 4, -16, 1, 1, -11}, {out, 16, p, 2, s, 4, 16, 0x2000000, 1, -11},
        {out, 16, p, 2, s, 4, 16, 8, 0x8000000, -11}, {out, 16, p, 0, s, 0, 2, 1, 1, 0}};
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 0xEE);
        EXPECT_EQ(PBE_Scrypt(c.key, c.keyLen, c.pw, c.pwLen, c.salt, c.saltLen, c.n, c.r, c.par, 0), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), -c.result);
        if (c.result != 0) EXPECT_EQ(out[0], 0xEE);
    }
}

TEST(Pbe, HexForms) {
    // PBKDF2 (positive codes, options SHA-1) and scrypt (negative, N 16, r 1, p 1) side by side.
    struct Case { int32_t hexLen, keyLen; const char* pw; const char* saltHex; int32_t count, kdf2, scrypt; } cases[] = {
        {32, 0, "pw", "00", 16, 6, -6}, {32, 16, "pw", "00", 0, 6, -6},
        // The salt: loose decoding that must use every digit.
        {32, 16, "pw", "zz", 16, 7, -7}, {32, 16, "pw", "0g", 3, 7, -7}, {33, 16, "pw", "ABcd", 16, 0, 0}};
    for (const Case& c : cases) {
        char a[40] = "untouched", b[40] = "untouched";
        EXPECT_EQ(PBE_Kdf2Hex(a, c.hexLen, c.keyLen, c.pw, c.saltHex, c.count, 0), c.kdf2) << &c - cases;
        EXPECT_EQ(PBE_ScryptHex(b, c.hexLen, c.keyLen, c.pw, c.saltHex, c.count, 1, 1, 0), c.scrypt) << &c - cases;
        EXPECT_EQ(std::string(a).size(), c.kdf2 == 0 ? 2 * size_t(c.keyLen) : 9u);
        EXPECT_EQ(std::string(b).size(), c.scrypt == 0 ? 2 * size_t(c.keyLen) : 9u);
    }
}

TEST(Pbe, ScryptMemoryRefusalIsAResult) {
    // B takes p x r x 128 bytes, 128 GiB here; an address-space limit makes
    // the refusal certain.
    rlimit saved, tight;
    ASSERT_EQ(getrlimit(RLIMIT_AS, &saved), 0);
    tight = saved;
    tight.rlim_cur = rlim_t(16) << 30;
    if (saved.rlim_max != RLIM_INFINITY && saved.rlim_max < tight.rlim_cur) tight.rlim_cur = saved.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    uint8_t out[16];
    char hex[33];
    int32_t bytes = PBE_Scrypt(out, 16, Bytes("pw"), 2, Bytes("s"), 1, 2, 8, 0x8000000 - 1, 0);
    int32_t text = PBE_ScryptHex(hex, 32, 16, "pw", "00", 2, 8, 0x8000000 - 1, 0);
    setrlimit(RLIMIT_AS, &saved);
    EXPECT_EQ(bytes, -MEMORY_ERROR);
    EXPECT_EQ(text, -MEMORY_ERROR);
}
