// The operations shared by the per-cipher exported families (AES128_ ...
// BLF_): hex and Base64 one-shots, Init/InitHex/Update/UpdateHex/Final over
// the thread's slot. Each family supplies a traits struct; the differences
// the families keep on purpose are traits members, named where they matter.
// Results are positive codes (style A); Init calls give a handle or 0.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "block/block.h"
#include "cipher/select.h"
#include "convert/codec.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace family {

struct AesTraits {
    using Context = AesContext;
    static constexpr size_t kBlock = 16;
    static constexpr size_t kKeyCapacity = 32;
    // A missing argument of the Base64 one-shot.
    static constexpr int kB64MissingCode = BAD_PARAM_ERROR;
    // InitHex failures of the argument test or a missing IV go to this
    // family's own slot.
    static constexpr bool kInitHexQuirk = false;
    static AesSlot& Slot() { return GetContextArea()->aes; }
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                     const uint8_t* iv) {
        return AesSetupMode(c, mode, key, keyLength, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return AesProcess(c, out, in, n); }
    static void Wipe(Context* c) { AesWipeContext(c); }
    static int OneShot(uint8_t* out, const uint8_t* in, int32_t n, const uint8_t* key, size_t keyLength,
                       const uint8_t* iv, int32_t direction, int32_t mode) {
        return AesOneShot(out, in, n, key, int(keyLength * 8), iv, direction, mode);
    }
    // Code for a key decoded by a one-shot, given the family's key length.
    static int OneShotKeyCode(int64_t count, size_t keyLength) {
        return count == int64_t(keyLength) ? 0 : BAD_KEY_LEN_ERROR;
    }
    // InitHex takes 16, 24 or 32 bytes under every AES name; the set-up
    // tells the lengths apart.
    static int InitHexKeyCode(int64_t) { return 0; }
};

struct DesTraits {
    using Context = DesContext;
    static constexpr size_t kBlock = 8;
    static constexpr size_t kKeyCapacity = 8;
    static constexpr int kB64MissingCode = NULL_ERROR;
    // Kept: DES_InitHex reports those failures in the TDEA slot.
    static constexpr bool kInitHexQuirk = true;
    static DesSlot& Slot() { return GetContextArea()->des; }
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t, int32_t direction, const uint8_t* iv) {
        return DesSetupMode(c, mode, key, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return DesProcess(c, out, in, n); }
    static void Wipe(Context* c) { DesWipeContext(c); }
    static int OneShot(uint8_t* out, const uint8_t* in, int32_t n, const uint8_t* key, size_t, const uint8_t* iv,
                       int32_t direction, int32_t mode) {
        return DesOneShot(out, in, n, key, iv, direction, mode);
    }
    static int OneShotKeyCode(int64_t count, size_t) { return count == 8 ? 0 : BAD_KEY_LEN_ERROR; }
    static int InitHexKeyCode(int64_t count) { return count == 8 ? 0 : BAD_KEY_LEN_ERROR; }
};

struct TdeaTraits {
    using Context = TdeaContext;
    static constexpr size_t kBlock = 8;
    static constexpr size_t kKeyCapacity = 24;
    static constexpr int kB64MissingCode = NULL_ERROR;
    static constexpr bool kInitHexQuirk = false;
    static TdeaSlot& Slot() { return GetContextArea()->tdea; }
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t, int32_t direction, const uint8_t* iv) {
        return TdeaSetupMode(c, mode, key, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return TdeaProcess(c, out, in, n); }
    static void Wipe(Context* c) { TdeaWipeContext(c); }
    static int OneShot(uint8_t* out, const uint8_t* in, int32_t n, const uint8_t* key, size_t, const uint8_t* iv,
                       int32_t direction, int32_t mode) {
        return TdeaOneShot(out, in, n, key, iv, direction, mode);
    }
    static int OneShotKeyCode(int64_t count, size_t) { return count == 24 ? 0 : BAD_KEY_LEN_ERROR; }
    static int InitHexKeyCode(int64_t count) { return count == 24 ? 0 : BAD_KEY_LEN_ERROR; }
};

struct BlfTraits {
    using Context = BlfContext;
    static constexpr size_t kBlock = 8;
    static constexpr size_t kKeyCapacity = kBlfMaxKeyLength;
    static constexpr int kB64MissingCode = NULL_ERROR;
    // Kept: BLF_InitHex reports those failures in the TDEA slot.
    static constexpr bool kInitHexQuirk = true;
    static BlfSlot& Slot() { return GetContextArea()->blf; }
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                     const uint8_t* iv) {
        return BlfSetupMode(c, mode, key, keyLength, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return BlfProcess(c, out, in, n); }
    static void Wipe(Context* c) { BlfWipeContext(c); }
    static int OneShot(uint8_t* out, const uint8_t* in, int32_t n, const uint8_t* key, size_t keyLength,
                       const uint8_t* iv, int32_t direction, int32_t mode) {
        return BlfOneShot(out, in, n, key, keyLength, iv, direction, mode);
    }
    // Text forms of a Blowfish key refuse 0 bytes.
    static int OneShotKeyCode(int64_t count, size_t) {
        if (count == 0) return BAD_KEY_ERROR;
        return count > int64_t(kBlfMaxKeyLength) ? BAD_KEY_LEN_ERROR : 0;
    }
    static int InitHexKeyCode(int64_t) { return 0; }
};

inline bool IsEmpty(const char* text) { return text == nullptr || text[0] == '\0'; }

// The hex one-shot after the mode word: hex in, hex of the same length out,
// written only on success. keyLength is the family's (ignored by Blowfish).
template <class T>
int HexOneShot(char* output, const char* inputHex, const char* keyHex, int32_t direction, int32_t mode,
               const char* ivHex, size_t keyLength) {
    constexpr size_t B = T::kBlock;
    if (output == nullptr || IsEmpty(inputHex) || IsEmpty(keyHex)) return BAD_PARAM_ERROR;
    uint8_t iv[B] = {};
    if (mode != 0 && (IsEmpty(ivHex) || HexDecodeOrZero(iv, ivHex, B) != int64_t(B))) {
        SecureWipe(iv, B);
        return BAD_IV_ERROR;
    }
    const size_t textLength = std::strlen(inputHex);
    if (textLength < 2) return BAD_LENGTH_ERROR;
    const size_t n = textLength / 2;
    if (n > size_t(INT32_MAX)) return BAD_LENGTH_ERROR;
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(n));
    uint8_t key[T::kKeyCapacity] = {};
    int status = 0;
    if (HexDecodeOrZero(block, inputHex, n) == 0) {
        status = BAD_FORMAT_ERROR;
    } else {
        const int64_t keyCount = HexDecodeOrZero(key, keyHex, sizeof key);
        status = T::OneShotKeyCode(keyCount, keyLength);
        if (status == 0) {
            status = T::OneShot(block, block, int32_t(n), key, size_t(keyCount), mode != 0 ? iv : nullptr,
                                direction, mode);
            if (status == 0) HexEncodeUpper(output, block, n);
        }
    }
    SecureWipe(key, sizeof key);
    SecureWipe(iv, B);
    SafeWipeFree(block, n);
    return status;
}

// The hex one-shot from a mode word: a missing word is BAD_PARAM_ERROR, an
// unknown one BAD_MODE_ERROR.
template <class T>
int HexModeOneShot(char* output, const char* inputHex, const char* keyHex, int32_t direction, const char* modeText,
                   const char* ivHex, size_t keyLength) {
    if (IsEmpty(modeText)) return BAD_PARAM_ERROR;
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return BAD_MODE_ERROR;
    return HexOneShot<T>(output, inputHex, keyHex, direction, mode, ivHex, keyLength);
}

// The Base64 one-shot: data, key and IV in Base64; output capacity is the
// input's text length plus its NUL.
template <class T>
int B64OneShot(char* output, const char* inputB64, const char* keyB64, int32_t direction, const char* modeText,
               const char* ivB64, size_t keyLength) {
    constexpr size_t B = T::kBlock;
    if (output == nullptr || IsEmpty(inputB64) || IsEmpty(keyB64) || IsEmpty(modeText)) return T::kB64MissingCode;
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return BAD_MODE_ERROR;
    // Key and IV get one spare group of room, so that a text too long shows
    // as a wrong length rather than being cut to size.
    uint8_t iv[B + 3] = {};
    if (mode != 0 && (IsEmpty(ivB64) || Base64DecodeLoose(iv, sizeof iv, ivB64) != B)) {
        SecureWipe(iv, sizeof iv);
        return BAD_IV_ERROR;
    }
    const size_t textLength = std::strlen(inputB64);
    const size_t capacity = (textLength + 3) / 4 * 3 + 1;
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(capacity));
    uint8_t key[T::kKeyCapacity + 3] = {};
    int status = 0;
    const size_t n = Base64DecodeLoose(block, capacity, inputB64);
    if (n == 0) {
        status = BAD_FORMAT_ERROR;
    } else if (n > size_t(INT32_MAX)) {
        status = BAD_LENGTH_ERROR;
    } else {
        const size_t keyCount = Base64DecodeLoose(key, sizeof key, keyB64);
        status = T::OneShotKeyCode(int64_t(keyCount), keyLength);
        if (status == 0) {
            status = T::OneShot(block, block, int32_t(n), key, keyCount, mode != 0 ? iv : nullptr, direction,
                                ParseModeWord(modeText));
            if (status == 0) Base64Encode(output, textLength + 1, block, n);
        }
    }
    SecureWipe(key, sizeof key);
    SecureWipe(iv, sizeof iv);
    SafeWipeFree(block, capacity);
    return status;
}

// Ends an Init that failed: the code stays in lastInitResult, the context is
// wiped and the latch gets the code.
template <class T>
int32_t FailInit(int code) {
    auto& slot = T::Slot();
    slot.lastInitResult = code;
    T::Wipe(&slot.context);
    LeaveCall(code);
    return 0;
}

template <class T>
int32_t OpenSlot(int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction, const uint8_t* iv) {
    auto& slot = T::Slot();
    const int code = T::Setup(&slot.context, mode, key, keyLength, direction, iv);
    if (code != 0) return FailInit<T>(code);
    slot.lastInitResult = 0;
    slot.handle = NewHandle();
    return int32_t(slot.handle);
}

// Init with a key in bytes. keyLength is the family's fixed length, or the
// caller's for Blowfish, where a negative value is BAD_PARAM_ERROR.
template <class T>
int32_t Init(const uint8_t* key, int32_t keyLength, int32_t direction, const char* modeText, const uint8_t* iv) {
    T::Slot().handle = 0;  // the old context is dead from here on
    if (key == nullptr) return FailInit<T>(BAD_KEY_ERROR);
    if (keyLength < 0) return FailInit<T>(BAD_PARAM_ERROR);
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return FailInit<T>(BAD_MODE_ERROR);
    if (mode != 0 && iv == nullptr) return FailInit<T>(BAD_IV_ERROR);
    return OpenSlot<T>(mode, key, size_t(keyLength), direction, iv);
}

// Init with hex key and IV; the key length comes from the text.
template <class T>
int32_t InitHex(const char* keyHex, int32_t direction, const char* modeText, const char* ivHex) {
    constexpr size_t B = T::kBlock;
    auto& slot = T::Slot();
    slot.handle = 0;
    // Kept on purpose: DES and Blowfish put these two failures in the TDEA
    // slot and hand the latch their own earlier result.
    auto quirkFail = [&slot](int code) -> int32_t {
        if (T::kInitHexQuirk) {
            T::Wipe(&slot.context);
            GetContextArea()->tdea.lastInitResult = code;
            LeaveCall(slot.lastInitResult);
            return 0;
        }
        return FailInit<T>(code);
    };
    if (IsEmpty(keyHex) || IsEmpty(modeText)) return quirkFail(BAD_PARAM_ERROR);
    const int mode = ParseModeWord(modeText);
    if (mode < 0) return FailInit<T>(BAD_MODE_ERROR);
    uint8_t iv[B] = {};
    if (mode != 0) {
        if (IsEmpty(ivHex)) return quirkFail(BAD_IV_ERROR);
        if (HexDecodeOrZero(iv, ivHex, B) != int64_t(B)) {
            SecureWipe(iv, B);
            return FailInit<T>(BAD_IV_ERROR);
        }
    }
    uint8_t key[T::kKeyCapacity] = {};
    const int64_t count = HexDecodeOrZero(key, keyHex, sizeof key);
    int code = 0;
    if (count == 0) {
        code = BAD_KEY_ERROR;
    } else if (count > int64_t(sizeof key)) {
        code = BAD_KEY_LEN_ERROR;
    } else {
        code = T::InitHexKeyCode(count);
    }
    int32_t result = code != 0 ? FailInit<T>(code)
                               : OpenSlot<T>(mode, key, size_t(count), direction, mode != 0 ? iv : nullptr);
    SecureWipe(key, sizeof key);
    SecureWipe(iv, B);
    return result;
}

template <class T>
int Update(int32_t handle, uint8_t* data, int32_t length) {
    if (data == nullptr) return NULL_ERROR;
    if (length < 0) return BAD_PARAM_ERROR;
    auto& slot = T::Slot();
    if (!HandleMatches(slot.handle, handle)) return INVALID_HANDLE_ERROR;
    return T::Process(&slot.context, data, data, size_t(length));
}

// Decodes dataHex, runs op on the bytes, and on success writes the result
// back over dataHex (same length). The handle is tested by op.
template <class Op>
int RewriteHex(char* dataHex, Op op) {
    const size_t n = std::strlen(dataHex) / 2;
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(n));
    int status;
    if (HexDecodeOrZero(block, dataHex, n) <= 0) {
        status = BAD_FORMAT_ERROR;
    } else {
        status = op(block, n);
        if (status == 0) HexEncodeUpper(dataHex, block, n);
    }
    SafeWipeFree(block, n);
    return status;
}

template <class T>
int UpdateHex(int32_t handle, char* dataHex) {
    if (IsEmpty(dataHex)) return BAD_PARAM_ERROR;
    auto& slot = T::Slot();
    if (!HandleMatches(slot.handle, handle)) return INVALID_HANDLE_ERROR;
    return RewriteHex(dataHex, [&slot](uint8_t* block, size_t n) { return T::Process(&slot.context, block, block, n); });
}

template <class T>
int Final(int32_t handle) {
    auto& slot = T::Slot();
    if (!HandleMatches(slot.handle, handle)) return INVALID_HANDLE_ERROR;
    T::Wipe(&slot.context);
    slot.handle = 0;  // lastInitResult stays
    return 0;
}

}  // namespace family
