#include "util/wipe.h"

void SecureWipe(void* p, size_t n) {
    if (p == nullptr) return;
    volatile unsigned char* q = static_cast<volatile unsigned char*>(p);
    for (size_t i = 0; i < n; ++i) q[i] = 0;
    __asm__ __volatile__("" : : "r"(p) : "memory");
}
