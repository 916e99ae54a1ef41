// DES_: single DES, style A, and the weak-key test. Weak keys are accepted
// everywhere else; DES_CheckKey is offered, never forced.
#include "block/family.h"
#include "verimond.h"

namespace {

using family::DesTraits;

// Null pointers, modeText among them, and a negative length are screened
// here; an unknown mode word goes on to the set-up, which then reports a
// missing IV before the mode.
int DesBytes(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, int32_t direction,
             const char* modeText, const uint8_t* iv) {
    if (output == nullptr || input == nullptr || key == nullptr || modeText == nullptr) return NULL_ERROR;
    if (length < 0) return BAD_PARAM_ERROR;
    return DesOneShot(output, input, length, key, iv, direction, ParseModeWord(modeText));
}

int DesFileFromModeText(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                        const char* modeText, const uint8_t* iv, int32_t options) {
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return BAD_MODE_ERROR;
    return DesFileCrypt(outputFile, inputFile, key, direction, mode, iv, options);
}

}  // namespace

extern "C" {

int32_t DES_Bytes(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                  int32_t direction) {
    EnterCall();
    return LeaveCall(DesBytes(output, input, length, key, direction, "ECB", nullptr));
}

int32_t DES_BytesMode(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                      int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    return LeaveCall(DesBytes(output, input, length, key, direction, modeText, iv));
}

int32_t DES_Hex(char* output, const char* inputHex, const char* keyHex, int32_t direction) {
    EnterCall();
    return LeaveCall(family::HexOneShot<DesTraits>(output, inputHex, keyHex, direction, 0, nullptr, 8));
}

int32_t DES_HexMode(char* output, const char* inputHex, const char* keyHex, int32_t direction,
                    const char* modeText, const char* ivHex) {
    EnterCall();
    return LeaveCall(family::HexModeOneShot<DesTraits>(output, inputHex, keyHex, direction, modeText, ivHex, 8));
}

int32_t DES_B64Mode(char* output, const char* inputB64, const char* keyB64, int32_t direction,
                    const char* modeText, const char* ivB64) {
    EnterCall();
    return LeaveCall(family::B64OneShot<DesTraits>(output, inputB64, keyB64, direction, modeText, ivB64, 8));
}

int32_t DES_FileExt(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t direction,
                    const char* modeText, const unsigned char* iv, int32_t options) {
    EnterCall();
    return LeaveCall(DesFileFromModeText(outputFile, inputFile, key, direction, modeText, iv, options));
}

int32_t DES_File(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t direction,
                 const char* modeText, const unsigned char* iv) {
    EnterCall();
    return LeaveCall(DesFileFromModeText(outputFile, inputFile, key, direction, modeText, iv, 0));
}

int32_t DES_FileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
                    const char* modeText, const char* ivHex) {
    EnterCall();
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(DesFileHex(outputFile, inputFile, keyHex, direction, mode, ivHex));
}

int32_t DES_Init(const unsigned char* key, int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    return family::Init<DesTraits>(key, 8, direction, modeText, iv);
}

int32_t DES_InitHex(const char* keyHex, int32_t direction, const char* modeText, const char* ivHex) {
    EnterCall();
    return family::InitHex<DesTraits>(keyHex, direction, modeText, ivHex);
}

int32_t DES_Update(int32_t handle, unsigned char* data, int32_t length) {
    EnterCall();
    return LeaveCall(family::Update<DesTraits>(handle, data, length));
}

int32_t DES_UpdateHex(int32_t handle, char* dataHex) {
    EnterCall();
    return LeaveCall(family::UpdateHex<DesTraits>(handle, dataHex));
}

int32_t DES_Final(int32_t handle) {
    EnterCall();
    return LeaveCall(family::Final<DesTraits>(handle));
}

int32_t DES_InitError(void) { return DesTraits::Slot().lastInitResult; }

int32_t DES_CheckKey(const unsigned char* key, int32_t keyLength) {
    EnterCall();
    return LeaveCall(DesCheckWeak(key, keyLength < 0 ? 0 : size_t(keyLength)));
}

int32_t DES_CheckKeyHex(const char* keyHex) {
    EnterCall();
    if (keyHex != nullptr && std::strlen(keyHex) > 48) return LeaveCall(BAD_KEY_LEN_ERROR);
    uint8_t key[24];
    // An undecodable text counts as no key at all.
    const int64_t count = keyHex == nullptr ? 0 : HexDecodeStrict(key, sizeof key, keyHex);
    const int status = DesCheckWeak(key, count < 0 ? 0 : size_t(count));
    SecureWipe(key, sizeof key);
    return LeaveCall(status);
}

}  // extern "C"
