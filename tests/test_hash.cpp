// HASH_, SHA3_ and the SHA1_/SHA2_/MD5_ families.
#include <gtest/gtest.h>

#include <cstring>

#include "digest_family_support.h"
#include "test_support.h"

namespace {
std::string Digest(const std::string& message, int32_t options) {
    uint8_t out[64];
    int32_t n = HASH_Bytes(out, 64, Bytes(message), Len(message), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}

const TempDir& Dir() {
    static TempDir dir;
    return dir;
}

std::string FileDigest(const std::string& path, int32_t options) {
    uint8_t out[64];
    int32_t n = HASH_File(out, 64, path.c_str(), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}

const std::string kAbc256 = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
const uint8_t kAbc[] = {'a', 'b', 'c', 0};
}  // namespace

// Lengths by nibble, and which digests stream: MD5, MD2, RIPEMD-160 and the
// combined one digest one-shot only.
TEST(HashLength, TableAndStreamingDigests) {
    const int32_t expected[16] = {20, 16, 16, 32, 48, 64, 28, 20, 20, -17, 28, 32, 48, 64, -17, 15};
    const bool streams[16] = {1, 0, 0, 1, 1, 1, 1, 0, 0, 0, 1, 1, 1, 1, 0, 0};
    for (int32_t nibble = 0; nibble < 16; ++nibble) {
        SCOPED_TRACE(nibble);
        if (nibble < 15) EXPECT_EQ(HASH_Length(nibble), expected[nibble]);
        if (nibble < 15) EXPECT_EQ(HASH_Length(nibble | 0x10), expected[nibble]);
        const int32_t h = HASH_Init(nibble | 0x20);  // bits above the nibble are ignored
        EXPECT_EQ(API_ErrorCode(), streams[nibble] ? 0 : NOT_SUPPORTED_ERROR);
        EXPECT_EQ(streams[nibble] ? HASH_DigestLength(h) : h, streams[nibble] ? expected[nibble] : 0);
    }
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASH), 32);
    EXPECT_EQ(HASH_Length(OPT_HASH_ASCON_HASHA), 32);
}

TEST(HashStream, StateRules) {
    uint8_t out[64];
    int32_t h = HASH_Init(OPT_HASH_SHA256);
    // Argument failures leave the stream open.
    EXPECT_EQ(HASH_AddBytes(h, Bytes("abc"), -1), -BAD_PARAM_ERROR);
    EXPECT_EQ(HASH_AddBytes(h, Bytes("abc"), 3), 0);
    EXPECT_EQ(HASH_DigestLength(h), 32);
    EXPECT_EQ(API_ErrorCode(), 32);  // every result of this call is latched
    // A short buffer keeps what fits; the rest of the digest is gone.
    EXPECT_EQ(HASH_Final(out, 10, h), 10);
    EXPECT_EQ(API_ErrorCode(), 0);
    EXPECT_EQ(ToHex(out, 10), Digest("abc", OPT_HASH_SHA256).substr(0, 20));
    EXPECT_EQ(HASH_DigestLength(h), -INVALID_HANDLE_ERROR);
    // A second Init ends the first stream, also a failing one.
    int32_t first = HASH_Init(OPT_HASH_SHA1);
    int32_t second = HASH_Init(OPT_HASH_SHA512);
    EXPECT_EQ(HASH_AddBytes(first, Bytes("abc"), 3), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(HASH_Init(OPT_HASH_MD5), 0);
    EXPECT_EQ(HASH_DigestLength(second), -INVALID_HANDLE_ERROR);
}

TEST(Sha3Stream, StateRulesAndMixedStyles) {
    // A bad bit length fails without a latch (the failure before it is cleared).
    for (int32_t bad : {128, 0, -256, 1024}) {
        EXPECT_EQ(HASH_Bytes(nullptr, 0, nullptr, -1, 0), -BAD_PARAM_ERROR);
        EXPECT_EQ(SHA3_Init(bad), 0) << bad;
        EXPECT_EQ(API_ErrorCode(), 0) << bad;
    }
    int32_t h = SHA3_Init(384);
    EXPECT_EQ(SHA3_AddString(h, "ab") + SHA3_AddString(h, "") + SHA3_AddBytes(h, Bytes("c"), 1), 0);
    EXPECT_EQ(SHA3_LengthInBytes(h), 48);
    EXPECT_EQ(API_ErrorCode(), 48);
    EXPECT_EQ(SHA3_AddBytes(h, Bytes("abc"), -1), BAD_PARAM_ERROR);  // the stream stays open
    char hex[97];
    EXPECT_EQ(SHA3_HexDigest(hex, 96, h), 96);
    EXPECT_EQ(hex, Digest("abc", OPT_HASH_SHA3_384));
    // A short output is cut to whole bytes.
    h = SHA3_Init(256);
    EXPECT_EQ(SHA3_HexDigest(hex, 5, h), 4);
    EXPECT_EQ(hex, Digest("", OPT_HASH_SHA3_256).substr(0, 4));
    // A failed Init closes the open stream; the SHA3_ and HASH_ streams are apart.
    h = SHA3_Init(224);
    int32_t hashStream = HASH_Init(OPT_HASH_SHA3_224);
    EXPECT_EQ(SHA3_Init(100), 0);
    EXPECT_EQ(SHA3_AddBytes(h, Bytes("abc"), 3), INVALID_HANDLE_ERROR);
    EXPECT_EQ(HASH_DigestLength(hashStream), 28);
}

TEST(HashHex, OutputRules) {
    struct Case { int32_t outputLength, bytesResult, bitsResult; size_t bytesDigits, bitsDigits; };  // 99: untouched
    // The byte call compares the length unsigned (a negative one writes the
    // whole digest); the bit call tests it signed (0 or less asks the size).
    const Case cases[] = {{100, 64, 64, 64, 64}, {41, 40, 40, 40, 40}, {0, 64, 64, 99, 99}, {-1, 64, 64, 64, 99}};
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
    EXPECT_EQ(out, Digest("abc", OPT_HASH_MD5 | OPT_HASH_DOUBLE));
    ASSERT_EQ(HASH_HexFromBits(out, 128, kAbc, 24, OPT_HASH_SHA256 | OPT_HASH_DOUBLE), 64);
    EXPECT_EQ(out, kAbc256);
}

TEST(HashHex, HexMessages) {
    char out[129] = "";
    EXPECT_EQ(HASH_HexFromHex(out, 128, "ABCDEF", OPT_HASH_SHA256), 64);
    EXPECT_EQ(out, Digest("\xab\xcd\xef", OPT_HASH_SHA256));
    EXPECT_EQ(HASH_HexFromHex(out, 128, "61 62", OPT_HASH_SHA256), -INVALID_DATA_ERROR);  // odd before anything else
    EXPECT_EQ(HASH_HexFromHex(out, 9, "616263", OPT_HASH_SHA256), 8);
    EXPECT_STREQ(out, "ba7816bf");
    // A null message fails before the digest choice.
    EXPECT_EQ(HASH_HexFromBits(out, 128, nullptr, 8, OPT_HASH_MD5), -BAD_PARAM_ERROR);
}

TEST(HashFile, TextModeTranslation) {
    const std::string xs(1023, 'x');
    const struct { const char* name; std::string raw, text; } cases[] = {  // the file, and what text mode reads
        {"crlf", "a\r\nb\r\n", "a\nb\n"}, {"lone_cr", "a\rb\r", "a\rb\r"}, {"cr_cr_lf", "\r\r\n", "\r\n"},
        {"eof_char", std::string("abc\x1a" "def\r\n", 9), "abc"},
        {"cr_then_eof_char", std::string("ab\r\x1a" "cd", 6), "ab\r"},
        {"eof_char_first", std::string("\x1a" "abc", 4), ""},
        {"crlf_across_reads", xs + "\r\n" + "yz", xs + "\n" + "yz"},
        {"cr_at_read_end", xs + "\r" + "yz", xs + "\r" + "yz"}};
    for (const auto& c : cases) {
        std::string path = Dir().Write(c.name, c.raw);
        EXPECT_EQ(FileDigest(path, OPT_HASH_SHA256 | OPT_HASH_TEXT_MODE), Digest(c.text, OPT_HASH_SHA256)) << c.name;
        EXPECT_EQ(FileDigest(path, OPT_HASH_SHA256), Digest(c.raw, OPT_HASH_SHA256)) << c.name;
    }
}

TEST(HashFile, CutsAndRefusals) {
    std::string path = Dir().Write("abc", "abc");
    uint8_t out[64];
    EXPECT_EQ(HASH_File(out, 5, path.c_str(), OPT_HASH_SHA256), 5);
    EXPECT_EQ(ToHex(out, 5), "ba7816bf8f");
    // A directory opens but cannot be read: the read error ends the input.
    EXPECT_EQ(FileDigest(Dir().path, OPT_HASH_SHA256), Digest("", OPT_HASH_SHA256));
}

TEST(DigestFamilies, OneShotFormsAndStreams) {
    const std::string msg(200, 'q');
    for (const DigestFamily& f : kDigestFamilies) {
        SCOPED_TRACE(f.prefix);
        char hex[65];
        uint8_t digest[32];
        EXPECT_EQ(f.stringHexHash(hex, msg.c_str()), 0);
        EXPECT_EQ(hex, Digest(msg, f.option));
        // Length 0 with any data pointer is the empty message.
        EXPECT_EQ(f.bytesHash(digest, Bytes("ignored"), 0), 0);
        EXPECT_EQ(ToHex(digest, f.digits / 2), Digest("", f.option));
        std::strcpy(hex, "untouched");
        EXPECT_EQ(f.bytesHexHash(hex, Bytes("abc"), -1), BAD_PARAM_ERROR);
        EXPECT_STREQ(hex, "untouched");
        // Init has no frame: it leaves the latch as it stands.
        int32_t h = f.init();
        EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
        for (size_t i = 0; i < msg.size(); i += 40) ASSERT_EQ(f.addBytes(h, Bytes(msg) + i, 40), 0);
        EXPECT_EQ(f.addString(h, "tail"), 0);
        // Failures leave the stream open.
        EXPECT_EQ(f.addString(h, nullptr), BAD_PARAM_ERROR);
        EXPECT_EQ(f.hexDigest(nullptr, h + 2), INVALID_HANDLE_ERROR);
        EXPECT_EQ(f.hexDigest(hex, h), 0);
        EXPECT_EQ(hex, Digest(msg + "tail", f.option));
        // A second Init ends the first; a null text output drops the digest
        // and closes the stream.
        const int32_t first = f.init();
        h = f.init();
        EXPECT_EQ(f.addBytes(first, Bytes("x"), 1), INVALID_HANDLE_ERROR);
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
    std::string path = Dir().Write("text", raw);
    for (const DigestFamily& f : kDigestFamilies) {
        struct Case { const char* mode; const std::string& content; } cases[] = {
            {"t", text}, {"T", text}, {"text", text}, {"b", raw}, {"", raw}, {"x", raw}};
        for (const Case& c : cases) {
            char hex[65] = "";
            EXPECT_EQ(f.fileHexHash(hex, path.c_str(), c.mode), 0) << f.prefix << c.mode;
            EXPECT_EQ(std::string(hex), Digest(c.content, f.option)) << f.prefix << " mode '" << c.mode << "'";
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
        const struct { const char* keyHex; const char* code; } cases[] = {
            {"0B:AD", expected}, {"0 b a d", expected}, {"0bad7", expected}, {"zz0b-ad", expected},
            {"zz : ~ xyz", empty}, {"", empty}};
        for (const auto& c : cases) {
            ASSERT_EQ(f.hmacHex(hex, "64 61 74 61", c.keyHex), 0);
            EXPECT_STREQ(hex, c.code) << f.prefix << " key '" << c.keyHex << "'";
        }
        EXPECT_EQ(f.hmacHex(nullptr, "00", "00"), 0);
    }
}
