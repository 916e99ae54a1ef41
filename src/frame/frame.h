// The frame around every exported call: the per-thread record, the error
// latch and the output-buffer rule.
#pragma once
#include <cstdint>

#include "frame/thread_state.h"

// The caller's record, created on first use. Never fails: when the record
// cannot be allocated the shared fallback record serves (and the next call
// tries again).
ThreadState* GetThreadState();
ContextArea* GetContextArea();

// Clears the latch; every entering export starts here.
void EnterCall();
// Returns result unchanged; the first non-zero result since EnterCall stays
// in the latch as its absolute value.
int32_t LeaveCall(int32_t result);
// For the exports that latch failures only: success leaves the latch at 0.
inline int32_t LeaveOnFailure(int32_t result) { return result < 0 ? LeaveCall(result) : result; }
int32_t ReadLatch();

// Feeds cheap facts into the entropy pools: mode 0 light, mode 1 full.
// No result of any call depends on it.
void StirEntropy(int mode);

// Output-buffer rule: a null output or a length of 0 or less asks for a size.
inline bool IsSizeQuery(const void* output, int32_t length) { return output == nullptr || length <= 0; }

// The process-wide record table, exposed for the lifecycle and for tests.
constexpr int kRegistrySlots = 1088;
struct ThreadRegistry {
    ThreadState* slots[kRegistrySlots];
    int32_t liveRecords;
    int32_t highestIndex;
    int32_t recordsEver;
};
extern ThreadRegistry g_registry;
extern ThreadState g_fallbackThreadState;

// Thread-local slot and library lock (created at process attach).
bool FrameCreateTls();
void FrameDestroyTls();
void LibraryLock();
void LibraryUnlock();
ThreadState* TlsRead();
void TlsStore(ThreadState* ts);
// Allocates a zeroed record; null on refusal.
ThreadState* AllocThreadState();
void FreeThreadState(ThreadState* ts);
void RegistryAdd(ThreadState* ts);
void RegistryRemove(ThreadState* ts);
