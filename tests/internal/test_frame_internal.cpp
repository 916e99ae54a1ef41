// White-box checks of the frame: registry counters, handles, the report path.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "frame/errors.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/tinymt.h"
#include "util/wipe.h"

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

TEST(Wipe, ZeroesEveryLength) {
    for (size_t n = 0; n <= 64; ++n) {
        std::vector<unsigned char> buf(n + 2, 0xA5);
        SecureWipe(buf.data() + 1, n);
        EXPECT_EQ(buf[0], 0xA5);
        EXPECT_EQ(buf[n + 1], 0xA5);
        for (size_t i = 1; i <= n; ++i) EXPECT_EQ(buf[i], 0) << n;
    }
}

namespace {
// Runs body in a child with the options file given; returns the exit status
// and the log file's contents.
std::pair<int, std::string> RunFatalChild(const std::string& options, void (*body)()) {
    char dir[] = "/tmp/verimond-report-XXXXXX";
    if (mkdtemp(dir) == nullptr) return {-1, ""};
    std::string optionsPath = std::string(dir) + "/options";
    {
        std::ofstream f(optionsPath);
        f << "ErrorLogDir=" << dir << "\nNoMessageBox=1\n" << options;
    }
    pid_t pid = fork();
    if (pid == 0) {
        setenv("VERIMOND_OPTIONS", optionsPath.c_str(), 1);
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    std::ifstream log(std::string(dir) + "/apierr.log");
    std::stringstream text;
    text << log.rdbuf();
    std::remove((std::string(dir) + "/apierr.log").c_str());
    std::remove(optionsPath.c_str());
    rmdir(dir);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text.str()};
}
}  // namespace

TEST(Report, FatalAllocationWritesTheRecordAndExitsWithOne) {
    auto [status, log] = RunFatalChild("", [] { SafeAlloc(0x40000000u); });
    EXPECT_EQ(status, 1);
    EXPECT_NE(log.find("\nVerimond (c000029a) malloc request is too big.\n"), std::string::npos) << log;
    // The first line is the ctime text: "Www Mmm dd hh:mm:ss yyyy".
    EXPECT_EQ(log.find('\n'), 24u) << log;

    auto [status2, log2] = RunFatalChild("", [] { SafeZeroAlloc(0x40000000u); });
    EXPECT_EQ(status2, 1);
    EXPECT_NE(log2.find("calloc request is too big."), std::string::npos);
}

TEST(Report, NoErrorLogSkipsTheFile) {
    auto [status, log] = RunFatalChild("NoErrorLog=1\n", [] { FatalExit("test message"); });
    EXPECT_EQ(status, 1);
    EXPECT_EQ(log, "");
}

TEST(Report, NonFatalReportReturns) {
    auto [status, log] = RunFatalChild("", [] { ReportFatal("only reported", 0xC0001F46u); });
    EXPECT_EQ(status, 0);
    EXPECT_NE(log.find("Verimond (c0001f46) only reported\n"), std::string::npos) << log;
}
