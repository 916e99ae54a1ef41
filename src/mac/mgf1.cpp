// MGF1: T = Hash(seed || C0) || Hash(seed || C1) || ..., counters four bytes
// big-endian. The seed is absorbed once and the running digest copied for
// each counter, so no copy of the seed is made whatever its length.
#include "mac/mgf1.h"

#include <cstring>

#include "digest/digest.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

bool Mgf1Accepts(int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1:
        case OPT_HASH_SHA256:
        case OPT_HASH_SHA384:
        case OPT_HASH_SHA512:
        case OPT_HASH_SHA224: return true;
        default: return false;
    }
}

int32_t Mgf1(uint8_t* output, size_t outputLength, const uint8_t* seed, size_t seedLength, int32_t nibble) {
    DigestAnyContext seeded, pass;
    DigestStart(&seeded, nibble);
    while (seedLength > 0) {
        uint32_t part = seedLength > 0x40000000u ? 0x40000000u : uint32_t(seedLength);
        DigestUpdate(&seeded, nibble, seed, part);
        seed += part;
        seedLength -= part;
    }
    const size_t h = size_t(DigestOutputLength(nibble));
    uint8_t block[64];
    uint8_t counterBytes[4];
    for (uint32_t counter = 0; outputLength > 0; ++counter) {
        std::memcpy(&pass, &seeded, sizeof pass);
        Store32Be(counterBytes, counter);
        DigestUpdate(&pass, nibble, counterBytes, 4);
        DigestFinish(block, &pass, nibble);
        size_t take = outputLength < h ? outputLength : h;
        std::memcpy(output, block, take);
        output += take;
        outputLength -= take;
    }
    SecureWipe(block, sizeof block);
    WipeObject(seeded);
    WipeObject(pass);
    return 0;
}
