// One-shot CIPHER_ calls: bytes, hex and files against the per-cipher
// families, the result-code table, the query rules and the IV prefix.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>

#include "cipher_support.h"

namespace fs = std::filesystem;

namespace {

using CryptFn = decltype(&CIPHER_EncryptBytes);
const ByteVec kKey = Pattern(16, 0x40), kIv = Pattern(16, 0x90), kData = Pattern(32);

// A size query, then the call into a buffer of that size: the bytes, or the
// failing code.
struct Result {
    int32_t rc;
    ByteVec bytes;
};
Result Crypt(CryptFn fn, ByteVec in, const ByteVec& key, const uint8_t* iv, int32_t ivLength, const char* text,
             int32_t options) {
    const int32_t n = int32_t(in.size());
    in.push_back(0);
    const int32_t need = fn(nullptr, 0, in.data(), n, key.data(), int32_t(key.size()), iv, ivLength, text, options);
    if (need < 0) return {need, {}};
    ByteVec out(size_t(need) + 1);
    const int32_t rc = fn(out.data(), need + 1, in.data(), n, key.data(), int32_t(key.size()), iv, ivLength, text, options);
    out.resize(rc > 0 ? size_t(rc) : 0);
    return {rc, out};
}

std::string Hex(const Result& r) { return r.rc < 0 ? "rc " + std::to_string(r.rc) : ToHex(r.bytes); }

}  // namespace

TEST(CipherBytes, WorkedRequestEndToEnd) {
    const ByteVec plain = Pattern(20);
    ByteVec out(32), padded(32), expected(32);
    EXPECT_EQ(CIPHER_EncryptBytes(out.data(), 32, plain.data(), 20, kKey.data(), 16, kIv.data(), 16, "aes128/cbc/pkcs5", 0), 32);
    EXPECT_EQ(API_ErrorCode(), 32);  // a length is latched like a code
    ASSERT_EQ(PAD_BytesBlock(padded.data(), 32, plain.data(), 20, 16, OPT_PAD_PKCS5), 32);
    ASSERT_EQ(AES128_BytesMode(expected.data(), padded.data(), 32, kKey.data(), 1, "CBC", kIv.data()), 0);
    EXPECT_EQ(out, expected);
}

// Every padding, by name and by number: the family's ciphertext of the padded
// data, and back. Modes, PKCS#5 and the prefix are compared with the
// reference elsewhere.
TEST(CipherBytes, EveryPaddingByNameAndNumber) {
    const std::pair<const char*, int32_t> pads[] = {{"", 0}, {"/oneandzeroes", OPT_PAD_ONEANDZEROES},
        {"/ansix923padding", OPT_PAD_ANSIX923}, {"/w3c", OPT_PAD_W3C}};
    for (const auto& c : kCiphers) {
        const ByteVec key = Pattern(size_t(c.keyLength), 7), iv = Pattern(size_t(c.block), 0xE0);
        const size_t B = size_t(c.block);
        for (const auto& [padWord, padBits] : pads)
            for (size_t size : {size_t(0), B - 1, 2 * B + 3}) {
                const std::string text = std::string(c.name) + "-CBC" + padWord;
                SCOPED_TRACE(text + " size " + std::to_string(size));
                const ByteVec plain = Pattern(size);
                ByteVec body(size + B - size % B), expected(body.size() + 1);
                PAD_BytesBlock(body.data(), int32_t(body.size()), plain.data(), int32_t(size), c.block, padBits);
                ASSERT_EQ(FamilyCrypt(c, expected.data(), body, key, "CBC", iv.data()), 0);
                expected.pop_back();
                const int32_t number = c.bits | OPT_MODE_CBC | padBits;
                EXPECT_EQ(Hex(Crypt(CIPHER_EncryptBytes, plain, key, iv.data(), c.block, text.c_str(), 0)), ToHex(expected));
                EXPECT_EQ(API_ErrorCode(), int32_t(expected.size()));
                EXPECT_EQ(Hex(Crypt(CIPHER_EncryptBytes, plain, key, iv.data(), c.block, nullptr, number)), ToHex(expected));
                EXPECT_EQ(Hex(Crypt(CIPHER_DecryptBytes, expected, key, iv.data(), c.block, nullptr, number)), ToHex(plain));
            }
    }
}

// Failures and lengths the sweep does not reach, each with the latch it leaves.
TEST(CipherBytes, FailureTable) {
    ByteVec out(64);
    const uint8_t *none = nullptr, *in = kData.data(), *key = kKey.data(), *iv = kIv.data();
    auto E = [&](const char* text, int32_t opt, int32_t kl = 16, int32_t il = 16, int32_t ol = 64) {
        return CIPHER_EncryptBytes(out.data(), ol, kData.data(), 32, kKey.data(), kl, kIv.data(), il, text, opt);
    };
    auto D = [&](const uint8_t* input, int32_t n, const char* text, int32_t opt, int32_t ol = 64) {
        return CIPHER_DecryptBytes(out.data(), ol, input, n, kKey.data(), 16, kIv.data(), 16, text, opt);
    };
    const struct {
        const char* what;
        std::function<int32_t()> call;
        int32_t expected;
    } cases[] = {
        {"mode before padding", [&] { return E("aes128/pkcs5", 0); }, -BAD_PARAM_ERROR},
        {"key length, prefix", [&] { return CIPHER_DecryptBytes(out.data(), 64, in, 32, key, 16, none, 0, "tdea/cbc", OPT_PREFIX_IV); }, -BAD_KEY_LEN_ERROR},
        {"IV length", [&] { return E("aes128/ctr", 0, 16, 8); }, -BAD_IV_LEN_ERROR},
        {"ECB looks at no IV length", [&] { return E("aes128/ecb", 0, 16, 3); }, 48},
        {"a query looks at neither", [&] { return CIPHER_EncryptBytes(nullptr, 0, none, 20, none, 16, iv, 16, "aes128/cbc", OPT_PREFIX_IV); }, 48},
        {"decryption screens before its query", [&] { return CIPHER_DecryptBytes(nullptr, 0, none, 32, key, 16, iv, 16, "aes128/cbc", 0); }, -NULL_ERROR},
        {"output too short", [&] { return E("aes128/cbc", 0, 16, 16, 47); }, -SHORT_BUF_ERROR},
        {"prefix longer than the data", [&] { return D(in, 15, "aes128/ctr", OPT_PREFIX_IV); }, -BAD_LENGTH_ERROR},
        {"unpadded output too short", [&] { return D(in, 32, "aes128/cbc/nopad", 0, 31); }, -SHORT_BUF_ERROR},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.call(), c.expected) << c.what;
        EXPECT_EQ(API_ErrorCode(), std::abs(c.expected)) << c.what;
    }
}

// A padded decryption needs room for the plaintext only, and its failure on
// that path copies nothing; with padding the output may be the input.
TEST(CipherBytes, BuffersAndQueries) {
    const ByteVec plain = Pattern(20), otherKey(16, 0x33), zeros(32, 0), before(20, 0xEE);
    const Result sealed = Crypt(CIPHER_EncryptBytes, plain, kKey, kIv.data(), 16, "aes128/cbc", 0);
    ByteVec out(20), sealedZeros(32);
    EXPECT_EQ(CIPHER_DecryptBytes(out.data(), 20, sealed.bytes.data(), 32, kKey.data(), 16, kIv.data(), 16, "aes128/cbc", 0), 20);
    EXPECT_EQ(out, plain);
    ASSERT_EQ(CIPHER_EncryptBytes(sealedZeros.data(), 32, zeros.data(), 32, otherKey.data(), 16, kIv.data(), 16, "aes128/cbc/nopad", 0), 32);
    out = before;
    EXPECT_EQ(CIPHER_DecryptBytes(out.data(), 20, sealedZeros.data(), 32, otherKey.data(), 16, kIv.data(), 16, "aes128/cbc", 0), -DECRYPT_ERROR);
    EXPECT_EQ(out, before);

    const ByteVec key24 = Pattern(24, 5);
    const Result apart = Crypt(CIPHER_EncryptBytes, plain, key24, kIv.data(), 8, "tdea/cbc/ansix923", OPT_PREFIX_IV);
    ByteVec shared(32);
    std::memcpy(shared.data(), plain.data(), 20);
    EXPECT_EQ(CIPHER_EncryptBytes(shared.data(), 32, shared.data(), 20, key24.data(), 24, kIv.data(), 8, "tdea/cbc/ansix923", OPT_PREFIX_IV), 32);
    EXPECT_EQ(shared, apart.bytes);
}

// The hex calls give the upper-case hex of the byte calls, and twice their lengths.
TEST(CipherHex, MatchTheByteCalls) {
    const ByteVec plain = Pattern(37), key = Pattern(32, 9), iv = Pattern(16, 1);
    for (const char* text : {"aes256/cbc", "desede3/ctr", "aes256/ecb/oneandzeroes"}) {
        SCOPED_TRACE(text);
        const bool tdea = text[0] == 'd';
        const ByteVec k(key.begin(), key.begin() + (tdea ? 24 : 32)), v(iv.begin(), iv.begin() + (tdea ? 8 : 16));
        const std::string expected = UpperHexOf(Crypt(CIPHER_EncryptBytes, plain, k, v.data(), int32_t(v.size()), text, 0).bytes);
        const std::string in = ToHex(plain), keyHex = ToHex(k), ivHex = ToHex(v);
        const int32_t n = int32_t(expected.size());
        EXPECT_EQ(CIPHER_EncryptHex(nullptr, 0, in.c_str(), keyHex.c_str(), ivHex.c_str(), text, 0), n);
        std::vector<char> out(400, 'x');
        EXPECT_EQ(CIPHER_EncryptHex(out.data(), 399, in.c_str(), keyHex.c_str(), ivHex.c_str(), text, 0), n);
        EXPECT_EQ(std::string(out.data(), size_t(n)), expected);  // more may follow: the length tells
        EXPECT_EQ(CIPHER_DecryptHex(out.data(), 74, expected.c_str(), keyHex.c_str(), ivHex.c_str(), text, 0), 74);
        EXPECT_EQ(std::string(out.data()), UpperHexOf(plain));
    }
    // A decryption to nothing returns 0 and writes nothing, not even a NUL.
    const std::string sealed = ToHex(Crypt(CIPHER_EncryptBytes, {}, kKey, kIv.data(), 16, "aes128/cbc", 0).bytes);
    char out[8] = "xxxxxxx";
    EXPECT_EQ(CIPHER_DecryptHex(out, 7, sealed.c_str(), ToHex(kKey).c_str(), ToHex(kIv).c_str(), "aes128/cbc", 0), 0);
    EXPECT_STREQ(out, "xxxxxxx");
}

TEST(CipherBytes, NumberedNamesAreTheSameEntries) {
    EXPECT_NE(dlsym(RTLD_DEFAULT, "CIPHER_EncryptBytes"), nullptr);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "CIPHER_EncryptBytes2"), dlsym(RTLD_DEFAULT, "CIPHER_EncryptBytes"));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "CIPHER_DecryptBytes2"), dlsym(RTLD_DEFAULT, "CIPHER_DecryptBytes"));
}

// ECB and CBC file encryption pads also under OPT_PAD_NONE, which decryption
// then keeps; contents are compared with the reference elsewhere.
TEST(CipherFiles, PaddingRefusalsAndNoOutput) {
    const fs::path dir = fs::temp_directory_path() / ("verimond_cipher_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const std::string plainPath = dir / "plain", enc = dir / "enc", dec = dir / "dec", link = dir / "link";
    auto read = [](const std::string& p) {
        std::ifstream f(p, std::ios::binary);
        return ByteVec(std::istreambuf_iterator<char>(f), {});
    };
    auto F = [](int32_t dir, const std::string& out, const std::string& in, const ByteVec& key,
                const uint8_t* iv, int32_t ivLength, const char* text, int32_t options) {
        return (dir ? CIPHER_FileEncrypt : CIPHER_FileDecrypt)(out.c_str(), in.c_str(), key.data(),
                                                               int32_t(key.size()), iv, ivLength, text, options);
    };
    const ByteVec plain = Pattern(20);
    std::ofstream(plainPath, std::ios::binary).write(reinterpret_cast<const char*>(plain.data()), 20);
    ASSERT_EQ(F(1, enc, plainPath, kKey, kIv.data(), 16, nullptr, OPT_CIPHER_AES128 | OPT_MODE_CBC | OPT_PAD_NONE), 0);
    EXPECT_EQ(read(enc), Crypt(CIPHER_EncryptBytes, plain, kKey, kIv.data(), 16, "aes128/cbc", 0).bytes);
    ASSERT_EQ(F(0, dec, enc, kKey, kIv.data(), 16, "aes128/cbc/nopad", 0), 0);
    EXPECT_EQ(read(dec).size(), 32u);
    // One file under two names is refused before anything is lost.
    fs::create_symlink(plainPath, link);
    for (const std::string& same : {plainPath, link, (dir / "." / "plain").string()})
        EXPECT_EQ(F(1, same, plainPath, kKey, kIv.data(), 16, "aes128/cbc", 0), DUP_ERROR) << same;
    EXPECT_EQ(read(plainPath), plain);
    EXPECT_EQ(F(0, dec, enc, ByteVec(16, 0x77), kIv.data(), 16, "aes128/cbc", 0), DECRYPT_ERROR);
    EXPECT_FALSE(fs::exists(dec));
    EXPECT_EQ(API_ErrorCode(), DECRYPT_ERROR);
    fs::remove_all(dir);
}
