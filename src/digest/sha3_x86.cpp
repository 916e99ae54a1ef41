// Keccak-f[1600] compiled for processors with BMI: the same body as the
// portable one, where chi's "~b & c" becomes a single ANDN.
#include "digest/digest_x86.h"
#include "digest/keccak_f1600.h"

__attribute__((target("bmi,bmi2"))) void KeccakF1600Bmi(uint64_t s[25]) KECCAK_F1600_BODY(s)
