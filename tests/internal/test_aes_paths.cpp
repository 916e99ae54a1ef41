// The processor-instruction paths of AES and AES-GCM against the portable
// tables: the same random keys, IVs and data through every path (portable,
// 128-bit AES-NI, 256-bit VAES), comparing outputs and the state each run
// leaves behind. Lengths cover part blocks and the edges of the 8- and
// 16-block groups; buffers are unaligned, shared and separate.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "aead/aead_stream.h"
#include "aead/gcm.h"
#include "block/block.h"
#include "util/cpu.h"
#include "verimond.h"

namespace {

// Processor settings, portable first: the reference for the others.
const char* const kPaths[] = {"portable", "-vaes,-vpclmul", nullptr};
const char* PathName(const char* p) { return p == nullptr ? "all features" : p; }

class CpuPaths : public ::testing::Test {
protected:
    void SetUp() override {
        CpuDetectWith(nullptr);
        if (!g_cpu.aesni) GTEST_SKIP() << "no AES instructions here: one path only";
    }
    void TearDown() override { CpuDetect(); }
};

using Bytes = std::vector<uint8_t>;
std::mt19937 g_random(20240611);

Bytes Random(size_t n) {
    Bytes b(n);
    for (auto& x : b) x = uint8_t(g_random());
    return b;
}

// Lengths 0 to 300, then a few that run many groups with odd tails.
std::vector<size_t> Lengths() {
    std::vector<size_t> n;
    for (size_t i = 0; i <= 300; ++i) n.push_back(i);
    for (size_t i : {1024, 4096 + 5, 65536 + 16 * 15 + 3}) n.push_back(i);
    return n;
}

// ---- the AES engine ----

struct AesRun {
    int status;
    Bytes out;      // written to a second buffer
    Bytes inPlace;  // the same run over the input's own buffer
    AesContext after;
};

// Two calls per run, the first of whole blocks, so that the register a call
// leaves must carry into the next.
AesRun RunAes(const char* path, const Bytes& key, int mode, int direction, const Bytes& iv, const Bytes& data,
              size_t offset) {
    CpuDetectWith(path);
    AesRun r{};
    AesContext c, d;
    std::memset(&c, 0, sizeof c);
    std::memset(&d, 0, sizeof d);
    EXPECT_EQ(AesSetupMode(&c, mode, key.data(), key.size(), direction, iv.data()), 0);
    std::memcpy(&d, &c, sizeof c);
    const size_t first = data.size() / 32 * 16;
    Bytes in(data.size() + offset + 1), out(data.size() + offset + 3), same(data.size() + offset + 2);
    std::copy(data.begin(), data.end(), in.begin() + long(offset));
    std::copy(data.begin(), data.end(), same.begin() + long(offset) + 1);
    r.status = AesProcess(&c, out.data() + offset + 2, in.data() + offset, first);
    r.status |= AesProcess(&c, out.data() + offset + 2 + first, in.data() + offset + first, data.size() - first) << 8;
    uint8_t* p = same.data() + offset + 1;
    AesProcess(&d, p, p, first);
    AesProcess(&d, p + first, p + first, data.size() - first);
    r.out.assign(out.begin() + long(offset) + 2, out.begin() + long(offset + 2 + data.size()));
    r.inPlace.assign(p, p + data.size());
    EXPECT_EQ(std::memcmp(&c, &d, sizeof c), 0) << "in place left another state";
    r.after = c;
    return r;
}

TEST_F(CpuPaths, AesModesGiveTheSameBytesAndRegisters) {
    for (size_t keyLength : {16, 24, 32}) {
        for (int mode = 0; mode <= 4; ++mode) {
            for (int direction : {0, 1}) {
                for (size_t n : Lengths()) {
                    const Bytes key = Random(keyLength), iv = Random(16), data = Random(n);
                    const size_t offset = n % 7;
                    const AesRun ref = RunAes("portable", key, mode, direction, iv, data, offset);
                    if (ref.status == 0) ASSERT_EQ(ref.inPlace, ref.out);
                    for (const char* path : {kPaths[1], kPaths[2]}) {
                        const AesRun r = RunAes(path, key, mode, direction, iv, data, offset);
                        ASSERT_EQ(r.status, ref.status) << PathName(path) << " mode " << mode << " n " << n;
                        ASSERT_EQ(r.out, ref.out) << PathName(path) << " key " << keyLength << " mode " << mode
                                                  << " dir " << direction << " n " << n;
                        ASSERT_EQ(r.inPlace, ref.inPlace) << PathName(path) << " in place, mode " << mode << " n " << n;
                        ASSERT_EQ(std::memcmp(&r.after, &ref.after, sizeof r.after), 0)
                            << PathName(path) << " state, mode " << mode << " dir " << direction << " n " << n;
                    }
                }
            }
        }
    }
}

// The counter carries through all sixteen bytes and wraps to zero at the
// end, wherever the carry falls within a group of blocks processed side by
// side: the low half starts at every distance up to 32 from its top.
TEST_F(CpuPaths, AesCounterCarriesAndWrapsInsideGroups) {
    const Bytes key = Random(16), data = Random(16 * 40 + 9);
    std::vector<Bytes> ivs;
    for (int last = 0xdf; last <= 0xff; ++last) {
        Bytes iv = Random(16);
        std::memset(iv.data() + 8, 0xff, 7);
        iv[15] = uint8_t(last);
        ivs.push_back(iv);
    }
    ivs.push_back(Bytes(16, 0xff));
    for (const Bytes& iv : ivs) {
        const AesRun ref = RunAes("portable", key, kModeCtr, 1, iv, data, 3);
        for (const char* path : {kPaths[1], kPaths[2]}) {
            const AesRun r = RunAes(path, key, kModeCtr, 1, iv, data, 3);
            EXPECT_EQ(r.out, ref.out) << PathName(path) << " low byte " << int(iv[15]);
            EXPECT_EQ(std::memcmp(r.after.iv, ref.after.iv, 16), 0) << PathName(path);
        }
    }
}

TEST_F(CpuPaths, AesSchedulesAndSingleBlocksAgree) {
    for (int keyBits : {128, 192, 256}) {
        for (int trial = 0; trial < 20; ++trial) {
            const Bytes key = Random(size_t(keyBits / 8)), block = Random(16);
            uint32_t enc[2][60] = {}, dec[2][60] = {};
            uint8_t out[2][2][16];
            for (int p = 0; p < 2; ++p) {
                CpuDetectWith(p == 0 ? "portable" : nullptr);
                const int rounds = AesSetEncryptKey(enc[p], key.data(), keyBits);
                ASSERT_EQ(AesSetDecryptKey(dec[p], key.data(), keyBits), rounds);
                AesEncryptBlock(enc[p], rounds, block.data(), out[p][0]);
                AesDecryptBlock(dec[p], rounds, block.data(), out[p][1]);
            }
            EXPECT_EQ(std::memcmp(enc[0], enc[1], sizeof enc[0]), 0) << keyBits;
            EXPECT_EQ(std::memcmp(dec[0], dec[1], sizeof dec[0]), 0) << keyBits;
            EXPECT_EQ(std::memcmp(out[0], out[1], sizeof out[0]), 0) << keyBits;
        }
    }
}

// ---- AES-GCM, whole messages ----

struct GcmRun {
    Bytes sealed, tag, opened;
    int openResult, forgedResult;
    Bytes afterForgery;  // the output buffer after a bad tag
};

GcmRun RunGcm(const char* path, const Bytes& key, const Bytes& iv, const Bytes& aad, const Bytes& text,
              int32_t tagLength, bool inPlace) {
    CpuDetectWith(path);
    GcmRun r{};
    GcmKeyTables t;
    GcmExpandKey(&t, key.data(), uint32_t(key.size() * 8));
    Bytes buffer(text.size() + 5);
    uint8_t* at = buffer.data() + 1 + text.size() % 3;
    std::copy(text.begin(), text.end(), at);  // text may be empty, with no data()
    uint8_t tag[16];
    GcmSeal(&t, iv.data(), iv.size(), inPlace ? at : text.data(), text.size(), aad.data(), aad.size(), at, tag);
    r.sealed.assign(at, at + text.size());
    r.tag.assign(tag, tag + 16);
    Bytes plain(text.size() + 2, 0x5c);
    r.openResult = GcmOpen(&t, iv.data(), iv.size(), at, text.size(), tag, tagLength, aad.data(), aad.size(),
                           inPlace ? at : plain.data() + 1);
    r.opened = inPlace ? Bytes(at, at + text.size()) : Bytes(plain.begin() + 1, plain.end() - 1);
    // A forged tag: the last compared byte changed.
    if (tagLength != 0) {
        Bytes sealedCopy = r.sealed, blank(text.size() + 1, 0xa5);
        tag[(tagLength < 0 || tagLength > 16 ? 16 : tagLength) - 1] ^= 0x40;
        r.forgedResult = GcmOpen(&t, iv.data(), iv.size(), sealedCopy.data(), text.size(), tag, tagLength,
                                 aad.data(), aad.size(), blank.data());
        r.afterForgery = blank;
    }
    GcmWipeKeyTables(&t);
    return r;
}

void ExpectSameGcm(const GcmRun& r, const GcmRun& ref, const std::string& what) {
    EXPECT_EQ(r.sealed, ref.sealed) << what;
    EXPECT_EQ(r.tag, ref.tag) << what;
    EXPECT_EQ(r.openResult, 1) << what;
    EXPECT_EQ(r.opened, ref.opened) << what;
    EXPECT_EQ(r.forgedResult, ref.forgedResult) << what;
    EXPECT_EQ(r.afterForgery, ref.afterForgery) << what;
}

TEST_F(CpuPaths, GcmSealAndOpenAgreeForManyIvAadAndTextLengths) {
    const size_t ivLengths[] = {12, 1, 8, 13, 16, 17, 31, 64, 300};
    const size_t aadLengths[] = {0, 1, 15, 16, 17, 100, 256, 300};
    const int32_t tagLengths[] = {16, 4, 13, 0, -1, 17};
    size_t i = 0;
    for (size_t keyLength : {16, 24, 32}) {
        for (size_t n : Lengths()) {
            ++i;
            const Bytes key = Random(keyLength), text = Random(n);
            const Bytes iv = Random(ivLengths[i % 9]), aad = Random(aadLengths[i % 8]);
            const int32_t tagLength = tagLengths[i % 6];
            const bool inPlace = i % 4 == 0;
            const GcmRun ref = RunGcm("portable", key, iv, aad, text, tagLength, inPlace);
            ASSERT_EQ(ref.openResult, 1);
            if (tagLength != 0) ASSERT_EQ(ref.forgedResult, 0);
            for (const char* path : {kPaths[1], kPaths[2]}) {
                ExpectSameGcm(RunGcm(path, key, iv, aad, text, tagLength, inPlace), ref,
                              std::string(PathName(path)) + " key " + std::to_string(keyLength) + " n " +
                                  std::to_string(n) + " iv " + std::to_string(iv.size()));
            }
        }
    }
}

// Tables carry the path they were made for: switching the processor flags
// afterwards must not send them down the other path.
TEST_F(CpuPaths, GcmKeyKeepsThePathOfItsSetUp) {
    const Bytes key = Random(32), iv = Random(12), text = Random(77);
    uint8_t tag[2][16], out[2][77];
    for (int p = 0; p < 2; ++p) {
        GcmKeyTables t;
        CpuDetectWith(p == 0 ? "portable" : nullptr);
        GcmExpandKey(&t, key.data(), 256);
        CpuDetectWith(p == 0 ? nullptr : "portable");
        GcmSeal(&t, iv.data(), 12, text.data(), text.size(), nullptr, 0, out[p], tag[p]);
        EXPECT_EQ(GcmOpen(&t, iv.data(), 12, out[p], text.size(), tag[p], 16, nullptr, 0, nullptr), 1);
        GcmWipeKeyTables(&t);
    }
    EXPECT_EQ(std::memcmp(tag[0], tag[1], 16), 0);
    EXPECT_EQ(std::memcmp(out[0], out[1], 77), 0);
}

// ---- AES-GCM, the incremental record ----

// The record's fields that both paths keep (not the 4 KB table or the
// first-round cache, which only the portable path fills).
void ExpectSameRecord(const GcmStream& a, const GcmStream& b, const std::string& what) {
    EXPECT_EQ(a.counter, b.counter) << what;
    EXPECT_EQ(a.pendingLen, b.pendingLen) << what;
    EXPECT_EQ(std::memcmp(a.pending, b.pending, a.pendingLen), 0) << what;
    EXPECT_EQ(std::memcmp(a.ghash, b.ghash, sizeof a.ghash), 0) << what;
    EXPECT_EQ(std::memcmp(a.encJ0, b.encJ0, sizeof a.encJ0), 0) << what;
    EXPECT_EQ(a.keystreamPos, b.keystreamPos) << what;
    EXPECT_EQ(std::memcmp(a.keystream, b.keystream, sizeof a.keystream), 0) << what;
    EXPECT_EQ(a.aadLen, b.aadLen) << what;
    EXPECT_EQ(a.textLen, b.textLen) << what;
    EXPECT_EQ(a.state, b.state) << what;
    EXPECT_EQ(std::memcmp(a.tables.schedule, b.tables.schedule, sizeof a.tables.schedule), 0) << what;
}

// Feeds AAD and text in random pieces through a record under each path,
// comparing every output and the records after each call. counterStart,
// when not 0, is forced after the start, to run the 32-bit counter over its
// wrap.
void RunStreams(size_t keyLength, size_t aadLength, size_t textLength, bool decrypt, uint32_t counterStart) {
    const Bytes key = Random(keyLength), nonce = Random(12), aad = Random(aadLength), text = Random(textLength);
    const Bytes tag = Random(16);
    std::vector<size_t> aadCuts, textCuts;
    for (size_t at = 0; at < aadLength; at += aadCuts.back()) aadCuts.push_back(1 + g_random() % 70);
    for (size_t at = 0; at < textLength; at += textCuts.back()) textCuts.push_back(1 + g_random() % 600);
    static GcmStream s[3];
    Bytes out[3];
    uint8_t finalTag[3][16] = {};
    int32_t finish[3];
    // The paths go in step, one call each, so that the records can be
    // compared after every call.
    auto each = [&](auto call) {
        for (int p = 0; p < 3; ++p) {
            CpuDetectWith(kPaths[p]);
            call(p);
        }
    };
    each([&](int p) {
        ASSERT_EQ(GcmStreamInit(&s[p], key.data(), int32_t(keyLength)), 0);
        ASSERT_EQ(AeadSetNonce(&s[p], nonce.data(), 12), 0);
        out[p].assign(textLength, 0);
    });
    for (size_t at = 0, k = 0; at < aadLength; at += aadCuts[k++]) {
        each([&](int p) { AeadStreamAddAad(&s[p], aad.data() + at, int32_t(std::min(aadCuts[k], aadLength - at))); });
    }
    each([&](int p) {
        ASSERT_EQ(decrypt ? AeadStreamStartDecrypt(&s[p], tag.data(), 16) : AeadStreamStartEncrypt(&s[p]), 0);
        if (counterStart != 0) s[p].counter = counterStart;
    });
    for (size_t at = 0, k = 0; at < textLength; at += textCuts[k++]) {
        const size_t n = std::min(textCuts[k], textLength - at);
        each([&](int p) {
            ASSERT_EQ(AeadStreamUpdate(&s[p], out[p].data() + at, text.data() + at, int32_t(n)), 0);
            if (p != 0) ExpectSameRecord(s[p], s[0], "piece at " + std::to_string(at));
        });
    }
    each([&](int p) {
        finish[p] = decrypt ? AeadStreamFinishDecrypt(&s[p]) : AeadStreamFinishEncrypt(&s[p], finalTag[p], 16);
    });
    for (int p = 1; p < 3; ++p) {
        const std::string what = std::string(PathName(kPaths[p])) + " aad " + std::to_string(aadLength) +
                                 " text " + std::to_string(textLength);
        EXPECT_EQ(out[p], out[0]) << what;
        EXPECT_EQ(finish[p], finish[0]) << what;
        EXPECT_EQ(std::memcmp(finalTag[p], finalTag[0], 16), 0) << what;
        ExpectSameRecord(s[p], s[0], what + " after finish");
    }
    for (auto& r : s) AeadStreamDestroy(&r);
}

TEST_F(CpuPaths, GcmRecordAgreesPieceByPiece) {
    for (size_t keyLength : {16, 24, 32}) {
        for (size_t aadLength : {0, 5, 16, 333}) {
            for (size_t textLength : {0, 1, 17, 255, 256, 257, 4099}) {
                RunStreams(keyLength, aadLength, textLength, (aadLength + textLength) % 2 == 1, 0);
            }
        }
    }
}

TEST_F(CpuPaths, GcmRecordCounterWrapsAtThirtyTwoBits) {
    for (uint32_t start : {0xffffffffu, 0xfffffff7u, 0xffffffe9u}) RunStreams(16, 3, 1000, false, start);
}

}  // namespace
