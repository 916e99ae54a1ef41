// BLF_: Blowfish with keys of 0 to 56 bytes, style A, and the ECB calls on a
// live context that take their own direction.
#include "block/family.h"
#include "verimond.h"

namespace {

using family::BlfTraits;

// As DES: null pointers (modeText among them) and negative lengths are
// screened here; an unknown mode word goes on to the set-up.
int BlfBytes(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, int32_t keyLength,
             int32_t direction, const char* modeText, const uint8_t* iv) {
    if (output == nullptr || input == nullptr || key == nullptr || modeText == nullptr) return NULL_ERROR;
    if (length < 0 || keyLength < 0) return BAD_PARAM_ERROR;
    return BlfOneShot(output, input, length, key, size_t(keyLength), iv, direction, ParseModeWord(modeText));
}

int BlfEcb(int32_t handle, uint8_t* data, int32_t length, int32_t direction) {
    if (data == nullptr) return NULL_ERROR;
    if (length < 0) return BAD_PARAM_ERROR;
    auto& slot = BlfTraits::Slot();
    if (!HandleMatches(slot.handle, handle)) return INVALID_HANDLE_ERROR;
    return BlfEcbProcess(&slot.context, data, data, size_t(length), direction);
}

// A negative keyLength is not screened; the set-up refuses it as too long.
int BlfFileFromModeText(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t keyLength,
                        int32_t direction, const char* modeText, const uint8_t* iv, int32_t options) {
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return BAD_MODE_ERROR;
    return BlfFileCrypt(outputFile, inputFile, key, size_t(int64_t(keyLength)), direction, mode, iv, options);
}

}  // namespace

extern "C" {

int32_t BLF_Bytes(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                  int32_t keyLength, int32_t direction) {
    EnterCall();
    return LeaveCall(BlfBytes(output, input, length, key, keyLength, direction, "ECB", nullptr));
}

int32_t BLF_BytesMode(unsigned char* output, const unsigned char* input, int32_t length, const unsigned char* key,
                      int32_t keyLength, int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    return LeaveCall(BlfBytes(output, input, length, key, keyLength, direction, modeText, iv));
}

int32_t BLF_Hex(char* output, const char* inputHex, const char* keyHex, int32_t direction) {
    EnterCall();
    return LeaveCall(family::HexOneShot<BlfTraits>(output, inputHex, keyHex, direction, 0, nullptr, 0));
}

int32_t BLF_HexMode(char* output, const char* inputHex, const char* keyHex, int32_t direction,
                    const char* modeText, const char* ivHex) {
    EnterCall();
    return LeaveCall(family::HexModeOneShot<BlfTraits>(output, inputHex, keyHex, direction, modeText, ivHex, 0));
}

int32_t BLF_B64Mode(char* output, const char* inputB64, const char* keyB64, int32_t direction,
                    const char* modeText, const char* ivB64) {
    EnterCall();
    return LeaveCall(family::B64OneShot<BlfTraits>(output, inputB64, keyB64, direction, modeText, ivB64, 0));
}

int32_t BLF_FileExt(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t keyLength,
                    int32_t direction, const char* modeText, const unsigned char* iv, int32_t options) {
    EnterCall();
    return LeaveCall(BlfFileFromModeText(outputFile, inputFile, key, keyLength, direction, modeText, iv, options));
}

int32_t BLF_File(const char* outputFile, const char* inputFile, const unsigned char* key, int32_t keyLength,
                 int32_t direction, const char* modeText, const unsigned char* iv) {
    EnterCall();
    return LeaveCall(BlfFileFromModeText(outputFile, inputFile, key, keyLength, direction, modeText, iv, 0));
}

int32_t BLF_FileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
                    const char* modeText, const char* ivHex) {
    EnterCall();
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return LeaveCall(BAD_MODE_ERROR);
    return LeaveCall(BlfFileHex(outputFile, inputFile, keyHex, direction, mode, ivHex));
}

int32_t BLF_Init(const unsigned char* key, int32_t keyLength, int32_t direction, const char* modeText,
                 const unsigned char* iv) {
    EnterCall();
    return family::Init<BlfTraits>(key, keyLength, direction, modeText, iv);
}

int32_t BLF_InitHex(const char* keyHex, int32_t direction, const char* modeText, const char* ivHex) {
    EnterCall();
    return family::InitHex<BlfTraits>(keyHex, direction, modeText, ivHex);
}

int32_t BLF_Update(int32_t handle, unsigned char* data, int32_t length) {
    EnterCall();
    return LeaveCall(family::Update<BlfTraits>(handle, data, length));
}

int32_t BLF_UpdateHex(int32_t handle, char* dataHex) {
    EnterCall();
    return LeaveCall(family::UpdateHex<BlfTraits>(handle, dataHex));
}

int32_t BLF_Final(int32_t handle) {
    EnterCall();
    return LeaveCall(family::Final<BlfTraits>(handle));
}

int32_t BLF_InitError(void) { return BlfTraits::Slot().lastInitResult; }

int32_t BLF_Ecb(int32_t handle, unsigned char* data, int32_t length, int32_t direction) {
    EnterCall();
    return LeaveCall(BlfEcb(handle, data, length, direction));
}

// The handle is tested only after the text has been decoded.
int32_t BLF_EcbHex(int32_t handle, char* dataHex, int32_t direction) {
    EnterCall();
    if (family::IsEmpty(dataHex)) return LeaveCall(BAD_PARAM_ERROR);
    return LeaveCall(family::RewriteHex(dataHex, [handle, direction](uint8_t* block, size_t n) {
        return BlfEcb(handle, block, int32_t(n), direction);
    }));
}

}  // extern "C"
