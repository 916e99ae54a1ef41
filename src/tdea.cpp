// TDEA_: Triple DES with a 24-byte key K1 K2 K3, style A.
#include "block/family.h"
#include "verimond.h"

namespace {

using family::TdeaTraits;

int TdeaFileFromModeText(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                         const char* modeText, const uint8_t* iv, int32_t options) {
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return BAD_MODE_ERROR;
    return TdeaFileCrypt(outputFile, inputFile, key, direction, mode, iv, options);
}

}  // namespace

extern "C" {

// A negative length is not screened here; the one-shot refuses it with
// BAD_LENGTH_ERROR after the set-up.
int32_t TDEA_Bytes(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                   int32_t direction) {
    EnterCall();
    return LeaveCall(TdeaOneShot(output, input, length, key, nullptr, direction, 0));
}

int32_t TDEA_BytesMode(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                       int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    if (modeText == nullptr) return LeaveCall(NULL_ERROR);
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(TdeaOneShot(output, input, length, key, iv, direction, mode));
}

int32_t TDEA_Hex(char* output, const char* inputHex, const char* keyHex, int32_t direction) {
    EnterCall();
    return LeaveCall(family::HexOneShot<TdeaTraits>(output, inputHex, keyHex, direction, 0, nullptr, 24));
}

int32_t TDEA_HexMode(char* output, const char* inputHex, const char* keyHex, int32_t direction,
                     const char* modeText, const char* ivHex) {
    EnterCall();
    return LeaveCall(
        family::HexModeOneShot<TdeaTraits>(output, inputHex, keyHex, direction, modeText, ivHex, 24));
}

int32_t TDEA_B64Mode(char* output, const char* inputB64, const char* keyB64, int32_t direction,
                     const char* modeText, const char* ivB64) {
    EnterCall();
    return LeaveCall(family::B64OneShot<TdeaTraits>(output, inputB64, keyB64, direction, modeText, ivB64, 24));
}

int32_t TDEA_FileExt(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t direction,
                     const char* modeText, const unsigned char* iv, int32_t options) {
    EnterCall();
    return LeaveCall(TdeaFileFromModeText(outputFile, inputFile, key, direction, modeText, iv, options));
}

int32_t TDEA_File(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t direction,
                  const char* modeText, const unsigned char* iv) {
    EnterCall();
    return LeaveCall(TdeaFileFromModeText(outputFile, inputFile, key, direction, modeText, iv, 0));
}

// Parses modeText itself, after its tests of names, IV and key.
int32_t TDEA_FileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
                     const char* modeText, const char* ivHex) {
    EnterCall();
    return LeaveCall(TdeaFileHex(outputFile, inputFile, keyHex, direction, modeText, ivHex));
}

int32_t TDEA_Init(const unsigned char* key, int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    return family::Init<TdeaTraits>(key, 24, direction, modeText, iv);
}

int32_t TDEA_InitHex(const char* keyHex, int32_t direction, const char* modeText, const char* ivHex) {
    EnterCall();
    return family::InitHex<TdeaTraits>(keyHex, direction, modeText, ivHex);
}

int32_t TDEA_Update(int32_t handle, unsigned char* data, int32_t length) {
    EnterCall();
    return LeaveCall(family::Update<TdeaTraits>(handle, data, length));
}

int32_t TDEA_UpdateHex(int32_t handle, char* dataHex) {
    EnterCall();
    return LeaveCall(family::UpdateHex<TdeaTraits>(handle, dataHex));
}

int32_t TDEA_Final(int32_t handle) {
    EnterCall();
    return LeaveCall(family::Final<TdeaTraits>(handle));
}

int32_t TDEA_InitError(void) { return TdeaTraits::Slot().lastInitResult; }

}  // extern "C"
