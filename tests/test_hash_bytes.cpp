// HASH_Bytes and HASH_Length: cut, double digest, option quirks.
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
}  // namespace

TEST(HashBytes, CutQueryAndOptionBits) {
    uint8_t out[64];
    EXPECT_EQ(HASH_Bytes(nullptr, 0, Bytes("abc"), 3, OPT_HASH_SHA256), 32);
    EXPECT_EQ(HASH_Bytes(out, -5, Bytes("abc"), 3, OPT_HASH_SHA256), 32);
    EXPECT_EQ(HASH_Bytes(out, 5, Bytes("abc"), 3, OPT_HASH_SHA256), 5);
    EXPECT_EQ(ToHex(out, 5), "ba7816bf8f");
    EXPECT_EQ(HASH_Bytes(out, 64, nullptr, 0, OPT_HASH_SHA1), 20);
    EXPECT_EQ(Digest("abc", 0x13), Digest("abc", OPT_HASH_SHA256));
    EXPECT_EQ(Digest("abc", 0x10003), Digest("abc", OPT_HASH_SHA256));
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
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASH), 32);
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASHA), 32);
}

