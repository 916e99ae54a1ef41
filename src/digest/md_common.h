// The buffer-and-count update shared by the 64-byte-block cores whose
// buffered length is derived from a 32+32-bit bit count.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

// Whole blocks go to CompressBlocks straight from the input in one call; the
// last of them is then copied into the block buffer, so that the record ends
// as it would had every block passed through the buffer.
template <typename Context, void (*Compress)(uint32_t*, const uint8_t*),
          void (*CompressBlocks)(uint32_t*, const uint8_t*, size_t)>
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
    size_t blocks = length / 64;
    if (blocks != 0) {
        CompressBlocks(ctx->h, data, blocks);
        std::memcpy(ctx->block, data + 64 * (blocks - 1), 64);
        data += 64 * blocks;
        length -= uint32_t(64 * blocks);
    }
    if (length != 0) std::memcpy(ctx->block, data, length);
}

// The portable way to take many blocks: one after the other.
template <void (*Compress)(uint32_t*, const uint8_t*)>
inline void CompressEach(uint32_t* h, const uint8_t* data, size_t blocks) {
    for (; blocks != 0; --blocks, data += 64) Compress(h, data);
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
