#include "digest/digest_text.h"

#include <cstring>

#include "convert/codec.h"
#include "digest/bit_digest.h"
#include "digest/digest.h"
#include "digest/file_reader.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// Writes 2 x min(length, capacity / 2) lower-case digits and the NUL;
// returns the digit count.
int32_t WriteHex(char* output, uint32_t capacity, const uint8_t* digest, int32_t length) {
    uint32_t count = capacity / 2 < uint32_t(length) ? capacity / 2 : uint32_t(length);
    HexEncodeCase(output, 2 * size_t(count) + 1, digest, count, true);
    return int32_t(2 * count);
}

// The file's digest into out (64 bytes of room), OPT_HASH_DOUBLE applied.
int32_t DigestFileRaw(uint8_t out[64], const char* fileName, int32_t options) {
    if (fileName == nullptr || fileName[0] == '\0') return -BAD_PARAM_ERROR;
    FileReader reader;
    if (!FileReaderOpen(&reader, fileName, (options & OPT_HASH_TEXT_MODE) != 0)) return -OPEN_ERROR;
    int32_t nibble = options & kDigestNibbleMask;
    DigestAnyContext ctx;
    if (nibble == kDigestAsconNibble || !DigestStart(&ctx, nibble)) {
        FileReaderClose(&reader);
        return -BAD_FLAG_ERROR;
    }
    uint8_t buffer[1024];
    // A read error is not told from the end of the file: what came is digested.
    for (size_t n; (n = FileReaderRead(&reader, buffer, sizeof buffer)) != 0;) {
        DigestUpdate(&ctx, nibble, buffer, uint32_t(n));
    }
    FileReaderClose(&reader);
    int32_t length = DigestFinish(out, &ctx, nibble);
    SecureWipe(buffer, sizeof buffer);
    DigestApplyDouble(out, length, options);
    return length;
}
}  // namespace

int32_t DigestHexFromBytes(char* output, int32_t outputLength, const uint8_t* message,
                           int32_t messageLength, int32_t options) {
    uint8_t digest[64] = {};
    int32_t length = DigestBytes(digest, 64, message, messageLength, options);
    if (length < 0) return length;
    int32_t result = 2 * length;
    if (output != nullptr && outputLength != 0) result = WriteHex(output, uint32_t(outputLength), digest, length);
    SecureWipe(digest, sizeof digest);
    return result;
}

int32_t DigestHexFromHex(char* output, int32_t outputLength, const char* messageHex, int32_t options) {
    if (messageHex == nullptr) return -BAD_PARAM_ERROR;
    size_t textLength = std::strlen(messageHex);
    if (textLength % 2 != 0) return -INVALID_DATA_ERROR;
    size_t capacity = textLength / 2;
    uint8_t* message = nullptr;
    int64_t decoded = 0;
    if (capacity != 0) {
        message = static_cast<uint8_t*>(SafeAlloc(capacity));
        decoded = HexDecodeStrict(message, capacity, messageHex);
        // Kept lenient: text that is not hex digests as the empty message.
        if (decoded < 0) decoded = 0;
    }
    int32_t result = DigestHexFromBytes(output, outputLength, message, int32_t(decoded), options);
    if (message != nullptr) SafeWipeFree(message, capacity);
    return result;
}

int32_t DigestHexFromBits(char* output, int32_t outputLength, const uint8_t* message,
                          int32_t messageBits, int32_t options) {
    uint8_t digest[64] = {};
    int32_t length = DigestBits(digest, message, messageBits, options);
    if (length < 0) return length;
    int32_t result = 2 * length;
    if (output != nullptr && outputLength >= 1) result = WriteHex(output, uint32_t(outputLength), digest, length);
    SecureWipe(digest, sizeof digest);
    return result;
}

int32_t DigestFile(uint8_t* output, int32_t outputLength, const char* fileName, int32_t options) {
    uint8_t digest[64] = {};
    int32_t length = DigestFileRaw(digest, fileName, options);
    if (length < 0) return length;
    int32_t result = length;
    if (output != nullptr && outputLength > 0) {
        result = outputLength < length ? outputLength : length;
        std::memcpy(output, digest, size_t(result));
    }
    SecureWipe(digest, sizeof digest);
    return result;
}

int32_t DigestHexFromFile(char* output, int32_t outputLength, const char* fileName, int32_t options) {
    uint8_t digest[64] = {};
    int32_t length = DigestFileRaw(digest, fileName, options);
    if (length < 0) return length;
    int32_t result = 2 * length;
    if (length > 0 && output != nullptr && outputLength > 0) {
        result = WriteHex(output, uint32_t(outputLength), digest, length);
    }
    SecureWipe(digest, sizeof digest);
    return result;
}
