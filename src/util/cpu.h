// Processor features for the accelerated paths, read once at load.
// The environment variable VERIMOND_CPU, read at the same time, can switch
// paths off for testing: "portable" clears every flag; otherwise a comma list
// of flag names prefixed with '-' clears those ("-aesni,-avx2").
// RDRAND/RDSEED are not here: the generator asks its own questions.
#pragma once
#include <cstdint>

struct CpuFeatures {
    bool sse2;
    bool ssse3;
    bool sse41;
    bool aesni;
    bool pclmul;
    bool avx;       // and the OS saves YMM state
    bool avx2;
    bool bmi1;      // ANDN
    bool bmi2;
    bool adx;
    bool shani;
    bool vaes;      // 256-bit AES (needs avx2)
    bool vpclmul;   // 256-bit carry-less multiply (needs avx2)
    bool avx512f;   // and the OS saves ZMM state
    bool avx512bw;
    bool avx512vl;
    bool avx512ifma;  // 52-bit multiply-add
};

// The flags in force; filled before any constructor of the library runs
// a cipher, and constant afterwards.
extern CpuFeatures g_cpu;

// Reads CPUID and XGETBV and applies VERIMOND_CPU. Safe to call again.
void CpuDetect();
// The same from a given override text (tests); null means no override.
void CpuDetectWith(const char* overrideText);
