// The generic CIPHER_ calls and key wrap.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "block_support.h"

namespace fs = std::filesystem;

namespace {

struct CipherKind {
    const char* name;
    int32_t bits;
    int block, keyLength;
    Cipher family;  // the per-cipher calls that serve as the reference
};
const CipherKind kCiphers[] = {{"tdea", OPT_CIPHER_TDEA, 8, 24, Cipher::Tdea},
                               {"aes128", OPT_CIPHER_AES128, 16, 16, Cipher::Aes128},
                               {"aes192", OPT_CIPHER_AES192, 16, 24, Cipher::Aes192},
                               {"aes256", OPT_CIPHER_AES256, 16, 32, Cipher::Aes256}};

using CryptFn = decltype(&CIPHER_EncryptBytes);
struct CallCase { const char* what; std::function<int32_t()> call; int32_t expected; };
const ByteVec kKey = Pattern(16, 0x40), kIv = Pattern(16, 0x90), kData = Pattern(32);

// A size query, then the call into a buffer of that size.
struct Result {
    int32_t rc;
    ByteVec bytes;
};
Result Generic(CryptFn fn, ByteVec in, const ByteVec& key, const uint8_t* iv, int32_t ivLength, const char* text,
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

ByteVec OneShot(int32_t direction, const ByteVec& in, const ByteVec& key, const ByteVec& iv, int32_t options) {
    const Result r = Generic(direction ? CIPHER_EncryptBytes : CIPHER_DecryptBytes, in, key, iv.data(),
                             int32_t(iv.size()), nullptr, options);
    EXPECT_EQ(r.rc, int32_t(in.size()));
    return r.bytes;
}

ByteVec Wrap(const ByteVec& data, const ByteVec& kek, int32_t options) {
    ByteVec out(data.size() + 16);
    const int32_t n = CIPHER_KeyWrap(out.data(), int32_t(out.size()), data.data(), int32_t(data.size()), kek.data(),
                                     int32_t(kek.size()), options);
    out.resize(n > 0 ? size_t(n) : 0);
    return out;
}

// The unwrapped key, or "rc N" for a failure.
std::string Unwrap(const ByteVec& wrapped, const ByteVec& kek, int32_t options) {
    ByteVec out(wrapped.size(), 0xEE);
    const int32_t n = CIPHER_KeyUnwrap(out.data(), int32_t(out.size()), wrapped.data(), int32_t(wrapped.size()),
                                       kek.data(), int32_t(kek.size()), options);
    if (n < 0) return "rc " + std::to_string(n) + (out == ByteVec(out.size(), 0) ? " zeroed" : " not zeroed");
    return ToHex(out.data(), size_t(n));
}

}  // namespace

// Every padding, by name and by number: the family's ciphertext of the padded data.
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
                ByteVec body(size + B - size % B);
                PAD_BytesBlock(body.data(), int32_t(body.size()), plain.data(), int32_t(size), c.block, padBits);
                const ByteVec expected = FromHex(Crypt(c.family, body, key, 1, "CBC", iv));
                const int32_t number = c.bits | OPT_MODE_CBC | padBits;
                EXPECT_EQ(Hex(Generic(CIPHER_EncryptBytes, plain, key, iv.data(), c.block, text.c_str(), 0)), ToHex(expected));
                EXPECT_EQ(API_ErrorCode(), int32_t(expected.size()));
                EXPECT_EQ(Hex(Generic(CIPHER_EncryptBytes, plain, key, iv.data(), c.block, nullptr, number)), ToHex(expected));
                EXPECT_EQ(Hex(Generic(CIPHER_DecryptBytes, expected, key, iv.data(), c.block, nullptr, number)), ToHex(plain));
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
    const CallCase cases[] = {
        {"mode before padding", [&] { return E("aes128/pkcs5", 0); }, -BAD_PARAM_ERROR},
        {"key length, prefix", [&] { return CIPHER_DecryptBytes(out.data(), 64, in, 32, key, 16, none, 0, "tdea/cbc", OPT_PREFIX_IV); }, -BAD_KEY_LEN_ERROR},
        {"ECB looks at no IV length", [&] { return E("aes128/ecb", 0, 16, 3); }, 48},
        {"a query looks at neither", [&] { return CIPHER_EncryptBytes(nullptr, 0, none, 20, none, 16, iv, 16, "aes128/cbc", OPT_PREFIX_IV); }, 48},
        {"decryption screens before its query", [&] { return CIPHER_DecryptBytes(nullptr, 0, none, 32, key, 16, iv, 16, "aes128/cbc", 0); }, -NULL_ERROR},
        {"padded output too short", [&] { return E("aes128/cbc", 0, 16, 16, 47); }, -SHORT_BUF_ERROR},
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
    const Result sealed = Generic(CIPHER_EncryptBytes, plain, kKey, kIv.data(), 16, "aes128/cbc", 0);
    ByteVec out(20), sealedZeros(32);
    EXPECT_EQ(CIPHER_DecryptBytes(out.data(), 20, sealed.bytes.data(), 32, kKey.data(), 16, kIv.data(), 16, "aes128/cbc", 0), 20);
    EXPECT_EQ(out, plain);
    ASSERT_EQ(CIPHER_EncryptBytes(sealedZeros.data(), 32, zeros.data(), 32, otherKey.data(), 16, kIv.data(), 16, "aes128/cbc/nopad", 0), 32);
    out = before;
    EXPECT_EQ(CIPHER_DecryptBytes(out.data(), 20, sealedZeros.data(), 32, otherKey.data(), 16, kIv.data(), 16, "aes128/cbc", 0), -DECRYPT_ERROR);
    EXPECT_EQ(out, before);

    const ByteVec key24 = Pattern(24, 5);
    const Result apart = Generic(CIPHER_EncryptBytes, plain, key24, kIv.data(), 8, "tdea/cbc/ansix923", OPT_PREFIX_IV);
    ByteVec shared(32);
    std::memcpy(shared.data(), plain.data(), 20);
    EXPECT_EQ(CIPHER_EncryptBytes(shared.data(), 32, shared.data(), 20, key24.data(), 24, kIv.data(), 8, "tdea/cbc/ansix923", OPT_PREFIX_IV), 32);
    EXPECT_EQ(shared, apart.bytes);
}

// The hex calls give the upper-case hex of the byte calls, padding included.
TEST(CipherHex, MatchTheByteCalls) {
    const ByteVec plain = Pattern(37), key = Pattern(32, 9), iv = Pattern(16, 1);
    const std::string expected = UpperHex(Generic(CIPHER_EncryptBytes, plain, key, iv.data(), 16, "aes256/cbc", 0).bytes);
    const std::string in = ToHex(plain), keyHex = ToHex(key), ivHex = ToHex(iv);
    std::vector<char> out(400, 'x');
    EXPECT_EQ(CIPHER_EncryptHex(out.data(), 399, in.c_str(), keyHex.c_str(), ivHex.c_str(), "aes256/cbc", 0), 96);
    EXPECT_EQ(std::string(out.data(), 96), expected);  // more may follow: the length tells
    EXPECT_EQ(CIPHER_DecryptHex(out.data(), 74, expected.c_str(), keyHex.c_str(), ivHex.c_str(), "aes256/cbc", 0), 74);
    EXPECT_EQ(std::string(out.data()), UpperHex(plain));
    // A decryption to nothing returns 0 and writes nothing, not even a NUL.
    const std::string sealed = ToHex(Generic(CIPHER_EncryptBytes, {}, kKey, kIv.data(), 16, "aes128/cbc", 0).bytes);
    std::strcpy(out.data(), "xxxxxxx");
    EXPECT_EQ(CIPHER_DecryptHex(out.data(), 7, sealed.c_str(), ToHex(kKey).c_str(), ToHex(kIv).c_str(), "aes128/cbc", 0), 0);
    EXPECT_STREQ(out.data(), "xxxxxxx");
}

// ECB and CBC file encryption pads also under OPT_PAD_NONE, which decryption
// then keeps; contents are compared with the reference elsewhere.
TEST(CipherFiles, PaddingRefusalsAndNoOutput) {
    TempDir dir;
    const std::string plainPath = dir.Write("plain", Pattern(20)), enc = dir.File("enc"), dec = dir.File("dec");
    auto F = [](int32_t dir, const std::string& out, const std::string& in, const ByteVec& key, const char* text,
                int32_t options) {
        return (dir ? CIPHER_FileEncrypt : CIPHER_FileDecrypt)(out.c_str(), in.c_str(), key.data(),
                                                               int32_t(key.size()), kIv.data(), 16, text, options);
    };
    ASSERT_EQ(F(1, enc, plainPath, kKey, nullptr, OPT_CIPHER_AES128 | OPT_MODE_CBC | OPT_PAD_NONE), 0);
    EXPECT_EQ(ReadBytes(enc), Generic(CIPHER_EncryptBytes, Pattern(20), kKey, kIv.data(), 16, "aes128/cbc", 0).bytes);
    ASSERT_EQ(F(0, dec, enc, kKey, "aes128/cbc/nopad", 0), 0);
    EXPECT_EQ(ReadBytes(dec).size(), 32u);
    // One file under two names is refused before anything is lost.
    const std::string link = dir.File("link");
    fs::create_symlink(plainPath, link);
    for (const std::string& same : {plainPath, link, dir.File("./plain")})
        EXPECT_EQ(F(1, same, plainPath, kKey, "aes128/cbc", 0), DUP_ERROR) << same;
    EXPECT_EQ(ReadBytes(plainPath), Pattern(20));
    EXPECT_EQ(F(0, dec, enc, ByteVec(16, 0x77), "aes128/cbc", 0), DECRYPT_ERROR);
    EXPECT_FALSE(fs::exists(dec));
    EXPECT_EQ(API_ErrorCode(), DECRYPT_ERROR);
}

// Split updates are compared with the reference elsewhere; here the padding
// word and the prefix flag, which Init ignores, and the hex Init.
TEST(CipherStateful, InitIgnoresPaddingAndPrefix) {
    for (const auto& c : kCiphers) {
        SCOPED_TRACE(c.name);
        const ByteVec key = Pattern(size_t(c.keyLength), 0x21), iv = Pattern(size_t(c.block), 0x5A);
        const ByteVec plain = Pattern(size_t(3 * c.block));
        const ByteVec sealed = OneShot(1, plain, key, iv, c.bits | OPT_MODE_CBC | OPT_PAD_NONE);
        const std::string text = std::string(c.name) + "/cbc/pkcs5";
        ByteVec out(plain.size());
        int32_t h = CIPHER_Init(1, text.c_str(), key.data(), c.keyLength, iv.data(), c.block, OPT_PREFIX_IV);
        ASSERT_EQ(CIPHER_Update(h, out.data(), int32_t(out.size()), plain.data(), int32_t(plain.size())), 0);
        EXPECT_EQ(out, sealed);
        h = CIPHER_InitHex(0, nullptr, ToHex(key).c_str(), ToHex(iv).c_str(), c.bits | OPT_MODE_CBC | OPT_PAD_PKCS5);
        ASSERT_EQ(CIPHER_Update(h, out.data(), int32_t(out.size()), sealed.data(), int32_t(sealed.size())), 0);
        EXPECT_EQ(out, plain);
        EXPECT_EQ(CIPHER_Final(h), 0);
    }
}

// Every failed Init latches its reason; the two early InitHex failures leave
// the earlier context alive, all others have ended it.
TEST(CipherStateful, ContextLifeAndInitFailures) {
    const ByteVec key = Pattern(16), iv = Pattern(16, 3);
    const std::string keyHex = ToHex(key), ivHex = ToHex(iv), oddKey = keyHex + "0";
    ByteVec buf(16);
    const struct { const char* what; std::function<int32_t()> init; int32_t latch; bool earlierAlive; } cases[] = {
        {"no key text", [&] { return CIPHER_InitHex(1, "aes128/cbc", "", ivHex.c_str(), 0); }, BAD_PARAM_ERROR, true},
        {"IV not hex", [&] { return CIPHER_InitHex(1, "aes128/cbc", keyHex.c_str(), "0x", 0); }, INVALID_DATA_ERROR, true},
        {"odd key digits", [&] { return CIPHER_InitHex(1, "aes128/cbc", oddKey.c_str(), ivHex.c_str(), 0); }, BAD_KEY_LEN_ERROR, false},
        {"no IV", [&] { return CIPHER_InitHex(1, "aes128/ofb", keyHex.c_str(), nullptr, 0); }, BAD_IV_LEN_ERROR, false},
        {"both names", [&] { return CIPHER_Init(1, "aes128/cbc", key.data(), 16, iv.data(), 16, OPT_CIPHER_AES128); }, BAD_FLAG_ERROR, false},
        {"key length", [&] { return CIPHER_Init(1, "tdea/ecb", key.data(), 16, nullptr, 0, 0); }, BAD_KEY_LEN_ERROR, false},
        {"a second Init", [&] { return CIPHER_Init(1, "aes256/ecb", Pattern(32).data(), 32, nullptr, 0, 0) == 0; }, 0, false},
    };
    for (const auto& c : cases) {
        const int32_t live = CIPHER_Init(1, "aes128/ecb", key.data(), 16, nullptr, 0, 0);
        EXPECT_EQ(c.init(), 0) << c.what;
        EXPECT_EQ(API_ErrorCode(), c.latch) << c.what;
        EXPECT_EQ(CIPHER_Update(live, buf.data(), 16, buf.data(), 16), c.earlierAlive ? 0 : -INVALID_HANDLE_ERROR) << c.what;
    }
}

TEST(CipherStateful, UpdateResultRules) {
    const ByteVec key = Pattern(16), iv = Pattern(16, 3), plain = Pattern(100);
    ByteVec out(100);
    const int32_t h = CIPHER_Init(1, "aes128/cbc/pkcs5", key.data(), 16, iv.data(), 16, 0);
    EXPECT_EQ(CIPHER_Update(h, out.data(), 15, plain.data(), 15), BAD_LENGTH_ERROR);  // positive, kept
    EXPECT_EQ(API_ErrorCode(), BAD_LENGTH_ERROR);
    EXPECT_EQ(CIPHER_Update(h, out.data(), 15, plain.data(), 16), -SHORT_BUF_ERROR);
    // No padding, and the failures left the IV where it was.
    EXPECT_EQ(CIPHER_Update(h, out.data(), 16, plain.data(), 16), 0);
    EXPECT_EQ(ByteVec(out.begin(), out.begin() + 16),
              OneShot(1, ByteVec(plain.begin(), plain.begin() + 16), key, iv, OPT_CIPHER_AES128 | OPT_MODE_CBC | OPT_PAD_NONE));
}

// Values are checked against the vectors and the reference elsewhere.
TEST(KeyWrap, FreshTripleDesWrapsAndTamperingFailsWithMinusOne) {
    const ByteVec kek = Pattern(24, 2), key = Pattern(24, 9);
    // The Triple DES wrap's leading bytes are fresh at each call.
    EXPECT_NE(Wrap(key, kek, OPT_CIPHER_TDEA), Wrap(key, kek, OPT_CIPHER_TDEA));
    for (int32_t options : {OPT_CIPHER_TDEA, OPT_CIPHER_AES192}) {
        const ByteVec wrapped = Wrap(key, kek, options);
        // Kept as given (the first byte has even parity); mode and padding bits play no part.
        EXPECT_EQ(Unwrap(wrapped, kek, options | OPT_MODE_CTR | OPT_PAD_NONE), ToHex(key));
        for (size_t i = 0; i < wrapped.size(); ++i) {
            ByteVec bad = wrapped;
            bad[i] ^= uint8_t(1 << (i % 8));
            EXPECT_EQ(Unwrap(bad, kek, options), "rc -1 zeroed") << options << " byte " << i;
            EXPECT_EQ(API_ErrorCode(), OPEN_ERROR);  // the plain -1 latches as 1
        }
        EXPECT_EQ(Unwrap(wrapped, Pattern(24, 3), options), "rc -1 zeroed");
    }
    // Wrapping in place, and the latch after a success.
    ByteVec buffer = Pattern(40, 9);
    ASSERT_EQ(CIPHER_KeyWrap(buffer.data(), 40, buffer.data(), 32, kek.data(), 24, OPT_CIPHER_AES192), 40);
    EXPECT_EQ(API_ErrorCode(), 0);
    EXPECT_EQ(Unwrap(buffer, kek, OPT_CIPHER_AES192), ToHex(Pattern(32, 9)));
    // The KEK length must fit the cipher; the other option bits play no part.
    uint8_t* b = buffer.data();
    EXPECT_EQ(CIPHER_KeyWrap(b, 40, b, 16, kek.data(), 16, OPT_CIPHER_AES192), -BAD_KEY_LEN_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_KEY_LEN_ERROR);
    EXPECT_EQ(CIPHER_KeyWrap(b, 40, b, 16, kek.data(), 16, 0x20 | 0x100 | 0x1000), 24);
    EXPECT_EQ(CIPHER_KeyUnwrap(b, 0, b, 40, kek.data(), 24, OPT_CIPHER_TDEA), 24);  // a query
    EXPECT_EQ(API_ErrorCode(), 0);
}
