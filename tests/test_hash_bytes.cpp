// HASH_Bytes and HASH_Length: digest selection, cut, double digest, option quirks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {
std::string Digest(const std::string& message, int32_t options) {
    uint8_t out[64];
    int32_t n = HASH_Bytes(out, 64, Bytes(message), Len(message), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}
const std::string kTwoBlock = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
}  // namespace

TEST(HashBytes, PaddingLimits) {
    // 55 bytes pad within one block, 56 need a second one.
    EXPECT_EQ(Digest(std::string(55, 'a'), OPT_HASH_SHA256),
              "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318");
    EXPECT_EQ(Digest(std::string(56, 'a'), OPT_HASH_SHA256),
              "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
    EXPECT_EQ(Digest(std::string(64, 'a'), OPT_HASH_SHA1), "0098ba824b5c16427bd7a1122a5a442a25ec644d");
}

TEST(HashBytes, CutQueryAndOptionBits) {
    uint8_t out[64];
    EXPECT_EQ(HASH_Bytes(nullptr, 0, Bytes("abc"), 3, OPT_HASH_SHA256), 32);
    EXPECT_EQ(HASH_Bytes(out, -5, Bytes("abc"), 3, OPT_HASH_SHA256), 32);
    EXPECT_EQ(HASH_Bytes(out, 5, Bytes("abc"), 3, OPT_HASH_SHA256), 5);
    EXPECT_EQ(ToHex(out, 5), "ba7816bf8f");
    EXPECT_EQ(HASH_Bytes(out, 64, nullptr, 0, OPT_HASH_SHA1), 20);
    EXPECT_EQ(HASH_Bytes(out, 64, nullptr, 1, OPT_HASH_SHA1), -BAD_PARAM_ERROR);
    EXPECT_EQ(HASH_Bytes(out, 64, Bytes("abc"), -1, OPT_HASH_SHA1), -BAD_PARAM_ERROR);
    EXPECT_EQ(Digest("abc", 0x13), Digest("abc", OPT_HASH_SHA256));
    EXPECT_EQ(Digest("abc", 0x10003), Digest("abc", OPT_HASH_SHA256));
    EXPECT_EQ(HASH_Bytes(out, 64, Bytes("abc"), 3, 9), -BAD_FLAG_ERROR);
    EXPECT_EQ(HASH_Bytes(out, 64, Bytes("abc"), 3, 14), -BAD_FLAG_ERROR);
    // An unknown low byte under nibble 15 is no failure: the capacity is the length.
    EXPECT_EQ(HASH_Bytes(out, 40, Bytes("abc"), 3, 0x1F), 40);
}

TEST(HashBytes, DoubleDigest) {
    uint8_t once[32];
    ASSERT_EQ(HASH_Bytes(once, 32, Bytes("abc"), 3, OPT_HASH_SHA256), 32);
    uint8_t twice[32];
    ASSERT_EQ(HASH_Bytes(twice, 32, once, 32, OPT_HASH_SHA256), 32);
    uint8_t doubled[32];
    ASSERT_EQ(HASH_Bytes(doubled, 32, Bytes("abc"), 3, OPT_HASH_SHA256 | OPT_HASH_DOUBLE), 32);
    EXPECT_EQ(ToHex(doubled, 32), ToHex(twice, 32));
}

TEST(HashLength, TableAndRefusals) {
    const int32_t expected[16] = {20, 16, 16, 32, 48, 64, 28, 20, 20, -17, 28, 32, 48, 64, -17, 15};
    for (int32_t nibble = 0; nibble < 15; ++nibble) {
        EXPECT_EQ(HASH_Length(nibble), expected[nibble]) << nibble;
        EXPECT_EQ(HASH_Length(nibble | 0x10), expected[nibble]) << nibble;
    }
    EXPECT_EQ(HASH_Length(0x1F), 0x1F);
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASH), 32);
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASHA), 32);
    EXPECT_EQ(HASH_Length(0x10003), -BAD_FLAG_ERROR);
    EXPECT_EQ(HASH_Length(-1), -BAD_FLAG_ERROR);
}

TEST(HashBytes, Sha384AndSha512) {
    const std::string longMsg =
        "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu";
    EXPECT_EQ(Digest("abc", OPT_HASH_SHA384),
              "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed8086072ba1e7cc2358baeca134c825a7");
    EXPECT_EQ(Digest(longMsg, OPT_HASH_SHA512),
              "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909");
    EXPECT_EQ(Digest(std::string(111, 'a'), OPT_HASH_SHA512).size(), 128u);
}
