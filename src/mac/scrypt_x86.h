// scrypt's ROMix in vectors, chosen at run time by the portable one (flags
// in util/cpu.h), with the same arguments and the same result: block (128 r
// bytes) is mixed in place with V of n blocks and two scratch blocks x, y.
#pragma once
#include <cstddef>
#include <cstdint>

// SSE2: turns by shifts.
void ScryptRoMixSse2(uint8_t* block, uint32_t* v, uint32_t* x, uint32_t* y, uint32_t r, uint32_t n);
// AVX-512F with VL: turns by one rotate.
void ScryptRoMixAvx512(uint8_t* block, uint32_t* v, uint32_t* x, uint32_t* y, uint32_t r, uint32_t n);
