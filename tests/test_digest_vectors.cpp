// Published digest vectors through the HASH_ one-shot, hex and bit calls.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
// "Len" counts bits; Len = 0 comes with Msg = 00, the empty message.
std::vector<uint8_t> MessageOf(const VectorRecord& r, bool bitLength) {
    std::vector<uint8_t> msg = r.Bytes("Msg");
    long bits = r.Int("Len");
    msg.resize(bitLength ? size_t((bits + 7) / 8) : size_t(bits / 8));
    return msg;
}

struct VectorSet {
    const char* file;
    int32_t option;
};

const VectorSet kByteSets[] = {
    {"nist-cavp/sha/byte/SHA1ShortMsg.rsp", OPT_HASH_SHA1},
    {"nist-cavp/sha/byte/SHA224ShortMsg.rsp", OPT_HASH_SHA224},
    {"nist-cavp/sha/byte/SHA256ShortMsg.rsp", OPT_HASH_SHA256},
    {"nist-cavp/sha/byte/SHA384ShortMsg.rsp", OPT_HASH_SHA384},
    {"nist-cavp/sha/byte/SHA512ShortMsg.rsp", OPT_HASH_SHA512},
    {"nist-cavp/sha/byte/SHA1LongMsg.rsp", OPT_HASH_SHA1},
    {"nist-cavp/sha/byte/SHA224LongMsg.rsp", OPT_HASH_SHA224},
    {"nist-cavp/sha/byte/SHA256LongMsg.rsp", OPT_HASH_SHA256},
    {"nist-cavp/sha/byte/SHA384LongMsg.rsp", OPT_HASH_SHA384},
    {"nist-cavp/sha/byte/SHA512LongMsg.rsp", OPT_HASH_SHA512},
    {"nist-cavp/sha3/SHA3_224ShortMsg.rsp", OPT_HASH_SHA3_224},
    {"nist-cavp/sha3/SHA3_256ShortMsg.rsp", OPT_HASH_SHA3_256},
    {"nist-cavp/sha3/SHA3_384ShortMsg.rsp", OPT_HASH_SHA3_384},
    {"nist-cavp/sha3/SHA3_512ShortMsg.rsp", OPT_HASH_SHA3_512},
    {"nist-cavp/sha3/SHA3_224LongMsg.rsp", OPT_HASH_SHA3_224},
    {"nist-cavp/sha3/SHA3_256LongMsg.rsp", OPT_HASH_SHA3_256},
    {"nist-cavp/sha3/SHA3_384LongMsg.rsp", OPT_HASH_SHA3_384},
    {"nist-cavp/sha3/SHA3_512LongMsg.rsp", OPT_HASH_SHA3_512},
    {"rfc/rfc1321_md5.txt", OPT_HASH_MD5},
    {"rfc/rfc1319_md2.txt", OPT_HASH_MD2},
    {"rfc/ripemd160_vectors.txt", OPT_HASH_RMD160},
};

const VectorSet kBitSets[] = {
    {"nist-cavp/sha/bit/SHA1ShortMsg.rsp", OPT_HASH_SHA1},
    {"nist-cavp/sha/bit/SHA224ShortMsg.rsp", OPT_HASH_SHA224},
    {"nist-cavp/sha/bit/SHA256ShortMsg.rsp", OPT_HASH_SHA256},
    {"nist-cavp/sha/bit/SHA384ShortMsg.rsp", OPT_HASH_SHA384},
    {"nist-cavp/sha/bit/SHA512ShortMsg.rsp", OPT_HASH_SHA512},
};

// Hex through the byte call or, with bits >= 0, the bit call.
std::string Hex(const std::vector<uint8_t>& msg, int32_t option, int32_t bits = -1) {
    char out[129];
    int32_t n = bits < 0 ? HASH_HexFromBytes(out, 128, msg.data(), int32_t(msg.size()), option)
                         : HASH_HexFromBits(out, 128, msg.data(), bits, option);
    return n < 0 ? "error " + std::to_string(n) : std::string(out);
}

}  // namespace

TEST(DigestVectors, PublishedByteMessages) {
    for (const VectorSet& set : kByteSets) {
        auto records = ReadVectorFile(set.file);
        ASSERT_FALSE(records.empty()) << set.file;
        bool bitInput = set.option != OPT_HASH_MD5 && set.option != OPT_HASH_MD2 && set.option != OPT_HASH_RMD160;
        for (const VectorRecord& r : records) {
            std::vector<uint8_t> msg = MessageOf(r, false);
            ASSERT_EQ(Hex(msg, set.option), r.Get("MD")) << set.file << " line " << r.line;
            if (!bitInput) continue;
            // Whole bytes take the ordinary final in the bit call.
            msg.push_back(0);  // the bit call wants a buffer even for 0 bits
            ASSERT_EQ(Hex(msg, set.option, int32_t(r.Int("Len"))), r.Get("MD")) << set.file << " line " << r.line;
        }
    }
}

TEST(DigestVectors, BitOrientedSha1AndSha2) {
    for (const VectorSet& set : kBitSets) {
        auto records = ReadVectorFile(set.file);
        ASSERT_FALSE(records.empty()) << set.file;
        for (const VectorRecord& r : records) {
            std::vector<uint8_t> msg = MessageOf(r, true);
            msg.push_back(0);
            ASSERT_EQ(Hex(msg, set.option, int32_t(r.Int("Len"))), r.Get("MD")) << set.file << " line " << r.line;
        }
    }
}

TEST(DigestVectors, BitOrientedSha3) {
    auto samples = ReadBitSamples("nist-examples/fips202/SHA3TestVectors.txt");
    ASSERT_EQ(samples.size(), 24u);
    for (const BitSample& s : samples) {
        const int32_t option = s.algorithm == "SHA3-224"   ? OPT_HASH_SHA3_224
                               : s.algorithm == "SHA3-256" ? OPT_HASH_SHA3_256
                               : s.algorithm == "SHA3-384" ? OPT_HASH_SHA3_384
                                                           : OPT_HASH_SHA3_512;
        EXPECT_EQ(Hex(s.Message(), option, int32_t(s.bits.size())), s.output) << s.bits.size() << " bits, " << s.algorithm;
    }
}
