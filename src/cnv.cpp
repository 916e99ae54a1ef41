// CNV_: hex and Base64 conversion for callers.
#include <cstring>

#include "convert/codec.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "verimond.h"

namespace {
// Hex digits, space, white space and ASCII punctuation may stand in hex text;
// any other letter, control character or byte above 127 may not.
bool IsHexTextLoose(const char* text) {
    for (const char* p = text; *p != '\0'; ++p) {
        unsigned char c = uint8_t(*p);
        if (kHexTable[c] >= 0 || c == ' ' || (c >= 9 && c <= 13)) continue;
        bool punct = (c >= 0x21 && c <= 0x2F) || (c >= 0x3A && c <= 0x40) ||
                     (c >= 0x5B && c <= 0x60) || (c >= 0x7B && c <= 0x7E);
        if (!punct) return false;
    }
    return true;
}

// A query decodes into a scratch block so that its answer is exact.
template <size_t (*Decode)(uint8_t*, size_t, const char*)>
int32_t DecodeQuery(const char* text, size_t capacity) {
    uint8_t* scratch = static_cast<uint8_t*>(SafeAlloc(capacity));
    size_t n = Decode(scratch, capacity, text);
    SafeWipeFree(scratch, capacity);
    return int32_t(n);
}

int32_t Filter(char* output, const char* input, int32_t length, const std::array<int8_t, 256>& table) {
    if (input == nullptr || output == nullptr || length < 0) return -BAD_PARAM_ERROR;
    int32_t kept = 0;
    for (int32_t i = 0; i < length; ++i) {
        if (table[uint8_t(input[i])] >= 0) output[kept++] = input[i];
    }
    output[kept] = '\0';
    return kept;
}
}  // namespace

extern "C" {

int32_t CNV_HexStrFromBytes(char* output, int32_t outputLength, const unsigned char* input,
                            int32_t inputLength) {
    StirEntropy(0);
    EnterCall();
    if (input == nullptr || inputLength < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (IsSizeQuery(output, outputLength)) return int32_t(uint32_t(inputLength) * 2u);
    return int32_t(HexEncodeBounded(output, size_t(outputLength) + 1, input, size_t(inputLength)));
}

int32_t CNV_BytesFromHexStr(unsigned char* output, int32_t outputLength, const char* input) {
    StirEntropy(0);
    EnterCall();
    if (input == nullptr) return LeaveCall(-BAD_PARAM_ERROR);
    if (!IsHexTextLoose(input)) return LeaveCall(-INVALID_DATA_ERROR);
    if (output == nullptr || outputLength < 1) {
        return DecodeQuery<HexDecodeLoose>(input, (std::strlen(input) + 1) / 2);
    }
    return int32_t(HexDecodeLoose(output, size_t(outputLength), input));
}

int32_t CNV_HexFilter(char* output, const char* input, int32_t inputLength) {
    StirEntropy(0);
    EnterCall();
    return LeaveOnFailure(Filter(output, input, inputLength, kHexTable));
}

int32_t CNV_B64StrFromBytes(char* output, int32_t outputLength, const unsigned char* input,
                            int32_t inputLength) {
    StirEntropy(0);
    EnterCall();
    if (input == nullptr || inputLength < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (IsSizeQuery(output, outputLength)) return int32_t((int64_t(inputLength) + 2) / 3 * 4);
    return int32_t(Base64Encode(output, size_t(outputLength) + 1, input, size_t(inputLength)));
}

int32_t CNV_BytesFromB64Str(unsigned char* output, int32_t outputLength, const char* input) {
    StirEntropy(0);
    EnterCall();
    if (input == nullptr) return LeaveCall(-BAD_PARAM_ERROR);
    if (!IsBase64Text(input)) return LeaveCall(-INVALID_DATA_ERROR);
    if (output == nullptr || outputLength < 1) {
        return DecodeQuery<Base64DecodeLoose>(input, (std::strlen(input) + 3) / 4 * 3 + 1);
    }
    return int32_t(Base64DecodeLoose(output, size_t(outputLength), input));
}

int32_t CNV_B64Filter(char* output, const char* input, int32_t inputLength) {
    StirEntropy(0);
    EnterCall();
    return LeaveOnFailure(Filter(output, input, inputLength, kBase64Table));
}

}  // extern "C"
