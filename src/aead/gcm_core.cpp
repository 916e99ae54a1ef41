// AES-GCM on whole messages: key expansion, J0, seal and the two-pass open.
// A key expanded for the carry-less multiply path (gcm_x86.h) takes that
// path for every message.
#include <cstddef>
#include <cstring>

#include "aead/gcm.h"
#include "aead/gcm_x86.h"
#include "aead/ghash.h"
#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
// J0 as its fixed twelve bytes and its counter word. A 12-byte IV is used as
// it is with counter 1; any other length is hashed with its 64-bit bit length.
void MakeJ0(const GcmKeyTables* t, const uint8_t* iv, size_t ivLength, uint32_t fixed[3], uint32_t* counter) {
    if (ivLength == 12) {
        fixed[0] = Load32Be(iv);
        fixed[1] = Load32Be(iv + 4);
        fixed[2] = Load32Be(iv + 8);
        *counter = 1;
        return;
    }
    uint32_t y[4] = {0, 0, 0, 0};
    GhashPadded(y, t->table, iv, ivLength);
    uint8_t lengths[16] = {};
    Store64Be(lengths + 8, uint64_t(ivLength) * 8);
    GhashBlock(y, t->table, lengths);
    fixed[0] = y[0];
    fixed[1] = y[1];
    fixed[2] = y[2];
    *counter = y[3];
}

// The closing block; both bit lengths are cut to 32 bits on purpose.
void HashLengths(uint32_t y[4], const GcmKeyTables* t, size_t aadLength, size_t textLength) {
    y[1] ^= uint32_t(aadLength * 8);
    y[3] ^= uint32_t(textLength * 8);
    GhashMultiply(y, t->table);
}

void CounterXor(const GcmKeyTables* t, uint32_t* counter, const uint8_t* input, uint8_t* output, size_t length) {
    uint8_t ks[16];
    while (length != 0) {
        GcmAesCounterNext(t, counter, ks);
        size_t n = length < 16 ? length : 16;
        for (size_t i = 0; i < n; ++i) output[i] = uint8_t(input[i] ^ ks[i]);
        input += n;
        output += n;
        length -= n;
    }
    SecureWipe(ks, sizeof ks);
}
}  // namespace

void GcmExpandKey(GcmKeyTables* tables, const uint8_t* key, uint32_t keyBits) {
    if (GcmClmulUsable()) {
        GcmClmulExpandKey(tables, key, keyBits);
        return;
    }
    tables->clmul = 0;
    GcmAesSetKey(tables, key, keyBits);
    uint8_t zero[16] = {}, h[16];
    GcmAesEncryptBlock(tables, zero, h);
    uint32_t (*e)[4] = tables->table;
    for (int k = 0; k < 4; ++k) {
        e[0][k] = 0;
        e[128][k] = Load32Be(h + 4 * k);
    }
    // Halving the index multiplies by x: a right shift, reduced by the
    // polynomial when a bit falls off the end.
    for (int i = 64; i > 0; i >>= 1) {
        const uint32_t* src = e[2 * i];
        uint32_t carry = src[3] & 1;
        e[i][3] = (src[3] >> 1) | (src[2] << 31);
        e[i][2] = (src[2] >> 1) | (src[1] << 31);
        e[i][1] = (src[1] >> 1) | (src[0] << 31);
        e[i][0] = (src[0] >> 1) ^ (0xE1000000u & (0u - carry));
    }
    for (int i = 2; i <= 128; i <<= 1) {
        for (int j = 1; j < i; ++j) {
            for (int k = 0; k < 4; ++k) e[i + j][k] = e[i][k] ^ e[j][k];
        }
    }
    SecureWipe(h, sizeof h);
}

void GcmWipeKeyTables(GcmKeyTables* tables) {
    if (tables->clmul == 1) {
        SecureWipe(tables->schedule, sizeof *tables - offsetof(GcmKeyTables, schedule));
    } else {
        WipeObject(*tables);
    }
}

void GcmSeal(GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input, size_t inputLength,
             const uint8_t* aad, size_t aadLength, uint8_t* output, uint8_t tag[16]) {
    if (tables->clmul == 1) {
        GcmClmulSeal(tables, iv, ivLength, input, inputLength, aad, aadLength, output, tag);
        return;
    }
    uint32_t fixed[3], counter;
    MakeJ0(tables, iv, ivLength, fixed, &counter);
    GcmAesCounterStart(tables, fixed, counter, tag);
    uint32_t y[4] = {0, 0, 0, 0};
    GhashPadded(y, tables->table, aad, aadLength);
    if (output == nullptr) inputLength = 0;
    uint8_t ks[16];
    size_t n = inputLength;
    while (n >= 16) {
        GcmAesCounterNext(tables, &counter, ks);
        for (int i = 0; i < 16; ++i) output[i] = uint8_t(input[i] ^ ks[i]);
        GhashBlock(y, tables->table, output);
        input += 16;
        output += 16;
        n -= 16;
    }
    if (n != 0) {
        GcmAesCounterNext(tables, &counter, ks);
        for (size_t i = 0; i < n; ++i) output[i] = uint8_t(input[i] ^ ks[i]);
        GhashPadded(y, tables->table, output, n);
    }
    HashLengths(y, tables, aadLength, inputLength);
    for (int k = 0; k < 4; ++k) Store32Be(tag + 4 * k, Load32Be(tag + 4 * k) ^ y[k]);
    SecureWipe(ks, sizeof ks);
}

int GcmOpen(GcmKeyTables* tables, const uint8_t* iv, size_t ivLength, const uint8_t* input, size_t inputLength,
            const uint8_t* tag, int32_t tagLength, const uint8_t* aad, size_t aadLength, uint8_t* output) {
    if (tables->clmul == 1) {
        return GcmClmulOpen(tables, iv, ivLength, input, inputLength, tag, tagLength, aad, aadLength, output);
    }
    uint32_t fixed[3], counter;
    MakeJ0(tables, iv, ivLength, fixed, &counter);
    uint8_t diff[16];
    GcmAesCounterStart(tables, fixed, counter, diff);
    size_t n = (tagLength < 0 || tagLength > 16) ? 16 : size_t(tagLength);
    for (size_t i = 0; i < n; ++i) diff[i] ^= tag[i];
    // First pass: the tag alone; no key stream is made and nothing written.
    uint32_t y[4] = {0, 0, 0, 0};
    GhashPadded(y, tables->table, aad, aadLength);
    GhashPadded(y, tables->table, input, inputLength);
    HashLengths(y, tables, aadLength, inputLength);
    uint32_t acc = 0;
    for (size_t i = 0; i < 16; ++i) {
        uint8_t d = uint8_t(diff[i] ^ uint8_t(y[i >> 2] >> (24 - 8 * (i & 3))));
        acc |= i < n ? d : 0u;
    }
    SecureWipe(diff, sizeof diff);
    if (CtPublic(CtMaskZero(acc) & 1) == 0) return 0;  // accept or reject is the answer
    if (output != nullptr) CounterXor(tables, &counter, input, output, inputLength);
    return 1;
}

int32_t GcmAeadEncrypt(uint8_t* out, uint8_t* tag, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength) {
    GcmKeyTables tables;
    uint8_t local[16];
    GcmExpandKey(&tables, key, uint32_t(keyLength) * 8);
    GcmSeal(&tables, nonce, size_t(nonceLength), input, size_t(inputLength), aad, size_t(aadLength), out, local);
    std::memcpy(tag, local, 16);
    SecureWipe(local, sizeof local);
    GcmWipeKeyTables(&tables);
    return 0;
}

int32_t GcmAeadDecrypt(uint8_t* out, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength, const uint8_t* tag, int32_t tagLength) {
    GcmKeyTables tables;
    GcmExpandKey(&tables, key, uint32_t(keyLength) * 8);
    uint8_t* output = (out != nullptr && outputLength >= 1) ? out : nullptr;
    int ok = GcmOpen(&tables, nonce, size_t(nonceLength), input, size_t(inputLength), tag, tagLength, aad,
                     size_t(aadLength), output);
    GcmWipeKeyTables(&tables);
    return ok ? 0 : -AUTH_FAIL_ERROR;
}
