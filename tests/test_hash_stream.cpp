// The digest streams (HASH_ and SHA3_): which digests stream, and the state
// rules: latches, Final cutting and closing, a second Init.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {
std::string OneShot(const std::string& message, int32_t options) {
    uint8_t out[64];
    return ToHex(out, size_t(HASH_Bytes(out, 64, Bytes(message), Len(message), options)));
}

const int32_t kStreaming[] = {OPT_HASH_SHA1,     OPT_HASH_SHA256,   OPT_HASH_SHA384,   OPT_HASH_SHA512,  OPT_HASH_SHA224,
                              OPT_HASH_SHA3_224, OPT_HASH_SHA3_256, OPT_HASH_SHA3_384, OPT_HASH_SHA3_512};
}  // namespace

TEST(HashStream, InitAcceptsOnlyStreamingDigests) {
    for (int32_t nibble = 0; nibble < 16; ++nibble) {
        bool streams = false;
        for (int32_t s : kStreaming) streams |= s == nibble;
        int32_t h = HASH_Init(nibble | 0x20);  // bits above the nibble are ignored
        if (streams) {
            EXPECT_EQ(API_ErrorCode(), 0);
            EXPECT_EQ(HASH_DigestLength(h), HASH_Length(nibble)) << nibble;
        } else {
            // MD5, MD2 and RIPEMD-160 digest one-shot but cannot stream.
            EXPECT_EQ(h, 0) << nibble;
            EXPECT_EQ(API_ErrorCode(), NOT_SUPPORTED_ERROR) << nibble;
        }
    }
}

TEST(HashStream, StateRules) {
    uint8_t out[64];
    int32_t h = HASH_Init(OPT_HASH_SHA256);
    // Argument failures leave the stream open.
    EXPECT_EQ(HASH_AddBytes(h, Bytes("abc"), -1), -BAD_PARAM_ERROR);
    EXPECT_EQ(HASH_Final(out, 0, h), -BAD_PARAM_ERROR);
    EXPECT_EQ(HASH_AddBytes(h, Bytes("abc"), 3), 0);
    EXPECT_EQ(HASH_DigestLength(h), 32);
    EXPECT_EQ(API_ErrorCode(), 32);  // every result of this call is latched
    // A short buffer keeps what fits; the rest of the digest is gone.
    EXPECT_EQ(HASH_Final(out, 10, h), 10);
    EXPECT_EQ(API_ErrorCode(), 0);
    EXPECT_EQ(ToHex(out, 10), OneShot("abc", OPT_HASH_SHA256).substr(0, 20));
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
    EXPECT_EQ(hex, OneShot("abc", OPT_HASH_SHA3_384));
    // A short output is cut to whole bytes.
    h = SHA3_Init(256);
    EXPECT_EQ(SHA3_HexDigest(hex, 5, h), 4);
    EXPECT_EQ(hex, OneShot("", OPT_HASH_SHA3_256).substr(0, 4));
    // A failed Init closes the open stream; the SHA3_ and HASH_ streams are apart.
    h = SHA3_Init(224);
    int32_t hashStream = HASH_Init(OPT_HASH_SHA3_224);
    EXPECT_EQ(SHA3_Init(100), 0);
    EXPECT_EQ(SHA3_AddBytes(h, Bytes("abc"), 3), INVALID_HANDLE_ERROR);
    EXPECT_EQ(HASH_DigestLength(hashStream), 28);
}
