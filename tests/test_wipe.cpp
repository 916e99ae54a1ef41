// WIPE_Data and WIPE_File: what is destroyed, what is refused, and that a
// refused file is left exactly as it was.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "child_run.h"
#include "test_support.h"

namespace {
std::string MakeFile(const std::string& path, size_t size) {
    std::ofstream(path, std::ios::binary) << std::string(size, '\xC3');
    return path;
}
}  // namespace

TEST(WipeData, ZeroesExactlyTheRange) {
    for (int32_t n : {1, 7, 4096}) {
        std::vector<uint8_t> buffer(size_t(n) + 8, 0xEE), expected(buffer.size(), 0xEE);
        std::fill(expected.begin(), expected.begin() + n, 0);
        EXPECT_EQ(WIPE_Data(buffer.data(), n), 0);
        EXPECT_EQ(buffer, expected) << n;
    }
    uint8_t byte = 0xEE;
    EXPECT_EQ(WIPE_Data(nullptr, 4), NULL_ERROR);
    EXPECT_EQ(WIPE_Data(&byte, 0), BAD_PARAM_ERROR);  // not a success: nothing was wiped
    EXPECT_EQ(WIPE_Data(&byte, -1), BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(byte, 0xEE);
}

TEST(WipeFile, RemovesFilesOfEverySizeAndEmptiesThem) {
    char dir[] = "/tmp/verimond_wipeXXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    std::string path = std::string(dir) + "/victim", other = std::string(dir) + "/other";
    for (int32_t options : {0, OPT_WIPE_FAST}) {
        for (size_t size : {0u, 1u, 4096u, 4097u, 3 * 4096u + 5}) {
            MakeFile(path, size);
            // A second name for the same file shows what became of its contents.
            ASSERT_EQ(link(path.c_str(), other.c_str()), 0);
            EXPECT_EQ(WIPE_File(path.c_str(), options), 0) << size << " options " << options;
            EXPECT_EQ(API_ErrorCode(), 0);
            EXPECT_NE(access(path.c_str(), F_OK), 0) << size;
            EXPECT_EQ(ReadWholeFile(other), "") << size;
            unlink(other.c_str());
        }
    }
    rmdir(dir);
}

TEST(WipeFile, RefusedFilesAreLeftAsTheyWere) {
    char dirName[] = "/tmp/verimond_wipeXXXXXX";
    ASSERT_NE(mkdtemp(dirName), nullptr);
    ASSERT_EQ(chmod(dirName, 0755), 0);
    std::string dir = dirName, sub = dir + "/sub", fifo = dir + "/fifo";
    std::string readOnly = MakeFile(dir + "/readonly", 5000);
    ASSERT_EQ(chmod(readOnly.c_str(), 0444), 0);
    ASSERT_EQ(mkdir(sub.c_str(), 0755), 0);
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(WIPE_File(sub.c_str(), 0), OPEN_ERROR);
    EXPECT_EQ(WIPE_File(fifo.c_str(), 0), OPEN_ERROR);  // no contents to destroy: left alone
    EXPECT_EQ(API_ErrorCode(), OPEN_ERROR);
    // The superuser may write any file: the call then runs as nobody.
    ChildOutcome outcome = RunInChild([&] {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) return 98;
        return int(WIPE_File(readOnly.c_str(), 0));
    });
    EXPECT_EQ(outcome.exitStatus, OPEN_ERROR);
    EXPECT_EQ(ReadWholeFile(readOnly), std::string(5000, '\xC3'));
    EXPECT_EQ(access(sub.c_str(), F_OK) | access(fifo.c_str(), F_OK), 0);
    std::string cleanup = "rm -rf '" + dir + "'";
    EXPECT_EQ(std::system(cleanup.c_str()), 0);
}
