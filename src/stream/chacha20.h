// ChaCha20 (RFC 8439 2.3, with the original 64-bit-nonce and a 16-byte
// counter-plus-nonce layout besides). Portable, constant-time: no table
// lookups and no branches on key or data.
#pragma once
#include <cstddef>
#include <cstdint>

// Sixteen little-endian words: constants, key, then words 12..15 by the
// nonce length (8: counter, 0, nonce; 12: counter, nonce; 16: nonce as is).
// Words 12 and 13 form one 64-bit block counter in every layout, so with a
// 12-byte nonce a wrap of word 12 carries into the first nonce word.
struct Chacha20State {
    uint32_t words[16];
};

// 0, -BAD_KEY_LEN_ERROR (key absent or not 16/32 bytes) or -BAD_IV_LEN_ERROR
// (nonce absent or not 8/12/16 bytes). The state is zeroed first, so a failed
// set-up leaves it zero.
int32_t Chacha20Setup(Chacha20State* state, const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                      int32_t nonceLength, uint32_t counter);
// XORs count bytes of key stream into output (input may equal output). Every
// block, also a short last one, advances the counter: the unused rest of a
// short block is lost unless the caller buffers it.
void Chacha20Xor(Chacha20State* state, const uint8_t* input, uint8_t* output, size_t count);
// The raw key stream block of the state as it stands; the counter stays.
void Chacha20Block(uint8_t output[64], const Chacha20State* state);
// Set-up, XOR, wipe of the local state. 0 or the set-up's failure.
int32_t Chacha20OneShot(uint8_t* output, const uint8_t* input, size_t count, const uint8_t* key,
                        int32_t keyLength, const uint8_t* nonce, int32_t nonceLength, uint32_t counter);
