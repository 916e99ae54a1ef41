// Digest kernels that use processor extensions. Each is chosen at run time
// by its portable core (by the flags in util/cpu.h) and gives the same
// chaining words as the portable form. Callers pass whole blocks.
#pragma once
#include <cstddef>
#include <cstdint>

// SHA extensions (and SSE4.1); SHA-1's in assembly.
extern "C" void Sha1BlocksShaNi(uint32_t h[5], const uint8_t* data, size_t blocks);
void Sha256BlocksShaNi(uint32_t h[8], const uint8_t* data, size_t blocks);
// AVX2 message schedule, two blocks at a time, and BMI2 rounds; in assembly.
extern "C" void Sha512BlocksAvx2(uint64_t h[8], const uint8_t* data, size_t blocks);
// Keccak-f[1600] with BMI (ANDN, RORX).
void KeccakF1600Bmi(uint64_t s[25]);
