#include "stream/salsa20.h"

#include <cstring>

#include "stream/stream_x86.h"
#include "stream/wide_xor.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr uint32_t kSigma[4] = {0x61707865, 0x3320646e, 0x79622d32, 0x6b206574};
constexpr uint32_t kTau[4] = {0x61707865, 0x3120646e, 0x79622d36, 0x6b206574};

inline void Step(uint32_t& target, uint32_t a, uint32_t b, int shift) { target ^= Rotl32(a + b, shift); }

void BlockFunction(uint8_t out[64], const uint32_t in[16]) {
    uint32_t x[16];
    std::memcpy(x, in, sizeof x);
    for (int round = 0; round < 10; ++round) {
        // Columns.
        Step(x[4], x[0], x[12], 7);   Step(x[8], x[4], x[0], 9);
        Step(x[12], x[8], x[4], 13);  Step(x[0], x[12], x[8], 18);
        Step(x[9], x[5], x[1], 7);    Step(x[13], x[9], x[5], 9);
        Step(x[1], x[13], x[9], 13);  Step(x[5], x[1], x[13], 18);
        Step(x[14], x[10], x[6], 7);  Step(x[2], x[14], x[10], 9);
        Step(x[6], x[2], x[14], 13);  Step(x[10], x[6], x[2], 18);
        Step(x[3], x[15], x[11], 7);  Step(x[7], x[3], x[15], 9);
        Step(x[11], x[7], x[3], 13);  Step(x[15], x[11], x[7], 18);
        // Rows.
        Step(x[1], x[0], x[3], 7);    Step(x[2], x[1], x[0], 9);
        Step(x[3], x[2], x[1], 13);   Step(x[0], x[3], x[2], 18);
        Step(x[6], x[5], x[4], 7);    Step(x[7], x[6], x[5], 9);
        Step(x[4], x[7], x[6], 13);   Step(x[5], x[4], x[7], 18);
        Step(x[11], x[10], x[9], 7);  Step(x[8], x[11], x[10], 9);
        Step(x[9], x[8], x[11], 13);  Step(x[10], x[9], x[8], 18);
        Step(x[12], x[15], x[14], 7); Step(x[13], x[12], x[15], 9);
        Step(x[14], x[13], x[12], 13); Step(x[15], x[14], x[13], 18);
    }
    for (int i = 0; i < 16; ++i) Store32Le(out + 4 * i, x[i] + in[i]);
    SecureWipe(x, sizeof x);
}
}  // namespace

int32_t Salsa20Setup(Salsa20State* state, const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                     int32_t nonceLength) {
    if (key == nullptr || (keyLength != 16 && keyLength != 32)) return -BAD_KEY_LEN_ERROR;
    if (nonce == nullptr || nonceLength != 8) return kSalsa20BadNonce;
    uint32_t* w = state->words;
    std::memset(w, 0, sizeof state->words);
    const uint32_t* c = keyLength == 32 ? kSigma : kTau;
    const uint8_t* second = keyLength == 32 ? key + 16 : key;
    w[0] = c[0];
    w[5] = c[1];
    w[10] = c[2];
    w[15] = c[3];
    for (int i = 0; i < 4; ++i) {
        w[1 + i] = Load32Le(key + 4 * i);
        w[11 + i] = Load32Le(second + 4 * i);
    }
    w[6] = Load32Le(nonce);
    w[7] = Load32Le(nonce + 4);
    return 0;
}

void Salsa20Xor(Salsa20State* state, const uint8_t* input, uint8_t* output, size_t count) {
    if (count == 0) return;
    uint8_t block[64];
    uint32_t* w = state->words;
    if (g_cpu.avx512f && g_cpu.avx512bw && count >= kWideTail16) {
        WideXor<16, Salsa20XorAvx512, 8>(w, input, output, count);
    } else if (g_cpu.avx2 && count >= kWideTail8) {
        WideXor<8, Salsa20XorAvx2, 8>(w, input, output, count);
    }
    while (count > 0) {  // what the wide paths left, or all
        BlockFunction(block, w);
        if (++w[8] == 0) ++w[9];
        size_t n = count < 64 ? count : 64;
        for (size_t i = 0; i < n; ++i) output[i] = uint8_t(input[i] ^ block[i]);
        input += n;
        output += n;
        count -= n;
    }
    SecureWipe(block, sizeof block);
}

int32_t Salsa20OneShot(uint8_t* output, const uint8_t* input, size_t count, const uint8_t* key,
                       int32_t keyLength, const uint8_t* nonce, int32_t nonceLength) {
    Salsa20State state;
    int32_t status = Salsa20Setup(&state, key, keyLength, nonce, nonceLength);
    if (status == 0) {
        Salsa20Xor(&state, input, output, count);
        WipeObject(state);
    }
    return status;
}
