// Hex and Base64 conversion: cut rules, queries and the loose decoders.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "test_support.h"

TEST(CnvHex, EncodeCutsToWholePairs) {
    const uint8_t in[4] = {0xDE, 0xAD, 0xBE, 0xEF};
    char out[16];
    EXPECT_EQ(CNV_HexStrFromBytes(nullptr, 0, in, 4), 8);
    EXPECT_EQ(CNV_HexStrFromBytes(out, 15, in, 4), 8);
    EXPECT_STREQ(out, "DEADBEEF");
    std::memset(out, 'x', sizeof out);
    EXPECT_EQ(CNV_HexStrFromBytes(out, 3, in, 4), 2);
    EXPECT_STREQ(out, "DE");
    EXPECT_EQ(CNV_HexStrFromBytes(nullptr, 0, nullptr, 4), -BAD_PARAM_ERROR);  // not a size
}

TEST(CnvHex, DecodeSkipsSeparatorsAndRefusesLetters) {
    struct Case {
        const char* text;
        int32_t result;
        const char* bytes;
    } cases[] = {
        {"ABC", 1, "ab"},           {"DE:AD BE-EF", 4, "deadbeef"}, {"AB:CD", 2, "abcd"},
        {"a b", 1, "ab"},           {"xyz", -INVALID_DATA_ERROR, ""}, {"\x80" "00", -INVALID_DATA_ERROR, ""},
        {"\t01\r\n02", 2, "0102"},
    };
    for (const Case& c : cases) {
        uint8_t out[16];
        EXPECT_EQ(CNV_BytesFromHexStr(out, 16, c.text), c.result) << c.text;
        if (c.result > 0) {
            EXPECT_EQ(ToHex(out, size_t(c.result)), c.bytes) << c.text;
            EXPECT_EQ(CNV_BytesFromHexStr(nullptr, 0, c.text), c.result) << c.text;  // exact query
        }
    }
}

TEST(CnvBase64, EncodeAndCut) {
    char out[32];
    EXPECT_EQ(CNV_B64StrFromBytes(nullptr, 0, Bytes("ABCD"), 4), 8);
    EXPECT_EQ(CNV_B64StrFromBytes(out, 31, Bytes("ABCD"), 4), 8);
    EXPECT_STREQ(out, "QUJDRA==");
    EXPECT_EQ(CNV_B64StrFromBytes(out, 31, Bytes("AB"), 2), 4);
    EXPECT_STREQ(out, "QUI=");
    EXPECT_EQ(CNV_B64StrFromBytes(out, 3, Bytes("A"), 1), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(CNV_B64StrFromBytes(out, 5, Bytes("ABCD"), 4), 4);
    EXPECT_STREQ(out, "QUJD");
}

TEST(CnvBase64, DecodeIsLooseAndEndsAtPadding) {
    struct Case {
        const char* text;
        int32_t result;
        const char* bytes;
    } cases[] = {
        {"QUJD", 3, "414243"}, {"QUI", 2, "4142"},   {"QQ", 1, "41"},   {"Q", 0, ""},
        {"QUI=", 2, "4142"},   {"QQ==QUJD", 1, "41"}, {"QU JD\n", 3, "414243"},
    };
    for (const Case& c : cases) {
        uint8_t out[16];
        EXPECT_EQ(CNV_BytesFromB64Str(out, 16, c.text), c.result) << c.text;
        if (c.result >= 0) {
            EXPECT_EQ(ToHex(out, size_t(c.result)), c.bytes) << c.text;
            EXPECT_EQ(CNV_BytesFromB64Str(nullptr, 0, c.text), c.result) << c.text;
        }
    }
    uint8_t out[4];
    EXPECT_EQ(CNV_BytesFromB64Str(out, 4, "QUJDRA"), 4);  // a group needs room for three bytes
}

TEST(CnvFilter, KeepsAlphabetOverExactLength) {
    char out[16];
    const char in[] = {'A', '\0', 'B', '-', 'C'};
    EXPECT_EQ(CNV_HexFilter(out, in, 5), 3);
    EXPECT_STREQ(out, "ABC");
    EXPECT_EQ(CNV_B64Filter(out, "Q U=\n+/g!", 9), 6);
    EXPECT_STREQ(out, "QU=+/g");
}

TEST(CnvRoundTrip, EveryLengthBothCodecs) {
    std::string data;
    for (int n = 0; n < 70; ++n) {
        uint8_t back[80];
        char hex[200];
        char b64[200];
        ASSERT_EQ(CNV_HexStrFromBytes(hex, 199, Bytes(data), n), 2 * n);
        ASSERT_EQ(CNV_BytesFromHexStr(back, 80, hex), n);
        EXPECT_EQ(std::memcmp(back, data.data(), size_t(n)), 0);
        int32_t b = CNV_B64StrFromBytes(b64, 199, Bytes(data), n);
        ASSERT_EQ(b, (n + 2) / 3 * 4);
        ASSERT_EQ(CNV_BytesFromB64Str(back, 80, b64), n);
        EXPECT_EQ(std::memcmp(back, data.data(), size_t(n)), 0);
        data.push_back(char(n * 37 + 11));
    }
}
