// HMAC_DRBG with SHA-512, SP 800-90A 10.1.2, with this library's own
// instantiation, pool reseeding and continuous test. The state lives in the
// thread's record, so nothing here needs a lock; the pools do not either
// (entropy.h).
#include "rng/drbg.h"

#include <pthread.h>
#include <unistd.h>

#include <cstring>

#include "frame/frame.h"
#include "mac/hmac.h"
#include "rng/entropy.h"
#include "rng/machine.h"
#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"

namespace {
// V := HMAC(K, V) for each block, with the keyed pads made once per call.
void GenerateBlocks(DrbgState* state, uint8_t* output, uint32_t length) {
    HmacContext keyed;
    HmacSha512Start(&keyed, state->key, 64);
    HmacContext ctx;
    for (uint32_t done = 0; done < length; done += 64) {
        ctx = keyed;
        Sha512Update(&ctx.digest.sha512, state->value, 64);
        HmacSha512Finish(state->value, &ctx);
        uint32_t n = length - done < 64 ? length - done : 64;
        if (output != nullptr) std::memcpy(output + done, state->value, n);
    }
    WipeObject(keyed);
    WipeObject(ctx);
}

uint32_t CutAdditional(const uint8_t* additional, uint32_t additionalLength) {
    if (additional == nullptr) return 0;
    return additionalLength > kDrbgMaxAdditional ? kDrbgMaxAdditional : additionalLength;
}

// A forked child starts with a copy of its parent's generator and would
// repeat the parent's next output until the pools next reseed it. The child
// folds its own process id and times into the state of the thread that
// forked (the only thread it has); the parent's state is left alone.
void MixAfterFork() {
    ThreadState* ts = TlsRead();  // a fork handler must not allocate
    if (ts == nullptr || ts->rng.reseedCounter == 0) return;
    uint64_t mix[3] = {uint64_t(getpid()), SystemTime100ns(), MonotonicTime100ns()};
    DrbgUpdate(reinterpret_cast<const uint8_t*>(mix), sizeof mix, ts->rng.key, ts->rng.value);
}

void WatchForks() {
    // glibc drops the handler when the library is unloaded.
    static const bool registered = pthread_atfork(nullptr, nullptr, MixAfterFork) == 0;
    (void)registered;
}

void DecrementLive(SharedRngState* shared) {
    uint32_t live = __atomic_load_n(&shared->liveInstances, __ATOMIC_RELAXED);
    while (live != 0 && !__atomic_compare_exchange_n(&shared->liveInstances, &live, live - 1, true,
                                                     __ATOMIC_RELAXED, __ATOMIC_RELAXED)) {
    }
}
}  // namespace

void DrbgUpdateParts(const DrbgInput* parts, int count, uint8_t key[64], uint8_t value[64]) {
    bool provided = false;
    for (int i = 0; i < count; ++i) provided = provided || (parts[i].data != nullptr && parts[i].length != 0);
    HmacContext ctx;
    for (uint8_t round = 0; round < (provided ? 2 : 1); ++round) {
        HmacSha512Start(&ctx, key, 64);
        Sha512Update(&ctx.digest.sha512, value, 64);
        Sha512Update(&ctx.digest.sha512, &round, 1);
        for (int i = 0; i < count; ++i) {
            if (parts[i].data != nullptr && parts[i].length != 0)
                Sha512Update(&ctx.digest.sha512, parts[i].data, parts[i].length);
        }
        HmacSha512Finish(key, &ctx);
        HmacSha512Start(&ctx, key, 64);
        Sha512Update(&ctx.digest.sha512, value, 64);
        HmacSha512Finish(value, &ctx);
    }
}

void DrbgUpdate(const uint8_t* provided, uint32_t providedLength, uint8_t key[64], uint8_t value[64]) {
    DrbgInput part{provided, providedLength};
    DrbgUpdateParts(&part, 1, key, value);
}

void DrbgRawInstantiate(DrbgState* state, const uint8_t* entropy, uint32_t entropyLength, const uint8_t* nonce,
                        uint32_t nonceLength, const uint8_t* personalisation, uint32_t personalisationLength) {
    const DrbgInput parts[3] = {
        {entropy, entropyLength}, {nonce, nonceLength}, {personalisation, personalisationLength}};
    std::memset(state->key, 0x00, 64);
    std::memset(state->value, 0x01, 64);
    DrbgUpdateParts(parts, 3, state->key, state->value);
    state->reseedCounter = 1;
}

void DrbgReseed(DrbgState* state, const uint8_t* entropy, uint32_t entropyLength, const uint8_t* additional,
                uint32_t additionalLength) {
    const DrbgInput parts[2] = {{entropy, entropyLength}, {additional, additionalLength}};
    DrbgUpdateParts(parts, 2, state->key, state->value);
    state->reseedCounter = 1;
}

int32_t DrbgRawGenerate(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                        uint32_t additionalLength) {
    uint32_t cut = CutAdditional(additional, additionalLength);
    if (cut != 0) DrbgUpdate(additional, cut, state->key, state->value);
    GenerateBlocks(state, output, length);
    DrbgUpdate(additional, cut, state->key, state->value);
    ++state->reseedCounter;
    return 0;
}

int DrbgContinuousCheck(DrbgState* state, const uint8_t* output, uint32_t length) {
    uint8_t head[8] = {0};
    if (output != nullptr) {
        std::memcpy(head, output, length < 8 ? length : 8);
        if (CtEqual(head, state->shadowOutput, 8)) {
            SecureWipe(head, sizeof head);
            return 0;
        }
    }
    GenerateBlocks(state, head, 8);  // the hidden block, never handed out
    std::memcpy(state->shadowOutput, head, 8);
    DrbgUpdate(nullptr, 0, state->key, state->value);
    ++state->reseedCounter;
    SecureWipe(head, sizeof head);
    return 1;
}

int32_t HardwareEntropyMix(DrbgState* state, int32_t hardware) {
    if (hardware < 1) return -1;
    uint32_t words[8];
    for (uint32_t& w : words) w = HardwareRandomWord(hardware);
    DrbgUpdate(reinterpret_cast<const uint8_t*>(words), sizeof words, state->key, state->value);
    state->reseedCounter = 1;
    FeedAdditional(LinkSharedState(state), reinterpret_cast<const uint8_t*>(words), sizeof words);
    SecureWipe(words, sizeof words);
    return 0;
}

int32_t DrbgInstantiate(DrbgState* state) {
    SharedRngState* shared = LinkSharedState(state);
    WatchForks();
    if (LoadHardwareWord(shared) == 0) StoreHardwareWord(shared, DetectRngHardware());
    if (DrbgHealthCheck(0) != 0) return kDrbgFailed;

    uint8_t entropy[kPoolDrawRoom];
    uint32_t entropyLength = ReseedFromPools(&shared->pools, entropy, 1);
    if (entropyLength < 1) return kDrbgFailed;
    uint8_t personalisation[64];
    MachineFingerprint(personalisation);
    // Only the first instantiation of the process writes the first three
    // words of the nonce; later ones keep what the buffer holds, so it
    // starts with the present time and process.
    uint8_t nonce[16];
    uint64_t now = SystemTime100ns();
    Store64Le(nonce, now);
    Store32Le(nonce + 8, uint32_t(MonotonicTime100ns()));
    TimeNonce(shared, nonce);
    DrbgRawInstantiate(state, entropy, entropyLength, nonce, sizeof nonce, personalisation, sizeof personalisation);
    SecureWipe(entropy, sizeof entropy);
    SecureWipe(personalisation, sizeof personalisation);

    int32_t hardware = LoadHardwareWord(shared);
    if (hardware > 0) HardwareEntropyMix(state, hardware);
    __atomic_add_fetch(&shared->liveInstances, 1u, __ATOMIC_RELAXED);
    return 0;
}

int32_t DrbgInstantiatePrimed(DrbgState* state) {
    int32_t result = DrbgInstantiate(state);
    if (result == 0) DrbgContinuousCheck(state, nullptr, 0);
    return result;
}

int32_t DrbgGenerate(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                     uint32_t additionalLength) {
    if (length > kDrbgMaxRequest) return kDrbgTooBig;
    if (additional == nullptr) additionalLength = 0;
    SharedRngState* shared = LinkSharedState(state);
    GatherLight(&shared->pools);
    if (state->reseedCounter == 0) {
        int32_t result = DrbgInstantiatePrimed(state);
        if (result != 0) return result;
    }

    uint8_t poolBytes[kPoolDrawRoom];
    uint32_t drawn = ReseedFromPools(&shared->pools, poolBytes, state->reseedCounter >= kDrbgReseedBound ? 1 : 0);
    if (drawn != 0) {
        DrbgReseed(state, poolBytes, drawn, additional, additionalLength);
        SecureWipe(poolBytes, drawn);
    }

    int32_t status = DrbgRawGenerate(state, output, length, additional, additionalLength);
    if (!DrbgContinuousCheck(state, output, length)) return kDrbgFailed;
    FeedAdditional(shared, additional, additionalLength);
    GatherLight(&shared->pools);
    return status;
}

int32_t DrbgUninstantiate(DrbgState* state) {
    SharedRngState* shared = LinkSharedState(state);
    // Only a generator that was counted in is counted out.
    bool wasInstantiated = state->reseedCounter != 0;
    WipeObject(*state);
    const volatile uint8_t* key = state->key;
    const volatile uint8_t* value = state->value;
    bool clear = (key[0] | key[1] | key[2] | key[3] | value[0] | value[1] | value[2] | value[3]) == 0;
    if (wasInstantiated) DecrementLive(shared);
    return clear ? 0 : kDrbgUninstFailed;
}
