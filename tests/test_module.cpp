// Module information, the latch, the integrity check, wiping and CRC_.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "child_run.h"
#include "test_support.h"

TEST(Module, ErrorLookup) {
    char buf[128];
    EXPECT_EQ(API_ErrorLookup(buf, 127, 6), 47);
    EXPECT_STREQ(buf, "Parameter is wrong or missing (BAD_PARAM_ERROR)");
    EXPECT_GT(API_ErrorLookup(buf, 127, 0), 0);
    EXPECT_STREQ(buf, "OK, success, no error (SUCCESS_NO_ERROR)");
    EXPECT_GT(API_ErrorLookup(buf, 127, -299), 0);
    EXPECT_STREQ(buf, "PRNG: Catastrophic failure (PRNG_ERR_CATASTROPHIC)");
}

TEST(Frame, LatchHoldsTheFirstFailureUntilTheNextCall) {
    unsigned char out[32];
    EXPECT_EQ(HASH_Bytes(out, 32, nullptr, 5, OPT_HASH_SHA256), -BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);  // reading does not disturb it
    EXPECT_EQ(HASH_Bytes(out, 32, nullptr, 0, OPT_HASH_SHA256), 32);
    EXPECT_EQ(API_ErrorCode(), 0);  // failures-only calls leave 0 after success
    EXPECT_EQ(HASH_Length(9), -BAD_FLAG_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
    // Neither ErrorLookup nor the power-up tests (which pass) touch the latch.
    char text[80];
    API_ErrorLookup(text, 79, 6);
    EXPECT_EQ(API_PowerUpTests(0), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
}

namespace {
std::string LoadedLibraryPath() {
    char path[300];
    int32_t n = API_ModuleName(path, 299, 0);
    return n > 0 ? std::string(path, size_t(n)) : std::string();
}

// Loads a library file in a forked child: 0 when it loaded, 3 when the
// loader itself refused it, else whatever the library's load made of it.
ChildOutcome LoadInChild(const std::string& path) {
    return RunInChild([&] { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr ? 0 : 3; });
}
}  // namespace

TEST(Integrity, ChangedLibraryRefusesToLoad) {
    std::string original = ReadWholeFile(LoadedLibraryPath());
    ASSERT_GT(original.size(), 10000u);
    size_t seal = original.find("Verimond seal");
    ASSERT_NE(seal, std::string::npos);
    size_t comment = original.rfind("GCC:");
    ASSERT_NE(comment, std::string::npos);

    TempDir dir;
    const std::string copy = dir.File("libverimond.so.6");

    // Each row flips one bit at a place the loader itself never reads or
    // only maps, so that the refusal can only come from the library's check.
    struct Case { const char* what; size_t offset; int exitStatus; } cases[] = {  // offset npos: no change
        {"unchanged copy", std::string::npos, 0}, {"build note text", comment + 1, 1},
        {"digest of the seal", seal + 16 + 7, 1}, {"marker of the seal", seal + 2, 1}};
    for (const Case& c : cases) {
        std::string bytes = original;
        if (c.offset != std::string::npos) bytes[c.offset] = char(bytes[c.offset] ^ 0x10);
        dir.Write("libverimond.so.6", bytes);
        ChildOutcome outcome = LoadInChild(copy);
        EXPECT_EQ(outcome.exitStatus, c.exitStatus) << c.what;
        if (c.exitStatus == 0) {
            EXPECT_EQ(outcome.log, "") << c.what;
        } else {
            EXPECT_EQ(outcome.console, "Verimond: Failed module integrity check. Application terminated\n") << c.what;
            EXPECT_NE(outcome.log.find("Verimond (c0001f41) Failed module integrity check. Application terminated\n"),
                      std::string::npos) << c.what << ": " << outcome.log;
        }
    }
}

TEST(WipeData, ZeroesExactlyTheRange) {
    for (int32_t n : {1, 7, 4096}) {
        std::vector<uint8_t> buffer(size_t(n) + 8, 0xEE), expected(buffer.size(), 0xEE);
        std::fill(expected.begin(), expected.begin() + n, 0);
        EXPECT_EQ(WIPE_Data(buffer.data(), n), 0);
        EXPECT_EQ(buffer, expected) << n;
    }
    uint8_t byte = 0xEE;
    EXPECT_EQ(WIPE_Data(&byte, 0), BAD_PARAM_ERROR);  // not a success: nothing was wiped
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(byte, 0xEE);
}

TEST(WipeFile, RemovesFilesOfEverySizeAndEmptiesThem) {
    TempDir dir;
    const std::string other = dir.File("other");
    for (int32_t options : {0, OPT_WIPE_FAST}) {
        for (size_t size : {0u, 1u, 4096u, 4097u, 3 * 4096u + 5}) {
            const std::string path = dir.Write("victim", std::string(size, '\xC3'));
            // A second name for the same file shows what became of its contents.
            ASSERT_EQ(link(path.c_str(), other.c_str()), 0);
            EXPECT_EQ(WIPE_File(path.c_str(), options), 0) << size << " options " << options;
            EXPECT_NE(access(path.c_str(), F_OK), 0) << size;
            EXPECT_EQ(ReadWholeFile(other), "") << size;
            unlink(other.c_str());
        }
    }
}

TEST(WipeFile, RefusedFilesAreLeftAsTheyWere) {
    TempDir dir;
    ASSERT_EQ(chmod(dir.path.c_str(), 0755), 0);
    const std::string fifo = dir.File("fifo");
    const std::string readOnly = dir.Write("readonly", std::string(5000, '\xC3'));
    ASSERT_EQ(chmod(readOnly.c_str(), 0444), 0);
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(WIPE_File(fifo.c_str(), 0), OPEN_ERROR);  // no contents to destroy: left alone
    EXPECT_EQ(API_ErrorCode(), OPEN_ERROR);
    // The superuser may write any file: the call then runs as nobody.
    ChildOutcome outcome = RunInChild([&] {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) return 98;
        return int(WIPE_File(readOnly.c_str(), 0));
    });
    EXPECT_EQ(outcome.exitStatus, OPEN_ERROR);
    EXPECT_EQ(ReadWholeFile(readOnly), std::string(5000, '\xC3'));
    EXPECT_EQ(access(fifo.c_str(), F_OK), 0);
}

// Values, files included, are checked against the reference elsewhere.
TEST(Crc, TextFormAndZeroResultsThatLatchTheirCode) {
    EXPECT_EQ(CRC_String("123456789", 0), CRC_Bytes(Bytes("123456789"), 9, 0));
    const unsigned char some[3] = {1, 2, 3};
    TempDir dir;
    const ByteVec zeroCrc = FromHex("9d0ad96d");
    // The CRC is computed before the check runs, so the latch read inside is
    // the one that call left.
    auto check = [&](const char* what, int32_t crc, int32_t latch) {
        EXPECT_EQ(crc, 0) << what;
        EXPECT_EQ(API_ErrorCode(), latch) << what;
        // A non-zero CRC clears the latch again: these calls enter like any other.
        EXPECT_NE(CRC_Bytes(some, 3, 0), 0);
        EXPECT_EQ(API_ErrorCode(), 0) << what;
    };
    check("bytes, length 0", CRC_Bytes(some, 0, 0), BAD_PARAM_ERROR);
    check("empty text", CRC_String("", 0), BAD_PARAM_ERROR);
    check("bytes whose CRC is 0", CRC_Bytes(zeroCrc.data(), 4, 0), BAD_PARAM_ERROR);
    check("empty file", CRC_File(dir.Write("empty", ByteVec()).c_str(), 0), OPEN_ERROR);
    check("file whose CRC is 0", CRC_File(dir.Write("zero", zeroCrc).c_str(), 0), OPEN_ERROR);
}
