// File encryption for the per-cipher families and the CIPHER_File calls.
// Layout: an optional IV (OPT_PREFIX_IV, not in ECB), then the ciphertext,
// nothing else. ECB and CBC always pad on encryption (OPT_PAD_NONE and the
// default pad as PKCS#5); decryption removes the padding named in options
// unless it is OPT_PAD_NONE or OPT_LEAVE_PADDING is set. Results are positive
// codes; after any failure past the creation of the output, no output file
// is left.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr size_t kFileChunk = 4096;

int AesFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength,
                 int32_t direction, int32_t mode, const uint8_t* iv, int32_t options);
// 8 key bytes are read (24 for Triple DES).
int DesFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                 int32_t mode, const uint8_t* iv, int32_t options);
int TdeaFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                  int32_t mode, const uint8_t* iv, int32_t options);
int BlfFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength,
                 int32_t direction, int32_t mode, const uint8_t* iv, int32_t options);

// Hex key and IV, options 0. A null or empty ivHex means no IV (so a mode
// other than ECB fails in the set-up, after the output was made, which is
// then deleted); an IV must decode to exactly one block (BAD_IV_ERROR). Key:
// missing BAD_PARAM_ERROR, undecodable BAD_KEY_ERROR, wrong length
// BAD_KEY_LEN_ERROR.
int AesFileHex(const char* outputFile, const char* inputFile, const char* keyHex, size_t keyLength,
               int32_t direction, int32_t mode, const char* ivHex);
int DesFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
               int32_t mode, const char* ivHex);
// Blowfish takes any key of 1 to 56 bytes.
int BlfFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
               int32_t mode, const char* ivHex);
// Triple DES tests the file names first, refuses a missing IV outside ECB
// itself (BAD_PARAM_ERROR), and parses modeText after its own tests.
int TdeaFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
                const char* modeText, const char* ivHex);
