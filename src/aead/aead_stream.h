// The order of the incremental AEAD calls, shared by the AES-GCM and
// ChaCha20-Poly1305 records: key set, nonce set, AAD, then encrypting or
// decrypting, and back to key set at the finish, where the key survives for
// the next nonce. Each record type R brings its own operations, found by
// overload on R*:
//   AeadAuthenticate(R*, data, n)  feeds n bytes to the authenticator
//   AeadPadTo16(R*, count)         closes a section of count bytes
//   AeadXor(R*, input, out, n)     applies the next n bytes of key stream
//   AeadFinish(R*, tag)            the 16-byte tag; clears the lengths
// A record's Init and SetNonce are its own; SetNonce readies the key stream
// for the text. Results are 0 or minus a code, MISUSE_ERROR out of order.
#pragma once
#include <cstdint>
#include <cstring>

#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

enum : uint32_t { kAeadKeySet = 1, kAeadNonceSet = 2, kAeadEncrypting = 3, kAeadDecrypting = 4 };

template <class R>
int32_t AeadStreamAddAad(R* s, const uint8_t* aad, int32_t aadLength) {
    if (s->state != kAeadNonceSet) return -MISUSE_ERROR;
    if (aad == nullptr || aadLength == 0) return 0;
    if (aadLength < 0) return -BAD_PARAM_ERROR;
    AeadAuthenticate(s, aad, size_t(aadLength));
    s->aadLen += uint64_t(aadLength);
    return 0;
}

template <class R>
int32_t AeadStreamStartEncrypt(R* s) {
    if (s->state != kAeadNonceSet) return -MISUSE_ERROR;
    AeadPadTo16(s, s->aadLen);
    s->textLen = 0;
    s->state = kAeadEncrypting;
    return 0;
}

template <class R>
int32_t AeadStreamStartDecrypt(R* s, const uint8_t* tag, int32_t tagLength) {
    if (s->state != kAeadNonceSet) return -MISUSE_ERROR;
    if (tag == nullptr || tagLength < 4) return -BAD_PARAM_ERROR;
    const uint32_t n = tagLength > 16 ? 16 : uint32_t(tagLength);
    std::memcpy(s->expectedTag, tag, n);
    s->expectedTagLen = n;
    AeadPadTo16(s, s->aadLen);
    s->textLen = 0;
    s->state = kAeadDecrypting;
    return 0;
}

// Decrypting with no output only authenticates the input.
template <class R>
int32_t AeadStreamUpdate(R* s, uint8_t* out, const uint8_t* input, int32_t inputLength) {
    if (s->state != kAeadEncrypting && s->state != kAeadDecrypting) return -MISUSE_ERROR;
    if (inputLength < 0 || (input == nullptr && inputLength > 0)) return -BAD_PARAM_ERROR;
    const size_t length = size_t(inputLength);
    if (s->state == kAeadEncrypting) {
        if (out == nullptr && length != 0) return -BAD_PARAM_ERROR;
        if (length == 0) return 0;
        AeadXor(s, input, out, length);
        AeadAuthenticate(s, out, length);
    } else {
        if (length == 0) return 0;
        AeadAuthenticate(s, input, length);  // first: out may be the same buffer
        if (out != nullptr) AeadXor(s, input, out, length);
    }
    s->textLen += length;
    return 0;
}

template <class R>
int32_t AeadStreamFinishEncrypt(R* s, uint8_t* tag, int32_t tagLength) {
    if (s->state != kAeadEncrypting) return -MISUSE_ERROR;
    if (tag == nullptr || tagLength < 16) return -BAD_PARAM_ERROR;
    uint8_t computed[16];
    AeadFinish(s, computed);
    s->state = kAeadKeySet;
    std::memcpy(tag, computed, 16);
    SecureWipe(computed, sizeof computed);
    return 0;
}

// Back to key set whatever the outcome; -AUTH_FAIL_ERROR on a mismatch.
template <class R>
int32_t AeadStreamFinishDecrypt(R* s) {
    if (s->state != kAeadDecrypting) return -MISUSE_ERROR;
    uint8_t computed[16];
    AeadFinish(s, computed);
    s->state = kAeadKeySet;
    const int equal = CtEqual(computed, s->expectedTag, s->expectedTagLen);
    SecureWipe(computed, sizeof computed);
    return equal ? 0 : -AUTH_FAIL_ERROR;
}

template <class R>
void AeadStreamDestroy(R* s) {
    WipeObject(*s);
}
