#include "rng/request.h"

#include <errno.h>
#include <time.h>

#include <cstdlib>

#include "frame/errors.h"
#include "rng/drbg.h"
#include "rng/prompt.h"
#include "util/bytes.h"
#include "util/wipe.h"

void RngFailed() {
    ReportFatal(kRngFailedMessage, kEventRngContinuousFailed);
    std::_Exit(1);
}

void RngGenerateOrEnd(DrbgState* state, uint8_t* output, uint32_t length, const uint8_t* additional,
                      uint32_t additionalLength) {
    if (DrbgGenerate(state, output, length, additional, additionalLength) != 0) RngFailed();
}

void RngPromptOrEnd(DrbgState* state, uint8_t* output, uint32_t length, const char* prompt, int32_t options) {
    if (PromptGenerate(state, output, length, prompt, options) != 0) RngFailed();
}

int32_t RngNumberInRange(DrbgState* state, int32_t lower, int32_t upper) {
    if (upper <= lower) return lower;
    uint32_t span = uint32_t(upper) - uint32_t(lower);
    uint32_t count = span + 1;
    uint32_t mask = 0xFFFFFFFFu;
    if (count == 0) {
        count = span;  // the whole 32-bit range
    } else {
        int bits = 32 - __builtin_clz(count);
        if ((count & (count - 1)) == 0) --bits;
        if (bits < 32) mask = (1u << bits) - 1;
    }
    uint32_t value = 0;
    for (int attempt = 0; attempt < 25; ++attempt) {
        uint8_t word[4] = {0};
        DrbgGenerate(state, word, 4, nullptr, 0);
        value = Load32Le(word) & mask;
        SecureWipe(word, sizeof word);
        if (value < count) return int32_t(uint32_t(lower) + value);
    }
    return int32_t(uint32_t(lower) + value % count);  // below 2^-25: the bias is accepted
}

void RngPause(int milliseconds) {
    struct timespec ts = {milliseconds / 1000, long(milliseconds % 1000) * 1000000L};
    while (nanosleep(&ts, &ts) != 0 && errno == EINTR) {
    }
}
