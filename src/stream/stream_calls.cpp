// Whole-message, hex and file forms of the stream ciphers, and PC1.
#include <cstdio>
#include <cstring>

#include "convert/codec.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "stream/stream_calls.h"
#include "util/same_file.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// A heap copy of decoded hex that is wiped when it goes.
struct DecodedText {
    uint8_t* bytes = nullptr;
    size_t capacity = 0;
    ~DecodedText() { SafeWipeFree(bytes, capacity); }
};

// Decodes into a block of (length + 1) / 2 bytes. An odd digit count or any
// character that is not a hex digit leaves the decoder short of the block,
// which is how both are caught.
bool DecodeExact(const char* text, DecodedText* decoded) {
    decoded->capacity = (std::strlen(text) + 1) / 2;
    decoded->bytes = static_cast<uint8_t*>(SafeAlloc(decoded->capacity));
    return HexDecodeLoose(decoded->bytes, decoded->capacity, text) == decoded->capacity;
}

bool IsEmpty(const char* text) { return text == nullptr || text[0] == '\0'; }

// Data screening of the Salsa20 and ChaCha20 one shots, after their set-up
// codes: the cores would otherwise take a negative count as a huge one.
bool DataUsable(const uint8_t* out, const uint8_t* input, int32_t length) {
    return length == 0 || (length > 0 && out != nullptr && input != nullptr);
}
}  // namespace

int32_t StreamBytes(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                    int32_t keyLength, const uint8_t* iv, int32_t ivLength, uint32_t counter, int32_t options) {
    switch (options & 0xF) {
        case kStreamArcfour:
            return ArcfourOneShot(out, input, inputLength, key, keyLength);
        case kStreamSalsa20: {
            Salsa20State state;
            int32_t status = Salsa20Setup(&state, key, keyLength, iv, ivLength);
            if (status != 0) return status;
            if (!DataUsable(out, input, inputLength)) status = -BAD_PARAM_ERROR;
            else Salsa20Xor(&state, input, out, size_t(inputLength));
            WipeObject(state);
            return status;
        }
        case kStreamChacha20: {
            Chacha20State state;
            int32_t status = Chacha20Setup(&state, key, keyLength, iv, ivLength, counter);
            if (status == 0 && !DataUsable(out, input, inputLength)) status = -BAD_PARAM_ERROR;
            if (status == 0) Chacha20Xor(&state, input, out, size_t(inputLength));
            WipeObject(state);
            return status;
        }
        default:
            return -BAD_FLAG_ERROR;
    }
}

int32_t StreamHex(char* outHex, int32_t outHexLength, const char* inputHex, const char* keyHex,
                  const char* ivHex, uint32_t counter, int32_t options) {
    if (outHex == nullptr) return -NULL_ERROR;
    if (IsEmpty(inputHex) || IsEmpty(keyHex) || outHexLength < 0) return -BAD_PARAM_ERROR;
    DecodedText data, key, iv;
    if (!DecodeExact(inputHex, &data)) return -BAD_FORMAT_ERROR;
    if (!DecodeExact(keyHex, &key)) return -BAD_FORMAT_ERROR;
    int32_t algorithm = options & 0xF;
    if (algorithm == kStreamSalsa20 || algorithm == kStreamChacha20) {
        if (IsEmpty(ivHex)) return -BAD_IV_ERROR;
        if (!DecodeExact(ivHex, &iv)) return -BAD_FORMAT_ERROR;
    }
    int32_t status;
    switch (algorithm) {
        case kStreamArcfour:
            status = ArcfourOneShot(data.bytes, data.bytes, int32_t(data.capacity), key.bytes,
                                    int32_t(key.capacity));
            break;
        case kStreamSalsa20:
            status = Salsa20OneShot(data.bytes, data.bytes, data.capacity, key.bytes, int32_t(key.capacity),
                                    iv.bytes, int32_t(iv.capacity));
            break;
        case kStreamChacha20:
            status = Chacha20OneShot(data.bytes, data.bytes, data.capacity, key.bytes, int32_t(key.capacity),
                                     iv.bytes, int32_t(iv.capacity), counter);
            break;
        default:
            return -BAD_FLAG_ERROR;
    }
    // No size query here: a short buffer simply cuts the text at whole bytes.
    if (status == 0) HexEncodeBounded(outHex, size_t(outHexLength) + 1, data.bytes, data.capacity);
    return status;
}

int32_t StreamFile(const char* outFile, const char* inFile, const uint8_t* key, int32_t keyLength,
                   const uint8_t* iv, int32_t ivLength, uint32_t counter, int32_t options) {
    if (IsEmpty(outFile) || IsEmpty(inFile)) return -BAD_PARAM_ERROR;
    if (SameFile(outFile, inFile)) return -DUP_ERROR;  // the output would truncate the input
    // The thread's own stream slot serves: a live stream of this thread ends here.
    StreamSlot* slot = &GetContextArea()->stream;
    if (StreamInitSlot(slot, key, keyLength, iv, ivLength, counter, options) == 0) {
        int32_t latched = ReadLatch();
        return latched != 0 ? -latched : -INTERNAL_ERROR;
    }
    FILE* in = std::fopen(inFile, "rb");
    if (in == nullptr) {
        StreamFinalSlot(slot);
        return -OPEN_ERROR;
    }
    FILE* out = std::fopen(outFile, "wb");
    if (out == nullptr) {
        std::fclose(in);
        StreamFinalSlot(slot);
        return -CREATE_ERROR;
    }
    uint8_t chunk[64];
    for (;;) {
        size_t n = std::fread(chunk, 1, sizeof chunk, in);
        if (n != 0) {
            StreamUpdateSlot(slot, chunk, chunk, int32_t(n));
            if (std::fwrite(chunk, 1, n, out) != n) break;
        }
        if (n < sizeof chunk) break;
    }
    SecureWipe(chunk, sizeof chunk);
    StreamFinalSlot(slot);
    bool readFailed = std::ferror(in) != 0;
    bool writeFailed = std::ferror(out) != 0;
    std::fclose(in);
    if (std::fclose(out) != 0 || writeFailed) return -WRITE_ERROR;
    return readFailed ? -READ_ERROR : 0;
}

int32_t Pc1File(const char* outFile, const char* inFile, const uint8_t* key, int32_t keyLength) {
    // An empty key would leave the schedule nothing to step through; absent
    // names and key are refused rather than dereferenced.
    if (keyLength < 1 || key == nullptr || outFile == nullptr || inFile == nullptr) return BAD_PARAM_ERROR;
    if (SameFile(outFile, inFile)) return DUP_ERROR;  // the output would truncate the input
    FILE* in = std::fopen(inFile, "rb");
    if (in == nullptr) return OPEN_ERROR;
    FILE* out = std::fopen(outFile, "wb");
    if (out == nullptr) {
        std::fclose(in);
        return CREATE_ERROR;
    }
    ArcfourState state;
    ArcfourSetup(&state, key, size_t(keyLength));
    uint8_t chunk[4096];
    bool writeFailed = false;
    for (size_t n; !writeFailed && (n = std::fread(chunk, 1, sizeof chunk, in)) != 0;) {
        ArcfourXor(&state, chunk, chunk, n);
        writeFailed = std::fwrite(chunk, 1, n, out) != n;
    }
    WipeObject(state);
    SecureWipe(chunk, sizeof chunk);
    bool readFailed = std::ferror(in) != 0;
    std::fclose(in);
    if (std::fclose(out) != 0 || writeFailed) return WRITE_ERROR;
    return readFailed ? READ_ERROR : 0;
}

int32_t Pc1Hex(char* outHex, int32_t outHexLength, const char* inputHex, const char* keyHex) {
    if (outHex == nullptr) return NULL_ERROR;
    if (IsEmpty(inputHex) || IsEmpty(keyHex) || outHexLength < 0) return BAD_PARAM_ERROR;
    DecodedText data, key;
    if (!DecodeExact(inputHex, &data) || !DecodeExact(keyHex, &key)) return BAD_FORMAT_ERROR;
    int32_t status = ArcfourOneShot(data.bytes, data.bytes, int32_t(data.capacity), key.bytes,
                                    int32_t(key.capacity));
    if (status == 0) HexEncodeBounded(outHex, size_t(outHexLength) + 1, data.bytes, data.capacity);
    return status;
}
