// Hex and Base64 conversion, UTF-8 and path names, and PAD_.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "test_support.h"

// A short output takes whole pairs or groups only.
TEST(Cnv, EncodeCutsToWholeUnits) {
    const struct { decltype(&CNV_HexStrFromBytes) encode; const char* in; int32_t room; const char* text; } cases[] = {
        {CNV_HexStrFromBytes, "\xDE\xAD\xBE\xEF", 15, "DEADBEEF"}, {CNV_HexStrFromBytes, "\xDE\xAD\xBE\xEF", 3, "DE"},
        {CNV_B64StrFromBytes, "ABCD", 31, "QUJDRA=="}, {CNV_B64StrFromBytes, "AB", 31, "QUI="},
        {CNV_B64StrFromBytes, "ABCD", 5, "QUJD"}};
    for (const auto& c : cases) {
        char out[32];
        std::memset(out, 'x', sizeof out);
        EXPECT_EQ(c.encode(out, c.room, Bytes(c.in), int32_t(std::strlen(c.in))), int32_t(std::strlen(c.text)));
        EXPECT_STREQ(out, c.text);
    }
}

TEST(CnvHex, DecodeSkipsSeparatorsAndRefusesLetters) {
    struct Case { const char* text; int32_t result; const char* bytes; } cases[] = {
        {"ABC", 1, "ab"}, {"DE:AD BE-EF", 4, "deadbeef"}, {"a b", 1, "ab"}, {"xyz", -INVALID_DATA_ERROR, ""},
        {"\x80" "00", -INVALID_DATA_ERROR, ""}, {"\t01\r\n02", 2, "0102"}};
    for (const Case& c : cases) {
        uint8_t out[16];
        EXPECT_EQ(CNV_BytesFromHexStr(out, 16, c.text), c.result) << c.text;
        if (c.result > 0) {
            EXPECT_EQ(ToHex(out, size_t(c.result)), c.bytes) << c.text;
            EXPECT_EQ(CNV_BytesFromHexStr(nullptr, 0, c.text), c.result) << c.text;  // exact query
        }
    }
}

TEST(CnvBase64, DecodeIsLooseAndEndsAtPadding) {
    struct Case { const char* text; int32_t result; const char* bytes; } cases[] = {
        {"QUI", 2, "4142"}, {"QQ", 1, "41"}, {"QUI=", 2, "4142"}, {"QQ==QUJD", 1, "41"}, {"QU JD\n", 3, "414243"}};
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
    EXPECT_EQ(CNV_HexFilter(out, "A\0B-C", 5), 3);
    EXPECT_STREQ(out, "ABC");
    EXPECT_EQ(CNV_B64Filter(out, "Q U=\n+/g!", 9), 6);
    EXPECT_STREQ(out, "QU=+/g");
}

namespace {
using Wide = std::vector<uint16_t>;

Wide WideOf(const std::string& latin1) {
    Wide w(latin1.begin(), latin1.end());
    for (auto& u : w) u &= 0xFF;
    w.push_back(0);
    return w;
}

// Pads or unpads the hex bytes; the result as "N:hex" or the negative code.
std::string Pad(decltype(&PAD_BytesBlock) fn, const std::string& hex, int32_t block, int32_t options) {
    auto in = FromHex(hex);
    const int32_t length = int32_t(in.size());
    in.push_back(0);  // a real pointer also for no bytes
    uint8_t out[64];
    const int32_t n = fn(out, 64, in.data(), length, block, options);
    return n < 0 ? std::to_string(n) : std::to_string(n) + ":" + ToHex(out, size_t(n));
}

struct Case { std::string input; int32_t block, options; std::string expected; };
}  // namespace

TEST(CnvUtf8, EncodesMeasuresAndRefuses) {
    // Each edge of the one-, two- and three-byte forms and of the surrogates.
    struct Case { Wide text; int32_t result; const char* utf8; } cases[] = {
        {{0x7F, 0}, 1, "7f"}, {{0x80, 0}, 2, "c280"}, {{0x7FF, 0}, 2, "dfbf"}, {{0x800, 0}, 3, "e0a080"},
        {{0xD7FF, 0}, 3, "ed9fbf"}, {{0xE000, 0}, 3, "ee8080"}, {{0xFFFF, 0}, 3, "efbfbf"},
        {{'x', 0xE9, 0x20AC, 0}, 6, "78c3a9e282ac"}, {{0xD800, 0}, -ENCODING_ERROR, ""},
        {{0xDFFF, 0}, -ENCODING_ERROR, ""}, {{'a', 0xD83D, 0xDE00, 0}, -ENCODING_ERROR, ""},  // pairs are not joined
        {{0}, 0, ""}};
    ASSERT_EQ(WIPE_Data(nullptr, 1), NULL_ERROR);  // a latch these calls must leave alone
    for (const Case& c : cases) {
        SCOPED_TRACE(c.utf8);
        char out[16];
        EXPECT_EQ(CNV_Utf8FromWide(nullptr, 0, c.text.data()), c.result);
        std::memset(out, 'Z', sizeof out);
        // An exact fit: the length counts the bytes without the NUL.
        EXPECT_EQ(CNV_Utf8FromWide(out, c.result > 0 ? c.result : 15, c.text.data()), c.result);
        if (c.result >= 0) EXPECT_EQ(ToHex(reinterpret_cast<uint8_t*>(out), std::strlen(out)), c.utf8);
        if (c.result > 1) {  // a length of 0 would be a query
            std::memset(out, 'Z', sizeof out);
            EXPECT_EQ(CNV_Utf8FromWide(out, c.result - 1, c.text.data()), -SHORT_BUF_ERROR);
            EXPECT_EQ(out[0], 'Z') << "a short output is not written";
        }
    }
    char out[4] = "ZZZ";
    EXPECT_EQ(CNV_Utf8FromWide(out, -1, WideOf("abc").data()), 3);  // a negative length asks too
    EXPECT_STREQ(out, "ZZZ");
    EXPECT_EQ(API_ErrorCode(), NULL_ERROR);
}

TEST(CnvShortPath, ExistingPathsComeBackInUtf8) {
    const TempDir tmp;
    const std::string dir = tmp.path, plain = tmp.Write("file.txt", "x"), accented = dir + "/caf\xE9";
    const std::string accentedUtf8 = tmp.Write("caf\xC3\xA9", "x");

    ASSERT_EQ(WIPE_Data(nullptr, 1), NULL_ERROR);
    for (const auto& [latin1, utf8] : {std::pair{plain, plain}, std::pair{accented, accentedUtf8}, std::pair{dir, dir}}) {
        SCOPED_TRACE(utf8);
        Wide wide = WideOf(latin1);
        int32_t n = int32_t(utf8.size());
        // The query counts the NUL; the real call does not, yet needs that much room.
        EXPECT_EQ(CNV_ShortPathName(nullptr, 0, wide.data()), n + 1);
        std::vector<char> out(size_t(n) + 2, 'Z');
        EXPECT_EQ(CNV_ShortPathName(out.data(), n, wide.data()), -SHORT_BUF_ERROR);
        EXPECT_EQ(out[0], 'Z');
        EXPECT_EQ(CNV_ShortPathName(out.data(), n + 1, wide.data()), n);
        EXPECT_EQ(std::string(out.data()), utf8);
    }
    // A file used as a directory, and a name too long.
    for (auto [path, expected] :
         {std::pair{WideOf(plain + "/x"), -1}, {WideOf(dir + "/" + std::string(5000, 'n')), -MISC_ERROR}}) {
        char out[8] = "ZZZ";
        EXPECT_EQ(CNV_ShortPathName(out, 7, path.data()), expected);
        EXPECT_EQ(CNV_ShortPathName(nullptr, 0, path.data()), expected);
    }
    EXPECT_EQ(API_ErrorCode(), NULL_ERROR);
}

TEST(Pad, BytesBlock) {
    const Case cases[] = {
        {"0001020304050607", 8, 0, "16:00010203040506070808080808080808"}, {"", 8, OPT_PAD_PKCS5, "8:0808080808080808"},
        {"1122334455", 8, OPT_PAD_NONE, "8:1122334455030303"}, {"1122334455", 8, OPT_PAD_W3C, "8:1122334455030303"},
        {"1122334455", 8, OPT_PAD_ONEANDZEROES, "8:1122334455800000"},
        {"1122334455", 8, OPT_PAD_ANSIX923, "8:1122334455000003"},
        {"11", 16, 0x60000, "16:110f0f0f0f0f0f0f0f0f0f0f0f0f0f0f"}};
    for (const auto& c : cases) EXPECT_EQ(Pad(PAD_BytesBlock, c.input, c.block, c.options), c.expected) << c.input;
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
        {"0808080808080808", 8, 0, "0:"}, {"1122334455030303", 8, OPT_PAD_NONE, "5:1122334455"},
        {"1122334455667703", 8, OPT_PAD_W3C, "5:1122334455"}, {"1122334455667703", 8, OPT_PAD_PKCS5, "-15"},
        {"1122334455000003", 8, OPT_PAD_ANSIX923, "5:1122334455"}, {"1122334455660003", 8, OPT_PAD_ANSIX923, "-15"},
        {"1180000000000000", 8, OPT_PAD_ONEANDZEROES, "1:11"}, {"1122334455667700", 8, OPT_PAD_ONEANDZEROES, "-15"},
        {"1122334455667780", 8, OPT_PAD_ONEANDZEROES, "7:11223344556677"},
        {"1180110000000000", 8, OPT_PAD_ONEANDZEROES, "-15"}, {"1122334455667700", 8, OPT_PAD_PKCS5, "-15"},
        {"1122334455667709", 8, OPT_PAD_W3C, "-15"},
        {"aabbccddeeff00112233445566778899" "10101010101010101010101010101010", 16, 0, "16:aabbccddeeff00112233445566778899"},
    };
    for (const auto& c : cases) EXPECT_EQ(Pad(PAD_UnpadBytes, c.input, c.block, c.options), c.expected) << c.input;
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
    EXPECT_EQ(PAD_UnpadHex(out, 79, "0808080808080808", 8, 0), 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(PAD_UnpadHex(out, 79, "ab07070707070703", 8, 0), -DECRYPT_ERROR);
    EXPECT_EQ(API_ErrorCode(), DECRYPT_ERROR);
}
