// The error latch and the per-thread record, seen through the exports.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "test_support.h"

TEST(Frame, LatchHoldsTheFirstFailureUntilTheNextCall) {
    unsigned char out[32];
    EXPECT_EQ(HASH_Bytes(out, 32, nullptr, 5, OPT_HASH_SHA256), -BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_PARAM_ERROR);  // reading does not disturb it
    EXPECT_EQ(HASH_Bytes(out, 32, nullptr, 0, OPT_HASH_SHA256), 32);
    EXPECT_EQ(API_ErrorCode(), 0);  // failures-only calls leave 0 after success
    EXPECT_EQ(HASH_Length(9), -BAD_FLAG_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
    // ErrorLookup has no frame: the latch stands.
    char text[80];
    API_ErrorLookup(text, 79, 6);
    EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
}

TEST(Frame, EachThreadHasItsOwnLatch) {
    ASSERT_EQ(HASH_Length(14), -BAD_FLAG_ERROR);
    std::vector<int32_t> seen(8, -1);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&seen, i] {
            int32_t before = API_ErrorCode();  // a new thread reads 0
            unsigned char local[20];
            HASH_Bytes(local, 20, nullptr, -i - 1, 0);
            seen[size_t(i)] = before == 0 ? API_ErrorCode() : -2;
        });
    }
    for (auto& t : threads) t.join();
    for (int32_t v : seen) EXPECT_EQ(v, BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_FLAG_ERROR);
}
