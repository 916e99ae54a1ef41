// MD2, RFC 1319: a 16-byte state, a running checksum and 18 passes of the
// byte substitution per block. The final zeroes the whole record.
#include "digest/md2.h"

#include <cstring>

#include "util/wipe.h"

namespace {
// The substitution built from the digits of pi, as published.
constexpr uint8_t kPiSubst[256] = {
  41, 46, 67, 201, 162, 216, 124, 1, 61, 54, 84, 161, 236, 240, 6,
  19, 98, 167, 5, 243, 192, 199, 115, 140, 152, 147, 43, 217, 188,
  76, 130, 202, 30, 155, 87, 60, 253, 212, 224, 22, 103, 66, 111, 24,
  138, 23, 229, 18, 190, 78, 196, 214, 218, 158, 222, 73, 160, 251,
  245, 142, 187, 47, 238, 122, 169, 104, 121, 145, 21, 178, 7, 63,
  148, 194, 16, 137, 11, 34, 95, 33, 128, 127, 93, 154, 90, 144, 50,
  39, 53, 62, 204, 231, 191, 247, 151, 3, 255, 25, 48, 179, 72, 165,
  181, 209, 215, 94, 146, 42, 172, 86, 170, 198, 79, 184, 56, 210,
  150, 164, 125, 182, 118, 252, 107, 226, 156, 116, 4, 241, 69, 157,
  112, 89, 100, 113, 135, 32, 134, 91, 207, 101, 230, 45, 168, 2, 27,
  96, 37, 173, 174, 176, 185, 246, 28, 70, 97, 105, 52, 64, 126, 15,
  85, 71, 163, 35, 221, 81, 175, 58, 195, 92, 249, 206, 186, 197,
  234, 38, 44, 83, 13, 110, 133, 40, 132, 9, 211, 223, 205, 244, 65,
  129, 77, 82, 106, 220, 55, 200, 108, 193, 171, 250, 36, 225, 123,
  8, 12, 189, 177, 74, 120, 136, 149, 139, 227, 99, 232, 109, 233,
  203, 213, 254, 59, 0, 29, 57, 242, 239, 183, 14, 102, 88, 208, 228,
  166, 119, 114, 248, 235, 117, 75, 10, 49, 68, 80, 180, 143, 237,
  31, 26, 219, 153, 141, 51, 159, 17, 131, 20
};

void Md2Transform(Md2Context* ctx, const uint8_t* block) {
    uint8_t x[48];
    for (int j = 0; j < 16; ++j) {
        x[j] = ctx->state[j];
        x[16 + j] = block[j];
        x[32 + j] = uint8_t(ctx->state[j] ^ block[j]);
    }
    uint8_t t = 0;
    for (int round = 0; round < 18; ++round) {
        for (int k = 0; k < 48; ++k) t = x[k] ^= kPiSubst[t];
        t = uint8_t(t + round);
    }
    std::memcpy(ctx->state, x, 16);
    // The checksum is updated from the plain block; L is its last byte.
    uint8_t l = ctx->checksum[15];
    for (int j = 0; j < 16; ++j) l = ctx->checksum[j] ^= kPiSubst[block[j] ^ l];
    SecureWipe(x, sizeof x);
}
}  // namespace

void Md2Start(Md2Context* ctx) { std::memset(ctx, 0, sizeof *ctx); }

void Md2Update(Md2Context* ctx, const uint8_t* data, uint32_t length) {
    while (length != 0) {
        uint32_t take = 16 - ctx->count;
        if (take > length) take = length;
        std::memcpy(ctx->block + ctx->count, data, take);
        ctx->count += take;
        data += take;
        length -= take;
        if (ctx->count == 16) {
            Md2Transform(ctx, ctx->block);
            ctx->count = 0;
        }
    }
}

void Md2Final(uint8_t* output, Md2Context* ctx) {
    // A run of n bytes of value n, 1 to 16: a full block when nothing is buffered.
    uint8_t pad = uint8_t(16 - ctx->count);
    std::memset(ctx->block + ctx->count, pad, pad);
    Md2Transform(ctx, ctx->block);
    uint8_t checksum[16];
    std::memcpy(checksum, ctx->checksum, 16);
    Md2Transform(ctx, checksum);
    std::memcpy(output, ctx->state, 16);
    SecureWipe(checksum, sizeof checksum);
    WipeObject(*ctx);
}
