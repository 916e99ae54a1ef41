// One-shot CIPHER_ calls: selection, padding and the IV prefix around the
// Triple DES and AES one-shots of the block subsystem.
#include "cipher/cipher_oneshot.h"

#include <cstring>

#include "block/block.h"
#include "cipher/select.h"
#include "convert/codec.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

// The allocator ends the process above this size; larger working blocks are
// refused with MEMORY_ERROR instead.
constexpr int64_t kMaxBlock = 0x3fffffff;

// A positive engine status becomes minus the code; a negative one stays.
inline int32_t Negated(int status) { return status > 0 ? -status : status; }

// With the IV taken from the data, only the key length can be checked.
int32_t CheckKeyOnly(int32_t cipher, int32_t keyLength) {
    const int32_t needed = CipherKeyLength(cipher);
    if (needed < 0) return -INTERNAL_ERROR;
    return keyLength == needed ? 0 : -BAD_KEY_LEN_ERROR;
}

struct Choice {
    int32_t cipher;
    int32_t mode;
    int32_t options;  // the caller's flags with the selection fields of the choice
};

int32_t Choose(Choice* choice, const char* algorithmText, int32_t options) {
    return SelectCipher(&choice->cipher, &choice->mode, &choice->options, algorithmText, options);
}

}  // namespace

int CipherBlockCrypt(int32_t direction, uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key,
                     const uint8_t* iv, int32_t options) {
    int32_t cipher = 0, mode = 0;
    const int32_t selected = SelectCipher(&cipher, &mode, nullptr, nullptr, options);
    if (selected != 0) return -selected;
    switch (cipher) {
    case OPT_CIPHER_TDEA: return TdeaOneShot(output, input, length, key, iv, direction, mode);
    case OPT_CIPHER_AES128: return AesOneShot(output, input, length, key, 128, iv, direction, mode);
    case OPT_CIPHER_AES192: return AesOneShot(output, input, length, key, 192, iv, direction, mode);
    case OPT_CIPHER_AES256: return AesOneShot(output, input, length, key, 256, iv, direction, mode);
    default: return BAD_FLAG_ERROR;
    }
}

int32_t CipherEncryptCore(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                          const uint8_t* key, const uint8_t* iv, int32_t options) {
    if (inputLength < 0) return -BAD_LENGTH_ERROR;
    int32_t cipher = 0, mode = 0;
    const int32_t selected = SelectCipher(&cipher, &mode, nullptr, nullptr, options);
    if (selected != 0) return selected;
    const int32_t B = CipherBlockSize(cipher);
    if (B < 0) return -BAD_FLAG_ERROR;
    const int32_t padding = EffectivePadding(options);
    const bool prefix = (options & OPT_PREFIX_IV) != 0;
    // With padding a whole number of blocks gains a whole block.
    const int64_t dataLength = padding != 0 ? int64_t(inputLength) + B - inputLength % B : int64_t(inputLength);
    const int64_t total = dataLength + (prefix ? B : 0);
    if (total > INT32_MAX) return -BAD_LENGTH_ERROR;

    if (output == nullptr || outputLength < 1) return int32_t(total);  // the query screens nothing more
    if ((input == nullptr && inputLength > 0) || key == nullptr) return -NULL_ERROR;
    // ECB checks no IV length, but the prefix still copies a block from iv.
    if (prefix && iv == nullptr && mode == kModeEcb) return -NULL_ERROR;
    if (outputLength < total) return -SHORT_BUF_ERROR;

    uint8_t* target = output + (prefix ? B : 0);
    int status;
    if (padding != 0) {
        // The move handles overlap, so output may be input, also with the prefix.
        const int32_t padded = PadBytes(target, int32_t(dataLength), input, inputLength, B, padding);
        if (padded < 0) return padded;
        status = CipherBlockCrypt(1, target, target, int32_t(dataLength), key, iv, options);
    } else {
        status = CipherBlockCrypt(1, target, input, inputLength, key, iv, options);
    }
    if (status != 0) return Negated(status);
    if (prefix) std::memcpy(output, iv, size_t(B));
    return int32_t(total);
}

int32_t CipherDecryptCore(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                          const uint8_t* key, const uint8_t* iv, int32_t options) {
    if (inputLength < 0) return -BAD_LENGTH_ERROR;
    if (outputLength < 0) return -BAD_PARAM_ERROR;
    // Unlike encryption, these come before any query: a padded query decrypts.
    if ((input == nullptr && inputLength > 0) || key == nullptr) return -NULL_ERROR;
    const bool hasOutput = output != nullptr && outputLength >= 1;
    int32_t cipher = 0, mode = 0;
    const int32_t selected = SelectCipher(&cipher, &mode, nullptr, nullptr, options);
    if (selected != 0) return selected;
    const int32_t B = CipherBlockSize(cipher);
    if (B < 0) return -BAD_FLAG_ERROR;
    const int32_t padding = EffectivePadding(options);

    if ((options & OPT_PREFIX_IV) != 0) {
        // The IV leads the data; in ECB the block is skipped all the same.
        if (inputLength - B < 0) return -BAD_LENGTH_ERROR;
        iv = input;
        input += B;
        inputLength -= B;
    }
    const int32_t L = inputLength;

    if (padding == 0) {
        if (!hasOutput) return L;
        if (outputLength < L) return -SHORT_BUF_ERROR;
        const int status = CipherBlockCrypt(0, output, input, L, key, iv, options);
        return status != 0 ? Negated(status) : L;
    }

    // Padded: the plaintext length is known only after decrypting, so a query
    // or a buffer shorter than the ciphertext works in a temporary block.
    uint8_t* target = output;
    uint8_t* temporary = nullptr;
    if (!hasOutput || outputLength < L) {
        if (L > kMaxBlock) return -MEMORY_ERROR;
        temporary = static_cast<uint8_t*>(SafeAlloc(size_t(L)));
        target = temporary;
    }
    int32_t result;
    const int status = CipherBlockCrypt(0, target, input, L, key, iv, options);
    if (status != 0) {
        result = Negated(status);
    } else {
        result = UnpadBytes(target, L, target, L, B, padding);
        // A failed removal is the result; nothing is copied then.
        if (result >= 0 && temporary != nullptr && hasOutput) {
            if (outputLength < result) {
                result = -SHORT_BUF_ERROR;
            } else if (result > 0) {
                std::memcpy(output, temporary, size_t(result));
            }
        }
    }
    if (temporary != nullptr) SafeWipeFree(temporary, size_t(L));
    return result;
}

int32_t CipherEncryptBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                           const uint8_t* key, int32_t keyLength, const uint8_t* iv, int32_t ivLength,
                           const char* algorithmText, int32_t options) {
    Choice c;
    int32_t status = Choose(&c, algorithmText, options);
    if (status == 0) status = CheckKeyAndIv(c.cipher, c.mode, keyLength, ivLength);
    if (status != 0) return status;
    return CipherEncryptCore(output, outputLength, input, inputLength, key, iv, c.options);
}

int32_t CipherDecryptBytes(uint8_t* output, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                           const uint8_t* key, int32_t keyLength, const uint8_t* iv, int32_t ivLength,
                           const char* algorithmText, int32_t options) {
    Choice c;
    int32_t status = Choose(&c, algorithmText, options);
    if (status == 0)
        status = (c.options & OPT_PREFIX_IV) != 0 ? CheckKeyOnly(c.cipher, keyLength)
                                                  : CheckKeyAndIv(c.cipher, c.mode, keyLength, ivLength);
    if (status != 0) return status;
    return CipherDecryptCore(output, outputLength, input, inputLength, key, iv, c.options);
}

int32_t CipherHexCore(int32_t direction, char* outputHex, int32_t outputHexLength, const char* inputHex,
                      const char* keyHex, const char* ivHex, const char* algorithmText, int32_t options) {
    if (inputHex == nullptr || inputHex[0] == '\0' || keyHex == nullptr || keyHex[0] == '\0' ||
        outputHexLength < 0)
        return -BAD_PARAM_ERROR;
    const size_t textLength = std::strlen(inputHex);
    const size_t capacity = (textLength + 1) / 2;
    if (int64_t(capacity) > kMaxBlock - 32) return -MEMORY_ERROR;

    // Key and IV in fixed blocks: a text too long still counts all its pairs
    // and so fails the length check. The IV block is never shorter than a
    // cipher block, since the prefix copies one whole block from it.
    uint8_t key[32] = {};
    uint8_t iv[32] = {};
    uint8_t* data = static_cast<uint8_t*>(SafeAlloc(capacity));
    const int64_t dataLength = HexDecodeOrMinus(data, inputHex, capacity);
    const int64_t keyLength = HexDecodeOrMinus(key, keyHex, sizeof key);
    const int64_t ivLength = ivHex == nullptr ? 0 : HexDecodeOrMinus(iv, ivHex, sizeof iv);
    const uint8_t* ivPointer = ivHex == nullptr ? nullptr : iv;

    int32_t result;
    if (dataLength < 0 || keyLength < 0 || ivLength < 0) {
        result = -INVALID_DATA_ERROR;
    } else {
        auto run = [&](uint8_t* out, int32_t outLength) {
            const int32_t keyCount = int32_t(keyLength > INT32_MAX ? INT32_MAX : keyLength);
            const int32_t ivCount = int32_t(ivLength > INT32_MAX ? INT32_MAX : ivLength);
            return direction != 0 ? CipherEncryptBytes(out, outLength, data, int32_t(dataLength), key, keyCount,
                                                       ivPointer, ivCount, algorithmText, options)
                                  : CipherDecryptBytes(out, outLength, data, int32_t(dataLength), key, keyCount,
                                                       ivPointer, ivCount, algorithmText, options);
        };
        if (outputHex == nullptr || outputHexLength < 1) {
            // Kept: the query doubles whatever the byte query gives, a
            // negative code included.
            result = 2 * run(nullptr, 0);
        } else {
            const size_t workLength = size_t(dataLength) + 32;
            // Zeroed, since the encoder below may read past the result.
            uint8_t* work = static_cast<uint8_t*>(SafeAlloc(workLength));
            std::memset(work, 0, workLength);
            result = run(work, int32_t(workLength));
            if (result > 0) {
                if (int64_t(outputHexLength) < 2 * int64_t(result)) {
                    result = -SHORT_BUF_ERROR;
                } else {
                    // Kept: the whole working block goes to the encoder, so a
                    // larger buffer holds characters beyond the result; the
                    // returned length tells where the result ends.
                    HexEncodeBounded(outputHex, size_t(outputHexLength) + 1, work, workLength);
                    result *= 2;
                }
            }
            SafeWipeFree(work, workLength);
        }
    }
    SecureWipe(key, sizeof key);
    SecureWipe(iv, sizeof iv);
    SafeWipeFree(data, capacity);
    return result;
}

namespace {

// Down to the file routine of the cipher; its status is positive.
int32_t CipherFileCrypt(int32_t direction, const char* outputFile, const char* inputFile, const uint8_t* key,
                        const uint8_t* iv, int32_t options) {
    int32_t cipher = 0, mode = 0;
    const int32_t selected = SelectCipher(&cipher, &mode, nullptr, nullptr, options);
    if (selected != 0) return selected;
    const int32_t keyLength = CipherKeyLength(cipher);
    if (keyLength < 0) return -BAD_FLAG_ERROR;
    if (cipher == OPT_CIPHER_TDEA) return TdeaFileCrypt(outputFile, inputFile, key, direction, mode, iv, options);
    return AesFileCrypt(outputFile, inputFile, key, size_t(keyLength), direction, mode, iv, options);
}

}  // namespace

int32_t CipherFileEncrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t keyLength,
                          const uint8_t* iv, int32_t ivLength, const char* algorithmText, int32_t options) {
    Choice c;
    int32_t status = Choose(&c, algorithmText, options);
    if (status == 0) status = CheckKeyAndIv(c.cipher, c.mode, keyLength, ivLength);
    if (status != 0) return status;
    return CipherFileCrypt(1, outputFile, inputFile, key, iv, c.options);
}

int32_t CipherFileDecrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t keyLength,
                          const uint8_t* iv, int32_t ivLength, const char* algorithmText, int32_t options) {
    Choice c;
    int32_t status = Choose(&c, algorithmText, options);
    if (status == 0)
        status = (c.options & OPT_PREFIX_IV) != 0 ? CheckKeyOnly(c.cipher, keyLength)
                                                  : CheckKeyAndIv(c.cipher, c.mode, keyLength, ivLength);
    if (status != 0) return status;
    return CipherFileCrypt(0, outputFile, inputFile, key, iv, c.options);
}
