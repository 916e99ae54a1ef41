// XOF_Bytes and PRF_Bytes: SHAKE around the rate, KMAC with long keys and
// custom strings, MGF1 over five digests, Ascon-XOF, and the order of checks.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

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

int32_t OptionOf(const std::string& section) {
    static const std::pair<const char*, int32_t> kNames[] = {
        {"SHAKE128", 0x203},     {"SHAKE256", 0x204},       {"KMAC128", 0x201},        {"KMAC256", 0x202},
        {"MGF1-SHA1", 0x210},    {"MGF1-SHA224", 0x216},    {"MGF1-SHA256", 0x213},    {"MGF1-SHA384", 0x214},
        {"MGF1-SHA512", 0x215}};
    for (const auto& n : kNames)
        if (section == n.first) return n.second;
    return 0;
}
}  // namespace

TEST(XofPrf, ReferenceOutputs) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        const int32_t option = OptionOf(r.section.begin()->first);
        if (option == 0) continue;
        const int32_t length = int32_t(r.Int("L"));
        if (option == 0x201 || option == 0x202) {
            EXPECT_EQ(Prf(r.Bytes("DATA"), r.Bytes("KEY"), r.Get("S"), length, option), r.Get("OUTPUT")) << r.line;
        } else if (option >= 0x210) {
            // Bits above the twelve do not count.
            EXPECT_EQ(Xof(r.Bytes("SEED"), length, option | 0x10000), r.Get("OUTPUT")) << r.line;
        } else {
            EXPECT_EQ(Xof(r.Bytes("DATA"), length, option), r.Get("OUTPUT")) << r.line;
            // Through PRF_Bytes, where key and custom string play no part.
            EXPECT_EQ(Prf(r.Bytes("DATA"), {1, 2, 3}, "ignored", length, option | 0x5000), r.Get("OUTPUT")) << r.line;
        }
        ++checked;
    }
    EXPECT_EQ(checked, 70 + 16 + 25);
}

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
        {nullptr, 8, m, 3, 0x203, -6}, {out, -1, m, 3, 0x203, -6}, {out, 8, m, -1, 0x203, -6}, {out, 8, nullptr, 1, 0x203, -6},
        {out, 8, nullptr, 1, 0x999, -6}, {out, 8, nullptr, 0, 0x204, 8}, {out, 0, m, 3, 0x203, 0}, {out, 0, m, 3, 0x20A, 0},
        // MGF1 refuses an empty output before it looks at the digest.
        {out, 0, m, 3, 0x213, -6}, {out, 0, m, 3, 0x211, -6}, {out, 8, m, 3, 0x211, -17}, {out, 8, m, 3, 0x217, -17},
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
        {nullptr, 8, m, 3, k, 3, "", 0x201, -6}, {out, -1, m, 3, k, 3, "", 0x201, -6},
        // Unlike XOF_Bytes, a null message is refused with length 0 too.
        {out, 8, nullptr, 0, k, 3, "", 0x201, -6}, {out, 8, nullptr, 0, k, 3, "", 0x203, -6}, {out, 8, m, -1, k, 3, "", 0x201, -6},
        {out, 8, nullptr, 0, k, 3, "", 0x200, -6}, {out, 8, m, 3, k, 3, "", 0x200, -17}, {out, 8, m, 3, k, 3, "", 0x205, -17},
        {out, 8, m, 3, k, 3, "", 0x210, -17}, {out, 0, m, 3, k, 3, "", 0x202, 0}, {out, 0, m, 3, k, 3, "", 0x204, 0},
        {out, 8, m, 0, nullptr, 0, "", 0x201, 8}, {out, 8, m, 3, nullptr, 0, nullptr, 0x203, 8},
        // What the interface leaves unscreened would be read out of bounds: refused instead.
        {out, 8, m, 3, nullptr, 4, "", 0x201, -6}, {out, 8, m, 3, k, -1, "", 0x201, -6}, {out, 8, m, 3, k, 3, nullptr, 0x202, -6}};
    for (const Case& c : cases) {
        EXPECT_EQ(PRF_Bytes(c.out, c.outLen, c.msg, c.msgLen, c.key, c.keyLen, c.custom, c.options), c.result) << &c - cases;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.result));
    }
}
