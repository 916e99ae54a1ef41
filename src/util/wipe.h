// Wiping of secrets, in a form the optimiser may not drop.
#pragma once
#include <cstddef>

// Zeroes n bytes, then a compiler barrier that may read them, so the stores
// survive even when the buffer is dead afterwards.
void SecureWipe(void* p, size_t n);

template <typename T>
inline void WipeObject(T& object) {
    SecureWipe(&object, sizeof object);
}
