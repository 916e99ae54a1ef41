#include "stream/arcfour.h"

#include "util/wipe.h"
#include "verimond.h"

void ArcfourSetup(ArcfourState* state, const uint8_t* key, size_t keyLength) {
    uint8_t* s = state->perm;
    for (int k = 0; k < 256; ++k) s[k] = uint8_t(k);
    state->i = 0;
    state->j = 0;
    uint32_t j = 0;
    size_t keyIndex = 0;
    for (int k = 0; k < 256; ++k) {
        j = (j + s[k] + key[keyIndex]) & 0xff;
        if (++keyIndex == keyLength) keyIndex = 0;
        uint8_t t = s[k];
        s[k] = s[j];
        s[j] = t;
    }
}

void ArcfourXor(ArcfourState* state, uint8_t* output, const uint8_t* input, size_t count) {
    uint8_t* s = state->perm;
    uint32_t i = state->i, j = state->j;
    for (size_t n = 0; n < count; ++n) {
        i = (i + 1) & 0xff;
        j = (j + s[i]) & 0xff;
        uint8_t t = s[i];
        s[i] = s[j];
        s[j] = t;
        output[n] = uint8_t(input[n] ^ s[(s[i] + s[j]) & 0xff]);
    }
    state->i = i;
    state->j = j;
}

int32_t ArcfourOneShot(uint8_t* output, const uint8_t* input, int32_t count, const uint8_t* key,
                       int32_t keyLength) {
    // A key of length 0 would leave the schedule without key bytes to step
    // through; it fails like a negative length.
    if (count < 0 || keyLength < 1 || key == nullptr) return BAD_PARAM_ERROR;
    if (count > 0 && (input == nullptr || output == nullptr)) return BAD_PARAM_ERROR;
    ArcfourState state;
    ArcfourSetup(&state, key, size_t(keyLength));
    ArcfourXor(&state, output, input, size_t(count));
    WipeObject(state);
    return 0;
}
