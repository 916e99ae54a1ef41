// MAC_ calls: published codes through every spelling (bytes, hex, stream),
// the option table, the cut-by-capacity rule, the order of checks, the hex
// quirks and the stream's state rules.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
int32_t HmacOption(const std::string& section) {
    static const std::pair<const char*, int32_t> kNames[] = {
        {"MD5", OPT_HMAC_MD5},           {"SHA-1", OPT_HMAC_SHA1},         {"SHA-224", OPT_HMAC_SHA224},
        {"SHA-256", OPT_HMAC_SHA256},    {"SHA-384", OPT_HMAC_SHA384},     {"SHA-512", OPT_HMAC_SHA512},
        {"RIPEMD-160", OPT_HMAC_RMD160}, {"SHA3-224", OPT_HMAC_SHA3_224}, {"SHA3-256", OPT_HMAC_SHA3_256},
        {"SHA3-384", OPT_HMAC_SHA3_384}, {"SHA3-512", OPT_HMAC_SHA3_512}};
    for (const auto& n : kNames)
        if (section == n.first) return n.second;
    ADD_FAILURE() << "unknown section " << section;
    return -1;
}

std::string MacHex(const std::vector<uint8_t>& msg, const std::vector<uint8_t>& key, int32_t options,
                   int32_t outputLength = 64) {
    uint8_t out[64];
    // An empty key still needs a pointer.
    const uint8_t* k = key.empty() ? out : key.data();
    int32_t n = MAC_Bytes(out, outputLength, msg.data(), int32_t(msg.size()), k, int32_t(key.size()), options);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out, size_t(n));
}

std::string HexFromHex(const std::string& msgHex, const std::string& keyHex, int32_t options, int32_t* result) {
    char out[300] = {};
    *result = MAC_HexFromHex(out, 256, msgHex.c_str(), keyHex.c_str(), options);
    return out;
}

const std::vector<uint8_t> kKey32 = FromHex("85d6be7857556d337f4452fe42d506a80103808afb0db2fd4abff6af4149f51b");
const int32_t kStreaming[] = {OPT_HMAC_SHA1,     OPT_HMAC_SHA256,   OPT_HMAC_SHA384,   OPT_HMAC_SHA512,  OPT_HMAC_SHA224,
                              OPT_HMAC_SHA3_224, OPT_HMAC_SHA3_256, OPT_HMAC_SHA3_384, OPT_HMAC_SHA3_512};
}  // namespace

TEST(MacHmac, PublishedCodesThroughBytesHexAndStream) {
    int checked = 0;
    for (const char* file : {"rfc/rfc2202_hmac_md5_sha1.txt", "rfc/rfc4231_hmac_sha2.txt", "rfc/rfc2286_hmac_rmd160.txt",
                             "rfc/hmac_sha3_examples.txt"}) {
        auto records = ReadVectorFile(file);
        ASSERT_FALSE(records.empty()) << file;
        for (const VectorRecord& r : records) {
            const int32_t option = HmacOption(r.section.begin()->first);
            const std::vector<uint8_t> key = r.Bytes("KEY"), data = r.Bytes("DATA");
            const std::string mac = r.Get("MAC");  // some cases publish only a prefix
            const int32_t cut = int32_t(mac.size() / 2);
            EXPECT_EQ(MacHex(data, key, option, cut), mac) << file << ":" << r.line;
            int32_t result;
            std::string hex = HexFromHex(r.Get("DATA"), r.Get("KEY"), option, &result);
            EXPECT_EQ(hex.substr(0, mac.size()), mac) << file << ":" << r.line;
            EXPECT_EQ(result, int32_t(hex.size()));
            EXPECT_EQ(API_ErrorCode(), result) << "every result is latched";

            int32_t h = MAC_Init(key.data(), int32_t(key.size()), option);
            if (option == OPT_HMAC_MD5 || option == OPT_HMAC_RMD160) {
                EXPECT_EQ(h, 0);
                EXPECT_EQ(API_ErrorCode(), NOT_SUPPORTED_ERROR);
                continue;
            }
            ASSERT_NE(h, 0);
            const size_t half = data.size() / 2;
            ASSERT_EQ(MAC_AddBytes(h, data.data(), int32_t(half)), 0);
            ASSERT_EQ(MAC_AddBytes(h, data.data() + half, int32_t(data.size() - half)), 0);
            uint8_t out[64];
            int32_t n = MAC_Final(out, cut, h);
            EXPECT_EQ(ToHex(out, size_t(n)), mac) << file << ":" << r.line;
            ++checked;
        }
    }
    EXPECT_GT(checked, 30);
}

TEST(MacHmac, KeysAtAndBeyondTheBlock) {
    // A key longer than the block is replaced by its digest; one of exactly
    // block length is used as it stands, zero-filled like a shorter one.
    std::vector<uint8_t> key(65);
    for (size_t i = 0; i < key.size(); ++i) key[i] = uint8_t(i * 13 + 1);
    const std::vector<uint8_t> msg = {'m', 's', 'g'};
    for (auto [option, block] : {std::pair{OPT_HMAC_SHA1, 64}, {OPT_HMAC_SHA512, 128}, {OPT_HMAC_SHA3_256, 136},
                                 {OPT_HMAC_SHA3_224, 144}, {OPT_HMAC_MD5, 64}}) {
        std::vector<uint8_t> longKey(size_t(block) + 1, 0x5a), digest(64);
        int32_t n = HASH_Bytes(digest.data(), 64, longKey.data(), block + 1, option);
        digest.resize(size_t(n));
        EXPECT_EQ(MacHex(msg, longKey, option), MacHex(msg, digest, option)) << option;

        std::vector<uint8_t> exact(size_t(block), 0x33);
        exact.back() = 0;
        std::vector<uint8_t> shorter(exact.begin(), exact.end() - 1);
        EXPECT_EQ(MacHex(msg, exact, option), MacHex(msg, shorter, option)) << option;
    }
}

TEST(MacBytes, OptionTable) {
    const std::vector<uint8_t> key24(24, 7), key16(16, 7), key32 = kKey32;
    struct Case {
        int32_t options;
        const std::vector<uint8_t>* key;
        int32_t result;  // with no output buffer: the code length or a failure
    } cases[] = {
        {OPT_HMAC_SHA1, &key16, 20},       {OPT_HMAC_MD5, &key16, 16},        {2, &key16, -BAD_FLAG_ERROR},
        {OPT_HMAC_SHA256, &key16, 32},     {OPT_HMAC_SHA384, &key16, 48},     {OPT_HMAC_SHA512, &key16, 64},
        {OPT_HMAC_SHA224, &key16, 28},     {OPT_HMAC_RMD160, &key16, 20},     {8, &key16, -BAD_FLAG_ERROR},
        {9, &key16, -BAD_FLAG_ERROR},      {OPT_HMAC_SHA3_224, &key16, 28},   {OPT_HMAC_SHA3_512, &key16, 64},
        {14, &key16, -BAD_FLAG_ERROR},     {15, &key16, -BAD_FLAG_ERROR},     {0x13, &key16, 32},
        {0x10003, &key16, 32},             {0x0F0, &key16, 20},               {OPT_MAC_POLY1305, &key32, 16},
        {OPT_MAC_POLY1305, &key24, -BAD_KEY_LEN_ERROR},                       {OPT_KMAC_128, &key16, 32},
        {OPT_KMAC_256, &key16, 64},        {0x203, &key16, -BAD_FLAG_ERROR},  {0x2FF, &key16, -BAD_FLAG_ERROR},
        {0x1200, &key32, 16},              {0x1201, &key16, 32},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(MAC_Bytes(nullptr, 0, Bytes("abc"), 3, c.key->data(), int32_t(c.key->size()), c.options), c.result)
            << std::hex << c.options;
        // The hex query gives twice the length, or the same failure.
        int32_t hex = MAC_HexFromBytes(nullptr, 0, Bytes("abc"), 3, c.key->data(), int32_t(c.key->size()), c.options);
        if (c.result == -BAD_FLAG_ERROR && (c.options & 0x300) == 0) {
            EXPECT_EQ(hex, -34) << "a bad HMAC nibble doubles into -34";
            EXPECT_EQ(API_ErrorCode(), 34);
        } else {
            EXPECT_EQ(hex, c.result < 0 ? c.result : 2 * c.result) << std::hex << c.options;
        }
    }
}

TEST(MacBytes, CutByCapacityExceptKmac) {
    const std::vector<uint8_t> msg = {1, 2, 3}, key = {9, 9, 9};
    const std::string full = MacHex(msg, key, OPT_HMAC_SHA256);
    for (int32_t cap : {1, 16, 31, 32}) EXPECT_EQ(MacHex(msg, key, OPT_HMAC_SHA256, cap), full.substr(0, 2 * size_t(cap)));
    EXPECT_EQ(MacHex(msg, kKey32, OPT_MAC_POLY1305, 8), MacHex(msg, kKey32, OPT_MAC_POLY1305).substr(0, 16));

    // A length of 0 with a buffer asks for the size and writes nothing.
    uint8_t out[64];
    std::fill(std::begin(out), std::end(out), 0xEE);
    EXPECT_EQ(MAC_Bytes(out, 0, msg.data(), 3, key.data(), 3, OPT_HMAC_SHA512), 64);
    EXPECT_EQ(out[0], 0xEE);

    // KMAC is never cut.
    EXPECT_EQ(MAC_Bytes(out, 16, msg.data(), 3, key.data(), 3, OPT_KMAC_128), -SHORT_BUF_ERROR);
    EXPECT_EQ(MAC_Bytes(out, 63, msg.data(), 3, key.data(), 3, OPT_KMAC_256), -SHORT_BUF_ERROR);
    EXPECT_EQ(MAC_Bytes(nullptr, 16, msg.data(), 3, key.data(), 3, OPT_KMAC_128), 32);
    EXPECT_EQ(MAC_Bytes(out, 64, msg.data(), 3, key.data(), 3, OPT_KMAC_128), 32);
    EXPECT_EQ(API_ErrorCode(), 32);
}

TEST(MacBytes, ArgumentChecksComeFirst) {
    uint8_t out[64];
    const uint8_t* m = Bytes("abc");
    const uint8_t* k = Bytes("key");
    struct Case {
        uint8_t* output;
        int32_t outputLength;
        const uint8_t* message;
        int32_t messageLength;
        const uint8_t* key;
        int32_t keyLength;
        int32_t options;
        int32_t result;
    } cases[] = {
        {out, 64, nullptr, 1, k, 3, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {out, -1, m, 3, k, 3, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {out, 64, m, -1, k, 3, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {out, 64, m, 3, nullptr, 0, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {out, 64, m, 3, k, -1, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        // Before the option and the key length are looked at.
        {out, 64, nullptr, 1, k, 3, 2, -BAD_PARAM_ERROR},
        {out, 64, m, 3, nullptr, 0, OPT_MAC_POLY1305, -BAD_PARAM_ERROR},
        {out, -5, m, 3, k, 3, OPT_KMAC_128, -BAD_PARAM_ERROR},
        // Nothing wrong: a null message of length 0 and an empty key.
        {out, 64, nullptr, 0, k, 0, OPT_HMAC_SHA1, 20},
        {nullptr, -1, m, 3, k, 3, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(MAC_Bytes(c.output, c.outputLength, c.message, c.messageLength, c.key, c.keyLength, c.options), c.result)
            << "row " << (&c - cases);
        if (c.outputLength >= 0)
            EXPECT_EQ(MAC_HexFromBytes(nullptr, 0, c.message, c.messageLength, c.key, c.keyLength, c.options),
                      c.result < 0 ? c.result : 2 * c.result);
    }
    // The empty message and the empty key are real inputs (RFC 2104 with
    // both empty, SHA-1).
    EXPECT_EQ(MacHex({}, {}, OPT_HMAC_SHA1), "fbdb1d1b18aa6c08324b7d64b71fb76370690e1d");
}

TEST(MacHex, CutsToWholeBytesAndKeepsTheBadNibbleQuirk) {
    const std::vector<uint8_t> msg = {1, 2, 3}, key = {4, 5};
    const std::string full = MacHex(msg, key, OPT_HMAC_SHA1);
    char out[200];
    struct Case {
        int32_t options, outputLength, result;
        std::string text;
    } cases[] = {
        {OPT_HMAC_SHA1, 40, 40, full},
        {OPT_HMAC_SHA1, 5, 4, full.substr(0, 4)},
        {OPT_HMAC_SHA1, 1, 0, ""},
        {OPT_HMAC_SHA1, 100, 40, full},
        // Negative: not range-checked, taken as room for the whole code.
        {OPT_HMAC_SHA1, -1, 40, full},
        // A bad nibble passes its -17 on as a length: with a buffer the
        // call "succeeds" with outputLength / 2 bytes of its zeroed scratch.
        {9, 10, 10, "0000000000"},
        {9, 11, 10, "0000000000"},
        {2, 150, 150, std::string(150, '0')},
        {9, -1, -34, "untouched"},
    };
    for (const Case& c : cases) {
        std::fill(std::begin(out), std::end(out), 'x');
        std::snprintf(out, sizeof out, "untouched");
        EXPECT_EQ(MAC_HexFromBytes(out, c.outputLength, msg.data(), 3, key.data(), 2, c.options), c.result)
            << "row " << (&c - cases);
        EXPECT_EQ(std::string(out), c.text) << "row " << (&c - cases);
        EXPECT_EQ(API_ErrorCode(), c.result < 0 ? -c.result : c.result);
    }
    // MAC_HexFromHex runs the same step.
    int32_t result;
    EXPECT_EQ(HexFromHex("010203", "0405", 9, &result), std::string(256, '0'));
    EXPECT_EQ(result, 256);
    EXPECT_EQ(MAC_HexFromHex(nullptr, 0, "010203", "0405", 9), -34);
}

TEST(MacHex, HexInputChecks) {
    struct Case {
        const char* messageHex;
        const char* keyHex;
        int32_t options, result;
    } cases[] = {
        {nullptr, "00", OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {"00", nullptr, OPT_HMAC_SHA1, -BAD_PARAM_ERROR},
        {"", "", OPT_HMAC_SHA1, -BAD_KEY_LEN_ERROR},
        {"", "a", OPT_HMAC_SHA1, -BAD_FORMAT_ERROR},
        {"", "zz", OPT_HMAC_SHA1, -BAD_FORMAT_ERROR},
        {"", "00 11", OPT_HMAC_SHA1, -BAD_FORMAT_ERROR},
        {"abc", "0011", OPT_HMAC_SHA1, -BAD_FORMAT_ERROR},
        {"0g", "0011", OPT_HMAC_SHA1, -BAD_FORMAT_ERROR},
        {"", "0011", OPT_HMAC_SHA1, 40},
        {"ABCDEF", "0011", OPT_HMAC_SHA256, 64},
        // KMAC takes the empty key; its other texts are checked as strictly.
        {"", "", OPT_KMAC_128, 64},
        {"", "", OPT_KMAC_256, 128},
        {"", "a", OPT_KMAC_128, -BAD_FORMAT_ERROR},
        {"xy", "", OPT_KMAC_128, -BAD_FORMAT_ERROR},
        // Unknown numbers beside 0x200 are refused before any decoding.
        {"xy", "q", 0x203, -BAD_FLAG_ERROR},
        {"xy", "q", 0x2F0, -BAD_FLAG_ERROR},
        // Poly1305: key length, then format, then the message.
        {"", "", OPT_MAC_POLY1305, -BAD_KEY_LEN_ERROR},
        {"", "0g", OPT_MAC_POLY1305, -BAD_FORMAT_ERROR},
        {"", "00112233", OPT_MAC_POLY1305, -BAD_KEY_LEN_ERROR},
        {"0", "85d6be7857556d337f4452fe42d506a80103808afb0db2fd4abff6af4149f51b", OPT_MAC_POLY1305, -BAD_FORMAT_ERROR},
        {"", "85d6be7857556d337f4452fe42d506a80103808afb0db2fd4abff6af4149f51b", OPT_MAC_POLY1305, 32},
    };
    for (const Case& c : cases) {
        char out[300];
        EXPECT_EQ(MAC_HexFromHex(out, 256, c.messageHex, c.keyHex, c.options), c.result) << "row " << (&c - cases);
    }
    // The hex texts give what the bytes give.
    int32_t result;
    EXPECT_EQ(HexFromHex("ABCDEF", "0011", OPT_HMAC_SHA256, &result), MacHex({0xab, 0xcd, 0xef}, {0, 0x11}, OPT_HMAC_SHA256));
    EXPECT_EQ(HexFromHex("", "", OPT_KMAC_256, &result), MacHex({}, {}, OPT_KMAC_256));
}

TEST(MacKmac, SamplesWithTheEmptyCustomString) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("parsed/kmac_samples_sp800-185.txt")) {
        if (!r.Get("S").empty()) continue;
        const int32_t option = r.section.count("KMAC128") ? OPT_KMAC_128 : OPT_KMAC_256;
        std::string expected = ToHex(r.Bytes("OUTPUT"));
        EXPECT_EQ(MacHex(r.Bytes("DATA"), r.Bytes("KEY"), option), expected) << r.line;
        int32_t result;
        EXPECT_EQ(HexFromHex(r.Get("DATA"), r.Get("KEY"), option, &result), expected);
        // Short of the whole code, the hex form fails as the bytes form does.
        char out[200];
        const std::vector<uint8_t> key = r.Bytes("KEY"), data = r.Bytes("DATA");
        EXPECT_EQ(MAC_HexFromBytes(out, int32_t(expected.size()) - 1, data.data(), int32_t(data.size()), key.data(),
                                   int32_t(key.size()), option),
                  -SHORT_BUF_ERROR);
        ++checked;
    }
    EXPECT_EQ(checked, 2);
}

TEST(MacPoly1305, Rfc8439Tags) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("rfc/rfc8439_chacha20_poly1305.txt")) {
        if (!r.section.count("Poly1305")) continue;
        EXPECT_EQ(MacHex(r.Bytes("MSG"), r.Bytes("KEY"), OPT_MAC_POLY1305), r.Get("TAG")) << r.line;
        int32_t result;
        EXPECT_EQ(HexFromHex(r.Get("MSG"), r.Get("KEY"), OPT_MAC_POLY1305, &result), r.Get("TAG")) << r.line;
        ++checked;
    }
    EXPECT_GE(checked, 6);
}

TEST(MacStream, EverySplitGivesTheOneShotCode) {
    std::vector<uint8_t> msg(300), key = {1, 2, 3, 4, 5};
    for (size_t i = 0; i < msg.size(); ++i) msg[i] = uint8_t(i * 31 + 7);
    for (int32_t option : kStreaming) {
        const std::string expected = MacHex(msg, key, option);
        for (size_t cut = 0; cut <= msg.size(); cut += 7) {
            int32_t h = MAC_Init(key.data(), int32_t(key.size()), option | 0x7000);  // bits above twelve are ignored
            ASSERT_NE(h, 0);
            EXPECT_TRUE(h > 0 && h < (1 << 30) && (h & 1) == 1);
            EXPECT_EQ(MAC_CodeLength(h), int32_t(expected.size() / 2));
            ASSERT_EQ(MAC_AddBytes(h, msg.data(), int32_t(cut)), 0);
            ASSERT_EQ(MAC_AddBytes(h, msg.data() + cut, int32_t(msg.size() - cut)), 0);
            uint8_t out[64];
            ASSERT_EQ(ToHex(out, size_t(MAC_Final(out, 64, h))), expected) << option << " cut " << cut;
        }
    }
}

TEST(MacStream, InitTakesOnlyTheNineDigestsExactly) {
    const uint8_t key[32] = {1};
    for (int32_t option : {1, 2, 7, 8, 9, 14, 15, 0x13, 0x100, 0x101, 0x200, 0x201, 0x202}) {
        EXPECT_EQ(MAC_Init(key, 32, option), 0) << std::hex << option;
        EXPECT_EQ(API_ErrorCode(), NOT_SUPPORTED_ERROR);
    }
    for (int32_t option : kStreaming) EXPECT_NE(MAC_Init(key, 32, option), 0);
}

TEST(MacStream, StateRules) {
    const uint8_t key[3] = {1, 2, 3};
    uint8_t out[64];
    int32_t h = MAC_Init(key, 3, OPT_HMAC_SHA256);
    ASSERT_NE(h, 0);
    // Argument failures leave the stream open; data is checked after the handle.
    EXPECT_EQ(MAC_AddBytes(h, nullptr, 0), -BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_AddBytes(h, key, -1), -BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_AddBytes(h + 2, nullptr, 0), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_AddBytes(0, key, 3), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_Final(nullptr, 32, 0), -BAD_PARAM_ERROR) << "the buffer is checked before the handle";
    EXPECT_EQ(MAC_Final(out, 0, h), -BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_Final(out, 32, h ^ 4), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_CodeLength(h), 32);
    EXPECT_EQ(API_ErrorCode(), 32);

    // A bad key leaves the open stream alive; a bad option closes it.
    EXPECT_EQ(MAC_Init(nullptr, 3, OPT_HMAC_SHA1), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(MAC_Init(key, 0, OPT_HMAC_SHA1), 0);
    EXPECT_EQ(MAC_CodeLength(h), 32);
    EXPECT_EQ(MAC_Init(key, 3, OPT_HMAC_MD5), 0);
    EXPECT_EQ(MAC_CodeLength(h), -INVALID_HANDLE_ERROR);

    // Final cuts, then the handle is stale everywhere.
    h = MAC_Init(key, 3, OPT_HMAC_SHA512);
    EXPECT_EQ(MAC_AddBytes(h, Bytes("abc"), 3), 0);
    EXPECT_EQ(MAC_Final(out, 10, h), 10);
    EXPECT_EQ(ToHex(out, 10), MacHex({'a', 'b', 'c'}, {1, 2, 3}, OPT_HMAC_SHA512).substr(0, 20));
    EXPECT_EQ(MAC_Final(out, 64, h), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_AddBytes(h, key, 1), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_Reset(h), -INVALID_HANDLE_ERROR);

    // Reset ends the stream; a second Init replaces the first.
    h = MAC_Init(key, 3, OPT_HMAC_SHA1);
    EXPECT_EQ(MAC_Reset(h), 0);
    EXPECT_EQ(MAC_CodeLength(h), -INVALID_HANDLE_ERROR);
    int32_t first = MAC_Init(key, 3, OPT_HMAC_SHA1);
    int32_t second = MAC_Init(key, 3, OPT_HMAC_SHA3_384);
    if (first != second) EXPECT_EQ(MAC_CodeLength(first), -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_CodeLength(second), 48);

    // The stream belongs to its thread.
    int32_t other = 0;
    std::thread([&] { other = MAC_CodeLength(second); }).join();
    EXPECT_EQ(other, -INVALID_HANDLE_ERROR);
    EXPECT_EQ(MAC_Reset(second), 0);
}
