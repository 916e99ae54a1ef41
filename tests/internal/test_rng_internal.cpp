// The generator from the inside.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "child_run.h"
#include "digest/digest.h"
#include "frame/frame.h"
#include "rng/drbg.h"
#include "rng/entropy.h"
#include "rng/machine.h"
#include "rng/prompt.h"
#include "rng/seedfile.h"
#include "rng/stattest.h"
#include "test_support.h"

namespace {
// Sets the time of the last draw to now minus ageMs.
void SetLastDraw(EntropyPools* pools, uint64_t ageMs) {
    uint64_t last = MonotonicTime100ns() - ageMs * 10000;
    pools->lastReseedHigh = uint32_t(last >> 32);
    pools->lastReseedLow = uint32_t(last);
}

DrbgState KnownState() {
    DrbgState s{};
    const auto& v = kDrbgHealthVector;
    DrbgRawInstantiate(&s, v.entropy, 32, v.nonce, 16, v.personalisation, 32);
    return s;
}

std::string Sha512Hex(const ByteVec& data) {
    uint8_t out[64];
    DigestRaw(out, data.data(), uint32_t(data.size()), OPT_HASH_SHA512);
    return ToHex(out, 64);
}
}  // namespace

TEST(DrbgCore, AdditionalInputIsCutToSixtyFourBytesForAGenerateOnly) {
    ByteVec extra(100000, 0x5C), outA(80), outB(80);
    DrbgState a = KnownState(), b = KnownState();
    DrbgRawGenerate(&a, outA.data(), 80, extra.data(), 100);
    DrbgRawGenerate(&b, outB.data(), 80, extra.data(), 64);
    EXPECT_EQ(outA, outB);
    DrbgReseed(&a, extra.data(), 32, extra.data(), uint32_t(extra.size()));
    DrbgReseed(&b, extra.data(), 32, extra.data(), 64);
    EXPECT_NE(ToHex(a.key, 64), ToHex(b.key, 64));
}

TEST(DrbgCore, HealthCheckCatchesEachDamagedAnswerAtItsDepth) {
    const uint32_t draws = g_sharedRng.pools.reseedCount;
    SetLastDraw(&g_sharedRng.pools, 0);
    for (int depth = 0; depth <= 2; ++depth) EXPECT_EQ(DrbgHealthCheck(depth), 0) << depth;
    EXPECT_EQ(g_sharedRng.pools.reseedCount, draws + 1);  // only depth 2 forces a draw
    struct Case {
        const char* name;
        uint8_t* (*field)(DrbgKnownAnswer&);
        int firstDepth;
    } cases[] = {
        {"entropy", [](DrbgKnownAnswer& v) { return v.entropy; }, 0},
        {"instantiate key", [](DrbgKnownAnswer& v) { return v.instantiateKey; }, 0},
        {"instantiate value", [](DrbgKnownAnswer& v) { return v.instantiateValue + 63; }, 0},
        {"reseed key", [](DrbgKnownAnswer& v) { return v.reseedKey + 10; }, 1},
        {"first generate value", [](DrbgKnownAnswer& v) { return v.generate1Value; }, 1},
        {"second additional input", [](DrbgKnownAnswer& v) { return v.additional2 + 31; }, 1},
        {"returned bits", [](DrbgKnownAnswer& v) { return v.returned + 255; }, 1},
        {"second generate key", [](DrbgKnownAnswer& v) { return v.generate2Key; }, 1},
    };
    for (const auto& c : cases) {
        DrbgKnownAnswer damaged = kDrbgHealthVector;
        *c.field(damaged) ^= 0x01;
        for (int depth = 0; depth <= 2; ++depth)
            EXPECT_EQ(DrbgHealthCheckWith(damaged, depth), depth >= c.firstDepth ? -299 : 0) << c.name << depth;
    }
}

TEST(DrbgCore, ContinuousTestComparesEightBytesZeroPadded) {
    const uint8_t shadow[8] = {1, 2, 3, 4, 5, 0, 0, 0};
    const std::pair<ByteVec, int> cases[] = {
        {{1, 2, 3, 4, 5}, 0}, {{1, 2, 3, 4, 5, 0, 0, 0, 9}, 0}, {{1, 2, 3, 4, 5, 6}, 1}, {{1, 2, 3, 4}, 1}};
    for (const auto& [output, passes] : cases) {
        DrbgState s = KnownState();
        std::memcpy(s.shadowOutput, shadow, 8);
        EXPECT_EQ(DrbgContinuousCheck(&s, output.data(), uint32_t(output.size())), passes) << output.size();
        // A pass makes the next hidden block and counts a step; a failure changes nothing.
        EXPECT_EQ(s.reseedCounter, passes ? 2u : 1u);
        EXPECT_EQ(std::memcmp(s.shadowOutput, shadow, 8) != 0, passes == 1);
    }
}

TEST(DrbgGenerate, LimitsReseedTimingAndLiveCount) {
    DrbgState s{};
    ByteVec buf(65537);
    const uint32_t live = RngLiveInstances();
    ASSERT_EQ(DrbgGenerate(&s, buf.data(), 16, nullptr, 0), 0);  // first use instantiates
    EXPECT_EQ(RngLiveInstances(), live + 1);
    EXPECT_TRUE(s.reseedCounter > 0 && s.reseedCounter < 10) << s.reseedCounter;
    SetLastDraw(&g_sharedRng.pools, 0);
    const DrbgState before = s;
    EXPECT_EQ(DrbgGenerate(&s, buf.data(), 65537, nullptr, 0), -211);
    EXPECT_EQ(std::memcmp(&before, &s, sizeof s), 0);  // refused with no other effect
    struct Case {
        uint32_t counter, length;
        bool poolsReady;
        uint32_t counterAfter, draws;
    } cases[] = {
        {100, 65536, false, 102, 0},  // the generate and the hidden step, no reseed
        {100, 0, false, 102, 0},      // an empty request runs the same steps
        {kDrbgReseedBound - 1, 32, false, kDrbgReseedBound + 1, 0},
        {kDrbgReseedBound, 32, false, 3, 1},  // forced, though the pools are not ready
        {100, 32, true, 3, 1},                // ready pools reseed at once
    };
    for (const auto& c : cases) {
        SetLastDraw(&g_sharedRng.pools, c.poolsReady ? 200 : 0);
        if (c.poolsReady) g_sharedRng.pools.pool[0].byteCount = 1000;
        s.reseedCounter = c.counter;
        const uint32_t draws = g_sharedRng.pools.reseedCount;
        EXPECT_EQ(DrbgGenerate(&s, buf.data(), c.length, nullptr, 0), 0);
        EXPECT_EQ(s.reseedCounter, c.counterAfter) << c.counter;
        EXPECT_EQ(g_sharedRng.pools.reseedCount - draws, c.draws) << c.counter;
    }
    std::memset(s.shadowOutput, 0, 8);  // an empty request compares as eight zero bytes
    EXPECT_EQ(DrbgGenerate(&s, buf.data(), 0, nullptr, 0), -299);
    EXPECT_EQ(DrbgUninstantiate(&s), 0);
    EXPECT_EQ(RngLiveInstances(), live);
    EXPECT_EQ(DrbgUninstantiate(&s), 0);  // counted out only if it was counted in
    EXPECT_EQ(RngLiveInstances(), live);
}

TEST(DrbgGenerate, FailedGeneratorEndsTheProcessWithAReport) {
    ChildOutcome r = RunInChild([] {
        uint8_t buf[16];
        if (RNG_NonceData(buf, 16) != 0) return 10;
        std::memset(GetThreadState()->rng.shadowOutput, 0, 8);
        RNG_KeyBytes(buf, 0, nullptr, 0);
        return 20;  // not reached
    });
    EXPECT_EQ(r.exitStatus, 1);
    EXPECT_NE(r.console.find("Verimond: RNG failed continuous testing\n"), std::string::npos) << r.console;
    EXPECT_NE(r.log.find("(c0001f48) RNG failed continuous testing"), std::string::npos);
}

// The thread's generator is in use, and neither side will reseed.
TEST(DrbgGenerate, ForkedChildDoesNotRepeatItsParent) {
    uint8_t parent[32];
    ASSERT_EQ(RNG_NonceData(parent, 32), 0);
    SetLastDraw(&g_sharedRng.pools, 0);
    const ChildOutcome child = RunInChild([] {
        uint8_t out[32];
        std::fputs(ToHex(out, RNG_NonceData(out, 32) == 0 ? 32 : 0).c_str(), stderr);
        return 0;
    });
    SetLastDraw(&g_sharedRng.pools, 0);
    ASSERT_EQ(RNG_NonceData(parent, 32), 0);
    EXPECT_EQ(child.console.size(), 64u);
    EXPECT_NE(child.console, ToHex(parent, 32));
}

TEST(EntropyPools, DrawSchedule) {
    static EntropyPools pools;
    InitPools(&pools);
    const uint8_t data[40] = {};
    AddEvent(&pools, kSourceFreeDisk, data, 40);  // cut to 32 bytes
    EXPECT_EQ(pools.pool[0].byteCount, 34u);
    uint8_t out[kPoolDrawRoom];
    ASSERT_EQ(ReseedFromPools(&pools, out, 0), 64u);  // the first draw is always served
    EXPECT_EQ(ReseedFromPools(&pools, out, 0), 0u);
    // Draw n takes pool i when 2^i divides n.
    uint32_t draw = 1, got = 0;
    for (auto [target, poolsDrawn] : {std::pair{2u, 2u}, {3u, 1u}, {4u, 3u}, {6u, 2u}, {8u, 4u}, {12u, 3u}, {16u, 5u},
                                      {32u, 6u}, {64u, 7u}}) {
        while (draw < target) got = ReseedFromPools(&pools, out, 1), ++draw;
        EXPECT_EQ(got, 64 * poolsDrawn) << "draw " << target;
    }
    EXPECT_EQ(pools.pool[0].serial, 64u);
    EXPECT_EQ(pools.pool[6].serial, 1u);
    EXPECT_EQ(ToHex(out + 64 * 6, 64), Sha512Hex({1, 0, 0, 0}));  // drawn pools start afresh
    // Each source walks the 32 pools on its own.
    for (int i = 0; i < 33; ++i) AddEvent(&pools, kSourceSystemTime, data, 4);
    EXPECT_EQ(pools.pool[0].byteCount, 12u);
    EXPECT_EQ(pools.pool[31].byteCount, 6u);
    EXPECT_EQ(pools.nextPool[kSourceFreeDisk], 1);
}

// Events are copied into a pool in runs and must hash as the byte stream
// they stand for (source, length, data; the pool's serial at the draw),
// ending on, before and across the pool's 128-byte hash blocks.
TEST(EntropyPools, EventsHashAsOneByteStream) {
    static EntropyPools pools;
    InitPools(&pools);
    ByteVec stream;
    uint8_t data[40];
    for (int i = 0; i < 120; ++i) {
        const uint32_t length = uint32_t(i % 41), kept = std::min(length, 32u);
        for (uint32_t k = 0; k < length; ++k) data[k] = uint8_t(i * 31 + k);
        const uint8_t source = uint8_t(i % 9);
        pools.nextPool[source] = 0;
        AddEvent(&pools, source, data, length);
        stream.insert(stream.end(), {source, uint8_t(kept)});
        stream.insert(stream.end(), data, data + kept);
    }
    EXPECT_EQ(pools.pool[0].byteCount, stream.size());
    uint8_t drawn[kPoolDrawRoom];
    ASSERT_EQ(ReseedFromPools(&pools, drawn, 1), 64u);
    for (uint8_t b : {1, 0, 0, 0}) stream.push_back(b);
    EXPECT_EQ(ToHex(drawn, 64), Sha512Hex(stream));
}

// The light stir's short cut: the CRC of the 32-byte load record from its
// leading word, the rest joined by exclusive-or of its own CRC.
TEST(EntropyPools, LoadRecordCrcFromItsParts) {
    EXPECT_EQ(Crc64Digest(Bytes("123456789"), 9), 0x0f5519c6a7079bbbull);
    std::vector<uint64_t> words = {0, 1, ~uint64_t(0), uint64_t(1) << 63, 0x0123456789abcdefull};
    uint64_t x = 0x9e3779b97f4a7c15ull;
    for (int i = 0; i < 200; ++i) words.push_back(x = x * 6364136223846793005ull + 1442695040888963407ull);
    for (uint64_t word : words) {
        uint8_t record[32] = {};
        std::memcpy(record, &word, 8);
        EXPECT_EQ(Crc64LeadingWord(word), Crc64Digest(record, 32)) << std::hex << word;
        for (int k = 8; k < 32; ++k) record[k] = uint8_t(word >> (k % 8 * 8)) ^ uint8_t(k);
        EXPECT_EQ(Crc64LeadingWord(word) ^ Crc64Digest(record + 8, 24), Crc64Digest(record, 32));
    }
}

TEST(EntropyPools, UnforcedDrawNeedsBytesAndTime) {
    static EntropyPools pools;
    InitPools(&pools);
    pools.reseedCount = 1;
    uint8_t out[kPoolDrawRoom];
    // Bytes in pool 0, milliseconds since the last draw, bytes drawn.
    for (auto [bytes, ageMs, drawn] : {std::tuple{31u, 500u, 0u}, {32u, 500u, 128u}, {32u, 100u, 0u}, {32u, 102u, 64u},
                                       {5000u, 0u, 0u}}) {
        SetLastDraw(&pools, ageMs);
        pools.pool[0].byteCount = bytes;
        EXPECT_EQ(ReseedFromPools(&pools, out, 0), drawn) << bytes << "/" << ageMs;
    }
    // A high half that moved on is enough, whatever the low halves say.
    pools.lastReseedHigh = 5;
    pools.lastReseedLow = 0xFFFFFFF0u;
    EXPECT_TRUE(PoolsReady(&pools, uint64_t(6) << 32));
    EXPECT_FALSE(PoolsReady(&pools, (uint64_t(5) << 32) | 0xFFFFFFF1u));
}

TEST(EntropyPools, StirModes) {
    // The mode is taken modulo 2 with its sign: a negative odd mode does nothing.
    for (auto [mode, timeEvents] : {std::pair{0, 1}, {-2, 1}, {1, 2}, {3, 2}, {-1, 0}, {-3, 0}}) {
        const uint8_t before = g_sharedRng.pools.nextPool[kSourceSystemTime];
        StirEntropy(mode);
        EXPECT_EQ((g_sharedRng.pools.nextPool[kSourceSystemTime] - before + 32) % 32, timeEvents) << mode;
    }
}

// Another descriptor in this very process excludes us, as another process
// does; a refused lock leaves the file as it was.
TEST(SeedFileLock, RefusedWhileAnotherHolderHasIt) {
    TempDir dir;
    const std::string original(128, 'k'), path = dir.Write("seed", original);
    const SeedLockRetry saved = g_seedLockRetry;
    g_seedLockRetry = {3, 20};
    DrbgState s{};
    struct flock fl = {.l_type = F_WRLCK, .l_len = 128};
    int holder = open(path.c_str(), O_RDWR);
    ASSERT_EQ(fcntl(holder, F_OFD_SETLK, &fl), 0);
    EXPECT_EQ(SeedFileUpdate(&s, path.c_str(), false), -205);
    EXPECT_EQ(SeedFileUpdate(&s, path.c_str(), true), -205);
    EXPECT_EQ(SeedFileCreate(&s, path.c_str(), nullptr, 0), -205);
    EXPECT_EQ(ReadWholeFile(path), original);
    close(holder);
    EXPECT_EQ(SeedFileUpdate(&s, path.c_str(), false), 0);
    EXPECT_NE(ReadWholeFile(path), original);
    g_seedLockRetry = saved;
    DrbgUninstantiate(&s);
}

TEST(ConsolePrompt, AFloodOfOneKeyIsCutOff) {
    std::string flood(70000, 'z');
    FILE* in = fmemopen(flood.data(), flood.size(), "r");
    FILE* out = std::fopen("/dev/null", "w");
    uint8_t digest[64];
    EXPECT_EQ(PromptConsoleOn(in, out, digest, 64, 112, nullptr), 0);
    EXPECT_EQ(ftell(in), 65536);
    std::fclose(in);
    std::fclose(out);
}

TEST(FipsTests, ReportOfAKnownSample) {
    ByteVec sample(kFipsSampleBytes, 0xAA);
    FipsResults r;
    FipsRunTests(sample.data(), &r);
    char* text = nullptr;
    size_t size = 0;
    FILE* f = open_memstream(&text, &size);
    FipsWriteReport(f, r, sample.data(), "Thu Jan  1 00:00:00 1970\n");
    std::fclose(f);
    std::string expected =
        "FIPS140-2 test for 20000 bits (2500 bytes) at Thu Jan  1 00:00:00 1970\n\n"
        "1. Monobits test n1 = 10000 (9725 - 10275)\n   Passed Monobits test.\n"
        "2. Poker test X = 75000.00 (2.16 - 46.17)\n   FAILED! Poker test.\n"
        "3. Runs test:\n     Run len:   1    2    3    4    5    6+\n"
        "     Gaps:   9999, 0, 0, 0, 0, 0\n"  // the last run is never closed, so not counted
        "     Blocks: 10000, 0, 0, 0, 0, 0\n"
        "     Min:   (2315, 1114, 527, 240, 103, 103)\n"
        "     Avg:   (2500, 1250, 625, 312, 156, 156)\n"
        "     Max:   (2685, 1386, 723, 384, 209, 209)\n"
        "     Pass:      N    N    N    N    N    N\n   FAILED! Runs test.\n"
        "4. Long runs test: Gmax = 1 Bmax = 1 (26)\n   Passed Long Run test.\n"
        "FAILED! FIPS140-2 test.\nTest sample was:-\n";
    for (int line = 0; line < 100; ++line) expected += std::string(50, 'A') + "\n";  // 25 bytes of AA
    expected += "\n" + std::string(50, '*') + "\n";
    EXPECT_EQ(std::string(text, size), expected);
    std::free(text);
}
