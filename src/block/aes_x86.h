// AES through the processor's instructions: AES-NI on 128-bit registers, and
// VAES on 256-bit registers (two blocks each) for the modes that run blocks
// side by side. Same schedules, same blocks and the same mode results as the
// table-driven core, which stays the reference and the fallback. The
// instructions take no table lookups, so these paths are constant-time.
//
// The schedule words keep the core's layout (key bytes big-endian in each
// word); the code swaps the bytes of each word as it loads a round key, so a
// schedule made by either path serves both.
#pragma once
#include <cstddef>
#include <cstdint>

#include "block/aes.h"
#include "util/cpu.h"

// What the 128-bit path needs; every processor with AES-NI has the rest.
inline bool AesNiUsable() { return g_cpu.aesni && g_cpu.ssse3 && g_cpu.sse41; }
// The 256-bit forms of the parallel modes.
inline bool VaesUsable() { return AesNiUsable() && g_cpu.vaes && g_cpu.avx2; }
inline bool IsAesRoundCount(uint32_t rounds) { return rounds == 10 || rounds == 12 || rounds == 14; }

// As AesSetEncryptKey and AesSetDecryptKey for keyBits 128, 192 or 256 (the
// caller tests the size): the same words in the same places.
int AesNiSetEncryptKey(uint32_t* schedule, const uint8_t* key, int keyBits);
int AesNiSetDecryptKey(uint32_t* schedule, const uint8_t* key, int keyBits);
// One block; rounds is 10, 12 or 14. in may equal out.
void AesNiEncryptBlock(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out);
void AesNiDecryptBlock(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out);

// The engine's work for a context whose call passed the engine's checks:
// all five modes, both directions, part blocks and the register, exactly as
// the portable engine does them.
void AesNiProcess(AesContext* context, uint8_t* out, const uint8_t* in, size_t length);

// Whole blocks on 256-bit registers (aes_vaes_x86.cpp), called by
// AesNiProcess. The counter is the big-endian 128-bit block, advanced by
// blocks; the chaining register is updated in place.
void VaesEcbEncrypt(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out, size_t blocks);
void VaesEcbDecrypt(const uint32_t* schedule, int rounds, const uint8_t* in, uint8_t* out, size_t blocks);
void VaesCbcDecrypt(const uint32_t* schedule, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                    size_t blocks);
void VaesCfbDecrypt(const uint32_t* schedule, int rounds, uint8_t reg[16], const uint8_t* in, uint8_t* out,
                    size_t blocks);
void VaesCtr(const uint32_t* schedule, int rounds, uint8_t counter[16], const uint8_t* in, uint8_t* out,
             size_t blocks);
