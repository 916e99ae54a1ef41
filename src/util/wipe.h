// Wiping of secrets, in a form the optimiser may not drop.
#pragma once
#include <cstddef>

// Zeroes n bytes through a volatile pointer, then a compiler barrier, so the
// stores survive even when the buffer is dead afterwards.
void SecureWipe(void* p, size_t n);

template <typename T>
inline void WipeObject(T& object) {
    SecureWipe(&object, sizeof object);
}
