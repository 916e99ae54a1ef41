// Published digest vectors through the HASH_ one-shot, hex and bit calls.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <regex>
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
    {"nist-cavp/sha/byte/SHA1LongMsg_subset.rsp", OPT_HASH_SHA1},
    {"nist-cavp/sha/byte/SHA224LongMsg_subset.rsp", OPT_HASH_SHA224},
    {"nist-cavp/sha/byte/SHA256LongMsg_subset.rsp", OPT_HASH_SHA256},
    {"nist-cavp/sha/byte/SHA384LongMsg_subset.rsp", OPT_HASH_SHA384},
    {"nist-cavp/sha/byte/SHA512LongMsg_subset.rsp", OPT_HASH_SHA512},
    {"nist-cavp/sha3/SHA3_224ShortMsg.rsp", OPT_HASH_SHA3_224},
    {"nist-cavp/sha3/SHA3_256ShortMsg.rsp", OPT_HASH_SHA3_256},
    {"nist-cavp/sha3/SHA3_384ShortMsg.rsp", OPT_HASH_SHA3_384},
    {"nist-cavp/sha3/SHA3_512ShortMsg.rsp", OPT_HASH_SHA3_512},
    {"nist-cavp/sha3/SHA3_224LongMsg_subset.rsp", OPT_HASH_SHA3_224},
    {"nist-cavp/sha3/SHA3_256LongMsg_subset.rsp", OPT_HASH_SHA3_256},
    {"nist-cavp/sha3/SHA3_384LongMsg_subset.rsp", OPT_HASH_SHA3_384},
    {"nist-cavp/sha3/SHA3_512LongMsg_subset.rsp", OPT_HASH_SHA3_512},
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

// The FIPS 202 example file: "SHA3-256 sample of 30-bit message", the bits
// as 0/1 in message order, then "Hash val is" and the digest bytes.
struct BitSample {
    int32_t option;
    std::string bits;
    std::string digest;
};

std::vector<BitSample> ReadSha3BitSamples() {
    std::ifstream in(VectorPath("nist-examples/fips202/SHA3TestVectors.txt"));
    std::vector<BitSample> samples;
    const std::regex head(R"(SHA3-(\d+) sample of (\d+)-bit message)");
    enum { kNone, kBits, kDigest } part = kNone;
    std::string line;
    std::smatch m;
    while (std::getline(in, line)) {
        if (std::regex_search(line, m, head)) {
            int bits = std::stoi(m[1]);
            int32_t option = bits == 224 ? OPT_HASH_SHA3_224
                             : bits == 256 ? OPT_HASH_SHA3_256
                             : bits == 384 ? OPT_HASH_SHA3_384
                                           : OPT_HASH_SHA3_512;
            samples.push_back({option, "", ""});
            part = kNone;
        } else if (line.find("Msg as bit string") != std::string::npos) {
            part = kBits;
        } else if (line.find("Hash val is") != std::string::npos) {
            part = kDigest;
        } else if (!samples.empty() && line.find('#') == std::string::npos) {
            for (char c : line) {
                if (part == kBits && (c == '0' || c == '1')) samples.back().bits += c;
                if (part == kDigest && std::isxdigit(uint8_t(c))) samples.back().digest += char(std::tolower(c));
            }
        }
    }
    return samples;
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
    auto samples = ReadSha3BitSamples();
    ASSERT_EQ(samples.size(), 24u);
    for (const BitSample& s : samples) {
        // FIPS 202 lists bits in its own order: the first bit is the low bit
        // of a byte. The call takes the last partial byte's bits at the high
        // end, so that byte is moved up by 8 - b.
        size_t bits = s.bits.size();
        std::vector<uint8_t> msg(bits / 8 + 1, 0);
        for (size_t i = 0; i < bits; ++i)
            if (s.bits[i] == '1') msg[i / 8] |= uint8_t(1u << (i % 8));
        if (bits % 8 != 0) msg[bits / 8] = uint8_t(msg[bits / 8] << (8 - bits % 8));
        EXPECT_EQ(Hex(msg, s.option, int32_t(bits)), s.digest) << bits << " bits, option " << s.option;
    }
}
