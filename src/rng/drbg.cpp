#include "rng/drbg.h"

#include "util/wipe.h"

int32_t DrbgUninstantiate(DrbgState* state) {
    WipeObject(*state);
    return 0;
}

int32_t DrbgHealthCheck(int depth) { return 0; }
