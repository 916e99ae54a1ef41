// PAD_: padding and its removal in bytes and in hex, one table per call.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

// Pads the hex bytes; the result as "N:hex" or the negative code.
std::string Pad(const std::string& hex, int32_t block, int32_t options) {
    const auto in = FromHex(hex);
    uint8_t out[64];
    const int32_t n = PAD_BytesBlock(out, 64, in.data(), int32_t(in.size()), block, options);
    return n < 0 ? std::to_string(n) : std::to_string(n) + ":" + ToHex(out, size_t(n));
}

std::string Unpad(const std::string& hex, int32_t block, int32_t options) {
    auto in = FromHex(hex);
    const int32_t length = int32_t(in.size());
    in.push_back(0);  // a real pointer also for no bytes
    uint8_t out[64];
    const int32_t n = PAD_UnpadBytes(out, 64, in.data(), length, block, options);
    return n < 0 ? std::to_string(n) : std::to_string(n) + ":" + ToHex(out, size_t(n));
}

struct Case {
    std::string input;
    int32_t block;
    int32_t options;
    std::string expected;
};

}  // namespace

TEST(Pad, BytesBlock) {
    const Case cases[] = {
        {"0001020304050607", 8, 0, "16:00010203040506070808080808080808"},
        {"", 8, OPT_PAD_PKCS5, "8:0808080808080808"},
        {"1122334455", 8, OPT_PAD_NONE, "8:1122334455030303"},
        {"1122334455", 8, OPT_PAD_ONEANDZEROES, "8:1122334455800000"},
        {"1122334455", 8, OPT_PAD_ANSIX923, "8:1122334455000003"},
        {"1122334455", 8, OPT_PAD_W3C, "8:1122334455030303"},
        {"11", 16, 0x60000, "16:110f0f0f0f0f0f0f0f0f0f0f0f0f0f0f"},
    };
    for (const auto& c : cases) EXPECT_EQ(Pad(c.input, c.block, c.options), c.expected) << c.input;
    uint8_t buf[32] = {1, 2, 3};
    EXPECT_EQ(PAD_BytesBlock(nullptr, 0, nullptr, 21, 16, 0), 32);  // the query reads no input
    EXPECT_EQ(PAD_BytesBlock(buf, 7, buf, 3, 8, 0), -SHORT_BUF_ERROR);
    EXPECT_EQ(API_ErrorCode(), SHORT_BUF_ERROR);
    // Input and output may overlap.
    EXPECT_EQ(PAD_BytesBlock(buf + 1, 31, buf, 3, 8, 0), 8);
    EXPECT_EQ(ToHex(buf, 9), "010102030505050505");
    EXPECT_EQ(API_ErrorCode(), 0);
}

TEST(Pad, UnpadBytes) {
    const Case cases[] = {
        {"0808080808080808", 8, 0, "0:"},
        {"1122334455667703", 8, OPT_PAD_W3C, "5:1122334455"},
        {"1122334455667703", 8, OPT_PAD_PKCS5, "-15"},
        {"1122334455030303", 8, OPT_PAD_NONE, "5:1122334455"},
        {"1122334455000003", 8, OPT_PAD_ANSIX923, "5:1122334455"},
        {"1122334455660003", 8, OPT_PAD_ANSIX923, "-15"},
        {"1180000000000000", 8, OPT_PAD_ONEANDZEROES, "1:11"},
        {"1122334455667780", 8, OPT_PAD_ONEANDZEROES, "7:11223344556677"},
        {"1122334455667700", 8, OPT_PAD_ONEANDZEROES, "-15"},
        {"0000000000000000", 8, OPT_PAD_ONEANDZEROES, "-15"},
        {"1180110000000000", 8, OPT_PAD_ONEANDZEROES, "-15"},
        {"1122334455667700", 8, OPT_PAD_PKCS5, "-15"},
        {"1122334455667700", 8, OPT_PAD_ANSIX923, "-15"},
        {"1122334455667700", 8, OPT_PAD_W3C, "-15"},
        {"1122334455667709", 8, OPT_PAD_W3C, "-15"},
        {"aabbccddeeff00112233445566778899" "10101010101010101010101010101010", 16, 0, "16:aabbccddeeff00112233445566778899"},
    };
    for (const auto& c : cases) EXPECT_EQ(Unpad(c.input, c.block, c.options), c.expected) << c.input;
    uint8_t buf[16] = {};
    EXPECT_EQ(PAD_UnpadBytes(nullptr, 16, buf, 8, 7, 0), -BAD_BLK_LEN_ERROR);  // before the null output
    const auto in = FromHex("1122334455030303");
    EXPECT_EQ(PAD_UnpadBytes(buf, 4, in.data(), 8, 8, 0), -SHORT_BUF_ERROR);
}

TEST(Pad, HexForms) {
    char out[80];
    EXPECT_EQ(PAD_HexBlock(out, 79, "ab", 8, 0), 16);
    EXPECT_STREQ(out, "ab07070707070707");
    EXPECT_EQ(PAD_HexBlock(out, 79, "AbCd", 8, OPT_PAD_ONEANDZEROES), 16);
    EXPECT_STREQ(out, "AbCd800000000000");
    EXPECT_EQ(PAD_HexBlock(out, 79, nullptr, 9, 0), -BAD_BLK_LEN_ERROR);

    EXPECT_EQ(PAD_UnpadHex(out, 79, "ab07070707070707", 8, 0), 2);
    EXPECT_STREQ(out, "ab");
    EXPECT_EQ(PAD_UnpadHex(out, 0, "ab07070707070707", 8, 0), 2);
    EXPECT_EQ(PAD_UnpadHex(out, 79, "0808080808080808", 8, 0), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(PAD_UnpadHex(out, 79, "ab07070707070703", 8, 0), -DECRYPT_ERROR);
    EXPECT_EQ(API_ErrorCode(), DECRYPT_ERROR);
}
