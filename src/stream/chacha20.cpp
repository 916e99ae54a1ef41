#include "stream/chacha20.h"

#include <cstring>

#include "stream/stream_x86.h"
#include "stream/wide_xor.h"
#include "util/bytes.h"
#include "util/cpu.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// "expand 32-byte k" and "expand 16-byte k" as little-endian words.
constexpr uint32_t kSigma[4] = {0x61707865, 0x3320646e, 0x79622d32, 0x6b206574};
constexpr uint32_t kTau[4] = {0x61707865, 0x3120646e, 0x79622d36, 0x6b206574};

inline void QuarterRound(uint32_t& a, uint32_t& b, uint32_t& c, uint32_t& d) {
    a += b; d ^= a; d = Rotl32(d, 16);
    c += d; b ^= c; b = Rotl32(b, 12);
    a += b; d ^= a; d = Rotl32(d, 8);
    c += d; b ^= c; b = Rotl32(b, 7);
}

// One block of key stream from words, little-endian bytes into out.
void BlockFunction(uint8_t out[64], const uint32_t in[16]) {
    uint32_t x[16];
    std::memcpy(x, in, sizeof x);
    for (int round = 0; round < 10; ++round) {
        QuarterRound(x[0], x[4], x[8], x[12]);
        QuarterRound(x[1], x[5], x[9], x[13]);
        QuarterRound(x[2], x[6], x[10], x[14]);
        QuarterRound(x[3], x[7], x[11], x[15]);
        QuarterRound(x[0], x[5], x[10], x[15]);
        QuarterRound(x[1], x[6], x[11], x[12]);
        QuarterRound(x[2], x[7], x[8], x[13]);
        QuarterRound(x[3], x[4], x[9], x[14]);
    }
    for (int i = 0; i < 16; ++i) Store32Le(out + 4 * i, x[i] + in[i]);
    SecureWipe(x, sizeof x);
}
}  // namespace

int32_t Chacha20Setup(Chacha20State* state, const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                      int32_t nonceLength, uint32_t counter) {
    uint32_t* w = state->words;
    std::memset(w, 0, sizeof state->words);
    if (key == nullptr || (keyLength != 16 && keyLength != 32)) return -BAD_KEY_LEN_ERROR;
    if (nonce == nullptr || (nonceLength != 8 && nonceLength != 12 && nonceLength != 16)) {
        return -BAD_IV_LEN_ERROR;
    }
    std::memcpy(w, keyLength == 32 ? kSigma : kTau, 16);
    const uint8_t* second = keyLength == 32 ? key + 16 : key;
    for (int i = 0; i < 4; ++i) {
        w[4 + i] = Load32Le(key + 4 * i);
        w[8 + i] = Load32Le(second + 4 * i);
    }
    switch (nonceLength) {
        case 8:
            w[12] = counter;
            w[13] = 0;
            w[14] = Load32Le(nonce);
            w[15] = Load32Le(nonce + 4);
            break;
        case 12:
            w[12] = counter;
            w[13] = Load32Le(nonce);
            w[14] = Load32Le(nonce + 4);
            w[15] = Load32Le(nonce + 8);
            break;
        default:
            for (int i = 0; i < 4; ++i) w[12 + i] = Load32Le(nonce + 4 * i);
            break;
    }
    return 0;
}

void Chacha20Block(uint8_t output[64], const Chacha20State* state) { BlockFunction(output, state->words); }

void Chacha20Xor(Chacha20State* state, const uint8_t* input, uint8_t* output, size_t count) {
    if (count == 0) return;
    uint32_t w[16];
    std::memcpy(w, state->words, sizeof w);
    if (g_cpu.avx512f && g_cpu.avx512bw && count >= kWideTail16) {
        WideXor<16, Chacha20XorAvx512, 12>(w, input, output, count);
    } else if (g_cpu.avx2 && count >= kWideTail8) {
        WideXor<8, Chacha20XorAvx2, 12>(w, input, output, count);
    }
    uint8_t block[64];
    while (count > 0) {  // what the wide paths left, or all
        BlockFunction(block, w);
        if (++w[12] == 0) ++w[13];
        size_t n = count < 64 ? count : 64;
        for (size_t i = 0; i < n; ++i) output[i] = uint8_t(input[i] ^ block[i]);
        input += n;
        output += n;
        count -= n;
    }
    state->words[12] = w[12];
    state->words[13] = w[13];
    SecureWipe(block, sizeof block);
    SecureWipe(w, sizeof w);
}

int32_t Chacha20OneShot(uint8_t* output, const uint8_t* input, size_t count, const uint8_t* key,
                        int32_t keyLength, const uint8_t* nonce, int32_t nonceLength, uint32_t counter) {
    Chacha20State state;
    int32_t status = Chacha20Setup(&state, key, keyLength, nonce, nonceLength, counter);
    if (status == 0) Chacha20Xor(&state, input, output, count);
    WipeObject(state);
    return status;
}
