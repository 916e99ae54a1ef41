// Pieces shared by the known-answer test files.
#pragma once
#include <cstddef>
#include <cstdint>

// The comparisons of one test. ok falls to false at the first mismatch and
// stays there. With fault set, the first answer checked is altered in a stack
// copy, and fault is cleared.
struct KatTally {
    bool ok;
    bool fault;
};

// Compares length bytes of got with want, a 32-bit word at a time (a tail
// of fewer than four bytes byte by byte).
void KatCheck(KatTally* tally, const uint8_t* got, const uint8_t* want, size_t length);

// Longest answer any test compares in one go.
constexpr size_t kKatMaxAnswer = 64;

// The block-cipher and CMAC tests; each takes its fault flag and gives true
// when every answer matched.
bool KatTdea(bool fault);
bool KatAes(bool fault);
bool KatBlowfish(bool fault);
bool KatCmacAes(bool fault);
bool KatCmacTdea(bool fault);
