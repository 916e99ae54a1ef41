// What the RNG_ exports share: the generate that ends the process when the
// generator fails, and the bounded number.
#pragma once
#include <cstdint>

#include "rng/drbg_state.h"

// The text and event of the report made before the process ends.
constexpr char kRngFailedMessage[] = "RNG failed continuous testing";

// Reports and ends the process with status 1; no caller may receive bytes
// from a generator that failed, and a failure has no other way out.
[[noreturn]] void RngFailed();
// DrbgGenerate, or RngFailed on any non-zero result.
void RngGenerateOrEnd(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                      uint32_t additionalLength);
// PromptGenerate, or RngFailed on any non-zero result.
void RngPromptOrEnd(DrbgState* state, uint8_t* output, uint32_t length, const char* prompt, int32_t options);

// A number from lower to upper inclusive by mask and retry: up to 25 draws
// of a little-endian word, then the last draw modulo the count. upper not
// above lower gives lower with no draw. The generator's status is not
// looked at: the result is a number and cannot carry an error.
int32_t RngNumberInRange(DrbgState* state, int32_t lower, int32_t upper);

// Sleep for the given milliseconds.
void RngPause(int milliseconds);
