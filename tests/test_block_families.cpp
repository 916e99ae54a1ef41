// The per-cipher families through their exports: check orders and result
// codes as one table per family, the shared AES slot, handles, the Init
// status calls and their latch quirks, and properties of split calls.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <thread>
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

// Shared material: keys of every size, a zero IV, 64 data bytes.
uint8_t g_key[64] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6, 0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c,
                     0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f};
uint8_t g_iv[16] = {};
uint8_t g_data[64] = {};
uint8_t g_out[64];
char g_text[160];
const std::string kHex32(32, 'a'), kHex16(16, 'b'), kKeyHex32 = std::string(32, '1');
const char* kB64Block = "AAAAAAAAAAAAAAAAAAAAAA==";  // 16 zero bytes

}  // namespace

TEST(BlockFamilies, AesResultCodes) {
    RunTable({
        {"Bytes null output", [] { return AES128_Bytes(nullptr, g_data, 16, g_key, 1); }, NULL_ERROR},
        {"Bytes null key", [] { return AES128_Bytes(g_out, g_data, 16, nullptr, 1); }, NULL_ERROR},
        {"Bytes ECB 17 bytes", [] { return AES128_Bytes(g_out, g_data, 17, g_key, 1); }, BAD_LENGTH_ERROR},
        {"Bytes negative length", [] { return AES128_Bytes(g_out, g_data, -16, g_key, 1); }, BAD_LENGTH_ERROR},
        {"BytesMode null mode", [] { return AES128_BytesMode(nullptr, g_data, 16, g_key, 1, nullptr, g_iv); },
         NULL_ERROR},
        {"BytesMode empty mode", [] { return AES128_BytesMode(g_out, g_data, 16, g_key, 1, "", g_iv); },
         BAD_MODE_ERROR},
        {"BytesMode unknown mode, null IV", [] { return AES256_BytesMode(g_out, g_data, 16, g_key, 1, "XYZ", nullptr); },
         BAD_MODE_ERROR},
        {"BytesMode CBC null IV", [] { return AES192_BytesMode(g_out, g_data, 16, g_key, 1, "cbc", nullptr); },
         BAD_IV_ERROR},
        {"BytesMode CBC 15 bytes", [] { return AES128_BytesMode(g_out, g_data, 15, g_key, 0, "CBC", g_iv); },
         BAD_LENGTH_ERROR},
        {"BytesMode CTR 15 bytes", [] { return AES128_BytesMode(g_out, g_data, 15, g_key, 1, "Ctr-x", g_iv); }, 0},
        {"Hex 32 digits", [] { return AES128_Hex(g_text, kHex32.c_str(), kKeyHex32.c_str(), 1); }, 0},
        {"Hex odd length", [] { return AES128_Hex(g_text, "abc", kKeyHex32.c_str(), 1); }, BAD_FORMAT_ERROR},
        {"Hex one digit", [] { return AES128_Hex(g_text, "a", kKeyHex32.c_str(), 1); }, BAD_LENGTH_ERROR},
        {"Hex bad digits", [] { return AES128_Hex(g_text, "zz", kKeyHex32.c_str(), 1); }, BAD_FORMAT_ERROR},
        {"Hex 24-byte key", [] { return AES128_Hex(g_text, kHex32.c_str(), std::string(48, '1').c_str(), 1); },
         BAD_KEY_LEN_ERROR},
        {"Hex unreadable key", [] { return AES128_Hex(g_text, kHex32.c_str(), "xy", 1); }, BAD_KEY_LEN_ERROR},
        {"Hex empty key", [] { return AES128_Hex(g_text, kHex32.c_str(), "", 1); }, BAD_PARAM_ERROR},
        {"HexMode null mode", [] { return AES128_HexMode(g_text, "", "", 1, nullptr, nullptr); }, BAD_PARAM_ERROR},
        {"HexMode bad mode first", [] { return AES128_HexMode(nullptr, "", "", 1, "QQQ", nullptr); },
         BAD_MODE_ERROR},
        {"HexMode arguments before IV", [] { return AES128_HexMode(nullptr, "aa", "11", 1, "CBC", nullptr); },
         BAD_PARAM_ERROR},
        {"HexMode IV before length", [] { return AES128_HexMode(g_text, "a", "11", 1, "CBC", "00"); }, BAD_IV_ERROR},
        {"HexMode CBC 15 bytes",
         [] { return AES128_HexMode(g_text, std::string(30, '0').c_str(), kKeyHex32.c_str(), 1, "CBC", kHex32.c_str()); },
         BAD_LENGTH_ERROR},
        {"HexMode CTR 15 bytes",
         [] { return AES128_HexMode(g_text, std::string(30, '0').c_str(), kKeyHex32.c_str(), 1, "CTR", kHex32.c_str()); },
         0},
        {"B64Mode null output", [] { return AES128_B64Mode(nullptr, kB64Block, kB64Block, 1, "ECB", nullptr); },
         BAD_PARAM_ERROR},
        {"B64Mode bad mode", [] { return AES128_B64Mode(g_text, kB64Block, kB64Block, 1, "E", nullptr); },
         BAD_MODE_ERROR},
        {"B64Mode CBC no IV", [] { return AES128_B64Mode(g_text, kB64Block, kB64Block, 1, "CBC", ""); },
         BAD_IV_ERROR},
        {"B64Mode no data bytes", [] { return AES128_B64Mode(g_text, "====", kB64Block, 1, "ECB", nullptr); },
         BAD_FORMAT_ERROR},
        {"B64Mode 16-byte key for AES-256", [] { return AES256_B64Mode(g_text, kB64Block, kB64Block, 1, "ECB", nullptr); },
         BAD_KEY_LEN_ERROR},
        {"Update null data", [] { return AES128_Update(1, nullptr, 16); }, NULL_ERROR},
        {"Update negative length", [] { return AES128_Update(1, g_data, -1); }, BAD_PARAM_ERROR},
        {"Update handle 0", [] { return AES128_Update(0, g_data, 16); }, INVALID_HANDLE_ERROR},
        {"UpdateHex empty", [] { return AES128_UpdateHex(0, g_text + 159); }, BAD_PARAM_ERROR},
        {"Final handle 0", [] { return AES128_Final(0); }, INVALID_HANDLE_ERROR},
    });
}

// Init calls give 0 on failure; the reason is what InitError reads.
TEST(BlockFamilies, AesInitResults) {
    auto initError = [](int32_t handle) { return handle != 0 ? -1 : AES128_InitError(); };
    RunTable({
        {"Init null key", [&] { return initError(AES128_Init(nullptr, 1, "CBC", nullptr)); }, BAD_KEY_ERROR},
        {"Init bad mode", [&] { return initError(AES128_Init(g_key, 1, "XYZ", nullptr)); }, BAD_MODE_ERROR},
        {"Init null mode", [&] { return initError(AES128_Init(g_key, 1, nullptr, g_iv)); }, BAD_MODE_ERROR},
        {"Init CBC null IV", [&] { return initError(AES192_Init(g_key, 1, "CBC", nullptr)); }, BAD_IV_ERROR},
        {"InitHex null key", [&] { return initError(AES128_InitHex(nullptr, 1, "ECB", nullptr)); }, BAD_PARAM_ERROR},
        {"InitHex empty mode", [&] { return initError(AES128_InitHex("00", 1, "", nullptr)); }, BAD_PARAM_ERROR},
        {"InitHex bad mode", [&] { return initError(AES128_InitHex("00", 1, "ABC", nullptr)); }, BAD_MODE_ERROR},
        {"InitHex CBC no IV", [&] { return initError(AES128_InitHex("00", 1, "CBC", "")); }, BAD_IV_ERROR},
        {"InitHex CBC 8-byte IV", [&] { return initError(AES128_InitHex("00", 1, "CBC", kHex16.c_str())); },
         BAD_IV_ERROR},
        {"InitHex unreadable key", [&] { return initError(AES128_InitHex("0g", 1, "ECB", nullptr)); }, BAD_KEY_ERROR},
        {"InitHex 33-byte key", [&] { return initError(AES128_InitHex(std::string(66, '1').c_str(), 1, "ECB", nullptr)); },
         BAD_KEY_LEN_ERROR},
        {"InitHex 20-byte key", [&] { return initError(AES128_InitHex(std::string(40, '1').c_str(), 1, "ECB", nullptr)); },
         BAD_KEY_LEN_ERROR},
    });
    EXPECT_NE(AES128_InitHex(std::string(48, '1').c_str(), 1, "OFB", kHex32.c_str()), 0);
    EXPECT_EQ(AES256_InitError(), 0);
}

TEST(BlockFamilies, DesResultCodes) {
    RunTable({
        {"Bytes null mode", [] { return DES_BytesMode(g_out, g_data, 8, g_key, 1, nullptr, g_iv); }, NULL_ERROR},
        {"Bytes nulls before length", [] { return DES_BytesMode(nullptr, g_data, -8, g_key, 1, "ECB", g_iv); },
         NULL_ERROR},
        {"Bytes negative length", [] { return DES_Bytes(g_out, g_data, -8, g_key, 1); }, BAD_PARAM_ERROR},
        {"Bytes unknown mode, null IV", [] { return DES_BytesMode(g_out, g_data, 8, g_key, 1, "XYZ", nullptr); },
         BAD_IV_ERROR},
        {"Bytes unknown mode, IV", [] { return DES_BytesMode(g_out, g_data, 8, g_key, 1, "XYZ", g_iv); },
         BAD_MODE_ERROR},
        {"Bytes ECB 9 bytes", [] { return DES_Bytes(g_out, g_data, 9, g_key, 0); }, BAD_LENGTH_ERROR},
        {"Hex 8-byte key", [] { return DES_Hex(g_text, kHex16.c_str(), kHex16.c_str(), 1); }, 0},
        {"Hex 7-byte key", [] { return DES_Hex(g_text, kHex16.c_str(), std::string(14, '1').c_str(), 1); },
         BAD_KEY_LEN_ERROR},
        {"Hex 9-byte key", [] { return DES_Hex(g_text, kHex16.c_str(), std::string(18, '1').c_str(), 1); },
         BAD_KEY_LEN_ERROR},
        {"B64Mode missing data", [] { return DES_B64Mode(g_text, "", "AAAAAAAAAAA=", 1, "ECB", nullptr); },
         NULL_ERROR},
        {"B64Mode 8-byte key", [] { return DES_B64Mode(g_text, "AAAAAAAAAAA=", "AAAAAAAAAAA=", 1, "ECB", nullptr); },
         0},
        {"Init null key", [] { return DES_Init(nullptr, 1, "ECB", nullptr) ? -1 : DES_InitError(); }, BAD_KEY_ERROR},
        {"InitHex 9-byte key", [] { return DES_InitHex(std::string(18, '1').c_str(), 1, "ECB", nullptr) ? -1 : DES_InitError(); },
         BAD_KEY_LEN_ERROR},
        {"Update stale handle", [] { return DES_Update(3, g_data, 8); }, INVALID_HANDLE_ERROR},
    });
}

TEST(BlockFamilies, TdeaResultCodes) {
    RunTable({
        {"BytesMode null mode", [] { return TDEA_BytesMode(g_out, g_data, 8, g_key, 1, nullptr, g_iv); }, NULL_ERROR},
        {"BytesMode unknown mode, null IV", [] { return TDEA_BytesMode(g_out, g_data, 8, g_key, 1, "XYZ", nullptr); },
         BAD_MODE_ERROR},
        {"Bytes negative length", [] { return TDEA_Bytes(g_out, g_data, -8, g_key, 1); }, BAD_LENGTH_ERROR},
        {"Hex 16-byte key", [] { return TDEA_Hex(g_text, kHex16.c_str(), kKeyHex32.c_str(), 1); }, BAD_KEY_LEN_ERROR},
        {"Hex 24-byte key", [] { return TDEA_Hex(g_text, kHex16.c_str(), std::string(48, '2').c_str(), 1); }, 0},
        {"B64Mode null mode", [] { return TDEA_B64Mode(g_text, "AAAA", "AAAA", 1, nullptr, nullptr); }, NULL_ERROR},
        {"Init CFB null IV", [] { return TDEA_Init(g_key, 1, "CFB", nullptr) ? -1 : TDEA_InitError(); }, BAD_IV_ERROR},
    });
}

TEST(BlockFamilies, BlfResultCodes) {
    RunTable({
        {"Bytes 56-byte key", [] { return BLF_Bytes(g_out, g_data, 8, g_key, 56, 1); }, 0},
        {"Bytes 57-byte key", [] { return BLF_Bytes(g_out, g_data, 8, g_key, 57, 1); }, BAD_KEY_LEN_ERROR},
        {"Bytes empty key", [] { return BLF_Bytes(g_out, g_data, 8, g_key, 0, 1); }, 0},
        {"Bytes negative key length", [] { return BLF_Bytes(g_out, g_data, 8, g_key, -1, 1); }, BAD_PARAM_ERROR},
        {"Bytes negative length", [] { return BLF_Bytes(g_out, g_data, -8, g_key, 8, 1); }, BAD_PARAM_ERROR},
        {"Bytes null mode", [] { return BLF_BytesMode(g_out, g_data, 8, g_key, 8, 1, nullptr, g_iv); }, NULL_ERROR},
        {"Bytes unknown mode, null IV", [] { return BLF_BytesMode(g_out, g_data, 8, g_key, 8, 1, "QQQ", nullptr); },
         BAD_IV_ERROR},
        {"Hex unreadable key", [] { return BLF_Hex(g_text, kHex16.c_str(), "0x", 1); }, BAD_KEY_ERROR},
        {"Hex 57-byte key", [] { return BLF_Hex(g_text, kHex16.c_str(), std::string(114, '1').c_str(), 1); },
         BAD_KEY_LEN_ERROR},
        {"Hex 1-byte key", [] { return BLF_Hex(g_text, kHex16.c_str(), "01", 1); }, 0},
        {"B64Mode empty key", [] { return BLF_B64Mode(g_text, "AAAAAAAAAAA=", "", 1, "ECB", nullptr); }, NULL_ERROR},
        {"Init negative key length", [] { return BLF_Init(g_key, -1, 1, "ECB", nullptr) ? -1 : BLF_InitError(); },
         BAD_PARAM_ERROR},
        {"Init 57-byte key", [] { return BLF_Init(g_key, 57, 1, "ECB", nullptr) ? -1 : BLF_InitError(); },
         BAD_KEY_LEN_ERROR},
        {"InitHex bad key text", [] { return BLF_InitHex("zz", 1, "ECB", nullptr) ? -1 : BLF_InitError(); },
         BAD_KEY_ERROR},
        {"Ecb null data", [] { return BLF_Ecb(1, nullptr, 8, 1); }, NULL_ERROR},
        {"Ecb negative length", [] { return BLF_Ecb(1, g_data, -8, 1); }, BAD_PARAM_ERROR},
        {"Ecb handle 0", [] { return BLF_Ecb(0, g_data, 8, 1); }, INVALID_HANDLE_ERROR},
        {"EcbHex bad text before handle", [] { std::strcpy(g_text, "zz"); return BLF_EcbHex(0, g_text, 1); },
         BAD_FORMAT_ERROR},
        {"EcbHex handle", [] { std::strcpy(g_text, "0011223344556677"); return BLF_EcbHex(0, g_text, 1); },
         INVALID_HANDLE_ERROR},
    });
}

TEST(BlockFamilies, DesCheckKey) {
    const ByteVec weak = FromHex("0101010101010101"), good = FromHex("0123456789abcdef");
    ByteVec thirdWeak = good;
    thirdWeak.insert(thirdWeak.end(), good.begin(), good.end());
    thirdWeak.insert(thirdWeak.end(), {0xE0, 0xFE, 0xE0, 0xFE, 0xF1, 0xFE, 0xF1, 0xFE});
    ByteVec twoEqual = good;
    twoEqual.insert(twoEqual.end(), good.begin(), good.end());
    RunTable({
        {"weak", [&] { return DES_CheckKey(weak.data(), 8); }, WEAK_KEY_ERROR},
        {"zero key is weak after parity", [] { return DES_CheckKey(ByteVec(8).data(), 8); }, WEAK_KEY_ERROR},
        {"semi-weak, parity bits flipped", [] { return DES_CheckKey(FromHex("1E001E000F010F01").data(), 8); },
         WEAK_KEY_ERROR},
        {"good", [&] { return DES_CheckKey(good.data(), 8); }, 0},
        {"third part weak", [&] { return DES_CheckKey(thirdWeak.data(), 24); }, WEAK_KEY_ERROR},
        {"K1 = K2 is not weak", [&] { return DES_CheckKey(twoEqual.data(), 16); }, 0},
        {"12 bytes", [&] { return DES_CheckKey(thirdWeak.data(), 12); }, BAD_KEY_LEN_ERROR},
        {"null key", [] { return DES_CheckKey(nullptr, 8); }, NULL_ERROR},
        {"hex weak", [] { return DES_CheckKeyHex("fefefefefefefefe"); }, WEAK_KEY_ERROR},
        {"hex good", [] { return DES_CheckKeyHex("0123456789ABCDEF"); }, 0},
        {"hex 50 digits", [] { return DES_CheckKeyHex(std::string(50, '1').c_str()); }, BAD_KEY_LEN_ERROR},
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
    for (int i = 0; i < 20; ++i) {
        const int32_t h = TDEA_Init(g_key, 1, "ECB", nullptr);
        EXPECT_EQ(h & 1, 1);
        EXPECT_GT(h, 0);
        EXPECT_LT(h, 1 << 30);
    }
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
    // A handle means nothing on another thread.
    const int32_t h3 = BLF_Init(g_key, 16, 1, "ECB", nullptr);
    int32_t other = 0;
    std::thread([&] { other = BLF_Update(h3, g_out, 8); }).join();
    EXPECT_EQ(other, INVALID_HANDLE_ERROR);
    EXPECT_EQ(BLF_Update(h3, g_out, 8), 0);
}

// Kept on purpose: DES_InitHex and BLF_InitHex report a missing argument in
// the TDEA slot and latch their own stale status.
TEST(BlockFamilies, InitHexReportsMissingArgumentsInTdeaSlot) {
    EXPECT_EQ(BLF_InitHex("zz", 1, "ECB", nullptr), 0);
    EXPECT_EQ(BLF_InitError(), BAD_KEY_ERROR);
    EXPECT_EQ(BLF_InitHex(nullptr, 1, "ECB", nullptr), 0);
    EXPECT_EQ(BLF_InitError(), BAD_KEY_ERROR);
    EXPECT_EQ(TDEA_InitError(), BAD_PARAM_ERROR);
    EXPECT_EQ(API_ErrorCode(), BAD_KEY_ERROR);

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
    // CFB with a part block decrypts to the same bytes.
    for (Cipher c : {Cipher::Aes192, Cipher::Tdea, Cipher::Blf}) {
        const ByteVec k(g_key, g_key + 24), five = {1, 2, 3, 4, 5};
        const ByteVec ct = FromHex(Crypt(c, five, k, 1, "CFB", iv));
        EXPECT_EQ(Crypt(c, ct, k, 0, "CFB", iv), "0102030405");
    }
}

TEST(BlockFamilies, HexUpdateRewritesInPlace) {
    const ByteVec key(g_key, g_key + 8);
    const int32_t h = DES_Init(key.data(), 1, "CBC", g_iv);
    char text[] = "00112233445566778899aabbccddeeff";
    const std::string expected = Crypt(Cipher::Des, FromHex(text), key, 1, "CBC", ByteVec(8));
    EXPECT_EQ(DES_UpdateHex(h, text), 0);
    EXPECT_EQ(std::string(text), expected);
    char odd[] = "0011223344556677889";
    EXPECT_EQ(DES_UpdateHex(h, odd), BAD_FORMAT_ERROR);
    char part[] = "001122";
    EXPECT_EQ(DES_UpdateHex(h, part), BAD_LENGTH_ERROR);
    EXPECT_STREQ(part, "001122");
    DES_Final(h);
}

TEST(BlockFamilies, KeyEquivalences) {
    const ByteVec block = FromHex("0123456789abcdef"), k = FromHex("133457799bbcdff1");
    ByteVec k3 = k;
    k3.insert(k3.end(), k.begin(), k.end());
    k3.insert(k3.end(), k.begin(), k.end());
    // Triple DES with three equal keys is DES; parity bits play no part.
    EXPECT_EQ(Crypt(Cipher::Tdea, block, k3, 1, "ECB", {}), Crypt(Cipher::Des, block, k, 1, "ECB", {}));
    EXPECT_EQ(Crypt(Cipher::Des, block, FromHex("123556789abcdef0"), 1, "ECB", {}),
              Crypt(Cipher::Des, block, k, 1, "ECB", {}));
    // Blowfish key bytes cycle; a length of 0 uses the byte at the pointer.
    EXPECT_EQ(Crypt(Cipher::Blf, block, FromHex("01020304"), 1, "ECB", {}),
              Crypt(Cipher::Blf, block, FromHex("0102030401020304"), 1, "ECB", {}));
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
    EXPECT_EQ(BLF_Ecb(h, side.data(), 7, 1), BAD_LENGTH_ERROR);
    std::string hex = ToHex(data);
    EXPECT_EQ(BLF_EcbHex(h, hex.data(), 1), 0);
    EXPECT_EQ(hex, Crypt(Cipher::Blf, data, key, 1, "ECB", {}));
    ASSERT_EQ(BLF_Update(h, buf.data() + 8, 8), 0);
    EXPECT_EQ(UpperHex(buf), cbc);
    EXPECT_EQ(BLF_Final(h), 0);
}
