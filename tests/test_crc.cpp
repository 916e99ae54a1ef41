// CRC_: reference values over bytes, text and files, and the rule that a
// result of 0 always leaves a code in the latch.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
struct TempFile {
    std::string path;
    explicit TempFile(const std::vector<uint8_t>& data) {
        char name[] = "/tmp/verimond_crcXXXXXX";
        int fd = mkstemp(name);
        path = name;
        EXPECT_GE(fd, 0);
        if (!data.empty()) EXPECT_EQ(write(fd, data.data(), data.size()), ssize_t(data.size()));
        close(fd);
    }
    ~TempFile() { unlink(path.c_str()); }
};
}  // namespace

TEST(Crc, ReferenceValuesOverBytesTextAndFiles) {
    auto records = ReadVectorFile("crc32_reference.txt");
    ASSERT_GE(records.size(), 5u);
    for (const auto& r : records) {
        std::vector<uint8_t> data = r.Bytes("Data");
        int32_t expected = int32_t(std::stoul(r.Get("Crc"), nullptr, 16));
        int32_t latch = expected == 0 ? BAD_PARAM_ERROR : 0;
        EXPECT_EQ(CRC_Bytes(data.data(), int32_t(data.size()), 0), expected) << "line " << r.line;
        EXPECT_EQ(API_ErrorCode(), latch) << "line " << r.line;
        if (std::find(data.begin(), data.end(), 0) == data.end()) {
            std::string text(data.begin(), data.end());
            EXPECT_EQ(CRC_String(text.c_str(), 0), expected) << "line " << r.line;
            EXPECT_EQ(API_ErrorCode(), latch) << "line " << r.line;
        }
        TempFile file(data);
        EXPECT_EQ(CRC_File(file.path.c_str(), 0), expected) << "line " << r.line;
        EXPECT_EQ(API_ErrorCode(), expected == 0 ? OPEN_ERROR : 0) << "line " << r.line;
    }
}

TEST(Crc, FileBlocksChainToTheCrcOfTheWhole) {
    for (size_t n : {1023u, 1024u, 1025u, 5000u}) {
        std::vector<uint8_t> data(n);
        for (size_t i = 0; i < n; ++i) data[i] = uint8_t(i * 7 + (i >> 8));
        TempFile file(data);
        EXPECT_EQ(CRC_File(file.path.c_str(), 0), CRC_Bytes(data.data(), int32_t(n), 0)) << n;
    }
}

TEST(Crc, ZeroResultsLatchTheirCode) {
    const unsigned char some[3] = {1, 2, 3};
    TempFile empty({});
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
    check("empty file", CRC_File(empty.path.c_str(), 0), OPEN_ERROR);
}
