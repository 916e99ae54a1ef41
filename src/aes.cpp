// AES128_, AES192_, AES256_: AES by key size, style A. InitHex, Update,
// UpdateHex, Final and InitError are one entry under all three names, over
// the one AES slot of the thread.
#include "block/family.h"
#include "verimond.h"

namespace {

using family::AesTraits;

int32_t AesBytesMode(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, int keyBits,
                     int32_t direction, const char* modeText, const uint8_t* iv) {
    EnterCall();
    if (modeText == nullptr) return LeaveCall(NULL_ERROR);
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(AesOneShot(output, input, length, key, keyBits, iv, direction, mode));
}

int32_t AesHexMode(char* output, const char* inputHex, const char* keyHex, int32_t direction, const char* modeText,
                   const char* ivHex, size_t keyLength) {
    EnterCall();
    return LeaveCall(
        family::HexModeOneShot<AesTraits>(output, inputHex, keyHex, direction, modeText, ivHex, keyLength));
}

int32_t AesFileExt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength,
                   int32_t direction, const char* modeText, const uint8_t* iv, int32_t options) {
    EnterCall();
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(AesFileCrypt(outputFile, inputFile, key, keyLength, direction, mode, iv, options));
}

int32_t AesFileHexExport(const char* outputFile, const char* inputFile, const char* keyHex, size_t keyLength,
                         int32_t direction, const char* modeText, const char* ivHex) {
    EnterCall();
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(AesFileHex(outputFile, inputFile, keyHex, keyLength, direction, mode, ivHex));
}

}  // namespace

// The calls that differ by key size only in the key length they pass.
#define VERIMOND_AES_FAMILY(PREFIX, KEY_BYTES)                                                                     \
    int32_t PREFIX##_Bytes(unsigned char* output, const unsigned char* input, int32_t length,                     \
                           const unsigned char* key, int32_t direction) {                                         \
        return AesBytesMode(output, input, length, key, KEY_BYTES * 8, direction, "ECB", nullptr);                 \
    }                                                                                                              \
    int32_t PREFIX##_BytesMode(unsigned char* output, const unsigned char* input, int32_t length,                 \
                               const unsigned char* key, int32_t direction, const char* modeText,                 \
                               const unsigned char* iv) {                                                         \
        return AesBytesMode(output, input, length, key, KEY_BYTES * 8, direction, modeText, iv);                   \
    }                                                                                                              \
    int32_t PREFIX##_Hex(char* output, const char* inputHex, const char* keyHex, int32_t direction) {             \
        return AesHexMode(output, inputHex, keyHex, direction, "ECB", nullptr, KEY_BYTES);                         \
    }                                                                                                              \
    int32_t PREFIX##_HexMode(char* output, const char* inputHex, const char* keyHex, int32_t direction,           \
                             const char* modeText, const char* ivHex) {                                           \
        return AesHexMode(output, inputHex, keyHex, direction, modeText, ivHex, KEY_BYTES);                        \
    }                                                                                                              \
    int32_t PREFIX##_B64Mode(char* output, const char* inputB64, const char* keyB64, int32_t direction,           \
                             const char* modeText, const char* ivB64) {                                           \
        EnterCall();                                                                                               \
        return LeaveCall(                                                                                          \
            family::B64OneShot<AesTraits>(output, inputB64, keyB64, direction, modeText, ivB64, KEY_BYTES));        \
    }                                                                                                              \
    int32_t PREFIX##_File(const char* outputFile, const char* inputFile, const unsigned char* key,                \
                          int32_t direction, const char* modeText, const unsigned char* iv) {                     \
        return AesFileExt(outputFile, inputFile, key, KEY_BYTES, direction, modeText, iv, 0);                      \
    }                                                                                                              \
    int32_t PREFIX##_FileExt(const char* outputFile, const char* inputFile, const unsigned char* key,             \
                             int32_t direction, const char* modeText, const unsigned char* iv, int32_t options) { \
        return AesFileExt(outputFile, inputFile, key, KEY_BYTES, direction, modeText, iv, options);                \
    }                                                                                                              \
    int32_t PREFIX##_FileHex(const char* outputFile, const char* inputFile, const char* keyHex,                   \
                             int32_t direction, const char* modeText, const char* ivHex) {                        \
        return AesFileHexExport(outputFile, inputFile, keyHex, KEY_BYTES, direction, modeText, ivHex);             \
    }                                                                                                              \
    int32_t PREFIX##_Init(const unsigned char* key, int32_t direction, const char* modeText,                      \
                          const unsigned char* iv) {                                                              \
        EnterCall();                                                                                               \
        return family::Init<AesTraits>(key, KEY_BYTES, direction, modeText, iv);                                  \
    }

extern "C" {

VERIMOND_AES_FAMILY(AES128, 16)
VERIMOND_AES_FAMILY(AES192, 24)
VERIMOND_AES_FAMILY(AES256, 32)

int32_t AES128_InitHex(const char* keyHex, int32_t direction, const char* modeText, const char* ivHex) {
    EnterCall();
    return family::InitHex<AesTraits>(keyHex, direction, modeText, ivHex);
}

int32_t AES128_Update(int32_t handle, unsigned char* data, int32_t length) {
    EnterCall();
    return LeaveCall(family::Update<AesTraits>(handle, data, length));
}

int32_t AES128_UpdateHex(int32_t handle, char* dataHex) {
    EnterCall();
    return LeaveCall(family::UpdateHex<AesTraits>(handle, dataHex));
}

int32_t AES128_Final(int32_t handle) {
    EnterCall();
    return LeaveCall(family::Final<AesTraits>(handle));
}

// No frame: the latch stays as it was.
int32_t AES128_InitError(void) { return AesTraits::Slot().lastInitResult; }

// The other two names are the same entries.
int32_t AES192_InitHex(const char*, int32_t, const char*, const char*) __attribute__((alias("AES128_InitHex")));
int32_t AES256_InitHex(const char*, int32_t, const char*, const char*) __attribute__((alias("AES128_InitHex")));
int32_t AES192_Update(int32_t, unsigned char*, int32_t) __attribute__((alias("AES128_Update")));
int32_t AES256_Update(int32_t, unsigned char*, int32_t) __attribute__((alias("AES128_Update")));
int32_t AES192_UpdateHex(int32_t, char*) __attribute__((alias("AES128_UpdateHex")));
int32_t AES256_UpdateHex(int32_t, char*) __attribute__((alias("AES128_UpdateHex")));
int32_t AES192_Final(int32_t) __attribute__((alias("AES128_Final")));
int32_t AES256_Final(int32_t) __attribute__((alias("AES128_Final")));
int32_t AES192_InitError(void) __attribute__((alias("AES128_InitError")));
int32_t AES256_InitError(void) __attribute__((alias("AES128_InitError")));

}  // extern "C"
