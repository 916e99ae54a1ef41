// Answers the HMAC_DRBG SHA-512 validation sets on a scratch generator that
// has nothing to do with the thread's own.
#pragma once
#include <cstdint>

constexpr int32_t kDrbgvsGenerateFirst = 0x10000;

struct DrbgvsInputs {
    const char* entropy;
    const char* nonce;
    const char* personalisation;
    const char* additional1;
    const char* reseedEntropy;
    const char* reseedAdditional;
    const char* additional2;
};

// Instantiate, reseed (after the first generate with kDrbgvsGenerateFirst;
// left out when both reseed texts are empty, as the no-reseed sets ask),
// generate twice into one block, lower-case hex of the second. Texts are
// decoded loosely; null or "" is empty. Returns the hex length written, the
// hex length for a query (null output or outputLength < 1), -6 for
// returnedBits < 1, -211 above the request limit.
int32_t DrbgvsAnswer(char* output, int32_t outputLength, int32_t returnedBits, const DrbgvsInputs& in,
                     int32_t options);
