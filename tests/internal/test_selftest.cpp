// The power-up tests and their planted faults.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <thread>
#include <tuple>

#include "child_run.h"
#include "frame/frame.h"
#include "frame/lifecycle.h"
#include "frame/selftest.h"
#include "frame/selftest_check.h"
#include "rng/entropy.h"
#include "test_support.h"
#include "util/cpu.h"

namespace {
// By test number, in the fixed order: the event identifier's last byte and
// the algorithm of the report's second log line.
const std::pair<int, const char*> kReports[] = {
    {0x46, "SHA-1"},       {0x47, "SHA-256"},     {0x48, "SHA-384"},     {0x49, "SHA-512"},    {0x4a, "SHA-224"},
    {0x55, "SHA-3"},       {0x4b, "MD5"},         {0x43, "Triple DES"},  {0x44, "AES"},        {0x45, "Blowfish"},
    {0x4c, "HMAC-SHA-1"},  {0x4d, "HMAC-SHA-256"}, {0x4e, "HMAC-SHA-384"}, {0x4f, "HMAC-SHA-512"},
    {0x50, "HMAC-SHA-224"}, {0x53, "HMAC-MD5"},    {0x51, "CMAC-AES"},    {0x52, "CMAC-TDEA"}};
static_assert(sizeof kReports / sizeof kReports[0] == kPowerUpTestCount);

std::string ReportText(int n) { return std::string("Failed Known Answer Test for ") + kReports[n - 1].second; }
std::string ReportLine(int n) {
    char code[32];
    std::snprintf(code, sizeof code, "Verimond (c0001f%02x) ", kReports[n - 1].first);
    return code + ReportText(n);
}

size_t CountOf(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}
}  // namespace

// On every processor path; a fault number outside the range plants nothing.
TEST(PowerUpTests, PassOnEveryProcessorPath) {
    for (const char* flags : {"portable", "-aesni,-shani,-avx2,-avx512f", static_cast<const char*>(nullptr)}) {
        CpuDetectWith(flags);
        for (int fault : {0, -1, kPowerUpTestCount + 1, 1000}) {
            int run = 0;
            EXPECT_EQ(PowerUpTestsWithFault(fault, &run), 0) << (flags ? flags : "detected") << " fault " << fault;
            EXPECT_EQ(run, kPowerUpTestCount);
        }
    }
    CpuDetect();
    EXPECT_TRUE(HmacSha512SelfTest());
}

// The run must not reach the frame: a thread with no record gets none.
TEST(PowerUpTests, RunOnAThreadWithoutARecordLeavesNone) {
    ThreadState *before = &g_fallbackThreadState, *after = before;
    int result = -1;
    std::thread worker([&] {
        before = TlsRead();
        result = PowerUpTests();
        after = TlsRead();
    });
    worker.join();
    EXPECT_EQ(result, 0);
    EXPECT_EQ(before, nullptr);
    EXPECT_EQ(after, nullptr);
}

// Answers of odd lengths (the Blowfish part blocks) end in a byte tail.
TEST(PowerUpTests, ComparisonSeesEveryByteAndKeepsAFailure) {
    // Length, the byte that differs (-1: none), a planted fault.
    for (auto [length, differAt, fault] : {std::tuple{29u, -1, false}, {29u, 28, false}, {29u, 25, false},
                                           {29u, 0, false}, {16u, 15, false}, {16u, 12, false}, {3u, 2, false},
                                           {64u, 63, false}, {29u, -1, true}, {8u, -1, true}}) {
        const ByteVec want = Pattern(kKatMaxAnswer, 1);
        ByteVec got = want;
        if (differAt >= 0) got[size_t(differAt)] ^= 0x80;
        const bool ok = differAt < 0 && !fault;
        KatTally tally{true, fault};
        KatCheck(&tally, got.data(), want.data(), length);
        EXPECT_EQ(tally.ok, ok) << length << " " << differAt << " " << fault;
        EXPECT_FALSE(tally.fault);  // planted once only
        KatCheck(&tally, want.data(), want.data(), length);  // a later match does not clear a failure
        EXPECT_EQ(tally.ok, ok);
    }
}

// Each child exits with the number of tests started (plus 100 on a pass).
TEST(PowerUpTests, FaultStopsTheRunAtThatTestWithItsReport) {
    for (int n = 1; n <= kPowerUpTestCount; ++n) {
        ChildOutcome child = RunInChild([n] {
            int run = 0;
            int failed = PowerUpTestsWithFault(n, &run);
            return failed == 1 ? run : 100 + run;
        });
        SCOPED_TRACE(ReportLine(n));
        EXPECT_EQ(child.exitStatus, n);
        EXPECT_EQ(CountOf(child.log, "Verimond ("), 1u) << child.log;
        EXPECT_NE(child.log.find(ReportLine(n) + "\n"), std::string::npos) << child.log;
        EXPECT_EQ(child.console, "Verimond: " + ReportText(n) + "\n");
    }
}

// The health check still runs, its HMAC-SHA-512 test on the unaltered
// answer: its forced draw from the pools is the trace it leaves. Only the
// failing test reports.
TEST(PowerUpTests, LoadChecksRunTheHealthCheckAfterAFailure) {
    for (int n : {1, 14}) {
        ChildOutcome child = RunInChild([n] {
            uint32_t drawsBefore = g_sharedRng.pools.reseedCount;
            bool ok = RunLoadChecksWithFault(n);
            uint32_t draws = g_sharedRng.pools.reseedCount - drawsBefore;
            return (ok ? 10 : 0) + (draws > 9 ? 9 : int(draws));
        });
        SCOPED_TRACE(n);
        EXPECT_GE(child.exitStatus, 1);  // failed, and drew at least once
        EXPECT_LT(child.exitStatus, 10);
        EXPECT_EQ(CountOf(child.log, "Verimond ("), 1u) << child.log;
        EXPECT_NE(child.log.find(ReportLine(n)), std::string::npos) << child.log;
    }
}
