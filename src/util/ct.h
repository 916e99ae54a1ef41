// Constant-time helpers for tags, padding and other secret-dependent tests.
#pragma once
#include <cstddef>
#include <cstdint>

#if VERIMOND_CT_ANNOTATE
#include <valgrind/memcheck.h>
#endif

// Declares a value public although secrets went into it: the accept or
// reject of a tag or padding check, on which callers branch by design. With
// VERIMOND_CT_ANNOTATE the value is marked defined for valgrind's memcheck,
// so that a run with the secrets marked undefined (tests/ct) reports every
// other branch or address that depends on them. Elsewhere it costs nothing;
// under no tool the client request is a few no-op instructions.
template <class T>
inline T CtPublic(T v) {
#if VERIMOND_CT_ANNOTATE
    VALGRIND_MAKE_MEM_DEFINED(&v, sizeof v);
#endif
    return v;
}

// Keeps the compiler from turning a mask back into a branch.
inline uint32_t CtBarrier(uint32_t v) {
    __asm__("" : "+r"(v));
    return v;
}
// All ones if v == 0, else 0.
inline uint32_t CtMaskZero(uint32_t v) {
    v = CtBarrier(v);
    return uint32_t(int32_t((~v & (v - 1)) ) >> 31);
}
// All ones if a == b.
inline uint32_t CtMaskEq(uint32_t a, uint32_t b) { return CtMaskZero(a ^ b); }
// All ones if a < b (unsigned).
inline uint32_t CtMaskLt(uint32_t a, uint32_t b) {
    uint64_t d = uint64_t(a) - uint64_t(b);
    return CtBarrier(uint32_t(d >> 32));
}
inline uint32_t CtSelect(uint32_t mask, uint32_t a, uint32_t b) { return (a & mask) | (b & ~mask); }

// 1 if the n bytes are equal, else 0; reads all n bytes whatever they hold.
inline int CtEqual(const void* a, const void* b, size_t n) {
    const volatile uint8_t* x = static_cast<const volatile uint8_t*>(a);
    const volatile uint8_t* y = static_cast<const volatile uint8_t*>(b);
    uint32_t diff = 0;
    for (size_t i = 0; i < n; ++i) diff |= uint32_t(x[i] ^ y[i]);
    return CtPublic(int(CtMaskZero(diff) & 1));  // equal or not is the answer
}
