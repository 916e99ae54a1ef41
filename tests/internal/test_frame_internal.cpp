// White-box checks of the frame: registry counters and the report path.
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
    std::atomic<int> ready{0}, failures{0};
    std::atomic<bool> release{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            if (GetThreadState() == &g_fallbackThreadState) failures++;
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

TEST(TinyMt, ReferenceSequenceForSeedOne) {
    TinyMt32State s;
    TinyMt32Init(&s, 1);
    for (uint32_t e : {2545341989u, 981918433u, 3715302833u, 2387538352u, 3591001365u}) EXPECT_EQ(TinyMt32Next(&s), e);
}

TEST(Report, RecordsExitsAndTheSwitchForTheLog) {
    ChildOutcome child = RunInChild([] { return SafeZeroAlloc(0x40000000u) != nullptr ? 20 : 10; });
    EXPECT_EQ(child.exitStatus, 1);
    EXPECT_NE(child.log.find("\nVerimond (c000029a) calloc request is too big.\n"), std::string::npos) << child.log;
    EXPECT_EQ(child.log.find('\n'), 24u) << child.log;  // the ctime text: "Www Mmm dd hh:mm:ss yyyy"
    child = RunInChild([] {
        ReportFatal("only reported", 0xC0001F46u);  // not fatal: it returns
        return 0;
    });
    EXPECT_EQ(child.exitStatus, 0);
    EXPECT_NE(child.log.find("Verimond (c0001f46) only reported\n"), std::string::npos) << child.log;
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
