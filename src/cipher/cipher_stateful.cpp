// Stateful CIPHER_ calls over the thread's CipherSlot.
#include "cipher/cipher_stateful.h"

#include <cstring>

#include "block/block.h"
#include "cipher/select.h"
#include "convert/codec.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

CipherSlot& Slot() { return GetContextArea()->cipher; }

inline int32_t Clamp32(int64_t n) { return n > INT32_MAX ? INT32_MAX : int32_t(n); }

}  // namespace

int32_t CipherInit(int32_t direction, const char* algorithmText, const uint8_t* key, int32_t keyLength,
                   const uint8_t* iv, int32_t ivLength, int32_t options, int32_t* reason) {
    CipherSlot& slot = Slot();
    slot.handle = 0;  // the older context is dead from here on, even if this fails
    int32_t cipher = 0, mode = 0;
    int32_t status = SelectCipher(&cipher, &mode, nullptr, algorithmText, options);
    if (status == 0) status = CheckKeyAndIv(cipher, mode, keyLength, ivLength);
    if (status != 0) {
        *reason = status;
        return 0;
    }
    // Zeroed first: the set-up's result is not examined, and a set-up that
    // stops early (null key or IV) must leave a defined context.
    WipeObject(slot.context);
    switch (cipher) {
    case OPT_CIPHER_TDEA: TdeaSetupMode(&slot.context.tdea, mode, key, direction, iv); break;
    case OPT_CIPHER_AES128:
    case OPT_CIPHER_AES192:
    case OPT_CIPHER_AES256:
        AesSetupMode(&slot.context.aes, mode, key, size_t(keyLength), direction, iv);
        break;
    default: *reason = -NOT_SUPPORTED_ERROR; return 0;
    }
    slot.algorithm = cipher;
    slot.handle = NewHandle();
    *reason = 0;
    return int32_t(slot.handle);
}

int32_t CipherInitHex(int32_t direction, const char* algorithmText, const char* keyHex, const char* ivHex,
                      int32_t options, int32_t* reason) {
    // These two leave the older context alive: they come before Init's steps.
    if (keyHex == nullptr || keyHex[0] == '\0') {
        *reason = -BAD_PARAM_ERROR;
        return 0;
    }
    if (!IsHexText(keyHex) || (ivHex != nullptr && !IsHexText(ivHex))) {
        *reason = -INVALID_DATA_ERROR;
        return 0;
    }
    // Fixed blocks: the decoder counts pairs beyond the room, so a text too
    // long shows as a wrong length. An odd count of digits decodes to -1,
    // which the length checks then refuse.
    uint8_t key[32] = {};
    uint8_t iv[32] = {};
    const int64_t keyLength = HexDecodeStrict(key, sizeof key, keyHex);
    const int64_t ivLength = ivHex == nullptr ? 0 : HexDecodeStrict(iv, sizeof iv, ivHex);
    const int32_t handle = CipherInit(direction, algorithmText, key, Clamp32(keyLength),
                                      ivHex == nullptr ? nullptr : iv, Clamp32(ivLength), options, reason);
    SecureWipe(key, sizeof key);
    SecureWipe(iv, sizeof iv);
    return handle;
}

int32_t CipherUpdate(int32_t handle, uint8_t* output, int32_t outputLength, const uint8_t* input,
                     int32_t inputLength) {
    CipherSlot& slot = Slot();
    if (!HandleMatches(slot.handle, handle)) return -INVALID_HANDLE_ERROR;
    if (output == nullptr) return -NULL_ERROR;
    if (outputLength < inputLength) return -SHORT_BUF_ERROR;
    // A negative length or a null input with data would reach the engine as
    // a huge length or a bad pointer: refused here.
    if (inputLength < 0) return -BAD_PARAM_ERROR;
    if (input == nullptr && inputLength > 0) return -NULL_ERROR;
    // The engine's status as it stands: BAD_LENGTH_ERROR stays positive.
    switch (slot.algorithm) {
    case OPT_CIPHER_TDEA: return TdeaProcess(&slot.context.tdea, output, input, size_t(inputLength));
    case OPT_CIPHER_AES128:
    case OPT_CIPHER_AES192:
    case OPT_CIPHER_AES256: return AesProcess(&slot.context.aes, output, input, size_t(inputLength));
    default: return -INTERNAL_ERROR;
    }
}

int32_t CipherUpdateHex(int32_t handle, char* outputHex, int32_t outputHexLength, const char* inputHex) {
    if (outputHex == nullptr) return -NULL_ERROR;
    if (inputHex == nullptr || inputHex[0] == '\0') {
        if (outputHexLength > 0) outputHex[0] = '\0';
        return 0;
    }
    if (!IsHexText(inputHex)) return -INVALID_DATA_ERROR;
    const size_t textLength = std::strlen(inputHex);
    if (int64_t(textLength) > int64_t(outputHexLength)) return -SHORT_BUF_ERROR;
    const size_t capacity = (textLength + 1) / 2;
    uint8_t* data = static_cast<uint8_t*>(SafeAlloc(capacity));
    const int64_t n = HexDecodeOrMinus(data, inputHex, capacity);
    // Kept: an odd number of digits decodes to -1, which reaches the
    // allocator as a size and ends the process ("malloc request is too
    // big."). Even-length text is the caller's duty.
    uint8_t* result = static_cast<uint8_t*>(SafeAlloc(size_t(n)));
    int32_t status = CipherUpdate(handle, result, int32_t(n), data, int32_t(n));
    if (status == 0) {
        if (int64_t(outputHexLength) < 2 * n) {
            status = -SHORT_BUF_ERROR;
        } else {
            HexEncodeBounded(outputHex, size_t(outputHexLength) + 1, result, size_t(n));
        }
    }
    SafeWipeFree(result, size_t(n));
    SafeWipeFree(data, capacity);
    return status;
}

int32_t CipherFinal(int32_t handle) {
    CipherSlot& slot = Slot();
    if (!HandleMatches(slot.handle, handle)) return -INVALID_HANDLE_ERROR;
    WipeObject(slot);
    return 0;
}
