// Algorithm strings through the CIPHER_ calls and mode words through the
// per-cipher calls: any text gives a defined code, and a text that names a
// cipher encrypts what its decryption then restores.
#include <algorithm>

#include "fuzz_support.h"

namespace {

const uint8_t kKey[32] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16,
                          17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32};
const uint8_t kIv[16] = {0xF0, 0xE1, 0xD2, 0xC3, 0xB4, 0xA5, 0x96, 0x87, 0x78, 0x69, 0x5A, 0x4B, 0x3C, 0x2D, 0x1E, 0x0F};
const uint8_t kPlain[20] = {'a', 'l', 'g', 'o', 'r', 'i', 't', 'h', 'm', ' ', 't', 'e', 'x', 't', 's', '!', 0, 1, 2, 3};

bool IsNameFailure(int32_t r) {
    return r == -BAD_PARAM_ERROR || r == -BAD_FLAG_ERROR || r == -BAD_MODE_ERROR || r == -BAD_KEY_LEN_ERROR ||
           r == -BAD_IV_LEN_ERROR || r == -BAD_LENGTH_ERROR;
}

void AlgorithmText(const std::string& text, int32_t flags) {
    bool parsed = false;
    for (int32_t keyLength : {16, 24, 32}) {
        for (int32_t ivLength : {8, 16}) {
            const int32_t needed = CIPHER_EncryptBytes(nullptr, 0, kPlain, sizeof kPlain, kKey, keyLength, kIv,
                                                       ivLength, text.c_str(), flags);
            if (needed < 0) {
                FUZZ_CHECK(IsNameFailure(needed));
                continue;
            }
            parsed = true;
            Exact ct{size_t(needed)};
            const int32_t written = CIPHER_EncryptBytes(ct.data(), needed, kPlain, sizeof kPlain, kKey, keyLength,
                                                        kIv, ivLength, text.c_str(), flags);
            // Unpadded ECB and CBC refuse a part block.
            if (written == -BAD_LENGTH_ERROR) continue;
            FUZZ_CHECK(written == needed);
            Exact plain{sizeof kPlain};
            FUZZ_CHECK(CIPHER_DecryptBytes(plain.data(), sizeof kPlain, ct.data(), written, kKey, keyLength, kIv,
                                           ivLength, text.c_str(), flags) == int32_t(sizeof kPlain));
            FUZZ_CHECK(std::memcmp(plain.data(), kPlain, sizeof kPlain) == 0);
        }
    }
    // The stateful calls read the same names.
    const int32_t handle = CIPHER_Init(1, text.c_str(), kKey, 16, kIv, 16, flags);
    if (handle == 0) FUZZ_CHECK(API_ErrorCode() != 0);
    else FUZZ_CHECK(CIPHER_Final(handle) == 0);
    (void)parsed;
}

void ModeWord(const std::string& text) {
    uint8_t out[32];
    const int32_t status = AES128_BytesMode(out, kPlain, 16, kKey, 1, text.c_str(), kIv);
    FUZZ_CHECK(status == 0 || status == BAD_MODE_ERROR);
    const int32_t handle = AES128_Init(kKey, 0, text.c_str(), kIv);
    FUZZ_CHECK((handle != 0) == (status == 0));
    FUZZ_CHECK(AES128_InitError() == status);
    if (handle != 0) FUZZ_CHECK(AES128_Final(handle) == 0);
    // The hex form reads the same word.
    char hex[33] = "00112233445566778899AABBCCDDEEFF";
    FUZZ_CHECK(AES128_HexMode(hex, "00112233445566778899AABBCCDDEEFF", "000102030405060708090A0B0C0D0E0F", 1,
                              text.c_str(), "000102030405060708090A0B0C0D0E0F") ==
               (text.empty() ? BAD_PARAM_ERROR : status));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t choice = r.Byte();
    const std::string text = r.Text();
    // The flags that travel beside a name; cipher bits with a name are refused.
    const int32_t flags = (choice & 1 ? OPT_PREFIX_IV : 0) | (choice & 2 ? OPT_CIPHER_AES128 : 0) |
                          (choice & 4 ? OPT_PAD_W3C : 0);
    AlgorithmText(text, flags);
    ModeWord(text);
    return 0;
}
