// AES core (FIPS 197), table-driven with 32-bit lookups on big-endian words,
// and its instance of the mode engine. Not constant-time. Each entry hands
// over to the AES-NI code (aes_x86.h) when the processor has it.
#include "block/aes.h"

#include <cstring>

#include "block/aes_x86.h"
#include "block/mode_engine.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

// S-box applied to each byte of a word, through Te4.
inline uint32_t SubWord(uint32_t t) {
    return (kTe4[t >> 24] & 0xff000000u) ^ (kTe4[(t >> 16) & 0xff] & 0x00ff0000u) ^
           (kTe4[(t >> 8) & 0xff] & 0x0000ff00u) ^ (kTe4[t & 0xff] & 0x000000ffu);
}
// SubWord(RotWord(t)).
inline uint32_t SubRotWord(uint32_t t) {
    return (kTe4[(t >> 16) & 0xff] & 0xff000000u) ^ (kTe4[(t >> 8) & 0xff] & 0x00ff0000u) ^
           (kTe4[t & 0xff] & 0x0000ff00u) ^ (kTe4[t >> 24] & 0x000000ffu);
}

inline void EncryptRound(const uint32_t* rk, const uint32_t s[4], uint32_t t[4]) {
    t[0] = kTe0[s[0] >> 24] ^ kTe1[(s[1] >> 16) & 0xff] ^ kTe2[(s[2] >> 8) & 0xff] ^ kTe3[s[3] & 0xff] ^ rk[0];
    t[1] = kTe0[s[1] >> 24] ^ kTe1[(s[2] >> 16) & 0xff] ^ kTe2[(s[3] >> 8) & 0xff] ^ kTe3[s[0] & 0xff] ^ rk[1];
    t[2] = kTe0[s[2] >> 24] ^ kTe1[(s[3] >> 16) & 0xff] ^ kTe2[(s[0] >> 8) & 0xff] ^ kTe3[s[1] & 0xff] ^ rk[2];
    t[3] = kTe0[s[3] >> 24] ^ kTe1[(s[0] >> 16) & 0xff] ^ kTe2[(s[1] >> 8) & 0xff] ^ kTe3[s[2] & 0xff] ^ rk[3];
}

inline void DecryptRound(const uint32_t* rk, const uint32_t s[4], uint32_t t[4]) {
    t[0] = kTd0[s[0] >> 24] ^ kTd1[(s[3] >> 16) & 0xff] ^ kTd2[(s[2] >> 8) & 0xff] ^ kTd3[s[1] & 0xff] ^ rk[0];
    t[1] = kTd0[s[1] >> 24] ^ kTd1[(s[0] >> 16) & 0xff] ^ kTd2[(s[3] >> 8) & 0xff] ^ kTd3[s[2] & 0xff] ^ rk[1];
    t[2] = kTd0[s[2] >> 24] ^ kTd1[(s[1] >> 16) & 0xff] ^ kTd2[(s[0] >> 8) & 0xff] ^ kTd3[s[3] & 0xff] ^ rk[2];
    t[3] = kTd0[s[3] >> 24] ^ kTd1[(s[2] >> 16) & 0xff] ^ kTd2[(s[1] >> 8) & 0xff] ^ kTd3[s[0] & 0xff] ^ rk[3];
}

// One byte, chosen by the mask, of a repeated-byte table entry.
inline uint32_t Pick(const uint32_t* table, uint32_t index, uint32_t mask) { return table[index & 0xff] & mask; }

}  // namespace

int AesSetEncryptKey(uint32_t* rk, const uint8_t* key, int keyBits) {
    if (AesNiUsable() && (keyBits == 128 || keyBits == 192 || keyBits == 256)) {
        return AesNiSetEncryptKey(rk, key, keyBits);
    }
    // Words are loaded only as far as the size tested so far, so a short key
    // is never read beyond its end.
    rk[0] = Load32Be(key);
    rk[1] = Load32Be(key + 4);
    rk[2] = Load32Be(key + 8);
    rk[3] = Load32Be(key + 12);
    if (keyBits == 128) {
        for (int i = 0; i < 10; ++i, rk += 4) {
            rk[4] = rk[0] ^ SubRotWord(rk[3]) ^ kAesRoundConstants[i];
            rk[5] = rk[1] ^ rk[4];
            rk[6] = rk[2] ^ rk[5];
            rk[7] = rk[3] ^ rk[6];
        }
        return 10;
    }
    rk[4] = Load32Be(key + 16);
    rk[5] = Load32Be(key + 20);
    if (keyBits == 192) {
        for (int i = 0;; ++i, rk += 6) {
            rk[6] = rk[0] ^ SubRotWord(rk[5]) ^ kAesRoundConstants[i];
            rk[7] = rk[1] ^ rk[6];
            rk[8] = rk[2] ^ rk[7];
            rk[9] = rk[3] ^ rk[8];
            if (i == 7) return 12;
            rk[10] = rk[4] ^ rk[9];
            rk[11] = rk[5] ^ rk[10];
        }
    }
    rk[6] = Load32Be(key + 24);
    rk[7] = Load32Be(key + 28);
    if (keyBits == 256) {
        for (int i = 0;; ++i, rk += 8) {
            rk[8] = rk[0] ^ SubRotWord(rk[7]) ^ kAesRoundConstants[i];
            rk[9] = rk[1] ^ rk[8];
            rk[10] = rk[2] ^ rk[9];
            rk[11] = rk[3] ^ rk[10];
            if (i == 6) return 14;
            rk[12] = rk[4] ^ SubWord(rk[11]);
            rk[13] = rk[5] ^ rk[12];
            rk[14] = rk[6] ^ rk[13];
            rk[15] = rk[7] ^ rk[14];
        }
    }
    return 0;
}

int AesSetDecryptKey(uint32_t* rk, const uint8_t* key, int keyBits) {
    if (AesNiUsable() && (keyBits == 128 || keyBits == 192 || keyBits == 256)) {
        return AesNiSetDecryptKey(rk, key, keyBits);
    }
    const int rounds = AesSetEncryptKey(rk, key, keyBits);
    if (rounds == 0) return 0;
    for (int i = 0, j = 4 * rounds; i < j; i += 4, j -= 4) {
        for (int k = 0; k < 4; ++k) {
            const uint32_t t = rk[i + k];
            rk[i + k] = rk[j + k];
            rk[j + k] = t;
        }
    }
    // InvMixColumns of a word: S-box each byte (Te4), then Td0..Td3 undo it
    // and mix in one step.
    for (int i = 4; i < 4 * rounds; ++i) {
        const uint32_t w = rk[i];
        rk[i] = kTd0[kTe4[w >> 24] & 0xff] ^ kTd1[kTe4[(w >> 16) & 0xff] & 0xff] ^
                kTd2[kTe4[(w >> 8) & 0xff] & 0xff] ^ kTd3[kTe4[w & 0xff] & 0xff];
    }
    return rounds;
}

namespace {

// The table-driven transforms, which the portable engine calls block by block.
void TableEncryptBlock(const uint32_t* rk, int rounds, const uint8_t* input, uint8_t* output) {
    uint32_t s[4], t[4];
    s[0] = Load32Be(input) ^ rk[0];
    s[1] = Load32Be(input + 4) ^ rk[1];
    s[2] = Load32Be(input + 8) ^ rk[2];
    s[3] = Load32Be(input + 12) ^ rk[3];
    EncryptRound(rk + 4, s, t);
    rk += 8;
    for (int r = rounds / 2 - 1; r > 0; --r, rk += 8) {
        EncryptRound(rk, t, s);
        EncryptRound(rk + 4, s, t);
    }
    Store32Be(output, Pick(kTe4, t[0] >> 24, 0xff000000u) ^ Pick(kTe4, t[1] >> 16, 0x00ff0000u) ^
                          Pick(kTe4, t[2] >> 8, 0x0000ff00u) ^ Pick(kTe4, t[3], 0xffu) ^ rk[0]);
    Store32Be(output + 4, Pick(kTe4, t[1] >> 24, 0xff000000u) ^ Pick(kTe4, t[2] >> 16, 0x00ff0000u) ^
                              Pick(kTe4, t[3] >> 8, 0x0000ff00u) ^ Pick(kTe4, t[0], 0xffu) ^ rk[1]);
    Store32Be(output + 8, Pick(kTe4, t[2] >> 24, 0xff000000u) ^ Pick(kTe4, t[3] >> 16, 0x00ff0000u) ^
                              Pick(kTe4, t[0] >> 8, 0x0000ff00u) ^ Pick(kTe4, t[1], 0xffu) ^ rk[2]);
    Store32Be(output + 12, Pick(kTe4, t[3] >> 24, 0xff000000u) ^ Pick(kTe4, t[0] >> 16, 0x00ff0000u) ^
                               Pick(kTe4, t[1] >> 8, 0x0000ff00u) ^ Pick(kTe4, t[2], 0xffu) ^ rk[3]);
}

void TableDecryptBlock(const uint32_t* rk, int rounds, const uint8_t* input, uint8_t* output) {
    uint32_t s[4], t[4];
    s[0] = Load32Be(input) ^ rk[0];
    s[1] = Load32Be(input + 4) ^ rk[1];
    s[2] = Load32Be(input + 8) ^ rk[2];
    s[3] = Load32Be(input + 12) ^ rk[3];
    DecryptRound(rk + 4, s, t);
    rk += 8;
    for (int r = rounds / 2 - 1; r > 0; --r, rk += 8) {
        DecryptRound(rk, t, s);
        DecryptRound(rk + 4, s, t);
    }
    Store32Be(output, Pick(kTd4, t[0] >> 24, 0xff000000u) ^ Pick(kTd4, t[3] >> 16, 0x00ff0000u) ^
                          Pick(kTd4, t[2] >> 8, 0x0000ff00u) ^ Pick(kTd4, t[1], 0xffu) ^ rk[0]);
    Store32Be(output + 4, Pick(kTd4, t[1] >> 24, 0xff000000u) ^ Pick(kTd4, t[0] >> 16, 0x00ff0000u) ^
                              Pick(kTd4, t[3] >> 8, 0x0000ff00u) ^ Pick(kTd4, t[2], 0xffu) ^ rk[1]);
    Store32Be(output + 8, Pick(kTd4, t[2] >> 24, 0xff000000u) ^ Pick(kTd4, t[1] >> 16, 0x00ff0000u) ^
                              Pick(kTd4, t[0] >> 8, 0x0000ff00u) ^ Pick(kTd4, t[3], 0xffu) ^ rk[2]);
    Store32Be(output + 12, Pick(kTd4, t[3] >> 24, 0xff000000u) ^ Pick(kTd4, t[2] >> 16, 0x00ff0000u) ^
                               Pick(kTd4, t[1] >> 8, 0x0000ff00u) ^ Pick(kTd4, t[0], 0xffu) ^ rk[3]);
}

}  // namespace

void AesEncryptBlock(const uint32_t* rk, int rounds, const uint8_t* input, uint8_t* output) {
    if (AesNiUsable() && IsAesRoundCount(uint32_t(rounds))) {
        AesNiEncryptBlock(rk, rounds, input, output);
    } else {
        TableEncryptBlock(rk, rounds, input, output);
    }
}

void AesDecryptBlock(const uint32_t* rk, int rounds, const uint8_t* input, uint8_t* output) {
    if (AesNiUsable() && IsAesRoundCount(uint32_t(rounds))) {
        AesNiDecryptBlock(rk, rounds, input, output);
    } else {
        TableDecryptBlock(rk, rounds, input, output);
    }
}

namespace {

struct AesCipher {
    using Context = AesContext;
    static constexpr size_t kBlock = 16;
    static void Encrypt(const AesContext& c, const uint8_t* in, uint8_t* out) {
        TableEncryptBlock(c.roundKeys, int(c.rounds), in, out);
    }
    static void Decrypt(const AesContext& c, const uint8_t* in, uint8_t* out) {
        TableDecryptBlock(c.roundKeys, int(c.rounds), in, out);
    }
    static void LoadRegister(const AesContext& c, uint8_t* reg) { std::memcpy(reg, c.iv, 16); }
    static void StoreRegister(AesContext& c, const uint8_t* reg) { std::memcpy(c.iv, reg, 16); }
};

}  // namespace

int AesSetupMode(AesContext* ctx, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                 const uint8_t* iv) {
    if (mode != 0 && iv == nullptr) return BAD_IV_ERROR;
    if (uint32_t(mode) > mode_engine::kCtr) return BAD_MODE_ERROR;
    ctx->direction = uint32_t(direction);
    ctx->mode = uint32_t(mode);
    int keyBits;
    switch (keyLength) {
    case 16: keyBits = 128; break;
    case 24: keyBits = 192; break;
    case 32: keyBits = 256; break;
    default: return BAD_KEY_LEN_ERROR;
    }
    if (key == nullptr) return BAD_KEY_ERROR;
    ctx->keyBits = uint32_t(keyBits);
    // Only ECB and CBC run the inverse transform; the other modes use the
    // forward one in both directions.
    const bool inverse = direction == 0 && uint32_t(mode) <= mode_engine::kCbc;
    ctx->rounds = uint32_t(inverse ? AesSetDecryptKey(ctx->roundKeys, key, keyBits)
                                   : AesSetEncryptKey(ctx->roundKeys, key, keyBits));
    if (mode != 0) {
        std::memcpy(ctx->iv, iv, 16);
        std::memcpy(ctx->initialIv, iv, 16);
    }
    return 0;
}

int AesProcess(AesContext* ctx, uint8_t* output, const uint8_t* input, size_t length) {
    // The processor's instructions when it has them: same results, decided
    // once for the whole run.
    if (AesNiUsable() && IsAesRoundCount(ctx->rounds)) {
        const int status = mode_engine::Screen<16>(ctx->mode, output, input, length);
        if (status == 0) AesNiProcess(ctx, output, input, length);
        return status;
    }
    return mode_engine::Process<AesCipher>(ctx, output, input, length);
}

void AesWipeContext(AesContext* ctx) {
    if (ctx != nullptr) WipeObject(*ctx);
}
