// The buffer-and-count update shared by the 64-byte-block cores whose
// buffered length is derived from a 32+32-bit bit count.
#pragma once
#include <cstdint>
#include <cstring>

template <typename Context, void (*Compress)(uint32_t*, const uint8_t*)>
inline void MdUpdate64(Context* ctx, const uint8_t* data, uint32_t length) {
    if (length == 0) return;
    uint32_t buffered = (ctx->countLow >> 3) & 63;
    uint32_t low = ctx->countLow + (length << 3);
    if (low < ctx->countLow) ++ctx->countHigh;
    ctx->countLow = low;
    ctx->countHigh += length >> 29;
    if (buffered != 0) {
        uint32_t room = 64 - buffered;
        if (length < room) {
            std::memcpy(ctx->block + buffered, data, length);
            return;
        }
        std::memcpy(ctx->block + buffered, data, room);
        Compress(ctx->h, ctx->block);
        data += room;
        length -= room;
    }
    while (length >= 64) {
        std::memcpy(ctx->block, data, 64);
        Compress(ctx->h, ctx->block);
        data += 64;
        length -= 64;
    }
    if (length != 0) std::memcpy(ctx->block, data, length);
}

// Pads the block buffer (0x80, zeros, the 64-bit count big- or little-endian
// in the last 8 bytes) and compresses, once more when the count does not fit.
template <typename Context, void (*Compress)(uint32_t*, const uint8_t*), bool BigEndian>
inline void MdPad64(Context* ctx) {
    uint32_t buffered = (ctx->countLow >> 3) & 63;
    ctx->block[buffered++] = 0x80;
    if (buffered > 56) {
        std::memset(ctx->block + buffered, 0, 64 - buffered);
        Compress(ctx->h, ctx->block);
        buffered = 0;
    }
    std::memset(ctx->block + buffered, 0, 56 - buffered);
    for (int i = 0; i < 4; ++i) {
        int shift = BigEndian ? 24 - 8 * i : 8 * i;
        ctx->block[56 + (BigEndian ? i : i + 4)] = uint8_t(ctx->countHigh >> shift);
        ctx->block[56 + (BigEndian ? i + 4 : i)] = uint8_t(ctx->countLow >> shift);
    }
    Compress(ctx->h, ctx->block);
}
