// GCM_: how tag lengths are compared, and the key handle's life and codes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {
using ByteVec = std::vector<uint8_t>;

const uint8_t kKey[32] = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1a,
                          0x1b, 0x1c, 0x1d, 0x1e, 0x1f, 0x20, 0x21, 0x22, 0x23, 0x24, 0x25,
                          0x26, 0x27, 0x28, 0x29, 0x2a, 0x2b, 0x2c, 0x2d, 0x2e, 0x2f};
const uint8_t kIv[12] = {0xca, 0xfe, 0xba, 0xbe, 0xfa, 0xce, 0xdb, 0xad, 0xde, 0xca, 0xf8, 0x88};
}  // namespace

TEST(GcmTags, LengthRules) {
    uint8_t pt[40], ct[40], out[40], tag[100];
    for (int i = 0; i < 40; ++i) pt[i] = uint8_t(i);
    // A long tag buffer gets 16 bytes; the rest stays as it was.
    std::fill(tag, tag + 100, 0xee);
    ASSERT_EQ(GCM_Encrypt(ct, 40, tag, 100, pt, 40, kKey, 16, kIv, 8, nullptr, 0, 0), 0);  // 8-byte IV is fine here
    for (int i = 16; i < 100; ++i) ASSERT_EQ(tag[i], 0xee);
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 16, 0), 0);
    EXPECT_EQ(ToHex(out, 40), ToHex(pt, 40));
    // 17 bytes compare 16: a wrong byte behind them changes nothing.
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 17, 0), 0);
    // A tag length of 0 compares nothing, whatever the data.
    uint8_t forged[40];
    std::copy(ct, ct + 40, forged);
    forged[3] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, forged, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 0, 0), 0);
    EXPECT_NE(ToHex(out, 40), ToHex(pt, 40));
    EXPECT_EQ(GCM_Decrypt(out, 40, forged, 40, kKey, 16, kIv, 8, nullptr, 0, nullptr, 0, 0), 0);
    tag[16] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 17, 0), 0);
}

TEST(GcmKeyHandle, LifecycleAndPositiveHandleCode) {
    uint8_t out[16], tag[16], in[16] = {};
    int32_t first = GCM_InitKey(kKey, 24, 0);
    ASSERT_GT(first, 0);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kIv, 12, nullptr, 0), 0);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 16, out, 16, kIv, 12, nullptr, 0, tag, 16), 0);
    EXPECT_EQ(ToHex(out, 16), ToHex(in, 16));
    // Checks behind the handle test, in order.
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kIv, 0, nullptr, 0), -BAD_IV_ERROR);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 3, in, 16, kIv, 12, nullptr, 0), -SHORT_BUF_ERROR);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 8, tag, 16, in, 16, kIv, 12, nullptr, 0), -SHORT_BUF_ERROR);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 0, nullptr, 0, kIv, 12, nullptr, 0, tag, 16), -BAD_PARAM_ERROR);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 8, in, 16, kIv, 12, nullptr, 0, tag, 16), -SHORT_BUF_ERROR);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 16, in, 16, kIv, 0, nullptr, 0, tag, 16), -BAD_IV_ERROR);

    int32_t second = GCM_InitKey(kKey, 16, 0);
    ASSERT_GT(second, 0);
    if (second != first) {
        // A dead handle gives plus 64, and the latch reads 64.
        EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kIv, 12, nullptr, 0), INVALID_HANDLE_ERROR);
        EXPECT_EQ(API_ErrorCode(), INVALID_HANDLE_ERROR);
    }
    EXPECT_EQ(GCM_NextDecrypt(0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), INVALID_HANDLE_ERROR);
    // A failed init ends the live key as well.
    int32_t live = GCM_InitKey(kKey, 32, 0);
    EXPECT_EQ(GCM_InitKey(kKey, 15, 0), 0);
    EXPECT_EQ(GCM_FinishKey(live), INVALID_HANDLE_ERROR);
}
