#include "mac/xof.h"

#include "aead/ascon.h"
#include "mac/kmac.h"
#include "mac/mgf1.h"
#include "verimond.h"

namespace {
constexpr int32_t kLow12 = 0xFFF;
constexpr int32_t kMgf1Mask = 0xFF0;
constexpr int32_t kMgf1Family = 0x210;
}  // namespace

int32_t XofBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 int32_t options) {
    if (output == nullptr || outputLength < 0 || messageLength < 0 || (messageLength > 0 && message == nullptr))
        return -BAD_PARAM_ERROR;
    if ((options & kMgf1Mask) == kMgf1Family) {
        // Unlike SHAKE, MGF1 refuses an empty output.
        if (outputLength < 1) return -BAD_PARAM_ERROR;
        int32_t nibble = options & 0xF;
        if (!Mgf1Accepts(nibble)) return -BAD_FLAG_ERROR;
        Mgf1(output, size_t(outputLength), message, size_t(messageLength), nibble);
        return outputLength;
    }
    switch (options & kLow12) {
        case OPT_XOF_SHAKE128:
            return Shake(output, uint32_t(outputLength), message, size_t(messageLength), 128);
        case OPT_XOF_SHAKE256:
            return Shake(output, uint32_t(outputLength), message, size_t(messageLength), 256);
        case OPT_XOF_ASCON_XOF:
        case OPT_XOF_ASCON_XOFA:
            AsconXof(output, uint64_t(outputLength), message, uint64_t(messageLength),
                     (options & kLow12) == OPT_XOF_ASCON_XOFA ? 1 : 0);
            return outputLength;
        default: return -BAD_FLAG_ERROR;
    }
}

int32_t PrfBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                 const uint8_t* key, int32_t keyLength, const char* customString, int32_t options) {
    // Here a null message is refused even with length 0.
    if (output == nullptr || outputLength < 0 || message == nullptr || messageLength < 0)
        return -BAD_PARAM_ERROR;
    int32_t low12 = options & kLow12;
    if (low12 < OPT_KMAC_128 || low12 > OPT_XOF_SHAKE256) return -BAD_FLAG_ERROR;
    if (low12 == OPT_XOF_SHAKE128 || low12 == OPT_XOF_SHAKE256) {
        return XofBytes(output, outputLength, message, messageLength, low12);
    }
    if (outputLength == 0) return 0;
    // key and customString are the caller's to get right; what would be read
    // out of bounds (a null key with a length, a negative length, no custom
    // string at all) is refused rather than followed.
    if (keyLength < 0 || (key == nullptr && keyLength != 0) || customString == nullptr)
        return -BAD_PARAM_ERROR;
    return Kmac(output, uint32_t(outputLength), message, size_t(messageLength), key, size_t(keyLength),
                customString, low12 == OPT_KMAC_128 ? 128 : 256);
}
