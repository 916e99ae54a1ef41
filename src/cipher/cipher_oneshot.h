// The one-shot CIPHER_ calls for Triple DES and AES: whole messages as bytes
// or hex, and whole files, with the cipher, mode and padding chosen by an
// algorithm string or by option bits (select.h). They pad (ECB and CBC) and
// carry the IV in front of the data on request (OPT_PREFIX_IV).
//
// All results here are style B, a length or minus a code, except the file
// calls, which hand on the positive codes of the file routine.
#pragma once
#include <cstdint>

// The one door to the engines: SelectCipher on options (no text), then the
// Triple DES or AES one-shot over length bytes. Positive codes, 0 success;
// BAD_FLAG_ERROR for a cipher outside the four.
int CipherBlockCrypt(int32_t direction, uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key,
                     const uint8_t* iv, int32_t options);

// The byte rules once the cipher is chosen and key and IV lengths passed;
// options must name the cipher in its bits. Encryption: a null output or
// outputLength < 1 asks for the total (prefix included) without looking at
// input or key. Decryption: a padded decryption runs in full also for a
// query, so the length it gives is exact and a bad key or padding shows.
int32_t CipherEncryptCore(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                          const uint8_t* key, const uint8_t* iv, int32_t options);
int32_t CipherDecryptCore(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                          const uint8_t* key, const uint8_t* iv, int32_t options);

// CIPHER_EncryptBytes and CIPHER_DecryptBytes below the frame: selection,
// the key and IV length checks (decryption with OPT_PREFIX_IV checks the key
// alone, the IV coming from the data), then the core.
int32_t CipherEncryptBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                           const uint8_t* key, int32_t keyLength, const uint8_t* iv, int32_t ivLength,
                           const char* algorithmText, int32_t options);
int32_t CipherDecryptBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                           const uint8_t* key, int32_t keyLength, const uint8_t* iv, int32_t ivLength,
                           const char* algorithmText, int32_t options);

// The hex forms, direction non-zero to encrypt. A query answers twice the
// byte query's result, also when that is negative (so -66 for a wrong key
// length). The result text is written only for a positive result.
int32_t CipherHexCore(int32_t direction, char* outputHex, int32_t outputHexLength, const char* inputHex,
                      const char* keyHex, const char* ivHex, const char* algorithmText, int32_t options);

// The file calls: a negative code for a failure of the selection or of the
// key and IV lengths, else the positive status of the file routine.
int32_t CipherFileEncrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t keyLength,
                          const uint8_t* iv, int32_t ivLength, const char* algorithmText, int32_t options);
int32_t CipherFileDecrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t keyLength,
                          const uint8_t* iv, int32_t ivLength, const char* algorithmText, int32_t options);
