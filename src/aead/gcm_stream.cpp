// AES-GCM as an incremental record: the AEAD_ calls feed it in pieces of any
// size. AAD and text pass through one GHASH buffer; the key stream keeps a
// part-used block across calls. Counts are 64-bit here, unlike the
// whole-message routines. Tables expanded for the carry-less multiply path
// (gcm_x86.h) take that path for hashing and key stream alike.
#include <cstring>

#include "aead/aead_stream.h"
#include "aead/gcm.h"
#include "aead/gcm_x86.h"
#include "aead/ghash.h"
#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
void HashBlocks(GcmStream* s, const uint8_t* data, size_t blocks) {
    if (s->tables.clmul == 1) {
        GcmClmulHash(&s->tables, s->ghash, data, blocks);
        return;
    }
    for (; blocks != 0; --blocks, data += 16) GhashBlock(s->ghash, s->tables.table, data);
}
}  // namespace

void AeadAuthenticate(GcmStream* s, const uint8_t* data, size_t length) {
    if (s->pendingLen != 0) {
        size_t take = 16 - s->pendingLen;
        if (take > length) take = length;
        std::memcpy(s->pending + s->pendingLen, data, take);
        s->pendingLen += uint32_t(take);
        data += take;
        length -= take;
        if (s->pendingLen < 16) return;
        HashBlocks(s, s->pending, 1);
        s->pendingLen = 0;
    }
    HashBlocks(s, data, length / 16);
    data += length - length % 16;
    length %= 16;
    if (length != 0) {
        std::memcpy(s->pending, data, length);
        s->pendingLen = uint32_t(length);
    }
}

// Zero bytes through the buffer up to the next multiple of 16 of count.
void AeadPadTo16(GcmStream* s, uint64_t count) {
    static const uint8_t zeros[16] = {};
    AeadAuthenticate(s, zeros, size_t((16 - count % 16) % 16));
}

void AeadXor(GcmStream* s, const uint8_t* input, uint8_t* out, size_t length) {
    if (s->keystreamPos != 0) {
        while (length != 0 && s->keystreamPos < 16) {
            *out++ = uint8_t(*input++ ^ s->keystream[s->keystreamPos++]);
            --length;
        }
        if (s->keystreamPos == 16) s->keystreamPos = 0;
    }
    const bool clmul = s->tables.clmul == 1;
    if (clmul) {
        GcmClmulCtr(&s->tables, s->nonce, &s->counter, input, out, length / 16);
        input += length - length % 16;
        out += length - length % 16;
        length %= 16;
    }
    uint8_t ks[16];
    while (length >= 16) {
        GcmAesCounterNext(&s->tables, &s->counter, ks);
        for (int i = 0; i < 16; ++i) out[i] = uint8_t(input[i] ^ ks[i]);
        input += 16;
        out += 16;
        length -= 16;
    }
    SecureWipe(ks, sizeof ks);
    if (length != 0) {
        if (clmul) {
            GcmClmulCounterBlock(&s->tables, s->nonce, ++s->counter, s->keystream);
        } else {
            GcmAesCounterNext(&s->tables, &s->counter, s->keystream);
        }
        for (size_t i = 0; i < length; ++i) out[i] = uint8_t(input[i] ^ s->keystream[i]);
        s->keystreamPos = uint32_t(length);
    }
}

void AeadFinish(GcmStream* s, uint8_t tag[16]) {
    AeadPadTo16(s, s->textLen);
    uint8_t lengths[16];
    Store64Be(lengths, s->aadLen * 8);
    Store64Be(lengths + 8, s->textLen * 8);
    AeadAuthenticate(s, lengths, 16);
    for (int k = 0; k < 4; ++k) Store32Be(tag + 4 * k, s->ghash[k] ^ s->encJ0[k]);
    s->aadLen = 0;
    s->textLen = 0;
    s->keystreamPos = 0;
    SecureWipe(s->keystream, sizeof s->keystream);
}

int32_t GcmStreamInit(GcmStream* s, const uint8_t* key, int32_t keyLength) {
    WipeObject(*s);
    if (key == nullptr || (keyLength != 16 && keyLength != 24 && keyLength != 32)) return -BAD_PARAM_ERROR;
    std::memcpy(s->key, key, size_t(keyLength));
    s->keyBits = uint32_t(keyLength) * 8;
    s->state = kAeadKeySet;
    return 0;
}

int32_t AeadSetNonce(GcmStream* s, const uint8_t* nonce, int32_t nonceLength) {
    if (s->state != kAeadKeySet) return -MISUSE_ERROR;
    if (nonce == nullptr || nonceLength != 12) return -BAD_PARAM_ERROR;
    GcmWipeKeyTables(&s->tables);
    std::memset(s->pending, 0, sizeof s->pending);
    s->pendingLen = 0;
    std::memset(s->ghash, 0, sizeof s->ghash);
    s->keystreamPos = 0;
    // The tables are rebuilt for every nonce, from the kept key.
    GcmExpandKey(&s->tables, s->key, s->keyBits);
    uint8_t j0[16];
    if (s->tables.clmul == 1) {
        std::memcpy(s->nonce, nonce, 12);
        GcmClmulCounterBlock(&s->tables, nonce, 1, j0);
    } else {
        const uint32_t fixed[3] = {Load32Be(nonce), Load32Be(nonce + 4), Load32Be(nonce + 8)};
        GcmAesCounterStart(&s->tables, fixed, 1, j0);
    }
    for (int k = 0; k < 4; ++k) s->encJ0[k] = Load32Be(j0 + 4 * k);
    SecureWipe(j0, sizeof j0);
    s->counter = 1;
    s->state = kAeadNonceSet;
    return 0;
}
