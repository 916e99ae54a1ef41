#include "rng/entropy.h"

#include "frame/frame.h"

void StirEntropy(int mode) {}

void ZeroSharedRngState() {}

uint32_t RngLiveInstances() { return 0; }
