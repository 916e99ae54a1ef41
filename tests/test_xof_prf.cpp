// XOF_Bytes and PRF_Bytes: SHAKE around the rate, KMAC with long keys and
// custom strings, MGF1 over five digests, Ascon-XOF, and the order of checks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
std::string Xof(const std::vector<uint8_t>& msg, int32_t length, int32_t options) {
    std::vector<uint8_t> out(size_t(length) + 1, 0xEE);
    int32_t n = XOF_Bytes(out.data(), length, msg.data(), int32_t(msg.size()), options);
    EXPECT_EQ(out[size_t(length)], 0xEE) << "wrote past the requested length";
    return n < 0 ? "error " + std::to_string(n) : ToHex(out.data(), size_t(n));
}

std::string Prf(const std::vector<uint8_t>& msg, const std::vector<uint8_t>& key, const std::string& custom,
                int32_t length, int32_t options) {
    std::vector<uint8_t> out(size_t(length) + 1, 0xEE);
    // PRF_Bytes wants a message pointer even for the empty message.
    int32_t n = PRF_Bytes(out.data(), length, msg.empty() ? out.data() : msg.data(), int32_t(msg.size()), key.data(), int32_t(key.size()),
                          custom.c_str(), options);
    EXPECT_EQ(out[size_t(length)], 0xEE);
    return n < 0 ? "error " + std::to_string(n) : ToHex(out.data(), size_t(n));
}

int32_t Mgf1Option(const std::string& section) {
    if (section == "MGF1-SHA1") return OPT_XOF_MGF1_SHA1;
    if (section == "MGF1-SHA224") return OPT_XOF_MGF1_SHA224;
    if (section == "MGF1-SHA256") return OPT_XOF_MGF1_SHA256;
    if (section == "MGF1-SHA384") return OPT_XOF_MGF1_SHA384;
    return OPT_XOF_MGF1_SHA512;
}
}  // namespace

TEST(Xof, ShakeAroundTheRate) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        const std::string name = r.section.begin()->first;
        if (name != "SHAKE128" && name != "SHAKE256") continue;
        const int32_t option = name == "SHAKE128" ? OPT_XOF_SHAKE128 : OPT_XOF_SHAKE256;
        const int32_t length = int32_t(r.Int("L"));
        EXPECT_EQ(Xof(r.Bytes("DATA"), length, option), r.Get("OUTPUT")) << r.line;
        // Through PRF_Bytes, where key and custom string play no part.
        EXPECT_EQ(Prf(r.Bytes("DATA"), {1, 2, 3}, "ignored", length, option | 0x5000), r.Get("OUTPUT")) << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 70);
    for (const char* file : {"nist-cavp/sha3/SHAKE128VariableOut_subset.rsp", "nist-cavp/sha3/SHAKE256VariableOut_subset.rsp"}) {
        auto records = ReadVectorFile(file);
        ASSERT_FALSE(records.empty()) << file;
        const int32_t option = std::string(file).find("128") != std::string::npos ? OPT_XOF_SHAKE128 : OPT_XOF_SHAKE256;
        for (const VectorRecord& r : records)
            EXPECT_EQ(Xof(r.Bytes("Msg"), int32_t(r.Int("Outputlen") / 8), option), r.Get("Output")) << file << r.line;
    }
}

TEST(Xof, Mgf1OverFiveDigests) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        const std::string name = r.section.begin()->first;
        if (name.rfind("MGF1-", 0) != 0) continue;
        EXPECT_EQ(Xof(r.Bytes("SEED"), int32_t(r.Int("L")), Mgf1Option(name)), r.Get("OUTPUT")) << r.line;
        // Bits above the twelve do not count; bits 4 to 11 do.
        EXPECT_EQ(Xof(r.Bytes("SEED"), int32_t(r.Int("L")), Mgf1Option(name) | 0x10000), r.Get("OUTPUT"));
        ++checked;
    }
    EXPECT_EQ(checked, 25);
}

TEST(Xof, AsconXofMatchesTheKnownAnswers) {
    for (auto [file, option] : {std::pair{"ascon-v1.2/Ascon-XOF_v1.2_LWC_HASH_KAT_256.txt", OPT_XOF_ASCON_XOF},
                                {"ascon-v1.2/Ascon-XOFA_v1.2_LWC_HASH_KAT_256.txt", OPT_XOF_ASCON_XOFA}}) {
        auto records = ReadVectorFile(file);
        ASSERT_GT(records.size(), 100u) << file;
        for (size_t i = 0; i < records.size(); i += 37) {
            const VectorRecord& r = records[i];
            EXPECT_EQ(Xof(r.Bytes("Msg"), 32, option), ToHex(r.Bytes("MD"))) << file << ":" << r.line;
        }
    }
}

TEST(Xof, ChecksInOrder) {
    uint8_t out[8];
    const uint8_t* m = Bytes("abc");
    struct Case {
        uint8_t* output;
        int32_t outputLength;
        const uint8_t* message;
        int32_t messageLength;
        int32_t options, result;
    } cases[] = {
        {nullptr, 8, m, 3, OPT_XOF_SHAKE128, -BAD_PARAM_ERROR},
        {out, -1, m, 3, OPT_XOF_SHAKE128, -BAD_PARAM_ERROR},
        {out, 8, m, -1, OPT_XOF_SHAKE128, -BAD_PARAM_ERROR},
        {out, 8, nullptr, 1, OPT_XOF_SHAKE128, -BAD_PARAM_ERROR},
        {out, 8, nullptr, 1, 0x999, -BAD_PARAM_ERROR},
        {out, 8, nullptr, 0, OPT_XOF_SHAKE256, 8},
        {out, 0, m, 3, OPT_XOF_SHAKE128, 0},
        {out, 0, m, 3, OPT_XOF_ASCON_XOF, 0},
        // MGF1 refuses an empty output, then looks at the digest.
        {out, 0, m, 3, OPT_XOF_MGF1_SHA256, -BAD_PARAM_ERROR},
        {out, 0, m, 3, 0x211, -BAD_PARAM_ERROR},
        {out, 8, m, 3, 0x211, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x217, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x21A, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x21F, -BAD_FLAG_ERROR},
        {out, 8, nullptr, 0, OPT_XOF_MGF1_SHA1, 8},
        {out, 8, m, 3, 0x201, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x205, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x20C, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x003, -BAD_FLAG_ERROR},
        {out, 8, m, 3, 0x1203, 8},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(XOF_Bytes(c.output, c.outputLength, c.message, c.messageLength, c.options), c.result)
            << "row " << (&c - cases);
        EXPECT_EQ(API_ErrorCode(), c.result < 0 ? -c.result : c.result) << "every result is latched";
    }
}

TEST(Prf, KmacWithLongKeysAndCustomStrings) {
    int checked = 0;
    for (const VectorRecord& r : ReadVectorFile("mac_reference.txt")) {
        const std::string name = r.section.begin()->first;
        if (name != "KMAC128" && name != "KMAC256") continue;
        const int32_t option = name == "KMAC128" ? OPT_KMAC_128 : OPT_KMAC_256;
        EXPECT_EQ(Prf(r.Bytes("DATA"), r.Bytes("KEY"), r.Get("S"), int32_t(r.Int("L")), option), r.Get("OUTPUT"))
            << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 16);
    checked = 0;
    for (const VectorRecord& r : ReadVectorFile("parsed/kmac_samples_sp800-185.txt")) {
        const int32_t option = r.section.count("KMAC128") ? OPT_KMAC_128 : OPT_KMAC_256;
        EXPECT_EQ(Prf(r.Bytes("DATA"), r.Bytes("KEY"), r.Get("S"), int32_t(r.Int("L") / 8), option),
                  ToHex(r.Bytes("OUTPUT")))
            << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 6);
}

TEST(Prf, OutputLengthIsBoundIntoTheCode) {
    const std::vector<uint8_t> msg = {1, 2, 3}, key = {4, 5, 6, 7};
    for (int32_t option : {OPT_KMAC_128, OPT_KMAC_256}) {
        std::string a = Prf(msg, key, "", 32, option), b = Prf(msg, key, "", 33, option);
        EXPECT_NE(a.substr(0, 2), b.substr(0, 2));
        // MAC_Bytes is the same KMAC at its fixed length.
        uint8_t out[64];
        int32_t n = MAC_Bytes(out, 64, msg.data(), 3, key.data(), 4, option);
        EXPECT_EQ(Prf(msg, key, "", n, option), ToHex(out, size_t(n)));
    }
    // SHAKE output is a prefix of longer output; KMAC's is not.
    EXPECT_EQ(Prf(msg, key, "", 33, OPT_XOF_SHAKE128).substr(0, 64), Prf(msg, {}, "", 32, OPT_XOF_SHAKE128));
}

TEST(Prf, ChecksInOrder) {
    uint8_t out[8];
    const uint8_t* m = Bytes("abc");
    const uint8_t* k = Bytes("key");
    struct Case {
        uint8_t* output;
        int32_t outputLength;
        const uint8_t* message;
        int32_t messageLength;
        const uint8_t* key;
        int32_t keyLength;
        const char* custom;
        int32_t options, result;
    } cases[] = {
        {nullptr, 8, m, 3, k, 3, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        {out, -1, m, 3, k, 3, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        // Unlike XOF_Bytes, a null message is refused with length 0 too.
        {out, 8, nullptr, 0, k, 3, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        {out, 8, nullptr, 0, k, 3, "", OPT_XOF_SHAKE128, -BAD_PARAM_ERROR},
        {out, 8, m, -1, k, 3, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        {out, 8, nullptr, 0, k, 3, "", 0x200, -BAD_PARAM_ERROR},
        {out, 8, m, 3, k, 3, "", 0x200, -BAD_FLAG_ERROR},
        {out, 8, m, 3, k, 3, "", 0x205, -BAD_FLAG_ERROR},
        {out, 8, m, 3, k, 3, "", 0x210, -BAD_FLAG_ERROR},
        {out, 0, m, 3, k, 3, "", OPT_KMAC_256, 0},
        {out, 0, m, 3, k, 3, "", OPT_XOF_SHAKE256, 0},
        {out, 8, m, 0, nullptr, 0, "", OPT_KMAC_128, 8},
        {out, 8, m, 3, nullptr, 0, nullptr, OPT_XOF_SHAKE128, 8},
        // What the interface leaves unscreened would be read out of bounds:
        // refused instead.
        {out, 8, m, 3, nullptr, 4, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        {out, 8, m, 3, k, -1, "", OPT_KMAC_128, -BAD_PARAM_ERROR},
        {out, 8, m, 3, k, 3, nullptr, OPT_KMAC_256, -BAD_PARAM_ERROR},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PRF_Bytes(c.output, c.outputLength, c.message, c.messageLength, c.key, c.keyLength, c.custom,
                            c.options),
                  c.result)
            << "row " << (&c - cases);
        EXPECT_EQ(API_ErrorCode(), c.result < 0 ? -c.result : c.result);
    }
}
