// DES (FIPS 46-3) and Triple DES in the EDE form with three keys (SP 800-67),
// with merged S-box/P tables. Not constant-time (table lookups on data).
#pragma once
#include <cstddef>
#include <cstdint>

struct DesContext {
    uint32_t schedule[32];  // 16 round keys, two words each, in order of use
    uint32_t direction;     // as the caller gave it: non-zero encrypts
    uint32_t mode;          // engine mode 0..4
    uint32_t iv[2];         // running register, the IV bytes as big-endian words
    uint32_t initialIv[2];  // the IV as given; written, never read
};

struct TdeaContext {
    uint32_t schedule[3][32];  // applied first to third, whatever the direction
    uint32_t direction;
    uint32_t mode;
    uint32_t iv[2];
    uint32_t initialIv[2];
};

// The 16 round keys of an 8-byte key (parity bits are ignored); encrypt 0
// stores them in reverse order, so DesBlock has no notion of direction.
void DesSetKey(uint32_t* schedule, const uint8_t* key, int encrypt);
// One block in place: block[0], block[1] are the big-endian halves.
void DesBlock(uint32_t* block, const uint32_t* schedule);
// The big-endian reading of 8 IV bytes.
void DesLoadIv(uint32_t* reg, const uint8_t* bytes);
// Each 8-byte part of an 8, 16 or 24-byte key against the weak and
// semi-weak keys, parity bits forced odd first: 0, BAD_KEY_LEN_ERROR or
// WEAK_KEY_ERROR. The caller's key is not changed.
int DesCheckWeak(const uint8_t* key, size_t keyLength);

// Set-up: 0, BAD_IV_ERROR, BAD_MODE_ERROR or BAD_KEY_ERROR (null key).
// DES reads 8 key bytes, Triple DES 24 (K1, K2, K3).
int DesSetupMode(DesContext* context, int32_t mode, const uint8_t* key, int32_t direction,
                 const uint8_t* iv);
int TdeaSetupMode(TdeaContext* context, int32_t mode, const uint8_t* key, int32_t direction,
                  const uint8_t* iv);
// 0, BAD_LENGTH_ERROR or BAD_MODE_ERROR; as AesProcess.
int DesProcess(DesContext* context, uint8_t* output, const uint8_t* input, size_t length);
int TdeaProcess(TdeaContext* context, uint8_t* output, const uint8_t* input, size_t length);
void DesWipeContext(DesContext* context);
void TdeaWipeContext(TdeaContext* context);

// Tables in des_tables.cpp.
extern const uint8_t kDesPc1[56];
extern const uint8_t kDesPc2[48];
extern const uint8_t kDesShifts[16];
extern const uint32_t kDesSp[8][64];
extern const uint8_t kDesWeakKeys[4][4][8];
