// AEAD_ and GCM_.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {
const uint8_t* Ptr(const ByteVec& v) { return v.empty() ? nullptr : v.data(); }

const ByteVec kKey = Pattern(32, 0x40), kNonce = Pattern(16, 0x90);
const int32_t kIncremental[] = {OPT_AEAD_AES_128_GCM, OPT_AEAD_AES_256_GCM, OPT_AEAD_CHACHA20_POLY1305};

int32_t KeyLength(int32_t alg) { return alg == OPT_AEAD_AES_128_GCM ? 16 : 32; }

// Ciphertext and tag of one whole message.
void Seal(int32_t alg, const ByteVec& aad, const ByteVec& pt, ByteVec* ct, ByteVec* tag) {
    ct->assign(pt.size(), 0);
    tag->assign(16, 0);
    ASSERT_EQ(AEAD_Encrypt(ct->empty() ? nullptr : ct->data(), int32_t(ct->size()), tag->data(), 16, Ptr(pt),
                           int32_t(pt.size()), kKey.data(), KeyLength(alg), kNonce.data(), 12, Ptr(aad),
                           int32_t(aad.size()), alg),
              0);
}

// The whole-message decryption with kKey and a 12-byte kNonce.
int32_t Open(int32_t alg, ByteVec* out, const ByteVec& ct, const ByteVec& aad, const uint8_t* tag, int32_t tagLength) {
    return AEAD_Decrypt(out->data(), int32_t(out->size()), ct.data(), int32_t(ct.size()), kKey.data(), KeyLength(alg),
                        kNonce.data(), 12, Ptr(aad), int32_t(aad.size()), tag, tagLength, alg);
}

struct Piecewise {
    std::vector<size_t> aadCuts, textCuts;  // piece sizes, repeated until the data ends
};
void Feed(std::vector<size_t> cuts, size_t total, const std::function<void(size_t, size_t)>& piece) {
    size_t pos = 0;
    for (size_t i = 0; pos < total; ++i) {
        size_t n = std::min(cuts[i % cuts.size()], total - pos);
        piece(pos, n);
        pos += n;
    }
}

}  // namespace

// Encryption in pieces is compared with the reference elsewhere; here the
// decryption in pieces, in place, on a key that outlives each message.
TEST(AeadIncremental, DecryptsInPiecesOnALastingKey) {
    const ByteVec aad = Pattern(37, 1), pt = Pattern(150, 2);
    const std::vector<Piecewise> ways = {{{1}, {1}}, {{16, 5}, {63, 65, 1, 64}}, {{100}, {15, 16, 17}}, {{3}, {7}}};
    for (int32_t alg : kIncremental) {
        ByteVec ct, tag;
        Seal(alg, aad, pt, &ct, &tag);
        int32_t h = AEAD_InitKey(kKey.data(), KeyLength(alg), alg);
        ASSERT_GT(h, 0);
        for (const Piecewise& w : ways) {
            ByteVec buf = ct;
            ASSERT_EQ(AEAD_SetNonce(h, kNonce.data(), 12), 0);
            Feed(w.aadCuts, aad.size(), [&](size_t at, size_t n) { ASSERT_EQ(AEAD_AddAAD(h, &aad[at], int32_t(n)), 0); });
            ASSERT_EQ(AEAD_StartDecrypt(h, tag.data(), 16), 0);
            Feed(w.textCuts, buf.size(), [&](size_t at, size_t n) {
                ASSERT_EQ(AEAD_Update(h, &buf[at], int32_t(n), &buf[at], int32_t(n)), 0);
            });
            EXPECT_EQ(AEAD_FinishDecrypt(h), 0);
            EXPECT_EQ(buf, pt) << "alg " << alg << " cuts " << w.aadCuts[0] << "/" << w.textCuts[0];
        }
        // Decrypting with no output only authenticates.
        ASSERT_EQ(AEAD_SetNonce(h, kNonce.data(), 12), 0);
        ASSERT_EQ(AEAD_AddAAD(h, aad.data(), int32_t(aad.size())), 0);
        ASSERT_EQ(AEAD_StartDecrypt(h, tag.data(), 16), 0);
        ASSERT_EQ(AEAD_Update(h, nullptr, 0, ct.data(), int32_t(ct.size())), 0);
        EXPECT_EQ(AEAD_FinishDecrypt(h), 0);
        EXPECT_EQ(AEAD_Destroy(h), 0);
    }
}

TEST(AeadBadTag, WhatOutHoldsByAlgorithm) {
    const ByteVec pt = Pattern(40, 9), aad = Pattern(5, 3);
    // What out holds: 'u' untouched, 'p' forged plaintext, 'z' zeros over the plaintext.
    struct Case { int32_t alg, keylen, noncelen; bool prefixed; char expect; } cases[] = {
        {OPT_AEAD_AES_128_GCM, 16, 12, false, 'u'}, {OPT_AEAD_AES_256_GCM, 32, 12, true, 'u'},
        {OPT_AEAD_CHACHA20_POLY1305, 32, 12, false, 'p'}, {OPT_AEAD_ASCON_128, 16, 16, false, 'z'},
        {OPT_AEAD_ASCON_128A, 16, 16, true, 'z'}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.alg);
        const int32_t keylen = c.keylen, noncelen = c.noncelen, options = c.alg | (c.prefixed ? OPT_PREFIX_IV : 0);
        ByteVec sealed(64 + pt.size());
        int32_t n = AEAD_EncryptWithTag(sealed.data(), int32_t(sealed.size()), pt.data(), int32_t(pt.size()),
                                        kKey.data(), keylen, kNonce.data(), noncelen, aad.data(), 5, options);
        ASSERT_GT(n, 0);
        sealed.resize(size_t(n));
        sealed.back() ^= 0x80;  // a bad tag
        ByteVec out(pt.size() + 8, 0xcc);
        EXPECT_EQ(AEAD_DecryptWithTag(out.data(), int32_t(out.size()), sealed.data(), n, kKey.data(), keylen,
                                      kNonce.data(), noncelen, aad.data(), 5, options),
                  -AUTH_FAIL_ERROR);
        ByteVec expected = c.expect == 'p' ? pt : ByteVec(pt.size(), c.expect == 'u' ? 0xcc : 0);
        expected.resize(out.size(), 0xcc);  // beyond the plaintext: untouched
        EXPECT_EQ(out, expected);
    }
    // The whole-message pair: the same split between AES-GCM and ChaCha20-Poly1305.
    for (int32_t alg : kIncremental) {
        ByteVec ct, tag;
        Seal(alg, aad, pt, &ct, &tag);
        ct[0] ^= 1;
        ByteVec out(pt.size(), 0xcc);
        EXPECT_EQ(Open(alg, &out, ct, aad, tag.data(), 16), -AUTH_FAIL_ERROR);
        ByteVec forged = pt;
        forged[0] ^= 1;
        EXPECT_EQ(out, alg == OPT_AEAD_CHACHA20_POLY1305 ? forged : ByteVec(pt.size(), 0xcc));
    }
}

TEST(AeadWholeMessage, TagsAndLengths) {
    const ByteVec aad = Pattern(20, 5), pt = Pattern(100, 6);
    // A 12-byte tag buffer is short, and is left zero.
    ByteVec small(12, 0xab), big(24, 0xab), out(100);
    const auto seal = [&](ByteVec& tag, int32_t alg) {
        return AEAD_Encrypt(out.data(), 100, tag.data(), int32_t(tag.size()), pt.data(), 100, kKey.data(), 32,
                            kNonce.data(), 12, nullptr, 0, alg);
    };
    EXPECT_EQ(seal(small, OPT_AEAD_CHACHA20_POLY1305), -SHORT_BUF_ERROR);
    EXPECT_EQ(small, ByteVec(12, 0));
    // A longer tag buffer gets 16 bytes; the rest stays zero.
    EXPECT_EQ(seal(big, OPT_AEAD_AES_256_GCM), 0);
    EXPECT_EQ(ByteVec(big.begin() + 16, big.end()), ByteVec(8, 0));
    // Truncated tags on decryption: 4 to 16 bytes, only those compared.
    for (int32_t alg : kIncremental) {
        ByteVec ct, tag;
        Seal(alg, aad, pt, &ct, &tag);
        tag[5] ^= 1;  // outside the first four bytes
        EXPECT_EQ(Open(alg, &out, ct, aad, tag.data(), 4), 0);
        EXPECT_EQ(Open(alg, &out, ct, aad, tag.data(), 6), -AUTH_FAIL_ERROR);
    }
    // An empty input gives the tag alone.
    ByteVec only(40, 0xee);
    EXPECT_EQ(AEAD_EncryptWithTag(only.data(), 40, nullptr, 0, kKey.data(), 32, kNonce.data(), 12, aad.data(), 20,
                                  OPT_AEAD_CHACHA20_POLY1305),
              16);
    EXPECT_EQ(ByteVec(only.begin() + 16, only.end()), ByteVec(24, 0xee));
}

// The WithTag calls latch what they return, a length as well as a failure.
TEST(AeadChecks, WithTagLatchesItsResult) {
    uint8_t out[64], in[100] = {};
    const uint8_t *k = kKey.data(), *n = kNonce.data();
    EXPECT_EQ(AEAD_EncryptWithTag(out, 23, in, 8, k, 16, n, 12, nullptr, 0, OPT_AEAD_AES_128_GCM), -SHORT_BUF_ERROR);
    EXPECT_EQ(API_ErrorCode(), SHORT_BUF_ERROR);
    EXPECT_EQ(AEAD_DecryptWithTag(nullptr, 0, in, 24, k, 16, n, 12, nullptr, 0, OPT_AEAD_AES_128_GCM), 8);
    EXPECT_EQ(API_ErrorCode(), 8);
    EXPECT_EQ(AEAD_DecryptWithTag(out, 64, in, 24, k, 16, n, 12, nullptr, 0, OPT_AEAD_AES_128_GCM), -AUTH_FAIL_ERROR);
    EXPECT_EQ(API_ErrorCode(), AUTH_FAIL_ERROR);
}

TEST(AeadStateMachine, SequenceRules) {
    uint8_t tag[16], buf[32] = {};
    const uint8_t* n = kNonce.data();
    EXPECT_EQ(AEAD_InitKey(kKey.data(), 24, OPT_AEAD_AES_128_GCM), -BAD_KEY_LEN_ERROR);
    EXPECT_EQ(API_ErrorCode(), 0);  // returned, never latched
    for (int32_t alg : kIncremental) {
        int32_t h = AEAD_InitKey(kKey.data(), KeyLength(alg), alg);
        ASSERT_GT(h, 0);
        // Failed calls leave the state as it was; the sweep covers each refusal alone.
        struct Step { const char* what; std::function<int32_t()> call; int32_t expected; };
        const std::vector<Step> steps = {
            {"finish before start", [&] { return AEAD_FinishDecrypt(h); }, -MISUSE_ERROR},
            {"nonce", [&] { return AEAD_SetNonce(h, n, 12); }, 0},
            {"empty AAD does nothing", [&] { return AEAD_AddAAD(h, nullptr, 0); }, 0},
            {"AAD", [&] { return AEAD_AddAAD(h, buf, 5); }, 0},
            {"three-byte tag", [&] { return AEAD_StartDecrypt(h, tag, 3); }, -BAD_PARAM_ERROR},
            {"still nonce set", [&] { return AEAD_StartEncrypt(h); }, 0},
            {"AAD after start", [&] { return AEAD_AddAAD(h, buf, 5); }, -MISUSE_ERROR},
            {"short out", [&] { return AEAD_Update(h, buf, 7, buf, 8); }, -SHORT_BUF_ERROR},
            {"nothing to do", [&] { return AEAD_Update(h, nullptr, 0, nullptr, 0); }, 0},
            {"update", [&] { return AEAD_Update(h, buf, 32, buf, 20); }, 0},
            {"tag buffer 15", [&] { return AEAD_FinishEncrypt(h, tag, 15); }, -SHORT_BUF_ERROR},
            {"finish", [&] { return AEAD_FinishEncrypt(h, tag, 16); }, 0},
            {"finish again", [&] { return AEAD_FinishEncrypt(h, tag, 16); }, -MISUSE_ERROR},
            {"the key survives", [&] { return AEAD_SetNonce(h, n, 12); }, 0},
            {"decrypt with a 20-byte tag buffer", [&] { tag[0] ^= 1; return AEAD_StartDecrypt(h, tag, 20); }, 0},
            {"update", [&] { return AEAD_Update(h, buf, 32, buf, 20); }, 0},
            {"bad tag", [&] { return AEAD_FinishDecrypt(h); }, -AUTH_FAIL_ERROR},
            {"key set after a bad tag", [&] { return AEAD_SetNonce(h, n, 12); }, 0},
            {"destroy", [&] { return AEAD_Destroy(h); }, 0},
        };
        for (const Step& s : steps) EXPECT_EQ(s.call(), s.expected) << "alg " << alg << ": " << s.what;
    }

    // A second init ends the first.
    int32_t h = AEAD_InitKey(kKey.data(), 32, OPT_AEAD_CHACHA20_POLY1305);
    EXPECT_EQ(AEAD_SetNonce(h, n, 12), 0);
    int32_t h2 = AEAD_InitKey(kKey.data(), 16, OPT_AEAD_AES_128_GCM);
    ASSERT_GT(h2, 0);
    if (h2 != h) EXPECT_EQ(AEAD_StartEncrypt(h), -INVALID_HANDLE_ERROR);
    // A failed init ends it too, even one that returns -33.
    EXPECT_EQ(AEAD_InitKey(kKey.data(), 31, OPT_AEAD_CHACHA20_POLY1305), -BAD_KEY_LEN_ERROR);
    EXPECT_EQ(AEAD_SetNonce(h2, n, 12), -INVALID_HANDLE_ERROR);
}

TEST(GcmTags, LengthRules) {
    uint8_t pt[40], ct[40], out[40], tag[100];
    for (int i = 0; i < 40; ++i) pt[i] = uint8_t(i);
    // A long tag buffer gets 16 bytes; the rest stays as it was.
    std::fill(tag, tag + 100, 0xee);
    ASSERT_EQ(GCM_Encrypt(ct, 40, tag, 100, pt, 40, kKey.data(), 16, kNonce.data(), 8, nullptr, 0, 0), 0);  // 8-byte IV is fine here
    for (int i = 16; i < 100; ++i) ASSERT_EQ(tag[i], 0xee);
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey.data(), 16, kNonce.data(), 8, nullptr, 0, tag, 16, 0), 0);
    EXPECT_EQ(ToHex(out, 40), ToHex(pt, 40));
    // 17 bytes compare 16: a wrong byte behind them changes nothing.
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey.data(), 16, kNonce.data(), 8, nullptr, 0, tag, 17, 0), 0);
    // A tag length of 0 compares nothing, whatever the data.
    uint8_t forged[40];
    std::copy(ct, ct + 40, forged);
    forged[3] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, forged, 40, kKey.data(), 16, kNonce.data(), 8, nullptr, 0, tag, 0, 0), 0);
    EXPECT_NE(ToHex(out, 40), ToHex(pt, 40));
    tag[16] ^= 1;
    EXPECT_EQ(GCM_Decrypt(out, 40, ct, 40, kKey.data(), 16, kNonce.data(), 8, nullptr, 0, tag, 17, 0), 0);
}

TEST(GcmKeyHandle, LifecycleAndPositiveHandleCode) {
    uint8_t out[16], tag[16], in[16] = {};
    int32_t first = GCM_InitKey(kKey.data(), 24, 0);
    ASSERT_GT(first, 0);
    EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kNonce.data(), 12, nullptr, 0), 0);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 16, out, 16, kNonce.data(), 12, nullptr, 0, tag, 16), 0);
    EXPECT_EQ(ToHex(out, 16), ToHex(in, 16));
    // Checks behind the handle test.
    EXPECT_EQ(GCM_NextDecrypt(first, out, 0, nullptr, 0, kNonce.data(), 12, nullptr, 0, tag, 16), -BAD_PARAM_ERROR);
    EXPECT_EQ(GCM_NextDecrypt(first, out, 8, in, 16, kNonce.data(), 12, nullptr, 0, tag, 16), -SHORT_BUF_ERROR);

    int32_t second = GCM_InitKey(kKey.data(), 16, 0);
    ASSERT_GT(second, 0);
    if (second != first) {
        // A dead handle gives plus 64, and the latch reads 64.
        EXPECT_EQ(GCM_NextEncrypt(first, out, 16, tag, 16, in, 16, kNonce.data(), 12, nullptr, 0), INVALID_HANDLE_ERROR);
        EXPECT_EQ(API_ErrorCode(), INVALID_HANDLE_ERROR);
    }
    // A failed init ends the live key as well.
    int32_t live = GCM_InitKey(kKey.data(), 32, 0);
    EXPECT_EQ(GCM_InitKey(kKey.data(), 15, 0), 0);
    EXPECT_EQ(GCM_FinishKey(live), INVALID_HANDLE_ERROR);
}
