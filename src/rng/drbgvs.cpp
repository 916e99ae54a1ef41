// The validation interface: every input arrives as hex text.
#include "rng/drbgvs.h"

#include <cstring>

#include "convert/codec.h"
#include "frame/memory.h"
#include "rng/drbg.h"
#include "util/wipe.h"

namespace {
// A decoded text in its own block; a null or empty text gives no block.
struct Decoded {
    uint8_t* data = nullptr;
    uint32_t length = 0;
    size_t capacity = 0;
};

Decoded Decode(const char* text) {
    Decoded d;
    if (text == nullptr || *text == '\0') return d;
    d.capacity = std::strlen(text) / 2 + 1;
    d.data = static_cast<uint8_t*>(SafeAlloc(d.capacity));
    d.length = uint32_t(HexDecodeLoose(d.data, d.capacity, text));
    return d;
}

void Free(Decoded& d) {
    if (d.data != nullptr) SafeWipeFree(d.data, d.capacity);
    d = Decoded();
}
}  // namespace

int32_t DrbgvsAnswer(char* output, int32_t outputLength, int32_t returnedBits, const DrbgvsInputs& in,
                     int32_t options) {
    if (returnedBits < 1) return -6;  // -BAD_PARAM_ERROR
    if (returnedBits > int32_t(kDrbgMaxRequest * 8)) return kDrbgTooBig;
    uint32_t byteCount = (uint32_t(returnedBits) + 7) / 8;
    int32_t hexLength = int32_t(byteCount * 2);
    if (output == nullptr || outputLength < 1) return hexLength;

    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(byteCount));
    DrbgState scratch;
    WipeObject(scratch);

    Decoded entropy = Decode(in.entropy), nonce = Decode(in.nonce), personalisation = Decode(in.personalisation);
    DrbgRawInstantiate(&scratch, entropy.data, entropy.length, nonce.data, nonce.length, personalisation.data,
                       personalisation.length);
    Free(entropy);
    Free(nonce);
    Free(personalisation);

    Decoded additional1 = Decode(in.additional1), reseedEntropy = Decode(in.reseedEntropy),
            reseedAdditional = Decode(in.reseedAdditional);
    bool reseed = reseedEntropy.length != 0 || reseedAdditional.length != 0;
    if (options & kDrbgvsGenerateFirst) {
        DrbgRawGenerate(&scratch, block, byteCount, additional1.data, additional1.length);
        if (reseed) DrbgReseed(&scratch, reseedEntropy.data, reseedEntropy.length, reseedAdditional.data,
                               reseedAdditional.length);
    } else {
        if (reseed) DrbgReseed(&scratch, reseedEntropy.data, reseedEntropy.length, reseedAdditional.data,
                               reseedAdditional.length);
        DrbgRawGenerate(&scratch, block, byteCount, additional1.data, additional1.length);
    }
    Free(additional1);
    Free(reseedEntropy);
    Free(reseedAdditional);

    Decoded additional2 = Decode(in.additional2);
    DrbgRawGenerate(&scratch, block, byteCount, additional2.data, additional2.length);  // overwrites the first
    Free(additional2);

    int32_t capacity = outputLength < hexLength ? outputLength : hexLength;
    int32_t written = int32_t(HexEncodeBoundedLower(output, size_t(capacity) + 1, block, byteCount));
    SafeWipeFree(block, byteCount);
    WipeObject(scratch);
    return written;
}
