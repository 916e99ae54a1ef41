// RIPEMD-160. Shares the record and the start routine of SHA-1, whose five
// start words are the same.
#pragma once
#include <cstdint>

#include "digest/sha1.h"

using Ripemd160Context = Sha1Context;

// Sha1Start starts this digest as well.
inline void Ripemd160Start(Ripemd160Context* ctx) { Sha1Start(ctx); }
void Ripemd160Update(Ripemd160Context* ctx, const uint8_t* data, uint32_t length);
// Writes 20 bytes. Clears only the first four bytes of the record, as SHA-1.
void Ripemd160Final(uint8_t* output, Ripemd160Context* ctx);
void Ripemd160Compress(uint32_t h[5], const uint8_t* block);
