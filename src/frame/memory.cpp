#include "frame/memory.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

#include "frame/errors.h"
#include "util/tinymt.h"
#include "util/wipe.h"

std::atomic<int32_t> g_liveBlocks{0};

namespace {
constexpr size_t kAllocLimit = 0x3fffffff;
std::atomic<uint32_t> g_handleSeed{0};

// A small linear congruential sequence per thread, in place of the runtime's
// rand(): 15-bit outputs, seeded from the process seed word and the thread.
thread_local uint32_t t_randState = 0;
thread_local bool t_randSeeded = false;

int DrawRand() {
    t_randState = t_randState * 214013u + 2531011u;
    return int((t_randState >> 16) & 0x7fff);
}
}  // namespace

void* SafeAlloc(size_t size) {
    if (size > kAllocLimit) FatalExit("malloc request is too big.");
    void* p = std::malloc(size == 0 ? 1 : size);
    if (p == nullptr) FatalExit("malloc failed to allocate memory.");
    g_liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return p;
}

void* SafeZeroAlloc(size_t count) {
    if (count > kAllocLimit) FatalExit("calloc request is too big.");
    void* p = std::calloc(count == 0 ? 1 : count, 2);
    if (p == nullptr) FatalExit("calloc failed to allocate memory.");
    g_liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return p;
}

void SafeFree(void* block) {
    if (block == nullptr) return;
    std::free(block);
    g_liveBlocks.fetch_sub(1, std::memory_order_relaxed);
}

void SafeWipeFree(void* block, size_t size) {
    if (block == nullptr) return;
    SecureWipe(block, size);
    SafeFree(block);
}

uint32_t MakeHandleValue() {
    uint32_t tid = uint32_t(syscall(SYS_gettid));
    uint32_t seed = g_handleSeed.load(std::memory_order_relaxed);
    if (seed == 0) {
        uint32_t seconds = uint32_t(std::time(nullptr));
        uint32_t ticks = uint32_t(std::clock());
        seed = (((seconds << 4) | ticks) << 16) | tid;
        g_handleSeed.store(seed, std::memory_order_relaxed);  // the first thread decides
    }
    if (!t_randSeeded) {
        t_randState = seed ^ (tid * 0x9e3779b9u);
        t_randSeeded = true;
    }
    uint32_t high = uint32_t(DrawRand() | 4);
    uint32_t low = uint32_t(DrawRand()) & 0xffffu;
    TinyMt32State mt;
    TinyMt32Init(&mt, (high << 16) | low);
    return TinyMt32Next(&mt);
}
