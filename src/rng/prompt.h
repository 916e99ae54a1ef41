// Entropy typed by the user on the console, folded into a generate as
// additional input. The console serves for both the dialog and the console
// option.
#pragma once
#include <cstdint>
#include <cstdio>

#include "rng/drbg_state.h"

// Target bits from the low four bits of the options: 1 128, 2 192, 3 256,
// anything else 112.
int PromptTargetBits(int32_t options);
// Gathers, prompts, gathers again, then DrbgGenerate with the 64-byte digest
// of the typed characters as additional input; the generate's result.
int32_t PromptGenerate(DrbgState* state, uint8_t* output, uint32_t length, const char* prompt, int32_t options);
// Prints the prompt and the progress to out and reads characters from in,
// crediting 0.75 bits to each that differs from the one before, until the
// target is reached. End of input, a read error or 65536 characters end it
// early, so a closed or exhausted input never hangs the call. Writes
// digestLength (at most 64) bytes and returns the whole bits credited.
int PromptConsoleOn(FILE* in, FILE* out, uint8_t* digest, uint32_t digestLength, int target, const char* prompt);
// The same on standard input and output.
int PromptConsole(uint8_t* digest, uint32_t digestLength, int target, const char* prompt);
