// Poly1305 against RFC 8439 (2.5.2 and the edge vectors of appendix A.3),
// incremental feeding, and the one-shot forms the MAC dispatcher uses.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mac/poly1305.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
std::vector<VectorRecord> PolyRecords() {
    std::vector<VectorRecord> out;
    for (const auto& r : ReadVectorFile("rfc/rfc8439_chacha20_poly1305.txt"))
        if (r.section.count("Poly1305")) out.push_back(r);
    return out;
}
}  // namespace

TEST(Poly1305, RfcTagsWholeAndFedInEveryCut) {
    auto records = PolyRecords();
    ASSERT_EQ(records.size(), 12u);
    for (const auto& r : records) {
        std::vector<uint8_t> key = r.Bytes("KEY"), msg = r.Bytes("MSG");
        uint8_t tag[16];
        ASSERT_EQ(Poly1305Bytes(tag, 16, msg.data(), msg.size(), key.data()), 16);
        EXPECT_EQ(ToHex(tag, 16), r.Get("TAG")) << "line " << r.line;
        // Two pieces, cut at every byte.
        Poly1305Context ctx;
        for (size_t cut = 0; cut <= msg.size(); ++cut) {
            Poly1305Init(&ctx, key.data());
            Poly1305Update(&ctx, msg.data(), cut);
            Poly1305Update(&ctx, msg.data() + cut, msg.size() - cut);
            Poly1305Final(&ctx, tag);
            ASSERT_EQ(ToHex(tag, 16), r.Get("TAG")) << "line " << r.line << " cut " << cut;
        }
        // The final step wipes the key halves and the accumulator.
        for (int i = 0; i < 5; ++i) EXPECT_EQ(ctx.r[i] | ctx.h[i], 0u);
        for (int i = 0; i < 4; ++i) EXPECT_EQ(ctx.pad[i], 0u);
    }
}

TEST(Poly1305, EmptyMessageGivesThePad) {
    std::vector<uint8_t> key(32);
    for (size_t i = 0; i < 32; ++i) key[i] = uint8_t(0xc0 + i);
    uint8_t tag[16];
    Poly1305Bytes(tag, 16, nullptr, 0, key.data());
    EXPECT_EQ(ToHex(tag, 16), ToHex(key.data() + 16, 16));
}

TEST(Poly1305, OneShotOutputRules) {
    auto r = PolyRecords().front();  // RFC 8439 2.5.2
    std::vector<uint8_t> key = r.Bytes("KEY"), msg = r.Bytes("MSG");
    const std::string tag = r.Get("TAG");
    uint8_t bytes[16] = {};
    EXPECT_EQ(Poly1305Bytes(nullptr, 0, msg.data(), msg.size(), key.data()), 16);
    EXPECT_EQ(Poly1305Bytes(bytes, 0, msg.data(), msg.size(), key.data()), 16);
    EXPECT_EQ(Poly1305Bytes(bytes, 8, msg.data(), msg.size(), key.data()), 8);
    EXPECT_EQ(ToHex(bytes, 8), tag.substr(0, 16));
    EXPECT_EQ(Poly1305Bytes(bytes, 40, msg.data(), msg.size(), key.data()), 16);

    char text[40];
    EXPECT_EQ(Poly1305HexFromBytes(nullptr, 39, msg.data(), msg.size(), key.data()), 32);
    EXPECT_EQ(Poly1305HexFromBytes(text, 39, msg.data(), msg.size(), key.data()), 32);
    EXPECT_EQ(std::string(text), tag);
    EXPECT_EQ(Poly1305HexFromBytes(text, 9, msg.data(), msg.size(), key.data()), 8);  // whole bytes only
    EXPECT_EQ(std::string(text), tag.substr(0, 8));

    const std::string keyHex = r.Get("KEY"), msgHex = r.Get("MSG");
    EXPECT_EQ(Poly1305HexFromHex(text, 39, msgHex.c_str(), keyHex.c_str()), 32);
    EXPECT_EQ(std::string(text), tag);
    struct Case {
        const char* message;
        const char* key;
        int32_t expected;
    };
    const std::string shortKey = keyHex.substr(0, 62), oddKey = keyHex.substr(0, 63);
    const Case cases[] = {
        {msgHex.c_str(), "", -BAD_KEY_LEN_ERROR},
        {msgHex.c_str(), "A", -BAD_FORMAT_ERROR},
        {msgHex.c_str(), oddKey.c_str(), -BAD_FORMAT_ERROR},
        {msgHex.c_str(), shortKey.c_str(), -BAD_KEY_LEN_ERROR},
        {"ABC", shortKey.c_str(), -BAD_KEY_LEN_ERROR},  // the key is judged first
        {"ABC", keyHex.c_str(), -BAD_FORMAT_ERROR},
        {"zz", keyHex.c_str(), -BAD_FORMAT_ERROR},
        {nullptr, keyHex.c_str(), -BAD_PARAM_ERROR},
        {"", keyHex.c_str(), 32},  // the empty message
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Poly1305HexFromHex(text, 39, c.message, c.key), c.expected)
            << (c.message ? c.message : "(null)") << " / " << c.key;
    }
    EXPECT_EQ(std::string(text), keyHex.substr(32));  // empty message: the pad
}
