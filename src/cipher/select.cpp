// Parsing of mode words and algorithm strings, and the option-word helpers.
#include "cipher/select.h"

#include <cstring>

#include "verimond.h"

namespace {

struct NamedValue {
    const char* name;
    int32_t value;
};

// Tried in this order: "desede3" before "desede", long padding names first.
constexpr NamedValue kCipherNames[] = {
    {"aes128", OPT_CIPHER_AES128}, {"aes192", OPT_CIPHER_AES192}, {"aes256", OPT_CIPHER_AES256},
    {"tdea", OPT_CIPHER_TDEA},     {"3des", OPT_CIPHER_TDEA},     {"desede3", OPT_CIPHER_TDEA},
    {"desede", OPT_CIPHER_TDEA},
};
constexpr NamedValue kModeNames[] = {
    {"ecb", OPT_MODE_ECB}, {"cbc", OPT_MODE_CBC}, {"ofb", OPT_MODE_OFB}, {"cfb", OPT_MODE_CFB}, {"ctr", OPT_MODE_CTR},
};
constexpr NamedValue kPaddingNames[] = {
    {"pkcs5padding", OPT_PAD_PKCS5},
    {"pkcs5", OPT_PAD_PKCS5},
    {"nopadding", OPT_PAD_NONE},
    {"nopad", OPT_PAD_NONE},
    {"oneandzeroespadding", OPT_PAD_ONEANDZEROES},
    {"oneandzeroes", OPT_PAD_ONEANDZEROES},
    {"ansix923padding", OPT_PAD_ANSIX923},
    {"ansix923", OPT_PAD_ANSIX923},
    {"w3cpadding", OPT_PAD_W3C},
    {"w3c", OPT_PAD_W3C},
};

// Matches one name of the list at *text; advances past it.
template <size_t N>
bool MatchName(const char*& text, const NamedValue (&names)[N], int32_t* value) {
    for (const auto& entry : names) {
        const size_t n = std::strlen(entry.name);
        if (std::strncmp(text, entry.name, n) == 0) {
            text += n;
            *value = entry.value;
            return true;
        }
    }
    return false;
}

inline bool IsAsciiLetter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool IsAsciiDigit(unsigned char c) { return c >= '0' && c <= '9'; }

}  // namespace

int ParseModeWord(const char* text) {
    if (text == nullptr) return -1;
    char word[4];
    for (int i = 0; i < 3; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (!IsAsciiLetter(c)) return -1;  // the NUL ends a short text here
        word[i] = char(c >= 'a' ? c - 32 : c);
    }
    word[3] = '\0';
    static const char* const kWords[] = {"ECB", "CBC", "CFB", "OFB", "CTR"};
    for (int mode = 0; mode < 5; ++mode)
        if (std::strcmp(word, kWords[mode]) == 0) return mode;
    return -1;
}

int32_t ParseAlgorithmString(const char* text) {
    if (text == nullptr || text[0] == '\0') return -1;
    // Keep at most 64 letters and digits, folded to lower case. A byte above
    // 0x7F is kept as it is, so that no name can match it and the string fails.
    char normal[65];
    size_t kept = 0;
    for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p != 0 && kept < 64; ++p) {
        const unsigned char c = *p;
        if (IsAsciiLetter(c)) {
            normal[kept++] = char(c | 0x20);
        } else if (IsAsciiDigit(c) || c >= 0x80) {
            normal[kept++] = char(c);
        }
    }
    normal[kept] = '\0';

    const char* p = normal;
    int32_t word = 0, value = 0;
    if (!MatchName(p, kCipherNames, &value)) return -1;
    word |= value;
    if (*p == '\0') return word;
    if (!MatchName(p, kModeNames, &value)) return -1;
    word |= value;
    if (*p == '\0') return word;
    if (!MatchName(p, kPaddingNames, &value)) return -1;
    word |= value;
    return *p == '\0' ? word : -1;
}

int32_t SelectCipher(int32_t* cipher, int32_t* engineMode, int32_t* options, const char* algorithmText,
                     int32_t optionWord) {
    const bool hasText = algorithmText != nullptr && algorithmText[0] != '\0';
    const bool hasBits = (optionWord & kCipherMask) != 0;
    if (hasText == hasBits) return -BAD_FLAG_ERROR;
    int32_t word;
    if (hasText) {
        word = ParseAlgorithmString(algorithmText);
        if (word == -1) return -BAD_PARAM_ERROR;
    } else {
        word = optionWord & kSelectionMask;
    }
    *cipher = word & kCipherMask;
    switch (word & kModeMask) {
    case OPT_MODE_ECB: *engineMode = 0; break;
    case OPT_MODE_CBC: *engineMode = 1; break;
    case OPT_MODE_CFB: *engineMode = 2; break;
    case OPT_MODE_OFB: *engineMode = 3; break;
    case OPT_MODE_CTR: *engineMode = 4; break;
    default: *engineMode = -1; return -BAD_MODE_ERROR;
    }
    if (options != nullptr) *options = (optionWord & ~kSelectionMask) | word;
    return 0;
}

int32_t CipherBlockSize(int32_t cipher) {
    switch (cipher) {
    case OPT_CIPHER_TDEA: return 8;
    case OPT_CIPHER_AES128:
    case OPT_CIPHER_AES192:
    case OPT_CIPHER_AES256: return 16;
    default: return -1;
    }
}

int32_t CipherKeyLength(int32_t cipher) {
    switch (cipher) {
    case OPT_CIPHER_TDEA: return 24;
    case OPT_CIPHER_AES128: return 16;
    case OPT_CIPHER_AES192: return 24;
    case OPT_CIPHER_AES256: return 32;
    default: return -1;
    }
}

int32_t EffectivePadding(int32_t options) {
    const int32_t mode = options & kModeMask;
    if (mode != OPT_MODE_ECB && mode != OPT_MODE_CBC) return 0;
    const int32_t padding = options & kPaddingMask;
    if (padding == OPT_PAD_DEFAULT) return OPT_PAD_PKCS5;
    if (padding >= OPT_PAD_PKCS5 && padding <= OPT_PAD_W3C) return padding;
    return 0;
}

int32_t CheckKeyAndIv(int32_t cipher, int32_t engineMode, int32_t keyLength, int32_t ivLength) {
    const int32_t needed = CipherKeyLength(cipher);
    if (needed < 0) return -INTERNAL_ERROR;
    if (keyLength != needed) return -BAD_KEY_LEN_ERROR;
    if (engineMode != 0 && ivLength != CipherBlockSize(cipher)) return -BAD_IV_LEN_ERROR;
    return 0;
}
