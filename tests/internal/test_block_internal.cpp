// Cipher internals, and the stream cores where the exports cannot reach.
#include <gtest/gtest.h>

#include <cstring>

#include "block/block.h"
#include "block/family.h"
#include "cipher/select.h"
#include "frame/frame.h"
#include "stream/chacha20.h"
#include "stream/salsa20.h"
#include "test_support.h"
#include "vector_reader.h"

namespace {
const ByteVec kKey = Pattern(32, 0x60), kIv = Pattern(16, 0xf0);

template <class T>
bool AllZero(const T& object) {
    return std::memcmp(&object, ByteVec(sizeof object).data(), sizeof object) == 0;
}

ByteVec Keystream(Chacha20State* s, size_t n) {
    ByteVec zeros(n, 0), out(n);
    Chacha20Xor(s, zeros.data(), out.data(), n);
    return out;
}
}  // namespace

TEST(BlockEngine, CounterCarryAndWrap) {
    uint8_t data[48] = {};
    AesContext aes;
    const ByteVec allOnes(16, 0xff);
    ASSERT_EQ(AesSetupMode(&aes, kModeCtr, kKey.data(), 16, 1, allOnes.data()), 0);
    ASSERT_EQ(AesProcess(&aes, data, data, 16), 0);
    EXPECT_EQ(ToHex(aes.iv, 16), std::string(32, '0'));
    // A part block still advances the counter: 17 bytes count two.
    uint8_t low[16] = {};
    low[14] = low[15] = 0xff;
    ASSERT_EQ(AesSetupMode(&aes, kModeCtr, kKey.data(), 16, 0, low), 0);
    ASSERT_EQ(AesProcess(&aes, data, data, 17), 0);
    EXPECT_EQ(ToHex(aes.iv, 16), "00000000000000000000000000010001");
    // The 64-bit ciphers carry from the low word into the high word.
    TdeaContext tdea;
    const uint8_t iv8[8] = {0x01, 0x23, 0x45, 0x67, 0xff, 0xff, 0xff, 0xff};
    ASSERT_EQ(TdeaSetupMode(&tdea, kModeCtr, kKey.data(), 1, iv8), 0);
    ASSERT_EQ(TdeaProcess(&tdea, data, data, 8), 0);
    EXPECT_EQ(tdea.iv[0], 0x01234568u);
    EXPECT_EQ(tdea.iv[1], 0u);
    EXPECT_EQ(tdea.initialIv[1], 0xffffffffu);
}

// CFB with a part block: the sides agree on the bytes, but the encrypt
// register keeps keystream where the decrypt register keeps zeros.
TEST(BlockEngine, CfbPartBlockRegisters) {
    uint8_t data[5] = {1, 2, 3, 4, 5}, back[5];
    AesContext enc, dec;
    ASSERT_EQ(AesSetupMode(&enc, kModeCfb, kKey.data(), 16, 1, kIv.data()), 0);
    ASSERT_EQ(AesSetupMode(&dec, kModeCfb, kKey.data(), 16, 0, kIv.data()), 0);
    ASSERT_EQ(AesProcess(&enc, data, data, 5), 0);
    ASSERT_EQ(AesProcess(&dec, back, data, 5), 0);
    EXPECT_EQ(ToHex(back, 5), "0102030405");
    EXPECT_EQ(ToHex(enc.iv, 5), ToHex(dec.iv, 5));
    EXPECT_EQ(ToHex(dec.iv + 5, 11), std::string(22, '0'));
    EXPECT_NE(ToHex(enc.iv + 5, 11), std::string(22, '0'));
}

TEST(CipherSelect, ModeWordsAndAlgorithmStrings) {
    const struct {
        const char* text;
        int mode;
    } words[] = {{"cbc", 1}, {"CBC", 1}, {"CbC", 1}, {"cbcd", 1}, {"ecb", 0}, {"cfb", 2}, {"OFB", 3},
                 {"ctr", 4}, {"cb", -1}, {"c c", -1}, {"1bc", -1}, {"", -1}, {nullptr, -1}, {"abc", -1}};
    for (const auto& w : words) EXPECT_EQ(ParseModeWord(w.text), w.mode) << (w.text ? w.text : "null");
    const std::pair<std::string, int32_t> strings[] = {
        {"Aes 128 / CBC / PKCS5Padding", 0x20120}, {"aes256", 0x40}, {"des", -1}, {"desede", 0x10},
        {"desede3", 0x10}, {"3des", 0x10}, {"tdea", 0x10}, {"desede3cbc", 0x110}, {"desedecbc", 0x110},
        {"aes128ctrpkcs5", 0x20420}, {"aes128cbcnopad", 0x10120}, {"aes192-ofb-w3c", 0x50230},
        {"aes128/cfb/oneandzeroes", 0x30320}, {"aes128/pkcs5", -1}, {"aes128/cbc/pkcs5/x", -1},
        {"aes128cbc" + std::string(70, ' '), 0x120}, {"aes128cbc" + std::string(61, 'x'), -1},
        {"aes128\xe9", -1}, {"", -1}};
    for (const auto& [text, word] : strings) EXPECT_EQ(ParseAlgorithmString(text.c_str()), word) << text;
}

TEST(CipherSelect, SelectionAndOptionWord) {
    int32_t cipher = 0, mode = 0, options = 0;
    EXPECT_EQ(SelectCipher(&cipher, &mode, &options, "", OPT_MODE_CBC), -BAD_FLAG_ERROR);
    EXPECT_EQ(SelectCipher(&cipher, &mode, &options, nullptr, 0x520), -BAD_MODE_ERROR);
    EXPECT_EQ(mode, -1);
    // The string gives the selection, the word keeps its flags.
    ASSERT_EQ(SelectCipher(&cipher, &mode, &options, "tdea/ofb", OPT_PREFIX_IV | OPT_PAD_W3C | OPT_MODE_CTR), 0);
    EXPECT_EQ(cipher, OPT_CIPHER_TDEA);
    EXPECT_EQ(mode, 3);
    EXPECT_EQ(options, OPT_PREFIX_IV | OPT_CIPHER_TDEA | OPT_MODE_OFB);
    ASSERT_EQ(SelectCipher(&cipher, &mode, nullptr, nullptr, 0x60350 | OPT_LEAVE_PADDING), 0);
    EXPECT_EQ(cipher, 0x50);  // an unused cipher value passes here
    EXPECT_EQ(mode, 2);
    EXPECT_EQ(EffectivePadding(OPT_MODE_ECB), OPT_PAD_PKCS5);
    EXPECT_EQ(EffectivePadding(OPT_MODE_CBC | 0x60000), 0);
    EXPECT_EQ(EffectivePadding(OPT_MODE_CTR | OPT_PAD_PKCS5), 0);
    EXPECT_EQ(CheckKeyAndIv(0x50, 0, 24, 0), -INTERNAL_ERROR);
}

TEST(BlockSlots, WipedAfterFinalAndFailedInit) {
    ContextArea* area = GetContextArea();
    const int32_t h = family::Init<family::BlfTraits>(kKey.data(), 16, 1, "CBC", kIv.data());
    ASSERT_NE(h, 0);
    EXPECT_FALSE(AllZero(area->blf.context));
    ASSERT_EQ(family::Final<family::BlfTraits>(h), 0);
    EXPECT_TRUE(AllZero(area->blf.context));
    EXPECT_EQ(area->blf.handle, 0u);

    ASSERT_NE(family::Init<family::AesTraits>(kKey.data(), 16, 1, "OFB", kIv.data()), 0);
    EXPECT_EQ(family::Init<family::AesTraits>(kKey.data(), 20, 1, "OFB", kIv.data()), 0);
    EXPECT_EQ(area->aes.lastInitResult, BAD_KEY_LEN_ERROR);
    EXPECT_TRUE(AllZero(area->aes.context));
}

TEST(Salsa20Core, PublishedBlocksAtAnyCounter) {
    const auto records = ReadVectorFile("estream/salsa20_verified_subset.txt");
    ASSERT_EQ(records.size(), 7u);
    for (const auto& r : records) {
        ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), out(64, 0);
        uint64_t counter = std::stoull(r.Get("COUNTER"), nullptr, 16) + uint64_t(r.Int("OFFSET")) / 64;
        Salsa20State s;
        ASSERT_EQ(Salsa20Setup(&s, key.data(), int32_t(key.size()), iv.data(), 8), 0);
        s.words[8] = uint32_t(counter);
        s.words[9] = uint32_t(counter >> 32);
        Salsa20Xor(&s, out.data(), out.data(), 64);
        EXPECT_EQ(ToHex(out), ToHex(r.Bytes("STREAM"))) << "line " << r.line;
    }
}

TEST(Chacha20Core, CounterLayoutsAndCarry) {
    Chacha20State a, b;
    // A 16-byte nonce carries its own counter: the argument is ignored.
    ASSERT_EQ(Chacha20Setup(&a, kKey.data(), 32, kIv.data(), 16, 0), 0);
    ASSERT_EQ(Chacha20Setup(&b, kKey.data(), 32, kIv.data(), 16, 12345), 0);
    EXPECT_EQ(Keystream(&a, 80), Keystream(&b, 80));
    // 12-byte nonce, counter 0xFFFFFFFF: the second block runs with counter 0
    // and the first nonce word plus one (no wrap test, unlike RFC 8439).
    ASSERT_EQ(Chacha20Setup(&a, kKey.data(), 32, kIv.data(), 12, 0xFFFFFFFFu), 0);
    ByteVec two = Keystream(&a, 128);
    EXPECT_EQ(a.words[12], 1u);
    uint8_t bumped[12];
    std::copy(kIv.begin(), kIv.begin() + 12, bumped);
    bumped[0]++;  // the first little-endian word plus one
    ASSERT_EQ(Chacha20Setup(&b, kKey.data(), 32, bumped, 12, 0), 0);
    EXPECT_EQ(ByteVec(two.begin() + 64, two.end()), Keystream(&b, 64));
    // The 8-byte layout carries word 12 into word 13 in the same way; a
    // short call spends its whole block.
    ASSERT_EQ(Chacha20Setup(&a, kKey.data(), 16, kIv.data(), 8, 0xFFFFFFFFu), 0);
    Keystream(&a, 5);
    EXPECT_EQ(a.words[12], 0u);
    EXPECT_EQ(a.words[13], 1u);
}
