// HMAC internals: the published cases by option and by name, streaming, keys at the block length.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "digest/digest.h"
#include "mac/hmac.h"
#include "test_support.h"
#include "vector_reader.h"
#include "verimond.h"

TEST(HmacInternal, Rfc4231Case2AndLongKey) {
    const std::string key = "Jefe", msg = "what do ya want for nothing?";
    uint8_t out[64];
    HmacSha256(out, Bytes(msg), uint32_t(msg.size()), Bytes(key), 4);
    EXPECT_EQ(ToHex(out, 32), "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    HmacSha512(out, Bytes(msg), uint32_t(msg.size()), Bytes(key), 4);
    EXPECT_EQ(ToHex(out, 64),
              "164b7a7bfcf819e2e395fbe73b56e0a387bd64222e831fd610270cd7ea2505549758bf75c05a994a6d034f65f8f0e6fdcaeab1a34d4a6b4b636e070a38bce737");
    HmacSha1(out, Bytes(msg), uint32_t(msg.size()), Bytes(key), 4);
    EXPECT_EQ(ToHex(out, 20), "effcdf6ae5eb2fa2d27416d5f184df9c259a7c79");
    HmacSha224(out, Bytes(msg), uint32_t(msg.size()), Bytes(key), 4);
    EXPECT_EQ(ToHex(out, 28), "a30e01098bc6dbbf45690f3a7e9e6d0f8bbea2a39e6148008fd05e44");
    HmacSha384(out, Bytes(msg), uint32_t(msg.size()), Bytes(key), 4);
    EXPECT_EQ(ToHex(out, 48),
              "af45d2e376484031617f78d2b58a6b1b9c7ef464f5a01b47e42ec3736322445e8e2240ca5e69e2c78b3239ecfab21649");
    // A key longer than the block is digested first (RFC 4231 case 6).
    const std::string longKey(131, '\xaa');
    const std::string text = "Test Using Larger Than Block-Size Key - Hash Key First";
    HmacSha256(out, Bytes(text), uint32_t(text.size()), Bytes(longKey), 131);
    EXPECT_EQ(ToHex(out, 32), "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
}

TEST(HmacInternal, StreamingEqualsOneShot) {
    const std::string key = "key", msg = "The quick brown fox jumps over the lazy dog";
    uint8_t a[64], b[64];
    HmacSha512(a, Bytes(msg), uint32_t(msg.size()), Bytes(key), 3);
    HmacContext ctx;
    HmacSha512Start(&ctx, Bytes(key), 3);
    Sha512Update(&ctx.digest.sha512, Bytes(msg), 10);
    Sha512Update(&ctx.digest.sha512, Bytes(msg) + 10, uint32_t(msg.size()) - 10);
    HmacSha512Finish(b, &ctx);
    EXPECT_EQ(ToHex(a, 64), ToHex(b, 64));
}

namespace {
int32_t NibbleOf(const std::string& digest) {
    if (digest == "MD5") return 1;
    if (digest == "SHA-1") return 0;
    if (digest == "SHA-224") return 6;
    if (digest == "SHA-256") return 3;
    if (digest == "SHA-384") return 4;
    if (digest == "SHA-512") return 5;
    if (digest == "RIPEMD-160") return 7;
    if (digest == "SHA3-224") return 10;
    if (digest == "SHA3-256") return 11;
    if (digest == "SHA3-384") return 12;
    return 13;  // SHA3-512
}
}  // namespace

TEST(HmacInternal, PublishedCasesByOption) {
    int checked = 0;
    for (const char* file : {"rfc/rfc2202_hmac_md5_sha1.txt", "rfc/rfc4231_hmac_sha2.txt", "rfc/rfc2286_hmac_rmd160.txt",
                             "rfc/hmac_sha3_examples.txt"}) {
        auto records = ReadVectorFile(file);
        ASSERT_FALSE(records.empty()) << file;
        for (const VectorRecord& r : records) {
            int32_t nibble = NibbleOf(r.section.begin()->first);
            std::vector<uint8_t> key = r.Bytes("KEY"), data = r.Bytes("DATA");
            std::string mac = r.Get("MAC");
            uint8_t out[64];
            int32_t n = HmacByOption(out, data.data(), uint32_t(data.size()), key.data(), uint32_t(key.size()),
                                     nibble | 0x300);  // only the low nibble counts
            ASSERT_GT(n, 0) << file;
            EXPECT_EQ(ToHex(out, size_t(n)).substr(0, mac.size()), mac) << file << " " << r.line;
            // The streaming form, fed in two pieces, where the digest streams.
            HmacContext ctx;
            if (HmacStartByOption(&ctx, nibble, key.data(), uint32_t(key.size()))) {
                size_t half = data.size() / 2;
                HmacUpdateByOption(&ctx, nibble, data.data(), uint32_t(half));
                HmacUpdateByOption(&ctx, nibble, data.data() + half, uint32_t(data.size() - half));
                uint8_t streamed[64];
                ASSERT_EQ(HmacFinishByOption(streamed, &ctx, nibble), n);
                EXPECT_EQ(ToHex(streamed, size_t(n)), ToHex(out, size_t(n))) << file << " " << r.line;
            }
            ++checked;
        }
    }
    EXPECT_EQ(checked, 14 + 28 + 7 + 12);
}

TEST(HmacInternal, OptionsAndSha3Forms) {
    uint8_t out[64], byOption[64];
    HmacContext ctx;
    // No HMAC over MD2, the chained digest, Ascon or the unassigned nibbles;
    // MD5 and RIPEMD-160 have one-shot codes but no stream.
    for (int32_t nibble : {2, 8, 9, 14, 15}) {
        EXPECT_EQ(HmacByOption(out, Bytes("m"), 1, Bytes("k"), 1, nibble), -BAD_FLAG_ERROR) << nibble;
    }
    for (int32_t nibble : {1, 2, 7, 8, 9, 14, 15}) EXPECT_FALSE(HmacStartByOption(&ctx, nibble, Bytes("k"), 1));
    EXPECT_EQ(HmacSha3(out, Bytes("m"), 1, Bytes("k"), 1, 128), 0);
    EXPECT_FALSE(HmacSha3Start(&ctx, Bytes("k"), 1, 160));
    // The SHA-3 forms by bit length; Finish finds the variant in the context.
    for (uint32_t bits : {224u, 256u, 384u, 512u}) {
        int32_t nibble = OPT_HMAC_SHA3_224 + int32_t(bits == 256) + 2 * int32_t(bits == 384) + 3 * int32_t(bits == 512);
        HmacByOption(byOption, Bytes("message"), 7, Bytes("key"), 3, nibble);
        ASSERT_EQ(HmacSha3(out, Bytes("message"), 7, Bytes("key"), 3, bits), int32_t(bits / 8));
        EXPECT_EQ(ToHex(out, bits / 8), ToHex(byOption, bits / 8)) << bits;
        ASSERT_TRUE(HmacSha3Start(&ctx, Bytes("key"), 3, bits));
        Sha3Absorb(&ctx.digest.sha3, Bytes("message"), 7);
        ASSERT_EQ(HmacSha3Finish(out, &ctx), int32_t(bits / 8));
        EXPECT_EQ(ToHex(out, bits / 8), ToHex(byOption, bits / 8)) << bits;
    }
}

TEST(HmacInternal, KeysAtTheBlockLength) {
    // A key one byte longer than the block equals its digest as the key; a
    // key of exactly the block length is used as it stands.
    const struct {
        int32_t nibble;
        uint32_t block;
    } cases[] = {{0, 64}, {1, 64}, {3, 64}, {4, 128}, {5, 128}, {6, 64}, {7, 64}, {10, 144}, {11, 136}, {12, 104}, {13, 72}};
    for (auto c : cases) {
        std::vector<uint8_t> key(c.block + 1);
        for (size_t i = 0; i < key.size(); ++i) key[i] = uint8_t(i * 5 + 1);
        uint8_t digest[64], a[64], b[64];
        int32_t d = DigestRaw(digest, key.data(), uint32_t(key.size()), c.nibble);
        int32_t n = HmacByOption(a, Bytes("msg"), 3, key.data(), uint32_t(key.size()), c.nibble);
        HmacByOption(b, Bytes("msg"), 3, digest, uint32_t(d), c.nibble);
        EXPECT_EQ(ToHex(a, size_t(n)), ToHex(b, size_t(n))) << c.nibble;
        d = DigestRaw(digest, key.data(), c.block, c.nibble);
        HmacByOption(a, Bytes("msg"), 3, key.data(), c.block, c.nibble);
        HmacByOption(b, Bytes("msg"), 3, digest, uint32_t(d), c.nibble);
        EXPECT_NE(ToHex(a, size_t(n)), ToHex(b, size_t(n))) << c.nibble;
    }
}
