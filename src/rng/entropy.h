// The shared entropy pools fed by the frame's stirs.
#pragma once
#include <cstdint>

// Zeroes the whole shared state byte by byte (process detach).
void ZeroSharedRngState();
// Generators instantiated now, for the module diagnostics.
uint32_t RngLiveInstances();
