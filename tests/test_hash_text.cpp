// HASH_ text, bit and file calls: output rules, the option checks, and text
// mode (CR LF as LF, 0x1A as the end).
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>

#include "test_support.h"

namespace {
std::string TempFile(const std::string& name, const std::string& content) {
    std::string path = ::testing::TempDir() + "verimond_digest_" + name;
    std::ofstream(path, std::ios::binary).write(content.data(), std::streamsize(content.size()));
    return path;
}

std::string DigestOf(const std::string& message, int32_t options) {
    uint8_t out[64];
    return ToHex(out, size_t(HASH_Bytes(out, 64, Bytes(message), Len(message), options)));
}

std::string FileDigest(const std::string& path, int32_t options) {
    uint8_t out[64];
    int32_t n = HASH_File(out, 64, path.c_str(), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}

const std::string kAbc256 = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
const std::string kEmpty256 = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
const uint8_t kAbc[] = {'a', 'b', 'c', 0};
}  // namespace

TEST(HashHex, OutputRules) {
    struct Case {
        int32_t outputLength, bytesResult, bitsResult;  // digits written or needed
        size_t bytesDigits, bitsDigits;
    };
    // The byte call compares the length unsigned (a negative one writes the
    // whole digest); the bit call tests it signed (0 or less asks the size).
    const Case cases[] = {{64, 64, 64, 64, 64}, {100, 64, 64, 64, 64}, {40, 40, 40, 40, 40}, {41, 40, 40, 40, 40},
                          {1, 0, 0, 0, 0},      {0, 64, 64, 99, 99},   {-1, 64, 64, 64, 99}};
    for (const Case& c : cases) {
        char out[130];
        std::strcpy(out, "untouched");
        EXPECT_EQ(HASH_HexFromBytes(out, c.outputLength, kAbc, 3, OPT_HASH_SHA256), c.bytesResult) << c.outputLength;
        EXPECT_EQ(out, c.bytesDigits == 99 ? "untouched" : kAbc256.substr(0, c.bytesDigits)) << c.outputLength;
        std::strcpy(out, "untouched");
        EXPECT_EQ(HASH_HexFromBits(out, c.outputLength, kAbc, 24, OPT_HASH_SHA256), c.bitsResult) << c.outputLength;
        EXPECT_EQ(out, c.bitsDigits == 99 ? "untouched" : kAbc256.substr(0, c.bitsDigits)) << c.outputLength;
    }
    // The double digest is honoured by the byte call and ignored by the bit call.
    char out[129];
    ASSERT_EQ(HASH_HexFromBytes(out, 128, kAbc, 3, OPT_HASH_MD5 | OPT_HASH_DOUBLE), 32);
    uint8_t once[16];
    HASH_Bytes(once, 16, kAbc, 3, OPT_HASH_MD5);
    EXPECT_EQ(out, DigestOf(std::string(reinterpret_cast<char*>(once), 16), OPT_HASH_MD5));
    ASSERT_EQ(HASH_HexFromBits(out, 128, kAbc, 24, OPT_HASH_SHA256 | OPT_HASH_DOUBLE), 64);
    EXPECT_EQ(out, kAbc256);
}

TEST(HashHex, ScreeningOrder) {
    char out[129];
    // A null message fails before the digest choice.
    EXPECT_EQ(HASH_HexFromBits(out, 128, nullptr, 8, OPT_HASH_MD5), -BAD_PARAM_ERROR);
    for (int32_t nibble : {1, 2, 7, 8, 9, 14, 15}) {
        EXPECT_EQ(HASH_HexFromBits(out, 128, kAbc, 24, nibble), -BAD_FLAG_ERROR) << nibble;
        EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
    }
    EXPECT_EQ(HASH_HexFromBits(out, 128, kAbc, 24, OPT_HASH_SHA1), 40);
    EXPECT_EQ(API_ErrorCode(), 0);
}

TEST(HashHex, HexMessages) {
    struct Case {
        const char* hex;
        int32_t result;
        std::string digest;
    };
    const Case cases[] = {
        {"616263", 64, kAbc256},
        {"", 64, kEmpty256},
        {"ABCDEF", 64, DigestOf("\xab\xcd\xef", OPT_HASH_SHA256)},
        {"616", -INVALID_DATA_ERROR, ""},
        {"61 62", -INVALID_DATA_ERROR, ""},  // five characters: odd before anything else
    };
    for (const Case& c : cases) {
        char out[129] = "";
        EXPECT_EQ(HASH_HexFromHex(out, 128, c.hex, OPT_HASH_SHA256), c.result) << c.hex;
        EXPECT_EQ(out, c.digest) << c.hex;
    }
    char out[129];
    EXPECT_EQ(HASH_HexFromHex(out, 9, "616263", OPT_HASH_SHA256), 8);
    EXPECT_STREQ(out, "ba7816bf");
}

// Sizes are compared with the reference elsewhere; here every digest choice.
TEST(HashFile, EveryOptionMatchesTheByteDigest) {
    std::string content;
    for (int i = 0; i < 5000; ++i) content += char(i * 7 + (i >> 8));
    const std::string path = TempFile("binary", content);
    for (int32_t option : {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 3 | OPT_HASH_DOUBLE, 11 | OPT_HASH_DOUBLE})
        EXPECT_EQ(FileDigest(path, option), DigestOf(content, option)) << "option " << option;
}

TEST(HashFile, TextModeTranslation) {
    const std::string xs(1023, 'x');
    const struct {
        const char* name;
        std::string raw, text;  // the file, and what text mode reads
    } cases[] = {
        {"crlf", "a\r\nb\r\n", "a\nb\n"},
        {"lone_cr", "a\rb\r", "a\rb\r"},
        {"cr_cr_lf", "\r\r\n", "\r\n"},
        {"eof_char", std::string("abc\x1a" "def\r\n", 9), "abc"},
        {"cr_then_eof_char", std::string("ab\r\x1a" "cd", 6), "ab\r"},
        {"eof_char_first", std::string("\x1a" "abc", 4), ""},
        {"crlf_across_reads", xs + "\r\n" + "yz", xs + "\n" + "yz"},
        {"cr_at_read_end", xs + "\r" + "yz", xs + "\r" + "yz"},
    };
    for (const auto& c : cases) {
        std::string path = TempFile(c.name, c.raw);
        EXPECT_EQ(FileDigest(path, OPT_HASH_SHA256 | OPT_HASH_TEXT_MODE), DigestOf(c.text, OPT_HASH_SHA256)) << c.name;
        EXPECT_EQ(FileDigest(path, OPT_HASH_SHA256), DigestOf(c.raw, OPT_HASH_SHA256)) << c.name;
    }
}

TEST(HashFile, OpenBeforeOptionAndCut) {
    std::string path = TempFile("abc", "abc");
    std::string missing = ::testing::TempDir() + "verimond_digest_no_such_file";
    const struct {
        const char* file;
        int32_t option, result;
    } cases[] = {
        {missing.c_str(), 9, -OPEN_ERROR},  // the file is opened first
        {path.c_str(), 14, -BAD_FLAG_ERROR},
        {path.c_str(), OPT_HASH_ASCON_HASH, -BAD_FLAG_ERROR},  // no Ascon on files
        {path.c_str(), OPT_HASH_SHA256, 32},
    };
    uint8_t out[64];
    for (const auto& c : cases) {
        EXPECT_EQ(HASH_File(out, 64, c.file, c.option), c.result) << c.option;
        EXPECT_EQ(API_ErrorCode(), c.result < 0 ? -c.result : 0) << c.option;
    }
    EXPECT_EQ(HASH_File(out, 5, path.c_str(), OPT_HASH_SHA256), 5);
    EXPECT_EQ(ToHex(out, 5), "ba7816bf8f");
    EXPECT_EQ(HASH_File(nullptr, 5, path.c_str(), OPT_HASH_SHA256), 32);
    EXPECT_EQ(HASH_File(out, -1, path.c_str(), OPT_HASH_SHA256), 32);
    char hex[129];
    EXPECT_EQ(HASH_HexFromFile(hex, 11, path.c_str(), OPT_HASH_SHA256), 10);
    EXPECT_STREQ(hex, "ba7816bf8f");
    // A directory opens but cannot be read: the read error ends the input.
    EXPECT_EQ(FileDigest(::testing::TempDir(), OPT_HASH_SHA256), kEmpty256);
}
