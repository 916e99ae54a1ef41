// HMAC internals against RFC 4231 and RFC 2202.
#include <gtest/gtest.h>

#include <string>

#include "mac/hmac.h"
#include "test_support.h"

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
