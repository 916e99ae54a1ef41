// TinyMT32 (Saito and Matsumoto), parameter set mat1 0x8f7011ee,
// mat2 0xfc78ff1f, tmat 0x3793fdff. Not a cryptographic generator: it makes
// handle values and the key-wrap padding mix, nothing secret rests on it.
#pragma once
#include <cstdint>

struct TinyMt32State {
    uint32_t status[4];
};

void TinyMt32Init(TinyMt32State* s, uint32_t seed);
uint32_t TinyMt32Next(TinyMt32State* s);
