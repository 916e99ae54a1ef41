// RNG_: random bytes, hex and numbers from the calling thread's generator,
// seed files, prompted entropy and the generator's tests.
#include "convert/codec.h"
#include "frame/frame.h"
#include "frame/memory.h"
#include "rng/drbg.h"
#include "rng/drbgvs.h"
#include "rng/entropy.h"
#include "rng/machine.h"
#include "rng/prompt.h"
#include "rng/request.h"
#include "rng/seedfile.h"
#include "rng/stattest.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
constexpr int kPromptPauseMs = 500;

DrbgState* ThreadGenerator() { return &GetThreadState()->rng; }

// Seed bytes are additional input: null with a length of 0 means none.
bool SeedOk(const unsigned char* seed, int32_t seedLength) {
    return seedLength >= 0 && (seed != nullptr || seedLength == 0);
}

// The screening of the byte calls, in their order.
int32_t ScreenBytes(const unsigned char* output, int32_t length, const unsigned char* seed, int32_t seedLength) {
    if (output == nullptr || length < 0) return BAD_PARAM_ERROR;
    if (uint32_t(length) > kDrbgMaxRequest) return PRNG_ERR_TOOBIG;
    if (!SeedOk(seed, seedLength)) return BAD_PARAM_ERROR;
    return 0;
}

// The screening of the hex calls: there is no size query, a null output is
// an error. The limit is tested before the block is allocated.
int32_t ScreenHex(const char* output, int32_t outputLength, int32_t count, const unsigned char* seed,
                  int32_t seedLength) {
    if (output == nullptr || outputLength < 1) return NULL_ERROR;
    if (count < 1) return BAD_PARAM_ERROR;
    if (uint32_t(count) > kDrbgMaxRequest) return PRNG_ERR_TOOBIG;
    if (!SeedOk(seed, seedLength)) return BAD_PARAM_ERROR;
    return 0;
}

// Upper-case hex cut to the caller's length; the result is 0, not a length.
int32_t HexOut(char* output, int32_t outputLength, const uint8_t* block, int32_t count) {
    HexEncodeBounded(output, size_t(outputLength) + 1, block, size_t(count));
    return 0;
}

int32_t KeyHex(char* output, int32_t outputLength, int32_t count, const unsigned char* seed, int32_t seedLength) {
    int32_t screened = ScreenHex(output, outputLength, count, seed, seedLength);
    if (screened != 0) return screened;
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(size_t(count)));
    StirEntropy(0);
    RngGenerateOrEnd(ThreadGenerator(), block, uint32_t(count), seed, uint32_t(seedLength));
    int32_t result = HexOut(output, outputLength, block, count);
    SafeWipeFree(block, size_t(count));
    return result;
}
}  // namespace

extern "C" {

int32_t RNG_KeyBytes(unsigned char* output, int32_t length, const unsigned char* seed, int32_t seedLength) {
    EnterCall();
    StirEntropy(1);
    StirEntropy(0);
    int32_t screened = ScreenBytes(output, length, seed, seedLength);
    if (screened != 0) return LeaveCall(screened);
    RngGenerateOrEnd(ThreadGenerator(), output, uint32_t(length), seed, uint32_t(seedLength));
    return LeaveCall(0);
}

int32_t RNG_KeyHex(char* output, int32_t outputLength, int32_t count, const unsigned char* seed,
                   int32_t seedLength) {
    EnterCall();
    StirEntropy(1);
    return LeaveCall(KeyHex(output, outputLength, count, seed, seedLength));
}

int32_t RNG_NonceData(unsigned char* output, int32_t length) {
    EnterCall();
    StirEntropy(0);
    int32_t screened = ScreenBytes(output, length, nullptr, 0);
    if (screened != 0) return LeaveCall(screened);
    RngGenerateOrEnd(ThreadGenerator(), output, uint32_t(length), nullptr, 0);
    return LeaveCall(0);
}

int32_t RNG_NonceDataHex(char* output, int32_t outputLength, int32_t count) {
    EnterCall();
    return LeaveCall(KeyHex(output, outputLength, count, nullptr, 0));
}

int32_t RNG_Number(int32_t lower, int32_t upper) {
    EnterCall();
    StirEntropy(0);
    return RngNumberInRange(ThreadGenerator(), lower, upper);  // no latch: the result is the number
}

int32_t RNG_BytesWithPrompt(unsigned char* output, int32_t length, const char* prompt, int32_t options) {
    EnterCall();
    StirEntropy(1);
    int32_t screened = ScreenBytes(output, length, nullptr, 0);
    if (screened != 0) return LeaveCall(screened);
    RngPause(kPromptPauseMs);
    RngPromptOrEnd(ThreadGenerator(), output, uint32_t(length), prompt, options);
    return LeaveCall(0);
}

int32_t RNG_HexWithPrompt(char* output, int32_t outputLength, int32_t count, const char* prompt, int32_t options) {
    EnterCall();
    StirEntropy(1);
    int32_t screened = ScreenHex(output, outputLength, count, nullptr, 0);
    if (screened != 0) return LeaveCall(screened);
    uint8_t* block = static_cast<uint8_t*>(SafeAlloc(size_t(count)));
    RngPause(kPromptPauseMs);
    RngPromptOrEnd(ThreadGenerator(), block, uint32_t(count), prompt, options);
    int32_t result = HexOut(output, outputLength, block, count);
    SafeWipeFree(block, size_t(count));
    return LeaveCall(result);
}

int32_t RNG_Initialize(const char* seedFile, int32_t options) {
    EnterCall();
    StirEntropy(0);
    DrbgState* state = ThreadGenerator();
    SharedRngState* shared = LinkSharedState(state);
    if (options & OPT_RNG_NO_INTEL_DRBG) StoreHardwareWord(shared, -1);  // for every thread, from now on
    if (state->reseedCounter == 0) DrbgInstantiatePrimed(state);
    if (seedFile != nullptr && *seedFile != '\0') return LeaveCall(SeedFileUpdate(state, seedFile, true));
    int32_t hardware = LoadHardwareWord(shared);
    if (hardware == 0) {
        hardware = DetectRngHardware();
        StoreHardwareWord(shared, hardware);
    }
    return LeaveCall(hardware == -1 ? -PRNG_ERR_NOTAVAIL : hardware);
}

int32_t RNG_MakeSeedFile(const char* seedFile, const char* prompt, int32_t options) {
    EnterCall();
    StirEntropy(1);
    if (seedFile == nullptr || *seedFile == '\0') return LeaveCall(-BAD_PARAM_ERROR);
    DrbgState* state = ThreadGenerator();
    uint8_t typed[64] = {0};
    PromptGenerate(state, typed, sizeof typed, prompt, options);
    int32_t result = SeedFileCreate(state, seedFile, typed, sizeof typed);
    SecureWipe(typed, sizeof typed);
    return LeaveCall(result);
}

int32_t RNG_UpdateSeedFile(const char* seedFile, int32_t options) {
    EnterCall();
    StirEntropy(0);
    if (seedFile == nullptr || *seedFile == '\0') return LeaveCall(-BAD_PARAM_ERROR);
    return LeaveCall(SeedFileUpdate(ThreadGenerator(), seedFile, false));
}

int32_t RNG_Test(const char* resultFile) {
    EnterCall();
    StirEntropy(1);
    StirEntropy(1);
    int32_t health = DrbgHealthCheck(2);
    if (health != 0) return LeaveCall(health);
    return LeaveCall(RngTestReport(ThreadGenerator(), resultFile));
}

int32_t RNG_TestDRBGVS(char* output, int32_t outputLength, int32_t returnedBits, const char* entropy,
                       const char* nonce, const char* personalisation, const char* additional1,
                       const char* reseedEntropy, const char* reseedAdditional, const char* additional2,
                       int32_t options) {
    EnterCall();
    const DrbgvsInputs inputs = {entropy, nonce, personalisation, additional1, reseedEntropy, reseedAdditional,
                                 additional2};
    return LeaveCall(DrbgvsAnswer(output, outputLength, returnedBits, inputs, options));
}

}  // extern "C"
