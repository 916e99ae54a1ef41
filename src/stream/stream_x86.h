// Stream cipher kernels that use processor extensions, chosen at run time by
// the portable cores (flags in util/cpu.h). Each XORs whole groups of key
// stream blocks from in to out (in may equal out), block i of the call with
// the 64-bit block counter of words 8/9 (Salsa20) or 12/13 (ChaCha20) plus
// i; the caller advances its own counter.
#pragma once
#include <cstddef>
#include <cstdint>

// Groups of 16 blocks (1024 bytes).
void Chacha20XorAvx512(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups);
// Groups of 8 blocks (512 bytes).
void Chacha20XorAvx2(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups);
// The same for Salsa20/20.
void Salsa20XorAvx512(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups);
void Salsa20XorAvx2(const uint32_t words[16], const uint8_t* in, uint8_t* out, size_t groups);
