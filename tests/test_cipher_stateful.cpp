// Stateful CIPHER_ calls: what Init ignores, the one context per thread, and
// the result rules of Update.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "cipher_support.h"

namespace {

ByteVec OneShot(int32_t direction, const ByteVec& in, const ByteVec& key, const ByteVec& iv, int32_t options) {
    ByteVec out(in.size());
    EXPECT_EQ((direction ? CIPHER_EncryptBytes : CIPHER_DecryptBytes)(out.data(), int32_t(out.size()), in.data(),
              int32_t(in.size()), key.data(), int32_t(key.size()), iv.data(), int32_t(iv.size()), nullptr, options),
              int32_t(in.size()));
    return out;
}

}  // namespace

// Split updates are compared with the reference elsewhere; here the padding
// word and the prefix flag, which Init ignores, and the hex Init.
TEST(CipherStateful, InitIgnoresPaddingAndPrefix) {
    for (const auto& c : kCiphers) {
        SCOPED_TRACE(c.name);
        const ByteVec key = Pattern(size_t(c.keyLength), 0x21), iv = Pattern(size_t(c.block), 0x5A);
        const ByteVec plain = Pattern(size_t(3 * c.block));
        const ByteVec sealed = OneShot(1, plain, key, iv, c.bits | OPT_MODE_CBC | OPT_PAD_NONE);
        const std::string text = std::string(c.name) + "/cbc/pkcs5";
        ByteVec out(plain.size());
        int32_t h = CIPHER_Init(1, text.c_str(), key.data(), c.keyLength, iv.data(), c.block, OPT_PREFIX_IV);
        ASSERT_EQ(CIPHER_Update(h, out.data(), int32_t(out.size()), plain.data(), int32_t(plain.size())), 0);
        EXPECT_EQ(out, sealed);
        h = CIPHER_InitHex(0, nullptr, ToHex(key).c_str(), ToHex(iv).c_str(), c.bits | OPT_MODE_CBC | OPT_PAD_PKCS5);
        ASSERT_EQ(CIPHER_Update(h, out.data(), int32_t(out.size()), sealed.data(), int32_t(sealed.size())), 0);
        EXPECT_EQ(out, plain);
        EXPECT_EQ(CIPHER_Final(h), 0);
    }
}

// Every failed Init latches its reason; the two early InitHex failures leave
// the earlier context alive, all others have ended it.
TEST(CipherStateful, ContextLifeAndInitFailures) {
    const ByteVec key = Pattern(16), iv = Pattern(16, 3);
    const std::string keyHex = ToHex(key), ivHex = ToHex(iv), oddKey = keyHex + "0";
    ByteVec buf(16);
    const struct {
        const char* what;
        std::function<int32_t()> init;
        int32_t latch;
        bool earlierAlive;
    } cases[] = {
        {"no key text", [&] { return CIPHER_InitHex(1, "aes128/cbc", "", ivHex.c_str(), 0); }, BAD_PARAM_ERROR, true},
        {"IV not hex", [&] { return CIPHER_InitHex(1, "aes128/cbc", keyHex.c_str(), "0x", 0); }, INVALID_DATA_ERROR, true},
        {"odd key digits", [&] { return CIPHER_InitHex(1, "aes128/cbc", oddKey.c_str(), ivHex.c_str(), 0); }, BAD_KEY_LEN_ERROR, false},
        {"no IV", [&] { return CIPHER_InitHex(1, "aes128/ofb", keyHex.c_str(), nullptr, 0); }, BAD_IV_LEN_ERROR, false},
        {"both names", [&] { return CIPHER_Init(1, "aes128/cbc", key.data(), 16, iv.data(), 16, OPT_CIPHER_AES128); }, BAD_FLAG_ERROR, false},
        {"key length", [&] { return CIPHER_Init(1, "tdea/ecb", key.data(), 16, nullptr, 0, 0); }, BAD_KEY_LEN_ERROR, false},
        {"a second Init", [&] { return CIPHER_Init(1, "aes256/ecb", Pattern(32).data(), 32, nullptr, 0, 0) == 0; }, 0, false},
    };
    for (const auto& c : cases) {
        const int32_t live = CIPHER_Init(1, "aes128/ecb", key.data(), 16, nullptr, 0, 0);
        EXPECT_EQ(c.init(), 0) << c.what;
        EXPECT_EQ(API_ErrorCode(), c.latch) << c.what;
        EXPECT_EQ(CIPHER_Update(live, buf.data(), 16, buf.data(), 16), c.earlierAlive ? 0 : -INVALID_HANDLE_ERROR) << c.what;
    }
}

TEST(CipherStateful, UpdateResultRules) {
    const ByteVec key = Pattern(16), iv = Pattern(16, 3), plain = Pattern(100);
    ByteVec out(100);
    const int32_t h = CIPHER_Init(1, "aes128/cbc/pkcs5", key.data(), 16, iv.data(), 16, 0);
    EXPECT_EQ(CIPHER_Update(h, out.data(), 15, plain.data(), 15), BAD_LENGTH_ERROR);  // positive, kept
    EXPECT_EQ(API_ErrorCode(), BAD_LENGTH_ERROR);
    EXPECT_EQ(CIPHER_Update(h, out.data(), 15, plain.data(), 16), -SHORT_BUF_ERROR);
    // No padding, and the failures left the IV where it was.
    EXPECT_EQ(CIPHER_Update(h, out.data(), 16, plain.data(), 16), 0);
    EXPECT_EQ(ByteVec(out.begin(), out.begin() + 16),
              OneShot(1, ByteVec(plain.begin(), plain.begin() + 16), key, iv, OPT_CIPHER_AES128 | OPT_MODE_CBC | OPT_PAD_NONE));

    // The hex form gives the hex of the byte form.
    const int32_t ofb = CIPHER_Init(1, "aes128/ofb", key.data(), 16, iv.data(), 16, 0);
    char hex[201];
    EXPECT_EQ(CIPHER_UpdateHex(ofb, hex, 200, ToHex(plain).c_str()), 0);
    EXPECT_EQ(std::string(hex), UpperHexOf(OneShot(1, plain, key, iv, OPT_CIPHER_AES128 | OPT_MODE_OFB)));
}
