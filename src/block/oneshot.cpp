// One-shot runs of the engine over a buffer, with the context on the stack.
#include "block/block.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {

// The shared tail: a negative length passes no engine, then process and wipe.
template <class Context, class ProcessFn, class WipeFn>
int RunAndWipe(Context* ctx, int status, uint8_t* output, const uint8_t* input, int32_t length, ProcessFn process,
               WipeFn wipe) {
    if (status == 0) status = length < 0 ? BAD_LENGTH_ERROR : process(ctx, output, input, size_t(length));
    wipe(ctx);
    return status;
}

}  // namespace

int AesOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, int keyBits,
               const uint8_t* iv, int32_t direction, int32_t mode) {
    if (output == nullptr || input == nullptr || key == nullptr) return NULL_ERROR;
    AesContext ctx;
    const int status = AesSetupMode(&ctx, mode, key, size_t(keyBits / 8), direction, iv);
    return RunAndWipe(&ctx, status, output, input, length, AesProcess, AesWipeContext);
}

int TdeaOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, const uint8_t* iv,
                int32_t direction, int32_t mode) {
    if (output == nullptr || input == nullptr || key == nullptr) return NULL_ERROR;
    TdeaContext ctx;
    const int status = TdeaSetupMode(&ctx, mode, key, direction, iv);
    return RunAndWipe(&ctx, status, output, input, length, TdeaProcess, TdeaWipeContext);
}

int DesOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, const uint8_t* iv,
               int32_t direction, int32_t mode) {
    if (output == nullptr || input == nullptr || key == nullptr) return NULL_ERROR;
    DesContext ctx;
    const int status = DesSetupMode(&ctx, mode, key, direction, iv);
    return RunAndWipe(&ctx, status, output, input, length, DesProcess, DesWipeContext);
}

int BlfOneShot(uint8_t* output, const uint8_t* input, int32_t length, const uint8_t* key, size_t keyLength,
               const uint8_t* iv, int32_t direction, int32_t mode) {
    if (output == nullptr || input == nullptr || key == nullptr) return NULL_ERROR;
    BlfContext ctx;
    const int status = BlfSetupMode(&ctx, mode, key, keyLength, direction, iv);
    return RunAndWipe(&ctx, status, output, input, length, BlfProcess, BlfWipeContext);
}

namespace {

int AesBlockOnce(const uint8_t* key, size_t keyLength, const uint8_t* in, uint8_t* out, int32_t direction) {
    AesContext ctx;
    int status = AesSetupMode(&ctx, kModeEcb, key, keyLength, direction, nullptr);
    if (status == 0) status = AesProcess(&ctx, out, in, 16);
    AesWipeContext(&ctx);
    return status;
}

int TdeaBlockOnce(const uint8_t* key, const uint8_t* in, uint8_t* out, int32_t direction) {
    TdeaContext ctx;
    int status = TdeaSetupMode(&ctx, kModeEcb, key, direction, nullptr);
    if (status == 0) status = TdeaProcess(&ctx, out, in, 8);
    TdeaWipeContext(&ctx);
    return status;
}

}  // namespace

int AesEncryptBlockOnce(const uint8_t* key, size_t keyLength, const uint8_t* in, uint8_t* out) {
    return AesBlockOnce(key, keyLength, in, out, 1);
}
int AesDecryptBlockOnce(const uint8_t* key, size_t keyLength, const uint8_t* in, uint8_t* out) {
    return AesBlockOnce(key, keyLength, in, out, 0);
}
int TdeaEncryptBlockOnce(const uint8_t* key, const uint8_t* in, uint8_t* out) {
    return TdeaBlockOnce(key, in, out, 1);
}
int TdeaDecryptBlockOnce(const uint8_t* key, const uint8_t* in, uint8_t* out) {
    return TdeaBlockOnce(key, in, out, 0);
}
