// XOF_Bytes and PRF_Bytes: KMAC binding its length, and the order of checks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"

namespace {
using Vec = std::vector<uint8_t>;

std::string Xof(const Vec& msg, int32_t length, int32_t options) {
    Vec out(size_t(length) + 1, 0xEE);
    int32_t n = XOF_Bytes(out.data(), length, msg.data(), int32_t(msg.size()), options);
    EXPECT_EQ(out[size_t(length)], 0xEE) << "wrote past the requested length";
    return n < 0 ? "error " + std::to_string(n) : ToHex(out.data(), size_t(n));
}

std::string Prf(const Vec& msg, const Vec& key, const std::string& custom, int32_t length, int32_t options) {
    Vec out(size_t(length) + 1, 0xEE);
    // PRF_Bytes wants a message pointer even for the empty message.
    int32_t n = PRF_Bytes(out.data(), length, msg.empty() ? out.data() : msg.data(), int32_t(msg.size()), key.data(),
                          int32_t(key.size()), custom.c_str(), options);
    EXPECT_EQ(out[size_t(length)], 0xEE);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out.data(), size_t(n));
}

}  // namespace

TEST(XofPrf, KmacBindsItsLength) {
    const Vec msg = {1, 2, 3}, key = {4, 5, 6, 7};
    for (int32_t option : {OPT_KMAC_128, OPT_KMAC_256}) {
        EXPECT_NE(Prf(msg, key, "", 32, option).substr(0, 2), Prf(msg, key, "", 33, option).substr(0, 2));
        // MAC_Bytes is the same KMAC at its fixed length with no custom string.
        uint8_t out[64];
        int32_t n = MAC_Bytes(out, 64, msg.data(), 3, key.data(), 4, option);
        EXPECT_EQ(Prf(msg, key, "", n, option), ToHex(out, size_t(n)));
    }
    EXPECT_EQ(Prf(msg, key, "", 33, OPT_XOF_SHAKE128).substr(0, 64), Prf(msg, {}, "", 32, OPT_XOF_SHAKE128));
}

TEST(XofPrf, XofChecksInOrder) {
    uint8_t out[8];
    const uint8_t* m = Bytes("abc");
    struct Case { uint8_t* out; int32_t outLen; const uint8_t* msg; int32_t msgLen, options, result; } cases[] = {
        {out, 8, nullptr, 1, 0x999, -6}, {out, 8, nullptr, 0, 0x204, 8}, {out, 0, m, 3, 0x203, 0}, {out, 0, m, 3, 0x20A, 0},
        // MGF1 refuses an empty output before it looks at the digest.
        {out, 0, m, 3, 0x211, -6}, {out, 8, m, 3, 0x217, -17},
        {out, 8, m, 3, 0x21A, -17}, {out, 8, m, 3, 0x21F, -17}, {out, 8, nullptr, 0, 0x210, 8},
        {out, 8, m, 3, 0x201, -17}, {out, 8, m, 3, 0x205, -17}, {out, 8, m, 3, 0x20C, -17}, {out, 8, m, 3, 0x003, -17},
        {out, 8, m, 3, 0x1203, 8}};
    for (const Case& c : cases) {
        EXPECT_EQ(XOF_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result)) << "every result is latched";
    }
}

TEST(XofPrf, PrfChecksInOrder) {
    uint8_t out[8];
    const uint8_t *m = Bytes("abc"), *k = Bytes("key");
    struct Case { uint8_t* out; int32_t outLen; const uint8_t* msg; int32_t msgLen; const uint8_t* key; int32_t keyLen; const char* custom; int32_t options, result; };
    const Case cases[] = {
        // Unlike XOF_Bytes, a null message is refused with length 0 too.
        {out, 8, nullptr, 0, k, 3, "", 0x201, -6}, {out, 8, nullptr, 0, k, 3, "", 0x203, -6}, {out, 8, m, -1, k, 3, "", 0x201, -6},
        {out, 8, nullptr, 0, k, 3, "", 0x200, -6}, {out, 8, m, 3, k, 3, "", 0x200, -17}, {out, 8, m, 3, k, 3, "", 0x205, -17},
        {out, 8, m, 3, k, 3, "", 0x210, -17}, {out, 0, m, 3, k, 3, "", 0x202, 0}, {out, 0, m, 3, k, 3, "", 0x204, 0},
        {out, 8, m, 0, nullptr, 0, "", 0x201, 8}, {out, 8, m, 3, nullptr, 0, nullptr, 0x203, 8}};
    for (const Case& c : cases) {
        EXPECT_EQ(PRF_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.key, c.keyLen, c.custom, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result));
    }
}
