// The one-shot MAC_ calls: selection by option, the output rules of each
// branch, and the hex forms.
#include <cstring>

#include "convert/codec.h"
#include "frame/memory.h"
#include "mac/cmac.h"
#include "mac/hmac.h"
#include "mac/kmac.h"
#include "mac/mac.h"
#include "mac/poly1305.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr int32_t kLow12 = 0xFFF;
constexpr int32_t kCmacBit = 0x100;
constexpr int32_t kPolyKmacBit = 0x200;

bool ScreenInputs(const uint8_t* message, int32_t messageLength, const uint8_t* key, int32_t keyLength) {
    return messageLength >= 0 && (messageLength == 0 || message != nullptr) && key != nullptr && keyLength >= 0;
}

// The fixed-length KMAC code as hex: the whole code or nothing.
int32_t KmacHex(char* output, int32_t outputLength, const uint8_t* message, size_t messageLength,
                const uint8_t* key, size_t keyLength, int32_t low12) {
    const int32_t bytes = KmacCodeLength(low12);
    const int32_t digits = 2 * bytes;
    if (output == nullptr || outputLength == 0) return digits;
    if (outputLength < digits) return -SHORT_BUF_ERROR;
    uint8_t code[64];
    Kmac(code, uint32_t(bytes), message, messageLength, key, keyLength, "", low12 == OPT_KMAC_128 ? 128 : 256);
    HexEncodeCase(output, size_t(digits) + 1, code, size_t(bytes), true);
    SecureWipe(code, sizeof code);
    return digits;
}

// The HMAC step of both hex calls. The inner result is used as a length
// without a test of its sign; a bad nibble (-17) so yields -34, or with an
// output outputLength / 2 bytes of the (zeroed) private buffer. Kept: callers
// see this form.
int32_t HmacHex(char* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                const uint8_t* key, int32_t keyLength, int32_t options) {
    uint8_t code[64] = {};
    const int32_t length = HmacBytes(code, sizeof code, message, messageLength, key, keyLength, options);
    if (length == 0) return 0;
    int32_t result = 2 * length;
    if (output != nullptr && outputLength != 0) {
        int32_t count = uint32_t(outputLength) < uint32_t(2 * length) ? outputLength / 2 : length;
        if (count >= 0 && length > 0) {
            HexEncodeCase(output, 2 * size_t(count) + 1, code, size_t(count), true);
            result = 2 * count;
        } else if (count >= 0) {
            // More bytes than the buffer holds: every one of them is a zero.
            std::memset(output, '0', 2 * size_t(count));
            output[2 * size_t(count)] = '\0';
            result = 2 * count;
        }
        // A negative count (a negative outputLength with a bad nibble) writes
        // nothing and returns -34 as the query does.
    }
    SecureWipe(code, sizeof code);
    return result;
}

int64_t DecodeInto(MacHexBuffer* buffer, const char* text) {
    size_t textLength = std::strlen(text);
    buffer->capacity = textLength / 2;
    buffer->data = static_cast<uint8_t*>(SafeAlloc(buffer->capacity));
    int64_t n = HexDecodeStrict(buffer->data, buffer->capacity, text);
    buffer->length = n < 0 ? 0 : size_t(n);
    return n;
}
}  // namespace

int32_t HmacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                  const uint8_t* key, int32_t keyLength, int32_t options) {
    uint8_t code[64];
    int32_t length = HmacByOption(code, message, uint32_t(messageLength), key, uint32_t(keyLength), options);
    if (length < 0) return length;
    int32_t result = length;
    // The export has refused a negative outputLength; here it asks for the size.
    if (output != nullptr && outputLength > 0) {
        result = outputLength < length ? outputLength : length;
        std::memcpy(output, code, size_t(result));
    }
    SecureWipe(code, sizeof code);
    return result;
}

int32_t MacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 const uint8_t* key, int32_t keyLength, int32_t options) {
    if (outputLength < 0 || !ScreenInputs(message, messageLength, key, keyLength)) return -BAD_PARAM_ERROR;
    if ((options & kCmacBit) != 0) {
        return CmacBytes(output, outputLength, message, messageLength, key, keyLength, options);
    }
    if ((options & kPolyKmacBit) != 0) {
        const int32_t low12 = options & kLow12;
        if (low12 == OPT_MAC_POLY1305) {
            if (keyLength != 32) return -BAD_KEY_LEN_ERROR;
            return Poly1305Bytes(output, outputLength, message, size_t(messageLength), key);
        }
        const int32_t length = KmacCodeLength(low12);
        if (length == 0) return -BAD_FLAG_ERROR;
        if (output == nullptr || outputLength == 0) return length;
        // The one code of the family that is never cut.
        if (outputLength < length) return -SHORT_BUF_ERROR;
        return Kmac(output, uint32_t(length), message, size_t(messageLength), key, size_t(keyLength), "",
                    low12 == OPT_KMAC_128 ? 128 : 256);
    }
    return HmacBytes(output, outputLength, message, messageLength, key, keyLength, options);
}

int32_t MacHexFromBytes(char* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                        const uint8_t* key, int32_t keyLength, int32_t options) {
    if (!ScreenInputs(message, messageLength, key, keyLength)) return -BAD_PARAM_ERROR;
    if ((options & kCmacBit) != 0) {
        return CmacHexFromBytes(output, outputLength, message, messageLength, key, keyLength, options);
    }
    if ((options & kPolyKmacBit) != 0) {
        const int32_t low12 = options & kLow12;
        if (low12 == OPT_MAC_POLY1305) {
            if (keyLength != 32) return -BAD_KEY_LEN_ERROR;
            return Poly1305HexFromBytes(output, outputLength, message, size_t(messageLength), key);
        }
        if (KmacCodeLength(low12) == 0) return -BAD_FLAG_ERROR;
        return KmacHex(output, outputLength, message, size_t(messageLength), key, size_t(keyLength), low12);
    }
    return HmacHex(output, outputLength, message, messageLength, key, keyLength, options);
}

int32_t MacHexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex,
                      int32_t options) {
    if (messageHex == nullptr || keyHex == nullptr) return -BAD_PARAM_ERROR;
    if ((options & kCmacBit) != 0) return CmacHexFromHex(output, outputLength, messageHex, keyHex, options);
    const int32_t low12 = options & kLow12;
    const bool kmac = (options & kPolyKmacBit) != 0;
    if (kmac) {
        if (low12 == OPT_MAC_POLY1305) return Poly1305HexFromHex(output, outputLength, messageHex, keyHex);
        // Refused before anything is decoded.
        if (KmacCodeLength(low12) == 0) return -BAD_FLAG_ERROR;
    }
    MacHexBuffer key, message;
    int32_t result = MacDecodeHexPair(&key, &message, keyHex, messageHex, kmac);
    if (result != 0) return result;
    if (kmac) {
        result = KmacHex(output, outputLength, message.data, message.length, key.data, key.length, low12);
    } else {
        result = HmacHex(output, outputLength, message.data, int32_t(message.length), key.data,
                         int32_t(key.length), options);
    }
    MacReleaseHex(&message);
    MacReleaseHex(&key);
    return result;
}

int32_t MacDecodeHexPair(MacHexBuffer* key, MacHexBuffer* message, const char* keyHex, const char* messageHex,
                         bool emptyKeyAllowed) {
    if (keyHex[0] == '\0' && !emptyKeyAllowed) return -BAD_KEY_LEN_ERROR;
    // A failed decode counts as no bytes; no bytes from a text that is not
    // empty is a format error.
    DecodeInto(key, keyHex);
    if (key->length == 0 && keyHex[0] != '\0') {
        MacReleaseHex(key);
        return -BAD_FORMAT_ERROR;
    }
    DecodeInto(message, messageHex);
    if (message->length == 0 && messageHex[0] != '\0') {
        MacReleaseHex(message);
        MacReleaseHex(key);
        return -BAD_FORMAT_ERROR;
    }
    return 0;
}

void MacReleaseHex(MacHexBuffer* buffer) {
    if (buffer->data != nullptr) SafeWipeFree(buffer->data, buffer->capacity);
    buffer->data = nullptr;
    buffer->capacity = buffer->length = 0;
}

int32_t MacHexCut(char* output, int32_t outputLength, const uint8_t* code, int32_t count) {
    if (output == nullptr || outputLength < 1) return 2 * count;
    if (outputLength < 2 * count) count = outputLength / 2;
    HexEncodeCase(output, 2 * size_t(count) + 1, code, size_t(count), true);
    return 2 * count;
}
