// The GHASH step over a GcmKeyTables multiples table, shared by the whole-
// message routines and the incremental record. Inline so that the block
// loops carry no call per block.
#pragma once
#include <cstdint>

#include "aead/gcm.h"
#include "util/bytes.h"

// Entry b: the reduction that byte b, shifted out of the low end of a 128-bit
// value, causes in its top word.
extern const uint32_t kGcmReduction[256];

// y = y * H: the bytes of y from the last to the first, each a table read,
// with an 8-bit shift and one reduction read between them.
inline void GhashMultiply(uint32_t y[4], const uint32_t (*table)[4]) {
    const uint32_t* e = table[y[3] & 0xff];
    uint32_t z0 = e[0], z1 = e[1], z2 = e[2], z3 = e[3];
    for (int k = 14; k >= 0; --k) {
        uint32_t b = (y[k >> 2] >> (24 - 8 * (k & 3))) & 0xff;
        uint32_t dropped = z3 & 0xff;
        z3 = (z3 >> 8) | (z2 << 24);
        z2 = (z2 >> 8) | (z1 << 24);
        z1 = (z1 >> 8) | (z0 << 24);
        z0 = (z0 >> 8) ^ kGcmReduction[dropped];
        e = table[b];
        z0 ^= e[0];
        z1 ^= e[1];
        z2 ^= e[2];
        z3 ^= e[3];
    }
    y[0] = z0;
    y[1] = z1;
    y[2] = z2;
    y[3] = z3;
}

// XORs 16 bytes into y and multiplies.
inline void GhashBlock(uint32_t y[4], const uint32_t (*table)[4], const uint8_t block[16]) {
    y[0] ^= Load32Be(block);
    y[1] ^= Load32Be(block + 4);
    y[2] ^= Load32Be(block + 8);
    y[3] ^= Load32Be(block + 12);
    GhashMultiply(y, table);
}

// Whole blocks, then a zero-padded tail.
inline void GhashPadded(uint32_t y[4], const uint32_t (*table)[4], const uint8_t* data, size_t length) {
    while (length >= 16) {
        GhashBlock(y, table, data);
        data += 16;
        length -= 16;
    }
    if (length != 0) {
        uint8_t last[16] = {};
        for (size_t i = 0; i < length; ++i) last[i] = data[i];
        GhashBlock(y, table, last);
    }
}
