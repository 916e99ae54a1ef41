// The wide paths of the ChaCha20 and Salsa20 XOR calls: whole groups of
// key stream blocks through a processor-specific kernel (stream_x86.h), and
// a last partial group through one more pass over a local copy when it is
// long enough to pay. The block counter advances by one per block used, a
// short last block included, as in the portable loop.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "util/wipe.h"

// Below these many bytes a call (or its tail) is cheaper block by block.
constexpr size_t kWideTail16 = 256;
constexpr size_t kWideTail8 = 128;

// Adds blocks to the 64-bit counter in words[at] (low) and words[at + 1].
inline void AdvanceBlockCounter(uint32_t* words, int at, uint64_t blocks) {
    uint64_t counter = ((uint64_t(words[at + 1]) << 32) | words[at]) + blocks;
    words[at] = uint32_t(counter);
    words[at + 1] = uint32_t(counter >> 32);
}

// Runs what it can of count bytes; input, output and count are left at what
// remains for the portable loop (nothing, or less than the tail minimum).
template <size_t Lanes, void (*Kernel)(const uint32_t*, const uint8_t*, uint8_t*, size_t), int CounterWord>
void WideXor(uint32_t words[16], const uint8_t*& input, uint8_t*& output, size_t& count) {
    constexpr size_t kGroup = 64 * Lanes;
    constexpr size_t kTail = Lanes == 16 ? kWideTail16 : kWideTail8;
    size_t groups = count / kGroup;
    if (groups != 0) {
        Kernel(words, input, output, groups);
        AdvanceBlockCounter(words, CounterWord, uint64_t(groups) * Lanes);
        input += groups * kGroup;
        output += groups * kGroup;
        count -= groups * kGroup;
    }
    if (count >= kTail) {
        alignas(64) uint8_t buffer[kGroup];
        std::memcpy(buffer, input, count);
        Kernel(words, buffer, buffer, 1);
        std::memcpy(output, buffer, count);
        AdvanceBlockCounter(words, CounterWord, (count + 63) / 64);
        SecureWipe(buffer, sizeof buffer);
        input += count;
        output += count;
        count = 0;
    }
}
