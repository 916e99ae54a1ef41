// GCM_: AES-GCM with keys of 16, 24 or 32 bytes, IVs of any non-zero length
// and tags of 4 to 16 bytes; style B, but a bad key handle gives +64.
#include <cstring>

#include "aead/gcm.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
bool IsAesKeyLength(int32_t length) { return length == 16 || length == 24 || length == 32; }

// The checks GCM_Encrypt and GCM_NextEncrypt share, ahead of the key length.
int32_t ScreenSealArguments(const uint8_t* out, int32_t outlen, const uint8_t* tag, int32_t taglen,
                            const uint8_t* input, int32_t inlen, const uint8_t* iv, int32_t ivlen,
                            const uint8_t* aad, int32_t aadlen) {
    if (iv == nullptr || ivlen <= 0) return -BAD_IV_ERROR;
    if (out == nullptr && tag == nullptr) return -BAD_PARAM_ERROR;
    if (outlen == 0 && taglen == 0) return -BAD_PARAM_ERROR;
    if ((input == nullptr && inlen != 0) || (aad == nullptr && aadlen != 0)) return -BAD_PARAM_ERROR;
    if (inlen < 0 || aadlen < 0) return -BAD_PARAM_ERROR;
    if (tag != nullptr && taglen < 4) return -SHORT_BUF_ERROR;
    return 0;
}

// Picks the output place: out with a non-zero outlen, else none. Text with
// no place to go fails, since the tag would have to cover ciphertext that
// was never made.
int32_t ChooseSealOutput(uint8_t* out, int32_t outlen, int32_t inlen, uint8_t** output) {
    *output = nullptr;
    if (out != nullptr && outlen != 0) {
        if (outlen < inlen) return -SHORT_BUF_ERROR;
        *output = out;
    }
    if (*output == nullptr && inlen > 0) return out == nullptr ? -NULL_ERROR : -SHORT_BUF_ERROR;
    return 0;
}

void Seal(GcmKeyTables* tables, uint8_t* output, uint8_t* tag, int32_t taglen, const uint8_t* input,
          int32_t inlen, const uint8_t* iv, int32_t ivlen, const uint8_t* aad, int32_t aadlen) {
    uint8_t local[16];
    GcmSeal(tables, iv, size_t(ivlen), input, size_t(inlen), aad, size_t(aadlen), output, local);
    if (tag != nullptr) std::memcpy(tag, local, size_t(taglen < 16 ? taglen : 16));
    SecureWipe(local, sizeof local);
}

int32_t InitKeySlot(GcmSlot* slot, const uint8_t* key, int32_t keylen) {
    slot->handle = 0;
    EnterCall();
    int32_t code = 0;
    if (key == nullptr) code = -BAD_KEY_ERROR;
    else if (!IsAesKeyLength(keylen)) code = -BAD_KEY_LEN_ERROR;
    if (code != 0) {
        WipeObject(slot->tables);
        LeaveCall(code);
        return 0;
    }
    GcmExpandKey(&slot->tables, key, uint32_t(keylen) * 8);
    slot->handle = NewHandle();
    return int32_t(slot->handle);
}
}  // namespace

extern "C" {

int32_t GCM_Encrypt(unsigned char* out, int32_t outlen, unsigned char* tag, int32_t taglen,
                    const unsigned char* input, int32_t inlen, const unsigned char* key, int32_t keylen,
                    const unsigned char* iv, int32_t ivlen, const unsigned char* aad, int32_t aadlen,
                    int32_t options) {
    EnterCall();
    if (key == nullptr || keylen == 0) return LeaveCall(-BAD_KEY_ERROR);
    int32_t status = ScreenSealArguments(out, outlen, tag, taglen, input, inlen, iv, ivlen, aad, aadlen);
    if (status != 0) return LeaveCall(status);
    if (!IsAesKeyLength(keylen)) return LeaveCall(-BAD_KEY_LEN_ERROR);
    uint8_t* output;
    status = ChooseSealOutput(out, outlen, inlen, &output);
    if (status != 0) return LeaveCall(status);
    GcmKeyTables tables;
    GcmExpandKey(&tables, key, uint32_t(keylen) * 8);
    Seal(&tables, output, tag, taglen, input, inlen, iv, ivlen, aad, aadlen);
    GcmWipeKeyTables(&tables);
    return LeaveCall(0);
}

int32_t GCM_Decrypt(unsigned char* out, int32_t outlen, const unsigned char* input, int32_t inlen,
                    const unsigned char* key, int32_t keylen, const unsigned char* iv, int32_t ivlen,
                    const unsigned char* aad, int32_t aadlen, const unsigned char* tag, int32_t taglen,
                    int32_t options) {
    EnterCall();
    if (key == nullptr || keylen == 0) return LeaveCall(-BAD_KEY_ERROR);
    if (iv == nullptr || ivlen <= 0) return LeaveCall(-BAD_IV_ERROR);
    // Tested even with out absent: a verify-only call still states its room.
    if (outlen < inlen) return LeaveCall(-SHORT_BUF_ERROR);
    if ((input == nullptr && inlen != 0) || (aad == nullptr && aadlen != 0)) return LeaveCall(-BAD_PARAM_ERROR);
    if (inlen < 0 || aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (!IsAesKeyLength(keylen)) return LeaveCall(-BAD_KEY_LEN_ERROR);
    // The tag is not screened (a length of 0 compares nothing and holds), but
    // an absent one with a length to read is refused.
    if (tag == nullptr && taglen != 0) return LeaveCall(-BAD_PARAM_ERROR);
    GcmKeyTables tables;
    GcmExpandKey(&tables, key, uint32_t(keylen) * 8);
    uint8_t* output = (out != nullptr && outlen != 0) ? out : nullptr;
    int ok = GcmOpen(&tables, iv, size_t(ivlen), input, size_t(inlen), tag, taglen, aad, size_t(aadlen), output);
    GcmWipeKeyTables(&tables);
    return LeaveCall(ok ? 0 : -AUTH_FAIL_ERROR);
}

int32_t GCM_InitKey(const unsigned char* key, int32_t keylen, int32_t options) {
    StirEntropy(0);
    return InitKeySlot(&GetContextArea()->gcm, key, keylen);
}

int32_t GCM_NextEncrypt(int32_t handle, unsigned char* out, int32_t outlen, unsigned char* tag, int32_t taglen,
                        const unsigned char* input, int32_t inlen, const unsigned char* iv, int32_t ivlen,
                        const unsigned char* aad, int32_t aadlen) {
    EnterCall();
    GcmSlot* slot = &GetContextArea()->gcm;
    if (!HandleMatches(slot->handle, handle)) return LeaveCall(INVALID_HANDLE_ERROR);  // positive on purpose
    int32_t status = ScreenSealArguments(out, outlen, tag, taglen, input, inlen, iv, ivlen, aad, aadlen);
    if (status != 0) return LeaveCall(status);
    uint8_t* output;
    status = ChooseSealOutput(out, outlen, inlen, &output);
    if (status != 0) return LeaveCall(status);
    Seal(&slot->tables, output, tag, taglen, input, inlen, iv, ivlen, aad, aadlen);
    return LeaveCall(0);
}

int32_t GCM_NextDecrypt(int32_t handle, unsigned char* out, int32_t outlen, const unsigned char* input,
                        int32_t inlen, const unsigned char* iv, int32_t ivlen, const unsigned char* aad,
                        int32_t aadlen, const unsigned char* tag, int32_t taglen) {
    EnterCall();
    GcmSlot* slot = &GetContextArea()->gcm;
    if (!HandleMatches(slot->handle, handle)) return LeaveCall(INVALID_HANDLE_ERROR);  // positive on purpose
    if (iv == nullptr || ivlen <= 0) return LeaveCall(-BAD_IV_ERROR);
    if (out == nullptr || outlen == 0) return LeaveCall(-BAD_PARAM_ERROR);  // no verify-only form here
    if ((input == nullptr && inlen != 0) || (aad == nullptr && aadlen != 0)) return LeaveCall(-BAD_PARAM_ERROR);
    if (inlen < 0 || aadlen < 0) return LeaveCall(-BAD_PARAM_ERROR);
    if (outlen < inlen) return LeaveCall(-SHORT_BUF_ERROR);
    if (tag == nullptr && taglen != 0) return LeaveCall(-BAD_PARAM_ERROR);
    int ok = GcmOpen(&slot->tables, iv, size_t(ivlen), input, size_t(inlen), tag, taglen, aad, size_t(aadlen), out);
    return LeaveCall(ok ? 0 : -AUTH_FAIL_ERROR);
}

int32_t GCM_FinishKey(int32_t handle) {
    EnterCall();
    StirEntropy(0);
    GcmSlot* slot = &GetContextArea()->gcm;
    if (!HandleMatches(slot->handle, handle)) return LeaveCall(INVALID_HANDLE_ERROR);  // positive on purpose
    WipeObject(slot->tables);
    slot->handle = 0;
    return LeaveCall(0);
}

}  // extern "C"
