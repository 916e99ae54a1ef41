// Poly1305 block kernels in wider limbs, chosen at run time by the portable
// core (flags in util/cpu.h). They work on the accumulator and key in 64-bit
// limbs and give the same value modulo 2^130 - 5 as the 26-bit core; the
// context record keeps its 26-bit limbs, converted on the way in and out.
#pragma once
#include <cstddef>
#include <cstdint>

struct Poly1305Context;

// h = h0 + h1 2^64 + h2 2^128 with h2 a few bits at most; r = r0 + r1 2^64,
// clamped, so r1 is a multiple of 4 and 2^130 = 5 gives s1 = 5 r1 / 4.
struct Poly1305Wide {
    uint64_t h0, h1, h2;
    uint64_t r0, r1, s1;
};

void Poly1305WideLoad(Poly1305Wide* wide, const Poly1305Context* ctx);
// Writes h back in 26-bit limbs, each below 2^26 (the value is below 2^130
// plus a little, as the portable core also allows).
void Poly1305WideStore(Poly1305Context* ctx, const Poly1305Wide* wide);

// Whole 16-byte blocks, hibit 1 for message blocks and 0 for the padded last
// one. 64-bit multiplies.
void Poly1305BlocksScalar64(Poly1305Wide* wide, const uint8_t* m, size_t blocks, uint64_t hibit);
// Whole groups of eight message blocks (128 bytes), eight lanes of 52-bit
// multiply-adds in 44-bit limbs; hibit is 1.
void Poly1305BlocksIfma(Poly1305Wide* wide, const uint8_t* m, size_t groups);
