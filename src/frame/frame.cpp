#include "frame/frame.h"

#include <pthread.h>

#include <cstdlib>

ThreadRegistry g_registry;
ThreadState g_fallbackThreadState;

namespace {
pthread_key_t g_tlsKey;
bool g_tlsReady = false;
pthread_mutex_t g_libraryLock;
bool g_lockReady = false;

void ThreadExitHook(void* value);
}  // namespace

// Defined by the lifecycle: what a thread does when it ends.
void ThreadDetach(ThreadState* ts);

namespace {
void ThreadExitHook(void* value) {
    ThreadDetach(static_cast<ThreadState*>(value));
}
}  // namespace

bool FrameCreateTls() {
    if (!g_lockReady) {
        pthread_mutexattr_t attr;
        pthread_mutexattr_init(&attr);
        pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_RECURSIVE);
        pthread_mutex_init(&g_libraryLock, &attr);
        pthread_mutexattr_destroy(&attr);
        g_lockReady = true;
    }
    if (!g_tlsReady) {
        if (pthread_key_create(&g_tlsKey, ThreadExitHook) != 0) return false;
        g_tlsReady = true;
    }
    return true;
}

void FrameDestroyTls() {
    if (g_tlsReady) {
        pthread_key_delete(g_tlsKey);
        g_tlsReady = false;
    }
    if (g_lockReady) {
        pthread_mutex_destroy(&g_libraryLock);
        g_lockReady = false;
    }
}

void LibraryLock() {
    if (g_lockReady) pthread_mutex_lock(&g_libraryLock);
}
void LibraryUnlock() {
    if (g_lockReady) pthread_mutex_unlock(&g_libraryLock);
}

ThreadState* TlsRead() {
    return g_tlsReady ? static_cast<ThreadState*>(pthread_getspecific(g_tlsKey)) : nullptr;
}

void TlsStore(ThreadState* ts) {
    if (g_tlsReady) pthread_setspecific(g_tlsKey, ts);
}

ThreadState* AllocThreadState() {
    return static_cast<ThreadState*>(std::calloc(1, sizeof(ThreadState)));
}

void FreeThreadState(ThreadState* ts) {
    if (ts != &g_fallbackThreadState) std::free(ts);
}

void RegistryAdd(ThreadState* ts) {
    for (int i = 0; i < kRegistrySlots; ++i) {
        if (g_registry.slots[i] == nullptr) {
            g_registry.slots[i] = ts;
            if (i > g_registry.highestIndex) g_registry.highestIndex = i;
            break;
        }
    }
    ++g_registry.liveRecords;
    ++g_registry.recordsEver;
}

void RegistryRemove(ThreadState* ts) {
    for (int i = 0; i <= g_registry.highestIndex && i < kRegistrySlots; ++i) {
        if (g_registry.slots[i] == ts) {
            g_registry.slots[i] = nullptr;
            break;
        }
    }
    --g_registry.liveRecords;
}

ThreadState* GetThreadState() {
    ThreadState* ts = TlsRead();
    if (ts != nullptr) return ts;
    ts = AllocThreadState();
    if (ts == nullptr) return &g_fallbackThreadState;  // not stored: retry next call
    // Every thread but the loading one arrives here on Linux, so the add
    // takes the lock: unlocked adds could lose records from the registry.
    TlsStore(ts);
    LibraryLock();
    RegistryAdd(ts);
    LibraryUnlock();
    return ts;
}

ContextArea* GetContextArea() { return &GetThreadState()->contexts; }

void EnterCall() {
    ThreadState* ts = GetThreadState();
    ts->errorDetail[0] = '\0';
    ts->lastError = 0;
}

int32_t LeaveCall(int32_t result) {
    ThreadState* ts = GetThreadState();
    if (ts->lastError == 0 && result != 0) {
        ts->lastError = result < 0 ? int32_t(0u - uint32_t(result)) : result;
    }
    return result;
}

int32_t ReadLatch() { return GetThreadState()->lastError; }
