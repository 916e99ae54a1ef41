// AES-GCM on the processor's instructions: AES-NI for the counter mode and
// PCLMULQDQ for GHASH, with VAES and VPCLMULQDQ on 256-bit registers where
// present. The same tags, texts and record states as the table-driven path
// (gcm_core.cpp, gcm_stream.cpp), which stays the reference and the fallback;
// GcmExpandKey picks the path once per key and records it in `clmul`.
//
// GHASH here works on bit-reflected values: a block's bytes reversed, so that
// the field's first coefficient is the top bit of a 128-bit integer. The
// powers of H are kept times x^-1, which absorbs the one-bit shift that a
// product of reflected values needs; reduction is a Montgomery step by the
// reflected polynomial, two carry-less multiplies by its low terms. No table
// lookups: constant-time.
#pragma once
#include <cstddef>
#include <cstdint>

#include "aead/gcm.h"
#include "block/aes_x86.h"

inline bool GcmClmulUsable() { return AesNiUsable() && g_cpu.pclmul; }
inline bool GcmWideUsable() { return GcmClmulUsable() && VaesUsable() && g_cpu.vpclmul; }

// Schedule (as GcmAesSetKey lays it out), keyBits, the powers of H, clmul = 1.
void GcmClmulExpandKey(GcmKeyTables* tables, const uint8_t* key, uint32_t keyBits);
// GcmSeal and GcmOpen for keys made by GcmClmulExpandKey: same arguments,
// same results, the same 32-bit lengths in the closing block.
void GcmClmulSeal(const GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input,
                  size_t inputLength, const uint8_t* aad, size_t aadLength, uint8_t* output, uint8_t tag[16]);
int GcmClmulOpen(const GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input,
                 size_t inputLength, const uint8_t* tag, int32_t tagLength, const uint8_t* aad, size_t aadLength,
                 uint8_t* output);

// Pieces for the incremental record. y is the running GHASH value as the
// record keeps it (big-endian word values); blocks are whole 16-byte blocks.
void GcmClmulHash(const GcmKeyTables* tables, uint32_t y[4], const uint8_t* data, size_t blocks);
// The encryption of nonce || counter.
void GcmClmulCounterBlock(const GcmKeyTables* tables, const uint8_t nonce[12], uint32_t counter, uint8_t out[16]);
// For each block: increment *counter (32 bits, wrapping), XOR the block with
// the encryption of nonce || counter.
void GcmClmulCtr(const GcmKeyTables* tables, const uint8_t nonce[12], uint32_t* counter, const uint8_t* in,
                 uint8_t* out, size_t blocks);
