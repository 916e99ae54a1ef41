// Blowfish core and its instance of the mode engine.
#include "block/blowfish.h"

#include <cstring>

#include "block/mode_engine.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

inline uint32_t F(const BlfContext* c, uint32_t x) {
    return ((c->sBoxes[0][x >> 24] + c->sBoxes[1][(x >> 16) & 0xff]) ^ c->sBoxes[2][(x >> 8) & 0xff]) +
           c->sBoxes[3][x & 0xff];
}

}  // namespace

void BlfEncryptBlock(const BlfContext* c, uint32_t* left, uint32_t* right) {
    uint32_t l = *left, r = *right;
    for (int i = 0; i < 16; i += 2) {
        l ^= c->pArray[i];
        r ^= F(c, l);
        r ^= c->pArray[i + 1];
        l ^= F(c, r);
    }
    *left = r ^ c->pArray[17];
    *right = l ^ c->pArray[16];
}

void BlfDecryptBlock(const BlfContext* c, uint32_t* left, uint32_t* right) {
    uint32_t l = *left, r = *right;
    for (int i = 17; i > 1; i -= 2) {
        l ^= c->pArray[i];
        r ^= F(c, l);
        r ^= c->pArray[i - 1];
        l ^= F(c, r);
    }
    *left = r ^ c->pArray[0];
    *right = l ^ c->pArray[1];
}

int BlfSetKey(BlfContext* c, const uint8_t* key, size_t keyLength) {
    std::memcpy(c->pArray, kBlfInitialP, sizeof c->pArray);
    std::memcpy(c->sBoxes, kBlfInitialS, sizeof c->sBoxes);
    uint16_t j = 0;  // cycles through the key; stays on byte 0 for length 0
    for (int i = 0; i < 18; ++i) {
        uint32_t word = 0;
        for (int k = 0; k < 4; ++k) {
            word = (word << 8) | key[j];
            if (++j >= keyLength) j = 0;
        }
        c->pArray[i] ^= word;
    }
    // 521 encryptions, each chained from the last, replace P and then S.
    uint32_t l = 0, r = 0;
    for (int i = 0; i < 18; i += 2) {
        BlfEncryptBlock(c, &l, &r);
        c->pArray[i] = l;
        c->pArray[i + 1] = r;
    }
    for (auto& box : c->sBoxes) {
        for (int i = 0; i < 256; i += 2) {
            BlfEncryptBlock(c, &l, &r);
            box[i] = l;
            box[i + 1] = r;
        }
    }
    return 0;
}

namespace {

struct BlfCipher {
    using Context = BlfContext;
    static constexpr size_t kBlock = 8;
    static void Encrypt(const BlfContext& c, const uint8_t* in, uint8_t* out) {
        uint32_t l = Load32Be(in), r = Load32Be(in + 4);
        BlfEncryptBlock(&c, &l, &r);
        Store32Be(out, l);
        Store32Be(out + 4, r);
    }
    static void Decrypt(const BlfContext& c, const uint8_t* in, uint8_t* out) {
        uint32_t l = Load32Be(in), r = Load32Be(in + 4);
        BlfDecryptBlock(&c, &l, &r);
        Store32Be(out, l);
        Store32Be(out + 4, r);
    }
    static void LoadRegister(const BlfContext& c, uint8_t* reg) {
        Store32Be(reg, c.iv[0]);
        Store32Be(reg + 4, c.iv[1]);
    }
    static void StoreRegister(BlfContext& c, const uint8_t* reg) {
        c.iv[0] = Load32Be(reg);
        c.iv[1] = Load32Be(reg + 4);
    }
};

}  // namespace

int BlfSetupMode(BlfContext* ctx, int32_t mode, const uint8_t* key, size_t keyLength, int32_t direction,
                 const uint8_t* iv) {
    if (mode != 0 && iv == nullptr) return BAD_IV_ERROR;
    if (uint32_t(mode) > mode_engine::kCtr) return BAD_MODE_ERROR;
    ctx->direction = uint32_t(direction);
    ctx->mode = uint32_t(mode);
    if (keyLength > kBlfMaxKeyLength) return BAD_KEY_LEN_ERROR;
    if (key == nullptr) return BAD_KEY_ERROR;
    BlfSetKey(ctx, key, keyLength);
    if (mode != 0) {
        ctx->iv[0] = ctx->initialIv[0] = Load32Be(iv);
        ctx->iv[1] = ctx->initialIv[1] = Load32Be(iv + 4);
    }
    return 0;
}

int BlfProcess(BlfContext* ctx, uint8_t* output, const uint8_t* input, size_t length) {
    return mode_engine::Process<BlfCipher>(ctx, output, input, length);
}

int BlfEcbProcess(const BlfContext* ctx, uint8_t* output, const uint8_t* input, size_t length,
                  int32_t direction) {
    return mode_engine::ProcessEcb<BlfCipher>(ctx, output, input, length, direction != 0);
}

void BlfWipeContext(BlfContext* ctx) {
    if (ctx != nullptr) WipeObject(*ctx);
}
