#include "util/wipe.h"

#include <cstring>

void SecureWipe(void* p, size_t n) {
    if (p == nullptr) return;
    // memset is far faster than a byte loop on large records; the barrier
    // that may read the memory keeps the compiler from dropping the stores.
    std::memset(p, 0, n);
    __asm__ __volatile__("" : : "r"(p) : "memory");
}
