// Salsa20/20 as its designer published it (2005), 8-byte nonce, 64-bit
// block counter from 0. Portable and constant-time.
#pragma once
#include <cstddef>
#include <cstdint>

// Words 0, 5, 10, 15 constants; 1..4 and 11..14 key; 6, 7 nonce; 8, 9 the
// block counter, low word first.
struct Salsa20State {
    uint32_t words[16];
};

// Code for a nonce that is absent or not 8 bytes. It has no text of its own;
// callers pass it on as it is.
constexpr int32_t kSalsa20BadNonce = -51;

// 0, -BAD_KEY_LEN_ERROR (key absent or not 16/32 bytes) or kSalsa20BadNonce.
// On failure the state is left as it was. There is no counter argument.
int32_t Salsa20Setup(Salsa20State* state, const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                     int32_t nonceLength);
// As Chacha20Xor: every block, a short last one too, advances the counter.
void Salsa20Xor(Salsa20State* state, const uint8_t* input, uint8_t* output, size_t count);
int32_t Salsa20OneShot(uint8_t* output, const uint8_t* input, size_t count, const uint8_t* key,
                       int32_t keyLength, const uint8_t* nonce, int32_t nonceLength);
