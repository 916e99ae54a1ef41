// Digest cores from the inside: what each final leaves in its record, bit
// counts that carry, the sponge record, and the SHA-3 bit final at the end
// of the rate.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "digest/bit_digest.h"
#include "digest/digest.h"
#include "verimond.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
template <typename T>
bool AllZero(const T& record, size_t from = 0) {
    const auto* p = reinterpret_cast<const uint8_t*>(&record);
    for (size_t i = from; i < sizeof record; ++i)
        if (p[i] != 0) return false;
    return true;
}

// Runs start, update("abc"), final on a record filled with 0xAA first and
// returns what is left.
template <typename Context, typename Start, typename Update, typename Final>
Context Leftover(Start start, Update update, Final final) {
    Context ctx;
    std::memset(&ctx, 0xAA, sizeof ctx);
    start(&ctx);
    update(&ctx, Bytes("abc"), 3u);
    uint8_t out[64];
    final(out, &ctx);
    return ctx;
}
}  // namespace

TEST(DigestCores, WhatEachFinalLeaves) {
    // MD5 and MD2 zero their whole record.
    EXPECT_TRUE(AllZero(Leftover<Md5Context>(Md5Start, Md5Update, Md5Final)));
    EXPECT_TRUE(AllZero(Leftover<Md2Context>(Md2Start, Md2Update, Md2Final)));
    // The SHA family and RIPEMD-160 clear their first four bytes and no more.
    auto sha1 = Leftover<Sha1Context>(Sha1Start, Sha1Update, Sha1Final);
    auto rmd = Leftover<Ripemd160Context>(Ripemd160Start, Ripemd160Update, Ripemd160Final);
    auto sha256 = Leftover<Sha256Context>(Sha256Start, Sha256Update, Sha256Final);
    auto sha224 = Leftover<Sha256Context>(Sha224Start, Sha256Update, Sha224Final);
    auto sha512 = Leftover<Sha512Context>(Sha512Start, Sha512Update, Sha512Final);
    auto sha384 = Leftover<Sha512Context>(Sha384Start, Sha512Update, Sha384Final);
    for (uint32_t first : {sha1.h[0], rmd.h[0], sha256.h[0], sha224.h[0], uint32_t(sha512.h[0]), uint32_t(sha384.h[0])})
        EXPECT_EQ(first, 0u);
    EXPECT_NE(sha512.h[0] >> 32, 0u);  // the upper half of the first word stays
    for (uint32_t second : {sha1.h[1], rmd.h[1], sha256.h[1], sha224.h[1]}) EXPECT_NE(second, 0u);
    EXPECT_TRUE(sha1.countLow == 24 && sha256.countLow == 24 && sha512.countLow == 24);
    EXPECT_EQ(sha1.block[3], 0x80);  // the padded block stays too
    EXPECT_EQ(sha224.isSha224, 1u);
    EXPECT_EQ(sha384.isSha384, 1u);
    EXPECT_EQ(sha512.isSha384, 0u);
}

TEST(DigestCores, BitCountsCarry) {
    // 2^32 - 8 bits already counted (63 bytes buffered); two more bytes carry
    // into the high word. The final leaves the padded block in the record,
    // with the count in the digest's byte order.
    uint8_t out[64];
    Sha1Context sha1;
    Sha1Start(&sha1);
    sha1.countLow = 0xFFFFFFF8u;
    Sha1Update(&sha1, Bytes("xy"), 2);
    EXPECT_TRUE(sha1.countHigh == 1 && sha1.countLow == 8);
    Sha1Final(out, &sha1);
    EXPECT_EQ(ToHex(sha1.block + 56, 8), "0000000100000008");

    Sha256Context sha256;
    Sha256Start(&sha256);
    sha256.countLow = 0xFFFFFFF8u;
    sha256.countHigh = 0x7;
    Sha256Update(&sha256, Bytes("xy"), 2);
    Sha256Final(out, &sha256);
    EXPECT_EQ(ToHex(sha256.block + 56, 8), "0000000800000008");

    Ripemd160Context rmd;
    Ripemd160Start(&rmd);
    rmd.countLow = 0xFFFFFFF8u;
    Ripemd160Update(&rmd, Bytes("xy"), 2);
    Ripemd160Final(out, &rmd);
    EXPECT_EQ(ToHex(rmd.block + 56, 8), "0800000001000000");

    Md5Context md5;
    Md5Start(&md5);
    md5.countLow = 0xFFFFFFF8u;
    Md5Update(&md5, Bytes("xy"), 2);
    EXPECT_TRUE(md5.countHigh == 1 && md5.countLow == 8);

    Sha512Context sha512;
    Sha512Start(&sha512);
    sha512.countLow = ~uint64_t(0) - 7;
    Sha512Update(&sha512, Bytes("xy"), 2);
    Sha512Final(out, &sha512);
    EXPECT_EQ(ToHex(sha512.block + 112, 16), "00000000000000010000000000000008");
}

TEST(DigestCores, Sha3Records) {
    const struct {
        int (*start)(Sha3Context*, uint32_t);
        uint32_t bits, digestLength, rate;
    } cases[] = {{Sha3Start, 224, 28, 144}, {Sha3Start, 256, 32, 136}, {Sha3Start, 384, 48, 104},
                 {Sha3Start, 512, 64, 72},  {ShakeStart, 128, 0, 168}, {ShakeStart, 256, 0, 136},
                 {Sha3Start, 128, 0, 0},    {ShakeStart, 512, 0, 0}};
    for (const auto& c : cases) {
        Sha3Context ctx;
        std::memset(&ctx, 0xAA, sizeof ctx);
        EXPECT_EQ(c.start(&ctx, c.bits), c.rate == 0 ? -1 : 0) << c.bits;
        EXPECT_TRUE(ctx.digestLength == c.digestLength && ctx.rate == c.rate && ctx.laneCount == c.rate / 8) << c.bits;
        EXPECT_EQ(ctx.marker, c.rate == 0 ? 0u : kSha3Marker) << c.bits;
        EXPECT_TRUE(ctx.buffered == 0 && AllZero(ctx.state) && AllZero(ctx.block)) << c.bits;
    }
    // Absorb keeps fewer than rate bytes and reports how many; the finish
    // is cut by its capacity and wipes the record.
    Sha3Context ctx;
    Sha3Start(&ctx, 256);
    std::vector<uint8_t> data(400, 0x61);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 135), 135u);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 1), 0u);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 400), 400u % 136);
    uint8_t out[64];
    EXPECT_EQ(Sha3Finish(out, 20, &ctx), 20u);
    EXPECT_TRUE(AllZero(ctx));
}

TEST(DigestCores, SpongeFinishForShake) {
    uint8_t out[512];
    Sha3Context ctx;
    ShakeStart(&ctx, 128);
    EXPECT_EQ(SpongeFinish(out, 16, &ctx, 0x1F), 16u);
    EXPECT_EQ(ToHex(out, 16), "7f9c2ba4e88f827d616045507605853e");
    EXPECT_TRUE(AllZero(ctx));
    int checked = 0;
    for (auto [file, bits] : {std::pair{"nist-cavp/sha3/SHAKE128VariableOut_subset.rsp", 128u},
                              std::pair{"nist-cavp/sha3/SHAKE256VariableOut_subset.rsp", 256u}}) {
        for (const VectorRecord& r : ReadVectorFile(file)) {
            std::vector<uint8_t> msg = r.Bytes("Msg");
            uint32_t length = uint32_t(r.Int("Outputlen") / 8);
            ShakeStart(&ctx, bits);
            Sha3Absorb(&ctx, msg.data(), uint32_t(msg.size()));
            ASSERT_EQ(SpongeFinish(out, length, &ctx, 0x1F), length);
            EXPECT_EQ(ToHex(out, length), r.Get("Output")) << file << " COUNT " << r.Get("COUNT");
            ++checked;
        }
    }
    EXPECT_EQ(checked, 19);
}

TEST(DigestCores, Sha3BitFinalNearTheEndOfTheRate) {
    // The reference here is the padding as the standard defines it on bits:
    // message bits, the domain bits 0 1, then 1 0...0 1 up to a whole number
    // of rate blocks; each block goes through the core's own permutation.
    const uint32_t rate = 136;  // SHA3-256
    for (uint32_t whole : {rate - 1, rate - 2, rate, 0u, 2 * rate - 1}) {
        for (uint32_t b = 1; b < 8; ++b) {
            std::vector<uint8_t> msg(whole + 1);
            for (uint32_t i = 0; i < whole; ++i) msg[i] = uint8_t(i * 13 + b);
            uint8_t partial = uint8_t(0x5B >> (8 - b));  // b message bits, standard order
            msg[whole] = uint8_t(partial << (8 - b));    // as the call takes them
            uint8_t got[64];
            ASSERT_EQ(DigestBits(got, msg.data(), int32_t(whole * 8 + b), OPT_HASH_SHA3_256), 32);

            std::vector<int> bits;
            for (uint32_t i = 0; i < whole * 8; ++i) bits.push_back((msg[i / 8] >> (i % 8)) & 1);
            for (uint32_t i = 0; i < b; ++i) bits.push_back((partial >> i) & 1);
            bits.push_back(0);
            bits.push_back(1);
            bits.push_back(1);
            while ((bits.size() + 1) % (rate * 8) != 0) bits.push_back(0);
            bits.push_back(1);
            Sha3Context ctx;
            Sha3Start(&ctx, 256);
            for (size_t block = 0; block < bits.size() / (rate * 8); ++block) {
                std::memset(ctx.block, 0, rate);
                for (uint32_t i = 0; i < rate * 8; ++i)
                    ctx.block[i / 8] |= uint8_t(bits[block * rate * 8 + i] << (i % 8));
                Sha3AbsorbBlock(&ctx);
            }
            uint8_t want[32];
            Sha3Squeeze(want, 32, &ctx);
            EXPECT_EQ(ToHex(got, 32), ToHex(want, 32)) << whole << " bytes and " << b << " bits";
        }
    }
}
