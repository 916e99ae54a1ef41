#include "aead/chachapoly.h"

#include <cstring>

#include "aead/aead_stream.h"
#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
void PadTo16(Poly1305Context* poly, uint64_t count) {
    static const uint8_t zeros[16] = {};
    Poly1305Update(poly, zeros, size_t((16 - count % 16) % 16));
}

void FeedLengths(Poly1305Context* poly, uint64_t aadLength, uint64_t textLength) {
    uint8_t block[16];
    Store64Le(block, aadLength);
    Store64Le(block + 8, textLength);
    Poly1305Update(poly, block, 16);
}

void StartPoly(Poly1305Context* poly, const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
               int32_t nonceLength) {
    uint8_t otk[32];
    ChachaPolyKey(otk, key, keyLength, nonce, nonceLength);
    Poly1305Init(poly, otk);
    SecureWipe(otk, sizeof otk);
}
}  // namespace

void AeadAuthenticate(ChaChaPolyStream* s, const uint8_t* data, size_t length) {
    Poly1305Update(&s->poly, data, length);
}

void AeadPadTo16(ChaChaPolyStream* s, uint64_t count) { PadTo16(&s->poly, count); }

void AeadXor(ChaChaPolyStream* s, const uint8_t* input, uint8_t* out, size_t length) {
    if (s->keystreamPos != 0) {
        while (length != 0 && s->keystreamPos < 64) {
            *out++ = uint8_t(*input++ ^ s->keystream[s->keystreamPos++]);
            --length;
        }
        if (s->keystreamPos == 64) s->keystreamPos = 0;
    }
    size_t whole = length & ~size_t(63);
    if (whole != 0) {
        Chacha20Xor(&s->chacha, input, out, whole);
        input += whole;
        out += whole;
        length -= whole;
    }
    if (length != 0) {
        std::memset(s->keystream, 0, sizeof s->keystream);
        Chacha20Xor(&s->chacha, s->keystream, s->keystream, sizeof s->keystream);
        for (size_t i = 0; i < length; ++i) out[i] = uint8_t(input[i] ^ s->keystream[i]);
        s->keystreamPos = uint32_t(length);
    }
}

void AeadFinish(ChaChaPolyStream* s, uint8_t tag[16]) {
    PadTo16(&s->poly, s->textLen);
    FeedLengths(&s->poly, s->aadLen, s->textLen);
    Poly1305Final(&s->poly, tag);
    WipeObject(s->chacha);
    s->aadLen = 0;
    s->textLen = 0;
    s->keystreamPos = 0;
    SecureWipe(s->keystream, sizeof s->keystream);
}

void ChachaPolyKey(uint8_t otk[32], const uint8_t* key, int32_t keyLength, const uint8_t* nonce,
                   int32_t nonceLength) {
    Chacha20State state;
    uint8_t block[64];
    Chacha20Setup(&state, key, keyLength, nonce, nonceLength, 0);
    Chacha20Block(block, &state);
    std::memcpy(otk, block, 32);
    SecureWipe(block, sizeof block);
    WipeObject(state);
}

int32_t ChachaPolySeal(uint8_t* out, uint8_t* tag, int32_t tagLength, const uint8_t* input, int32_t inputLength,
                       const uint8_t* key, int32_t keyLength, const uint8_t* nonce, int32_t nonceLength,
                       const uint8_t* aad, int32_t aadLength) {
    Poly1305Context poly;
    StartPoly(&poly, key, keyLength, nonce, nonceLength);
    if (aad != nullptr && aadLength > 0) {
        Poly1305Update(&poly, aad, size_t(aadLength));
        PadTo16(&poly, uint64_t(aadLength));
    }
    if (out != nullptr && inputLength > 0) {
        Chacha20State state;
        Chacha20Setup(&state, key, keyLength, nonce, nonceLength, 1);
        Chacha20Xor(&state, input, out, size_t(inputLength));
        WipeObject(state);
        Poly1305Update(&poly, out, size_t(inputLength));
        PadTo16(&poly, uint64_t(inputLength));
    }
    FeedLengths(&poly, uint32_t(aadLength), uint32_t(inputLength));
    uint8_t computed[16];
    Poly1305Final(&poly, computed);
    if (tag != nullptr && tagLength > 0) std::memcpy(tag, computed, size_t(tagLength < 16 ? tagLength : 16));
    SecureWipe(computed, sizeof computed);
    WipeObject(poly);
    return 0;
}

int32_t ChachaPolyOpen(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                       int32_t keyLength, const uint8_t* nonce, int32_t nonceLength, const uint8_t* aad,
                       int32_t aadLength, const uint8_t* tag, int32_t tagLength) {
    Poly1305Context poly;
    StartPoly(&poly, key, keyLength, nonce, nonceLength);
    if (aad != nullptr && aadLength > 0) {
        Poly1305Update(&poly, aad, size_t(aadLength));
        PadTo16(&poly, uint64_t(aadLength));
    }
    if (inputLength > 0) {
        Poly1305Update(&poly, input, size_t(inputLength));  // before out, which may be input
        if (out != nullptr) {
            Chacha20State state;
            Chacha20Setup(&state, key, keyLength, nonce, nonceLength, 1);
            Chacha20Xor(&state, input, out, size_t(inputLength));
            WipeObject(state);
        }
        PadTo16(&poly, uint64_t(inputLength));
    }
    FeedLengths(&poly, uint32_t(aadLength), uint32_t(inputLength));
    uint8_t computed[16];
    Poly1305Final(&poly, computed);
    size_t n = tagLength <= 0 ? 0 : (tagLength < 16 ? size_t(tagLength) : 16);
    int equal = CtEqual(computed, tag, n);
    WipeObject(poly);
    return equal ? 0 : -AUTH_FAIL_ERROR;
}

int32_t ChachaPolyStreamInit(ChaChaPolyStream* s, const uint8_t* key, int32_t keyLength) {
    WipeObject(*s);
    if (key == nullptr || keyLength != 32) return -BAD_PARAM_ERROR;
    std::memcpy(s->key, key, 32);
    s->state = kAeadKeySet;
    return 0;
}

int32_t AeadSetNonce(ChaChaPolyStream* s, const uint8_t* nonce, int32_t nonceLength) {
    if (s->state != kAeadKeySet) return -MISUSE_ERROR;
    if (nonce == nullptr || nonceLength != 12) return -BAD_PARAM_ERROR;
    StartPoly(&s->poly, s->key, 32, nonce, nonceLength);
    Chacha20Setup(&s->chacha, s->key, 32, nonce, nonceLength, 1);
    s->keystreamPos = 0;
    s->aadLen = 0;
    s->textLen = 0;
    s->state = kAeadNonceSet;
    return 0;
}
