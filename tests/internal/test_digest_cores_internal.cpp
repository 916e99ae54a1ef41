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

// 2^32 - 8 bits already counted (63 bytes buffered); two more bytes carry
// into the high word. The final leaves the padded block in the record, with
// the count in the digest's byte order.
template <typename Context, typename Start, typename Update, typename Final>
Context CountCarried(Start start, Update update, Final final, uint32_t high = 0) {
    Context ctx;
    start(&ctx);
    ctx.countLow = decltype(ctx.countLow)(-8);
    ctx.countHigh = high;
    update(&ctx, Bytes("xy"), 2u);
    uint8_t out[64];
    final(out, &ctx);
    return ctx;
}

TEST(DigestCores, BitCountsCarry) {
    auto sha1 = CountCarried<Sha1Context>(Sha1Start, Sha1Update, Sha1Final);
    EXPECT_TRUE(sha1.countHigh == 1 && sha1.countLow == 8);
    EXPECT_EQ(ToHex(sha1.block + 56, 8), "0000000100000008");
    auto sha256 = CountCarried<Sha256Context>(Sha256Start, Sha256Update, Sha256Final, 7);
    EXPECT_EQ(ToHex(sha256.block + 56, 8), "0000000800000008");
    auto rmd = CountCarried<Ripemd160Context>(Ripemd160Start, Ripemd160Update, Ripemd160Final);
    EXPECT_EQ(ToHex(rmd.block + 56, 8), "0800000001000000");
    auto sha512 = CountCarried<Sha512Context>(Sha512Start, Sha512Update, Sha512Final);
    EXPECT_EQ(ToHex(sha512.block + 112, 16), "00000000000000010000000000000008");
    auto md5 = CountCarried<Md5Context>(Md5Start, Md5Update, [](uint8_t*, Md5Context*) {});  // its final wipes all
    EXPECT_TRUE(md5.countHigh == 1 && md5.countLow == 8);
}

TEST(DigestCores, SpongeRecords) {
    // Sizes without a rate are refused and leave no marker.
    Sha3Context ctx;
    std::memset(&ctx, 0xAA, sizeof ctx);
    EXPECT_EQ(Sha3Start(&ctx, 128), -1);
    EXPECT_EQ(ctx.marker, 0u);
    std::memset(&ctx, 0xAA, sizeof ctx);
    EXPECT_EQ(ShakeStart(&ctx, 512), -1);
    EXPECT_EQ(ctx.marker, 0u);
    // Absorb keeps fewer than rate bytes and reports how many; the finish
    // is cut by its capacity, and both finishes wipe the record.
    Sha3Start(&ctx, 256);
    std::vector<uint8_t> data(400, 0x61);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 135), 135u);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 1), 0u);
    EXPECT_EQ(Sha3Absorb(&ctx, data.data(), 400), 400u % 136);
    uint8_t out[512];
    EXPECT_EQ(Sha3Finish(out, 20, &ctx), 20u);
    EXPECT_TRUE(AllZero(ctx));
    ShakeStart(&ctx, 128);
    EXPECT_EQ(SpongeFinish(out, 500, &ctx, 0x1F), 500u);
    EXPECT_TRUE(AllZero(ctx));
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
