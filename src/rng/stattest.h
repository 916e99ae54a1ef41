// The statistical tests of FIPS 140-2 on a 20000-bit sample, and the report.
#pragma once
#include <cstdint>
#include <cstdio>

#include "rng/drbg_state.h"

constexpr uint32_t kFipsSampleBytes = 2500;

struct FipsResults {
    long ones;           // monobits n1
    double poker;        // X
    int gaps[6];         // runs of 0 of length 1..5 and 6 or more
    int blocks[6];       // runs of 1
    int longestGap;      // Gmax
    int longestBlock;    // Bmax
    bool monobitsPassed;
    bool pokerPassed;
    bool runPassed[6];
    bool runsPassed;
    bool longRunsPassed;
    bool allPassed;
};

// Bits are read from the first byte, most significant first. A run is
// counted when a change of bit closes it, so the last run is not counted.
// The runs test is one-sided per kind: gaps against the minimum, blocks
// against the maximum.
void FipsRunTests(const uint8_t sample[kFipsSampleBytes], FipsResults* results);
// The readable report; when is the text of ctime (with its newline).
void FipsWriteReport(FILE* file, const FipsResults& results, const uint8_t sample[kFipsSampleBytes],
                     const char* when);
// Generates a sample from the thread's generator and tests it; with a file
// name, writes the report. 0 all passed, 1 any failed, -202 when the file
// cannot be written, or the generator's failure.
int32_t RngTestReport(DrbgState* state, const char* resultFile);
