// The per-cipher families (AES128_ ... BLF_).
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "block_support.h"

namespace {

uint8_t g_key[64] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6, 0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c,
                     0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f};
uint8_t g_iv[16] = {};
uint8_t g_data[64] = {};

class BlockFiles : public ::testing::Test {
protected:
    TempDir dir_;
    std::string Path(const std::string& name) const { return dir_.File(name); }
};

const Cipher kAllCiphers[] = {Cipher::Aes128, Cipher::Aes192, Cipher::Aes256, Cipher::Des, Cipher::Tdea, Cipher::Blf};
ByteVec KeyFor(Cipher c) {
    const size_t lengths[] = {16, 24, 32, 8, 24, 16};
    return Pattern(lengths[int(c)], 0xA0);
}
}  // namespace

TEST(BlockFamilies, DesCheckKey) {
    const ByteVec twoEqual = FromHex("0123456789abcdef0123456789abcdef");
    const ByteVec thirdWeak = FromHex("0123456789abcdef0123456789abcdefE0FEE0FEF1FEF1FE");
    EXPECT_EQ(DES_CheckKey(FromHex("1E001E000F010F01").data(), 8), WEAK_KEY_ERROR);  // semi-weak, parity flipped
    EXPECT_EQ(DES_CheckKey(thirdWeak.data(), 24), WEAK_KEY_ERROR);
    EXPECT_EQ(DES_CheckKey(twoEqual.data(), 16), 0);  // K1 = K2 is not weak
    EXPECT_EQ(DES_CheckKey(thirdWeak.data(), 12), BAD_KEY_LEN_ERROR);
    EXPECT_EQ(DES_CheckKeyHex("fefefefefefefefe"), WEAK_KEY_ERROR);
    EXPECT_EQ(DES_CheckKeyHex("0123456789ABCDEF"), 0);
}

TEST(BlockFamilies, SharedAesSlot) {
    const int32_t h256 = AES256_Init(g_key, 1, "ECB", nullptr);
    ASSERT_NE(h256, 0);
    uint8_t viaUpdate[16] = {}, viaBytes[16];
    EXPECT_EQ(AES128_Update(h256, viaUpdate, 16), 0);
    ASSERT_EQ(AES256_Bytes(viaBytes, g_data, 16, g_key, 1), 0);
    EXPECT_EQ(ToHex(viaUpdate, 16), ToHex(viaBytes, 16));
    // A second Init under another size ends the first context.
    const int32_t h128 = AES128_Init(g_key, 1, "ECB", nullptr);
    EXPECT_EQ(AES256_Update(h256, viaUpdate, 16), INVALID_HANDLE_ERROR);
    // The hex Init takes its size from the text: 64 digits make AES-256.
    const int32_t hHex = AES128_InitHex(ToHex(g_key, 32).c_str(), 1, "ECB", nullptr);
    EXPECT_EQ(AES192_Update(h128, viaUpdate, 16), INVALID_HANDLE_ERROR);
    std::memset(viaUpdate, 0, 16);
    EXPECT_EQ(AES192_Update(hHex, viaUpdate, 16), 0);
    EXPECT_EQ(ToHex(viaUpdate, 16), ToHex(viaBytes, 16));
    EXPECT_EQ(AES256_Final(hHex), 0);
    EXPECT_EQ(AES128_Final(hHex), INVALID_HANDLE_ERROR);
}

TEST(BlockFamilies, HandlesAndInitStatus) {
    // A failed Init ends the earlier context, and its reason is latched.
    const int32_t h = DES_Init(g_key, 1, "CBC", g_iv);
    ASSERT_NE(h, 0);
    EXPECT_EQ(DES_Init(g_key, 1, "CBC", nullptr), 0);
    EXPECT_EQ(API_ErrorCode(), BAD_IV_ERROR);
    EXPECT_EQ(DES_Update(h, g_data, 8), INVALID_HANDLE_ERROR);
    // InitError has no frame: it leaves the latch alone, and Final keeps it.
    EXPECT_EQ(DES_CheckKeyHex("0123456789ABCDEF"), 0);
    EXPECT_EQ(DES_InitError(), BAD_IV_ERROR);
    EXPECT_EQ(API_ErrorCode(), 0);
    const int32_t h2 = DES_Init(g_key, 1, "ECB", nullptr);
    EXPECT_EQ(DES_Final(h2), 0);
    EXPECT_EQ(DES_InitError(), 0);
    EXPECT_EQ(DES_Final(h2), INVALID_HANDLE_ERROR);
    // DES_InitHex reports a missing argument in the TDEA slot and leaves its
    // own status and the latch clear.
    ASSERT_NE(DES_InitHex("0123456789abcdef", 1, "ECB", nullptr), 0);
    EXPECT_EQ(DES_InitHex("0123456789abcdef", 1, "CBC", nullptr), 0);
    EXPECT_EQ(TDEA_InitError(), BAD_IV_ERROR);
    EXPECT_EQ(DES_InitError(), 0);
    EXPECT_EQ(API_ErrorCode(), 0);
}

// Each call starts on a block boundary, so a part block loses the rest of its
// keystream block; whole-block pieces are compared with the reference elsewhere.
TEST(BlockFamilies, PartBlockLosesItsKeystream) {
    const ByteVec data = Pattern(48), key(g_key, g_key + 16), iv(16, 0x5a);
    const std::string whole = Crypt(Cipher::Aes128, data, key, 1, "CTR", iv);
    ByteVec buf = data;
    const int32_t h = AES128_Init(key.data(), 1, "CTR", iv.data());
    ASSERT_EQ(AES128_Update(h, buf.data(), 20), 0);
    ASSERT_EQ(AES128_Update(h, buf.data() + 20, 28), 0);
    AES128_Final(h);
    EXPECT_EQ(UpperHex(buf).substr(0, 40), whole.substr(0, 40));
    EXPECT_NE(UpperHex(buf).substr(40, 2), whole.substr(40, 2));
}

TEST(BlockFamilies, HexUpdateRewritesInPlace) {
    const ByteVec key(g_key, g_key + 8);
    const int32_t h = DES_Init(key.data(), 1, "CBC", g_iv);
    char text[] = "00112233445566778899aabbccddeeff";
    const std::string expected = Crypt(Cipher::Des, FromHex(text), key, 1, "CBC", ByteVec(8));
    EXPECT_EQ(DES_UpdateHex(h, text), 0);
    EXPECT_EQ(std::string(text), expected);
    char part[] = "001122";
    EXPECT_EQ(DES_UpdateHex(h, part), BAD_LENGTH_ERROR);
    EXPECT_STREQ(part, "001122");
    DES_Final(h);
}

// A Blowfish key length of 0 uses the byte at the pointer.
TEST(BlockFamilies, BlowfishEmptyKeyReadsOneByte) {
    const ByteVec block = FromHex("0123456789abcdef");
    uint8_t a[8], b[8];
    const uint8_t one = 0x42;
    ASSERT_EQ(BLF_Bytes(a, block.data(), 8, &one, 0, 1), 0);
    ASSERT_EQ(BLF_Bytes(b, block.data(), 8, &one, 1, 1), 0);
    EXPECT_EQ(ToHex(a, 8), ToHex(b, 8));
}

namespace fs = std::filesystem;

// Every family and mode at the 4096-byte chunk edges: the file is the prefix
// (not in ECB) and the one-shot ciphertext of the data, padded in ECB and CBC.
TEST_F(BlockFiles, LayoutAndRoundTrip) {
    const char* modes[] = {"ECB", "CBC", "CFB", "OFB", "CTR"};
    const std::string names[] = {Path("plain"), Path("enc"), Path("dec")};
    const char *in = names[0].c_str(), *enc = names[1].c_str(), *dec = names[2].c_str();
    for (Cipher c : kAllCiphers) {
        const int b = BlockSize(c);
        const ByteVec key = KeyFor(c), iv(size_t(b), 0x3c), wrongIv(size_t(b), 0x99);
        const std::string hexKey = ToHex(key), hexIv = ToHex(iv);
        for (size_t size : {0u, 17u, 4095u, 4096u, 4097u}) {
            const ByteVec plain = Pattern(size);
            dir_.Write("plain", plain);
            for (int m = 0; m < 5; ++m) {
                for (bool prefix : {false, true}) {
                    SCOPED_TRACE(std::to_string(int(c)) + " size " + std::to_string(size) + " " + modes[m] +
                                 (prefix ? " prefix" : ""));
                    ASSERT_EQ(prefix ? FileExtCall(c, enc, in, key, 1, modes[m], iv.data(), OPT_PREFIX_IV)
                                     : FileCall(c, enc, in, key, 1, modes[m], iv.data()),
                              0);
                    ByteVec body = plain;
                    if (m <= 1) {
                        body.resize(size + size_t(b) - size % size_t(b));
                        PAD_BytesBlock(body.data(), int32_t(body.size()), plain.data(), int32_t(size), b, 0);
                    }
                    const std::string expected = Crypt(c, body, key, 1, modes[m], iv);
                    const ByteVec file = ReadBytes(enc);
                    const bool prefixed = prefix && m != 0;
                    ASSERT_EQ(file.size(), body.size() + (prefixed ? size_t(b) : 0));
                    EXPECT_EQ(UpperHex(ByteVec(file.begin() + (prefixed ? b : 0), file.end())), expected);
                    if (prefixed) EXPECT_EQ(ByteVec(file.begin(), file.begin() + b), iv);
                    // A prefixed IV wins over the one passed in.
                    const uint8_t* ivIn = prefixed ? wrongIv.data() : iv.data();
                    ASSERT_EQ(prefix ? FileExtCall(c, dec, enc, key, 0, modes[m], ivIn, OPT_PREFIX_IV)
                                     : FileHexCall(c, dec, enc, hexKey.c_str(), 0, modes[m],
                                                   m ? hexIv.c_str() : nullptr),
                              0);
                    EXPECT_EQ(ReadBytes(dec), plain);
                }
            }
        }
    }
}

TEST_F(BlockFiles, PaddingOptions) {
    const ByteVec key = KeyFor(Cipher::Aes128), iv(16, 1), plain = Pattern(20);
    dir_.Write("plain", plain);
    const auto ext = [&](const char* out, const char* in, int32_t dir, int32_t options) {
        return AES128_FileExt(Path(out).c_str(), Path(in).c_str(), key.data(), dir, "CBC", iv.data(), options);
    };
    // OPT_PAD_NONE still pads on encryption, as PKCS#5.
    ASSERT_EQ(ext("enc", "plain", 1, OPT_PAD_NONE), 0);
    ASSERT_EQ(AES128_File(Path("dec").c_str(), Path("enc").c_str(), key.data(), 0, "CBC", iv.data()), 0);
    EXPECT_EQ(ReadBytes(Path("dec")), plain);
    ASSERT_EQ(ext("enc", "plain", 1, OPT_PAD_ONEANDZEROES), 0);
    ByteVec padded = plain;
    padded.push_back(0x80);
    padded.resize(32, 0);
    for (int32_t keep : {OPT_PAD_NONE, OPT_LEAVE_PADDING | OPT_PAD_ONEANDZEROES}) {
        ASSERT_EQ(ext("dec", "enc", 0, keep), 0);
        EXPECT_EQ(ReadBytes(Path("dec")), padded);
    }
    ASSERT_EQ(ext("dec", "enc", 0, OPT_PAD_ONEANDZEROES), 0);
    EXPECT_EQ(ReadBytes(Path("dec")), plain);
    EXPECT_EQ(ext("dec", "enc", 0, 0), DECRYPT_ERROR);
    EXPECT_FALSE(fs::exists(Path("dec")));
}

// Whether an output file that existed before a failure is still there
// (refused before opening) or gone (failed after).
TEST_F(BlockFiles, FailuresLeaveNoOutput) {
    const ByteVec key = KeyFor(Cipher::Aes128), iv(16, 2), other(64, 0x17);
    dir_.Write("plain", Pattern(100));
    dir_.Write("tiny", Pattern(10));
    dir_.Write("empty", ByteVec());
    ASSERT_EQ(AES128_File(Path("cipher").c_str(), Path("plain").c_str(), key.data(), 1, "CBC", iv.data()), 0);
    const std::string out = Path("out");
    const std::string plain = Path("plain"), cipher = Path("cipher");
    struct Case { const char* what; std::function<int32_t()> call; int32_t code; bool outputKept; };
    const std::vector<Case> cases = {
        {"null output name", [&] { return AES128_File(nullptr, plain.c_str(), key.data(), 1, "ECB", nullptr); }, BAD_PARAM_ERROR, true},
        {"same names", [&] { return AES128_File(out.c_str(), out.c_str(), key.data(), 1, "ECB", nullptr); }, DUP_ERROR, true},
        {"bad mode", [&] { return AES128_File(out.c_str(), plain.c_str(), key.data(), 1, "XYZ", iv.data()); }, BAD_MODE_ERROR, true},
        {"missing input", [&] { return AES128_File(out.c_str(), Path("none").c_str(), key.data(), 1, "ECB", nullptr); }, OPEN_ERROR, false},
        {"no IV", [&] { return AES128_File(out.c_str(), plain.c_str(), key.data(), 1, "CBC", nullptr); }, BAD_IV_ERROR, false},
        {"Blowfish key of 57", [&] { return BLF_File(out.c_str(), plain.c_str(), other.data(), 57, 1, "ECB", nullptr); }, BAD_KEY_LEN_ERROR, false},
        {"empty ciphertext", [&] { return AES128_File(out.c_str(), Path("empty").c_str(), key.data(), 0, "CBC", iv.data()); }, BAD_LENGTH_ERROR, false},
        {"IV prefix cut short", [&] { return AES128_FileExt(out.c_str(), Path("tiny").c_str(), key.data(), 0, "OFB", nullptr, OPT_PREFIX_IV); }, READ_ERROR, false},
        {"wrong key", [&] { return AES128_File(out.c_str(), cipher.c_str(), other.data(), 0, "CBC", iv.data()); }, DECRYPT_ERROR, false},
        {"hex: IV first", [&] { return AES128_FileHex(out.c_str(), plain.c_str(), nullptr, 1, "CBC", "00"); }, BAD_IV_ERROR, true},
        {"hex: no IV, found by the set-up", [&] { return AES128_FileHex(out.c_str(), plain.c_str(), std::string(32, '1').c_str(), 1, "CBC", nullptr); }, BAD_IV_ERROR, false},
        {"hex TDEA: no IV", [&] { return TDEA_FileHex(out.c_str(), plain.c_str(), std::string(48, '1').c_str(), 1, "CBC", nullptr); }, BAD_PARAM_ERROR, true},
    };
    for (const auto& c : cases) {
        dir_.Write("out", "old");
        EXPECT_EQ(c.call(), c.code) << c.what;
        EXPECT_EQ(fs::exists(out), c.outputKept) << c.what;
    }
    ASSERT_EQ(BLF_FileHex(out.c_str(), plain.c_str(), "01", 1, "ECB", ""), 0);
}

// A write that fails part-way (here: the file size limit) leaves no output.
TEST_F(BlockFiles, WriteFailureRemovesOutput) {
    dir_.Write("plain", Pattern(3 * 4096));
    const ByteVec key = KeyFor(Cipher::Tdea);
    struct rlimit saved;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = saved;
    small.rlim_cur = 5000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const int32_t rc = TDEA_File(Path("out").c_str(), Path("plain").c_str(), key.data(), 1, "ECB", nullptr);
    setrlimit(RLIMIT_FSIZE, &saved);
    EXPECT_EQ(rc, WRITE_ERROR);
    EXPECT_FALSE(fs::exists(Path("out")));
}
