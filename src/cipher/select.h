// Choice of cipher, mode and padding: the three-letter mode words of the
// per-cipher families, the algorithm strings and option bits of the CIPHER_
// calls, and the small functions that read an option word.
#pragma once
#include <cstdint>

// Option-word fields.
constexpr int32_t kCipherMask = 0xF0;
constexpr int32_t kModeMask = 0xF00;
constexpr int32_t kPaddingMask = 0xF0000;
constexpr int32_t kSelectionMask = 0xF0FF0;

// The first three characters, case-free: "ECB" 0, "CBC" 1, "CFB" 2, "OFB" 3,
// "CTR" 4; anything else, a null text included, -1. The rest is never read.
int ParseModeWord(const char* text);
// "aes128/cbc/pkcs5" and the like: cipher, then optionally mode, then
// optionally padding; separators and case do not count. The selection word,
// or -1.
int32_t ParseAlgorithmString(const char* text);
// Exactly one of algorithmText and the cipher bits of optionWord names the
// cipher. 0, or -BAD_FLAG_ERROR, -BAD_PARAM_ERROR, -BAD_MODE_ERROR (then
// engineMode is -1). options may be null; it receives the flags of
// optionWord with the selection fields of the choice.
int32_t SelectCipher(int32_t* cipher, int32_t* engineMode, int32_t* options, const char* algorithmText,
                     int32_t optionWord);
// 8 for Triple DES, 16 for the AES values, else -1.
int32_t CipherBlockSize(int32_t cipher);
// The padding encryption adds and decryption removes: 0 for none (always in
// CFB, OFB, CTR, and for OPT_PAD_NONE or an unknown value), PKCS#5 for the
// default.
int32_t EffectivePadding(int32_t options);
// 0, or -BAD_KEY_LEN_ERROR, -BAD_IV_LEN_ERROR (modes other than ECB),
// -INTERNAL_ERROR for a cipher outside the four.
int32_t CheckKeyAndIv(int32_t cipher, int32_t engineMode, int32_t keyLength, int32_t ivLength);
// The key length of a cipher value, or -1.
int32_t CipherKeyLength(int32_t cipher);
