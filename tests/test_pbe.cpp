// PBE_ calls: the two result styles, the order of checks, upper-case hex and
// the memory refusal of scrypt.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cctype>
#include <string>
#include <vector>

#include "test_support.h"

namespace {
using Vec = std::vector<uint8_t>;

std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The key through the bytes form, checked against the hex form.
std::string Kdf2(const std::string& password, const Vec& salt, int32_t iterations, size_t length, int32_t options) {
    Vec key(length);
    EXPECT_EQ(PBE_Kdf2(key.data(), int32_t(length), Bytes(password), Len(password), salt.data(), int32_t(salt.size()),
                       iterations, options), 0);
    std::string hex(2 * length + 1, 'x');
    EXPECT_EQ(PBE_Kdf2Hex(hex.data(), int32_t(2 * length), int32_t(length), password.c_str(), ToHex(salt).c_str(),
                          iterations, options), 0);
    EXPECT_EQ(hex.c_str(), Upper(ToHex(key))) << "upper case, unlike the MAC_ hex";
    return ToHex(key);
}
}  // namespace

TEST(Pbe, Kdf2ResultCodesArePositive) {
    uint8_t out[20];
    const uint8_t *p = Bytes("pw"), *s = Bytes("salt");
    struct Case { uint8_t* key; int32_t keyLen; const uint8_t* pw; int32_t pwLen; const uint8_t* salt; int32_t saltLen, iterations, options, result; };
    const Case cases[] = {
        {out, 0, nullptr, 0, s, 4, 1, 0, 14},  // pointers before lengths
        {out, 20, p, 0, s, 4, 1, 0, 6}, {out, 20, p, 2, s, 0, 1, 0, 6},
        // SHA-1 and SHA-2 only; others are a bad parameter, not a bad flag.
        {out, 20, p, 2, s, 4, 1, 2, 6}, {out, 20, p, 2, s, 4, 1, 7, 6}, {out, 20, p, 2, s, 4, 1, 0x13, 0}};
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 0xEE);
        EXPECT_EQ(PBE_Kdf2(c.key, c.keyLen, c.pw, c.pwLen, c.salt, c.saltLen, c.iterations, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), c.result);
        if (c.result != 0) EXPECT_EQ(out[0], 0xEE) << "nothing written on a screening failure";
    }
    // 0x13 acts as SHA-256; a one-byte key is the first byte of a whole block.
    EXPECT_EQ(Kdf2("p", {'s'}, 3, 1, OPT_HASH_SHA256), Kdf2("p", {'s'}, 3, 32, 0x13).substr(0, 2));
}

TEST(Pbe, ScryptResultCodesAreNegative) {
    uint8_t out[16];
    const uint8_t *p = Bytes("pw"), *s = Bytes("salt");
    struct Case { uint8_t* key; int32_t keyLen; const uint8_t* pw; int32_t pwLen; const uint8_t* salt; int32_t saltLen, n, r, par, result; };
    const Case cases[] = {
        {out, 0, nullptr, 2, s, 4, 16, 1, 1, -14},  // pointers before lengths
        {out, 16, p, 2, s, 4, 16, 0, 1, -6}, {out, 16, p, 2, s, 4, 16, 1, 0, -6}, {out, 0, p, 2, s, 4, 3, 0, 1, -6},
        // Ranges, read unsigned.
        {out, 16, p, 2, s, 4, 24, 1, 1, -11}, {out, 16, p, 2, s, 4, -16, 1, 1, -11},
        {out, 16, p, 2, s, 4, 16, 0x2000000, 1, -11}, {out, 16, p, 2, s, 4, 16, 8, 0x8000000, -11},
        {out, 16, p, 2, s, 4, 0x1000000, 2, 1, -11}, {out, 16, p, 0, s, 0, 2, 1, 1, 0}};
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
        {32, 16, "pw", "abc", 16, 7, -7}, {32, 16, "pw", "zz", 16, 7, -7},
        {32, 16, "pw", "0g", 3, 7, -7}, {32, 16, "pw", "00", 3, 0, -11},
        {32, 16, "", "", 16, 0, 0}, {33, 16, "pw", "ABcd", 16, 0, 0}};
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
