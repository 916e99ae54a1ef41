// GCM_: the NIST GCMVS subsets (every key size, 96-bit and other IV lengths,
// tags of 4 to 16 bytes, failing tags) whole and under a key handle, and the
// order of the argument checks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "vector_reader.h"

namespace {
using ByteVec = std::vector<uint8_t>;

// Pointers for possibly empty fields: an empty field is passed as absent.
const uint8_t* Ptr(const ByteVec& v) { return v.empty() ? nullptr : v.data(); }

const char* kEncryptFiles[] = {"nist-cavp/gcm/gcmEncryptExtIV128_subset.rsp",
                               "nist-cavp/gcm/gcmEncryptExtIV192_subset.rsp",
                               "nist-cavp/gcm/gcmEncryptExtIV256_subset.rsp"};
const char* kDecryptFiles[] = {"nist-cavp/gcm/gcmDecrypt128_subset.rsp", "nist-cavp/gcm/gcmDecrypt192_subset.rsp",
                               "nist-cavp/gcm/gcmDecrypt256_subset.rsp"};

const uint8_t kKey[32] = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1a,
                          0x1b, 0x1c, 0x1d, 0x1e, 0x1f, 0x20, 0x21, 0x22, 0x23, 0x24, 0x25,
                          0x26, 0x27, 0x28, 0x29, 0x2a, 0x2b, 0x2c, 0x2d, 0x2e, 0x2f};
const uint8_t kIv[12] = {0xca, 0xfe, 0xba, 0xbe, 0xfa, 0xce, 0xdb, 0xad, 0xde, 0xca, 0xf8, 0x88};
}  // namespace

TEST(GcmVectors, DecryptWholeAndUnderAKeyHandle) {
    int passed = 0, failed = 0;
    for (const char* file : kDecryptFiles) {
        for (const auto& r : ReadVectorFile(file)) {
            ByteVec key = r.Bytes("Key"), iv = r.Bytes("IV"), ct = r.Bytes("CT"), aad = r.Bytes("AAD");
            ByteVec tag = r.Bytes("Tag");
            const int32_t expected = r.fail ? -AUTH_FAIL_ERROR : 0;
            ByteVec out(ct.size() + 1, 0x5a);
            ASSERT_EQ(GCM_Decrypt(out.data(), int32_t(out.size()), Ptr(ct), int32_t(ct.size()), key.data(),
                                  int32_t(key.size()), iv.data(), int32_t(iv.size()), Ptr(aad), int32_t(aad.size()),
                                  tag.data(), int32_t(tag.size()), 0),
                      expected)
                << file << " line " << r.line;
            if (r.fail) {
                EXPECT_EQ(out, ByteVec(ct.size() + 1, 0x5a)) << file << " line " << r.line;
            } else {
                EXPECT_EQ(ToHex(out.data(), ct.size()), r.Get("PT")) << file << " line " << r.line;
            }
            // Verify only: no output buffer, a length that covers the input.
            EXPECT_EQ(GCM_Decrypt(nullptr, int32_t(ct.size()), Ptr(ct), int32_t(ct.size()), key.data(),
                                  int32_t(key.size()), iv.data(), int32_t(iv.size()), Ptr(aad), int32_t(aad.size()),
                                  tag.data(), int32_t(tag.size()), 0),
                      expected);

            int32_t h = GCM_InitKey(key.data(), int32_t(key.size()), 0);
            ByteVec out2(ct.size() + 1, 0x5a);
            EXPECT_EQ(GCM_NextDecrypt(h, out2.data(), int32_t(out2.size()), Ptr(ct), int32_t(ct.size()), iv.data(),
                                      int32_t(iv.size()), Ptr(aad), int32_t(aad.size()), tag.data(),
                                      int32_t(tag.size())),
                      expected);
            EXPECT_EQ(out2, out);
            GCM_FinishKey(h);
            (r.fail ? failed : passed)++;
        }
    }
    EXPECT_EQ(passed, 224);
    EXPECT_EQ(failed, 225);
}

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
    // A truncated tag compares just its bytes.
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 4, 0), 0);
    tag[3] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 4, 0), -AUTH_FAIL_ERROR);
    tag[3] ^= 1;
    tag[16] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey, 16, kIv, 8, nullptr, 0, tag, 17, 0), 0);
}

TEST(GcmChecks, EncryptOrder) {
    uint8_t out[32], tag[16], in[32] = {};
    struct Case {
        const char* what;
        uint8_t* out;
        int32_t outlen;
        uint8_t* tag;
        int32_t taglen;
        const uint8_t* in;
        int32_t inlen;
        const uint8_t* key;
        int32_t keylen;
        const uint8_t* iv;
        int32_t ivlen;
        const uint8_t* aad;
        int32_t aadlen, expected;
    };
    const Case cases[] = {
        {"absent key before all", nullptr, 0, nullptr, 0, nullptr, 5, nullptr, 16, nullptr, 0, nullptr, 0, -BAD_KEY_ERROR},
        {"key length 0", out, 32, tag, 16, in, 32, kKey, 0, kIv, 12, nullptr, 0, -BAD_KEY_ERROR},
        {"absent IV", out, 32, tag, 16, in, 32, kKey, 20, nullptr, 12, nullptr, 0, -BAD_IV_ERROR},
        {"IV length 0", out, 32, tag, 16, in, 32, kKey, 20, kIv, 0, nullptr, 0, -BAD_IV_ERROR},
        {"no output and no tag", nullptr, 32, nullptr, 16, in, 32, kKey, 20, kIv, 12, nullptr, 0, -BAD_PARAM_ERROR},
        {"both lengths 0", out, 0, tag, 0, in, 32, kKey, 20, kIv, 12, nullptr, 0, -BAD_PARAM_ERROR},
        {"absent input", out, 32, tag, 16, nullptr, 32, kKey, 20, kIv, 12, nullptr, 0, -BAD_PARAM_ERROR},
        {"absent AAD", out, 32, tag, 16, in, 32, kKey, 20, kIv, 12, nullptr, 4, -BAD_PARAM_ERROR},
        {"negative AAD length", out, 32, tag, 16, in, 32, kKey, 20, kIv, 12, in, -4, -BAD_PARAM_ERROR},
        {"tag below 4 before key length", out, 32, tag, 3, in, 32, kKey, 20, kIv, 12, nullptr, 0, -SHORT_BUF_ERROR},
        {"key length 20", out, 32, tag, 16, in, 32, kKey, 20, kIv, 12, nullptr, 0, -BAD_KEY_LEN_ERROR},
        {"output too short", out, 31, tag, 16, in, 32, kKey, 24, kIv, 12, nullptr, 0, -SHORT_BUF_ERROR},
        {"text with no output", nullptr, 0, tag, 16, in, 32, kKey, 24, kIv, 12, nullptr, 0, -NULL_ERROR},
        {"text with output length 0", out, 0, tag, 16, in, 32, kKey, 24, kIv, 12, nullptr, 0, -SHORT_BUF_ERROR},
        {"tag of AAD only", nullptr, 0, tag, 16, nullptr, 0, kKey, 32, kIv, 12, in, 32, 0},
        {"ciphertext without tag", out, 32, nullptr, 0, in, 32, kKey, 16, kIv, 1, nullptr, 0, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GCM_Encrypt(c.out, c.outlen, c.tag, c.taglen, c.in, c.inlen, c.key, c.keylen, c.iv, c.ivlen, c.aad,
                              c.aadlen, 0),
                  c.expected)
            << c.what;
    }
}

TEST(GcmChecks, DecryptOrder) {
    uint8_t out[32], tag[16] = {}, in[32] = {};
    struct Case {
        const char* what;
        uint8_t* out;
        int32_t outlen;
        const uint8_t* in;
        int32_t inlen;
        const uint8_t* key;
        int32_t keylen;
        const uint8_t* iv;
        int32_t ivlen;
        const uint8_t* aad;
        int32_t aadlen;
        const uint8_t* tag;
        int32_t taglen, expected;
    };
    const Case cases[] = {
        {"absent key", out, 32, in, 32, nullptr, 16, kIv, 12, nullptr, 0, tag, 16, -BAD_KEY_ERROR},
        {"absent IV", out, 32, in, 32, kKey, 16, nullptr, 12, nullptr, 0, tag, 16, -BAD_IV_ERROR},
        {"short output, even absent", nullptr, 31, in, 32, kKey, 20, kIv, 12, nullptr, 0, tag, 16, -SHORT_BUF_ERROR},
        {"absent input", out, 32, nullptr, 32, kKey, 20, kIv, 12, nullptr, 0, tag, 16, -BAD_PARAM_ERROR},
        {"absent AAD", out, 32, in, 32, kKey, 20, kIv, 12, nullptr, 1, tag, 16, -BAD_PARAM_ERROR},
        {"negative input length", out, 32, in, -1, kKey, 20, kIv, 12, nullptr, 0, tag, 16, -BAD_PARAM_ERROR},
        {"key length 20", out, 32, in, 32, kKey, 20, kIv, 12, nullptr, 0, tag, 16, -BAD_KEY_LEN_ERROR},
        {"absent tag with a length", out, 32, in, 32, kKey, 16, kIv, 12, nullptr, 0, nullptr, 16, -BAD_PARAM_ERROR},
        {"wrong tag", out, 32, in, 32, kKey, 16, kIv, 12, nullptr, 0, tag, 16, -AUTH_FAIL_ERROR},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GCM_Decrypt(c.out, c.outlen, c.in, c.inlen, c.key, c.keylen, c.iv, c.ivlen, c.aad, c.aadlen, c.tag,
                              c.taglen, 0),
                  c.expected)
            << c.what;
    }
}

TEST(GcmKeyHandle, LifecycleAndPositiveHandleCode) {
    uint8_t out[16], tag[16], in[16] = {};
    EXPECT_EQ(GCM_InitKey(nullptr, 16, 0), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_KEY_ERROR);
    EXPECT_EQ(GCM_InitKey(kKey, 20, 0), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_KEY_LEN_ERROR);

    int32_t first = GCM_InitKey(kKey, 24, 0);
    ASSERT_GT(first, 0);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kIv, 12, nullptr, 0), 0);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 16, out, 16, kIv, 12, nullptr, 0, tag, 16), 0);
    EXPECT_EQ(ToHex(out, 16), ToHex(in, 16));
    // Checks behind the handle test, in order.
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kIv, 0, nullptr, 0), -BAD_IV_ERROR);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 3, in, 16, kIv, 12, nullptr, 0), -SHORT_BUF_ERROR);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 8, tag, 16, in, 16, kIv, 12, nullptr, 0), -SHORT_BUF_ERROR);
    EXPECT_EQ(GCM_NextDecrypt(first, nullptr, 16, in, 16, kIv, 12, nullptr, 0, tag, 16), -BAD_PARAM_ERROR);
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
    EXPECT_EQ(GCM_FinishKey(second), 0);
    EXPECT_EQ(GCM_FinishKey(second), INVALID_HANDLE_ERROR);
    EXPECT_EQ(API_ErrorCode(), INVALID_HANDLE_ERROR);
    // A failed init ends the live key as well.
    int32_t live = GCM_InitKey(kKey, 32, 0);
    EXPECT_EQ(GCM_InitKey(kKey, 15, 0), 0);
    EXPECT_EQ(GCM_FinishKey(live), INVALID_HANDLE_ERROR);
}
