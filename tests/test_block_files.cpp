// File encryption of the per-cipher families: layout (IV prefix, padding),
// chunk boundaries, padding options, and failures that leave no output.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <functional>

#include "block_support.h"

namespace fs = std::filesystem;

namespace {
class BlockFiles : public ::testing::Test {
protected:
    TempDir dir_;
    std::string Path(const std::string& name) const { return dir_.File(name); }
};

ByteVec KeyFor(Cipher c) { return Pattern(c == Cipher::Aes128 ? 16 : c == Cipher::Des ? 8 : 24, 0xA0); }
}  // namespace

// Every mode, with and without the IV prefix, at sizes around the block and
// the 4096-byte chunk: the file is the prefix and the one-shot ciphertext of
// the PKCS#5-padded data (ECB, CBC) or of the data, and decrypts back.
TEST_F(BlockFiles, LayoutAndRoundTrip) {
    const char* modes[] = {"ECB", "CBC", "CFB", "OFB", "CTR"};
    for (Cipher c : {Cipher::Aes128, Cipher::Des, Cipher::Tdea, Cipher::Blf}) {
        const int b = BlockSize(c);
        const ByteVec key = KeyFor(c), iv(size_t(b), 0x3c), wrongIv(size_t(b), 0x99);
        const std::vector<size_t> sizes =
            b == 16 ? std::vector<size_t>{0, 1, 15, 16, 4095, 4096, 4097, 3 * 4096 + 5} : std::vector<size_t>{0, 7, 8, 4096, 4097};
        for (size_t size : sizes) {
            const ByteVec plain = Pattern(size);
            dir_.Write("plain", plain);
            for (int m = 0; m < 5; ++m) {
                for (int32_t options : {0, OPT_PREFIX_IV}) {
                    SCOPED_TRACE("block " + std::to_string(b) + " size " + std::to_string(size) + " " + modes[m] +
                                 (options ? " prefix" : ""));
                    ASSERT_EQ(FileExtCall(c, Path("enc").c_str(), Path("plain").c_str(), key, 1, modes[m], iv.data(),
                                          options),
                              0);
                    ByteVec body = plain;
                    if (m <= 1) {
                        body.resize(size + size_t(b) - size % size_t(b));
                        PAD_BytesBlock(body.data(), int32_t(body.size()), plain.data(), int32_t(size), b, 0);
                    }
                    const std::string expected = Crypt(c, body, key, 1, modes[m], iv);
                    const ByteVec file = ReadBytes(Path("enc"));
                    const bool prefixed = options != 0 && m != 0;
                    ASSERT_EQ(file.size(), body.size() + (prefixed ? size_t(b) : 0));
                    EXPECT_EQ(UpperHex(ByteVec(file.begin() + (prefixed ? b : 0), file.end())), expected);
                    if (prefixed) EXPECT_EQ(ByteVec(file.begin(), file.begin() + b), iv);
                    // A prefixed IV wins over the one passed in.
                    ASSERT_EQ(FileExtCall(c, Path("dec").c_str(), Path("enc").c_str(), key, 0, modes[m],
                                          prefixed ? wrongIv.data() : iv.data(), options),
                              0);
                    EXPECT_EQ(ReadBytes(Path("dec")), plain);
                }
            }
        }
    }
}

TEST_F(BlockFiles, PaddingOptions) {
    const ByteVec key = KeyFor(Cipher::Aes128), iv(16, 1), plain = Pattern(20);
    dir_.Write("plain", plain);
    // OPT_PAD_NONE still pads on encryption, as PKCS#5.
    ASSERT_EQ(AES128_FileExt(Path("enc").c_str(), Path("plain").c_str(), key.data(), 1, "CBC", iv.data(), OPT_PAD_NONE), 0);
    ASSERT_EQ(AES128_File(Path("dec").c_str(), Path("enc").c_str(), key.data(), 0, "CBC", iv.data()), 0);
    EXPECT_EQ(ReadBytes(Path("dec")), plain);
    ASSERT_EQ(AES128_FileExt(Path("enc").c_str(), Path("plain").c_str(), key.data(), 1, "CBC", iv.data(),
                             OPT_PAD_ONEANDZEROES),
              0);
    ByteVec padded = plain;
    padded.push_back(0x80);
    padded.resize(32, 0);
    for (int32_t keep : {OPT_PAD_NONE, OPT_LEAVE_PADDING | OPT_PAD_ONEANDZEROES}) {
        ASSERT_EQ(AES128_FileExt(Path("dec").c_str(), Path("enc").c_str(), key.data(), 0, "CBC", iv.data(), keep), 0);
        EXPECT_EQ(ReadBytes(Path("dec")), padded);
    }
    ASSERT_EQ(AES128_FileExt(Path("dec").c_str(), Path("enc").c_str(), key.data(), 0, "CBC", iv.data(),
                             OPT_PAD_ONEANDZEROES),
              0);
    EXPECT_EQ(ReadBytes(Path("dec")), plain);
    EXPECT_EQ(AES128_FileExt(Path("dec").c_str(), Path("enc").c_str(), key.data(), 0, "CBC", iv.data(), 0),
              DECRYPT_ERROR);
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
    struct Case {
        const char* what;
        std::function<int32_t()> call;
        int32_t code;
        bool outputKept;
    };
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

// Each family's forms give the same bytes: Hex and Base64 text against the
// bytes call, and File and FileHex against FileExt with no options.
TEST_F(BlockFiles, EveryFamilyFormsAgree) {
    const int32_t keyLength[] = {16, 24, 32, 8, 24, 16};
    for (Cipher c : {Cipher::Aes128, Cipher::Aes192, Cipher::Aes256, Cipher::Des, Cipher::Tdea, Cipher::Blf}) {
        const int bs = BlockSize(c);
        ByteVec key = Pattern(size_t(keyLength[int(c)])), iv = Pattern(size_t(bs)), data = Pattern(size_t(3 * bs));
        for (auto& b : key) b ^= 0x5c;
        const std::string hexKey = ToHex(key), hexIv = ToHex(iv);
        const auto b64 = [](const ByteVec& v) {
            std::string s(v.size() * 4 / 3 + 4, '\0');
            s.resize(size_t(CNV_B64StrFromBytes(s.data(), int32_t(s.size()), v.data(), int32_t(v.size()))));
            return s;
        };
        for (const char* mode : {"ECB", "CBC", "CTR"}) {
            SCOPED_TRACE(std::to_string(int(c)) + " " + mode);
            const std::string expected = Crypt(c, data, key, 1, mode, iv);
            const ByteVec cipher = FromHex(expected);
            std::string text(2 * data.size() + 1, '\0');
            ASSERT_EQ(HexModeCall(c, text.data(), ToHex(data).c_str(), hexKey.c_str(), 1, mode, hexIv.c_str()), 0);
            EXPECT_EQ(FromHex(text.c_str()), cipher);
            const std::string b64Cipher = b64(cipher);
            text.assign(b64Cipher.size() + 1, '\0');
            ASSERT_EQ(B64ModeCall(c, text.data(), b64(data).c_str(), b64(key).c_str(), 1, mode, b64(iv).c_str()), 0);
            EXPECT_EQ(text.c_str(), b64Cipher);
            ASSERT_EQ(B64ModeCall(c, text.data(), b64Cipher.c_str(), b64(key).c_str(), 0, mode, b64(iv).c_str()), 0);
            EXPECT_EQ(text.c_str(), b64(data));
        }
        dir_.Write("plain", data);
        ASSERT_EQ(FileExtCall(c, Path("ext").c_str(), Path("plain").c_str(), key, 1, "CBC", iv.data(), 0), 0);
        ASSERT_EQ(FileCall(c, Path("file").c_str(), Path("plain").c_str(), key, 1, "CBC", iv.data()), 0);
        ASSERT_EQ(FileHexCall(c, Path("hex").c_str(), Path("plain").c_str(), hexKey.c_str(), 1, "CBC", hexIv.c_str()), 0);
        EXPECT_EQ(ReadBytes(Path("file")), ReadBytes(Path("ext")));
        EXPECT_EQ(ReadBytes(Path("hex")), ReadBytes(Path("ext")));
        EXPECT_EQ(ReadBytes(Path("ext")).size(), data.size() + size_t(bs));  // a whole block of padding
    }
}
