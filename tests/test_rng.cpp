// The RNG_ family through the public interface.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <set>
#include <thread>
#include <tuple>

#include "child_run.h"
#include "test_support.h"

namespace {
int32_t ReseedCounter() { return API_ModuleName(nullptr, 0, 0xFEED); }
}  // namespace

TEST(RngDrbgvs, SizesBoundsAndOrder) {
    struct Case { int32_t bits, outputLength; bool realOutput; int32_t result; } cases[] = {
        {2048, 0, false, 512}, {2048, 0, true, 512}, {1, 10, true, 2}, {12, 10, true, 4}, {2048, 10, true, 10},
        {524289, 0, false, -211}};
    for (const auto& c : cases) {
        char out[64] = "untouched";
        int32_t n = RNG_TestDRBGVS(c.realOutput ? out : nullptr, c.outputLength, c.bits, "00", "01", nullptr, nullptr,
                                   nullptr, nullptr, nullptr, 0);
        EXPECT_EQ(n, c.result) << c.bits << "/" << c.outputLength;
        EXPECT_EQ(API_ErrorCode(), n < 0 ? -n : n);  // every result is latched
        if (c.realOutput && c.outputLength > 0 && n > 0) EXPECT_EQ(std::strlen(out), size_t(n));
    }
    // Generating first moves the reseed; with no reseed texts there is none to move.
    char a[9], b[9];
    RNG_TestDRBGVS(a, 8, 32, "00", "", "", "", "11", "", "", 0);
    RNG_TestDRBGVS(b, 8, 32, "00", "", "", "", "11", "", "", 0x10000);
    EXPECT_STRNE(a, b);
    RNG_TestDRBGVS(a, 8, 32, "00", "", "", "", "", "", "", 0);
    RNG_TestDRBGVS(b, 8, 32, "00", "", "", "", "", "", "", 0x10000);
    EXPECT_STREQ(a, b);
}

// A short hex buffer cuts at whole bytes; an empty request writes nothing.
TEST(RngCalls, HexCuttingAndEmptyRequests) {
    char text[64];
    const uint8_t seed[3] = {1, 2, 3};
    for (auto [room, count, digits] : {std::tuple{9, 16, 8}, {40, 16, 32}, {32, 16, 32}}) {
        std::strcpy(text, "untouched");
        EXPECT_EQ(RNG_KeyHex(text, room, count, seed, 3), 0);
        EXPECT_EQ(std::strlen(text), size_t(digits)) << room;
        EXPECT_EQ(std::string(text).find_first_not_of("0123456789ABCDEF"), std::string::npos) << text;
        EXPECT_EQ(RNG_NonceDataHex(text, room, count), 0);
        EXPECT_EQ(std::strlen(text), size_t(digits)) << room;
    }
    uint8_t buf[16];
    std::memset(buf, 0x5A, 16);
    EXPECT_EQ(RNG_KeyBytes(buf, 0, nullptr, 0), 0);
    EXPECT_EQ(buf[0], 0x5A);
}

TEST(RngNumber, StaysInBoundsAndEmptyRangesDrawNothing) {
    struct Case { int32_t lower, upper; } cases[] = {
        {0, 1}, {-3, 3}, {INT_MAX - 1, INT_MAX}, {INT_MIN, INT_MIN + 2}, {0, INT_MAX}, {INT_MIN, INT_MAX}};
    for (const auto& c : cases) {
        std::set<int32_t> seen;
        for (int i = 0; i < 300; ++i) {
            int32_t v = RNG_Number(c.lower, c.upper);
            ASSERT_TRUE(v >= c.lower && v <= c.upper) << v;
            seen.insert(v);
        }
        int64_t span = int64_t(c.upper) - c.lower + 1;
        EXPECT_GE(int64_t(seen.size()), span <= 7 ? span : 299) << c.lower << ".." << c.upper;
        if (span > 7 && c.lower == INT_MIN) EXPECT_TRUE(*seen.begin() < 0 && *seen.rbegin() > 0);
    }
    RNG_NonceData(nullptr, 4);
    ASSERT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    const int32_t counter = ReseedCounter();
    EXPECT_EQ(RNG_Number(5, 5), 5);
    EXPECT_EQ(RNG_Number(9, 5), 9);
    EXPECT_EQ(ReseedCounter(), counter);
    EXPECT_EQ(API_ErrorCode(), 0);  // entered, but a number is never latched
}

TEST(RngSeedFile, EdgeCases) {
    TempDir dir;
    const std::string made = dir.File("made"), fifo = dir.File("fifo");
    // Making a seed file prompts, so standard input is closed here.
    ASSERT_EQ(RunInChildWithInput(nullptr, [&] { return -RNG_MakeSeedFile(made.c_str(), nullptr, 0); }).exitStatus, 0);
    struct stat info;
    ASSERT_EQ(stat(made.c_str(), &info), 0);
    EXPECT_EQ(info.st_size, 128);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string tail(72, 't');
    // write: `before` is written first; initialize: RNG_Initialize, which creates a missing file.
    struct Case { const char* name; bool write; std::string before; bool initialize; int32_t result; size_t after; };
    const Case cases[] = {
        {"made", false, "", false, 0, 128}, {"short", true, "0123456789", false, 0, 128},
        {"long", true, std::string(128, 'L') + tail, false, 0, 200}, {"empty", true, "", false, 0, 128},
        {"missing", false, "", false, -PRNG_ERR_FILE_OPEN, 0}, {"created", false, "", true, 0, 128},
        {"", false, "", false, -BAD_PARAM_ERROR, 0},
        {"fifo", false, "", false, -PRNG_ERR_FILE_OPEN, 0},  // refused, not waited on
        {"fifo", false, "", true, -PRNG_ERR_FILE_CREATE, 0}};
    for (const auto& c : cases) {
        const std::string path = *c.name ? dir.File(c.name) : "";
        if (c.write) std::ofstream(path, std::ios::binary) << c.before;
        const std::string before = c.write || c.result != 0 || c.initialize ? c.before : ReadWholeFile(path);
        EXPECT_EQ(c.initialize ? RNG_Initialize(path.c_str(), 0) : RNG_UpdateSeedFile(path.c_str(), 0), c.result)
            << c.name;
        if (c.result != 0) {
            if (!c.initialize && std::string(c.name) == "missing") EXPECT_NE(access(path.c_str(), F_OK), 0);
            continue;
        }
        const std::string after = ReadWholeFile(path);
        EXPECT_EQ(after.size(), c.after) << c.name;
        EXPECT_NE(after.substr(0, 128), before.substr(0, 128)) << c.name;
        if (c.after == 200) EXPECT_EQ(after.substr(128), tail);  // bytes beyond the seed stay
    }
    EXPECT_EQ(RNG_UpdateSeedFile(dir.path.c_str(), 0), -PRNG_ERR_FILE_OPEN);
}

TEST(RngPrompt, PipedAndClosedInput) {
    // Alternating keys earn 0.75 bits each; one progress line is printed per key read.
    std::string alternating, sameKey(5000, 'x');
    for (int i = 0; i < 250; ++i) alternating += "ab";
    const char* kDefault = "Please hit random keys then Enter until you reach 100%:\n";
    struct Case { const std::string* input; const char* prompt; int32_t options; size_t lines; const char* start; };
    const Case cases[] = {
        {&alternating, "Type now:", 0, 150, "Type now:\n\r0%"},
        {&alternating, "Type now:", 1, 171, "Type now:\n\r0%"},
        {&alternating, nullptr, 3 | OPT_RNG_NO_PROMPT, 342, kDefault},
        {&sameKey, "", 2, 5001, kDefault},  // no credit; the end of input ends it
        {nullptr, nullptr, 0, 1, kDefault},
    };
    for (const auto& c : cases) {
        ChildOutcome r = RunInChildWithInput(c.input, [&] {
            char hex[65];
            int32_t result = RNG_HexWithPrompt(hex, 64, 32, c.prompt, c.options);
            return result == 0 && std::strlen(hex) == 64 ? 0 : 1;
        });
        EXPECT_EQ(r.exitStatus, 0) << r.console.substr(0, 200);
        EXPECT_EQ(r.console.rfind(c.start, 0), 0u) << r.console.substr(0, 40);
        EXPECT_EQ(size_t(std::count(r.console.begin(), r.console.end(), '\r')), c.lines) << c.options;
        EXPECT_EQ(r.console.find("\r100%"), std::string::npos);
        EXPECT_EQ(r.console.back(), '\n');
    }
}

// The report's layout is checked on a known sample inside; here the call writes it.
TEST(RngTest, WritesTheReportAndLatchesItsResult) {
    TempDir dir;
    const int32_t result = RNG_Test(dir.File("report.txt").c_str());
    ASSERT_TRUE(result == 0 || result == 1) << result;
    EXPECT_EQ(API_ErrorCode(), result);  // a failed statistic latches 1
    const std::string report = ReadWholeFile(dir.File("report.txt"));
    EXPECT_EQ(report.rfind("FIPS140-2 test for 20000 bits (2500 bytes) at ", 0), 0u);
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 121);
}

TEST(RngInitialize, SwitchOffHoldsForEveryThread) {
    // For the rest of the process, so it is tried in a child.
    ChildOutcome child = RunInChildWithInput(nullptr, [] {
        int32_t first = RNG_Initialize("", OPT_RNG_NO_INTEL_DRBG), later = 0;
        std::thread([&] { later = RNG_Initialize(nullptr, 0); }).join();
        uint8_t buf[1];
        return first == -PRNG_ERR_NOTAVAIL && later == first && RNG_KeyBytes(buf, 0, nullptr, 0) == 0 ? 0 : 1;
    });
    EXPECT_EQ(child.exitStatus, 0);
}
