// AEAD_: authenticated encryption by algorithm number (1 AES-128-GCM,
// 2 AES-256-GCM, 26 Ascon-128, 27 Ascon-128a, 29 ChaCha20-Poly1305); style B.
// The order of the checks in each call is part of its contract.
#include <cstring>

#include "aead/aead_stream.h"
#include "aead/ascon.h"
#include "aead/chachapoly.h"
#include "aead/gcm.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr int32_t kMaxNumber = 29;

struct AeadLimits {
    uint32_t key, nonceMin, nonceMax, tag, tagMin;
};

const AeadLimits* LimitsFor(int32_t number) {
    static constexpr AeadLimits kAes128 = {16, 12, 12, 16, 4};
    static constexpr AeadLimits kAes256 = {32, 12, 12, 16, 4};
    static constexpr AeadLimits kChacha = {32, 12, 12, 16, 4};
    static constexpr AeadLimits kAscon = {16, 16, 16, 16, 16};
    switch (number) {
        case OPT_AEAD_AES_128_GCM: return &kAes128;
        case OPT_AEAD_AES_256_GCM: return &kAes256;
        case OPT_AEAD_CHACHA20_POLY1305: return &kChacha;
        case OPT_AEAD_ASCON_128:
        case OPT_AEAD_ASCON_128A: return &kAscon;
        default: return nullptr;
    }
}

bool InRange(int32_t value, uint32_t least, uint32_t most) {
    return value >= 0 && uint32_t(value) >= least && uint32_t(value) <= most;
}

int32_t CheckEncryptLimits(int32_t number, int32_t nonceLength, int32_t tagRoom) {
    const AeadLimits* l = LimitsFor(number);
    if (l == nullptr) return -BAD_FLAG_ERROR;
    if (!InRange(nonceLength, l->nonceMin, l->nonceMax)) return -BAD_IV_LEN_ERROR;
    if (tagRoom < 0 || uint32_t(tagRoom) < l->tag) return -SHORT_BUF_ERROR;
    return 0;
}

int32_t CheckDecryptLimits(int32_t number, int32_t nonceLength, int32_t tagLength) {
    const AeadLimits* l = LimitsFor(number);
    if (l == nullptr) return -BAD_FLAG_ERROR;
    if (!InRange(nonceLength, l->nonceMin, l->nonceMax)) return -BAD_IV_LEN_ERROR;
    if (!InRange(tagLength, l->tagMin, l->tag)) return -BAD_LENGTH_ERROR;
    return 0;
}

int32_t NonceSize(int32_t number) {
    switch (number) {
        case OPT_AEAD_AES_128_GCM:
        case OPT_AEAD_AES_256_GCM:
        case OPT_AEAD_CHACHA20_POLY1305: return 12;
        case OPT_AEAD_ASCON_128:
        case OPT_AEAD_ASCON_128A: return 16;
        default: return -1;
    }
}

// The whole-message calls: Ascon is refused before any length is looked at.
int32_t CheckWholeMessageKey(int32_t number, int32_t keyLength) {
    if (number == 0 || number > kMaxNumber) return -BAD_FLAG_ERROR;
    switch (number) {
        case OPT_AEAD_AES_128_GCM: return keyLength == 16 ? 0 : -BAD_KEY_LEN_ERROR;
        case OPT_AEAD_AES_256_GCM:
        case OPT_AEAD_CHACHA20_POLY1305: return keyLength == 32 ? 0 : -BAD_KEY_LEN_ERROR;
        case OPT_AEAD_ASCON_128:
        case OPT_AEAD_ASCON_128A: return -NOT_SUPPORTED_ERROR;
        default: return -BAD_FLAG_ERROR;
    }
}

int32_t CheckWithTagKey(int32_t number, int32_t keyLength) {
    switch (number) {
        case OPT_AEAD_AES_128_GCM:
        case OPT_AEAD_ASCON_128:
        case OPT_AEAD_ASCON_128A: return keyLength == 16 ? 0 : -BAD_KEY_LEN_ERROR;
        case OPT_AEAD_AES_256_GCM:
        case OPT_AEAD_CHACHA20_POLY1305: return keyLength == 32 ? 0 : -BAD_KEY_LEN_ERROR;
        default: return -BAD_FLAG_ERROR;
    }
}

bool IsGcm(int32_t number) { return number == OPT_AEAD_AES_128_GCM || number == OPT_AEAD_AES_256_GCM; }

// Runs a call on the slot's record, which is of the slot's algorithm.
template <typename Call>
int32_t Dispatch(AeadSlot* slot, Call call) {
    switch (slot->alg) {
        case OPT_AEAD_AES_128_GCM:
        case OPT_AEAD_AES_256_GCM: return call(&slot->record.gcm);
        case OPT_AEAD_CHACHA20_POLY1305: return call(&slot->record.chacha);
        default: return -INTERNAL_ERROR;
    }
}

// The slot of a live handle, or null.
AeadSlot* LiveSlot(int32_t handle) {
    AeadSlot* slot = &GetContextArea()->aead;
    return HandleMatches(slot->handle, handle) ? slot : nullptr;
}

int32_t InitKeySlot(AeadSlot* slot, const uint8_t* key, int32_t keylen, int32_t options) {
    slot->handle = 0;  // the thread's earlier context is dead whatever follows
    EnterCall();
    if (key == nullptr || keylen < 1) {
        LeaveCall(-BAD_KEY_ERROR);
        return 0;
    }
    WipeObject(*slot);
    int32_t number = options & 0xff;
    int32_t status;
    switch (number) {
        case OPT_AEAD_AES_128_GCM:
        case OPT_AEAD_AES_256_GCM:
            // A wrong key length comes back as the result itself, unlatched,
            // where a handle is expected: kept for existing callers.
            if (keylen != (number == OPT_AEAD_AES_128_GCM ? 16 : 32)) return -BAD_KEY_LEN_ERROR;
            slot->alg = number;
            status = GcmStreamInit(&slot->record.gcm, key, keylen);
            break;
        case OPT_AEAD_CHACHA20_POLY1305:
            if (keylen != 32) return -BAD_KEY_LEN_ERROR;
            slot->alg = number;
            status = ChachaPolyStreamInit(&slot->record.chacha, key, keylen);
            break;
        default:
            status = -BAD_FLAG_ERROR;  // Ascon has no incremental form
            break;
    }
    if (status != 0) {
        slot->alg = -1;
        LeaveCall(status);
        return 0;
    }
    slot->handle = NewHandle();
    return int32_t(slot->handle);
}
}  // namespace

extern "C" {

int32_t AEAD_Encrypt(unsigned char* out, int32_t outlen, unsigned char* tag, int32_t taglen,
                     const unsigned char* input, int32_t inlen, const unsigned char* key, int32_t keylen,
                     const unsigned char* nonce, int32_t noncelen, const unsigned char* aad, int32_t aadlen,
                     int32_t options) {
    EnterCall();
    // First of all, so that a call failing below leaves the tag zeroed.
    if (tag != nullptr && taglen >= 1) std::memset(tag, 0, size_t(taglen));
    if (out == nullptr && tag == nullptr) return LeaveCall(-BAD_PARAM_ERROR);
    if (outlen < 1 && taglen < 1) return LeaveCall(-BAD_PARAM_ERROR);
    if (input != nullptr && inlen > 0) {
        if (out == nullptr) return LeaveCall(-NULL_ERROR);
        if (outlen < inlen) return LeaveCall(-SHORT_BUF_ERROR);
    }
    if (key == nullptr || keylen <= 0) return LeaveCall(-BAD_KEY_ERROR);
    if (nonce == nullptr || noncelen <= 0) return LeaveCall(-BAD_IV_ERROR);
    if ((input == nullptr && inlen > 0) || inlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if ((aad == nullptr && aadlen > 0) || aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    int32_t number = options & 0xff;
    int32_t status = CheckWholeMessageKey(number, keylen);
    if (status == 0) status = CheckEncryptLimits(number, noncelen, taglen);
    if (status == 0 && tag == nullptr) status = -BAD_PARAM_ERROR;
    if (status != 0) return LeaveCall(status);
    if (IsGcm(number)) {
        status = GcmAeadEncrypt(out, tag, input, inlen, key, keylen, nonce, noncelen, aad, aadlen);
    } else {
        status = ChachaPolySeal(out, tag, 16, input, inlen, key, keylen, nonce, noncelen, aad, aadlen);
    }
    return LeaveCall(status);
}

int32_t AEAD_Decrypt(unsigned char* out, int32_t outlen, const unsigned char* input, int32_t inlen,
                     const unsigned char* key, int32_t keylen, const unsigned char* nonce, int32_t noncelen,
                     const unsigned char* aad, int32_t aadlen, const unsigned char* tag, int32_t taglen,
                     int32_t options) {
    EnterCall();
    if (tag == nullptr || taglen <= 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (input != nullptr && inlen > 0 && out != nullptr && outlen >= 1 && outlen < inlen) {
        return LeaveCall(-SHORT_BUF_ERROR);
    }
    if (key == nullptr || keylen <= 0) return LeaveCall(-BAD_KEY_ERROR);
    if (nonce == nullptr || noncelen <= 0) return LeaveCall(-BAD_IV_ERROR);
    if ((input == nullptr && inlen > 0) || inlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if ((aad == nullptr && aadlen > 0) || aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    int32_t number = options & 0xff;
    int32_t status = CheckWholeMessageKey(number, keylen);
    if (status == 0) status = CheckDecryptLimits(number, noncelen, taglen);
    if (status != 0) return LeaveCall(status);
    if (IsGcm(number)) {
        // out absent or outlen 0: verify only.
        status = GcmAeadDecrypt(out, outlen, input, inlen, key, keylen, nonce, noncelen, aad, aadlen, tag, taglen);
    } else {
        // This path writes whenever out is present, so its room must hold the text.
        if (out != nullptr && inlen > 0 && outlen < inlen) return LeaveCall(-SHORT_BUF_ERROR);
        status = ChachaPolyOpen(out, input, inlen, key, keylen, nonce, noncelen, aad, aadlen, tag, taglen);
    }
    return LeaveCall(status);
}

int32_t AEAD_EncryptWithTag(unsigned char* out, int32_t outlen, const unsigned char* input, int32_t inlen,
                            const unsigned char* key, int32_t keylen, const unsigned char* nonce,
                            int32_t noncelen, const unsigned char* aad, int32_t aadlen, int32_t options) {
    EnterCall();
    if (key == nullptr || keylen <= 0) return LeaveCall(-BAD_KEY_ERROR);
    if (nonce == nullptr || noncelen <= 0) return LeaveCall(-BAD_IV_ERROR);
    if (outlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    // NULL_ERROR here where the whole-message calls say BAD_PARAM_ERROR: kept.
    if (input == nullptr && inlen > 0) return LeaveCall(-NULL_ERROR);
    if (aad == nullptr && aadlen > 0) return LeaveCall(-NULL_ERROR);
    if (inlen < 0 || aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    int32_t number = options & 0xff;
    bool prefixed = (options & OPT_PREFIX_IV) != 0;
    int32_t status = CheckWithTagKey(number, keylen);
    if (status == 0) status = CheckEncryptLimits(number, noncelen, 16);
    if (status != 0) return LeaveCall(status);
    int32_t prefix = prefixed ? NonceSize(number) : 0;
    int64_t needed = int64_t(inlen) + 16 + prefix;
    if (needed > INT32_MAX) return LeaveCall(-BAD_LENGTH_ERROR);
    // The size answer comes only after every argument test.
    if (out == nullptr || outlen == 0) return LeaveCall(int32_t(needed));
    if (outlen < needed) return LeaveCall(-SHORT_BUF_ERROR);
    uint8_t* body = out + prefix;
    if (number == OPT_AEAD_ASCON_128 || number == OPT_AEAD_ASCON_128A) {
        status = AsconAeadSeal(body, input, inlen, key, nonce, aad, aadlen, options);
    } else {
        uint8_t tag[16];  // not secret: it is handed out next
        if (IsGcm(number)) {
            status = GcmAeadEncrypt(body, tag, input, inlen, key, keylen, nonce, noncelen, aad, aadlen);
        } else {
            status = ChachaPolySeal(body, tag, 16, input, inlen, key, keylen, nonce, noncelen, aad, aadlen);
        }
        std::memcpy(body + inlen, tag, 16);
    }
    if (status != 0) return LeaveCall(status < 0 ? status : -status);
    if (prefixed) std::memcpy(out, nonce, size_t(prefix));
    return LeaveCall(int32_t(needed));
}

int32_t AEAD_DecryptWithTag(unsigned char* out, int32_t outlen, const unsigned char* input, int32_t inlen,
                            const unsigned char* key, int32_t keylen, const unsigned char* nonce,
                            int32_t noncelen, const unsigned char* aad, int32_t aadlen, int32_t options) {
    EnterCall();
    if (key == nullptr || keylen <= 0) return LeaveCall(-BAD_KEY_ERROR);
    if (outlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (input == nullptr && inlen > 0) return LeaveCall(-NULL_ERROR);
    if (aad == nullptr && aadlen > 0) return LeaveCall(-NULL_ERROR);
    if (aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    int32_t number = options & 0xff;
    int32_t size = NonceSize(number);
    if (size < 0) return LeaveCall(-BAD_FLAG_ERROR);
    int32_t status = CheckWithTagKey(number, keylen);
    if (status != 0) return LeaveCall(status);
    bool prefixed = (options & OPT_PREFIX_IV) != 0;
    int32_t prefix = prefixed ? size : 0;
    // Also an absent or empty input: there must be a tag to read.
    if (input == nullptr || inlen < prefix + 16) return LeaveCall(-BAD_LENGTH_ERROR);
    int32_t textLength = inlen - prefix - 16;
    uint8_t nonceCopy[16];
    if (prefixed) {
        std::memcpy(nonceCopy, input, size_t(size));  // nonce and noncelen are not read
    } else {
        if (noncelen != size) return LeaveCall(-BAD_IV_LEN_ERROR);
        if (nonce == nullptr) return LeaveCall(-BAD_IV_ERROR);
        std::memcpy(nonceCopy, nonce, size_t(size));
    }
    uint8_t tag[16];
    std::memcpy(tag, input + inlen - 16, 16);
    if (out == nullptr || outlen == 0) return LeaveCall(textLength);
    if (outlen < textLength) return LeaveCall(-SHORT_BUF_ERROR);
    const uint8_t* body = input + prefix;
    if (number == OPT_AEAD_ASCON_128 || number == OPT_AEAD_ASCON_128A) {
        // Zeroes the plaintext length of out when the tag fails.
        status = AsconAeadOpen(out, textLength, body, textLength + 16, key, nonceCopy, aad, aadlen, options);
    } else if (IsGcm(number)) {
        status = GcmAeadDecrypt(out, outlen, body, textLength, key, keylen, nonceCopy, size, aad, aadlen, tag, 16);
    } else {
        status = ChachaPolyOpen(out, body, textLength, key, keylen, nonceCopy, size, aad, aadlen, tag, 16);
    }
    return LeaveCall(status != 0 ? status : textLength);
}

int32_t AEAD_InitKey(const unsigned char* key, int32_t keylen, int32_t options) {
    StirEntropy(0);
    return InitKeySlot(&GetContextArea()->aead, key, keylen, options);
}

int32_t AEAD_SetNonce(int32_t handle, const unsigned char* nonce, int32_t noncelen) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    if (nonce == nullptr || noncelen < 1) return LeaveCall(-BAD_IV_ERROR);
    if (noncelen != 12) return LeaveCall(-BAD_IV_LEN_ERROR);
    return LeaveCall(Dispatch(
        slot, [&](auto* s) { return AeadSetNonce(s, nonce, noncelen); }));
}

int32_t AEAD_AddAAD(int32_t handle, const unsigned char* aad, int32_t aadlen) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    return LeaveCall(Dispatch(
        slot, [&](auto* s) { return AeadStreamAddAad(s, aad, aadlen); }));
}

int32_t AEAD_StartEncrypt(int32_t handle) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    return LeaveCall(Dispatch(slot, [](auto* s) { return AeadStreamStartEncrypt(s); }));
}

int32_t AEAD_StartDecrypt(int32_t handle, const unsigned char* tag, int32_t taglen) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    if (tag == nullptr || taglen < 1) return LeaveCall(-BAD_PARAM_ERROR);
    return LeaveCall(Dispatch(
        slot, [&](auto* s) { return AeadStreamStartDecrypt(s, tag, taglen); }));
}

int32_t AEAD_Update(int32_t handle, unsigned char* out, int32_t outlen, const unsigned char* input, int32_t inlen) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    // Any room below the input is short, 0 and negative included: the
    // record writes whenever out is present.
    if (input != nullptr && inlen >= 1 && out != nullptr && outlen < inlen) return LeaveCall(-SHORT_BUF_ERROR);
    return LeaveCall(Dispatch(
        slot, [&](auto* s) { return AeadStreamUpdate(s, out, input, inlen); }));
}

int32_t AEAD_FinishEncrypt(int32_t handle, unsigned char* tag, int32_t taglen) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    if (tag == nullptr || taglen < 1) return LeaveCall(-BAD_PARAM_ERROR);
    if (taglen < 16) return LeaveCall(-SHORT_BUF_ERROR);
    return LeaveCall(Dispatch(
        slot, [&](auto* s) { return AeadStreamFinishEncrypt(s, tag, taglen); }));
}

int32_t AEAD_FinishDecrypt(int32_t handle) {
    EnterCall();
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    return LeaveCall(Dispatch(slot, [](auto* s) { return AeadStreamFinishDecrypt(s); }));
}

int32_t AEAD_Destroy(int32_t handle) {
    EnterCall();
    StirEntropy(0);
    AeadSlot* slot = LiveSlot(handle);
    if (slot == nullptr) return LeaveCall(-INVALID_HANDLE_ERROR);
    int32_t status = Dispatch(slot, [](auto* s) { AeadStreamDestroy(s); return 0; });
    WipeObject(*slot);
    slot->handle = 0;
    return LeaveCall(status);
}

}  // extern "C"
