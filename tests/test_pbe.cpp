// PBE_ calls: RFC 6070 and RFC 7914 vectors, PBKDF2 over SHA-2 and small
// scrypt cases against reference outputs, the two result styles and the
// order of every check.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
// "\0" in the RFC 6070 file stands for one zero byte.
std::string Unescape(std::string s) {
    for (size_t at; (at = s.find("\\0")) != std::string::npos;) s.replace(at, 2, std::string(1, '\0'));
    return s;
}

std::string Upper(std::string s) {
    for (char& c : s) c = char(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string HexText(const std::string& raw) { return ToHex(Bytes(raw), raw.size()); }

bool SlowTestsWanted() { return std::getenv("VERIMOND_SLOW_TESTS") != nullptr; }

int32_t DigestOption(const std::string& section) {
    if (section == "PBKDF2-SHA224") return OPT_HASH_SHA224;
    if (section == "PBKDF2-SHA256") return OPT_HASH_SHA256;
    if (section == "PBKDF2-SHA384") return OPT_HASH_SHA384;
    return OPT_HASH_SHA512;
}
}  // namespace

TEST(PbeKdf2, Rfc6070) {
    auto records = ReadVectorFile("rfc/rfc6070_pbkdf2_hmac_sha1.txt");
    ASSERT_EQ(records.size(), 6u);
    for (const VectorRecord& r : records) {
        const long iterations = r.Int("ITERATIONS");
        if (iterations > 100000 && !SlowTestsWanted()) continue;  // 2^24 rounds: set VERIMOND_SLOW_TESTS
        const std::string password = Unescape(r.Get("PASSWORD")), salt = Unescape(r.Get("SALT"));
        std::vector<uint8_t> key(size_t(r.Int("LENGTH")));
        ASSERT_EQ(PBE_Kdf2(key.data(), int32_t(key.size()), Bytes(password), Len(password), Bytes(salt),
                           Len(salt), int32_t(iterations), OPT_HASH_SHA1),
                  0);
        EXPECT_EQ(ToHex(key), r.Get("DERIVED_KEY")) << r.line;
        if (password.find('\0') != std::string::npos) continue;
        std::string hex(2 * key.size() + 1, 'x');
        EXPECT_EQ(PBE_Kdf2Hex(hex.data(), int32_t(2 * key.size()), int32_t(key.size()), password.c_str(),
                              HexText(salt).c_str(), int32_t(iterations), OPT_HASH_SHA1),
                  0);
        EXPECT_EQ(hex.c_str(), Upper(r.Get("DERIVED_KEY"))) << "upper case, unlike the MAC_ hex";
    }
}

TEST(PbeKdf2, Sha2ReferenceOutputs) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        const std::string name = r.section.begin()->first;
        if (name.rfind("PBKDF2-", 0) != 0) continue;
        const std::vector<uint8_t> password = r.Bytes("PASSWORD"), salt = r.Bytes("SALT");
        std::vector<uint8_t> key(size_t(r.Int("LENGTH")));
        ASSERT_EQ(PBE_Kdf2(key.data(), int32_t(key.size()), password.data(), int32_t(password.size()), salt.data(),
                           int32_t(salt.size()), int32_t(r.Int("ITERATIONS")), DigestOption(name) | 0x30),
                  0);
        EXPECT_EQ(ToHex(key), r.Get("DERIVED_KEY")) << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 16);
}

TEST(PbeKdf2, ResultCodesArePositive) {
    uint8_t out[20];
    const uint8_t* p = Bytes("pw");
    const uint8_t* s = Bytes("salt");
    struct Case {
        uint8_t* key;
        int32_t keyLength;
        const uint8_t* password;
        int32_t passwordLength;
        const uint8_t* salt;
        int32_t saltLength, iterations, options, result;
    } cases[] = {
        {nullptr, 20, p, 2, s, 4, 1, 0, NULL_ERROR},
        {out, 20, nullptr, 2, s, 4, 1, 0, NULL_ERROR},
        {out, 20, p, 2, nullptr, 4, 1, 0, NULL_ERROR},
        {out, 0, nullptr, 0, s, 4, 1, 0, NULL_ERROR},  // pointers before lengths
        {out, 0, p, 2, s, 4, 1, 0, BAD_PARAM_ERROR},
        {out, 20, p, 0, s, 4, 1, 0, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 0, 1, 0, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 4, 0, 0, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 4, -1, 0, BAD_PARAM_ERROR},
        {out, -20, p, 2, s, 4, 1, 0, BAD_PARAM_ERROR},
        // Only SHA-1 and SHA-2; other digests are a bad parameter, not a flag.
        {out, 20, p, 2, s, 4, 1, OPT_HASH_MD5, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 4, 1, OPT_HASH_SHA3_256, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 4, 1, OPT_HASH_RMD160, BAD_PARAM_ERROR},
        {out, 20, p, 2, s, 4, 1, 0x13, 0},
    };
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 0xEE);
        EXPECT_EQ(PBE_Kdf2(c.key, c.keyLength, c.password, c.passwordLength, c.salt, c.saltLength, c.iterations,
                           c.options),
                  c.result)
            << "row " << (&c - cases);
        EXPECT_EQ(API_ErrorCode(), c.result);
        if (c.result != 0) EXPECT_EQ(out[0], 0xEE) << "nothing written on a screening failure";
    }
    // 0x13 acts as SHA-256; a one-byte key is the first byte of a whole block.
    uint8_t one, full[32];
    EXPECT_EQ(PBE_Kdf2(&one, 1, p, 2, s, 4, 3, OPT_HASH_SHA256), 0);
    EXPECT_EQ(PBE_Kdf2(full, 32, p, 2, s, 4, 3, 0x13), 0);
    EXPECT_EQ(one, full[0]);
}

TEST(PbeKdf2, HexForm) {
    char out[100];
    struct Case {
        int32_t hexLength, keyLength;
        const char* password;
        const char* saltHex;
        int32_t iterations, options, result;
    } cases[] = {
        {40, 20, nullptr, "00", 1, 0, NULL_ERROR},
        {40, 20, "pw", nullptr, 1, 0, NULL_ERROR},
        {0, 20, "pw", "00", 1, 0, BAD_PARAM_ERROR},
        {40, 0, "pw", "00", 1, 0, BAD_PARAM_ERROR},
        {40, 20, "pw", "00", 0, 0, BAD_PARAM_ERROR},
        // Never cut: a short buffer is an error.
        {39, 20, "pw", "00", 1, 0, SHORT_BUF_ERROR},
        // The salt: loose decoding that must use every digit.
        {40, 20, "pw", "abc", 1, 0, BAD_FORMAT_ERROR},
        {40, 20, "pw", "ab:cd", 1, 0, BAD_FORMAT_ERROR},
        {40, 20, "pw", "zz", 1, 0, BAD_FORMAT_ERROR},
        {40, 20, "pw", "ABcd", 1, 0, 0},
        // Empty password and salt are allowed here.
        {40, 20, "", "", 1, 0, 0},
        {40, 20, "pw", "00", 1, OPT_HASH_SHA3_512, BAD_PARAM_ERROR},
        {99, 20, "pw", "00", 1, 0, 0},
    };
    for (const Case& c : cases) {
        std::snprintf(out, sizeof out, "untouched");
        EXPECT_EQ(PBE_Kdf2Hex(out, c.hexLength, c.keyLength, c.password, c.saltHex, c.iterations, c.options), c.result)
            << "row " << (&c - cases);
        if (c.result != 0) EXPECT_STREQ(out, "untouched");
        if (c.result == 0) EXPECT_EQ(std::string(out).size(), 2 * size_t(c.keyLength));
    }
    // The hex form derives what the bytes form derives.
    uint8_t key[20];
    ASSERT_EQ(PBE_Kdf2(key, 20, Bytes("pw"), 2, Bytes("\xab\xcd"), 2, 5, OPT_HASH_SHA224), 0);
    ASSERT_EQ(PBE_Kdf2Hex(out, 40, 20, "pw", "abCD", 5, OPT_HASH_SHA224), 0);
    EXPECT_EQ(std::string(out), Upper(ToHex(key, 20)));
}

TEST(PbeScrypt, Rfc7914) {
    auto records = ReadVectorFile("rfc/rfc7914_scrypt.txt");
    ASSERT_EQ(records.size(), 4u);
    for (const VectorRecord& r : records) {
        const int32_t n = int32_t(r.Int("N"));
        if (n > (1 << 14) && !SlowTestsWanted()) continue;  // 1 GiB: set VERIMOND_SLOW_TESTS
        const std::string password = r.Get("PASSWORD"), salt = r.Get("SALT");
        std::vector<uint8_t> key(size_t(r.Int("LENGTH")));
        ASSERT_EQ(PBE_Scrypt(key.data(), int32_t(key.size()), Bytes(password), Len(password), Bytes(salt), Len(salt), n,
                             int32_t(r.Int("r")), int32_t(r.Int("p")), 0),
                  0);
        EXPECT_EQ(ToHex(key), r.Get("DERIVED_KEY")) << r.line;
        std::string hex(2 * key.size() + 1, 'x');
        ASSERT_EQ(PBE_ScryptHex(hex.data(), int32_t(2 * key.size()), int32_t(key.size()), password.c_str(),
                                HexText(salt).c_str(), n, int32_t(r.Int("r")), int32_t(r.Int("p")), 0),
                  0);
        EXPECT_EQ(hex.c_str(), Upper(r.Get("DERIVED_KEY")));
    }
}

TEST(PbeScrypt, ReferenceOutputs) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        if (!r.section.count("SCRYPT")) continue;
        const std::vector<uint8_t> password = r.Bytes("PASSWORD"), salt = r.Bytes("SALT");
        std::vector<uint8_t> key(size_t(r.Int("LENGTH")));
        ASSERT_EQ(PBE_Scrypt(key.data(), int32_t(key.size()), password.data(), int32_t(password.size()), salt.data(),
                             int32_t(salt.size()), int32_t(r.Int("N")), int32_t(r.Int("r")), int32_t(r.Int("p")), 0x7F),
                  0);
        EXPECT_EQ(ToHex(key), r.Get("DERIVED_KEY")) << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 4);
}

TEST(PbeScrypt, ResultCodesAreNegative) {
    uint8_t out[16];
    const uint8_t* p = Bytes("pw");
    const uint8_t* s = Bytes("salt");
    struct Case {
        uint8_t* key;
        int32_t keyLength;
        const uint8_t* password;
        int32_t passwordLength;
        const uint8_t* salt;
        int32_t saltLength, n, r, par, result;
    } cases[] = {
        {nullptr, 16, p, 2, s, 4, 16, 1, 1, -NULL_ERROR},
        {out, 16, nullptr, 2, s, 4, 16, 1, 1, -NULL_ERROR},
        {out, 16, p, 2, nullptr, 4, 16, 1, 1, -NULL_ERROR},
        {out, 0, nullptr, 2, s, 4, 16, 1, 1, -NULL_ERROR},
        {out, 0, p, 2, s, 4, 16, 1, 1, -BAD_PARAM_ERROR},
        {out, 16, p, 2, s, 4, 0, 1, 1, -BAD_PARAM_ERROR},
        {out, 16, p, 2, s, 4, 16, 0, 1, -BAD_PARAM_ERROR},
        {out, 16, p, 2, s, 4, 16, 1, 0, -BAD_PARAM_ERROR},
        {out, 0, p, 2, s, 4, 3, 0, 1, -BAD_PARAM_ERROR},  // zeros before ranges
        {out, -16, p, 2, s, 4, 16, 1, 1, -BAD_PARAM_ERROR},
        // Ranges, read unsigned.
        {out, 16, p, 2, s, 4, 1, 1, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 3, 1, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 24, 1, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, -16, 1, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 1024, 0x10000, 1, -OUT_OF_RANGE_ERROR},  // 1024 > 0x1FFFFFF / 0x10000
        {out, 16, p, 2, s, 4, 16, 0x2000000, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 16, -1, 1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 16, 8, 0x8000000, -OUT_OF_RANGE_ERROR},  // p >= 0x40000000 / r
        {out, 16, p, 2, s, 4, 16, 1, -1, -OUT_OF_RANGE_ERROR},
        {out, 16, p, 2, s, 4, 0x1000000, 2, 1, -OUT_OF_RANGE_ERROR},
        // Empty password and salt with or without pointers.
        {out, 16, nullptr, 0, nullptr, 0, 2, 1, 1, 0},
        {out, 16, p, 0, s, 0, 2, 1, 1, 0},
    };
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 0xEE);
        EXPECT_EQ(PBE_Scrypt(c.key, c.keyLength, c.password, c.passwordLength, c.salt, c.saltLength, c.n, c.r, c.par, 0),
                  c.result)
            << "row " << (&c - cases);
        EXPECT_EQ(API_ErrorCode(), -c.result);
        if (c.result != 0) EXPECT_EQ(out[0], 0xEE);
    }
    // Pointers with length 0 are the empty inputs.
    uint8_t a[16], b[16];
    ASSERT_EQ(PBE_Scrypt(a, 16, nullptr, 0, nullptr, 0, 4, 2, 1, 0), 0);
    ASSERT_EQ(PBE_Scrypt(b, 16, p, 0, s, 0, 4, 2, 1, 0), 0);
    EXPECT_EQ(ToHex(a, 16), ToHex(b, 16));
}

TEST(PbeScrypt, MemoryRefusalIsAResult) {
    // p x r x 128 bytes for B, 128 GiB here, beyond any address-space limit
    // this process runs under; the limit makes the refusal certain.
    rlimit saved;
    ASSERT_EQ(getrlimit(RLIMIT_AS, &saved), 0);
    rlimit tight = saved;
    tight.rlim_cur = rlim_t(16) << 30;
    if (saved.rlim_max != RLIM_INFINITY && saved.rlim_max < tight.rlim_cur) tight.rlim_cur = saved.rlim_max;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    uint8_t out[16];
    int32_t result = PBE_Scrypt(out, 16, Bytes("pw"), 2, Bytes("s"), 1, 2, 8, 0x8000000 - 1, 0);
    char hex[33];
    int32_t hexResult = PBE_ScryptHex(hex, 32, 16, "pw", "00", 2, 8, 0x8000000 - 1, 0);
    setrlimit(RLIMIT_AS, &saved);
    EXPECT_EQ(result, -MEMORY_ERROR);
    EXPECT_EQ(hexResult, -MEMORY_ERROR);
}

TEST(PbeScrypt, HexForm) {
    char out[100];
    struct Case {
        int32_t hexLength, keyLength;
        const char* password;
        const char* saltHex;
        int32_t n, r, p, result;
    } cases[] = {
        {32, 16, nullptr, "00", 16, 1, 1, -NULL_ERROR},
        {32, 16, "pw", nullptr, 16, 1, 1, -NULL_ERROR},
        {0, 16, "pw", "00", 16, 1, 1, -BAD_PARAM_ERROR},
        {32, 0, "pw", "00", 16, 1, 1, -BAD_PARAM_ERROR},
        {32, 16, "pw", "00", 0, 1, 1, -BAD_PARAM_ERROR},
        {31, 16, "pw", "00", 16, 1, 1, -SHORT_BUF_ERROR},
        {32, 16, "pw", "0", 16, 1, 1, -BAD_FORMAT_ERROR},
        {32, 16, "pw", "0 0", 16, 1, 1, -BAD_FORMAT_ERROR},
        {32, 16, "pw", "0g", 3, 1, 1, -BAD_FORMAT_ERROR},  // salt before ranges
        {32, 16, "pw", "00", 3, 1, 1, -OUT_OF_RANGE_ERROR},
        {32, 16, "", "", 16, 1, 1, 0},
        {33, 16, "pw", "00ff", 16, 1, 1, 0},
    };
    for (const Case& c : cases) {
        std::snprintf(out, sizeof out, "untouched");
        EXPECT_EQ(PBE_ScryptHex(out, c.hexLength, c.keyLength, c.password, c.saltHex, c.n, c.r, c.p, 0), c.result)
            << "row " << (&c - cases);
        if (c.result != 0) EXPECT_STREQ(out, "untouched");
    }
    uint8_t key[16];
    const uint8_t salt[2] = {0x00, 0xff};
    ASSERT_EQ(PBE_Scrypt(key, 16, Bytes("pw"), 2, salt, 2, 16, 1, 1, 0), 0);
    EXPECT_EQ(std::string(out), Upper(ToHex(key, 16)));
}
