#include "convert/codec.h"

#include <cstring>

namespace {
constexpr char kUpperDigits[] = "0123456789ABCDEF";
constexpr char kLowerDigits[] = "0123456789abcdef";
constexpr char kBase64Alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr int8_t HexValue(int c) {
    if (c >= '0' && c <= '9') return int8_t(c - '0');
    if (c >= 'A' && c <= 'F') return int8_t(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') return int8_t(c - 'a' + 10);
    return -1;
}

constexpr int8_t Base64Value(int c) {
    if (c >= 'A' && c <= 'Z') return int8_t(c - 'A');
    if (c >= 'a' && c <= 'z') return int8_t(c - 'a' + 26);
    if (c >= '0' && c <= '9') return int8_t(c - '0' + 52);
    if (c == '+') return 62;
    if (c == '/') return 63;
    if (c == '=') return 64;
    return -1;
}

constexpr std::array<int8_t, 256> MakeTable(int8_t (*value)(int)) {
    std::array<int8_t, 256> table{};
    for (int i = 0; i < 256; ++i) table[size_t(i)] = value(i);
    return table;
}

size_t EncodeHexBounded(char* output, size_t capacity, const uint8_t* bytes, size_t count,
                        const char* digits) {
    if (output == nullptr || capacity < 1) return 0;
    size_t written = 0;
    for (size_t i = 0; i < count && capacity - written >= 3; ++i) {
        output[written++] = digits[bytes[i] >> 4];
        output[written++] = digits[bytes[i] & 15];
    }
    output[written] = '\0';
    return written;
}
}  // namespace

const std::array<int8_t, 256> kHexTable = MakeTable(HexValue);
const std::array<int8_t, 256> kBase64Table = MakeTable(Base64Value);

int64_t HexDecodeStrict(uint8_t* output, size_t capacity, const char* text) {
    size_t length = std::strlen(text);
    if (length % 2 != 0) return -1;
    size_t pairs = 0;
    for (size_t i = 0; i < length; i += 2) {
        int hi = kHexTable[uint8_t(text[i])];
        int lo = kHexTable[uint8_t(text[i + 1])];
        if (hi < 0 || lo < 0) return -1;
        if (pairs < capacity) output[pairs] = uint8_t((hi << 4) | lo);
        ++pairs;
    }
    return int64_t(pairs);
}

int64_t HexDecodeOrZero(uint8_t* output, const char* text, size_t capacity) {
    if (output == nullptr || text == nullptr) return 0;
    int64_t n = HexDecodeStrict(output, capacity, text);
    return n < 0 ? 0 : n;
}

int64_t HexDecodeOrMinus(uint8_t* output, const char* text, size_t capacity) {
    if (output == nullptr || text == nullptr) return -1;
    return HexDecodeStrict(output, capacity, text);
}

size_t HexDecodeLoose(uint8_t* output, size_t capacity, const char* text) {
    size_t written = 0;
    int high = -1;
    for (const char* p = text; *p != '\0' && written < capacity; ++p) {
        int v = kHexTable[uint8_t(*p)];
        if (v < 0) continue;
        if (high < 0) {
            high = v;
        } else {
            output[written++] = uint8_t((high << 4) | v);
            high = -1;
        }
    }
    return written;
}

size_t HexEncodeBounded(char* output, size_t capacity, const uint8_t* bytes, size_t count) {
    return EncodeHexBounded(output, capacity, bytes, count, kUpperDigits);
}

size_t HexEncodeBoundedLower(char* output, size_t capacity, const uint8_t* bytes, size_t count) {
    return EncodeHexBounded(output, capacity, bytes, count, kLowerDigits);
}

void HexEncodeCase(char* output, size_t capacity, const uint8_t* bytes, size_t count, bool lower) {
    if (output == nullptr || capacity < 1) return;
    size_t room = 2 * count + 1 < capacity ? 2 * count + 1 : capacity;
    size_t pairs = (room - 1) / 2;
    const char* digits = lower ? kLowerDigits : kUpperDigits;
    for (size_t i = 0; i < pairs; ++i) {
        output[2 * i] = digits[bytes[i] >> 4];
        output[2 * i + 1] = digits[bytes[i] & 15];
    }
    output[2 * pairs] = '\0';
}

char* HexEncodeUpper(char* output, const uint8_t* bytes, size_t count) {
    if (output == nullptr || bytes == nullptr) return output;
    HexEncodeCase(output, 2 * count + 1, bytes, count, false);
    return output;
}

char* HexEncodeLower(char* output, const uint8_t* bytes, size_t count) {
    if (output == nullptr || bytes == nullptr) return output;
    HexEncodeCase(output, 2 * count + 1, bytes, count, true);
    return output;
}

size_t Base64Encode(char* output, size_t capacity, const uint8_t* bytes, size_t count) {
    if (output == nullptr || capacity < 1) return 0;
    size_t written = 0;
    size_t i = 0;
    while (count - i > 2 && capacity - written >= 5) {
        uint32_t v = (uint32_t(bytes[i]) << 16) | (uint32_t(bytes[i + 1]) << 8) | bytes[i + 2];
        output[written++] = kBase64Alphabet[(v >> 18) & 63];
        output[written++] = kBase64Alphabet[(v >> 12) & 63];
        output[written++] = kBase64Alphabet[(v >> 6) & 63];
        output[written++] = kBase64Alphabet[v & 63];
        i += 3;
    }
    size_t left = count - i;
    if ((left == 1 || left == 2) && capacity - written >= 5) {
        uint32_t v = uint32_t(bytes[i]) << 16;
        if (left == 2) v |= uint32_t(bytes[i + 1]) << 8;
        output[written++] = kBase64Alphabet[(v >> 18) & 63];
        output[written++] = kBase64Alphabet[(v >> 12) & 63];
        output[written++] = left == 2 ? kBase64Alphabet[(v >> 6) & 63] : '=';
        output[written++] = '=';
    }
    output[written] = '\0';
    return written;
}

size_t Base64DecodeLoose(uint8_t* output, size_t capacity, const char* text) {
    size_t written = 0;
    uint32_t group = 0;
    int have = 0;
    for (const char* p = text; *p != '\0' && *p != '='; ++p) {
        int v = kBase64Table[uint8_t(*p)];
        if (v < 0) continue;
        group = (group << 6) | uint32_t(v);
        if (++have < 4) continue;
        if (capacity - written < 3) return written;  // a group that does not fit ends it
        output[written++] = uint8_t(group >> 16);
        output[written++] = uint8_t(group >> 8);
        output[written++] = uint8_t(group);
        group = 0;
        have = 0;
        if (written == capacity) return written;
    }
    // A partial group of two or three characters gives one or two bytes when
    // they fit; a lone character carries no whole byte.
    if (have == 2 && capacity - written >= 1) {
        output[written++] = uint8_t(group >> 4);
    } else if (have == 3 && capacity - written >= 2) {
        output[written++] = uint8_t(group >> 10);
        output[written++] = uint8_t(group >> 2);
    }
    return written;
}

bool IsHexText(const char* text) {
    for (const char* p = text; *p != '\0'; ++p) {
        if (kHexTable[uint8_t(*p)] < 0) return false;
    }
    return true;
}

bool IsBase64Text(const char* text) {
    for (const char* p = text; *p != '\0'; ++p) {
        unsigned char c = uint8_t(*p);
        bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                  c == '+' || c == '/' || c == '=' || c == ' ' || (c >= 9 && c <= 13);
        if (!ok) return false;
    }
    return true;
}
