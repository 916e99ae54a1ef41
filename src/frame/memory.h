// Heap blocks that never come back null, and context handles.
#pragma once
#include <cstddef>
#include <atomic>
#include <cstdint>

// At least size bytes (1 for 0). A request above 0x3fffffff or a refusal by
// the system ends the process through FatalExit.
void* SafeAlloc(size_t size);
// count zeroed elements of 2 bytes each (wide text); same limits.
void* SafeZeroAlloc(size_t count);
// Ignores null.
void SafeFree(void* block);
// Zeroes size bytes of the block, then frees it.
void SafeWipeFree(void* block, size_t size);

// Blocks obtained and not yet freed; diagnostic only.
extern std::atomic<int32_t> g_liveBlocks;

// A fresh raw word for a handle; callers normally want NewHandle().
uint32_t MakeHandleValue();
// A context handle: odd, non-zero, below 2^30.
inline uint32_t NewHandle() { return (MakeHandleValue() & 0x3ffffffeu) | 1u; }
// The check every stateful call makes: 0 or a different value is stale.
inline bool HandleMatches(uint32_t slotHandle, int32_t handle) {
    return handle != 0 && uint32_t(handle) == slotHandle;
}
