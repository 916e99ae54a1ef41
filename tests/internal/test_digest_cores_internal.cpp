// Digest cores from the inside.
#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "digest/bit_digest.h"
#include "digest/digest.h"
#include "verimond.h"
#include "test_support.h"

namespace {
bool AllZero(const void* p, size_t n) { return std::memcmp(p, ByteVec(n).data(), n) == 0; }

// The record left by start, update("abc") and final, filled with 0xAA first.
template <typename Context, typename Start, typename Update, typename Final>
std::vector<uint8_t> Leftover(Start start, Update update, Final final) {
    Context ctx;
    std::memset(&ctx, 0xAA, sizeof ctx);
    start(&ctx);
    update(&ctx, Bytes("abc"), 3u);
    uint8_t out[64];
    final(out, &ctx);
    const auto* p = reinterpret_cast<const uint8_t*>(&ctx);
    return {p, p + sizeof ctx};
}
}  // namespace

// MD5 and MD2 zero their whole record; the SHA family and RIPEMD-160 clear
// their first four bytes and no more.
TEST(DigestCores, WhatEachFinalLeaves) {
    const std::tuple<const char*, std::vector<uint8_t>, bool> cases[] = {
        {"MD5", Leftover<Md5Context>(Md5Start, Md5Update, Md5Final), true},
        {"MD2", Leftover<Md2Context>(Md2Start, Md2Update, Md2Final), true},
        {"SHA-1", Leftover<Sha1Context>(Sha1Start, Sha1Update, Sha1Final), false},
        {"RIPEMD-160", Leftover<Ripemd160Context>(Ripemd160Start, Ripemd160Update, Ripemd160Final), false},
        {"SHA-256", Leftover<Sha256Context>(Sha256Start, Sha256Update, Sha256Final), false},
        {"SHA-224", Leftover<Sha256Context>(Sha224Start, Sha256Update, Sha224Final), false},
        {"SHA-512", Leftover<Sha512Context>(Sha512Start, Sha512Update, Sha512Final), false},
        {"SHA-384", Leftover<Sha512Context>(Sha384Start, Sha512Update, Sha384Final), false}};
    for (const auto& [name, record, whole] : cases) {
        EXPECT_TRUE(AllZero(record.data(), 4)) << name;
        EXPECT_EQ(AllZero(record.data() + 4, 4), whole) << name;
        if (whole) EXPECT_TRUE(AllZero(record.data(), record.size())) << name;
    }
}

// 2^32 - 8 bits counted; two more bytes carry into the high word. The final
// leaves the padded block, the count in the digest's byte order, behind.
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

// SHAKE has no 512-bit rate; both finishes wipe the whole record.
TEST(DigestCores, SpongeRecords) {
    Sha3Context ctx;
    EXPECT_EQ(ShakeStart(&ctx, 512), -1);
    uint8_t out[500];
    Sha3Start(&ctx, 256);
    Sha3Absorb(&ctx, out, 137);
    Sha3Finish(out, 20, &ctx);
    EXPECT_TRUE(AllZero(&ctx, sizeof ctx));
    ShakeStart(&ctx, 128);
    SpongeFinish(out, 500, &ctx, 0x1F);
    EXPECT_TRUE(AllZero(&ctx, sizeof ctx));
}

// Against the padding written out in bits (message, domain bits 0 1, then
// 1 0...0 1), each block through the core's own permutation.
TEST(DigestCores, Sha3BitFinalNearTheEndOfTheRate) {
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
            for (int bit : {0, 1, 1}) bits.push_back(bit);
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
