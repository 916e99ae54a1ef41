// File calls never lose the input: naming one file twice, under any path, is refused.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "test_support.h"

namespace {
std::string ReadAll(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), {});
}
}  // namespace

TEST(FileSafety, StreamFileCallsRefuseTheSameFileUnderAnotherName) {
    char dir[] = "/tmp/verimond-same-XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    const std::string path = std::string(dir) + "/data.bin";
    const std::string link = std::string(dir) + "/link.bin";
    const std::string content(5000, 'q');
    std::ofstream(path, std::ios::binary) << content;
    ASSERT_EQ(symlink(path.c_str(), link.c_str()), 0);
    const std::string dotted = std::string(dir) + "/./data.bin";
    const uint8_t key[32] = {1, 2, 3};
    const uint8_t iv[12] = {};

    for (const std::string& other : {path, link, dotted}) {
        EXPECT_EQ(PC1_File(other.c_str(), path.c_str(), key, 16), DUP_ERROR) << other;
        EXPECT_EQ(CIPHER_StreamFile(other.c_str(), path.c_str(), key, 32, iv, 12, 0, OPT_STREAM_CHACHA20),
                  -DUP_ERROR)
            << other;
        EXPECT_EQ(ReadAll(path), content) << other;
    }
    for (const std::string& f : {path, link}) std::remove(f.c_str());
    rmdir(dir);
}
