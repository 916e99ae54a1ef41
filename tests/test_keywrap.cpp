// CIPHER_KeyWrap and CIPHER_KeyUnwrap: the Triple DES wrap checked layer by
// layer through the TDEA_ family, tampering, and the result codes.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "cipher_support.h"

namespace {

ByteVec Wrap(const ByteVec& data, const ByteVec& kek, int32_t options) {
    ByteVec out(data.size() + 16);
    const int32_t n = CIPHER_KeyWrap(out.data(), int32_t(out.size()), data.data(), int32_t(data.size()), kek.data(),
                                     int32_t(kek.size()), options);
    out.resize(n > 0 ? size_t(n) : 0);
    return out;
}

// The unwrapped key, or "rc N" for a failure.
std::string Unwrap(const ByteVec& wrapped, const ByteVec& kek, int32_t options) {
    ByteVec out(wrapped.size(), 0xEE);
    const int32_t n = CIPHER_KeyUnwrap(out.data(), int32_t(out.size()), wrapped.data(), int32_t(wrapped.size()),
                                       kek.data(), int32_t(kek.size()), options);
    if (n < 0) return "rc " + std::to_string(n) + (out == ByteVec(out.size(), 0) ? " zeroed" : " not zeroed");
    return ToHex(out.data(), size_t(n));
}

}  // namespace

// Triple DES: fresh leading bytes at each call, and the layers are those of
// RFC 3217 without the parity step: CBC under the fixed IV over the reversed
// inner layer, whose first 8 bytes are the IV of key | SHA-1(key)[0..8].
TEST(KeyWrap, TripleDesLayersAndFreshness) {
    const ByteVec kek = Pattern(24, 0x11);
    ByteVec key = Pattern(24, 0x70);
    key[0] = 0x00;  // even parity: kept as given
    const ByteVec first = Wrap(key, kek, OPT_CIPHER_TDEA), second = Wrap(key, kek, OPT_CIPHER_TDEA);
    ASSERT_EQ(first.size(), 40u);
    EXPECT_NE(first, second);
    EXPECT_EQ(Unwrap(first, kek, OPT_CIPHER_TDEA), ToHex(key));
    EXPECT_EQ(Unwrap(second, kek, OPT_CIPHER_TDEA | OPT_MODE_CTR | OPT_PAD_NONE), ToHex(key));

    const ByteVec fixedIv = FromHex("4adda22c79e82105");
    ByteVec outer(40), inner(32);
    ASSERT_EQ(TDEA_BytesMode(outer.data(), first.data(), 40, kek.data(), 0, "CBC", fixedIv.data()), 0);
    const ByteVec reversed(outer.rbegin(), outer.rend());
    ASSERT_EQ(TDEA_BytesMode(inner.data(), reversed.data() + 8, 32, kek.data(), 0, "CBC", reversed.data()), 0);
    unsigned char digest[20];
    ASSERT_EQ(HASH_Bytes(digest, 20, key.data(), 24, OPT_HASH_SHA1), 20);
    EXPECT_EQ(ToHex(inner), ToHex(key) + ToHex(digest, 8));
}

TEST(KeyWrap, TamperingFailsWithMinusOne) {
    const ByteVec kek = Pattern(24, 2), key = Pattern(24, 9);
    for (int32_t options : {OPT_CIPHER_TDEA, OPT_CIPHER_AES192}) {
        const ByteVec wrapped = Wrap(key, kek, options);
        for (size_t i = 0; i < wrapped.size(); ++i) {
            ByteVec bad = wrapped;
            bad[i] ^= uint8_t(1 << (i % 8));
            EXPECT_EQ(Unwrap(bad, kek, options), "rc -1 zeroed") << options << " byte " << i;
            EXPECT_EQ(API_ErrorCode(), OPEN_ERROR);  // the plain -1 latches as 1
        }
        EXPECT_EQ(Unwrap(wrapped, Pattern(24, 3), options), "rc -1 zeroed");
    }
    // Wrapping in place, and the latch after a success.
    ByteVec buffer = Pattern(40, 9);
    ASSERT_EQ(CIPHER_KeyWrap(buffer.data(), 40, buffer.data(), 32, kek.data(), 24, OPT_CIPHER_AES192), 40);
    EXPECT_EQ(API_ErrorCode(), 0);
    EXPECT_EQ(Unwrap(buffer, kek, OPT_CIPHER_AES192), ToHex(Pattern(32, 9)));
}

TEST(KeyWrap, ResultCodes) {
    const ByteVec k16 = Pattern(16), k24 = Pattern(24), data = Pattern(40);
    ByteVec out(64);
    const struct {
        const char* what;
        std::function<int32_t()> call;
        int32_t expected;
    } cases[] = {
        {"KEK length", [&] { return CIPHER_KeyWrap(out.data(), 64, data.data(), 16, k16.data(), 16, OPT_CIPHER_AES192); }, -BAD_KEY_LEN_ERROR},
        {"other bits play no part", [&] { return CIPHER_KeyWrap(out.data(), 64, data.data(), 16, k16.data(), 16, 0x20 | 0x100 | 0x1000); }, 24},
        {"AES: length before the query", [&] { return CIPHER_KeyWrap(nullptr, 0, data.data(), 12, k16.data(), 16, OPT_CIPHER_AES128); }, -BAD_LENGTH_ERROR},
        {"AES: query", [&] { return CIPHER_KeyWrap(out.data(), 0, data.data(), 32, k16.data(), 16, OPT_CIPHER_AES128); }, 40},
        {"AES: short output", [&] { return CIPHER_KeyWrap(out.data(), 39, data.data(), 32, k16.data(), 16, OPT_CIPHER_AES128); }, -SHORT_BUF_ERROR},
        {"TDEA: unwrap of 32 bytes", [&] { return CIPHER_KeyUnwrap(out.data(), 64, data.data(), 32, k24.data(), 24, OPT_CIPHER_TDEA); }, -BAD_LENGTH_ERROR},
        {"TDEA: unwrap query", [&] { return CIPHER_KeyUnwrap(out.data(), 0, data.data(), 40, k24.data(), 24, OPT_CIPHER_TDEA); }, 24},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.call(), c.expected) << c.what;
        EXPECT_EQ(API_ErrorCode(), c.expected < 0 ? -c.expected : 0) << c.what;
    }
}
