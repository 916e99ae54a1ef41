// Poly1305 (RFC 8439 2.5): 26-bit limbs, products in 64-bit words. Constant
// time, the final reduction included. The context is incremental; the key
// and accumulator are wiped by the final step.
#pragma once
#include <cstddef>
#include <cstdint>

struct Poly1305Context {
    uint32_t r[5];       // clamped first key half
    uint32_t h[5];       // accumulator
    uint32_t pad[4];     // second key half
    uint32_t leftover;   // bytes in buffer
    uint8_t buffer[16];  // the partial block
    uint32_t final;      // 1 while the padded last block runs
};

// key is 32 bytes: r (clamped here) then s.
void Poly1305Init(Poly1305Context* ctx, const uint8_t key[32]);
// Any length, 0 included; whole blocks are read straight from data.
void Poly1305Update(Poly1305Context* ctx, const uint8_t* data, size_t length);
// Writes the 16-byte tag and wipes r, h and pad.
void Poly1305Final(Poly1305Context* ctx, uint8_t tag[16]);

// One-shot forms for the MAC dispatcher, which has tested the key length (32).
// Bytes: min(outputLength, 16) tag bytes when output is present and
// outputLength >= 1, and that count as the result; else 16.
int32_t Poly1305Bytes(uint8_t* output, int32_t outputLength, const uint8_t* message, size_t messageLength,
                      const uint8_t key[32]);
// Lower-case hex, cut to outputLength / 2 bytes when outputLength < 32;
// returns the digit count written, or 32 with no output.
int32_t Poly1305HexFromBytes(char* output, int32_t outputLength, const uint8_t* message, size_t messageLength,
                             const uint8_t key[32]);
// As HexFromBytes on decoded text: -BAD_KEY_LEN_ERROR for an empty key text
// or a key of other than 32 bytes, -BAD_FORMAT_ERROR for a key or message
// text that is not an even run of hex digits, -BAD_PARAM_ERROR for an
// absent text. An empty message text is the empty message.
int32_t Poly1305HexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex);
