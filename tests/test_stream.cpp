// CIPHER_Stream... and PC1_: incremental cuts, handles, the hex and file forms.
#include <gtest/gtest.h>
#include <unistd.h>

#include "test_support.h"

namespace {
const ByteVec kKey = Pattern(32, 1), kIv = Pattern(16, 0xa0);
const uint8_t *const kKey32 = kKey.data(), *const kIv16 = kIv.data();
}  // namespace

TEST(StreamIncremental, EveryCutMatchesTheWholeMessage) {
    // ChaCha20 cut at random is compared with the reference elsewhere.
    struct Setup { int32_t options, keylen, ivlen; uint32_t counter; } setups[] = {
        {OPT_STREAM_SALSA20, 32, 8, 0}, {OPT_STREAM_CHACHA20, 16, 8, 1}, {OPT_STREAM_ARCFOUR, 13, 0, 0}};
    const std::vector<std::vector<size_t>> cuts = {{1}, {63}, {64}, {65}, {1, 63, 64, 65}, {31, 2, 100, 7}, {300}};
    const ByteVec msg = Pattern(300);
    for (const Setup& s : setups) {
        ByteVec whole(msg.size());
        ASSERT_EQ(CIPHER_StreamBytes(whole.data(), msg.data(), int32_t(msg.size()), kKey32, s.keylen, kIv16, s.ivlen,
                                     s.counter, s.options),
                  0);
        for (const auto& pattern : cuts) {
            int32_t h = CIPHER_StreamInit(kKey32, s.keylen, kIv16, s.ivlen, s.counter, s.options);
            ASSERT_GT(h, 0);
            ByteVec out(msg.size());
            size_t pos = 0;
            for (size_t i = 0; pos < msg.size(); ++i) {
                size_t n = std::min(pattern[i % pattern.size()], msg.size() - pos);
                ASSERT_EQ(CIPHER_StreamUpdate(h, out.data() + pos, msg.data() + pos, int32_t(n)), 0);
                pos += n;
            }
            EXPECT_EQ(out, whole) << "options " << s.options << " first cut " << pattern[0];
            EXPECT_EQ(CIPHER_StreamFinal(h), 0);
        }
    }
}

TEST(StreamIncremental, HandleRules) {
    uint8_t buf[8] = {};
    int32_t first = CIPHER_StreamInit(kKey32, 5, nullptr, 0, 0, OPT_STREAM_ARCFOUR);
    int32_t second = CIPHER_StreamInit(kKey32, 32, kIv16, 12, 0, OPT_STREAM_CHACHA20);
    ASSERT_GT(second, 0);
    if (first != second) EXPECT_EQ(CIPHER_StreamUpdate(first, buf, buf, 8), -INVALID_HANDLE_ERROR);
    // Failed inits return 0 with the reason latched, and end the live stream.
    struct Case { const uint8_t* key; int32_t keylen, ivlen, options, latched; } cases[] = {
        {kKey32, 0, 12, OPT_STREAM_CHACHA20, BAD_KEY_ERROR}, {kKey32, 24, 12, OPT_STREAM_CHACHA20, BAD_KEY_LEN_ERROR}};
    for (const Case& c : cases) {
        int32_t live = CIPHER_StreamInit(kKey32, 16, kIv16, 8, 0, OPT_STREAM_SALSA20);
        ASSERT_GT(live, 0);
        EXPECT_EQ(CIPHER_StreamInit(c.key, c.keylen, kIv16, c.ivlen, 0, c.options), 0);
        EXPECT_EQ(API_ErrorCode(), c.latched) << "options " << c.options << " keylen " << c.keylen;
        EXPECT_EQ(CIPHER_StreamUpdate(live, buf, buf, 8), -INVALID_HANDLE_ERROR);
    }
}

// A short length cuts the hex at whole bytes with no error; 0 leaves an empty text.
TEST(StreamHex, ShortLengthCutsAtWholeBytes) {
    const std::string pt(40, '5'), key(64, 'A'), nonce(24, '0');
    char full[41], cut[41];
    ASSERT_EQ(CIPHER_StreamHex(full, 40, pt.c_str(), key.c_str(), nonce.c_str(), 1, OPT_STREAM_CHACHA20), 0);
    EXPECT_EQ(CIPHER_StreamHex(cut, 5, pt.c_str(), key.c_str(), nonce.c_str(), 1, OPT_STREAM_CHACHA20), 0);
    EXPECT_EQ(std::string(cut), std::string(full, 4));
    EXPECT_EQ(CIPHER_StreamHex(cut, 0, pt.c_str(), key.c_str(), nonce.c_str(), 1, OPT_STREAM_CHACHA20), 0);
    EXPECT_EQ(cut[0], '\0');
}

TEST(Pc1Hex, CutsAndLatches) {
    char out[32];
    // "Key" / "Plaintext" from the ARCFOUR vectors, whole through the vector runs.
    EXPECT_EQ(PC1_Hex(out, 4, "506C61696E74657874", "4B6579"), 0);
    EXPECT_STREQ(out, "BBF3");
    EXPECT_EQ(PC1_Hex(out, 31, "0", "4B"), BAD_FORMAT_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_FORMAT_ERROR);
}

// File contents are compared with the reference elsewhere, an empty file too.
TEST(StreamFiles, UseTheSlotAndNeverOverwriteTheirInput) {
    TempDir dir;
    const std::string plain = dir.Write("plain", Pattern(5000)), link = dir.File("link");
    int32_t live = CIPHER_StreamInit(kKey32, 16, kIv16, 8, 0, OPT_STREAM_SALSA20);
    ASSERT_EQ(CIPHER_StreamFile(dir.File("enc").c_str(), plain.c_str(), kKey32, 32, kIv16, 12, 3, OPT_STREAM_CHACHA20), 0);
    uint8_t b[4] = {};
    EXPECT_EQ(CIPHER_StreamUpdate(live, b, b, 4), -INVALID_HANDLE_ERROR);  // the file call used the slot
    // PC1_File reads byte by byte; the reference run may lack ARCFOUR.
    ByteVec arc(5000);
    ASSERT_EQ(PC1_Bytes(arc.data(), Pattern(5000).data(), 5000, kKey32, 7), 0);
    ASSERT_EQ(PC1_File(dir.File("enc").c_str(), plain.c_str(), kKey32, 7), 0);
    EXPECT_EQ(ReadBytes(dir.File("enc")), arc);
    // One file under two names is refused before anything is lost.
    ASSERT_EQ(symlink(plain.c_str(), link.c_str()), 0);
    for (const std::string& other : {plain, link, dir.File("./plain")}) {
        EXPECT_EQ(PC1_File(other.c_str(), plain.c_str(), kKey32, 16), DUP_ERROR) << other;
        EXPECT_EQ(CIPHER_StreamFile(other.c_str(), plain.c_str(), kKey32, 32, kIv16, 12, 0, OPT_STREAM_CHACHA20),
                  -DUP_ERROR) << other;
    }
    EXPECT_EQ(ReadBytes(plain), Pattern(5000));
}
