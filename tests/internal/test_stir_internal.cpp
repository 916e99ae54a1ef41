// The short cuts of the light stir give what the long way would: the CRC
// of the load record from its two parts, and events copied into a pool in
// runs hash as the byte stream they stand for.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "digest/sha512.h"
#include "rng/entropy.h"
#include "test_support.h"

TEST(StirShortcuts, LoadRecordCrcFromItsParts) {
    std::vector<uint64_t> words = {0, 1, ~uint64_t(0), uint64_t(1) << 63, 0x0123456789abcdefull};
    uint64_t x = 0x9e3779b97f4a7c15ull;
    for (int i = 0; i < 200; ++i) words.push_back(x = x * 6364136223846793005ull + 1442695040888963407ull);
    for (uint64_t word : words) {
        uint8_t record[32] = {};
        std::memcpy(record, &word, 8);
        EXPECT_EQ(Crc64LeadingWord(word), Crc64Digest(record, 32)) << std::hex << word;
        // The rest of a record joins by exclusive-or of its own CRC.
        for (int k = 8; k < 32; ++k) record[k] = uint8_t(word >> (k % 8 * 8)) ^ uint8_t(k);
        EXPECT_EQ(Crc64LeadingWord(word) ^ Crc64Digest(record + 8, 24), Crc64Digest(record, 32));
    }
}

TEST(StirShortcuts, EventsHashAsOneByteStreamAcrossBlockEdges) {
    static EntropyPools pools;
    InitPools(&pools);
    std::vector<uint8_t> stream;
    uint8_t data[32];
    for (int i = 0; i < 120; ++i) {
        // Every length from 0 to 32, so that events end on, before and
        // across the 128-byte edges of the pool's hash blocks.
        uint32_t length = uint32_t(i % 33);
        for (uint32_t k = 0; k < length; ++k) data[k] = uint8_t(i * 31 + k);
        uint8_t source = uint8_t(i % 9);
        pools.nextPool[source] = 0;
        AddEvent(&pools, source, data, length);
        stream.push_back(source);
        stream.push_back(uint8_t(length));
        stream.insert(stream.end(), data, data + length);
    }
    ASSERT_GT(stream.size(), 5 * 128u);
    EXPECT_EQ(pools.pool[0].byteCount, stream.size());
    uint8_t drawn[kPoolDrawRoom];
    ASSERT_EQ(ReseedFromPools(&pools, drawn, 1), 64u);
    for (uint8_t b : {1, 0, 0, 0}) stream.push_back(b);  // the pool's serial
    Sha512Context ctx;
    uint8_t expected[64];
    Sha512Start(&ctx);
    Sha512Update(&ctx, stream.data(), uint32_t(stream.size()));
    Sha512Final(expected, &ctx);
    EXPECT_EQ(ToHex(drawn, 64), ToHex(expected, 64));
}
