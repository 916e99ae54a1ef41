// White-box checks of the frame: registry counters, handles, the report path.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "child_run.h"
#include "frame/errors.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/tinymt.h"

TEST(Registry, ThreadsBeyondTheTableStillGetRecords) {
    constexpr int kThreads = kRegistrySlots + 12;
    const int32_t liveBefore = g_registry.liveRecords;
    std::atomic<int> ready{0};
    std::atomic<bool> release{false};
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            ThreadState* ts = GetThreadState();
            if (ts == &g_fallbackThreadState) failures++;
            EnterCall();
            LeaveCall(-7);
            if (ReadLatch() != 7) failures++;
            ready++;
            while (!release) std::this_thread::yield();
        });
    }
    while (ready < kThreads) std::this_thread::yield();
    EXPECT_EQ(g_registry.liveRecords, liveBefore + kThreads);
    EXPECT_EQ(g_registry.highestIndex, kRegistrySlots - 1);
    release = true;
    for (auto& t : threads) t.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(g_registry.liveRecords, liveBefore);  // thread exit removes every record
}

TEST(Latch, FirstFailureStaysAndSignIsDropped) {
    EnterCall();
    EXPECT_EQ(LeaveCall(0), 0);
    EXPECT_EQ(ReadLatch(), 0);
    EXPECT_EQ(LeaveCall(-6), -6);
    EXPECT_EQ(LeaveCall(-33), -33);
    EXPECT_EQ(ReadLatch(), 6);
    EnterCall();
    EXPECT_EQ(LeaveCall(32), 32);
    EXPECT_EQ(ReadLatch(), 32);
}

TEST(Handles, OddNonZeroBelow2To30) {
    uint32_t previous = 0;
    int repeats = 0;
    for (int i = 0; i < 10000; ++i) {
        uint32_t h = NewHandle();
        EXPECT_EQ(h & 1u, 1u);
        EXPECT_LT(h, 1u << 30);
        if (h == previous) repeats++;
        previous = h;
    }
    EXPECT_LT(repeats, 3);
    EXPECT_FALSE(HandleMatches(0, 0));
    EXPECT_TRUE(HandleMatches(5, 5));
    EXPECT_FALSE(HandleMatches(5, 7));
}

TEST(TinyMt, ReferenceSequenceForSeedOne) {
    TinyMt32State s;
    TinyMt32Init(&s, 1);
    const uint32_t expected[5] = {2545341989u, 981918433u, 3715302833u, 2387538352u, 3591001365u};
    for (uint32_t e : expected) EXPECT_EQ(TinyMt32Next(&s), e);
}

TEST(Report, RecordsExitsAndTheSwitchForTheLog) {
    const auto npos = std::string::npos;
    ChildOutcome child = RunInChild([] { return SafeAlloc(0x40000000u) != nullptr ? 20 : 10; });
    EXPECT_EQ(child.exitStatus, 1);
    EXPECT_NE(child.log.find("\nVerimond (c000029a) malloc request is too big.\n"), npos) << child.log;
    EXPECT_EQ(child.log.find('\n'), 24u) << child.log;  // the ctime text: "Www Mmm dd hh:mm:ss yyyy"
    child = RunInChild([] { return SafeZeroAlloc(0x40000000u) != nullptr ? 20 : 10; });
    EXPECT_EQ(child.exitStatus, 1);
    EXPECT_NE(child.log.find("calloc request is too big."), npos);

    // A report that is not fatal returns.
    child = RunInChild([] {
        ReportFatal("only reported", 0xC0001F46u);
        return 0;
    });
    EXPECT_EQ(child.exitStatus, 0);
    EXPECT_NE(child.log.find("Verimond (c0001f46) only reported\n"), npos) << child.log;
    EXPECT_EQ(child.console, "Verimond: only reported\n");

    child = RunInChild([] {
        std::ofstream(std::getenv("VERIMOND_OPTIONS"), std::ios::app) << "NoErrorLog=1\nNoMessageBox=1\n";
        FatalExit("test message");
        return 0;
    });
    EXPECT_EQ(child.exitStatus, 1);
    EXPECT_EQ(child.log, "");
    EXPECT_EQ(child.console, "");
}
