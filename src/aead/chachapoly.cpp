#include "aead/chachapoly.h"

#include <cstring>

#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
enum : uint32_t { kKeySet = 1, kNonceSet = 2, kEncrypting = 3, kDecrypting = 4 };

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

void KeystreamXor(ChaChaPolyStream* s, const uint8_t* input, uint8_t* out, size_t length) {
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

void Finish(ChaChaPolyStream* s, uint8_t tag[16]) {
    PadTo16(&s->poly, s->textLen);
    FeedLengths(&s->poly, s->aadLen, s->textLen);
    Poly1305Final(&s->poly, tag);
    WipeObject(s->chacha);
    s->aadLen = 0;
    s->textLen = 0;
    s->keystreamPos = 0;
    SecureWipe(s->keystream, sizeof s->keystream);
}
}  // namespace

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
    s->state = kKeySet;
    return 0;
}

int32_t ChachaPolyStreamSetNonce(ChaChaPolyStream* s, const uint8_t* nonce, int32_t nonceLength) {
    if (s->state != kKeySet) return -MISUSE_ERROR;
    if (nonce == nullptr || nonceLength != 12) return -BAD_PARAM_ERROR;
    StartPoly(&s->poly, s->key, 32, nonce, nonceLength);
    Chacha20Setup(&s->chacha, s->key, 32, nonce, nonceLength, 1);
    s->keystreamPos = 0;
    s->aadLen = 0;
    s->textLen = 0;
    s->state = kNonceSet;
    return 0;
}

int32_t ChachaPolyStreamAddAad(ChaChaPolyStream* s, const uint8_t* aad, int32_t aadLength) {
    if (s->state != kNonceSet) return -MISUSE_ERROR;
    if (aad == nullptr || aadLength == 0) return 0;
    if (aadLength < 0) return -BAD_PARAM_ERROR;
    Poly1305Update(&s->poly, aad, size_t(aadLength));
    s->aadLen += uint64_t(aadLength);
    return 0;
}

int32_t ChachaPolyStreamStartEncrypt(ChaChaPolyStream* s) {
    if (s->state != kNonceSet) return -MISUSE_ERROR;
    PadTo16(&s->poly, s->aadLen);
    s->textLen = 0;
    s->state = kEncrypting;
    return 0;
}

int32_t ChachaPolyStreamStartDecrypt(ChaChaPolyStream* s, const uint8_t* tag, int32_t tagLength) {
    if (s->state != kNonceSet) return -MISUSE_ERROR;
    if (tag == nullptr || tagLength < 4) return -BAD_PARAM_ERROR;
    uint32_t n = tagLength > 16 ? 16 : uint32_t(tagLength);
    std::memcpy(s->expectedTag, tag, n);
    s->expectedTagLen = n;
    PadTo16(&s->poly, s->aadLen);
    s->textLen = 0;
    s->state = kDecrypting;
    return 0;
}

int32_t ChachaPolyStreamUpdate(ChaChaPolyStream* s, uint8_t* out, const uint8_t* input, int32_t inputLength) {
    if (s->state != kEncrypting && s->state != kDecrypting) return -MISUSE_ERROR;
    if (inputLength < 0 || (input == nullptr && inputLength > 0)) return -BAD_PARAM_ERROR;
    size_t length = size_t(inputLength);
    if (s->state == kEncrypting) {
        if (out == nullptr && length != 0) return -BAD_PARAM_ERROR;
        if (length == 0) return 0;
        KeystreamXor(s, input, out, length);
        Poly1305Update(&s->poly, out, length);
    } else if (s->state == kDecrypting) {
        if (length == 0) return 0;
        Poly1305Update(&s->poly, input, length);
        if (out != nullptr) KeystreamXor(s, input, out, length);
    }
    s->textLen += length;
    return 0;
}

int32_t ChachaPolyStreamFinishEncrypt(ChaChaPolyStream* s, uint8_t* tag, int32_t tagLength) {
    if (s->state != kEncrypting) return -MISUSE_ERROR;
    if (tag == nullptr || tagLength < 16) return -BAD_PARAM_ERROR;
    uint8_t computed[16];
    Finish(s, computed);
    s->state = kKeySet;
    std::memcpy(tag, computed, 16);
    SecureWipe(computed, sizeof computed);
    return 0;
}

int32_t ChachaPolyStreamFinishDecrypt(ChaChaPolyStream* s) {
    if (s->state != kDecrypting) return -MISUSE_ERROR;
    uint8_t computed[16];
    Finish(s, computed);
    s->state = kKeySet;
    int equal = CtEqual(computed, s->expectedTag, s->expectedTagLen);
    SecureWipe(computed, sizeof computed);
    return equal ? 0 : -AUTH_FAIL_ERROR;
}

void ChachaPolyStreamDestroy(ChaChaPolyStream* s) {
    SecureWipe(s->key, sizeof s->key);
    WipeObject(*s);
    s->state = 0;
}
