// Stream cores where the exports cannot reach: a chosen Salsa20 block
// counter and the ChaCha20 counter layouts and carry.
#include <gtest/gtest.h>

#include "stream/chacha20.h"
#include "stream/salsa20.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
const ByteVec keyBytes = Pattern(32, 0x80), nonceBytes = Pattern(16, 0xf0);
const uint8_t *kKey = keyBytes.data(), *kNonce = nonceBytes.data();

ByteVec Keystream(Chacha20State* s, size_t n) {
    ByteVec zeros(n, 0), out(n);
    Chacha20Xor(s, zeros.data(), out.data(), n);
    return out;
}
}  // namespace

TEST(Salsa20Core, PublishedBlocksAtAnyCounter) {
    int checked = 0;
    for (const auto& r : ReadVectorFile("estream/salsa20_verified_subset.txt")) {
        ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), out(64, 0);
        uint64_t counter = std::stoull(r.Get("COUNTER"), nullptr, 16) + uint64_t(r.Int("OFFSET")) / 64;
        Salsa20State s;
        ASSERT_EQ(Salsa20Setup(&s, key.data(), int32_t(key.size()), iv.data(), 8), 0);
        s.words[8] = uint32_t(counter);
        s.words[9] = uint32_t(counter >> 32);
        Salsa20Xor(&s, out.data(), out.data(), 64);
        EXPECT_EQ(ToHex(out), ToHex(r.Bytes("STREAM"))) << "line " << r.line;
        ++checked;
    }
    EXPECT_EQ(checked, 7);
}

TEST(Chacha20Core, CounterLayoutsAndCarry) {
    Chacha20State a, b;
    // A 16-byte nonce carries its own counter: the argument is ignored.
    ASSERT_EQ(Chacha20Setup(&a, kKey, 32, kNonce, 16, 0), 0);
    ASSERT_EQ(Chacha20Setup(&b, kKey, 32, kNonce, 16, 12345), 0);
    EXPECT_EQ(Keystream(&a, 80), Keystream(&b, 80));
    // 12-byte nonce, counter 0xFFFFFFFF: the second block runs with counter 0
    // and the first nonce word plus one (no wrap test, unlike RFC 8439).
    ASSERT_EQ(Chacha20Setup(&a, kKey, 32, kNonce, 12, 0xFFFFFFFFu), 0);
    ByteVec two = Keystream(&a, 128);
    EXPECT_EQ(a.words[12], 1u);
    uint8_t bumped[12];
    std::copy(kNonce, kNonce + 12, bumped);
    bumped[0]++;  // the first little-endian word plus one
    ASSERT_EQ(Chacha20Setup(&b, kKey, 32, bumped, 12, 0), 0);
    EXPECT_EQ(ByteVec(two.begin() + 64, two.end()), Keystream(&b, 64));
    // The 8-byte layout carries word 12 into word 13 in the same way; a
    // short call spends its whole block.
    ASSERT_EQ(Chacha20Setup(&a, kKey, 16, kNonce, 8, 0xFFFFFFFFu), 0);
    Keystream(&a, 5);
    EXPECT_EQ(a.words[12], 0u);
    EXPECT_EQ(a.words[13], 1u);
}
