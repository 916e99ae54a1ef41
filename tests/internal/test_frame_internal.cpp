// The frame and utilities from the inside.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>
#include <zstd.h>

#include <atomic>
#include <thread>

#include "child_run.h"
#include "frame/errors.h"
#include "frame/frame.h"
#include "frame/integrity.h"
#include "frame/memory.h"
#include "test_support.h"
#include "util/compress.h"
#include "util/tinymt.h"
#include "util/wipe_file.h"

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

// Runs of one byte are zstd's best case: the ceiling on claimed sizes must
// never refuse what zstd itself produces.
TEST(CompressInternal, ZstdCeilingHoldsForItsDensestFrames) {
    for (size_t n : {size_t(1) << 17, size_t(1) << 20, size_t(24) << 20}) {
        ByteVec zeros(n), frame(ZSTD_compressBound(n));
        for (int level : {1, 19}) {
            size_t length = ZSTD_compress(frame.data(), frame.size(), zeros.data(), n, level);
            ASSERT_FALSE(ZSTD_isError(length));
            EXPECT_LE(uint64_t(n), ZstdContentCeiling(int32_t(length))) << n << " level " << level;
        }
    }
}

// The passes overwrite in place: a wipe that only truncated would pass
// the export's checks but leave the data on disk.
TEST(WipeInternal, PassesLeaveZerosOfTheSameSize) {
    TempDir dir;
    for (bool fast : {false, true}) {
        const std::string path = dir.Write("victim", ByteVec(9000, 0xC3));
        const int fd = open(path.c_str(), O_RDWR);
        EXPECT_EQ(WipeFilePasses(fd, fast), 0);
        close(fd);
        EXPECT_EQ(ReadWholeFile(path), std::string(9000, '\0')) << (fast ? "fast" : "full");
    }
}

namespace {
const uint8_t kMarker[kSealMarkerSize] = {'t', 'e', 's', 't', ' ', 'm', 'a', 'r', 'k', 'e', 'r', 0, 1, 2, 3, 4};
}  // namespace

// This program is sealed after its link as the library is.
TEST(IntegrityInternal, SealedProgramPassesItsOwnCheck) { EXPECT_TRUE(ModuleIntegrityOk()); }

// An image sealed as the build tool seals: every byte counts.
TEST(IntegrityInternal, EveryChangedByteBreaksTheSeal) {
    ByteVec image = Pattern(300, 7);
    std::copy(kMarker, kMarker + kSealMarkerSize, image.begin() + 250);
    size_t offset = 0;
    ASSERT_TRUE(FindSealDigest(image.data(), image.size(), kMarker, &offset));
    ASSERT_EQ(offset, 266u);
    SealDigestOfImage(image.data(), image.size(), offset, image.data() + offset);
    const ByteVec expected(image.begin() + 266, image.begin() + 298);
    EXPECT_TRUE(ImageMatchesSeal(image.data(), image.size(), kMarker, expected.data()));
    for (size_t i = 0; i < image.size(); ++i) {
        ByteVec changed = image;
        changed[i] ^= 0x01;
        EXPECT_FALSE(ImageMatchesSeal(changed.data(), changed.size(), kMarker, expected.data())) << "byte " << i;
    }
    // The digest the loaded code holds must also be the one in the file.
    ByteVec other = expected;
    other[31] ^= 1;
    EXPECT_FALSE(ImageMatchesSeal(image.data(), image.size(), kMarker, other.data()));
    ByteVec longer = image;
    longer.push_back(0);
    EXPECT_FALSE(ImageMatchesSeal(longer.data(), longer.size(), kMarker, expected.data()));
}

TEST(IntegrityInternal, MarkerMustBeThereOnceWithRoomForTheDigest) {
    size_t offset = 0;
    const std::pair<const char*, std::vector<size_t>> cases[] = {
        {"missing", {}}, {"twice", {10, 100}}, {"no room for the digest", {170}}};
    for (const auto& [what, places] : cases) {
        ByteVec image = Pattern(200, 3);
        for (size_t at : places) std::copy(kMarker, kMarker + 16, image.begin() + ptrdiff_t(at));
        EXPECT_FALSE(FindSealDigest(image.data(), image.size(), kMarker, &offset)) << what;
    }
}
