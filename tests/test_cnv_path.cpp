// CNV_Utf8FromWide and CNV_ShortPathName: encodings at every length boundary,
// refused surrogates, the two different size rules, and no latch.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "test_support.h"

namespace {
using Wide = std::vector<uint16_t>;

Wide WideOf(const std::string& latin1) {
    Wide w(latin1.begin(), latin1.end());
    for (auto& u : w) u &= 0xFF;
    w.push_back(0);
    return w;
}
}  // namespace

TEST(CnvUtf8, EncodesMeasuresAndRefuses) {
    struct Case {
        Wide text;
        int32_t result;
        const char* utf8;
    } cases[] = {
        {{'a', 'b', 0}, 2, "6162"},      {{0x7F, 0}, 1, "7f"},        {{0x80, 0}, 2, "c280"},
        {{0xE9, 0}, 2, "c3a9"},          {{0x7FF, 0}, 2, "dfbf"},      {{0x800, 0}, 3, "e0a080"},
        {{0x20AC, 0}, 3, "e282ac"},      {{0xD7FF, 0}, 3, "ed9fbf"},   {{0xE000, 0}, 3, "ee8080"},
        {{0xFFFF, 0}, 3, "efbfbf"},      {{'x', 0xE9, 0x20AC, 0}, 6, "78c3a9e282ac"},
        {{0xD800, 0}, -ENCODING_ERROR, ""}, {{0xDFFF, 0}, -ENCODING_ERROR, ""},
        {{'a', 0xD83D, 0xDE00, 0}, -ENCODING_ERROR, ""},  // a pair is not joined either
        {{0}, 0, ""},
    };
    ASSERT_EQ(WIPE_Data(nullptr, 1), NULL_ERROR);  // a latch these calls must leave alone
    for (const Case& c : cases) {
        SCOPED_TRACE(c.utf8);
        char out[16];
        EXPECT_EQ(CNV_Utf8FromWide(nullptr, 0, c.text.data()), c.result);
        std::memset(out, 'Z', sizeof out);
        // An exact fit: the length counts the bytes without the NUL.
        EXPECT_EQ(CNV_Utf8FromWide(out, c.result > 0 ? c.result : 15, c.text.data()), c.result);
        if (c.result >= 0) EXPECT_EQ(ToHex(reinterpret_cast<uint8_t*>(out), std::strlen(out)), c.utf8);
        if (c.result > 1) {  // a length of 0 would be a query
            std::memset(out, 'Z', sizeof out);
            EXPECT_EQ(CNV_Utf8FromWide(out, c.result - 1, c.text.data()), -SHORT_BUF_ERROR);
            EXPECT_EQ(out[0], 'Z') << "a short output is not written";
        }
    }
    char out[4] = "ZZZ";
    EXPECT_EQ(CNV_Utf8FromWide(out, -1, WideOf("abc").data()), 3);  // a negative length asks too
    EXPECT_STREQ(out, "ZZZ");
    EXPECT_EQ(API_ErrorCode(), NULL_ERROR);
}

TEST(CnvShortPath, ExistingPathsComeBackInUtf8) {
    char dirName[] = "/tmp/verimond_pathXXXXXX";
    ASSERT_NE(mkdtemp(dirName), nullptr);
    std::string dir = dirName, plain = dir + "/file.txt", accented = dir + "/caf\xE9";
    std::string accentedUtf8 = dir + "/caf\xC3\xA9";
    for (const std::string& p : {plain, accentedUtf8}) std::ofstream(p) << "x";

    ASSERT_EQ(WIPE_Data(nullptr, 1), NULL_ERROR);
    for (const auto& [latin1, utf8] : {std::pair{plain, plain}, std::pair{accented, accentedUtf8}, std::pair{dir, dir}}) {
        SCOPED_TRACE(utf8);
        Wide wide = WideOf(latin1);
        int32_t n = int32_t(utf8.size());
        // The query counts the NUL; the real call does not, yet needs that much room.
        EXPECT_EQ(CNV_ShortPathName(nullptr, 0, wide.data()), n + 1);
        std::vector<char> out(size_t(n) + 2, 'Z');
        EXPECT_EQ(CNV_ShortPathName(out.data(), n, wide.data()), -SHORT_BUF_ERROR);
        EXPECT_EQ(out[0], 'Z');
        EXPECT_EQ(CNV_ShortPathName(out.data(), n + 1, wide.data()), n);
        EXPECT_EQ(std::string(out.data()), utf8);
    }
    struct Case {
        const char* what;
        Wide path;
        int32_t expected;
    } cases[] = {
        {"file used as a directory", WideOf(plain + "/x"), -1},
        {"name too long", WideOf(dir + "/" + std::string(5000, 'n')), -MISC_ERROR},
    };
    for (const Case& c : cases) {
        char out[8] = "ZZZ";
        EXPECT_EQ(CNV_ShortPathName(out, 7, c.path.data()), c.expected) << c.what;
        EXPECT_EQ(CNV_ShortPathName(nullptr, 0, c.path.data()), c.expected) << c.what;
    }
    EXPECT_EQ(API_ErrorCode(), NULL_ERROR);
    unlink(plain.c_str());
    unlink(accentedUtf8.c_str());
    rmdir(dirName);
}
