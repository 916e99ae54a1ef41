// Block padding. PadCheck is the guard against padding-oracle timing: its
// path and memory accesses depend only on the lengths, never on the bytes.
#include "block/padding.h"

#include <cstring>

#include "util/ct.h"
#include "verimond.h"

namespace {

constexpr int32_t kPaddingMask = 0xF0000;

inline bool IsBlockLength(int32_t blockLength) { return blockLength == 8 || blockLength == 16; }

// A hex pair read as a plain number: digits are taken while they last, with
// no error for others (UnpadHex does not screen the text it keeps).
uint8_t PlainHexPair(const char* p) {
    uint32_t v = 0;
    for (int i = 0; i < 2; ++i) {
        const char c = p[i];
        uint32_t d;
        if (c >= '0' && c <= '9') {
            d = uint32_t(c - '0');
        } else if (c >= 'a' && c <= 'f') {
            d = uint32_t(c - 'a' + 10);
        } else if (c >= 'A' && c <= 'F') {
            d = uint32_t(c - 'A' + 10);
        } else {
            break;
        }
        v = v * 16 + d;
    }
    return uint8_t(v);
}

}  // namespace

void PadFill(uint8_t* target, size_t count, int32_t options) {
    if (count == 0) return;
    switch (options & kPaddingMask) {
    case OPT_PAD_ONEANDZEROES:
        target[0] = 0x80;
        std::memset(target + 1, 0, count - 1);
        break;
    case OPT_PAD_ANSIX923:
        std::memset(target, 0, count - 1);
        target[count - 1] = uint8_t(count);
        break;
    default:
        std::memset(target, int(count), count);
        break;
    }
}

int32_t PadCheck(const uint8_t* data, size_t length, size_t blockLength, int32_t options) {
    if (length < blockLength || blockLength == 0) return -BAD_LENGTH_ERROR;
    const uint8_t* last = data + (length - blockLength);
    const int32_t scheme = options & kPaddingMask;
    const uint32_t size = uint32_t(blockLength);
    uint32_t bad = 0;
    uint32_t count = 0;
    if (scheme == OPT_PAD_ONEANDZEROES) {
        // searching stays all ones until the 0x80 is met, walking from the end.
        uint32_t searching = ~0u;
        for (uint32_t d = 0; d < size; ++d) {
            const uint32_t b = last[size - 1 - d];
            const uint32_t isMarker = CtMaskEq(b, 0x80);
            count += searching & 1;
            bad |= searching & ~CtMaskZero(b) & ~isMarker;
            searching &= ~isMarker;
        }
        bad |= searching;
    } else {
        const uint32_t n = last[size - 1];
        bad |= CtMaskZero(n) | CtMaskLt(size, n);
        count = n;
        if (scheme != OPT_PAD_W3C) {
            const uint32_t expected = scheme == OPT_PAD_ANSIX923 ? 0 : n;
            for (uint32_t d = 1; d < size; ++d) {
                const uint32_t inside = CtMaskLt(d, n);
                bad |= inside & ~CtMaskEq(last[size - 1 - d], expected);
            }
        }
    }
    // Valid or not, and the count, are the answer: callers act on them.
    return CtPublic(int32_t(CtSelect(bad, uint32_t(-DECRYPT_ERROR), count)));
}

int32_t PadBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                 int32_t blockLength, int32_t options) {
    if (!IsBlockLength(blockLength)) return -BAD_BLK_LEN_ERROR;
    if (inputLength < 0) return -BAD_PARAM_ERROR;
    const int32_t n = blockLength - inputLength % blockLength;
    const int64_t total = int64_t(inputLength) + n;
    if (total > INT32_MAX) return -BAD_PARAM_ERROR;
    if (output == nullptr || outputLength < 1) return int32_t(total);
    if (outputLength < total) return -SHORT_BUF_ERROR;
    if (input == nullptr && inputLength > 0) return -NULL_ERROR;
    if (inputLength > 0) std::memmove(output, input, size_t(inputLength));
    PadFill(output + inputLength, size_t(n), options);
    return int32_t(total);
}

int32_t UnpadBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                   int32_t blockLength, int32_t options) {
    if (!IsBlockLength(blockLength)) return -BAD_BLK_LEN_ERROR;
    if (input == nullptr || output == nullptr) return -NULL_ERROR;
    if (inputLength < blockLength || inputLength % blockLength != 0) return -BAD_LENGTH_ERROR;
    const int32_t count = PadCheck(input, size_t(inputLength), size_t(blockLength), options);
    if (count < 1) return -DECRYPT_ERROR;
    const int32_t kept = inputLength - count;
    if (outputLength < kept) return -SHORT_BUF_ERROR;
    if (kept > 0) std::memmove(output, input, size_t(kept));
    return kept;
}

int32_t PadHex(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength, int32_t options) {
    if (!IsBlockLength(blockLength)) return -BAD_BLK_LEN_ERROR;
    if (inputHex == nullptr) return -NULL_ERROR;
    const size_t textLength = std::strlen(inputHex);
    if (textLength % 2 != 0) return -BAD_FORMAT_ERROR;
    const size_t bytes = textLength / 2;
    const size_t n = size_t(blockLength) - bytes % size_t(blockLength);
    const size_t total = 2 * (bytes + n);
    if (total > size_t(INT32_MAX)) return -BAD_PARAM_ERROR;
    if (output == nullptr || outputLength < 1) return int32_t(total);
    if (size_t(outputLength) < total) return -SHORT_BUF_ERROR;
    uint8_t pad[16];
    PadFill(pad, n, options);
    // The input keeps its case; the padding is written in upper case.
    std::memmove(output, inputHex, textLength);
    static const char kDigits[] = "0123456789ABCDEF";
    for (size_t i = 0; i < n; ++i) {
        output[textLength + 2 * i] = kDigits[pad[i] >> 4];
        output[textLength + 2 * i + 1] = kDigits[pad[i] & 15];
    }
    output[total] = '\0';
    return int32_t(total);
}

int32_t UnpadHex(char* output, int32_t outputLength, const char* inputHex, int32_t blockLength,
                 int32_t options) {
    if (!IsBlockLength(blockLength)) return -BAD_BLK_LEN_ERROR;
    if (inputHex == nullptr || output == nullptr) return -NULL_ERROR;
    const size_t textLength = std::strlen(inputHex);
    if (textLength == 0 || textLength % 2 != 0) return -BAD_FORMAT_ERROR;
    const size_t bytes = textLength / 2;
    if (bytes < size_t(blockLength) || bytes % size_t(blockLength) != 0) return -BAD_LENGTH_ERROR;
    if (bytes > size_t(INT32_MAX) / 2) return -BAD_LENGTH_ERROR;
    uint8_t last[16];
    const char* tail = inputHex + 2 * (bytes - size_t(blockLength));
    for (int32_t i = 0; i < blockLength; ++i) last[i] = PlainHexPair(tail + 2 * i);
    const int32_t count = PadCheck(last, size_t(blockLength), size_t(blockLength), options);
    if (count < 1) return -DECRYPT_ERROR;
    const int32_t total = int32_t(2 * (bytes - size_t(count)));
    if (outputLength < 1) return total;
    if (outputLength < total) return -SHORT_BUF_ERROR;
    std::memmove(output, inputHex, size_t(total));
    output[total] = '\0';
    return total;
}
