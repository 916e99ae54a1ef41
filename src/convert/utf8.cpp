#include "convert/utf8.h"

#include "verimond.h"

namespace {
bool IsSurrogate(uint16_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
}  // namespace

int64_t Utf8LengthOfWide(const uint16_t* text) {
    int64_t length = 0;
    for (const uint16_t* p = text; *p != 0; ++p) {
        if (IsSurrogate(*p)) return -1;
        length += *p < 0x80 ? 1 : *p < 0x800 ? 2 : 3;
        if (length > INT32_MAX) return -1;
    }
    return length;
}

void Utf8EncodeWide(char* output, const uint16_t* text) {
    auto* out = reinterpret_cast<unsigned char*>(output);
    for (const uint16_t* p = text; *p != 0; ++p) {
        uint16_t u = *p;
        if (u < 0x80) {
            *out++ = uint8_t(u);
        } else if (u < 0x800) {
            *out++ = uint8_t(0xC0 | (u >> 6));
            *out++ = uint8_t(0x80 | (u & 0x3F));
        } else {
            *out++ = uint8_t(0xE0 | (u >> 12));
            *out++ = uint8_t(0x80 | ((u >> 6) & 0x3F));
            *out++ = uint8_t(0x80 | (u & 0x3F));
        }
    }
    *out = 0;
}

int32_t Utf8FromWideBounded(char* output, int64_t capacity, const uint16_t* text) {
    if (text == nullptr || text[0] == 0) {
        if (output != nullptr && capacity >= 1) output[0] = '\0';
        return 0;
    }
    int64_t length = Utf8LengthOfWide(text);
    if (length < 0) return -ENCODING_ERROR;
    if (output == nullptr || capacity <= 1) return int32_t(length);
    if (capacity - 1 < length) return -SHORT_BUF_ERROR;
    Utf8EncodeWide(output, text);
    return int32_t(length);
}
