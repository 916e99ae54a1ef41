// The per-cipher families through their exports: weak DES keys, the shared
// AES slot, handles, the Init status calls and their latch quirks, and
// properties of split calls.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "block_support.h"

namespace {

struct Row {
    const char* what;
    std::function<int32_t()> call;
    int32_t expected;
};

void RunTable(const std::vector<Row>& rows) {
    for (const auto& r : rows) EXPECT_EQ(r.call(), r.expected) << r.what;
}

uint8_t g_key[64] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6, 0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c,
                     0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f};
uint8_t g_iv[16] = {};
uint8_t g_data[64] = {};

}  // namespace

TEST(BlockFamilies, DesCheckKey) {
    const ByteVec good = FromHex("0123456789abcdef");
    ByteVec thirdWeak = good;
    thirdWeak.insert(thirdWeak.end(), good.begin(), good.end());
    thirdWeak.insert(thirdWeak.end(), {0xE0, 0xFE, 0xE0, 0xFE, 0xF1, 0xFE, 0xF1, 0xFE});
    ByteVec twoEqual = good;
    twoEqual.insert(twoEqual.end(), good.begin(), good.end());
    RunTable({
        {"semi-weak, parity bits flipped", [] { return DES_CheckKey(FromHex("1E001E000F010F01").data(), 8); },
         WEAK_KEY_ERROR},
        {"good", [&] { return DES_CheckKey(good.data(), 8); }, 0},
        {"third part weak", [&] { return DES_CheckKey(thirdWeak.data(), 24); }, WEAK_KEY_ERROR},
        {"K1 = K2 is not weak", [&] { return DES_CheckKey(twoEqual.data(), 16); }, 0},
        {"12 bytes", [&] { return DES_CheckKey(thirdWeak.data(), 12); }, BAD_KEY_LEN_ERROR},
        {"hex weak", [] { return DES_CheckKeyHex("fefefefefefefefe"); }, WEAK_KEY_ERROR},
        {"hex good", [] { return DES_CheckKeyHex("0123456789ABCDEF"); }, 0},
        {"hex 47 digits", [] { return DES_CheckKeyHex(std::string(47, '1').c_str()); }, BAD_KEY_LEN_ERROR},
    });
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
}

// DES_InitHex reports a missing argument in the TDEA slot and leaves its own
// status and the latch clear.
TEST(BlockFamilies, InitHexReportsMissingArgumentsInTdeaSlot) {
    ASSERT_NE(DES_InitHex("0123456789abcdef", 1, "ECB", nullptr), 0);
    EXPECT_EQ(DES_InitHex("0123456789abcdef", 1, "CBC", nullptr), 0);
    EXPECT_EQ(TDEA_InitError(), BAD_IV_ERROR);
    EXPECT_EQ(DES_InitError(), 0);
    EXPECT_EQ(API_ErrorCode(), 0);
    // A wrong IV that is present is the family's own failure.
    EXPECT_EQ(DES_InitHex("0123456789abcdef", 1, "CBC", "00"), 0);
    EXPECT_EQ(DES_InitError(), BAD_IV_ERROR);
}

// Each call starts on a block boundary: whole-block pieces equal one call, a
// part block loses the rest of its keystream block.
TEST(BlockFamilies, SplitCallsAndPartBlocks) {
    ByteVec data(48);
    for (size_t i = 0; i < data.size(); ++i) data[i] = uint8_t(i * 7);
    const ByteVec key(g_key, g_key + 16), iv(16, 0x5a);
    const std::string whole = Crypt(Cipher::Aes128, data, key, 1, "CTR", iv);
    for (const auto& cuts : std::vector<std::vector<int>>{{16, 32}, {32, 16}, {16, 16, 16}, {20, 12, 16}}) {
        ByteVec buf = data;
        const int32_t h = AES128_Init(key.data(), 1, "CTR", iv.data());
        int off = 0;
        for (int n : cuts) {
            ASSERT_EQ(AES128_Update(h, buf.data() + off, n), 0);
            off += n;
        }
        AES128_Final(h);
        if (cuts[0] % 16 == 0) {
            EXPECT_EQ(UpperHex(buf), whole);
        } else {
            EXPECT_EQ(UpperHex(buf).substr(0, 40), whole.substr(0, 40));
            EXPECT_NE(UpperHex(buf).substr(40, 2), whole.substr(40, 2));
        }
    }
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

// BLF_Ecb works on the live context with its own direction and leaves the
// chaining register alone.
TEST(BlockFamilies, BlfEcbOnLiveContext) {
    const ByteVec key(g_key, g_key + 16), data = FromHex("00112233445566778899aabbccddeeff");
    const std::string cbc = Crypt(Cipher::Blf, data, key, 1, "CBC", ByteVec(8));
    ByteVec buf = data;
    const int32_t h = BLF_Init(key.data(), 16, 1, "CBC", g_iv);
    ASSERT_EQ(BLF_Update(h, buf.data(), 8), 0);
    ByteVec side = data;
    EXPECT_EQ(BLF_Ecb(h, side.data(), 16, 1), 0);
    EXPECT_EQ(UpperHex(side), Crypt(Cipher::Blf, data, key, 1, "ECB", {}));
    EXPECT_EQ(BLF_Ecb(h, side.data(), 16, 0), 0);
    EXPECT_EQ(side, data);
    std::string hex = ToHex(data);
    EXPECT_EQ(BLF_EcbHex(h, hex.data(), 1), 0);
    EXPECT_EQ(hex, Crypt(Cipher::Blf, data, key, 1, "ECB", {}));
    ASSERT_EQ(BLF_Update(h, buf.data() + 8, 8), 0);
    EXPECT_EQ(UpperHex(buf), cbc);
    EXPECT_EQ(BLF_Final(h), 0);
}
