// File encryption in chunks of 4096 bytes through the mode engine. The
// buffers have a fixed size, so a file of any size takes the same memory.
#include "block/file_crypt.h"

#include <cstdio>
#include <cstring>

#include "block/aes.h"
#include "block/blowfish.h"
#include "block/des.h"
#include "block/padding.h"
#include "cipher/select.h"
#include "convert/codec.h"
#include "util/same_file.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

struct AesFile {
    using Context = AesContext;
    static constexpr size_t kBlock = 16;
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                     const uint8_t* iv) {
        return AesSetupMode(c, mode, key, keyLength, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return AesProcess(c, out, in, n); }
    static void Wipe(Context* c) { AesWipeContext(c); }
};

struct DesFile {
    using Context = DesContext;
    static constexpr size_t kBlock = 8;
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t, int32_t direction, const uint8_t* iv) {
        return DesSetupMode(c, mode, key, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return DesProcess(c, out, in, n); }
    static void Wipe(Context* c) { DesWipeContext(c); }
};

struct TdeaFile {
    using Context = TdeaContext;
    static constexpr size_t kBlock = 8;
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t, int32_t direction, const uint8_t* iv) {
        return TdeaSetupMode(c, mode, key, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return TdeaProcess(c, out, in, n); }
    static void Wipe(Context* c) { TdeaWipeContext(c); }
};

struct BlfFile {
    using Context = BlfContext;
    static constexpr size_t kBlock = 8;
    static int Setup(Context* c, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                     const uint8_t* iv) {
        return BlfSetupMode(c, mode, key, keyLength, direction, iv);
    }
    static int Process(Context* c, uint8_t* out, const uint8_t* in, size_t n) { return BlfProcess(c, out, in, n); }
    static void Wipe(Context* c) { BlfWipeContext(c); }
};

inline bool WriteAll(FILE* out, const uint8_t* data, size_t n) { return n == 0 || std::fwrite(data, 1, n, out) == n; }

// A read shorter than asked is the end of the file; read errors are not told
// apart from it.
inline size_t ReadChunk(FILE* in, uint8_t* buffer) { return std::fread(buffer, 1, kFileChunk, in); }

template <class F>
int EncryptBody(typename F::Context* ctx, FILE* in, FILE* out, int32_t mode, int32_t options) {
    constexpr size_t B = F::kBlock;
    uint8_t buffer[kFileChunk];
    uint8_t last[B];
    int status = 0;
    size_t got = ReadChunk(in, buffer);
    while (status == 0 && got == kFileChunk) {
        status = F::Process(ctx, buffer, buffer, got);
        if (status == 0 && !WriteAll(out, buffer, got)) status = WRITE_ERROR;
        if (status == 0) got = ReadChunk(in, buffer);
    }
    if (status == 0 && mode <= 1) {
        // The tail and its padding make one last block; a whole number of
        // blocks gets a whole block of padding.
        const size_t r = got % B;
        const size_t whole = got - r;
        if (whole != 0) {
            status = F::Process(ctx, buffer, buffer, whole);
            if (status == 0 && !WriteAll(out, buffer, whole)) status = WRITE_ERROR;
        }
        if (status == 0) {
            std::memcpy(last, buffer + whole, r);
            PadFill(last + r, B - r, options);
            status = F::Process(ctx, last, last, B);
            if (status == 0 && !WriteAll(out, last, B)) status = WRITE_ERROR;
        }
    } else if (status == 0 && got != 0) {
        status = F::Process(ctx, buffer, buffer, got);
        if (status == 0 && !WriteAll(out, buffer, got)) status = WRITE_ERROR;
    }
    SecureWipe(buffer, sizeof buffer);
    SecureWipe(last, sizeof last);
    return status;
}

template <class F>
int DecryptBody(typename F::Context* ctx, FILE* in, FILE* out, int32_t mode, int32_t options) {
    constexpr size_t B = F::kBlock;
    // The last chunk stays in hand until its padding can be stripped.
    uint8_t readBuffer[kFileChunk];
    uint8_t plain[kFileChunk];
    size_t plainLength = 0;  // 0: plain holds no chunk yet
    const bool padded = mode <= 1 && (options & kPaddingMask) != OPT_PAD_NONE && (options & OPT_LEAVE_PADDING) == 0;
    int status = 0;
    size_t got = ReadChunk(in, readBuffer);
    uint64_t total = got;
    while (status == 0 && got == kFileChunk) {
        if (plainLength != 0 && !WriteAll(out, plain, plainLength)) status = WRITE_ERROR;
        if (status == 0) status = F::Process(ctx, plain, readBuffer, got);
        plainLength = got;
        if (status == 0) {
            got = ReadChunk(in, readBuffer);
            total += got;
        }
    }
    if (status == 0 && padded) {
        if (total < B || got % B != 0) {
            status = BAD_LENGTH_ERROR;
        } else {
            if (got != 0) {
                if (plainLength != 0 && !WriteAll(out, plain, plainLength)) status = WRITE_ERROR;
                if (status == 0) status = F::Process(ctx, plain, readBuffer, got);
                plainLength = got;
            }
            if (status == 0) {
                const int32_t count = PadCheck(plain, plainLength, B, options);
                if (count < 1) {
                    status = DECRYPT_ERROR;
                } else if (!WriteAll(out, plain, plainLength - size_t(count))) {
                    status = WRITE_ERROR;
                }
            }
        }
    } else if (status == 0) {
        if (plainLength != 0 && !WriteAll(out, plain, plainLength)) status = WRITE_ERROR;
        if (status == 0 && got != 0) {
            status = F::Process(ctx, plain, readBuffer, got);
            if (status == 0 && !WriteAll(out, plain, got)) status = WRITE_ERROR;
        }
    }
    SecureWipe(readBuffer, sizeof readBuffer);
    SecureWipe(plain, sizeof plain);
    return status;
}

template <class F>
int FileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength, int32_t direction,
              int32_t mode, const uint8_t* iv, int32_t options) {
    constexpr size_t B = F::kBlock;
    if (outputFile == nullptr || outputFile[0] == '\0' || inputFile == nullptr || inputFile[0] == '\0')
        return BAD_PARAM_ERROR;
    // One file under two names (links, "./name") would be truncated before
    // it is read: refuse before anything is deleted or created.
    if (SameFile(outputFile, inputFile)) return DUP_ERROR;
    // An existing output is lost even if the input then cannot be opened.
    std::remove(outputFile);
    FILE* in = std::fopen(inputFile, "rb");
    if (in == nullptr) return OPEN_ERROR;
    FILE* out = std::fopen(outputFile, "wb");
    if (out == nullptr) {
        std::fclose(in);
        return CREATE_ERROR;
    }

    int status = 0;
    uint8_t prefixIv[B];
    const bool prefix = (options & OPT_PREFIX_IV) != 0 && mode != 0;
    if (direction != 0 && prefix && iv != nullptr) {
        if (!WriteAll(out, iv, B)) status = WRITE_ERROR;
    } else if (direction == 0 && prefix) {
        // The IV in the file wins over any the caller gave.
        if (std::fread(prefixIv, 1, B, in) != B) {
            status = READ_ERROR;
        } else {
            iv = prefixIv;
        }
    }
    if (status == 0) {
        typename F::Context ctx;
        status = F::Setup(&ctx, mode, key, keyLength, direction, iv);
        if (status == 0)
            status = direction != 0 ? EncryptBody<F>(&ctx, in, out, mode, options)
                                    : DecryptBody<F>(&ctx, in, out, mode, options);
        F::Wipe(&ctx);
    }
    SecureWipe(prefixIv, sizeof prefixIv);
    std::fclose(in);
    if (std::fclose(out) != 0 && status == 0) status = WRITE_ERROR;
    if (status != 0) std::remove(outputFile);
    return status;
}

// The hex front of the file routine. keyCheck gives the code for a decoded
// key length (0 when acceptable).
template <class F, size_t KeyCapacity, class KeyCheck>
int FileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction, int32_t mode,
            const char* ivHex, KeyCheck keyCheck) {
    constexpr size_t B = F::kBlock;
    uint8_t iv[B];
    uint8_t key[KeyCapacity];
    const uint8_t* ivPointer = nullptr;
    int status = 0;
    if (ivHex != nullptr && ivHex[0] != '\0') {
        if (HexDecodeStrict(iv, B, ivHex) != int64_t(B)) {
            status = BAD_IV_ERROR;
        } else {
            ivPointer = iv;
        }
    }
    if (status == 0 && (keyHex == nullptr || keyHex[0] == '\0')) status = BAD_PARAM_ERROR;
    int64_t keyCount = 0;
    if (status == 0) {
        keyCount = HexDecodeStrict(key, KeyCapacity, keyHex);
        if (keyCount <= 0) {
            status = BAD_KEY_ERROR;
        } else {
            status = keyCheck(keyCount);
        }
    }
    if (status == 0)
        status = FileCrypt<F>(outputFile, inputFile, key, size_t(keyCount), direction, mode, ivPointer, 0);
    SecureWipe(key, sizeof key);
    SecureWipe(iv, sizeof iv);
    return status;
}

template <int64_t Expected>
int ExactKey(int64_t count) {
    return count == Expected ? 0 : BAD_KEY_LEN_ERROR;
}

}  // namespace

int AesFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength,
                 int32_t direction, int32_t mode, const uint8_t* iv, int32_t options) {
    return FileCrypt<AesFile>(outputFile, inputFile, key, keyLength, direction, mode, iv, options);
}

int DesFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                 int32_t mode, const uint8_t* iv, int32_t options) {
    return FileCrypt<DesFile>(outputFile, inputFile, key, 8, direction, mode, iv, options);
}

int TdeaFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, int32_t direction,
                  int32_t mode, const uint8_t* iv, int32_t options) {
    return FileCrypt<TdeaFile>(outputFile, inputFile, key, 24, direction, mode, iv, options);
}

int BlfFileCrypt(const char* outputFile, const char* inputFile, const uint8_t* key, size_t keyLength,
                 int32_t direction, int32_t mode, const uint8_t* iv, int32_t options) {
    return FileCrypt<BlfFile>(outputFile, inputFile, key, keyLength, direction, mode, iv, options);
}

int AesFileHex(const char* outputFile, const char* inputFile, const char* keyHex, size_t keyLength,
               int32_t direction, int32_t mode, const char* ivHex) {
    return FileHex<AesFile, 32>(outputFile, inputFile, keyHex, direction, mode, ivHex, [keyLength](int64_t count) {
        return count == int64_t(keyLength) ? 0 : BAD_KEY_LEN_ERROR;
    });
}

int DesFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction, int32_t mode,
               const char* ivHex) {
    return FileHex<DesFile, 8>(outputFile, inputFile, keyHex, direction, mode, ivHex, ExactKey<8>);
}

int BlfFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction, int32_t mode,
               const char* ivHex) {
    return FileHex<BlfFile, kBlfMaxKeyLength>(outputFile, inputFile, keyHex, direction, mode, ivHex,
                                              [](int64_t count) {
                                                  return count > int64_t(kBlfMaxKeyLength) ? BAD_KEY_LEN_ERROR : 0;
                                              });
}

int TdeaFileHex(const char* outputFile, const char* inputFile, const char* keyHex, int32_t direction,
                const char* modeText, const char* ivHex) {
    if (outputFile == nullptr || outputFile[0] == '\0' || inputFile == nullptr || inputFile[0] == '\0')
        return BAD_PARAM_ERROR;
    const int mode = ParseModeWord(modeText);
    if ((ivHex == nullptr || ivHex[0] == '\0') && mode != 0) return BAD_PARAM_ERROR;
    return FileHex<TdeaFile, 24>(outputFile, inputFile, keyHex, direction, mode, ivHex, [mode](int64_t count) {
        if (count != 24) return BAD_KEY_LEN_ERROR;
        return mode < 0 ? BAD_MODE_ERROR : 0;
    });
}
