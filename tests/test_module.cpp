// Module information, error texts and the power-up self-test entry.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "test_support.h"

TEST(Module, VersionAndFixedTexts) {
    char buf[64];
    EXPECT_EQ(API_CompileTime(buf, 63), 20);
    EXPECT_EQ(std::strlen(buf), 20u);
    EXPECT_EQ(API_CompileTime(buf, 5), 5);
    EXPECT_EQ(std::strlen(buf), 5u);
    EXPECT_EQ(API_Platform(buf, 63), 5);
    EXPECT_STREQ(buf, "Win32");
    int32_t infoLength = API_ModuleInfo(nullptr, 0, 0);
    EXPECT_GT(infoLength, 0);
    std::string info(size_t(infoLength) + 1, '\0');
    EXPECT_EQ(API_ModuleInfo(info.data(), infoLength, 0), infoLength);
}

TEST(Module, ModuleNameIsTheLibraryFile) {
    char path[300];
    int32_t n = API_ModuleName(path, 299, 0);
    ASSERT_GT(n, 0);
    EXPECT_EQ(API_ModuleName(nullptr, 0, 0), n);
    EXPECT_NE(std::strstr(path, "libverimond.so"), nullptr) << path;
}

TEST(Module, ErrorLookup) {
    char buf[128];
    EXPECT_EQ(API_ErrorLookup(buf, 127, 6), 47);
    EXPECT_STREQ(buf, "Parameter is wrong or missing (BAD_PARAM_ERROR)");
    EXPECT_EQ(API_ErrorLookup(buf, 127, -6), 47);
    EXPECT_STREQ(buf, "Parameter is wrong or missing (BAD_PARAM_ERROR)");
    EXPECT_EQ(API_ErrorLookup(buf, 10, 6), 10);
    EXPECT_STREQ(buf, "Parameter ");
    EXPECT_GT(API_ErrorLookup(buf, 127, 0), 0);
    EXPECT_STREQ(buf, "OK, success, no error (SUCCESS_NO_ERROR)");
    EXPECT_GT(API_ErrorLookup(buf, 127, -299), 0);
    EXPECT_STREQ(buf, "PRNG: Catastrophic failure (PRNG_ERR_CATASTROPHIC)");
}

TEST(Module, PowerUpTestsPassAndLeaveTheLatch) {
    unsigned char out[20];
    ASSERT_EQ(HASH_Bytes(out, 20, nullptr, -1, 0), -BAD_PARAM_ERROR);
    EXPECT_EQ(API_PowerUpTests(0), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
}
