// SHA1_, SHA2_ and MD5_: the eleven calls of each family against HASH_, the
// latch, the per-family stream and the loose hex keys of HmacHex.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "digest_family_support.h"
#include "test_support.h"

namespace {
std::string Reference(const std::string& message, int32_t option) {
    uint8_t out[64];
    int32_t n = HASH_Bytes(out, 64, Bytes(message), Len(message), option);
    return ToHex(out, size_t(n));
}

std::string TempFile(const std::string& name, const std::string& content) {
    std::string path = ::testing::TempDir() + "verimond_family_" + name;
    std::ofstream(path, std::ios::binary).write(content.data(), std::streamsize(content.size()));
    return path;
}

}  // namespace

TEST(DigestFamilies, OneShotForms) {
    const std::string msg = "The quick brown fox jumps over the lazy dog";
    for (const DigestFamily& f : kDigestFamilies) {
        const std::string expected = Reference(msg, f.option);
        char hex[65];
        uint8_t digest[32];
        EXPECT_EQ(f.stringHexHash(hex, msg.c_str()), 0) << f.prefix;
        EXPECT_EQ(hex, expected) << f.prefix;
        // Length 0 with any data pointer is the empty message; a null text
        // output drops the digest.
        EXPECT_EQ(f.bytesHash(digest, Bytes("ignored"), 0), 0);
        EXPECT_EQ(ToHex(digest, f.digits / 2), Reference("", f.option)) << f.prefix;
        std::strcpy(hex, "untouched");
        EXPECT_EQ(f.bytesHexHash(hex, Bytes("abc"), -1), BAD_PARAM_ERROR);
        EXPECT_STREQ(hex, "untouched");
        EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
        EXPECT_EQ(f.stringHexHash(hex, nullptr), BAD_PARAM_ERROR);
    }
}

TEST(DigestFamilies, Streams) {
    const std::string msg(200, 'q');
    for (const DigestFamily& f : kDigestFamilies) {
        // Init has no frame: it leaves the latch as it stands.
        EXPECT_EQ(f.bytesHash(nullptr, Bytes("abc"), 3), BAD_PARAM_ERROR);
        int32_t h = f.init();
        EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR) << f.prefix;
        for (size_t i = 0; i < msg.size(); i += 40) ASSERT_EQ(f.addBytes(h, Bytes(msg) + i, 40), 0);
        EXPECT_EQ(f.addString(h, "tail"), 0);
        // Failures leave the stream open.
        EXPECT_EQ(f.addString(h, nullptr), BAD_PARAM_ERROR);
        EXPECT_EQ(f.hexDigest(nullptr, h + 2), INVALID_HANDLE_ERROR);
        char hex[65];
        EXPECT_EQ(f.hexDigest(hex, h), 0);
        EXPECT_EQ(hex, Reference(msg + "tail", f.option)) << f.prefix;
        EXPECT_EQ(f.addBytes(h, Bytes("x"), 1), INVALID_HANDLE_ERROR) << "closed after the digest";
        // A second Init ends the first; Reset ends without restarting; a
        // digest into no text closes the stream too.
        int32_t first = f.init(), second = f.init();
        EXPECT_EQ(f.addBytes(first, Bytes("x"), 1), INVALID_HANDLE_ERROR);
        EXPECT_EQ(f.reset(second), 0);
        EXPECT_EQ(f.hexDigest(hex, second), INVALID_HANDLE_ERROR);
        h = f.init();
        EXPECT_EQ(f.hexDigest(nullptr, h), 0);
        EXPECT_EQ(f.addString(h, "x"), INVALID_HANDLE_ERROR);
    }
    // The families' streams are separate from one another.
    int32_t a = SHA1_Init(), b = SHA2_Init(), c = MD5_Init();
    char hex[65];
    EXPECT_EQ(SHA1_HexDigest(hex, a) + SHA2_HexDigest(hex, b) + MD5_HexDigest(hex, c), 0);
    EXPECT_STREQ(hex, "d41d8cd98f00b204e9800998ecf8427e");
}

TEST(DigestFamilies, Files) {
    const std::string raw = "one\r\ntwo\r\nthree\x1a" "after";
    const std::string text = "one\ntwo\nthree";
    std::string path = TempFile("text", raw);
    for (const DigestFamily& f : kDigestFamilies) {
        struct Case {
            const char* mode;
            const std::string& content;
        };
        const Case cases[] = {{"t", text}, {"T", text}, {"text", text}, {"b", raw}, {"", raw}, {"rb", raw}, {"x", raw}};
        for (const Case& c : cases) {
            char hex[65] = "";
            EXPECT_EQ(f.fileHexHash(hex, path.c_str(), c.mode), 0) << f.prefix << c.mode;
            EXPECT_EQ(std::string(hex), Reference(c.content, f.option)) << f.prefix << " mode '" << c.mode << "'";
        }
        EXPECT_EQ(f.fileHexHash(nullptr, path.c_str(), "b"), 0);
    }
}

TEST(DigestFamilies, HmacArgumentsAndLooseHex) {
    for (const DigestFamily& f : kDigestFamilies) {
        char expected[65], empty[65], hex[65];
        ASSERT_EQ(f.hmac(expected, Bytes("data"), 4, Bytes("\x0b\xad"), 2), 0);
        ASSERT_EQ(f.hmac(empty, Bytes("data"), 4, Bytes(""), 0), 0);
        // Non-digits are skipped, also inside a pair, an odd last digit is
        // dropped, and a text without digits is the empty key: nothing fails.
        const struct {
            const char* keyHex;
            const char* code;
        } cases[] = {{"0bad", expected}, {"0B:AD", expected}, {"0 b a d", expected}, {"0bad7", expected},
                     {"zz0b-ad", expected}, {"zz : ~ xyz", empty}, {"", empty}};
        for (const auto& c : cases) {
            ASSERT_EQ(f.hmacHex(hex, "64 61 74 61", c.keyHex), 0);
            EXPECT_STREQ(hex, c.code) << f.prefix << " key '" << c.keyHex << "'";
        }
        EXPECT_EQ(f.hmacHex(nullptr, "00", "00"), 0);
    }
}
